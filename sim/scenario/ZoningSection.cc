// The zoning of a scenario file: what is defined, what of it is active, the limits.

#include <limits>

#include "sim/scenario/KeySections.h"
#include "sim/scenario/ZoningWords.h"
#include "sim/zoning/MemberId.h"

namespace sim {

namespace {

constexpr int32_t kMost = std::numeric_limits<int32_t>::max();

constexpr const char *kMemberTexts = "16 hexadecimal digits, with colons or not, of a port's name, DOMAIN:PORT with "
                                     "1:0 to 239:255, 6 hexadecimal digits of an address, or the name of an alias";

/// A zoning database, and where each of its things stands in the file.
struct PlacedDatabase {
    ZoningDatabase database;
    std::vector<FilePosition> aliases;
    std::vector<FilePosition> zones;
    std::vector<FilePosition> zonesets;
};

std::vector<ZoneMember> readMembers(Fields &fields) {
    std::vector<ZoneMember> members;
    for (const ScenarioCommand &text : fields.texts("members")) {
        const ZoneMember member = memberOf(text.text);
        if (parseMember(member.type, member.text))
            members.push_back(member);
        else
            fields.complaints().add(text.at, "no member can be '" + escaped(text.text) + "'; allowed: " + kMemberTexts);
    }
    return members;
}

std::string readName(Fields &fields) {
    return fields.require("name") ? fields.text("name").value_or("") : "";
}

zov_fzs_zone_type_e readType(Fields &fields) {
    std::vector<std::string> words;
    for (const ZoneTypeWord &known : kZoneTypes)
        words.emplace_back(known.word);
    const std::optional<std::string> word = fields.word("type", words);
    for (const ZoneTypeWord &known : kZoneTypes)
        if (word && *word == known.word)
            return known.type;
    return ZOV_ZT_SOFT;
}

/// Reads the things of one kind: `readRest` makes one of what its table says.
template <class Thing, class ReadRest>
void readThings(Fields &zoning, const char *name, const char *called, std::vector<Thing> &things,
                std::vector<FilePosition> &places, const ReadRest &readRest) {
    for (const toml::table *table : zoning.tables(name)) {
        Fields fields(*table, called, zoning.complaints());
        things.push_back(readRest(fields));
        places.push_back(fields.at());
        fields.refuseOthers();
    }
}

PlacedDatabase readDatabase(Fields &zoning) {
    PlacedDatabase placed;
    ZoningDatabase &database = placed.database;
    readThings(zoning, "alias", "an alias", database.aliases, placed.aliases, [](Fields &fields) {
        return ZoneAlias{readName(fields), readMembers(fields)};
    });
    readThings(zoning, "zone", "a zone", database.zones, placed.zones, [](Fields &fields) {
        return Zone{readName(fields), readType(fields), readMembers(fields)};
    });
    readThings(zoning, "zoneset", "a zone set", database.zonesets, placed.zonesets, [](Fields &fields) {
        ZoneSet zoneset{readName(fields), {}};
        for (const ScenarioCommand &zone : fields.texts("zones"))
            zoneset.zones.push_back(zone.text);
        return zoneset;
    });
    return placed;
}

/// Builds a database thing by thing, to find the ones that the switch refuses.
class Sifting {
public:
    explicit Sifting(Simulator &device) : _device(device) {}

    template <class Thing>
    void take(const std::vector<Thing> &things, const std::vector<FilePosition> &places,
              std::vector<Thing> ZoningDatabase::*kind) {
        for (size_t i = 0; i < things.size(); ++i) {
            (_database.*kind).push_back(things[i]);
            try {
                _device.setZoning(_database, Notify::no);
            } catch (const std::invalid_argument &error) {
                (_database.*kind).pop_back();
                refused.emplace_back(places[i], error.what());
            }
        }
    }

    PlacedRefusal::Places refused;

private:
    Simulator &_device;
    ZoningDatabase _database;
};

/// There are no limits meanwhile: the database may be larger than what an edit could make of it.
void define(Simulator &device, const PlacedDatabase &placed) {
    const zov_fzs_zoninglimits_s limits = device.zoningLimits();
    device.setZoningLimits({kMost, kMost, kMost, kMost, kMost, kMost, kMost});
    PlacedRefusal::Places refused;
    try {
        device.setZoning(placed.database, Notify::no);
    } catch (const std::invalid_argument &) {
        Sifting sifting(device);
        sifting.take(placed.database.aliases, placed.aliases, &ZoningDatabase::aliases);
        sifting.take(placed.database.zones, placed.zones, &ZoningDatabase::zones);
        sifting.take(placed.database.zonesets, placed.zonesets, &ZoningDatabase::zonesets);
        refused = sifting.refused;
    }
    device.setZoningLimits(limits);
    if (!refused.empty())
        throw PlacedRefusal(refused);
}

void planLimits(Fields &zoning, Reading &reading) {
    using Given = std::vector<std::pair<const LimitField *, int32_t>>;
    Given given;
    if (const toml::table *table = zoning.table("limits")) {
        Fields fields(*table, "the zoning limits", reading.complaints);
        for (const LimitField &field : kLimitFields)
            if (const std::optional<int64_t> limit = fields.number(field.name, 0, kMost))
                given.emplace_back(&field, static_cast<int32_t>(*limit));
        fields.refuseOthers();
    }
    reading.plan.add(Phase::conditions, zoning.at(), [given](Simulator &device) {
        zov_fzs_zoninglimits_s limits = device.zoningLimits();
        for (const auto &[field, limit] : given)
            limits.*field->limit = limit;
        device.setZoningLimits(limits);
    });
}

void planChecksum(Fields &zoning, Reading &reading, const char *name, const char *key) {
    if (const std::optional<std::string> checksum = zoning.text(name))
        planValue(reading, Phase::conditions, zoning.at(name), key, *checksum);
}

void planDatabase(Reading &reading, FilePosition at, const PlacedDatabase &placed) {
    reading.plan.add(Phase::zoning, at, [placed](Simulator &device) { define(device, placed); });
}

} // namespace

/// What was defined when the active zone set was activated comes first, where it was something else than what is now.
void readZoning(Fields &file, Reading &reading) {
    const toml::table *table = file.table("zoning");
    if (!table)
        return;
    Fields zoning(*table, "zoning", reading.complaints);
    const PlacedDatabase defined = readDatabase(zoning);
    const std::optional<std::string> active = zoning.text("active");
    const toml::table *formerly = zoning.table("formerly");
    planLimits(zoning, reading);
    if (formerly) {
        Fields fields(*formerly, "former zoning", reading.complaints);
        planDatabase(reading, fields.at(), readDatabase(fields));
        fields.refuseOthers();
    } else
        planDatabase(reading, zoning.at(), defined);
    if (active)
        reading.plan.add(Phase::zoning, zoning.at("active"),
                         [name = *active](Simulator &device) { device.activateZoneset(name, Notify::no); });
    if (formerly)
        planDatabase(reading, zoning.at(), defined);
    planChecksum(zoning, reading, "active_checksum", kActiveChecksumKey);
    planChecksum(zoning, reading, "defined_checksum", kDefinedChecksumKey);
    zoning.refuseOthers();
}

} // namespace sim
