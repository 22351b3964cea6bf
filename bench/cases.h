// What is measured: options, and for each the ways to price it.
#pragma once

#include <benchmark/benchmark.h>

#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "bench/quantlib.h"

namespace kestran::bench {

/// A price as a function of the one argument that changes from call to call.
using Price = std::function<double(double)>;

/// One way to price the option of a case.
struct Side {
  std::string name;
  double tolerance;  // how far its price may lie from the model's, as a part of the case's scale
  Price price;
  std::function<void(benchmark::State&)> measure;
};

struct Case {
  std::string name;
  // The two values of the changing argument, used in turns: QuantLib would answer a repeated one from its
  // cache.
  double first, second;
  double scale;  // the size of the prices in the formula
  std::vector<Side> sides;
  std::string quantlib_name;  // the engine or function of QuantLib
};

/// All cases, in the order in which they were added.
std::deque<Case>& cases();

/// Adds a case whose changing argument is `changing` and `changing` * 1.0001 in turns.
Case& add_case(const std::string& name, double changing, double scale);

constexpr double same_option = 1e-4;  // tolerance where the normal distribution differs

/// Adds a way to price the option.
template <class Function>
void add_side(Case& option, const char* name, double tolerance, Function price) {
  const auto measure = [price, first = option.first, second = option.second](benchmark::State& state) {
    double changing = first, other = second;
    for ([[maybe_unused]] auto iteration : state) {
      benchmark::DoNotOptimize(price(changing));
      std::swap(changing, other);
    }
  };
  option.sides.push_back({name, tolerance, price, measure});
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
/// is the number at position `changing`, counted from 0. Numbers are passed as such, blocks as arrays that
/// the add-in has coerced, as it would have a reference.
void add_worksheet(Case& option, const char* function, const std::vector<Argument>& arguments,
                   std::size_t changing);

/// The cases of each family.
void add_black_scholes_cases();
void add_exotics_cases();
void add_asian_cases();
void add_basket_cases();
void add_strips_cases();
void add_rates_cases();

}  // namespace kestran::bench
