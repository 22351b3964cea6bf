// The types of the parameters of worksheet functions. A worksheet function is written as a plain function of
// its arguments in worksheet order; the type of each parameter says what becomes of the argument before the
// call, and refuses the call when it does not fit:
//
//   double            the number as it is
//   Years             a number of days, handed on in years
//   int               truncated toward zero
//   Selector<a, b>    truncated toward zero; refused outside a..b
//   Positive, NotNegative, NotNegativeYears    refused when the number has the wrong sign
//   Range             a row or column of up to 256 numbers, or a single number
//   DaysRange         the same of days, handed on in years
//   RangeOrNumber     the same, and beside ranges a single number may stand for as many cells as they have
//   SquareMatrix      a square block of numbers
//   Basket            a block of up to 256 numbers
//   LowerTriangle     a block of up to 32,640 correlations
//
// A function whose results have work in common takes before its arguments a pointer to a structure for what
// one result leaves to the next of the same call; it is null where a single result is wanted.
#pragma once

#include <cmath>
#include <limits>

#include "models/calendar.h"
#include "models/repricings.h"

namespace kestran {

enum class ParameterKind : unsigned char {
  number,
  days,  // handed on in years
  integer,
  selector,
  positive,
  not_negative,
  not_negative_days,
  line,
  line_or_number,
  square,
  block,
  triangle
};

constexpr bool is_line(ParameterKind kind) {
  return kind == ParameterKind::line || kind == ParameterKind::line_or_number;
}
constexpr bool is_range(ParameterKind kind) { return kind >= ParameterKind::line; }

constexpr int range_cells = 256;
constexpr int correlation_cells = range_cells * (range_cells - 1) / 2;

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

/// Numbers of cells, row after row, in memory that outlives the call of the function, which may write there.
/// A square block, which may be large, is read where the host has it, and not written to.
struct Cells {
  double* values = nullptr;
  int count = 0;
  int apart = 1;  // doubles from one number to the next; more only in a square block
};

struct Range : Cells {};
struct DaysRange : Cells {};
struct RangeOrNumber : Cells {};
struct SquareMatrix : Cells {};
struct Basket : Cells {};
struct LowerTriangle : Cells {};

// Taken<Parameter> says of each type its kind, with the bounds of a selector, which numbers it accepts and
// what it makes of them.
template <class Parameter>
struct Taken;

struct TakenNumber {
  static constexpr int lowest = std::numeric_limits<int>::min();
  static constexpr int highest = std::numeric_limits<int>::max();
  static bool accepts(double) { return true; }
};

template <>
struct Taken<double> : TakenNumber {
  static constexpr ParameterKind kind = ParameterKind::number;
  static double from(double number, const Cells*) { return number; }
};

template <>
struct Taken<Years> : TakenNumber {
  static constexpr ParameterKind kind = ParameterKind::days;
  static Years from(double number, const Cells*) { return {number / days_per_year}; }
};

template <>
struct Taken<int> : TakenNumber {
  static constexpr ParameterKind kind = ParameterKind::integer;
  static bool accepts(double number) { return !std::isnan(number); }
  static bool accepts(int) { return true; }
  static int from(double number, const Cells*) { return truncate_to_int(number); }
  static int from(int number) { return number; }
};

template <int a, int b>
struct Taken<Selector<a, b>> {
  static constexpr ParameterKind kind = ParameterKind::selector;
  static constexpr int lowest = a;
  static constexpr int highest = b;
  static bool accepts(double number) {
    return !std::isnan(number) && truncate_to_int(number) >= a && truncate_to_int(number) <= b;
  }
  static bool accepts(int number) { return number >= a && number <= b; }
  static Selector<a, b> from(double number, const Cells*) { return {truncate_to_int(number)}; }
  static Selector<a, b> from(int number) { return {number}; }
};

template <>
struct Taken<Positive> : TakenNumber {
  static constexpr ParameterKind kind = ParameterKind::positive;
  static bool accepts(double number) { return number > 0.0; }
  static Positive from(double number, const Cells*) { return {number}; }
};

template <>
struct Taken<NotNegative> : TakenNumber {
  static constexpr ParameterKind kind = ParameterKind::not_negative;
  static bool accepts(double number) { return number >= 0.0; }
  static NotNegative from(double number, const Cells*) { return {number}; }
};

template <>
struct Taken<NotNegativeYears> : TakenNumber {
  static constexpr ParameterKind kind = ParameterKind::not_negative_days;
  static bool accepts(double number) { return number >= 0.0; }
  static NotNegativeYears from(double number, const Cells*) { return {number / days_per_year}; }
};

template <class Parameter, ParameterKind range>
struct TakenCells : TakenNumber {
  static constexpr ParameterKind kind = range;
  static Parameter from(double, const Cells* cells) { return {*cells}; }
};

template <>
struct Taken<Range> : TakenCells<Range, ParameterKind::line> {};
template <>
struct Taken<DaysRange> : TakenNumber {
  static constexpr ParameterKind kind = ParameterKind::line;
  static DaysRange from(double, const Cells* cells) {
    for (int i = 0; i < cells->count; ++i) cells->values[i] /= days_per_year;
    return {*cells};
  }
};
template <>
struct Taken<RangeOrNumber> : TakenCells<RangeOrNumber, ParameterKind::line_or_number> {};
template <>
struct Taken<SquareMatrix> : TakenCells<SquareMatrix, ParameterKind::square> {};
template <>
struct Taken<Basket> : TakenCells<Basket, ParameterKind::block> {};
template <>
struct Taken<LowerTriangle> : TakenCells<LowerTriangle, ParameterKind::triangle> {};

}  // namespace kestran
