// What docs/functions.md says is refused, stated once more and independently of the functions' own intake.
#pragma once

#include "functions/catalogue.h"

namespace kestran::fuzz {

/// The code with which a call must be refused because of what its arguments are; -1 where they are all in
/// order, so that it is for the model to say. Codes of errors that are given are below 65534.
int refusal_by_the_rules(const Function& function, const Operand* given);

}  // namespace kestran::fuzz
