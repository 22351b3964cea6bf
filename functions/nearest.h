// The function that someone who mistyped a name may have meant.
#pragma once

#include <string>

#include "functions/catalogue.h"

namespace kestran {

/// The function whose name is nearest, in any case; null when none is near.
const Function* nearest_function(const std::string& name);

/// "; did you mean EURO?" for people; empty for null.
std::string suggestion(const Function* function);

}  // namespace kestran
