#include "tools/dcache/commands/commands.h"

#include <gmock/gmock.h>

#include "sim/Simulator.h"
#include "tests/tools/Json.h"
#include "tools/dcache/commands/facts.h"
#include "tools/dcache/failure.h"

using namespace dcache;
using testing::HasSubstr;
using testing::ThrowsMessage;

namespace {

class Commands : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> _switch = sim::create();
};

sim::Fault refuse(const char *key) {
    sim::Fault fault;
    fault.key = key;
    fault.status = 7;
    fault.times = -1;
    return fault;
}

} // namespace

TEST_F(Commands, TheSwitchIsShownWithItsFaultsAlthoughTheyAreReadAfterItsStatus) {
    _switch->set("Oper.Switch.FaultList", "HW_X FW_POST_FAIL", sim::Notify::no);
    _switch->set("Oper.Switch.FCOEFeature", "True", sim::Notify::no);
    EXPECT_EQ(render(showSwitch(), Format::terse, false), "wwn=10:00:00:C0:DD:00:A1:B2\n"
                                                          "operationalStatus=6,32768,0\n"
                                                          "state=Error\n"
                                                          "faults=self-test failed\n"
                                                          "transparent=false\n"
                                                          "fcoe=true\n"
                                                          "ethernetPassthrough=false\n");
}

TEST_F(Commands, ASwitchThatExpectsToFailShowsBothStates) {
    _switch->set("Oper.Switch.FaultList", "HW_MP_ACCESS_CPU1", sim::Notify::no);
    const std::string table = render(showSwitch(), Format::table, false);
    EXPECT_THAT(table, HasSubstr("operational status     OK (2), Predictive Failure (5)\n"));
    EXPECT_THAT(table, HasSubstr("faults                 management-processor fault (32769)\n"));
}

TEST_F(Commands, ASwitchWithoutAReadableChassisIsShownWithoutFaults) {
    _switch->addFault(refuse("Oper.Chassis.0.Fan.1"));
    const std::string table = render(showSwitch(), Format::table, false);
    EXPECT_THAT(table, HasSubstr("operational status     OK (2)\n"));
    EXPECT_THAT(table, HasSubstr("faults                 not read\n"));
}

TEST_F(Commands, ASwitchThatCannotBeReadIsAFailureThatNamesTheArea) {
    _switch->addFault(refuse("Oper.Switch.OperState"));
    EXPECT_THAT(showSwitch, ThrowsMessage<Failure>(HasSubstr("the switch data could not be read")));
}

TEST_F(Commands, EverySupplyAndFanOfTheChassisIsShownInItsState) {
    _switch->set("Oper.Chassis.0.PowerSupply.1", "Bad", sim::Notify::no);
    _switch->set("Oper.Chassis.0.Fan.2", "NotInstalled", sim::Notify::no);
    EXPECT_EQ(render(showChassis(), Format::table, false), "slots   none (single-slot chassis)\n"
                                                           "faults  none\n"
                                                           "\n"
                                                           "POWER SUPPLY  STATE\n"
                                                           "1             good\n"
                                                           "2             bad\n"
                                                           "\n"
                                                           "FAN  STATE\n"
                                                           "1    good\n"
                                                           "2    good\n"
                                                           "3    not installed\n");
}

TEST_F(Commands, AChassisThatCannotBeReadIsAFailureThatNamesTheArea) {
    _switch->addFault(refuse("Oper.Chassis.0.PowerSupply.0"));
    EXPECT_THAT(showChassis, ThrowsMessage<Failure>(HasSubstr("the chassis data could not be read")));
}

TEST_F(Commands, AChassisWithSlotsTellsHowMany) {
    _switch->set("Oper.Chassis.0.MaxSlots", "8", sim::Notify::no);
    EXPECT_THAT(render(showChassis(), Format::terse, false), testing::StartsWith("slots=8\nfaults=\n"));
}

TEST_F(Commands, AccountsAreListedInTheOrderOfTheSwitchAndMadePrintable) {
    _switch->addAccount("ann", sim::Notify::no);
    EXPECT_EQ(render(showAccounts(), Format::table, false), "ACCOUNT\n"
                                                            "admin\n"
                                                            "operator\n"
                                                            "monitor\n"
                                                            "ann\n");
}

TEST_F(Commands, AnAccountNameCannotReachATerminalUnprinted) {
    sim::Fault strange;
    strange.key = "Oper.Switch.NextPotentialUser.admin";
    strange.value = "o\x1b[2Jp";
    strange.times = -1;
    _switch->addFault(strange);
    sim::Fault end;
    end.key = "Oper.Switch.NextPotentialUser.o*";
    end.status = 24;
    end.times = -1;
    _switch->addFault(end);
    const Report report = showAccounts();
    EXPECT_EQ(render(report, Format::table, false), "ACCOUNT\nadmin\no\\x1B[2Jp\n");
    EXPECT_EQ(jsonOf(report).at("accounts").at(1).at("name"), "o\x1b[2Jp");
}

TEST_F(Commands, ASwitchWithoutAccountsSaysSo) {
    for (const char *name : {"admin", "operator", "monitor"})
        _switch->removeAccount(name, sim::Notify::no);
    EXPECT_EQ(render(showAccounts(), Format::table, false), "The switch has no user accounts.\n");
}

TEST_F(Commands, AccountsThatCannotBeReadAreAFailureThatNamesTheArea) {
    _switch->addFault(refuse("Oper.Switch.NextPotentialUser.*"));
    EXPECT_THAT(showAccounts, ThrowsMessage<Failure>(HasSubstr("the accounts data could not be read")));
}

TEST(Cells, AnEmptyCellIsNullForPrograms) {
    EXPECT_EQ(emptyCell("-").value, Value());
    EXPECT_EQ(emptyCell("-").text, "-");
}

TEST(Faults, ZerosAreNoFaultsAndAnEmptyListHasNotBeenRead) {
    EXPECT_EQ(faultsCell({}).text, "not read");
    EXPECT_EQ(faultsCell({0, 0}).text, "none");
    EXPECT_EQ(faultsCell({0, 0}).value, Value::List());
    EXPECT_EQ(faultsCell({32768, 32769}).text, "self-test failed (32768), management-processor fault (32769)");
    EXPECT_EQ(faultsCell({0, 32769}).value, Value::List{"management-processor fault"});
}
