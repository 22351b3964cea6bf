// Works out formulas with the functions an add-in registered, by the rules of a worksheet.
#pragma once

#include <string>

#include "addin/excel_api.h"
#include "host/formula.h"

namespace kestran {

/// The answer to one line: what a cell would show, or why the line cannot be read.
struct Evaluation {
  std::string text;
  bool readable = false;
};

/// Reads and works out one formula. The first range in it lies on the active sheet, each further one on a
/// sheet of its own; a range of more than 256 columns fits on no sheet and reaches functions as an array.
Evaluation evaluate_line(const std::string& line);

/// Calls a worksheet function's entry point with as many records as it declares, at most 29.
XLOPER* call_entry(void* entry, XLOPER* const* arguments, std::size_t count);

/// A number in the shortest form that reads back as the same number; inf, -inf or nan.
std::string printed_number(double number);

/// What a cell shows for a value, on one line: an empty or missing one shows 0.
std::string printed(const Scalar& scalar);

}  // namespace kestran
