// What Excel is told of each function.
#pragma once

#include <string>
#include <vector>

namespace kestran {

struct Registered {
  const char* name;
  const char* description;
  const char* argument_names;
  int pointers;  // how many records Excel passes
};

extern const Registered registered_functions[];
extern const int registered_count;

/// The operands of one registration behind the library's name, as counted texts: procedure, type text, name,
/// argument names, macro type, category, shortcut, help topic, description, and a text for each argument
/// with an empty one behind, because Excel may cut characters off the last. `reference` is what
/// reference_address() gave.
std::vector<std::u16string> registration_texts(int place, const std::string& reference);

/// The same characters behind their count, as Excel takes a text. Only ASCII.
std::u16string counted(const std::string& text);

}  // namespace kestran
