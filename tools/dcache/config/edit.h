/*
 * Edits of the configuration as the command line has them, KEY=VALUE each.
 *
 * Pure functions, callable from any thread.
 */
#ifndef TOOLS_DCACHE_CONFIG_EDIT_H
#define TOOLS_DCACHE_CONFIG_EDIT_H

#include <string>
#include <vector>

namespace dcache {

/// A key of the switch and what it is to become.
struct ConfigEdit {
    std::string key;
    std::string value; ///< may be empty
};

/// The first "=" ends the key. Throws Misuse for a text without one, without a key, longer than the switch takes, for a
/// key that is a command, and for one that is there twice.
std::vector<ConfigEdit> parseEdits(const std::vector<std::string> &texts);

/// A key whose value is a password or a community: by its last part, since that is how the switch names them.
bool isSecretKey(const std::string &key);

} // namespace dcache

#endif // TOOLS_DCACHE_CONFIG_EDIT_H
