// Words about one call: how each argument is understood, why the call is refused, and what looks like a slip.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "functions/texts.h"

namespace kestran {

/// How argument `i` is understood, such as "90 calendar days = 0.2464 years" or "1: call".
std::string understood(const Function& function, int i, const Operand& given);

/// Which numbers of an argument are refused by themselves: "outside 0 to 8", "below 0" and the like; empty
/// where none is.
std::string refused_numbers(const Argument& argument);

/// Why the call is refused, naming the argument, such as "RetType 12 is outside 0 to 8". `given` may be null
/// where the arguments are no operands; values are then left out. Empty for a number.
std::string refusal_text(const Function& function, const Operand* given, const Answer& answer);

/// Every refusal that the call would meet, one after another, were each put right.
std::vector<std::string> refusals(const Function& function, const Operand* given);

/// What a call that is priced looks to have wrong: units mixed up, a date for a time, shares given as per
/// cent, impossible correlations, negative prices, fixings that cannot fit. Empty when nothing looks odd.
std::vector<std::string> slips(const Function& function, const Operand* given);

/// The same, and that the model has no number, where that is the answer.
std::vector<std::string> warnings(const Function& function, const Operand* given, const Answer& answer);

/// Numbers that look like a slip: those between the bounds, these excluded; NaN is no bound.
struct OddNumbers {
  double above, below;
  const char* words;  // after the argument's name; {} stands for the number, {%} for it as per cent
};

/// Those of an argument; where several fit, the first counts.
std::vector<OddNumbers> odd_numbers(const ArgumentText& text);

/// Whether the argument counts without its decimals.
bool counts_whole(const ArgumentText& text);

/// Arguments, by their places, of which the first must not be more than the second.
std::vector<std::array<int, 2>> in_order(const Function& function);

/// Counts of fixings with the years to the first fixing and to the last, into which they must fit; by their
/// places.
std::vector<std::array<int, 3>> fixings_within(const Function& function);

/// A number with at most this many significant digits.
std::string short_number(double number, int digits = 6);

}  // namespace kestran
