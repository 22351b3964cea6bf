#include "functions/example.h"

#include <limits>

#include "functions/number_text.h"

namespace kestran {
namespace {

// A sign, a number, a per cent sign, and one division by another number.
bool read_number(const char* begin, const char* end, double& number) {
  while (begin < end && *begin == ' ') ++begin;
  while (end > begin && end[-1] == ' ') --end;
  if (begin == end) {
    number = std::numeric_limits<double>::quiet_NaN();
    return true;
  }
  if (*begin == '+') ++begin;
  const auto read = read_decimal(begin, end, number);
  if (read.ec != std::errc()) return false;
  begin = read.ptr;
  if (begin < end && *begin == '%') {
    number /= 100.0;
    ++begin;
  }
  if (begin < end && *begin == '/') {
    double divisor = 0.0;
    if (begin + 1 == end || !read_number(begin + 1, end, divisor)) return false;
    number /= divisor;
    return true;
  }
  return begin == end;
}

}  // namespace

std::vector<Operand> operands(const std::vector<GivenArgument>& given) {
  std::vector<Operand> list;
  for (const GivenArgument& one : given) list.push_back(one.operand());
  return list;
}

// Within braces commas part columns and semicolons rows, as in a formula; without them semicolons part cells
// and bars rows.
bool read_argument(const std::string& text, GivenArgument& given) {
  std::string inner = text;
  const bool braces = text.size() >= 2 && text.front() == '{' && text.back() == '}';
  const char between_cells = braces ? ',' : ';';
  const char between_rows = braces ? ';' : '|';
  if (braces) inner = text.substr(1, text.size() - 2);
  const bool block = braces || inner.find_first_of(";|") != std::string::npos;
  given.values.clear();
  given.rows = block ? 1 : 0;
  given.columns = 0;
  int in_row = 0;
  std::size_t begin = 0;
  for (std::size_t i = 0; i <= inner.size(); ++i) {
    const bool ends = i == inner.size();
    if (!ends && !(block && (inner[i] == between_cells || inner[i] == between_rows))) continue;
    double number = 0.0;
    if (!read_number(inner.data() + begin, inner.data() + i, number)) return false;
    given.values.push_back(number);
    begin = i + 1;
    ++in_row;
    if (!block || (!ends && inner[i] == between_cells)) continue;
    if (given.columns != 0 && in_row != given.columns) return false;
    given.columns = in_row;
    in_row = 0;
    given.rows += !ends;
  }
  // Cells one after another, without rows, are a column, as people write a curve.
  if (block && !braces && given.rows == 1) std::swap(given.rows, given.columns);
  return true;
}

std::vector<std::string> written_example_arguments(const FunctionText& text) {
  std::vector<std::string> list;
  const std::string formula = text.example;
  bool in_block = false;
  std::size_t begin = formula.find('(') + 1;
  for (std::size_t i = begin; i < formula.size(); ++i) {
    in_block = formula[i] == '{' || (in_block && formula[i] != '}');
    if ((formula[i] != ',' || in_block) && i + 1 != formula.size()) continue;
    list.push_back(formula.substr(begin, i - begin));
    begin = i + 1;
  }
  return list;
}

std::vector<GivenArgument> example_arguments(const FunctionText& text) {
  std::vector<GivenArgument> list;
  for (const std::string& written : written_example_arguments(text)) {
    list.emplace_back();
    read_argument(written, list.back());
  }
  return list;
}

}  // namespace kestran
