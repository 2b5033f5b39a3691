#include "tools/dcache/render.h"

#include <algorithm>
#include <cstddef>
#include <fmt/format.h>
#include <utility>

#include "tools/dcache/json.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

constexpr size_t kGap = 2; // blanks between columns

const char *escapeCode(Tone tone) {
    switch (tone) {
    case Tone::good:
        return "\x1b[32m";
    case Tone::bad:
        return "\x1b[1;31m";
    case Tone::faint:
        return "\x1b[2m";
    case Tone::accent:
        return "\x1b[1m";
    case Tone::plain:
        break;
    }
    return "";
}

std::string pad(const std::string &text, size_t width) {
    return std::string(width > text.size() ? width - text.size() : 0, ' ');
}

std::string factsTable(const std::vector<Fact> &facts, bool colour) {
    size_t width = 0;
    for (const Fact &fact : facts)
        width = std::max(width, fact.label != nullptr ? std::string(fact.label).size() : 0);
    std::string out;
    for (const Fact &fact : facts) {
        if (fact.heading != nullptr)
            out += (out.empty() ? "" : "\n") + painted(fact.heading, Tone::accent, colour) + '\n';
        if (fact.label != nullptr)
            out += fact.label + pad(fact.label, width + kGap) + painted(fact.cell.text, fact.cell.tone, colour) + '\n';
    }
    return out;
}

bool isForPeople(const Listing &listing) {
    return std::any_of(listing.columns.begin(), listing.columns.end(),
                       [](const Column &column) { return column.title != nullptr; });
}

/// The titles and rows that people see: without the columns that have no title.
std::vector<std::vector<Cell>> visibleLines(const Listing &listing) {
    std::vector<std::vector<Cell>> lines(1 + listing.rows.size());
    for (size_t i = 0; i < listing.columns.size(); ++i) {
        if (listing.columns[i].title == nullptr)
            continue;
        lines.front().push_back({nullptr, listing.columns[i].title, Tone::accent});
        for (size_t row = 0; row < listing.rows.size(); ++row)
            lines[row + 1].push_back(listing.rows[row][i]);
    }
    return lines;
}

/// The line of a text with this number, from 0; empty when it has none.
std::string lineOf(const std::string &text, size_t number) {
    size_t begin = 0;
    for (; number > 0 && begin != std::string::npos; --number) {
        const size_t end = text.find('\n', begin);
        begin = end != std::string::npos ? end + 1 : end;
    }
    return begin != std::string::npos ? text.substr(begin, text.find('\n', begin) - begin) : "";
}

/// A line of cells, as so many lines as the highest of them takes.
std::vector<std::vector<Cell>> split(const std::vector<Cell> &line) {
    std::ptrdiff_t height = 1;
    for (const Cell &cell : line)
        height = std::max(height, 1 + std::count(cell.text.begin(), cell.text.end(), '\n'));
    std::vector<std::vector<Cell>> parts(static_cast<size_t>(height));
    for (size_t i = 0; i < parts.size(); ++i)
        for (const Cell &cell : line)
            parts[i].push_back({nullptr, lineOf(cell.text, i), cell.tone});
    return parts;
}

std::string listingTable(const Listing &listing, bool colour) {
    if (listing.rows.empty() && !listing.whenEmpty.empty())
        return listing.whenEmpty + '\n';
    std::vector<std::vector<Cell>> lines;
    for (const auto &line : visibleLines(listing))
        for (auto &part : split(line))
            lines.push_back(std::move(part));
    std::vector<size_t> widths(lines.front().size(), 0);
    for (const auto &line : lines)
        for (size_t i = 0; i < widths.size(); ++i)
            widths[i] = std::max(widths[i], line[i].text.size());
    std::string out;
    for (const auto &line : lines) {
        for (size_t i = 0; i < widths.size(); ++i) {
            out += line[i].text.empty() ? "" : painted(line[i].text, line[i].tone, colour);
            out += i + 1 < widths.size() ? pad(line[i].text, widths[i] + kGap) : "\n";
        }
    }
    return out;
}

std::string table(const Report &report, bool colour) {
    std::string out = factsTable(report.facts, colour);
    for (const Listing &listing : report.listings)
        if (isForPeople(listing))
            out += (out.empty() ? "" : "\n") + listingTable(listing, colour);
    if (!out.empty() && !report.notes.empty())
        out += '\n';
    for (const std::string &note : report.notes)
        out += note + '\n';
    return out;
}

Json object(const Report &report) {
    Json out = Json::object();
    for (const Fact &fact : report.facts)
        out[fact.key] = toJson(fact.cell.value);
    for (const Listing &listing : report.listings) {
        auto &array = out[listing.key] = Json::array();
        for (const auto &row : listing.rows) {
            Json element = Json::object();
            for (size_t i = 0; i < row.size(); ++i)
                element[listing.columns[i].key] = toJson(row[i].value);
            array.push_back(element);
        }
    }
    return out;
}

std::string terse(const Report &report) {
    std::string out;
    for (const Fact &fact : report.facts)
        out += fmt::format("{}={}\n", fact.key, terseValue(fact.cell.value));
    for (const Listing &listing : report.listings) {
        for (size_t row = 0; row < listing.rows.size(); ++row) {
            for (size_t i = 0; i < listing.columns.size(); ++i) {
                out += fmt::format("{}.{}.{}={}\n", listing.key, row + 1, listing.columns[i].key,
                                   terseValue(listing.rows[row][i].value));
            }
        }
    }
    return out;
}

} // namespace

std::string render(const Report &report, Format format, bool colour) {
    switch (format) {
    case Format::json:
        return jsonText(object(report), 2);
    case Format::terse:
        return terse(report);
    case Format::table:
        break;
    }
    return table(report, colour);
}

std::string terseValue(const Value &value) {
    struct Terse {
        std::string operator()(std::nullptr_t) const { return ""; }
        std::string operator()(bool truth) const { return truth ? "true" : "false"; }
        std::string operator()(long long number) const { return std::to_string(number); }
        std::string operator()(const std::string &text) const { return printable(text); }
        std::string operator()(const Value::List &list) const {
            std::string all;
            for (const Value &element : list)
                all += (all.empty() ? "" : ",") + terseValue(element);
            return all;
        }
    };
    return std::visit(Terse(), value.content());
}

std::string painted(const std::string &text, Tone tone, bool colour) {
    return !colour || tone == Tone::plain ? text : escapeCode(tone) + text + "\x1b[0m";
}

} // namespace dcache
