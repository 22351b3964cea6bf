// The frames of worksheet functions that take ranges of cells. As in frame.h, the types of a function's
// parameters say how each argument is taken:
//
//   Range&           a row or column of up to 256 numbers, or a single number
//   RangeOrNumber&   the same, and beside ranges a single number may stand for as many cells as they have
//   SquareMatrix&    a square block of numbers
//   Basket&          in a BlockFrame: a block of up to 256 numbers
//   LowerTriangle&   in a BlockFrame: a block of up to 32,640 correlations
//   any other type   a number, converted as in frame.h; a RangeFrame takes it from the first cell of a row or
//   column
#pragma once

#include <algorithm>
#include <type_traits>

#include "addin/frame.h"
#include "addin/range_intake.h"

namespace kestran {

/// How many cells of its ranges a function uses.
enum class Length {
  shortest,  // as many as the shortest range has
  last,      // as many as the last range has; a shorter one fails the call
  equal      // all of them; ranges of different lengths fail the call
};

/// Whether a call in which every range is a single number is priced.
enum class Singles { priced, refused };

struct RangeOrNumber : Range {};
struct Basket : NumberBlock {};
struct LowerTriangle : NumberBlock {};

template <class Parameter>
constexpr bool is_line = std::is_base_of_v<Range, std::remove_reference_t<Parameter>>;

template <class Parameter>
constexpr bool is_range = is_line<Parameter> || std::is_same_v<Parameter, SquareMatrix&>;

// Where an argument waits between its reading and the call: ranges and blocks as such, scalars as plain
// numbers.
template <class Parameter>
using Slot = std::conditional_t<std::is_reference_v<Parameter>, std::remove_reference_t<Parameter>, double>;

// Scalars once converted; a range needs no conversion.
struct NotConverted {};
template <class Parameter>
using Converted = std::conditional_t<std::is_reference_v<Parameter>, NotConverted, Parameter>;

template <class Slots>
bool accept(const Slots&, NotConverted&) {
  return true;
}

template <class Parameter>
Parameter pass([[maybe_unused]] Slot<Parameter>& slot, [[maybe_unused]] Converted<Parameter>& converted) {
  if constexpr (std::is_reference_v<Parameter>) {
    return slot;
  } else {
    return converted;
  }
}

// Converts the scalars among the slots and calls the function.
template <class... Parameter, class Slots, std::size_t... position>
Answer call_with(Answer (*function)(Parameter...), Slots& slots, std::index_sequence<position...>) {
  std::tuple<Converted<Parameter>...> converted;
  const bool accepted = (accept(std::get<position>(slots), std::get<position>(converted)) && ...);
  if (!accepted) return Answer::failure(missing_code);
  return function(pass<Parameter>(std::get<position>(slots), std::get<position>(converted))...);
}

// The number of cells each range contributes, by the rule; false when the ranges do not fit together.
template <class... Argument>
bool fit_ranges(Length length, int shortest, std::tuple<Argument...>& slots) {
  int last = 1;
  int longest = 1;
  const auto look = [&](auto& slot) {
    if constexpr (is_line<decltype(slot)>) {
      last = slot.count > 1 ? slot.count : last;
      longest = slot.count > longest ? slot.count : longest;
    }
  };
  std::apply([&](auto&... slot) { (look(slot), ...); }, slots);
  const int count = length == Length::last ? last : shortest;
  if (shortest < count || (length == Length::equal && longest > shortest)) return false;
  const auto cut_or_fill = [&](auto& slot) {
    if constexpr (is_line<decltype(slot)>) {
      if (slot.count == 1) std::fill_n(slot.values, count, slot.values[0]);
      slot.count = count;
    }
  };
  std::apply([&](auto&... slot) { (cut_or_fill(slot), ...); }, slots);
  return true;
}

/// The frame of functions that take rows and columns. An error value ends the call with that error; whatever
/// else does not fit is #VALUE!. Priced when all ranges have several cells, and, unless refused, when all
/// have one.
template <auto function, Length length, FirstCell first_cell, Singles singles = Singles::priced>
struct RangeFrame;

template <class... Parameter, Answer (*function)(Parameter...), Length length, FirstCell first_cell,
          Singles singles>
struct RangeFrame<function, length, first_cell, singles> {
  static constexpr int arguments = static_cast<int>(sizeof...(Parameter));
  static constexpr int ranges = (int{is_range<Parameter>} + ... + 0);

  static void call(XLOPER* const* given, XLOPER& result) {
    give(answer(given, std::index_sequence_for<Parameter...>()), result);
  }

 private:
  static int take(XLOPER* argument, Range& range, IntakeCounts& counts) {
    return read_range(argument, range, counts);
  }
  static int take(XLOPER* argument, RangeOrNumber& range, IntakeCounts& counts) {
    const int error = read_range(argument, range, counts);
    if (error == go_on && range.count == 1) {
      --counts.singles;
      ++counts.standing;
    }
    return error;
  }
  static int take(XLOPER* argument, SquareMatrix& matrix, IntakeCounts& counts) {
    return read_matrix(argument, matrix, counts);
  }
  static int take(XLOPER* argument, double& number, IntakeCounts& counts) {
    return read_scalar(argument, first_cell, number, counts);
  }

  template <std::size_t... position>
  static Answer answer(XLOPER* const* given, std::index_sequence<position...> positions) {
    std::tuple<Slot<Parameter>...> slots;
    IntakeCounts counts;
    int error = go_on;
    const bool taken = (((error = take(given[position], std::get<position>(slots), counts)) == go_on) && ...);
    if (!taken) return Answer::failure(error);
    const bool several = counts.ranges + counts.standing == ranges && counts.singles == arguments - ranges;
    const bool one_each = singles == Singles::priced && counts.singles + counts.standing == arguments;
    if ((!several && !one_each) || !fit_ranges(length, counts.shortest, slots))
      return Answer::failure(xlerrValue);
    return call_with(function, slots, positions);
  }
};

/// The frame of functions that take blocks of cells of any shape and remember errors while reading on: the
/// last error value wins, a block that is too large and a missing count give missing_code.
template <auto function>
struct BlockFrame;

template <class... Parameter, Answer (*function)(Parameter...)>
struct BlockFrame<function> {
  static constexpr int arguments = static_cast<int>(sizeof...(Parameter));

  static void call(XLOPER* const* given, XLOPER& result) {
    give(answer(given, std::index_sequence_for<Parameter...>()), result);
  }

 private:
  static int take(XLOPER* argument, Basket& block, int& error, IntakeCounts& counts) {
    return read_block(argument, range_cells, block, error, counts);
  }
  static int take(XLOPER* argument, LowerTriangle& block, int& error, IntakeCounts& counts) {
    return read_block(argument, correlation_cells, block, error, counts);
  }
  static int take(XLOPER* argument, double& number, int& error, IntakeCounts& counts) {
    return read_cell(argument, number, error, counts);
  }

  template <std::size_t... position>
  static Answer answer(XLOPER* const* given, std::index_sequence<position...> positions) {
    std::tuple<Slot<Parameter>...> slots;
    IntakeCounts counts;
    int remembered = -1;
    int error = go_on;
    const bool taken =
        (((error = take(given[position], std::get<position>(slots), remembered, counts)) == go_on) && ...);
    if (!taken) return Answer::failure(error);
    if (remembered >= 0 || counts.singles != arguments)
      return Answer::failure(remembered < 0 ? missing_code : remembered);
    return call_with(function, slots, positions);
  }
};

/// A frame whose function Excel calls with one pointer more than it has arguments; the last is not looked at.
template <class Frame>
struct SparePointer : Frame {
  static constexpr int arguments = Frame::arguments + 1;
};

}  // namespace kestran
