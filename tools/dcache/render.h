/*
 * What the tool shows, and the three forms it can take.
 *
 *   table   for people: facts as aligned pairs, lists as aligned columns
 *   json    for programs: one object, the facts and lists under stable keys; a list is always an array
 *   terse   for scripts: one `key=value` per line; an element of a list has its number, from 1, in the key
 *           (`powerSupplies.2.state=bad`); elements of an array value are separated by commas, and a value that is
 *           not known is empty
 *
 * Pure functions, callable from any thread.
 */
#ifndef TOOLS_DCACHE_RENDER_H
#define TOOLS_DCACHE_RENDER_H

#include <string>
#include <vector>

#include "tools/dcache/value.h"

namespace dcache {

enum class Format { table, json, terse };

/// Whether a value is good news. It chooses the colour, which is never the only sign.
enum class Tone { plain, good, bad, faint, accent };

struct Cell {
    Value value;      ///< for programs and scripts
    std::string text; ///< for people; in a list it may have several lines
    Tone tone = Tone::plain;
};

struct Fact {
    const char *key = nullptr;
    const char *label = nullptr; ///< null: for programs and scripts only
    Cell cell;
    const char *heading = nullptr; ///< above it, for people only; null: it belongs to the fact before it
};

struct Column {
    const char *key;
    const char *title; ///< null: for programs and scripts only; so is a listing without any title
};

struct Listing {
    const char *key = nullptr;
    std::vector<Column> columns;
    std::vector<std::vector<Cell>> rows; ///< one cell per column
    std::string whenEmpty = {};          ///< what people read in place of a table without rows; empty: its titles
};

struct Report {
    std::vector<Fact> facts;
    std::vector<Listing> listings;
    std::vector<std::string> notes; ///< sentences beneath it all, for people only
};

/// The whole report as text ending in a newline. `colour` counts for tables only.
std::string render(const Report &report, Format format, bool colour);

/// A value on one line for scripts: texts as they are but for unprintable bytes, arrays with commas.
std::string terseValue(const Value &value);

/// The text in the colour of the tone, or as it is.
std::string painted(const std::string &text, Tone tone, bool colour);

} // namespace dcache

#endif // TOOLS_DCACHE_RENDER_H
