#include "tools/dcache/settings.h"

#include "tools/dcache/cache.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/failure.h"

namespace dcache {
namespace {

/// A secret is another fact when it is shown than when it is not: whether there is one.
Fact factOf(const Setting &setting, const std::optional<std::string> &text, bool secrets) {
    const bool isMasked = setting.kind == SettingKind::secret && !secrets;
    return {isMasked ? "snmpReadCommunitySet" : setting.key, setting.label, settingCell(setting, text, secrets),
            setting.heading};
}

} // namespace

Report showSettings(bool secrets) {
    connect();
    Report report;
    bool isAnyTold = false;
    for (const Setting &setting : allSettings()) {
        const auto text = readSetting(setting);
        isAnyTold = isAnyTold || text;
        if (setting.kind == SettingKind::secret && secrets)
            report.facts.push_back({"snmpReadCommunitySet", nullptr, maskedCell(text)});
        report.facts.push_back(factOf(setting, text, secrets));
    }
    const auto description = readProductDescription();
    if (!isAnyTold && !description)
        throw Failure("the switch tells none of its settings; details are in /tmp/cim.out");
    report.facts.push_back({"productDescription", "product description", settingText(description), "Product"});
    return report;
}

} // namespace dcache
