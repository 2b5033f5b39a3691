// The settings of the switch, and what the product is.
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "swlib/MERO_Zov_Lib.h"
#include "tests/support/Log.h"
#include "tests/support/Memory.h"
#include "tests/swlib/ScriptedSwitch.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Lines = std::vector<std::string>;

/// The getters as clients know them.
struct Getter {
    char *(*read)();
    const char *key;
    const char *line; ///< up to the value
    bool isCapital = false;
    const char *complains = nullptr; ///< of a failure, under this name
};

constexpr Getter kGetters[] = {
    {get_Switch_Telnet_Enabled, "Config.Services.TelnetEnable", "DCACHE: TelnetEnable = "},
    {get_Switch_SSH_Enabled, "Config.Services.SSHEnable", "DCACHE: SSHEnable = "},
    {get_Switch_EmbeddedGUI_Enabled, "Config.Services.EmbeddedGUIEnable", "DCACHE: EmbeddedGUIEnable= "},
    {get_Switch_SNMPReadCommunity, "Config.Snmp.ReadComm", "DCACHE: SNMP ReadComm = "},
    {is_Switch_SSLEnabled, "Config.Services.SSLEnable", "DCACHE: SSLEnable = "},
    {is_Switch_SNMP_Enabled, "Config.Services.SNMPEnable", "DCACHE: SNMPEnable = "},
    {get_Switch_IPv6Address, "Oper.System.Eth.0.IPv6Address.0", "DCACHE: IPv6Address = "},
    {get_Switch_IPv6Feature, "Oper.Switch.IPv6Feature", "DCACHE: IPv6Feature= "},
    {get_Switch_IPv6Enable, "Config.System.IPv6Enable", "DCACHE: IPv6Enable= "},
    {get_Switch_IPv4Address, "Oper.System.Eth.0.IPv4Address", "DCACHE: IPv4Address= "},
    {get_Switch_IPv4Feature, "Oper.Switch.IPv4Feature", "DCACHE: IPv4Feature= "},
    {get_Switch_IPv4Enable, "Config.System.IPv4Enable", "DCACHE: IPv4Enable= "},
    {get_Switch_PlanarPartNum, "Config.Mfg.PlanarPartNum", "DCACHE: PlanarPartNum = "},
    {get_Switch_ChassisSerialNum, "Config.Mfg.ChassisSerialNum", "DCACHE: ChassisSerialNum = "},
    {get_Switch_ChassisPartNum, "Config.Mfg.ChassisPartNum", "DCACHE: ChassisPartNum = "},
    {get_Switch_ActiveVer, "Oper.Switch.ActiveVer", "DCACHE: ActiveVersion = "},
    {get_Switch_OemActiveVer, "Oper.Switch.OemActiveVer", "DCACHE: OemActiveVer = "},
    {get_Switch_Brand_Name, "Config.Mfg.BrandName", "DCACHE: BrandName = "},
    {get_Switch_Type, "Oper.Switch.Type", "DCACHE: Switch Type = "},
    {get_Switch_Domain_ID, "Oper.Switch.DomainID", "DCACHE: DomainID = "},
    {get_Principal_Switch_World_Wide_Name, "Oper.Switch.WhoIsPrincipal",
     "DCACHE: Principal_switch_world_wide_name = ", true},
    {get_Local_Switch_World_Wide_Name, "Oper.Switch.WWN", "DCACHE: local_switch_world_wide_name = ", true,
     "get_Local_Switch_World_Wide_Name"},
};

constexpr zov_handle_t kConnection = 0x80000007;

class Settings : public testing::Test {
protected:
    Settings() {
        hSwitch = kConnection;
        scripted::get = [this](zov_handle_t handle, const char *key, char **value, uint32_t *size) {
            EXPECT_EQ(handle, kConnection);
            EXPECT_EQ(*size, 0U);
            _keys.emplace_back(key);
            if (_refused.count(key) != 0)
                return _refused.at(key);
            if (_handsOut) {
                *value = strdup(_value.c_str());
                *size = static_cast<uint32_t>(_value.size() + 1);
            }
            return 0;
        };
    }
    ~Settings() override { hSwitch = 0; }

    Lines takeKeys() {
        Lines keys;
        keys.swap(_keys);
        return keys;
    }

    /// The lines since the last time this was asked.
    Lines takeLog() {
        Lines lines = support::numberless(support::messagesSince(_mark));
        _mark += lines.size();
        return lines;
    }
    size_t criticalLines() const { return support::messagesIn(support::kCriticalLog).size(); }

    std::map<std::string, int32_t> _refused;
    std::string _value = "10:0a Fe %s%n";
    bool _handsOut = true; ///< if not, a success leaves the pointer as it was

private:
    Lines _keys;
    size_t _mark = support::logMark();
};

TEST_F(Settings, EachIsReadByItsKeyAndLoggedAsItIsReturned) {
    for (const Getter &getter : kGetters) {
        char *value = getter.read();
        const std::string expected = getter.isCapital ? "10:0A FE %S%N" : _value;
        ASSERT_NE(value, nullptr) << getter.key;
        EXPECT_EQ(value, expected) << getter.key;
        EXPECT_EQ(zov_libFreeMemory(value), 0);
        EXPECT_THAT(takeKeys(), ElementsAre(getter.key));
        EXPECT_THAT(takeLog(),
                    ElementsAre("DCACHE: zov_smlGet '" + std::string(getter.key) + "'", getter.line + expected));
    }
    EXPECT_EQ(criticalLines(), 0U);
}

TEST_F(Settings, AnEmptyValueIsAValue) {
    _value = "";
    for (const Getter &getter : kGetters) {
        char *value = getter.read();
        ASSERT_NE(value, nullptr) << getter.key;
        EXPECT_STREQ(value, "");
        zov_libFreeMemory(value);
        EXPECT_EQ(takeLog().back(), getter.line);
    }
}

TEST_F(Settings, AFailedReadGivesNullAndNoLineWithAValue) {
    for (const Getter &getter : kGetters) {
        const std::string key = getter.key;
        _refused = {{key, 23}};
        EXPECT_EQ(getter.read(), nullptr) << key;
        Lines expected = {"DCACHE: zov_smlGet '" + key + "'",
                          "CRIT:MERO_Zov_Lib:zov_smlGetV[#] zov_smlGet '" + key + "' failed, sw_ret = 0x17"};
        if (getter.complains != nullptr)
            expected.push_back("CRIT:MERO_Zov_Lib:" + std::string(getter.complains) +
                               "[#] zov_smlGet returned error code = 23");
        EXPECT_EQ(takeLog(), expected);
        EXPECT_THAT(takeKeys(), ElementsAre(key));
    }
    EXPECT_EQ(criticalLines(), std::size(kGetters) + 1);
}

TEST_F(Settings, WhatTheSwitchDoesNotHaveIsNullWithoutAFailureButForItsOwnName) {
    for (const Getter &getter : kGetters) {
        const std::string key = getter.key;
        _refused = {{key, 103}};
        EXPECT_EQ(getter.read(), nullptr) << key;
        Lines expected = {"DCACHE: zov_smlGet '" + key + "'"};
        if (getter.complains != nullptr)
            expected.push_back("CRIT:MERO_Zov_Lib:" + std::string(getter.complains) +
                               "[#] zov_smlGet returned error code = 103");
        EXPECT_EQ(takeLog(), expected);
    }
}

TEST_F(Settings, ASuccessThatBringsNoTextGivesNullAndNoLineWithAValue) {
    _handsOut = false;
    for (const Getter &getter : kGetters) {
        EXPECT_EQ(getter.read(), nullptr) << getter.key;
        EXPECT_THAT(takeLog(), ElementsAre("DCACHE: zov_smlGet '" + std::string(getter.key) + "'"));
    }
}

// ---- the product --------------------------------------------------------------------------------------

constexpr const char *kDescription = "Config.Snmp.SysDescr";
constexpr const char *kSerial = "Config.Mfg.ChassisSerialNum";
constexpr const char *kBrand = "Config.Mfg.BrandName";

class ProductInfo : public Settings {
protected:
    ProductInfo() {
        scripted::get = [this, next = scripted::get](zov_handle_t handle, const char *key, char **value,
                                                     uint32_t *size) {
            if (_size == nullptr)
                _size = size;
            EXPECT_EQ(size, _size) << "the reads share it";
            *size = 0;
            _value = std::string("of ") + key;
            return next(handle, key, value, size);
        };
        scripted::release = [this](void *text) {
            _released.emplace_back(static_cast<const char *>(text));
            return _releaseResults[_released.size() - 1];
        };
    }
    ~ProductInfo() override { scripted::release = nullptr; }

    int32_t get() { return get_Product_Info(&_description, &_copy, &_serial, &_brand); }

    char *_description = nullptr;
    char *_copy = nullptr;
    char *_serial = nullptr;
    char *_brand = nullptr;
    Lines _released;
    std::vector<int32_t> _releaseResults = {0, 0, 0, 0};

private:
    const uint32_t *_size = nullptr;
};

TEST_F(ProductInfo, GivesFourTextsOfTheCaller) {
    EXPECT_EQ(get(), 0);
    EXPECT_THAT(takeKeys(), ElementsAre(kDescription, kSerial, kBrand));
    EXPECT_THAT(takeLog(), ElementsAre("DCACHE: zov_smlGet 'Config.Snmp.SysDescr'",
                                       "DCACHE: zov_smlGet 'Config.Mfg.ChassisSerialNum'",
                                       "DCACHE: zov_smlGet 'Config.Mfg.BrandName'"));
    EXPECT_STREQ(_description, "of Config.Snmp.SysDescr");
    EXPECT_STREQ(_copy, "of Config.Snmp.SysDescr");
    EXPECT_NE(_copy, _description);
    EXPECT_STREQ(_serial, "of Config.Mfg.ChassisSerialNum");
    EXPECT_STREQ(_brand, "of Config.Mfg.BrandName");
    EXPECT_THAT(_released, IsEmpty());
    for (char *text : {_description, _copy, _serial, _brand})
        zov_libFreeMemory(text);
}

TEST_F(ProductInfo, WithoutADescriptionItsFailureIsTheResultAndNothingElseIsTouched) {
    for (const int32_t result : {5, 103, -7}) {
        _refused = {{kDescription, result}};
        char other = 'x';
        _copy = _serial = _brand = &other;
        EXPECT_EQ(get(), result);
        EXPECT_THAT(takeKeys(), ElementsAre(kDescription));
        EXPECT_EQ(_description, nullptr);
        for (char *text : {_copy, _serial, _brand})
            EXPECT_EQ(text, &other);
    }
    EXPECT_THAT(_released, IsEmpty());
}

TEST_F(ProductInfo, WithoutASerialNumberTheResultIsThatOfReleasingTheCopy) {
    for (const int32_t released : {0, 9}) {
        _refused = {{kSerial, 5}};
        _releaseResults = {released, -1};
        EXPECT_EQ(get(), released);
        EXPECT_THAT(takeKeys(), ElementsAre(kDescription, kSerial));
        EXPECT_THAT(_released, ElementsAre("of Config.Snmp.SysDescr"));
        EXPECT_STREQ(_description, "of Config.Snmp.SysDescr") << "still the caller's";
        EXPECT_EQ(_copy, nullptr);
        EXPECT_EQ(_serial, nullptr);
        EXPECT_EQ(_brand, nullptr);
        zov_libFreeMemory(_description);
        _released.clear();
    }
}

TEST_F(ProductInfo, WithoutABrandTheResultIsThatOfTheSecondRelease) {
    for (const int32_t released : {0, 9}) {
        _refused = {{kBrand, 103}};
        _releaseResults = {-1, released, -1};
        EXPECT_EQ(get(), released);
        EXPECT_THAT(takeKeys(), ElementsAre(kDescription, kSerial, kBrand));
        EXPECT_THAT(_released, ElementsAre("of Config.Snmp.SysDescr", "of Config.Mfg.ChassisSerialNum"));
        EXPECT_STREQ(_description, "of Config.Snmp.SysDescr") << "still the caller's";
        EXPECT_EQ(_copy, nullptr);
        EXPECT_EQ(_serial, nullptr);
        EXPECT_EQ(_brand, nullptr);
        zov_libFreeMemory(_description);
        _released.clear();
    }
}

TEST_F(ProductInfo, TextsThatAreNotHandedOutAreNullAndAreNotReleased) {
    _handsOut = false;
    EXPECT_EQ(get(), 0);
    for (char *text : {_description, _copy, _serial, _brand})
        EXPECT_EQ(text, nullptr);
    for (const char *key : {kSerial, kBrand}) {
        _refused = {{key, 5}};
        EXPECT_EQ(get(), 0);
    }
    EXPECT_THAT(_released, IsEmpty());
}

TEST_F(ProductInfo, WithoutMemoryThereIsNoCopy) {
    _handsOut = false;
    _description = nullptr;
    scripted::get = [](zov_handle_t, const char *, char **value, uint32_t *) {
        static char text[] = "a switch";
        *value = text;
        return 0;
    };
    int32_t result = -1;
    get(); // the first line of the log reads the time zone
    free(_copy);
    {
        const support::MemoryFailure failure(1);
        result = get();
        EXPECT_TRUE(support::MemoryFailure::happened());
    }
    EXPECT_EQ(result, 0);
    EXPECT_STREQ(_description, "a switch");
    EXPECT_EQ(_copy, nullptr);
    EXPECT_STREQ(_brand, "a switch");
}

TEST_F(ProductInfo, WithoutAPlaceForATextNothingIsRead) {
    EXPECT_EQ(get_Product_Info(nullptr, &_copy, &_serial, &_brand), 1);
    EXPECT_EQ(get_Product_Info(&_description, nullptr, &_serial, &_brand), 1);
    EXPECT_EQ(get_Product_Info(&_description, &_copy, nullptr, &_brand), 1);
    EXPECT_EQ(get_Product_Info(&_description, &_copy, &_serial, nullptr), 1);
    EXPECT_THAT(takeKeys(), IsEmpty());
    EXPECT_THAT(takeLog(), IsEmpty());
}

} // namespace
