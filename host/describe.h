// What the add-in tells about its functions, printed.
#pragma once

#include <string>

namespace kestran {

/// Prints a line for each function: name, argument names and description, separated by tabs.
void list_functions();

/// Prints the signature of one function, what it does and what its arguments mean; false, with a message,
/// when there is none of this name.
bool describe_function(const std::string& name);

}  // namespace kestran
