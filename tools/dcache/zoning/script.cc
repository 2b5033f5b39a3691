#include "tools/dcache/zoning/script.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <optional>

#include "tools/dcache/failure.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

using Words = std::vector<std::string>;

constexpr size_t kLongestName = 64;

/// What a statement is about, in the words of its usage.
enum class Part { nothing, set, zone, alias, zoneOfSet, type, member };

/// Where a statement may stand.
enum class Place { everywhere, edits, description };

struct Form {
    StatementKind kind;
    const char *verb;
    const char *noun; ///< null: the verb stands alone
    std::array<Part, 2> parts;
    Place place;
};

// clang-format off
constexpr std::array<Form, 16> kForms = {{
    {StatementKind::createSet, "create", "set", {Part::set, Part::nothing}, Place::everywhere},
    {StatementKind::createZone, "create", "zone", {Part::zone, Part::type}, Place::everywhere},
    {StatementKind::createAlias, "create", "alias", {Part::alias, Part::nothing}, Place::everywhere},
    {StatementKind::deleteSet, "delete", "set", {Part::set, Part::nothing}, Place::edits},
    {StatementKind::deleteZone, "delete", "zone", {Part::zone, Part::nothing}, Place::edits},
    {StatementKind::deleteAlias, "delete", "alias", {Part::alias, Part::nothing}, Place::edits},
    {StatementKind::addZone, "add", "zone", {Part::set, Part::zoneOfSet}, Place::everywhere},
    {StatementKind::removeZone, "remove", "zone", {Part::set, Part::zoneOfSet}, Place::edits},
    {StatementKind::addMember, "add", "member", {Part::zone, Part::member}, Place::everywhere},
    {StatementKind::removeMember, "remove", "member", {Part::zone, Part::member}, Place::edits},
    {StatementKind::addAliasMember, "add", "alias-member", {Part::alias, Part::member}, Place::everywhere},
    {StatementKind::removeAliasMember, "remove", "alias-member", {Part::alias, Part::member}, Place::edits},
    {StatementKind::removeEverywhere, "remove", "everywhere", {Part::member, Part::nothing}, Place::edits},
    {StatementKind::commit, "commit", nullptr, {Part::nothing, Part::nothing}, Place::everywhere},
    {StatementKind::activate, "activate", nullptr, {Part::set, Part::nothing}, Place::description},
    {StatementKind::lock, "lock", nullptr, {Part::nothing, Part::nothing}, Place::description},
}};
// clang-format on

constexpr std::array<const char *, 7> kPartWords = {"", "SET", "ZONE", "ALIAS", "ZONE", "acl|soft|vpf", "MEMBER"};

struct TypeRow {
    zov_fzs_zone_type_e type;
    const char *word;
};
constexpr std::array<TypeRow, 3> kTypes = {{{ZOV_ZT_HARDACL, "acl"}, {ZOV_ZT_SOFT, "soft"}, {ZOV_ZT_HARDVPF, "vpf"}}};

std::string usage(const Form &form) {
    std::string text = form.verb;
    if (form.noun != nullptr)
        text += std::string(" ") + form.noun;
    for (const Part part : form.parts)
        if (part != Part::nothing)
            text += std::string(" ") + kPartWords.at(static_cast<size_t>(part));
    return text;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

/// The words of a line, without its comment.
Words wordsOf(std::string_view line) {
    Words words;
    for (size_t i = 0; i < line.size();) {
        if (isBlank(line[i])) {
            ++i;
            continue;
        }
        if (line[i] == '#')
            break;
        const size_t begin = i;
        while (i < line.size() && !isBlank(line[i]))
            ++i;
        words.emplace_back(line.substr(begin, i - begin));
    }
    return words;
}

const Form *findForm(const Words &words) {
    const auto found = std::find_if(kForms.begin(), kForms.end(), [&words](const Form &form) {
        return words[0] == form.verb && (form.noun == nullptr || (words.size() > 1 && words[1] == form.noun));
    });
    return found != kForms.end() ? &*found : nullptr;
}

/// Whether it can be a name at all; its characters are up to the switch, but for a bracket in front, with which
/// the cache marks entries of its own.
bool canBeName(const std::string &word) {
    return word.size() <= kLongestName && word.front() != '[' && printable(word) == word;
}

/// Reads the parts of one statement from its words.
class PartReader {
public:
    PartReader(const Words &words, size_t next) : _words(words), _next(next) {}

    /// Empty when the part is there and fine.
    std::string read(Part part, Statement &statement) {
        if (part == Part::nothing)
            return "";
        if (_next == _words.size())
            return kIncomplete;
        switch (part) {
        case Part::type:
            return readType(statement.type);
        case Part::member:
            return readMember(statement.member);
        case Part::zoneOfSet:
            return readName(statement.zone);
        default:
            return readName(statement.name);
        }
    }

    bool isAtEnd() const { return _next == _words.size(); }

    static constexpr const char *kIncomplete = "?"; // stands for: show how the whole statement is written

private:
    std::string readName(std::string &name) {
        name = _words[_next++];
        return canBeName(name) ? "" : fmt::format("{} cannot be a name", inQuotes(name));
    }

    std::string readType(zov_fzs_zone_type_e &type) {
        const std::string &word = _words[_next++];
        for (const TypeRow &row : kTypes)
            if (word == row.word)
                type = row.type;
        return type != ZOV_ZT_INVALID ? "" : fmt::format("{} is not a zone type: acl, soft or vpf", inQuotes(word));
    }

    std::string readMember(Member &member) {
        const std::string &word = _words[_next++];
        if (word == "alias") {
            if (_next == _words.size())
                return kIncomplete;
            member.type = ZOV_ZMT_ALIAS;
            return readName(member.text);
        }
        const std::optional<Member> read = memberFrom(word);
        if (!read)
            return fmt::format(
                "{} is not a member: a port name, DOMAIN:PORT, six hexadecimal digits, or \"alias NAME\"",
                inQuotes(word));
        member = *read;
        return "";
    }

    const Words &_words;
    size_t _next;
};

/// Empty, or why this is no statement.
std::string parseLine(const Words &words, ScriptPurpose purpose, Statement &statement) {
    const Form *form = findForm(words);
    if (form == nullptr)
        return fmt::format("{} is not a statement", inQuotes(words.size() > 1 ? words[0] + " " + words[1] : words[0]));
    if (form->place == Place::description && purpose == ScriptPurpose::edits)
        return fmt::format("\"{}\" describes a switch, it is no edit", form->verb);
    if (form->place == Place::edits && purpose == ScriptPurpose::description)
        return fmt::format("\"{}\" is an edit, it describes nothing", form->verb);
    statement.kind = form->kind;
    PartReader reader(words, form->noun != nullptr ? 2 : 1);
    std::string error;
    for (const Part part : form->parts)
        if (error.empty())
            error = reader.read(part, statement);
    if (error == PartReader::kIncomplete || (error.empty() && !reader.isAtEnd()))
        return fmt::format("expected \"{}\"", usage(*form));
    return error;
}

} // namespace

Script parseScript(std::string_view text, ScriptPurpose purpose) {
    Script script;
    int commitLine = 0;
    for (int number = 1; !text.empty(); ++number) {
        const size_t end = std::min(text.find('\n'), text.size());
        const Words words = wordsOf(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (words.empty())
            continue;
        Statement statement;
        statement.line = number;
        std::string error = parseLine(words, purpose, statement);
        if (error.empty() && commitLine != 0 && purpose == ScriptPurpose::edits)
            error = fmt::format("nothing can follow the commit of line {}", commitLine);
        if (!error.empty())
            script.errors.push_back(fmt::format("line {}: {}", number, error));
        else if (statement.kind == StatementKind::commit)
            commitLine = number;
        if (error.empty())
            script.statements.push_back(std::move(statement));
    }
    return script;
}

void throwErrorsOf(const Script &script, const std::string &what) {
    if (script.errors.empty())
        return;
    std::string text = fmt::format("{} has {} error{}, so nothing was done:", what, script.errors.size(),
                                   script.errors.size() == 1 ? "" : "s");
    for (const std::string &error : script.errors)
        text += "\n  " + error;
    throw Misuse(text);
}

std::string inScript(const Statement &statement) {
    const auto form = std::find_if(kForms.begin(), kForms.end(),
                                   [&statement](const Form &candidate) { return candidate.kind == statement.kind; });
    std::string text = form->verb;
    if (form->noun != nullptr)
        text += std::string(" ") + form->noun;
    for (const Part part : form->parts) {
        if (part == Part::nothing)
            continue;
        text += ' ';
        text += part == Part::type        ? zoneTypeWord(statement.type)
                : part == Part::member    ? inScript(statement.member)
                : part == Part::zoneOfSet ? statement.zone
                                          : statement.name;
    }
    return text;
}

std::string zoneTypeWord(zov_fzs_zone_type_e type) {
    for (const TypeRow &row : kTypes)
        if (row.type == type)
            return row.word;
    return fmt::format("(type {})", static_cast<int>(type));
}

} // namespace dcache
