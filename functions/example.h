// A call of a worksheet function with the memory its operands point at, and the example of each function.
#pragma once

#include <string>
#include <vector>

#include "functions/texts.h"

namespace kestran {

struct GivenArgument {
  std::vector<double> values;  // NaN for what is left out
  int rows = 0;                // 0 for a plain number
  int columns = 0;

  Operand operand() const { return {values.data(), rows, columns}; }
};

std::vector<Operand> operands(const std::vector<GivenArgument>& given);

/// Reads one argument as it stands in a table or a formula: 100, 5%, 40/365.25, nothing for an argument left
/// out, {20,21;22,23} or 20;21;22 for a column and 1;0.5|0.5;1 for a matrix. False when it is none of these.
bool read_argument(const std::string& text, GivenArgument& given);

/// The arguments of the function's example as they are written: "100", "5%", "{20,21}".
std::vector<std::string> written_example_arguments(const FunctionText& text);

/// The same, read.
std::vector<GivenArgument> example_arguments(const FunctionText& text);

}  // namespace kestran
