// What a worksheet function answers.
#pragma once

namespace kestran {

/// Code of a call whose arguments are of the wrong kind or do not fit together: Excel's #VALUE!.
constexpr int value_code = 15;

/// Code of a call that misses a number or whose selector is out of range. Not one of Excel's own errors, and
/// intended: it tells such a call from #VALUE!.
constexpr int missing_code = 65535;

/// A number or the code of a refusal.
struct Answer {
  double number = 0.0;
  int error = -1;

  Answer(double result) : number(result) {}
  static Answer failure(int code) {
    Answer answer(0.0);
    answer.error = code;
    return answer;
  }
  bool is_number() const { return error < 0; }
};

}  // namespace kestran
