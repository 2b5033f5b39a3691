/*
 * Edits of the configuration: opened, filled, then saved or forgotten. One is open at a time.
 *
 * The switch configuration is saved first and becomes the running one when it is activated; the CIM
 * configuration is running as soon as it is saved. What is set twice counts as it was set last.
 *
 * Guarded by its owner.
 */
#ifndef SIM_SESSION_CONFIGEDIT_H
#define SIM_SESSION_CONFIGEDIT_H

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sim/Status.h"

namespace sim {

/// Keys and the values they shall get, in the order in which they were first set.
using Edits = std::vector<std::pair<std::string, std::string>>;

enum class Configuration { none, wholeSwitch, cim };

class ConfigEdit {
public:
    Status open(Configuration configuration);
    Status stage(const std::string &key, const std::string &value);
    /// Closes an edit of the switch configuration and keeps it, with what was saved before it.
    Status saveSwitch();
    /// Closes an edit of the CIM configuration; `running` gets what is to become effective.
    Status saveCim(Edits &running);
    /// Hands out the saved switch configuration; `running` gets what is to become effective.
    Status activate(Edits &running);
    Status cancel(Configuration configuration);
    /// Forgets an open edit, if there is one. What was saved stays saved.
    void drop();

    /// What was saved and waits to be activated; none when nothing does.
    std::optional<Edits> saved() const { return _isSaved ? std::optional<Edits>(_saved) : std::nullopt; }
    void setSaved(const std::optional<Edits> &saved);

    bool isOpen() const { return _open != Configuration::none; }

private:
    Configuration _open = Configuration::none;
    Edits _pending;
    Edits _saved;
    bool _isSaved = false; ///< something was saved since the last activation, if only an empty edit
};

} // namespace sim

#endif // SIM_SESSION_CONFIGEDIT_H
