#include "tools/dcache/zoning/difference.h"

#include <gmock/gmock.h>

using namespace dcache;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const Member kServer = {ZOV_ZMT_PORTWWN, "10:00:00:00:C9:2B:44:01"};
const Member kDisk = {ZOV_ZMT_DOMAINPORT, "1:7"};
const Member kTape = {ZOV_ZMT_ALIAS, "tape"};

ZoningPicture picture() {
    return {{{"day", {"db"}}}, {{"db", ZOV_ZT_HARDACL, {kServer, kDisk}}}, {{"tape", {kDisk}}}};
}

/// "added zone db type acl"
std::vector<std::string> words(const ZoningPicture &before, const ZoningPicture &after) {
    std::vector<std::string> lines;
    for (const ZoningChange &change : difference(before, after)) {
        std::string line = change.change + std::string(" ") + change.object + " " + change.name;
        if (*change.part != '\0')
            line += std::string(" ") + change.part + " " + change.value;
        lines.push_back(line);
    }
    return lines;
}

} // namespace

TEST(Difference, ThereIsNoneBetweenEquals) {
    EXPECT_THAT(words(picture(), picture()), IsEmpty());
    EXPECT_THAT(words({}, {}), IsEmpty());
}

TEST(Difference, TheOrderOfThingsIsNone) {
    ZoningPicture one = picture();
    one.zones.push_back({"mail", ZOV_ZT_SOFT, {}});
    one.zonesets.front().zones.emplace_back("mail");
    ZoningPicture other = one;
    std::swap(other.zones[0], other.zones[1]);
    std::swap(other.zones[1].members[0], other.zones[1].members[1]);
    std::swap(other.zonesets[0].zones[0], other.zonesets[0].zones[1]);
    EXPECT_THAT(words(one, other), IsEmpty());
}

TEST(Difference, WhatIsNewIsListedWithItsParts) {
    EXPECT_THAT(words({}, picture()),
                ElementsAre("added alias tape", "added alias tape member 1:7", "added zone db",
                            "added zone db type acl", "added zone db member 10:00:00:00:C9:2B:44:01",
                            "added zone db member 1:7", "added zone set day", "added zone set day zone db"));
}

TEST(Difference, WhatIsGoneIsListedWithoutThem) {
    EXPECT_THAT(words(picture(), {}), ElementsAre("removed alias tape", "removed zone db", "removed zone set day"));
}

TEST(Difference, PartsComeGoAndChange) {
    ZoningPicture after = picture();
    after.aliases[0].members = {kServer};
    after.zones[0].type = ZOV_ZT_SOFT;
    after.zones[0].members = {kServer, kTape};
    after.zonesets[0].zones = {"mail"};
    EXPECT_THAT(words(picture(), after),
                ElementsAre("removed alias tape member 1:7", "added alias tape member 10:00:00:00:C9:2B:44:01",
                            "changed zone db type acl -> soft", "removed zone db member 1:7",
                            "added zone db member alias tape", "removed zone set day zone db",
                            "added zone set day zone mail"));
}
