#include "tools/dcache/config/session.h"

#include <algorithm>
#include <fmt/format.h>

#include "swlib/MERO_Zov_Lib.h"
#include "tools/dcache/failure.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

constexpr int32_t kNotSupported = 103;

using Tell = std::function<void(const std::string &words)>;

class AdminMode {
public:
    explicit AdminMode(const Tell &tell) : _tell(tell) {
        if (reqAdminMode() != 0)
            throw Stopped(kLockBusyExit,
                          "the switch refused admin mode: another management client has it, most likely");
    }
    ~AdminMode() {
        if (releaseAdminMode() != 0) // nothing is sent when the end of an edit gave it back
            _tell("the switch did not take admin mode back; it ends with this connection");
    }
    AdminMode(const AdminMode &) = delete;
    AdminMode &operator=(const AdminMode &) = delete;

private:
    const Tell &_tell;
};

/// An edit, which is forgotten unless it is saved.
class OpenEdit {
public:
    OpenEdit() {
        if (getConfigEditMode() != 0)
            throw Stopped(kRejectedExit, "the switch refused to open an edit of its configuration");
    }
    ~OpenEdit() { cancel(); }
    OpenEdit(const OpenEdit &) = delete;
    OpenEdit &operator=(const OpenEdit &) = delete;

    bool save() {
        const bool isSaved = saveConfigEdit() == 0;
        _isOpen = !isSaved;
        return isSaved;
    }

    void cancel() {
        if (_isOpen)
            cancelConfigEdit(); // what becomes of it when this fails, too, is seen from the values
        _isOpen = false;
    }

private:
    bool _isOpen = true;
};

std::string statusWords(int32_t status) {
    return status == kNotSupported ? "status 103: it does not have this setting" : fmt::format("status {}", status);
}

std::vector<ConfigChange> present(const std::vector<ConfigEdit> &edits) {
    std::vector<ConfigChange> changes;
    changes.reserve(edits.size());
    for (const ConfigEdit &edit : edits)
        changes.push_back({edit.key, readKey(edit.key), std::nullopt});
    return changes;
}

void readAnew(std::vector<ConfigChange> &changes) {
    for (ConfigChange &change : changes)
        change.now = readKey(change.key);
}

bool isKept(const ConfigChange &change) {
    return change.now != change.before;
}

/// What an edit that failed has left behind.
std::string keptWords(const std::vector<ConfigChange> &changes) {
    std::string keys;
    for (const ConfigChange &change : changes)
        if (isKept(change))
            keys += (keys.empty() ? "" : ", ") + printable(change.key);
    return keys.empty() ? "nothing of the edit is kept" : "the switch kept the edit of " + keys;
}

/// What the switch should have changed, it has changed.
bool isAllKept(const std::vector<ConfigEdit> &edits, const std::vector<ConfigChange> &changes) {
    for (size_t i = 0; i < edits.size(); ++i)
        if (!isKept(changes[i]) && changes[i].before != edits[i].value)
            return false;
    return std::any_of(changes.begin(), changes.end(), isKept);
}

} // namespace

std::optional<std::string> readKey(const std::string &key) {
    char *value = nullptr;
    uint32_t size = 0;
    if (zov_smlGetV(hSwitch, &value, &size, "%s", key.c_str()) != 0 || value == nullptr)
        return std::nullopt;
    std::string text = value;
    zov_libFreeMemory(value);
    return text;
}

std::vector<ConfigChange> ConfigSession::edit(const std::vector<ConfigEdit> &edits) {
    const AdminMode admin(_tell);
    std::vector<ConfigChange> changes = present(edits);
    _checkStop();
    OpenEdit open;
    const std::string refusal = _stage(edits);
    if (!refusal.empty()) {
        open.cancel();
        readAnew(changes);
        const std::string words = fmt::format("{}; {}", refusal, keptWords(changes));
        if (_stop)
            throw Failure(words);
        throw Stopped(kRejectedExit, words);
    }
    _final = true;
    const bool isSaved = open.save();
    open.cancel();
    readAnew(changes);
    // A switch that saved and then did not take admin mode back answers as one that did not save.
    if (!isSaved && !isAllKept(edits, changes))
        throw Stopped(kRejectedExit, fmt::format("the switch refused to save the edit; {}", keptWords(changes)));
    return changes;
}

void ConfigSession::backUp() {
    _run(::backupConfig, "keep a copy of its configuration");
}

void ConfigSession::restore() {
    _run(::restoreConfig, "go back to the copy of its configuration");
}

/// Why an edit ends before it is saved; empty when it need not.
std::string ConfigSession::_stage(const std::vector<ConfigEdit> &edits) const {
    for (const ConfigEdit &edit : edits) {
        if (_stop)
            break;
        const int32_t status = zov_smlSetV(hSwitch, edit.value.c_str(), "%s", edit.key.c_str());
        if (status != 0)
            return fmt::format("the switch refused {}={} with {}", printable(edit.key),
                               isSecretKey(edit.key) ? "..." : printable(edit.value), statusWords(status));
    }
    return _stop ? "interrupted" : "";
}

void ConfigSession::_run(int (*command)(), const char *what) {
    const AdminMode admin(_tell);
    _checkStop();
    _final = true;
    const int status = command();
    if (status != 0)
        throw Stopped(kRejectedExit, fmt::format("the switch refused to {}, with status {}", what, status));
}

void ConfigSession::_checkStop() const {
    if (_stop)
        throw Failure("interrupted; nothing was changed");
}

} // namespace dcache
