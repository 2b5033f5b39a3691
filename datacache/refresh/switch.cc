#include "datacache/DataCache.h"
#include "datacache/SmlEntries.h"
#include "datacache/refresh/failure.h"

int DataCache::_getSwitchInfo() {
    cim_log(CIM_LOG_INFO, "DCACHE: _getSwitchInfo()\n");

    SmlEntries entries;
    const int principalRow = entries.add("Oper.Switch.WhoIsPrincipal");
    const int wwnRow = entries.add("Oper.Switch.WWN");
    const int stateRow = entries.add("Oper.Switch.OperState");
    const int transparentFeatureRow = entries.add("Oper.Switch.TransparentModeFeature");
    const int transparentModeRow = entries.add("Config.Switch.TransparentMode");
    entries.add("Config.Mfg.ProductFeatureType"); // read for the record of the exchange; nothing depends on it
    const int fcoeRow = entries.add("Oper.Switch.FCOEFeature");
    const int passthroughRow = entries.add("Oper.Switch.EthernetPassthroughFeature");
    if (!entries.get(_hSwitch))
        return refreshFailed("_getSwitchInfo", 1376);

    const Wwn principal(entries[principalRow].text());
    const Wwn wwn(entries[wwnRow].text());
    if (wwn == Wwn())
        return refreshFailed("_getSwitchInfo", 1393);

    _prevSwitch = _switch;
    _switch.wwn = wwn;
    // The chassis is refreshed after the switch: its faults are those of its last good refresh.
    _switch.status = smlSwitchStateToCIMOperationalStatus(entries[stateRow].text(),
                                                          _chassis.loaded ? getSwitchFaults() : StatusList());
    _switch.transparent = entries[transparentFeatureRow].is("True") && entries[transparentModeRow].is("True");
    _switch.fcoe = entries[fcoeRow].is("True");
    _switch.ethernetPassthrough = entries[passthroughRow].is("True");

    if (_switch.loaded && _switch.status != _prevSwitch.status) {
        _deliver(DCEventSwitchStatusChange(_switch.wwn, principal, _prevSwitch.status, _switch.status));
    }
    _switch.loaded = true;
    return 1;
}
