#include "sim/record/RecordLine.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "sim/record/Scanner.h"

namespace sim {

namespace {

/// In the order of their names.
constexpr std::string_view kKinds[] = {
    "notification",
    "zov_IPConnect",
    "zov_MemberCreate",
    "zov_MemberDestroy",
    "zov_MemberGetAttr",
    "zov_ZoneAddMember",
    "zov_ZoneAliasAddMember",
    "zov_ZoneAliasCreate",
    "zov_ZoneAliasDeleteMember",
    "zov_ZoneAliasDestroy",
    "zov_ZoneAliasFindMember",
    "zov_ZoneAliasGetMemberCount",
    "zov_ZoneAliasGetName",
    "zov_ZoneAliasListMembers",
    "zov_ZoneCreate",
    "zov_ZoneCreateCopy",
    "zov_ZoneDeleteMember",
    "zov_ZoneDestroy",
    "zov_ZoneFindMember",
    "zov_ZoneGetMemberCount",
    "zov_ZoneGetName",
    "zov_ZoneGetType",
    "zov_ZoneListMembers",
    "zov_ZoneSetName",
    "zov_ZoneSetType",
    "zov_ZonesetAddAlias",
    "zov_ZonesetAddZone",
    "zov_ZonesetCreate",
    "zov_ZonesetDestroy",
    "zov_ZonesetFindAlias",
    "zov_ZonesetFindZone",
    "zov_ZonesetGetAliasCount",
    "zov_ZonesetGetName",
    "zov_ZonesetGetZoneCount",
    "zov_ZonesetListAliases",
    "zov_ZonesetListZones",
    "zov_ZonesetRemoveAlias",
    "zov_ZonesetRemoveZone",
    "zov_ZonesetTestName",
    "zov_enRegisterForEventList",
    "zov_fzsGetActiveZoneset",
    "zov_fzsGetActiveZonesetName",
    "zov_fzsGetAllZonesAndAliases",
    "zov_fzsGetZoneset",
    "zov_fzsGetZonesetList",
    "zov_fzsGetZoningLimitations",
    "zov_libFreeMemory",
    "zov_smlGet",
    "zov_smlGetBatch",
    "zov_smlSet",
    "zov_smlSetBatch",
    "zov_strToMemberIdentifier",
};

[[noreturn]] void refuse(const std::string &what) {
    throw std::invalid_argument(what);
}

/// The connection, if the arguments begin with one. Those of a call without one never begin with a digit.
void takeClient(Scanner &arguments, Record &record) {
    Scanner ahead = arguments;
    const std::optional<uint32_t> client = ahead.number<uint32_t>();
    if (!client || (!ahead.atEnd() && !ahead.take(", ")))
        return;
    record.client = *client;
    arguments = ahead;
}

void takeArguments(Scanner &line, Record &record) {
    if (!line.take("("))
        refuse("a '(' must follow the name of the call");
    const std::optional<std::string_view> text = line.beforeUnquoted(')');
    if (!text)
        refuse("the arguments do not end with ')'");
    line.take(")");
    Scanner arguments(*text);
    takeClient(arguments, record);
    record.arguments = std::string(arguments.rest());
}

void takeResult(Scanner &line, Record &record) {
    const std::optional<int32_t> result = line.take(" = ") ? line.number<int32_t>() : std::nullopt;
    if (!result)
        refuse("' = ' and the result of the call must follow its arguments");
    record.result = *result;
}

/// The key as it is shown goes up to the '=' before the first quotation mark that is not part of it.
std::string takeKey(Scanner &line) {
    const std::string_view rest = line.rest();
    size_t end = 0;
    while (end < rest.size() && rest[end] != '"')
        end += rest[end] == '\\' ? 2 : 1;
    const bool hasSign = end < rest.size() && end > 0 && rest[end - 1] == '=';
    const std::optional<std::string> key = hasSign ? unescaped(rest.substr(0, end - 1)) : std::nullopt;
    if (!key)
        refuse("KEY=\"VALUE\" must stand at '" + std::string(rest.substr(0, 40)) + "'");
    line = Scanner(rest.substr(end));
    return *key;
}

Exchange takeExchange(Scanner &line) {
    Exchange exchange;
    exchange.key = takeKey(line);
    const std::optional<std::string> value = line.quotedText();
    if (!value)
        refuse("the value of '" + exchange.key + "' is not a text in quotes");
    exchange.value = *value;
    if (line.take(" status ")) {
        const std::optional<int32_t> status = line.number<int32_t>();
        if (!status)
            refuse("the status of '" + exchange.key + "' is not a number");
        exchange.status = *status;
    }
    return exchange;
}

} // namespace

bool isKindOfRecord(std::string_view call) {
    return std::binary_search(std::begin(kKinds), std::end(kKinds), call);
}

Record parseRecord(const std::string &line) {
    Record record;
    Scanner scanner(line);
    record.call = std::string(scanner.before('('));
    if (!isKindOfRecord(record.call))
        refuse("'" + record.call + "' is no kind of record");
    takeArguments(scanner, record);
    if (record.call != "notification")
        takeResult(scanner, record);
    if (scanner.take(": "))
        do
            record.exchanges.push_back(takeExchange(scanner));
        while (scanner.take(", "));
    if (scanner.take(" -> ")) {
        record.handedOut = std::string(scanner.rest());
        if (record.handedOut.empty())
            refuse("nothing follows ' -> '");
    } else if (!scanner.atEnd()) {
        refuse("the line should end at '" + std::string(scanner.rest().substr(0, 40)) + "'");
    }
    return record;
}

} // namespace sim
