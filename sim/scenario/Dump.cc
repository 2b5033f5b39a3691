#include "sim/scenario/Dump.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "sim/levers/Duration.h"
#include "sim/levers/RuleText.h"
#include "sim/scenario/Scenario.h"

namespace sim {

namespace {

std::vector<std::string> accountsOf(const Simulator &device) {
    std::vector<std::string> names;
    std::string name = device.get("Oper.Switch.FirstPotentialUser");
    while (!name.empty()) {
        names.push_back(name);
        name = device.get("Oper.Switch.NextPotentialUser." + names.back());
    }
    return names;
}

/// Accounts are listed in the order in which they came: those from the first difference on go, and come again.
void dumpAccounts(Dump &dump) {
    const std::vector<std::string> wanted = accountsOf(dump.now);
    size_t kept = 0;
    for (const std::string &name : accountsOf(*dump.other)) {
        if (kept < wanted.size() && wanted[kept] == name) {
            ++kept;
            continue;
        }
        dump.other->removeAccount(name, Notify::no);
        dump.accounts.under("[[account]]");
        dump.accounts.line("name", name);
        dump.accounts.flag("present", false);
    }
    for (; kept < wanted.size(); ++kept) {
        dump.other->addAccount(wanted[kept], Notify::no);
        dump.accounts.under("[[account]]");
        dump.accounts.line("name", wanted[kept]);
    }
}

/// With more of them than the profile has, the others are there before they are described.
void grow(Dump &dump) {
    for (const KeyField &field : kCountFields) {
        const std::string key = keyOf(field);
        if (std::stoul(dump.now.get(key)) > std::stoul(dump.other->get(key)))
            writeField(dump, dump.theSwitch, field);
    }
}

template <class Table> void dumpUnits(Dump &dump, TomlText &text, const KeyThing &thing, const Table &fields) {
    for (unsigned number = 0; number < countOf(dump.now, thing); ++number) {
        const std::string key = keyOf(fields[0], number);
        if (!takeOver(dump, key))
            continue;
        text.under(std::string("[[") + thing.section + "]]");
        text.line(thing.number, number);
        text.line(fields[0].name, dump.now.get(key));
    }
}

/// Not to the millisecond when it is longer than a file can say in milliseconds.
void dumpUptime(Dump &dump) {
    const std::chrono::milliseconds now = dump.now.clock();
    if (now % std::chrono::seconds(1) != std::chrono::milliseconds(0) && now <= kLongestDuration)
        dump.theSwitch.line("uptime", shownDuration(now));
    else if (dump.now.uptime() != dump.other->uptime())
        dump.theSwitch.line("uptime", dump.now.uptime());
}

void dumpConditions(Dump &dump) {
    if (dump.now.adminModeHolder() == kOtherClient)
        dump.theSwitch.line("admin_mode", "elsewhere");
    if (dump.now.zoningLockHolder() == kOtherClient)
        dump.theSwitch.line("zoning_lock", "elsewhere");
    dumpUptime(dump);
    if (dump.now.priority() != dump.other->priority())
        dump.fabric.line("priority", dump.now.priority());
    if (takeOver(dump, kPrincipalKey))
        dump.fabric.line("principal", dump.now.get(kPrincipalKey));
}

/// A number as a number, unless the reader of the file could not take it as one.
std::string numberValue(const std::string &text) {
    int64_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && stop == text.data() + text.size() ? text : tomlValue(text);
}

/// One command, or a list of them.
void dumpCommands(TomlText &text, const char *name, const std::string &commands) {
    std::vector<std::string> lines;
    for (size_t begin = 0; begin <= commands.size();) {
        const size_t end = std::min(commands.find('\n', begin), commands.size());
        lines.push_back(commands.substr(begin, end - begin));
        begin = end + 1;
    }
    if (lines.size() == 1)
        text.line(name, commands);
    else
        text.list(name, lines);
}

void dumpRule(TomlText &text, const Fault &rule) {
    text.under("[[rule]]");
    for (const SaidWord &said : ruleWordsOf(rule)) {
        const char *name = said.word->name;
        if (said.word->value == RuleValue::none)
            text.flag(name, true);
        else if (said.word->value == RuleValue::number)
            text.plain(name, numberValue(said.value));
        else if (said.word->value == RuleValue::commands)
            dumpCommands(text, name, said.value);
        else
            text.line(name, said.value);
    }
}

void dumpRules(Dump &dump) {
    for (const auto &[number, rule] : dump.now.faults()) {
        if (rule.times == 0)
            continue; // used up
        if (rule.action && rule.actionText.empty())
            dump.rules.comment("A rule with an action of its own is left out.");
        else
            dumpRule(dump.rules, rule);
    }
}

/// What no other part of the file is about.
void dumpSettings(Dump &dump) {
    for (const std::string &key : dump.now.keys()) {
        try {
            if (takeOver(dump, key))
                dump.settings.line(tomlValue(key), dump.now.stored(key));
        } catch (const std::invalid_argument &) {
            continue; // it follows from others
        }
    }
}

} // namespace

bool takeOver(Dump &dump, const std::string &key) {
    const std::string value = dump.now.stored(key);
    if (dump.other->stored(key) == value)
        return false;
    dump.other->set(key, value, Notify::no);
    return true;
}

void writeField(Dump &dump, TomlText &text, const KeyField &field, unsigned number) {
    const std::string key = keyOf(field, number);
    if (!takeOver(dump, key))
        return;
    const std::string value = dump.now.stored(key);
    text.plain(field.name, field.isNumber ? value : tomlValue(value));
}

unsigned countOf(const Simulator &device, const KeyThing &thing) {
    return static_cast<unsigned>(std::stoul(device.get(thing.countKey)));
}

std::string dumpScenario(const Simulator &device) {
    Dump dump(device);
    dump.theSwitch.under("[switch]");
    dump.settings.under("[settings]");
    dump.fabric.under("[fabric]");
    dumpPartings(dump);
    writeFields(dump, dump.theSwitch, kIdentityFields);
    dumpPeers(dump);
    grow(dump);
    writeFields(dump, dump.theSwitch, kSwitchFields);
    dumpCables(dump);
    dumpAccounts(dump);
    dumpBlades(dump);
    dumpPorts(dump);
    dumpUnits(dump, dump.supplies, kSupply, kSupplyFields);
    dumpUnits(dump, dump.fans, kFan, kFanFields);
    writeFields(dump, dump.theSwitch, kCountFields);
    dumpZoning(dump);
    dumpConditions(dump);
    dumpRules(dump);
    dumpSettings(dump);
    TomlText head;
    head.line("profile", device.profile());
    std::string text = head.text();
    for (const TomlText *part :
         {&dump.theSwitch, &dump.settings, &dump.blades, &dump.supplies, &dump.fans, &dump.ports, &dump.accounts,
          &dump.fabric, &dump.peers, &dump.links, &dump.logins, &dump.zoning, &dump.rules})
        if (!part->text().empty())
            text += "\n" + part->text();
    return text;
}

} // namespace sim
