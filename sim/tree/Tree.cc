#include "sim/tree/Tree.h"

#include <map>
#include <optional>

#include "sim/model/LinkState.h"
#include "sim/model/NameServer.h"
#include "sim/model/Switch.h"
#include "sim/model/TopologyEntries.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

using Domain = Rows (*)();

constexpr Domain kDomains[] = {identityRows,   portsRows,           chassisRows,  bladesRows,
                               accountsRows,   manufacturingRows,   settingsRows, linkStateRows,
                               nameServerRows, topologyEntriesRows, zoningRows};

constexpr char kPlaceholder = '%';
constexpr size_t kPlaceholderSize = 2; // "%u", "%s"

/// A row's pattern taken apart: what stands before its placeholders, between them, and after them.
struct Form {
    const Row *row;
    std::string_view start;
    std::string_view middle;
    std::string_view end;
};

/// Takes the text up to the next placeholder off a pattern, and the placeholder with it.
std::string_view takePiece(std::string_view &pattern) {
    const std::string_view piece = pattern.substr(0, pattern.find(kPlaceholder));
    pattern.remove_prefix(piece.size() < pattern.size() ? piece.size() + kPlaceholderSize : pattern.size());
    return piece;
}

Form formOf(const Row &row) {
    std::string_view pattern = row.pattern;
    Form form = {&row, takePiece(pattern), {}, {}};
    if (row.innerAxis)
        form.middle = takePiece(pattern);
    form.end = pattern;
    return form;
}

/// The first two parts of a key. No pattern has a placeholder in them.
std::string_view branchOf(std::string_view key) {
    const size_t dot = key.find('.');
    return dot == std::string_view::npos ? key : key.substr(0, key.find('.', dot + 1));
}

using Branches = std::map<std::string_view, std::vector<Form>>;

Branches makeBranches() {
    Branches branches;
    for (const Domain rows : kDomains)
        for (const Row &row : rows())
            branches[branchOf(row.pattern)].push_back(formOf(row));
    return branches;
}

/// The forms of a branch, null for an unknown one. Never destroyed: clients may call while the process ends.
const std::vector<Form> *formsOf(std::string_view branch) {
    static const Branches &branches = *new Branches(makeBranches());
    const auto found = branches.find(branch);
    return found == branches.end() ? nullptr : &found->second;
}

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

/// What a key has in the place of its form's placeholders; none when the key is not of the form.
std::optional<std::string_view> placed(const Form &form, std::string_view key) {
    const size_t around = form.start.size() + form.end.size();
    if (key.size() < around || !startsWith(key, form.start) || !endsWith(key, form.end))
        return std::nullopt;
    return key.substr(form.start.size(), key.size() - around);
}

bool has(const Switch &device, const Axis &axis, unsigned outer, unsigned number) {
    return number < axis.limit(device, outer) && (!axis.has || axis.has(device, outer, number));
}

std::optional<unsigned> numberOf(const Switch &device, const Axis &axis, unsigned outer, std::string_view text) {
    const std::optional<unsigned> number = axis.find ? axis.find(device, outer, text) : toNumber(text);
    return number && has(device, axis, outer, *number) ? number : std::nullopt;
}

/// The index in a key of this form; none when the key is not one of the row.
std::optional<Index> match(const Switch &device, const Form &form, std::string_view key) {
    const Row &row = *form.row;
    if (!row.axis)
        return key == form.start ? std::optional<Index>(Index()) : std::nullopt;
    const std::optional<std::string_view> text = placed(form, key);
    if (!text)
        return std::nullopt;
    const size_t split = row.innerAxis ? text->find(form.middle) : text->size();
    if (split == std::string_view::npos)
        return std::nullopt;
    const std::optional<unsigned> first = numberOf(device, *row.axis, 0, text->substr(0, split));
    if (!first || !row.innerAxis)
        return first ? std::optional<Index>(Index{*first, 0}) : std::nullopt;
    const std::optional<unsigned> second =
        numberOf(device, *row.innerAxis, *first, text->substr(split + form.middle.size()));
    return second ? std::optional<Index>(Index{*first, *second}) : std::nullopt;
}

std::string textOf(const Switch &device, const Axis &axis, unsigned outer, unsigned number) {
    return axis.name ? axis.name(device, outer, number) : std::to_string(number);
}

/// Does something with each number there is.
template <class Action> void forEach(const Switch &device, const Axis &axis, unsigned outer, const Action &action) {
    const unsigned limit = axis.limit(device, outer);
    for (unsigned number = 0; number < limit; ++number)
        if (has(device, axis, outer, number))
            action(number);
}

void appendKeys(const Switch &device, const Row &row, std::vector<std::string> &keys) {
    const Form form = formOf(row);
    if (!row.axis) {
        keys.emplace_back(form.start);
        return;
    }
    forEach(device, *row.axis, 0, [&](unsigned first) {
        const std::string begin = std::string(form.start) + textOf(device, *row.axis, 0, first);
        if (!row.innerAxis) {
            keys.push_back(begin + std::string(form.end));
            return;
        }
        forEach(device, *row.innerAxis, first, [&](unsigned second) {
            keys.push_back(begin + std::string(form.middle) + textOf(device, *row.innerAxis, first, second) +
                           std::string(form.end));
        });
    });
}

} // namespace

Attribute findAttribute(const Switch &device, std::string_view key) {
    const std::vector<Form> *forms = formsOf(branchOf(key));
    if (!forms)
        return {};
    for (const Form &form : *forms)
        if (const std::optional<Index> index = match(device, form, key))
            return {form.row, *index};
    return {};
}

std::vector<std::string> allKeys(const Switch &device) {
    std::vector<std::string> keys;
    for (const Domain rows : kDomains)
        for (const Row &row : rows())
            appendKeys(device, row, keys);
    return keys;
}

} // namespace sim
