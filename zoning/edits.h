/*
 * What the edits of the cached database have in common. Internal.
 */
#ifndef ZONING_EDITS_H
#define ZONING_EDITS_H

#include "platform/zovlib.h"

namespace zoning {

/// The results of edits.
enum Result {
    kDone = 0,
    kNotValid = 1,
    kNotThere = 2,
    kThereAlready = 3,
    kFailed = 4,
};

/// The temporary name of a zone while a copy of it is made for a zone set.
constexpr const char *kTemporaryZone = "^_-_-_-_TMPZONE_-_-_-_^";

/// A member as the edits name it. The switch library may write into an identifier that it is given, so every call gets a
/// fresh copy.
class MemberName {
public:
    MemberName(zov_fzs_zonemember_type_e type, const char *text) : _type(type) {
        _valid = text != nullptr && zov_strToMemberIdentifier(text, type, &_id) == 0;
    }

    bool isValid() const { return _valid; }

    /// The member among those of a zone or alias, by the call that finds it; null when it is not there.
    template <class Call> void *in(void *group, Call find) const {
        zov_fzs_memberid_s copy = _id;
        return group != nullptr ? find(group, _type, &copy) : nullptr;
    }

    /// Makes the member and adds it to a zone or alias by the call for that; kDone or kFailed.
    template <class Call> Result addTo(void *group, Call add) const {
        zov_fzs_memberid_s copy = _id;
        void *member = zov_MemberCreate(_type, &copy);
        if (member == nullptr)
            return kFailed;
        if (add(group, member) == 0)
            return kDone;
        zov_MemberDestroy(member);
        return kFailed;
    }

private:
    zov_fzs_zonemember_type_e _type;
    zov_fzs_memberid_s _id{};
    bool _valid = false;
};

} // namespace zoning

#endif // ZONING_EDITS_H
