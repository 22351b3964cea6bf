// One call, many answers: where a function wants a number and gets several cells, it answers an array.
#pragma once

#include "addin/modern/results.h"
#include "functions/catalogue.h"

namespace kestran {

/// At most this many answers in one array: as many as a column has cells. More are #VALUE!.
constexpr int most_answers = 1048576;

/// Whether an argument that is to be a number is given as several cells.
bool wants_array(const Function& function, XLOPER12* const* given);

/// The answers for each of those cells, by the rules for a single cell. Blocks of different shapes are laid
/// over each other as Excel does: a row stands for as many rows, a column for as many columns as the others
/// have, and what lies outside of a block is #N/A. The user may break the call off, which makes it #VALUE!.
XLOPER12* spill(const Function& function, XLOPER12* const* given);

}  // namespace kestran
