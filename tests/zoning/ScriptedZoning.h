/*
 * A switch library whose zoning objects a test can look into, make, and let fail.
 *
 * This header DEFINES the switch library's zoning calls, so include it in the one source file of a test program that
 * needs it. It keeps a list of the calls and counts the objects that live. It fails the test when a call gets no
 * handle, one of another kind, or one that has been destroyed. Identifiers and lists of names are overwritten as soon
 * as they are no longer good. Not thread-safe.
 */
#ifndef TESTS_ZONING_SCRIPTEDZONING_H
#define TESTS_ZONING_SCRIPTEDZONING_H

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

#include <gtest/gtest.h>

#include "platform/zovlib.h"

namespace scripted {

enum class Kind { zoneset, zone, alias, member };

struct Object {
    Kind kind = Kind::member;
    std::string name; ///< of a member: its text
    Object *owner = nullptr;
    bool destroyed = false;
    zov_fzs_zone_type_e zoneType = ZOV_ZT_INVALID;
    zov_fzs_zonemember_type_e memberType = ZOV_ZMT_UNKNOWN;
    zov_fzs_memberid_s id{};
    std::string attribute; ///< what is told of a member instead of its identifier
    std::vector<Object *> zones;
    std::vector<Object *> aliases;
    std::vector<Object *> members;
};

/// What happens to one call: a result that is an object is none, any other is `result`. Of a call that hands out a zone
/// set, 0 is a success without one.
struct Fault {
    std::string call; ///< without "zov_"
    int nth = 1;      ///< from now on
    int32_t result = 7;
    bool clears = false; ///< a deletion that fails, but has destroyed the member
};

struct Zoning {
    std::deque<Object> objects; ///< ever made
    std::unordered_set<const void *> made;
    std::vector<std::string> calls;
    std::vector<Fault> faults;
    zov_handle_t connection = 0;
    zov_fzs_zoninglimits_s limits = {};
    std::string activeName;
    std::vector<std::string> listed;
    std::function<Object *(const std::string &)> fetch; ///< makes a zone set that is asked for; an empty one without
    std::function<void()> enter;                        ///< run at the beginning and at the end of every call
    std::function<void()> leave;
    std::string fields; ///< the list of names

    Object *make(Kind kind, const std::string &name, Object *owner = nullptr) {
        objects.emplace_back();
        Object *object = &objects.back();
        made.insert(object);
        object->kind = kind;
        object->name = name;
        if (owner != nullptr)
            link(object, owner);
        return object;
    }

    static std::vector<Object *> &partsOf(Object *owner, Kind kind) {
        return kind == Kind::zone ? owner->zones : kind == Kind::alias ? owner->aliases : owner->members;
    }
    static void link(Object *part, Object *owner) {
        partsOf(owner, part->kind).push_back(part);
        part->owner = owner;
    }

    void destroy(Object *object) {
        for (auto *parts : {&object->zones, &object->aliases, &object->members}) {
            while (!parts->empty())
                destroy(parts->back());
        }
        if (object->owner != nullptr) {
            auto &siblings = partsOf(object->owner, object->kind);
            siblings.erase(std::find(siblings.begin(), siblings.end(), object));
        }
        object->owner = nullptr;
        object->destroyed = true;
    }

    /// How many objects live.
    long alive() const {
        return std::count_if(objects.begin(), objects.end(), [](const Object &each) { return !each.destroyed; });
    }

    /// The calls since the last time this was asked.
    std::vector<std::string> takeCalls() {
        std::vector<std::string> taken;
        taken.swap(calls);
        return taken;
    }
};

inline Zoning zoning;

// ---- members as text ---------------------------------------------------------------------------------

/// "domain:port" in decimal.
inline bool domainAndPort(const std::string &text, zov_fzs_memberid_s &id) {
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos || text.find_first_not_of("0123456789:") != std::string::npos)
        return false;
    id.u.word[0] = static_cast<uint32_t>(std::strtoul(text.c_str(), nullptr, 10));
    id.u.word[1] = static_cast<uint32_t>(std::strtoul(text.c_str() + colon + 1, nullptr, 10));
    return true;
}

inline bool readMember(const std::string &text, zov_fzs_zonemember_type_e type, zov_fzs_memberid_s &id) {
    id = {};
    const auto bytes = [&](std::size_t count) {
        if (text.size() != 2 * count || text.find_first_not_of("0123456789ABCDEF") != std::string::npos)
            return false;
        for (std::size_t i = 0; i < count; ++i)
            id.u.byte[i] = static_cast<uint8_t>(std::strtoul(text.substr(2 * i, 2).c_str(), nullptr, 16));
        return true;
    };
    switch (type) {
    case ZOV_ZMT_PORTWWN:
        return bytes(8);
    case ZOV_ZMT_DOMAINPORT:
        return domainAndPort(text, id);
    case ZOV_ZMT_FCADDRESS:
        return bytes(3);
    case ZOV_ZMT_ALIAS:
        text.copy(reinterpret_cast<char *>(id.u.byte), sizeof id.u.byte - 1);
        return !text.empty();
    default:
        return false;
    }
}

inline std::string memberText(zov_fzs_zonemember_type_e type, const zov_fzs_memberid_s &id) {
    std::string text;
    const auto bytes = [&](std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            char digits[4] = "";
            std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned>(id.u.byte[i]));
            text += digits;
        }
    };
    if (type == ZOV_ZMT_PORTWWN)
        bytes(8);
    else if (type == ZOV_ZMT_FCADDRESS)
        bytes(3);
    else if (type == ZOV_ZMT_DOMAINPORT)
        text = std::to_string(id.u.word[0]) + ":" + std::to_string(id.u.word[1]);
    else
        text = reinterpret_cast<const char *>(id.u.byte);
    return text;
}

// ---- what a test builds ------------------------------------------------------------------------------

inline Object *zoneset(const std::string &name) {
    return zoning.make(Kind::zoneset, name);
}
inline Object *zone(Object *owner, const std::string &name, zov_fzs_zone_type_e type = ZOV_ZT_SOFT) {
    Object *made = zoning.make(Kind::zone, name, owner);
    made->zoneType = type;
    return made;
}
inline Object *alias(Object *owner, const std::string &name) {
    return zoning.make(Kind::alias, name, owner);
}
inline Object *member(Object *owner, zov_fzs_zonemember_type_e type, const std::string &text) {
    Object *made = zoning.make(Kind::member, text, owner);
    made->memberType = type;
    readMember(text, type, made->id); // one of a type that the script does not know stays empty
    return made;
}

// ---- the calls ---------------------------------------------------------------------------------------

/// A handle as the list of calls shows it: "oak@uber" is the zone "oak" of the zone set "uber".
inline std::string words(const void *handle) {
    if (handle == nullptr)
        return "null";
    const auto *object = static_cast<const Object *>(handle);
    return object->name + (object->owner != nullptr ? "@" + words(object->owner) : "");
}
inline std::string words(const char *text) {
    return text != nullptr ? text : "null";
}
inline std::string words(const std::string &text) {
    return text;
}
inline std::string words(int32_t number) {
    return std::to_string(number);
}

/// A call while it runs.
class Call {
public:
    template <class... Arguments> explicit Call(const char *name, const Arguments &...arguments) {
        if (zoning.enter)
            zoning.enter();
        std::fill(zoning.fields.begin(), zoning.fields.end(), '#');
        std::string text = std::string(name) + "(";
        [[maybe_unused]] const char *separator = "";
        ((text += separator + words(arguments), separator = ", "), ...);
        zoning.calls.push_back(text + ")");
        for (Fault &fault : zoning.faults) {
            if (fault.call == name && --fault.nth == 0) {
                fails = true;
                fault_ = fault;
            }
        }
    }
    ~Call() {
        if (zoning.leave)
            zoning.leave();
    }
    Call(const Call &) = delete;
    Call &operator=(const Call &) = delete;

    bool fails = false;
    int32_t result() const { return fault_.result; }
    bool clears() const { return fault_.clears; }

private:
    Fault fault_;
};

/// The object of a handle. Anything else than a living object of this kind fails the test.
inline Object *use(void *handle, Kind kind) {
    auto *object = zoning.made.count(handle) != 0 ? static_cast<Object *>(handle) : nullptr;
    if (object != nullptr && !object->destroyed && object->kind == kind)
        return object;
    ADD_FAILURE() << zoning.calls.back() << ": "
                  << (handle == nullptr   ? "no handle"
                      : object == nullptr ? "no handle of this library"
                      : object->destroyed ? "destroyed"
                                          : "of another kind");
    return nullptr;
}

inline int32_t nameOf(const Call &call, void *handle, Kind kind, char *name) {
    const Object *object = use(handle, kind);
    if (object == nullptr || call.fails)
        return call.result();
    std::strcpy(name, object->name.c_str());
    return 0;
}

inline void *makeNamed(const Call &call, Kind kind, const char *name) {
    if (name == nullptr)
        ADD_FAILURE() << "no name";
    const bool valid = name != nullptr && std::strchr(name, '!') == nullptr; // as good a rule as any
    return call.fails || !valid ? nullptr : zoning.make(kind, name);
}

inline int32_t destroy(const Call &call, void *handle, Kind kind) {
    Object *object = use(handle, kind);
    if (object == nullptr || call.fails)
        return call.result();
    zoning.destroy(object);
    return 0;
}

inline int32_t countOf(const Call &call, void *handle, Kind owner, Kind part) {
    Object *object = use(handle, owner);
    if (object == nullptr || call.fails)
        return call.result();
    return static_cast<int32_t>(Zoning::partsOf(object, part).size());
}

inline void *partAt(const Call &call, void *handle, Kind owner, Kind part, int32_t index) {
    Object *object = use(handle, owner);
    if (object == nullptr || call.fails)
        return nullptr;
    const auto &parts = Zoning::partsOf(object, part);
    const auto at = static_cast<std::size_t>(index);
    return at < parts.size() ? parts[at] : nullptr; // there may be fewer than a failed count says
}

inline void *partNamed(const Call &call, void *handle, Kind part, const char *name) {
    Object *object = use(handle, Kind::zoneset);
    if (object == nullptr || call.fails)
        return nullptr;
    for (Object *each : Zoning::partsOf(object, part)) {
        if (each->name == name)
            return each;
    }
    return nullptr;
}

inline int32_t addPart(const Call &call, void *handle, Kind owner, void *part, Kind kind) {
    Object *object = use(handle, owner);
    Object *added = use(part, kind);
    if (object == nullptr || added == nullptr || call.fails)
        return call.result();
    EXPECT_EQ(added->owner, nullptr) << zoning.calls.back();
    Zoning::link(added, object);
    return 0;
}

inline int32_t removePart(const Call &call, void *handle, void *part, Kind kind) {
    Object *removed = use(part, kind);
    if (use(handle, Kind::zoneset) == nullptr || removed == nullptr || call.fails)
        return call.result();
    EXPECT_EQ(removed->owner, handle) << zoning.calls.back();
    zoning.destroy(removed);
    return 0;
}

inline void *memberOf(const Call &call, void *handle, Kind owner, zov_fzs_zonemember_type_e type,
                      zov_fzs_memberid_s *id) {
    Object *object = use(handle, owner);
    const std::string wanted = memberText(type, *id);
    std::memset(id, 0xEE, sizeof *id);
    if (object == nullptr || call.fails)
        return nullptr;
    for (Object *each : object->members) {
        if (each->memberType == type && each->name == wanted)
            return each;
    }
    return nullptr;
}

inline int32_t deleteMember(const Call &call, void *handle, Kind owner, void **member) {
    Object *deleted = use(*member, Kind::member);
    if (use(handle, owner) == nullptr || deleted == nullptr)
        return 7;
    EXPECT_EQ(deleted->owner, handle) << zoning.calls.back();
    if (!call.fails || call.clears()) {
        zoning.destroy(deleted);
        *member = nullptr;
    }
    return call.fails ? call.result() : 0;
}

inline int32_t fetchZoneset(const Call &call, zov_handle_t connection, const std::string &name, void **zoneset) {
    EXPECT_EQ(connection, zoning.connection);
    if (!call.fails)
        *zoneset = zoning.fetch ? zoning.fetch(name) : scripted::zoneset(name);
    return call.fails ? call.result() : 0;
}

} // namespace scripted

#include "tests/zoning/ScriptedCalls.h" // IWYU pragma: export

#endif // TESTS_ZONING_SCRIPTEDZONING_H
