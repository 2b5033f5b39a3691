#include "tools/dcache/topology/linkstate.h"

#include <gmock/gmock.h>

#include "sim/Simulator.h"
#include "tools/dcache/cache.h"

using namespace dcache;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class LinkState : public testing::Test {
protected:
    LinkState() { connect(); }

    void answer(const std::string &key, const std::string &value) const {
        sim::Fault fault;
        fault.key = key;
        fault.value = value;
        fault.times = -1;
        _switch->addFault(fault);
    }
    void refuse(const std::string &key) const {
        sim::Fault fault;
        fault.key = key;
        fault.status = 7;
        fault.times = -1;
        _switch->addFault(fault);
    }

    std::unique_ptr<sim::Simulator> _switch = sim::create("fabric-2");
};

/// "1: 16>2:16", one per record.
std::vector<std::string> read() {
    std::vector<std::string> texts;
    for (const LinkRecord &record : readLinkState()) {
        texts.push_back(std::to_string(record.domain) + ":");
        for (const LinkEnd &link : record.links)
            texts.back() += " " + link.port + ">" + link.neighbour;
    }
    return texts;
}

} // namespace

TEST_F(LinkState, EveryRecordIsReadWithItsLinks) {
    EXPECT_THAT(read(), ElementsAre("1: 16>2:16", "2: 16>1:16"));
    _switch->connect({_switch->get("Oper.Switch.WWN"), 17, _switch->peers().front().wwn, 3}, sim::Notify::no);
    EXPECT_THAT(read(), ElementsAre("1: 16>2:16 17>2:3", "2: 3>1:17 16>1:16"));
}

TEST_F(LinkState, AWalkThatFailsEndsThere) {
    refuse("Oper.Eport.NextLsdbRecord.1");
    EXPECT_THAT(read(), ElementsAre("1: 16>2:16"));
    refuse("Oper.Eport.FirstLsdbRecord");
    EXPECT_THAT(read(), IsEmpty());
}

TEST_F(LinkState, AWalkInCirclesEnds) {
    answer("Oper.Eport.NextLsdbRecord.2", "1");
    EXPECT_THAT(read(), ElementsAre("1: 16>2:16", "2: 16>1:16"));
}

TEST_F(LinkState, ARecordThatIsNoDomainIsLeftOut) {
    answer("Oper.Eport.NextLsdbRecord.1", "backbone");
    EXPECT_THAT(read(), ElementsAre("1: 16>2:16"));
}

TEST_F(LinkState, ALinkWithoutANeighbourIsLeftOutAndOneWithoutAPortIsNot) {
    refuse("Oper.Eport.LsdbRecord.1.Link.0.Neighbor");
    refuse("Oper.Eport.LsdbRecord.2.Link.0.LocalPort");
    EXPECT_THAT(read(), ElementsAre("1:", "2: >1:16"));
}

TEST_F(LinkState, AnAbsurdNumberOfLinksIsNotBelieved) {
    answer("Oper.Eport.LsdbRecord.1.NumberOfLinks", "2000000000");
    answer("Oper.Eport.LsdbRecord.2.NumberOfLinks", "-5");
    answer("Oper.Eport.LsdbRecord.1.Link.*", "2");
    const auto records = readLinkState();
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].links.size(), 256u);
    EXPECT_THAT(records[1].links, IsEmpty());
}

TEST_F(LinkState, TheNameServersEntriesAreThoseOfOneSwitch) {
    const auto entries = readNameServer(2);
    EXPECT_EQ(entries.size(), 16u);
    EXPECT_EQ(entries.front(), "020000");
    EXPECT_EQ(entries.back(), "020F00");
    EXPECT_EQ(readNameServer(1).front(), "010000");
    EXPECT_THAT(readNameServer(9), IsEmpty());
}

TEST_F(LinkState, ANameServerWalkInCirclesEnds) {
    answer("Oper.NameServerAll.2.NextNsEntry.020200", "020000");
    EXPECT_THAT(readNameServer(2), ElementsAre("020000", "020100", "020200"));
}
