// What a worksheet function answers.
#pragma once

namespace kestran {

/// Code of a call whose arguments are of the wrong kind or do not fit together: Excel's #VALUE!.
constexpr int value_code = 15;

/// Code of a call that misses a number or whose selector is out of range. Not one of Excel's own errors, and
/// intended: it tells such a call from #VALUE!.
constexpr int missing_code = 65535;

/// Why a call is refused. functions/explain.cpp has the words.
enum class Reason : short {
  none,
  // Of the argument that the answer names:
  missing,
  no_number,
  error_value,
  unreadable,
  several_cells,
  bad_cell,
  too_many_cells,
  rows_and_columns,
  not_square,
  beside_ranges,
  length,
  out_of_range,
  wrong_sign,
  no_memory,
  // Of arguments that a worksheet function looks at itself:
  single_strip,
  sizes,
  result,
  month,
  fixings_made,
  fixings,
  days,
  tree_steps
};

/// A number or a refusal: its code, the reason, and the place of the argument at fault where one is.
struct Answer {
  double number = 0.0;
  int error = -1;
  Reason reason = Reason::none;
  short argument = -1;

  Answer(double result = 0.0) : number(result) {}
  static Answer failure(int code, Reason reason, int argument = -1) {
    Answer answer(0.0);
    answer.error = code;
    answer.reason = reason;
    answer.argument = static_cast<short>(argument);
    return answer;
  }
  bool is_number() const { return error < 0; }
};

}  // namespace kestran
