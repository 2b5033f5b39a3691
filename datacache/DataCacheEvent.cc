#include "datacache/DataCacheEvent.h"

// Each class has its destructor here, so that its type is known to the dynamic linker once for library and client.
DataCacheEvent::~DataCacheEvent() = default;
DCEventFabricAdd::~DCEventFabricAdd() = default;
DCEventFabricRemove::~DCEventFabricRemove() = default;
DCEventFabricChange::~DCEventFabricChange() = default;
DCEventSwitchAdd::~DCEventSwitchAdd() = default;
DCEventSwitchRemove::~DCEventSwitchRemove() = default;
DCEventSwitchStatusChange::~DCEventSwitchStatusChange() = default;
DCEventBladeAdd::~DCEventBladeAdd() = default;
DCEventBladeRemove::~DCEventBladeRemove() = default;
DCEventPortAdd::~DCEventPortAdd() = default;
DCEventPortRemove::~DCEventPortRemove() = default;
DCEventPortStatusChange::~DCEventPortStatusChange() = default;
DCEventFanAdd::~DCEventFanAdd() = default;
DCEventFanRemove::~DCEventFanRemove() = default;
DCEventPowerSupplyAdd::~DCEventPowerSupplyAdd() = default;
DCEventPowerSupplyRemove::~DCEventPowerSupplyRemove() = default;
DCEventPowerSupplyFail::~DCEventPowerSupplyFail() = default;
DCEventCPUAdd::~DCEventCPUAdd() = default;
DCEventCPURemove::~DCEventCPURemove() = default;
DCEventUserAcctAdd::~DCEventUserAcctAdd() = default;
DCEventUserAcctRemove::~DCEventUserAcctRemove() = default;
DCEventActiveZonesetChange::~DCEventActiveZonesetChange() = default;
DCEventZoningDBChange::~DCEventZoningDBChange() = default;
DCEventUserPasswdChg::~DCEventUserPasswdChg() = default;
DCEventUserLoginFailure::~DCEventUserLoginFailure() = default;
DCEventEnvEvent::~DCEventEnvEvent() = default;
DCEventCIMChange::~DCEventCIMChange() = default;
DCEventDataCacheUpdateComplete::~DCEventDataCacheUpdateComplete() = default;

DCEventFabricChange::DCEventFabricChange(const Wwn &fabric, bool switchesAdded)
    : DataCacheEvent(3), fabricWwn(fabric), added(switchesAdded) {}

DCEventSwitchAdd::DCEventSwitchAdd(const Wwn &fabric, const Wwn &theSwitch)
    : DataCacheEvent(4), fabricWwn(fabric), switchWwn(theSwitch) {}

DCEventEnvEvent::DCEventEnvEvent(const Wwn &theSwitch, const std::string &what, const std::string &how,
                                 const std::string &where)
    : DataCacheEvent(31), switchWwn(theSwitch), category(what), kind(how), detail(where) {}
