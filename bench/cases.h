// What is measured: options, and for each the ways to price it.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "bench/quantlib.h"

namespace kestran::bench {

/// A price as a function of the one argument that changes from call to call.
using Price = std::function<double(double)>;

/// The values that the changing argument takes in turns: so many that no branch can be learned by heart.
constexpr std::size_t inputs = 4096;

/// Has the compiler work out what nobody looks at.
template <class Result>
void keep(const Result& result) {
  asm volatile("" : : "m"(result) : "memory");
}

/// One way to price the option of a case.
struct Side {
  std::string name;
  double tolerance;  // how far its price may lie from the model's, as a part of the case's scale
  Price price;
  /// Prices `calls` times, from value `first` of the case's inputs on.
  std::function<void(const double* values, std::size_t first, std::size_t calls)> repeat;
};

struct Case {
  std::string name;
  std::vector<double> values;  // `inputs` of them
  double scale;                // the size of the prices in the formula
  std::vector<Side> sides;
  std::string quantlib_name;  // the engine or function of QuantLib
  double deals = 1.0;         // how many one call prices
  bool threads = false;       // whether several threads share the work, so that the clock on the wall counts
};

/// The side that the others are compared with.
const Side& model_of(const Case& option);

/// The case of half the steps, days, months or assets; null when there is none. Sizes are the numbers in
/// names, after a stroke or an x.
const Case* half_size_of(const Case& option);

/// All cases, in the order in which they were added.
std::deque<Case>& cases();

/// The changing argument lies between these multiples of the one a case is made with.
struct Range {
  double lowest = 0.7, highest = 1.3;
};

/// Adds a case whose changing argument is drawn evenly from the range about `changing`.
Case& add_case(const std::string& name, double changing, double scale, Range range = {});

/// `count` numbers drawn evenly between the two; the same in every build.
std::vector<double> drawn(double lowest, double highest, std::size_t count, unsigned seed);

constexpr double same_option = 1e-4;    // tolerance where the normal distribution differs
constexpr double not_compared = 1e300;  // of what does like work but prices something else

/// Adds a way to price the option.
template <class Function>
void add_side(Case& option, const char* name, double tolerance, Function price) {
  const auto repeat = [price](const double* values, std::size_t first, std::size_t calls) {
    for (std::size_t call = 0; call < calls; ++call) keep(price(values[(first + call) % inputs]));
  };
  option.sides.push_back({name, tolerance, price, repeat});
}

template <class Function>
void add_model(Case& option, Function price) {
  add_side(option, "model", 0.0, price);
}

template <class Function>
void add_straight(Case& option, Function price) {
  add_side(option, "straight", 1e-9, price);
}

inline void add_quantlib(Case& option, const char* name, double tolerance, const Price& price) {
  option.quantlib_name = name;
  add_side(option, "QuantLib", tolerance, price);
}

/// One argument of a worksheet function: a number, or a block of cells, row after row.
struct Argument {
  std::vector<double> cells;
  std::size_t rows = 0;  // 0: a number

  Argument(double number) : cells{number} {}
  Argument(std::vector<double> row) : cells(std::move(row)), rows(1) {}
  Argument(std::vector<double> block, std::size_t row_count) : cells(std::move(block)), rows(row_count) {}
};

/// Adds the call of a worksheet function through its entry point in the loaded add-in; the changing argument
/// is the number at position `changing`, counted from 0. Numbers are passed as such, blocks as arrays, which
/// the host coerces to themselves: what is measured is the add-in.
void add_worksheet(Case& option, const char* function, const std::vector<Argument>& arguments,
                   std::size_t changing);

/// The cases of each family.
void add_black_scholes_cases();
void add_exotics_cases();
void add_asian_cases();
void add_basket_cases();
void add_strips_cases();
void add_rates_cases();

void add_book_cases();  // many deals, or all results, in one call

}  // namespace kestran::bench
