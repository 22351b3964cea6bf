// Many deals and many results in one call, against one at a time.
#include "functions/price_many.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "functions/example.h"
#include "functions/in_parts.h"
#include "functions/refused_number.h"
#include "models/black_scholes/european_book.h"
#include "models/calendar.h"
#include "numerics/lanes.h"
#include "tests/failing_new.h"

namespace kestran {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double missing = std::numeric_limits<double>::quiet_NaN();

std::uint64_t next(std::uint64_t& state) {
  state = state * 6364136223846793005u + 1442695040888963407u;
  return state ^ (state >> 31);
}
double uniform(std::uint64_t& state) { return static_cast<double>(next(state) >> 11) * 0x1p-53; }

// Not a number counts as itself, whatever its bits.
bool same(double a, double b) {
  return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}
bool same(const Answer& a, const Answer& b) {
  return same(a.number, b.number) && a.error == b.error && a.reason == b.reason && a.argument == b.argument;
}
std::string shown(const Answer& answer) {
  return std::to_string(answer.number) + " error " + std::to_string(answer.error) + " argument " +
         std::to_string(answer.argument);
}

// Of arguments that are one number each.
std::vector<double> numbers(const std::vector<GivenArgument>& given) {
  std::vector<double> list;
  for (const GivenArgument& argument : given) list.push_back(argument.values[0]);
  return list;
}

// The ordinary number, moved a little, or, now and then, one that needs care: an error value, for one.
double disturbed(double number, std::uint64_t& state) {
  static const double edges[] = {missing, infinity, -infinity, 0.0, -0.0, -1.0,
                                 5e-324,  1e-310,   1e300,     0.5, 1e9,  refused_number(42)};
  if (next(state) % 16 == 0) return edges[next(state) % std::size(edges)];
  return next(state) % 4 == 0 ? number : number * (0.5 + uniform(state));
}

TEST(PriceMany, AllResultsOfACallAreThoseOfSingleCalls) {
  std::uint64_t state = 7;
  for (int place = 0; place < catalogue_size; ++place) {
    const Function& function = catalogue[place];
    if (result_argument(function) < 0) continue;
    const auto asks_at = static_cast<std::size_t>(result_argument(function));
    const std::vector<GivenArgument> example = example_arguments(text_of(function));
    int differing = 0;
    for (int call = 0; call < 40; ++call) {
      std::vector<GivenArgument> given = example;
      for (std::size_t i = 0; i < given.size(); ++i)
        for (double& number : given[i].values)
          if (call > 0 && function.arguments[i].kind != ParameterKind::integer &&
              function.arguments[i].kind != ParameterKind::selector)
            number = disturbed(number, state);
          else if (call > 4 && next(state) % 16 == 0)
            number = call % 8 == 7 ? refused_number(7) : number + static_cast<double>(next(state) % 3) - 1.0;
      if (call % 8 == 4) {
        GivenArgument& block = given[static_cast<std::size_t>(next(state)) % given.size()];
        if (block.rows == 0) block = {{block.values[0], 2.0}, 1 + call / 8 % 2, 1};
      }
      const int selectors[] = {3, 0, 2, -1, 1, 0, 5, 4, 99, 6, 7, 8, 11, 10, 9, 12};
      constexpr int results = std::size(selectors);
      std::vector<Answer> together(results, Answer(0.0));
      if (function.takes_ranges || call % 2 == 0)
        price_results(function, operands(given).data(), selectors, results, together.data());
      else
        price_results(function, numbers(given).data(), selectors, results, together.data());
      for (int j = 0; j < results; ++j) {
        given[asks_at] = {{double(selectors[j])}};
        const Answer alone = price(function, operands(given).data());
        if (!same(alone, together[static_cast<std::size_t>(j)]) && differing++ < 3)
          ADD_FAILURE() << function.name << " call " << call << " result " << selectors[j] << ": "
                        << shown(together[static_cast<std::size_t>(j)]) << ", alone " << shown(alone);
      }
    }
    std::vector<Answer> all(static_cast<std::size_t>(text_of(function).results.count), Answer(0.0));
    if (function.takes_ranges)
      price_all(function, operands(example).data(), all.data());
    else
      price_all(function, numbers(example).data(), all.data());
    for (std::size_t j = 0; j < all.size(); ++j) {
      std::vector<GivenArgument> given = example;
      given[asks_at] = {{double(text_of(function).results[static_cast<int>(j)].selector)}};
      EXPECT_TRUE(same(price(function, operands(given).data()), all[j])) << function.name << " " << j;
    }
  }
}

// Books of every function of European options: terms in columns or rows of a table, or one for all deals.
TEST(PriceMany, BooksHaveTheBitsOfSingleCalls) {
  constexpr std::size_t deals = 1001;
  std::uint64_t state = 11;
  for (const char* name : {"EURO", "EURO_Equity", "EURO_Forward", "FOREXCH", "COMBOPT", "HEAT"}) {
    const Function& function = *find_in_catalogue(name);
    const std::vector<GivenArgument> example = example_arguments(text_of(function));
    const auto arguments = static_cast<std::size_t>(function.argument_count);
    const bool by_row = next(state) % 2 == 0;
    std::vector<double> numbers(deals * arguments);
    std::vector<Column> columns;
    for (std::size_t i = 0; i < arguments; ++i) {
      for (std::size_t k = 0; k < deals; ++k)
        numbers[by_row ? k * arguments + i : i * deals + k] = disturbed(example[i].values[0], state);
      columns.push_back(
          {numbers.data() + (by_row ? i : i * deals), by_row ? static_cast<std::ptrdiff_t>(arguments) : 1});
    }
    columns[3].stride = 0;
    const int all[] = {0, 1, 2, 3, 4, 5, 6}, premium[] = {0}, some[] = {1, 9};
    const struct {
      const int* selectors;
      int results;
    } wanted[] = {{all, 7}, {premium, 1}, {some, 2}, {nullptr, 1}};
    for (const auto& [selectors, results] : wanted)
      for (int threads : {1, 3}) {
        std::vector<Answer> answers(deals * static_cast<std::size_t>(results), Answer(0.0));
        price_many(function, columns.data(), deals, selectors, results, answers.data(), threads);
        int differing = 0;
        for (std::size_t k = 0; k < deals; ++k)
          for (int j = 0; j < results; ++j) {
            std::vector<double> deal;
            for (const Column& column : columns)
              deal.push_back(column.values[static_cast<std::ptrdiff_t>(k) * column.stride]);
            if (selectors != nullptr)
              deal[static_cast<std::size_t>(result_argument(function))] = selectors[j];
            const Answer& answer =
                answers[k * static_cast<std::size_t>(results) + static_cast<std::size_t>(j)];
            if (!same(price(function, deal.data()), answer) && differing++ < 3)
              ADD_FAILURE() << name << " deal " << k << " result " << j << ": " << shown(answer);
          }
      }
  }
}

TEST(PriceMany, RowsForWhichThereIsNoThreadAreNotLost) {
  int failing = 0;
  for (bool failed = true; failed;) {
    std::vector<int> seen(10, 0);
    fail_new(++failing);
    in_parts(seen.size(), 4, [&](std::size_t begin, std::size_t end) {
      for (std::size_t row = begin; row < end; ++row) ++seen[row];
    });
    failed = new_failed();
    EXPECT_EQ(seen, std::vector<int>(10, 1)) << failing;
  }
}

TEST(EuropeanBook, EveryWidthHasTheBitsOfOneOption) {
  constexpr std::size_t options = 20003;
  std::uint64_t state = 2024;
  std::vector<double> terms[7];
  constexpr double usual[7] = {100.0, 95.0, 0.05, 0.02, 0.25, 200.0, 1.0};
  for (int i = 0; i < 7; ++i)
    for (std::size_t k = 0; k < options; ++k) terms[i].push_back(disturbed(usual[i], state));
  const auto column = [&](int i) { return Strided{terms[i].data(), 1}; };
  const EuropeanBook book = {column(0), column(1), column(5), column(2), column(3), column(4), column(6)};
  for (int width : {2, 4}) {
    if (width == 4 && !__builtin_cpu_supports("avx2")) continue;
    for (int wanted : {1, european_results}) {
      std::vector<double> results(options * european_results);
      const std::unique_ptr<bool[]> left(new bool[options]);
      european_book(book, 0, options, wanted, results.data(), left.get(), width);
      std::size_t left_out = 0, differing = 0;
      for (std::size_t k = 0; k < options; ++k) {
        left_out += left[k];
        double one[european_results];
        bs_general_all(terms[0][k], terms[1][k], terms[5][k] / days_per_year, terms[2][k], terms[3][k],
                       terms[4][k], std::fabs(terms[6][k]) < 1.0 ? 0 : 1, one);
        for (int i = 0; i < wanted && !left[k]; ++i)
          differing += !same(one[i], results[static_cast<std::size_t>(i) * options + k]);
      }
      EXPECT_EQ(differing, 0u) << width << " lanes";
      EXPECT_LT(left_out, options / 2) << width << " lanes";
    }
  }
}

}  // namespace
}  // namespace kestran
