#include "datacache/FabricCache.h"

#include <cstdlib>
#include <memory>
#include <new>

#include <gmock/gmock.h>

#include "tests/support/Log.h"

namespace {

// A switch tells nobody that it is deleted; its memory does.
const void *watchedMemory = nullptr;
int timesFreed = 0;

void release(void *memory) noexcept {
    if (memory != nullptr && memory == watchedMemory)
        ++timesFreed;
    std::free(memory); // NOLINT(cppcoreguidelines-no-malloc): the counterpart of the allocation below
}

} // namespace

void *operator new(std::size_t size) {
    if (void *memory = std::malloc(size > 0 ? size : 1)) // NOLINT(cppcoreguidelines-no-malloc)
        return memory;
    throw std::bad_alloc();
}

void operator delete(void *memory) noexcept {
    release(memory);
}

void operator delete(void *memory, std::size_t /*size*/) noexcept {
    release(memory);
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char *kPortBase = "200000C0DD00A1B2"; // a port name of the switch below
constexpr const char *kSwitch = "100000C0DD00A1B2";
constexpr const char *kCisco = "2000000DEC123456"; // both its switch name and the base of its ports

/// A switch with these rows: port number and index.
std::unique_ptr<SwitchCache> makeSwitch(const char *wwn, const char *portBase,
                                        std::initializer_list<std::pair<int, int>> rows = {}) {
    auto made = std::make_unique<SwitchCache>();
    made->_wwn = Wwn(std::string(wwn));
    made->_port_wwn = Wwn(std::string(portBase));
    for (const auto &[number, index] : rows)
        made->addPort(static_cast<unsigned short>(number), static_cast<unsigned char>(index));
    return made;
}

Wwn nameOf(const char *text) {
    return Wwn(std::string(text));
}

// ---- PortCache ------------------------------------------------------------------------------------------

TEST(PortCacheTest, TheDefaultIsTheNullPort) {
    const PortCache port;
    EXPECT_TRUE(port.isNull());
    EXPECT_EQ(port.getWwn(), "");
    EXPECT_EQ(port._port_index, 0U);
    EXPECT_EQ(port._value, 0U);
    EXPECT_EQ(port._text, "");
}

TEST(PortCacheTest, APortHasANameAndAnIndex) {
    const PortCache port(nameOf("200500C0DD00A1B2"), 5);
    EXPECT_FALSE(port.isNull());
    EXPECT_EQ(port.getWwn(), "200500C0DD00A1B2");
    EXPECT_EQ(port._port_index, 5U);
    EXPECT_EQ(port._value, 0U);
    EXPECT_EQ(port._text, "");
    EXPECT_FALSE(PortCache(nameOf("0000000000000001"), 0).isNull());
    EXPECT_FALSE(PortCache(nameOf("1000000000000000"), 0).isNull());
}

// ---- SwitchCache ----------------------------------------------------------------------------------------

TEST(SwitchCacheTest, IsMadeEmpty) {
    const SwitchCache made;
    EXPECT_EQ(made.getWwn(), "0000000000000000");
    EXPECT_EQ(made._port_wwn, Wwn());
    EXPECT_EQ(made._num_ports, 0U);
    for (unsigned row = 0; row < SwitchCache::kMaxPorts; ++row) {
        EXPECT_EQ(made._wwn_portno[row], 0U);
        EXPECT_EQ(made._port_index[row], 0U);
    }
    EXPECT_EQ(made.getDomainID(), 0U);
    EXPECT_EQ(made._mserver_timeout, 0U);
    EXPECT_EQ(made._mserver_errors, 0U);
    EXPECT_EQ(made._stale, 0U);
    EXPECT_FALSE(made.isLocal());
    EXPECT_EQ(made.getStatus(), 2U);
}

TEST(SwitchCacheTest, TellsWhoItIs) {
    const auto made = makeSwitch(kSwitch, kPortBase);
    made->_domain_id = 97;
    made->_local = 1;
    made->_status = 5;
    EXPECT_EQ(made->getWorldWideName(), nameOf(kSwitch));
    EXPECT_EQ(made->getWwn(), kSwitch);
    EXPECT_EQ(made->getDomainID(), 97U);
    EXPECT_TRUE(made->isLocal());
    EXPECT_EQ(made->getStatus(), 5U);
}

TEST(SwitchCacheTest, WithoutABasePortNameEveryLookupGivesTheNullPort) {
    const auto made = makeSwitch(kSwitch, "0000000000000000", {{1, 1}, {2, 2}});
    EXPECT_TRUE(made->getFirstPort().isNull());
    EXPECT_TRUE(made->getNextPort(PortCache(Wwn(), 1)).isNull());
    EXPECT_EQ(made->getNextPort(PortCache(Wwn(), 1))._port_index, 0U);
    EXPECT_TRUE(made->getPortByLSDBPortIndex("1").isNull());
    EXPECT_TRUE(made->getPortByWorldWideName(nameOf("200100C0DD00A1B2")).isNull());
    EXPECT_TRUE(made->getPortByWwn("200100C0DD00A1B2").isNull());
    EXPECT_TRUE(made->getPortByLSDBPortIndex("300").isNull());
    EXPECT_EQ(support::readFile(support::kMainLog), "") << "nothing is looked up";
}

TEST(SwitchCacheTest, WalksItsPortsInTheOrderOfTheRows) {
    const auto made = makeSwitch(kSwitch, kPortBase, {{3, 30}, {1, 10}, {2, 20}});
    PortCache port = made->getFirstPort();
    EXPECT_EQ(port.getWwn(), "200300C0DD00A1B2");
    EXPECT_EQ(port._port_index, 30U);
    port = made->getNextPort(port);
    EXPECT_EQ(port.getWwn(), "200100C0DD00A1B2");
    port = made->getNextPort(port);
    EXPECT_EQ(port.getWwn(), "200200C0DD00A1B2");
    EXPECT_EQ(port._port_index, 20U);
    EXPECT_TRUE(made->getNextPort(port).isNull());
}

TEST(SwitchCacheTest, WithoutPortsThereIsNeitherAFirstNorANext) {
    const auto made = makeSwitch(kSwitch, kPortBase);
    EXPECT_TRUE(made->getFirstPort().isNull());
    EXPECT_TRUE(made->getNextPort(PortCache()).isNull());
}

TEST(SwitchCacheTest, ASinglePortHasNoSuccessor) {
    const auto made = makeSwitch(kSwitch, kPortBase, {{0, 0}});
    EXPECT_FALSE(made->getFirstPort().isNull());
    EXPECT_TRUE(made->getNextPort(made->getFirstPort()).isNull());
}

TEST(SwitchCacheTest, TheWalkGoesOnAfterTheFirstPortOfAnIndex) {
    const auto made = makeSwitch(kSwitch, kPortBase, {{1, 7}, {2, 8}, {3, 7}, {4, 9}});
    EXPECT_EQ(made->getNextPort(PortCache(Wwn(), 7)).getWwn(), "200200C0DD00A1B2");
    EXPECT_TRUE(made->getNextPort(PortCache(Wwn(), 9)).isNull()) << "the last port has no successor";
    EXPECT_TRUE(made->getNextPort(PortCache(Wwn(), 263)).isNull()) << "indexes are compared whole";
}

TEST(SwitchCacheTest, AFullTableTakesNoMorePorts) {
    const auto made = makeSwitch(kSwitch, kPortBase);
    for (unsigned port = 0; port < 300; ++port)
        made->addPort(static_cast<unsigned short>(port), static_cast<unsigned char>(port));
    EXPECT_EQ(made->_num_ports, 256U);
    unsigned walked = 1;
    for (PortCache port = made->getFirstPort(); !(port = made->getNextPort(port)).isNull();)
        ++walked;
    EXPECT_EQ(walked, 256U);
}

TEST(SwitchCacheTest, EveryRowOfAFullTableIsFoundBothWays) {
    const auto made = makeSwitch(kSwitch, kPortBase);
    for (unsigned port = 0; port < 256; ++port)
        made->addPort(static_cast<unsigned short>(port), static_cast<unsigned char>(255 - port));
    for (unsigned port = 0; port < 256; ++port) {
        Wwn name = nameOf(kPortBase);
        name.Set_Port(port);
        EXPECT_EQ(made->getPortByWorldWideName(name)._port_index, 255 - port);
        EXPECT_EQ(made->getPortByLSDBPortIndex(std::to_string(port))._wwn, name);
    }
}

TEST(SwitchCacheTest, ACountBeyondTheTableReadsNoFurtherThanTheTable) {
    const auto made = makeSwitch(kSwitch, kPortBase, {{1, 1}});
    made->_num_ports = 65535;
    EXPECT_TRUE(made->getPortByLSDBPortIndex("200").isNull());
    EXPECT_TRUE(made->getNextPort(PortCache(Wwn(), 200)).isNull());
    EXPECT_TRUE(made->getPortByWwn("20FF00C0DD00A1B2").isNull());
}

// ---- ports of the link-state database -------------------------------------------------------------------

TEST(SwitchCacheTest, FindsAPortByItsLinkStateIndex) {
    const auto made = makeSwitch(kSwitch, kPortBase, {{30, 1}, {31, 2}});
    const PortCache port = made->getPortByLSDBPortIndex("31");
    EXPECT_EQ(port.getWwn(), "201F00C0DD00A1B2");
    EXPECT_EQ(port._port_index, 2U);
    EXPECT_EQ(made->getPortByLSDBPortIndex("0x1f")._port_index, 2U);
    EXPECT_EQ(made->getPortByLSDBPortIndex("037")._port_index, 2U);
    EXPECT_TRUE(made->getPortByLSDBPortIndex("32").isNull());
    EXPECT_TRUE(made->getPortByLSDBPortIndex("").isNull());
    EXPECT_EQ(support::messagesIn(support::kMainLog).front(),
              "DCACHE: SwitchCache::getPortByLSDBPortIndex( 31 ) searching for _wwn_portno 0x01f");
}

TEST(SwitchCacheTest, AnIndexAbove255IsOutOfRange) {
    const auto made = makeSwitch(kSwitch, kPortBase, {{44, 1}, {255, 3}, {108, 2}});
    EXPECT_EQ(made->getPortByLSDBPortIndex("255")._port_index, 3U);
    const std::size_t mark = support::logMark();
    EXPECT_TRUE(made->getPortByLSDBPortIndex("256").isNull());
    EXPECT_TRUE(made->getPortByLSDBPortIndex("300").isNull());
    EXPECT_TRUE(made->getPortByLSDBPortIndex("4294967296").isNull());
    EXPECT_THAT(
        support::messagesSince(mark),
        ElementsAre("DCACHE: SwitchCache::getPortByLSDBPortIndex( 256 ) port=256 is out of range",
                    "DCACHE: SwitchCache::getPortByLSDBPortIndex( 300 ) port=300 is out of range",
                    "DCACHE: SwitchCache::getPortByLSDBPortIndex( 4294967296 ) port=4294967295 is out of range"));
    EXPECT_EQ(support::readFile(support::kCriticalLog), "");
}

TEST(SwitchCacheTest, ARemoteCiscoSwitchFoldsLargeIndexesAndCountsFromOne) {
    const auto made = makeSwitch(kCisco, kCisco, {{109, 4}, {6, 5}});
    const std::size_t mark = support::logMark();
    EXPECT_EQ(made->getPortByLSDBPortIndex("300")._port_index, 4U);
    EXPECT_EQ(made->getPortByLSDBPortIndex("5")._port_index, 5U);
    EXPECT_THAT(support::messagesSince(mark),
                ElementsAre("DCACHE: SwitchCache::getPortByLSDBPortIndex( 300 ) searching for _wwn_portno 0x06d",
                            "DCACHE: SwitchCache::getPortByLSDBPortIndex( 5 ) searching for _wwn_portno 0x006"));
}

TEST(SwitchCacheTest, TheLocalCiscoSwitchDoesNotFold) {
    const auto made = makeSwitch(kCisco, kCisco, {{109, 4}, {256, 9}});
    made->_local = 1;
    EXPECT_TRUE(made->getPortByLSDBPortIndex("300").isNull());
    EXPECT_EQ(made->getPortByLSDBPortIndex("255")._port_index, 9U);
}

// ---- ports by name --------------------------------------------------------------------------------------

TEST(SwitchCacheTest, FindsAPortByItsName) {
    const auto made = makeSwitch(kSwitch, kPortBase, {{4, 40}, {5, 50}, {5, 51}});
    const PortCache port = made->getPortByWorldWideName(nameOf("200500C0DD00A1B2"));
    EXPECT_EQ(port.getWwn(), "200500C0DD00A1B2");
    EXPECT_EQ(port._port_index, 50U) << "the first row decides";
    EXPECT_EQ(made->getPortByWwn("20:04:00:C0:DD:00:A1:B2")._port_index, 0U) << "the colon form loses the last byte";
    EXPECT_EQ(made->getPortByWwn("200400C0DD00A1B2")._port_index, 40U);
    EXPECT_TRUE(made->getPortByWwn("200600C0DD00A1B2").isNull());
    EXPECT_TRUE(made->getPortByWwn("").isNull());
}

TEST(SwitchCacheTest, ANameOfAnotherBaseIsNotFoundThoughItsPortMatches) {
    const auto made = makeSwitch(kSwitch, kPortBase, {{5, 50}});
    EXPECT_TRUE(made->getPortByWwn("200500C0DD00A1B3").isNull());
    EXPECT_TRUE(made->getPortByWwn("200500C1DD00A1B2").isNull());
    EXPECT_TRUE(made->getPortByWwn("100500C0DD00A1B2").isNull());
}

TEST(SwitchCacheTest, ANameWithoutAPortFieldIsNotFound) {
    const auto made = makeSwitch("100000C0DD00A1B2", "100000C0DD00A1B2", {{0, 1}, {4096, 2}});
    EXPECT_TRUE(made->getPortByWwn("100000C0DD00A1B2").isNull());
}

// ---- FabricCache ----------------------------------------------------------------------------------------

class FabricTest : public testing::Test {
protected:
    SwitchCache *add(const char *wwn, unsigned char domain, const char *portBase = "0000000000000000",
                     std::initializer_list<std::pair<int, int>> rows = {}) {
        auto made = makeSwitch(wwn, portBase, rows);
        made->_domain_id = domain;
        SwitchCache *raw = made.release();
        fabric._switches.add(Element<SwitchCache>::alloc(raw, true));
        return raw;
    }

    FabricCache fabric;
};

TEST_F(FabricTest, IsMadeEmpty) {
    EXPECT_EQ(fabric.getFabricWwn(), "0000000000000000");
    EXPECT_EQ(fabric.getFabricWorldWideName(), Wwn());
    EXPECT_EQ(fabric.getOperatingMode(), 0U);
    EXPECT_EQ(fabric.getSwitchCount(), 0U);
    EXPECT_EQ(fabric.getFirstSwitch(), nullptr);
    EXPECT_EQ(fabric.getNextSwitch(nullptr), nullptr);
    EXPECT_EQ(fabric.getSwitchByWwn(kSwitch), nullptr);
    EXPECT_EQ(fabric.getSwitchByPortWwn(kPortBase), nullptr);
    EXPECT_EQ(fabric._second_name, Wwn());
}

TEST_F(FabricTest, ALookupByDomainInAnEmptyFabricIsLogged) {
    EXPECT_EQ(fabric.getSwitchByDomainID("171"), nullptr);
    EXPECT_THAT(support::messagesIn(support::kMainLog),
                ElementsAre("DCACHE: findSwitchCacheElement()domain ab not found from 0 elements"));
    EXPECT_EQ(support::readFile(support::kCriticalLog), "");
}

TEST_F(FabricTest, TellsItsNameAndMode) {
    fabric._fabric_name = nameOf(kSwitch);
    fabric._operating_mode = 3;
    EXPECT_EQ(fabric.getFabricWorldWideName(), nameOf(kSwitch));
    EXPECT_EQ(fabric.getFabricWwn(), kSwitch);
    EXPECT_EQ(fabric.getOperatingMode(), 3U);
}

TEST_F(FabricTest, WalksItsSwitchesInOrder) {
    const SwitchCache *first = add("1000000000000001", 1);
    const SwitchCache *second = add("1000000000000002", 2);
    const SwitchCache stranger;
    EXPECT_EQ(fabric.getSwitchCount(), 2U);
    EXPECT_EQ(fabric.getFirstSwitch(), first);
    EXPECT_EQ(fabric.getNextSwitch(first), second);
    EXPECT_EQ(fabric.getNextSwitch(second), nullptr);
    EXPECT_EQ(fabric.getNextSwitch(&stranger), nullptr);
}

TEST_F(FabricTest, FindsASwitchByDomain) {
    add("1000000000000001", 1);
    const SwitchCache *four = add("1000000000000004", 4);
    add("1000000000000005", 4);
    EXPECT_EQ(fabric.getSwitchByDomainID("4"), four) << "the first one";
    EXPECT_EQ(fabric.getSwitchByDomainID("260"), four) << "the low eight bits count";
    EXPECT_EQ(fabric.findSwitchCacheElement(static_cast<unsigned char>(4))->item(), four);
    EXPECT_EQ(support::readFile(support::kMainLog), "") << "a find is not logged";
    EXPECT_EQ(fabric.getSwitchByDomainID("4294967295"), nullptr);
    EXPECT_EQ(fabric.getSwitchByDomainID("-1"), nullptr);
    EXPECT_EQ(support::readFile(support::kMainLog), "") << "an overflow is not looked up";
    EXPECT_EQ(fabric.getSwitchByDomainID("5"), nullptr);
    EXPECT_THAT(support::messagesIn(support::kMainLog),
                ElementsAre("DCACHE: findSwitchCacheElement()domain 5 not found from 3 elements"));
}

TEST_F(FabricTest, FindsASwitchByName) {
    add("1000000000000001", 1);
    const SwitchCache *second = add("1000000000000002", 2);
    EXPECT_EQ(fabric.getSwitchByWwn("1000000000000002"), second);
    EXPECT_EQ(fabric.findSwitchCacheElement(nameOf("1000000000000002"))->item(), second);
    EXPECT_EQ(fabric.getSwitchByWwn("1000000000000003"), nullptr);
    EXPECT_EQ(fabric.getSwitchByWwn("x"), nullptr);
    EXPECT_EQ(support::readFile(support::kMainLog), "");
}

TEST(FabricCacheTest, AnAddedSwitchComesLastAndIsItsOwn) {
    FabricCache fabric;
    SwitchCache &first = fabric.addSwitch(nameOf(kSwitch));
    SwitchCache &second = fabric.addSwitch(nameOf(kCisco));
    EXPECT_EQ(first.getWwn(), kSwitch);
    EXPECT_EQ(fabric.getFirstSwitch(), &first);
    EXPECT_EQ(fabric.getNextSwitch(&first), &second);
    EXPECT_EQ(fabric.getSwitchCount(), 2);
    EXPECT_TRUE(fabric.findSwitchCacheElement(second._wwn)->delete_item());
}

TEST(FabricCacheTest, ItsEndIsTheEndOfEverySwitchWhoeverOwnsIt) {
    for (const bool owned : {true, false}) {
        auto fabric = std::make_unique<FabricCache>();
        auto *made = new SwitchCache;
        fabric->_switches.add(Element<SwitchCache>::alloc(made, owned));
        watchedMemory = made;
        timesFreed = 0;
        fabric.reset();
        watchedMemory = nullptr;
        EXPECT_EQ(timesFreed, 1) << owned;
    }
}

TEST_F(FabricTest, FindsTheSwitchOfAPort) {
    add("1000000000000001", 1, "2000000000000001", {{1, 1}});
    const SwitchCache *second = add(kSwitch, 2, kPortBase, {{1, 1}, {2, 2}});
    add(kSwitch, 3, kPortBase, {{2, 2}});
    EXPECT_EQ(fabric.getSwitchByPortWwn("200200C0DD00A1B2"), second);
    EXPECT_EQ(fabric.getSwitchByPortWwn("200300C0DD00A1B2"), nullptr);
}

TEST(BoolTest, HasItsWords) {
    EXPECT_STREQ(booltostr(true), "true");
    EXPECT_STREQ(booltostr(false), "false");
}

} // namespace
