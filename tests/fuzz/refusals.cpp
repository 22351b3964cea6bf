#include "tests/fuzz/refusals.h"

#include <algorithm>
#include <string>
#include <vector>

#include "functions/refused_number.h"
#include "tests/fuzz/fuzzer.h"

namespace kestran::fuzz {
namespace {

enum Rules { plain, cut_to_shortest, cut_to_last, cut_to_last_with_errors, equal_lengths, loose, blocks };

// The columns of the tables of refused calls.
Rules rules_of(const std::string& name) {
  static const struct {
    const char* functions;
    Rules rules;
  } table[] = {{" BASVOL ", cut_to_shortest},
               {" ASTRIP ASTRIPMV ", cut_to_last},
               {" XCAP SWAPTION ", cut_to_last_with_errors},
               {" XCOL XCOL2 XCOL3 YRSTRIP SWAPTION1 ", equal_lengths},
               {" CMPASN PPLUS ASTRIP2m AdjASTRIP2m xCrudeAPO ", loose},
               {" BASVOLT BASCORR ", blocks}};
  for (const auto& row : table)
    if (std::string(row.functions).find(" " + name + " ") != std::string::npos) return row.rules;
  return plain;
}

enum Content { a_number, an_error, empty, no_number };

Content content(double value) {
  if (value == value) return a_number;
  const int code = refusal_code(value);
  return code < 0 ? empty : code == no_number_code ? no_number : an_error;
}

// What an error is refused with, anything else that is no number with #VALUE!.
int code_of(double value) { return content(value) == an_error ? refusal_code(value) : value_code; }

int cells(const Operand& operand) { return operand.rows * operand.columns; }

bool all_numbers(const Operand& operand) {
  return std::all_of(operand.values, operand.values + cells(operand),
                     [](double value) { return content(value) == a_number; });
}

// Selectors count without what stands behind the decimal point, so that -0.9 is 0 and 0.9 is not 1.
bool out_of_bounds(const Argument& argument, double value) {
  switch (argument.kind) {
    case ParameterKind::selector:
      return (argument.lowest >= 1 ? value < argument.lowest : value <= argument.lowest - 1) ||
             (argument.highest < 1000000 && value >= argument.highest + 1);
    case ParameterKind::positive:
      return value <= 0.0;
    case ParameterKind::not_negative:
    case ParameterKind::not_negative_days:
      return value < 0.0;
    default:
      return false;
  }
}

int plain_refusal(const Function& function, const Operand* given) {
  int error = -1;
  bool missing = false;
  for (int i = 0; i < function.argument_count; ++i) {
    if (given[i].rows > 0 && cells(given[i]) != 1) return value_code;
    const double value = *given[i].values;
    if (content(value) == empty)
      missing = true;
    else if (content(value) != a_number)
      error = code_of(value);
  }
  if (error >= 0) return error;
  if (missing) return missing_code;
  for (int i = 0; i < function.argument_count; ++i)
    if (out_of_bounds(function.arguments[i], *given[i].values)) return missing_code;
  return -1;
}

int ranges_refusal(const Function& function, const Operand* given, Rules rules) {
  std::vector<int> lengths;  // of the ranges in lines, in their order
  bool passed_over = false, stands_for_all = false;
  for (int i = 0; i < function.argument_count; ++i) {
    const Operand& one = given[i];
    const ParameterKind kind = function.arguments[i].kind;
    if (one.rows == 0) {
      if (content(*one.values) != a_number) return code_of(*one.values);
      stands_for_all = kind == ParameterKind::line_or_number || stands_for_all;
      if (is_line(kind) && kind != ParameterKind::line_or_number) lengths.push_back(1);
      continue;
    }
    if (one.columns <= 0) return value_code;
    const bool block = one.rows > 1 && one.columns > 1;
    if (kind == ParameterKind::square) {
      int side = 0;
      for (const int length : lengths)
        if (length > 1) side = side == 0 ? length : std::min(side, length);
      side = std::max(side, 1);
      if (one.rows != side || one.columns != side || !all_numbers(one)) return value_code;
    } else if (is_range(kind)) {
      if (cells(one) > 256) return value_code;
      if (block) {
        passed_over = true;
        continue;
      }
      if (!all_numbers(one)) return value_code;
      if (cells(one) == 1 && kind == ParameterKind::line_or_number)
        stands_for_all = true;
      else
        lengths.push_back(cells(one));
    } else {
      if (block) return value_code;
      if (content(*one.values) == a_number) continue;
      if (rules == cut_to_shortest || rules == cut_to_last)
        passed_over = true;
      else
        return rules == cut_to_last_with_errors ? code_of(*one.values) : value_code;
    }
  }
  if (passed_over) return value_code;
  if (lengths.empty()) return -1;
  const auto [shortest, longest] = std::minmax_element(lengths.begin(), lengths.end());
  if (*longest == 1) return std::string(function.computed_by) == "SWAPTION" ? value_code : -1;
  if (*shortest == 1) return value_code;
  if (rules == equal_lengths && *shortest != *longest) return value_code;
  const bool last_counts = rules == cut_to_last || rules == cut_to_last_with_errors;
  return last_counts && *shortest < lengths.back() ? value_code : -1;
}

int blocks_refusal(const Function& function, const Operand* given) {
  int remembered = -1;
  for (int i = 0; i < function.argument_count; ++i) {
    const Operand& one = given[i];
    const ParameterKind kind = function.arguments[i].kind;
    if (one.rows == 0) {
      if (content(*one.values) == empty) return value_code;
      if (content(*one.values) != a_number) remembered = code_of(*one.values);
      continue;
    }
    if (one.columns <= 0) return value_code;
    if (is_range(kind) && cells(one) > (kind == ParameterKind::triangle ? 32640 : 256))
      return remembered >= 0 ? remembered : missing_code;
    if ((!is_range(kind) && cells(one) != 1) || !all_numbers(one)) return value_code;
  }
  return remembered;
}

}  // namespace

int refusal_by_the_rules(const Function& function, const Operand* given) {
  static const std::vector<Rules> by_place =
      of_each_function([](const Function& one) { return rules_of(one.computed_by); });
  const Rules rules = by_place[static_cast<std::size_t>(&function - catalogue)];
  if (rules == plain) return plain_refusal(function, given);
  return rules == blocks ? blocks_refusal(function, given) : ranges_refusal(function, given, rules);
}

}  // namespace kestran::fuzz
