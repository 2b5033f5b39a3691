/*
 * The settings of the switch, as the tool shows them.
 *
 * Read one by one when asked for, through the connection that connect() made. Thread-safety: that of the library's
 * functions, which is one thread at a time here.
 */
#ifndef TOOLS_DCACHE_SETTINGS_H
#define TOOLS_DCACHE_SETTINGS_H

#include <array>
#include <optional>
#include <string>

#include "tools/dcache/render.h"

namespace dcache {

/// What the text of a setting is: "True" or "False", in people's words on or off, or yes or no; a number; a world-wide
/// name; a password; or just a text.
enum class SettingKind { onOff, yesNo, number, wwn, secret, text };

struct Setting {
    const char *heading; ///< of the group that it begins; null: it belongs to the one before
    const char *key;     ///< for programs and scripts
    const char *label;
    SettingKind kind;
    char *(*read)(); ///< the text, which zov_libFreeMemory() takes; null for none
};

/// All that the library reads, in the order in which they are shown.
const std::array<Setting, 22> &allSettings();

/// The text as the switch has it; none when the switch does not have the setting, or does not tell.
std::optional<std::string> readSetting(const Setting &setting);

/// The description of the product; likewise.
std::optional<std::string> readProductDescription();

/// A setting as a cell; of one that is a secret this tells whether it is set, unless `secrets` are to be shown.
Cell settingCell(const Setting &setting, const std::optional<std::string> &text, bool secrets);

/// A text as a cell: null for none.
Cell settingText(const std::optional<std::string> &text);

/// A secret as people and programs see it without the right to: whether there is one.
Cell maskedCell(const std::optional<std::string> &text);

} // namespace dcache

#endif // TOOLS_DCACHE_SETTINGS_H
