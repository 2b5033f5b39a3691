// The cache and its elements as clients are compiled against them.
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>

#include "datacache/DataCache.h"

namespace {

template <class Expected, class Actual> constexpr bool is = std::is_same_v<Expected, Actual>;

// What an operation of the cache answers, whether or not it may be asked of a constant one.
#define ANSWER(...) decltype(std::declval<DataCache &>().__VA_ARGS__)
#define ANSWER_OF_CONSTANT(...) decltype(std::declval<const DataCache &>().__VA_ARGS__)

[[maybe_unused]] const std::string text;
[[maybe_unused]] const Wwn name;

// ---- the cache ------------------------------------------------------------------------------------------

static_assert(is<decltype(DataCache::getInstance), DataCache *()>);
static_assert(is<decltype(DataCache::releaseInstance), void()>);
static_assert(is<decltype(DataCache::init), bool()>);
static_assert(is<decltype(DataCache::evalThread), void *(void *)>);
static_assert(is<decltype(&DataCache::zovlibNotificationCB), zov_eventcallback_t>);
static_assert(is<decltype(DataCache::_tagToString), const char *(int)>);
static_assert(is<decltype(&DataCache::start), bool (DataCache::*)(void (*)(DataCacheEvent *))>);
static_assert(is<decltype(&DataCache::startZovlib), bool (DataCache::*)()>);
static_assert(is<decltype(&DataCache::startEventMonitor), bool (DataCache::*)(void (*)(DataCacheEvent *))>);
static_assert(is<decltype(&DataCache::startEvalThread), bool (DataCache::*)()>);
static_assert(is<decltype(&DataCache::evaluateCaches), bool (DataCache::*)()>);
static_assert(is<decltype(&DataCache::isCacheReady), bool (DataCache::*)() const>);
static_assert(is<decltype(&DataCache::isFCOESwitch), bool (DataCache::*)() const>);
static_assert(is<decltype(&DataCache::isTransparentSwitch), bool (DataCache::*)() const>);
static_assert(is<decltype(&DataCache::getFabric), FabricCache *(DataCache::*)(unsigned short) const>);
static_assert(is<ANSWER(workToDo()), bool>);
static_assert(
    is<decltype(&DataCache::zovlibEventKick), void (DataCache::*)(zov_eventcode_e, zov_eventsource_s *, const char *)>);

static_assert(is<decltype(&DataCache::getMaxRootPorts), unsigned short (DataCache::*)() const>);
static_assert(is<decltype(&DataCache::getRootPowerSupplyCount), unsigned short (DataCache::*)() const>);
static_assert(is<decltype(&DataCache::getRootSwitchWorldWideName), Wwn (DataCache::*)() const>);
static_assert(is<decltype(&DataCache::getRootSwitchWwn), std::string (DataCache::*)() const>);
static_assert(is<decltype(&DataCache::getRootSwitchDomainID), unsigned char (DataCache::*)() const>);

static_assert(is<ANSWER_OF_CONSTANT(calcPortWorldWideName(name, 0)), Wwn>);
static_assert(is<ANSWER_OF_CONSTANT(calcPortWwn(text, text)), std::string>);
static_assert(is<ANSWER(calcPortIndex(name, name)), unsigned short>);
static_assert(is<ANSWER(calcPortIndex(text, text)), std::string>);
static_assert(is<ANSWER(calcPortIndex("", "")), std::string>, "a client's literals are no names yet");
static_assert(is<ANSWER_OF_CONSTANT(getFirstRootPortIndex()), std::string>);
static_assert(is<ANSWER_OF_CONSTANT(getNextRootPortIndex(text)), std::string>);
static_assert(is<ANSWER_OF_CONSTANT(getPortType(text)), unsigned short>);
static_assert(is<ANSWER_OF_CONSTANT(getPortHWType(text)), unsigned short>);
static_assert(is<ANSWER(getTransceiverDDMSupported(text)), bool>);
static_assert(is<ANSWER(getTransceiverFormat(text)), unsigned char>);
static_assert(is<ANSWER(getTransceiverVendorOUI(text)), std::string>);
static_assert(is<ANSWER(getTransceiverVendorSN(text)), std::string>);
static_assert(is<ANSWER(getRootPortIndexForTransceiver(text, text)), std::string>);
static_assert(is<ANSWER(_sanitizedMediaVendorSN("")), std::string>);
static_assert(is<ANSWER(_fabricContainsWWN(std::vector<Wwn>(), name)), bool>);

static_assert(is<ANSWER(_smlConvToHardwareStatus("")), unsigned short>);
static_assert(is<ANSWER(smlHWTypeToCIMHWType(text)), unsigned short>);
static_assert(is<ANSWER(smlTypeToCIMType(text)), unsigned short>);
static_assert(is<ANSWER(smlPortStateToCIMOperationalStatus(text, text)), std::vector<unsigned short>>);
static_assert(is<ANSWER(smlIOBladeStateToCIMOperationalStatus(text, text, text)), std::vector<unsigned short>>);
static_assert(is<ANSWER(smlSwitchStateToCIMOperationalStatus("", {})), std::vector<unsigned short>>);

// A client may delete the cache by whatever it knows it as.
static_assert(std::has_virtual_destructor_v<DataCache>);
static_assert(std::is_convertible_v<DataCache *, ZoningCache *>, "derives from it publicly");

// ---- its elements ---------------------------------------------------------------------------------------

static_assert(is<decltype(booltostr), const char *(bool)>);

static_assert(!std::is_polymorphic_v<PortCache>);
static_assert(std::is_constructible_v<PortCache, const Wwn &, unsigned short>);
static_assert(is<decltype(PortCache::_wwn), Wwn>);
static_assert(is<decltype(PortCache::_port_index), unsigned short>);
static_assert(is<decltype(&PortCache::isNull), bool (PortCache::*)() const>);
static_assert(is<decltype(&PortCache::getWwn), std::string (PortCache::*)() const>);

static_assert(!std::is_polymorphic_v<SwitchCache>);
static_assert(is<decltype(SwitchCache::_num_ports), unsigned short>);
static_assert(is<std::decay_t<decltype(SwitchCache()._wwn_portno[0])>, unsigned short>);
static_assert(sizeof(SwitchCache::_wwn_portno) == 512);
static_assert(is<std::decay_t<decltype(SwitchCache()._port_index[0])>, unsigned char>);
static_assert(sizeof(SwitchCache::_port_index) == 256);
static_assert(is<decltype(SwitchCache::_domain_id), unsigned char>);
static_assert(is<decltype(SwitchCache::_mserver_timeout), unsigned char>);
static_assert(is<decltype(SwitchCache::_mserver_errors), unsigned char>);
static_assert(is<decltype(SwitchCache::_stale), unsigned char>);
static_assert(is<decltype(SwitchCache::_local), unsigned char>);
static_assert(is<decltype(SwitchCache::_status), unsigned char>);
static_assert(is<decltype(&SwitchCache::getWorldWideName), Wwn (SwitchCache::*)() const>);
static_assert(is<decltype(&SwitchCache::getWwn), std::string (SwitchCache::*)() const>);
static_assert(is<decltype(&SwitchCache::getDomainID), unsigned char (SwitchCache::*)() const>);
static_assert(is<decltype(&SwitchCache::isLocal), bool (SwitchCache::*)() const>);
static_assert(is<decltype(&SwitchCache::getStatus), unsigned char (SwitchCache::*)() const>);
static_assert(is<decltype(&SwitchCache::getFirstPort), PortCache (SwitchCache::*)() const>);
static_assert(is<decltype(&SwitchCache::getNextPort), PortCache (SwitchCache::*)(const PortCache &) const>);
static_assert(
    is<decltype(&SwitchCache::getPortByLSDBPortIndex), PortCache (SwitchCache::*)(const std::string &) const>);
static_assert(is<decltype(&SwitchCache::getPortByWorldWideName), PortCache (SwitchCache::*)(const Wwn &) const>);
static_assert(is<decltype(&SwitchCache::getPortByWwn), PortCache (SwitchCache::*)(const std::string &) const>);

static_assert(!std::is_polymorphic_v<FabricCache>);
static_assert(is<decltype(FabricCache::_fabric_name), Wwn>);
static_assert(is<decltype(FabricCache::_operating_mode), uint32_t>);
static_assert(is<decltype(FabricCache::_switches), List<Element<SwitchCache>>>);
static_assert(is<decltype(&FabricCache::getFabricWorldWideName), Wwn (FabricCache::*)() const>);
static_assert(is<decltype(&FabricCache::getFabricWwn), std::string (FabricCache::*)() const>);
static_assert(is<decltype(&FabricCache::getOperatingMode), uint32_t (FabricCache::*)() const>);
static_assert(is<decltype(&FabricCache::getSwitchCount), unsigned short (FabricCache::*)() const>);
static_assert(is<decltype(&FabricCache::getFirstSwitch), SwitchCache *(FabricCache::*)() const>);
static_assert(is<decltype(&FabricCache::getNextSwitch), SwitchCache *(FabricCache::*)(const SwitchCache *) const>);
static_assert(
    is<decltype(&FabricCache::getSwitchByDomainID), SwitchCache *(FabricCache::*)(const std::string &) const>);
static_assert(is<decltype(&FabricCache::getSwitchByWwn), SwitchCache *(FabricCache::*)(const std::string &) const>);
static_assert(is<decltype(&FabricCache::getSwitchByPortWwn), SwitchCache *(FabricCache::*)(const std::string &) const>);
[[maybe_unused]] Element<SwitchCache> *(FabricCache::*const byDomain)(unsigned char) const =
    &FabricCache::findSwitchCacheElement;
[[maybe_unused]] Element<SwitchCache> *(FabricCache::*const byName)(const Wwn &) const =
    &FabricCache::findSwitchCacheElement;

#undef ANSWER
#undef ANSWER_OF_CONSTANT

// ---- linkage --------------------------------------------------------------------------------------------

TEST(DataCacheSurface, ItsWordsForTruthHaveTheLinkageOfThisLanguage) {
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "booltostr"), nullptr);
    EXPECT_NE(dlsym(RTLD_DEFAULT, "_Z9booltostrb"), nullptr);
}

TEST(DataCacheSurface, OnlyTheDestructorsAreVirtual) {
    // The table begins with the offset to the top and the type; two entries for the destructor follow.
    void *table = dlsym(RTLD_DEFAULT, "_ZTV9DataCache");
    ASSERT_NE(table, nullptr);
    Dl_info info = {};
    const ElfW(Sym) *symbol = nullptr;
    ASSERT_NE(dladdr1(table, &info, reinterpret_cast<void **>(const_cast<ElfW(Sym) **>(&symbol)), RTLD_DL_SYMENT), 0);
    EXPECT_EQ(symbol->st_size, 4 * sizeof(void *));
}

} // namespace
