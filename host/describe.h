// What the add-in tells about its functions, printed.
#pragma once

#include <string>
#include <string_view>

#include "host/lines.h"

namespace kestran {

/// Prints a line for each function: name, argument names and description, separated by tabs.
void list_functions();

/// Prints the signature of one function, what it prices, its arguments and results, an example with its value
/// and how far to trust it; of a function that only the add-in knows, what that tells. False, with a message
/// that suggests a name, when there is none of this one.
bool describe_function(const std::string& name);

/// Prints of each call in the formula how every argument is understood, the result with its name and unit,
/// every refusal with its reason, and what looks like a slip.
void explain_formula(std::string_view formula, Outcome& outcome);

/// Tells on the error stream which function may have been meant by a name that none has.
void tell_unknown(const std::string& name);

}  // namespace kestran
