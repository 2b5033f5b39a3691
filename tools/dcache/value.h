/*
 * A value as programs and scripts read it: nothing, a truth, a whole number, a text, or a list of values.
 *
 * It keeps nlohmann's JSON, which takes long to compile, out of everything that only has something to show.
 */
#ifndef TOOLS_DCACHE_VALUE_H
#define TOOLS_DCACHE_VALUE_H

#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace dcache {

class Value {
public:
    using List = std::vector<Value>;
    using Content = std::variant<std::nullptr_t, bool, long long, std::string, List>;

    // Implicit, so that a table of cells reads as what it shows.
    Value(std::nullptr_t nothing = nullptr) : _content(nothing) {} // NOLINT(google-explicit-constructor)
    Value(const char *text) : _content(std::string(text)) {}       // NOLINT(google-explicit-constructor)
    Value(std::string text) : _content(std::move(text)) {}         // NOLINT(google-explicit-constructor)
    Value(List list) : _content(std::move(list)) {}                // NOLINT(google-explicit-constructor)
    template <class Number, class = std::enable_if_t<std::is_integral_v<Number>>>
    Value(Number number) : _content(contentOf(number)) {} // NOLINT(google-explicit-constructor)
    /// Of a list or a set of things that are values.
    template <class Container, class Element = typename Container::value_type,
              class = std::enable_if_t<std::is_constructible_v<Value, Element> &&
                                       !std::is_convertible_v<Container, std::string>>>
    Value(const Container &list) // NOLINT(google-explicit-constructor)
        : _content(List(list.begin(), list.end())) {}

    const Content &content() const { return _content; }

private:
    static Content contentOf(bool truth) { return truth; }
    template <class Number> static Content contentOf(Number number) { return static_cast<long long>(number); }

    Content _content;
};

inline bool operator==(const Value &left, const Value &right) {
    return left.content() == right.content();
}

} // namespace dcache

#endif // TOOLS_DCACHE_VALUE_H
