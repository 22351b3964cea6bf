// The frame through which a worksheet function of scalar arguments gets its numbers and gives its answer.
//
// A worksheet function is written as a plain function of its arguments in worksheet order. The type of each
// parameter says what the frame does with the cell's number before the call:
//
//   double            as it is
//   Years             a number of days, handed on in years
//   int               truncated toward zero
//   Selector<a, b>    truncated toward zero; outside a..b the call fails
//   Positive, NotNegative, NotNegativeYears    the call fails when the number has the wrong sign
//
// and ScalarFrame<function> does the rest.
#pragma once

#include <cmath>
#include <cstddef>
#include <limits>
#include <tuple>
#include <utility>

#include "addin/excel_api.h"
#include "models/calendar.h"

namespace kestran {

/// Code of a call that misses a number or whose selector is out of range. Not one of Excel's own errors, and
/// intended: it tells such a call from #VALUE!.
constexpr int missing_code = 65535;

/// What a worksheet function answers: a number or an error code.
struct Answer {
  double number = 0.0;
  int error = -1;

  Answer(double result) : number(result) {}
  static Answer failure(int code) {
    Answer answer(0.0);
    answer.error = code;
    return answer;
  }
};

/// Puts an answer into a result record.
void give(const Answer& answer, XLOPER& result);

/// Truncation toward zero; beyond the range of int the nearest int. `number` is not NaN.
inline int truncate_to_int(double number) {
  if (number >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
  if (number <= std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
  return static_cast<int>(number);
}

struct Years {
  double value = 0.0;
  operator double() const { return value; }
};

template <int lowest, int highest = std::numeric_limits<int>::max()>
struct Selector {
  int value = lowest;
  operator int() const { return value; }
};

struct Positive {
  double value = 0.0;
  operator double() const { return value; }
};

struct NotNegative {
  double value = 0.0;
  operator double() const { return value; }
};

struct NotNegativeYears {
  double value = 0.0;
  operator double() const { return value; }
};

// accept() converts a cell's number to a parameter; false fails the call with missing_code.
inline bool accept(double number, double& parameter) {
  parameter = number;
  return true;
}

inline bool accept(double number, int& parameter) {
  if (std::isnan(number)) return false;
  parameter = truncate_to_int(number);
  return true;
}

inline bool accept(double number, Years& parameter) {
  parameter.value = number / days_per_year;
  return true;
}

template <int lowest, int highest>
bool accept(double number, Selector<lowest, highest>& parameter) {
  return accept(number, parameter.value) && parameter.value >= lowest && parameter.value <= highest;
}

inline bool accept(double number, Positive& parameter) {
  parameter.value = number;
  return number > 0.0;
}

inline bool accept(double number, NotNegative& parameter) {
  parameter.value = number;
  return number >= 0.0;
}

inline bool accept(double number, NotNegativeYears& parameter) {
  parameter.value = number / days_per_year;
  return number >= 0.0;
}

/// Reads `count` arguments, each a number or a reference to one cell, into `numbers`. The last error value
/// among them wins; text, logical values and references to several cells are #VALUE!; an argument or cell
/// that is missing gives missing_code. Answers the error into `result` and returns false when a number is
/// wanting.
bool read_numbers(XLOPER* const* given, int count, double* numbers, XLOPER& result);

template <auto function>
struct ScalarFrame;

template <class... Parameter, Answer (*function)(Parameter...)>
struct ScalarFrame<function> {
  static constexpr int arguments = static_cast<int>(sizeof...(Parameter));

  static void call(XLOPER* const* given, XLOPER& result) {
    double numbers[arguments];
    if (!read_numbers(given, arguments, numbers, result)) return;
    call(numbers, result, std::index_sequence_for<Parameter...>());
  }

 private:
  template <std::size_t... position>
  static void call(const double* numbers, XLOPER& result, std::index_sequence<position...>) {
    std::tuple<Parameter...> parameters;
    const bool accepted = (accept(numbers[position], std::get<position>(parameters)) && ...);
    give(accepted ? std::apply(function, parameters) : Answer::failure(missing_code), result);
  }
};

}  // namespace kestran
