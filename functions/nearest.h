// The function that someone who mistyped a name may have meant.
#pragma once

#include <string>

#include "functions/catalogue.h"

namespace kestran {

/// The function whose name is nearest, in any case; null when none is near.
const Function* nearest_function(const std::string& name);

/// "there is no function EURA; did you mean EURO?"
std::string unknown_function(const std::string& name);

}  // namespace kestran
