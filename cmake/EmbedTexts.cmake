# Writes a C++ source with texts in it: cmake -D OUTPUT=FILE -D "TEXTS=NAME.toml;..." -P EmbedTexts.cmake
#
# The source defines the table of sim/scenario/ShippedTexts.h, a row for each file, by the file's name without its ending.
set(longest 60000) # a literal of more than 65536 characters is more than a compiler has to take
set(rows "")
list(TRANSFORM TEXTS REPLACE "\\.toml$" "")
list(SORT TEXTS)
foreach(file IN LISTS TEXTS)
  get_filename_component(name "${file}" NAME)
  file(READ "${file}.toml" text)
  string(LENGTH "${text}" length)
  string(FIND "${text}" ")toml\"" end)
  if(length GREATER longest OR NOT end EQUAL -1)
    message(FATAL_ERROR "${file}.toml cannot stand in a source: it is longer than ${longest} characters, or holds )toml\"")
  endif()
  string(APPEND rows "    {\"${name}\", R\"toml(${text})toml\"},\n")
endforeach()
file(WRITE "${OUTPUT}" "// Made from scenarios/ by cmake/EmbedTexts.cmake.\n#include \"sim/scenario/ShippedTexts.h\"\n\n"
                       "const std::vector<sim::ShippedText> &sim::shippedTexts() {\n"
                       "    static const std::vector<ShippedText> texts = {\n${rows}    };\n    return texts;\n}\n")
