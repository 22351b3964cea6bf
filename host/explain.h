// The calls of a formula, explained argument by argument.
#pragma once

#include <string>
#include <string_view>

#include "host/evaluate.h"

namespace kestran {

struct Explanation {
  std::string text;  // lines, each with its end
  Evaluation evaluation;
};

/// Of each call in the formula how every argument is understood, the result with its name and unit, every
/// refusal with its reason, and what looks like a slip.
Explanation explanation(std::string_view formula);

}  // namespace kestran
