#include "functions/written_call.h"

#include <cmath>

#include "functions/number_text.h"

namespace kestran {
namespace {

// The cells between brackets, rows of a block apart.
template <class Number>
std::string cells(const Operand& given, Number number, const char* begin, const char* between_cells,
                  const char* between_rows, const char* end) {
  std::string text = begin;
  const int count = given.rows == 0 ? 1 : given.rows * given.columns;
  for (int i = 0; i < count; ++i) {
    if (i > 0) text += given.columns > 0 && i % given.columns == 0 ? between_rows : between_cells;
    text += number(given.values[i]);
  }
  return text + end;
}

bool is_table(const Operand& given) { return given.rows > 1 && given.columns > 1; }

std::string sheet_number(double value) { return std::isnan(value) ? "" : exact_number(value); }

std::string python_number(double value) {
  if (std::isfinite(value)) return exact_number(value);
  return std::isnan(value) ? "None" : "float('" + exact_number(value) + "')";
}

std::string postgres_number(double value) {
  return std::isfinite(value) ? exact_number(value) : "'" + exact_number(value) + "'";
}

// A column or a row has one dimension, a block of several rows and columns two.
template <class Number>
std::string list(const Operand& given, Number number, const char* prefix, const char* comma) {
  const bool table = is_table(given);
  const std::string between_rows = "]" + std::string(comma) + "[";
  const std::string begin = prefix + std::string(table ? "[[" : "[");
  return cells(given, number, begin.c_str(), comma, table ? between_rows.c_str() : comma, table ? "]]" : "]");
}

// One for each argument, with commas between.
template <class Argument>
std::string list_of_arguments(const Function& function, const char* comma, Argument argument) {
  std::string text = "(";
  for (int i = 0; i < function.argument_count; ++i) text += (i > 0 ? comma : "") + argument(i);
  return text + ")";
}

}  // namespace

std::string sheet_call(const Function& function, const Operand* given) {
  return "=" + std::string(function.name) + list_of_arguments(function, ",", [&](int i) {
           return given[i].rows == 0 ? sheet_number(*given[i].values)
                                     : cells(given[i], sheet_number, "{", ",", ";", "}");
         });
}

std::string python_call(const Function& function, const Operand* given) {
  return "kestran." + std::string(function.name) + list_of_arguments(function, ", ", [&](int i) {
           return function.arguments[i].name +
                  ("=" + (given[i].rows == 0 ? python_number(*given[i].values)
                                             : list(given[i], python_number, "", ", ")));
         });
}

std::string postgres_name(const char* name) {
  std::string text = name;
  for (char& character : text)
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  return text;
}

std::string postgres_call(const Function& function, const Operand* given) {
  return "kestran." + postgres_name(function.name) + list_of_arguments(function, ", ", [&](int i) {
           return postgres_name(function.arguments[i].name) + " => " +
                  (is_range(function.arguments[i].kind) ? list(given[i], postgres_number, "array", ",")
                                                        : postgres_number(*given[i].values));
         });
}

std::string duckdb_call(const Function& function, const Operand* given) {
  return function.name + list_of_arguments(function, ",", [&](int i) {
           if (!is_range(function.arguments[i].kind)) return exact_number(*given[i].values);
           const bool table = function.arguments[i].kind == ParameterKind::square;
           return cells(given[i], exact_number, table ? "[[" : "[", ",", table ? "],[" : ",",
                        table ? "]]" : "]");
         });
}

}  // namespace kestran
