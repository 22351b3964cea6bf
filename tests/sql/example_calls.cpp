// Prints the example of every function, once for each of its results: the formula, and the calls of
// PostgreSQL and of DuckDB, with tabulators between them.
#include <cstdio>

#include "bindings/postgres/sql_call.h"
#include "functions/describe.h"
#include "functions/example.h"
#include "functions/number_text.h"

namespace kestran {
namespace {

// The cells between brackets, rows of a block apart.
std::string cells(const GivenArgument& given, const char* begin, const char* between_rows, const char* end) {
  std::string text = begin;
  for (std::size_t i = 0; i < given.values.size(); ++i) {
    if (i > 0)
      text += given.columns > 0 && i % static_cast<std::size_t>(given.columns) == 0 ? between_rows : ",";
    text += exact_number(given.values[i]);
  }
  return text + end;
}

std::string duckdb_argument(ParameterKind kind, const GivenArgument& given) {
  if (!is_range(kind)) return exact_number(given.values[0]);
  return kind == ParameterKind::square ? cells(given, "[[", "],[", "]]") : cells(given, "[", ",", "]");
}

std::string formula_argument(const GivenArgument& given) {
  return given.rows == 0 ? exact_number(given.values[0]) : cells(given, "{", ";", "}");
}

void print_calls(const Function& function, const std::vector<GivenArgument>& given) {
  std::string formula = std::string("=") + function.name + "(";
  std::string duckdb = std::string(function.name) + "(";
  for (int i = 0; i < function.argument_count; ++i) {
    const GivenArgument& argument = given[static_cast<std::size_t>(i)];
    formula += (i > 0 ? "," : "") + formula_argument(argument);
    duckdb += (i > 0 ? "," : "") + duckdb_argument(function.arguments[i].kind, argument);
  }
  std::printf("%s)\t%s\t%s)\n", formula.c_str(), sql_call(function, operands(given).data()).c_str(),
              duckdb.c_str());
}

}  // namespace
}  // namespace kestran

int main() {
  using namespace kestran;
  for (int i = 0; i < catalogue_size; ++i) {
    const Function& function = catalogue[i];
    const int selector = result_argument(function);
    std::vector<GivenArgument> given = example_arguments(text_of(function));
    for (const ResultText& result : text_of(function).results) {
      if (!answers(function, result)) continue;
      if (selector >= 0) given[static_cast<std::size_t>(selector)].values = {double(result.selector)};
      print_calls(function, given);
    }
  }
}
