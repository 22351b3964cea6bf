#include "bindings/postgres/sql_call.h"

#include <cmath>

#include "functions/number_text.h"

namespace kestran {
namespace {

std::string number(double value) {
  return std::isfinite(value) ? exact_number(value) : "'" + exact_number(value) + "'";
}

// A column or a row is an array of one dimension, a block of several rows and columns one of two.
std::string array(const Operand& given) {
  if (given.rows == 0) return "array[" + number(*given.values) + "]";
  const bool block = given.rows > 1 && given.columns > 1;
  std::string text = block ? "array[[" : "array[";
  for (int i = 0; i < given.rows * given.columns; ++i) {
    if (i > 0) text += block && i % given.columns == 0 ? "],[" : ",";
    text += number(given.values[i]);
  }
  return text + (block ? "]]" : "]");
}

}  // namespace

std::string sql_name(const char* name) {
  std::string text = name;
  for (char& character : text)
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  return text;
}

std::string sql_call(const Function& function, const Operand* given) {
  std::string text = "kestran." + sql_name(function.name) + "(";
  for (int i = 0; i < function.argument_count; ++i)
    text += (i > 0 ? ", " : "") + sql_name(function.arguments[i].name) + " => " +
            (is_range(function.arguments[i].kind) ? array(given[i]) : number(*given[i].values));
  return text + ")";
}

}  // namespace kestran
