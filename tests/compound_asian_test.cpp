#include "models/asian/compound_asian.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

#include "models/asian/compound_asian_nodes_kernel.h"
#include "models/asian/fixings_ahead.h"
#include "models/asian/fixings_before.h"
#include "numerics/arrays.h"

namespace kestran {
namespace {

const CompoundAsian before_averaging{100, .05, .35, .30, 0, 21, 0, 150, 180, .40, 100, 4, 90, .045, 1};
const CompoundAsian half_way{100, .05, .35, .30, 0, 31, 0, 30, 60, .40, 100, 4, 45, .045, 1};
const CompoundAsian under_way{100, .05, .35, .30, 97, 31, 10, 1, 21, .40, 99, 2, 11, .045, 2};
const CompoundAsian weekly{100, .05, .35, .30, 103, 6, 1, 0.5, 32.5, .40, 100, 1, 17, .03, 3};
const CompoundAsian last_day{100, .05, .35, .30, 96, 8, 3, 0, 40, .40, 100, 1, 40, .03, 1};
const CompoundAsian sparse{100, .05, .35, .30, 0, 5, 0, 20, 90, .40, 100, 4, 20, .045, 2};

CompoundAsian with(CompoundAsian option, double CompoundAsian::*term, double value) {
  option.*term = value;
  return option;
}

double of_type(CompoundAsian option, int CmpOptType) {
  option.CmpOptType = CmpOptType;
  return compound_asian_price(option);
}

// Fixings until the compound expiry and from there on simulated apart, with Sobol points in numpy: the
// premiums of the four types; standard errors are below 9e-5.
TEST(CompoundAsian, AgainstSimulatedPaths) {
  const struct {
    CompoundAsian option;
    double simulated[4];
  } rows[] = {{before_averaging, {6.942351, 1.235013, 6.637301, 0.930010}},
              {half_way, {3.490950, 2.282784, 3.292640, 2.084498}},
              {under_way, {0.697368, 1.173652, 0.636906, 1.145354}},
              {weekly, {1.814717, 0.436329, 1.364163, 0.483566}},
              {last_day, {0.862362, 0.682426, 2.065188, 0.393456}}};
  for (const auto& row : rows)
    for (int type = 1; type <= 4; ++type)
      EXPECT_NEAR(of_type(row.option, type), row.simulated[type - 1], 3e-4)
          << row.option.CmpExpDays << " days, type " << type;
}

// The same deal a day later, with the fixing of today's price in the average, priced by itself.
TEST(CompoundAsian, ThetaTakesInAFixingOnItsWay) {
  CompoundAsian later = weekly;
  later.A = (weekly.A + weekly.S0) / 2.0;
  later.m = 2;
  later.toNext = 7.5;
  later.ExpDays = 31.5;
  later.CmpExpDays = 16.0;
  const double change = compound_asian_price(later) - compound_asian_price(weekly);
  EXPECT_NEAR(compound_asian_greek(weekly, 5), change * 365.25, 1e-9);
  // Once all are made only discounting is left.
  const CompoundAsian made{100, .05, .35, .30, 103, 8, 8, -3, 40, .40, 100, 1, 20, .03, 1};
  const auto premium = [](double days) {
    return (3 * std::exp((.03 * (days - 20) - .05 * days) / 365.25) - 1) *
           std::exp(-.03 * (days - 20) / 365.25);
  };
  EXPECT_NEAR(compound_asian_price(made), premium(40), 1e-9);
  EXPECT_NEAR(compound_asian_greek(made, 5), (premium(39) - premium(40)) * 365.25, 1e-6);
  // Half of the time to the compound expiry on, where that is less than a day.
  CompoundAsian soon = made;
  soon.ExpDays = 20.8;
  soon.CmpExpDays = 0.8;
  EXPECT_NEAR(compound_asian_greek(soon, 5), (premium(20.4) - premium(20.8)) / 0.4 * 365.25, 1e-6);
}

struct Axis {
  const char* name;
  double from, to;
  std::function<CompoundAsian(CompoundAsian, double)> moved;
};

const Axis axes[] = {
    {"price", 90, 112, [](const CompoundAsian& o, double x) { return with(o, &CompoundAsian::S0, x); }},
    {"volatility", .25, .6,
     [](const CompoundAsian& o, double x) { return with(o, &CompoundAsian::sigma_c, x); }},
    {"strike", 92, 112, [](const CompoundAsian& o, double x) { return with(o, &CompoundAsian::K, x); }},
    {"compound strike", 1, 5, [](const CompoundAsian& o, double x) { return with(o, &CompoundAsian::X, x); }},
    // Up to where the next fixing comes within the day that theta looks ahead.
    {"time", -3, 0, [](CompoundAsian o, double x) {
       o.toNext -= x;
       o.ExpDays -= x;
       o.CmpExpDays -= x;
       return o;
     }}};

// A second difference that jumps is out of line with the cubic through its neighbours.
TEST(CompoundAsian, EveryResultIsSmooth) {
  constexpr int points = 40;
  for (const CompoundAsian& option : {before_averaging, under_way})
    for (const Axis& axis : axes)
      for (int RetType = 0; RetType < 9; ++RetType) {
        std::vector<double> y, bend;
        for (int i = 0; i < points; ++i)
          y.push_back(compound_asian_greek(
              axis.moved(option, axis.from + (axis.to - axis.from) * i / (points - 1)), RetType));
        double largest = 0;
        for (int i = 1; i + 1 < points; ++i) {
          bend.push_back(y[i + 1] - 2 * y[i] + y[i - 1]);
          largest = std::fmax(largest, std::fabs(bend.back()));
        }
        double worst = 0;
        for (std::size_t i = 2; i + 2 < bend.size(); ++i)
          worst = std::fmax(
              worst, std::fabs(bend[i] - (4 * (bend[i - 1] + bend[i + 1]) - bend[i - 2] - bend[i + 2]) / 6));
        EXPECT_LT(worst, 5e-3 * largest + 1e-8)
            << axis.name << ", " << option.CmpExpDays << " days, RetType " << RetType;
      }
}

// No jump as a fixing passes the compound option's expiry or today.
TEST(CompoundAsian, ContinuousAsFixingsComeIn) {
  for (double days : {20.0, 37.5, 55.0, 72.5, 90.0})
    EXPECT_NEAR(compound_asian_price(with(sparse, &CompoundAsian::CmpExpDays, days * (1 - 1e-12))),
                compound_asian_price(with(sparse, &CompoundAsian::CmpExpDays, days * (1 + 1e-12))), 1e-9)
        << days;
  CompoundAsian due = with(weekly, &CompoundAsian::toNext, 0);
  CompoundAsian made = due;
  made.m = due.m + 1;
  made.A = (due.m * due.A + due.S0) / made.m;
  made.toNext = due.ExpDays / (due.N - made.m);
  EXPECT_NEAR(compound_asian_price(due), compound_asian_price(made), 1e-12);
}

TEST(CompoundAsian, VolatilityWhileAveragingRulesFromTheFirstFixingOn) {
  const auto vega1 = [](const CompoundAsian& o) {
    return compound_asian_greek(o, static_cast<int>(CompoundAsianResult::vega_until_averaging));
  };
  for (const CompoundAsian& option : {half_way, under_way, weekly, last_day}) EXPECT_EQ(vega1(option), 0.0);
  EXPECT_GT(vega1(before_averaging), 5.0);
  EXPECT_GT(std::fabs(vega1(with(sparse, &CompoundAsian::toNext, 20.5))), 0.05);
  // Simulated 1.6335.
  EXPECT_NEAR(compound_asian_price(sparse), 1.6335, 3e-4);
}

// One fixing makes the average-price option European. Expected: quadrature over the price at expiry and exact
// derivatives in mpmath, 25 digits.
TEST(CompoundAsian, OneFixingIsAnOptionOnAnOption) {
  const CompoundAsian option{100, 0, .3, .3, 0, 1, 0, 180, 180, .3, 105, 3, 60, 0, 1};
  using Result = CompoundAsianResult;
  const struct {
    Result result;
    double expected, tolerance;
  } rows[] = {{Result::premium, 3.872249439749167, 1e-13},
              {Result::delta, 0.3905599929688764, 1e-6},
              {Result::gamma, 0.02320920974157150, 1e-6},
              {Result::vega, 11.43780356874160, 2e-5},
              {Result::rho, 0, 0},
              {Result::delta_by_volatility, 0.1777917508067637, 1e-5}};
  for (const auto& row : rows)
    EXPECT_NEAR(compound_asian_greek(option, static_cast<int>(row.result)), row.expected, row.tolerance)
        << static_cast<int>(row.result);
}

TEST(CompoundAsian, CallLessPutIsTheAverageOptionLessTheStrike) {
  const double h = 1 / 365.25;
  for (const CompoundAsian& option : {before_averaging, half_way, under_way, weekly, last_day})
    for (int type : {1, 3}) {
      const double asian = of_type(with(option, &CompoundAsian::X, 0), type);
      EXPECT_NEAR(of_type(option, type) - of_type(option, type + 1),
                  asian - option.X * std::exp(-option.rc * option.CmpExpDays * h), 1e-11);
    }
  // An average-price call less the put is its forward less the strike.
  const CompoundAsian free = with(under_way, &CompoundAsian::X, 0);
  EXPECT_NEAR(of_type(free, 1) - of_type(free, 3),
              ((10 * 97 + 21 * 100) / 31.0 - 99) * std::exp(-.05 * 21 * h), 1e-5);
}

TEST(FixingsAhead, OptionOnASum) {
  double loading[5];
  const FixingsAhead one = fixings_ahead(1, .04, .01, loading);
  // Black's formula, forward 100, strike 110, deviation 0.2.
  EXPECT_NEAR(sum_option(one, 100, 110, true), 4.292010941409888, 1e-13);
  const FixingsAhead five = fixings_ahead(5, .01, .02, loading);
  for (double strike : {-10.0, 0.0, 1e-3, 250.0, 499.0, 500.0, 501.0, 900.0, 1e5}) {
    const double call = sum_option(five, 100, strike, true);
    const double put = sum_option(five, 100, strike, false);
    EXPECT_NEAR(call - put, 500 - strike, 1e-10) << strike;
    EXPECT_GE(call, std::fmax(500 - strike, 0.0) - 1e-10) << strike;
  }
  // A fixing already known may be in the sum or come off the strike.
  const FixingsAhead known = fixings_ahead(3, 0, .02, loading);
  const double in_sum = sum_option(known, 100, 305, true);
  const FixingsAhead rest = fixings_ahead(2, .02, .02, loading);
  EXPECT_NEAR(in_sum, sum_option(rest, 100, 205, true), 1e-11);
}

TEST(FixingsBefore, SumIsThatOfTheBridge) {
  double cells[9] = {0, .4, 1};
  const FixingsBefore fixings{3, .09, cells, cells + 3, cells + 6};
  // Only the middle one is left to chance, with variance 0.09 x 0.4 x 0.6.
  const double x = .2, s = std::sqrt(.0216);
  for (double z : {-1.7, 0.0, 2.0})
    EXPECT_NEAR(sum_given_expiry(fixings, x, z), 1 + std::exp(.4 * x + s * z) + std::exp(x), 1e-14) << z;
}

// Points side by side against one at a time.
TEST(CompoundAsian, NodesHaveTheSameBitsInEveryNumberOfLanes) {
  std::mt19937_64 random(5);
  const auto between = [&](double low, double high) {
    return low + (high - low) * std::generate_canonical<double, 53>(random);
  };
  const auto one_of = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
  const auto same = [](double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
  };
  constexpr int count = 36;
  int differing = 0, finite = 0;
  for (int deal = 0; deal < 1000; ++deal) {
    const int before = one_of(8), ahead = one_of(10);
    std::vector<double> time, level(32), covariance(32), loading(10);
    for (int k = 0; k < before; ++k) time.push_back(k == 0 ? 0.0 : between(0.0, 1.0));
    CompoundAsianPayoff payoff;
    payoff.S0 = between(60, 140);
    payoff.deviation = deal % 8 == 0 ? between(0.0, 20.0) : between(0.01, 0.8);
    payoff.before = {before, payoff.deviation * payoff.deviation, time.data(), level.data(),
                     covariance.data()};
    payoff.ahead = fixings_ahead(ahead, one_of(4) == 0 ? 0.0 : between(0.0, 0.3),
                                 one_of(4) == 0 ? 0.0 : between(0.0, 0.05), loading.data());
    payoff.strike = 100.0 * between(-1.0, before + ahead + 1.0);
    payoff.discount = between(0.5, 1.0) / (before + ahead + 1.0);
    payoff.X = between(0.0, 20.0);
    payoff.is_call_on = one_of(2) == 0;
    payoff.is_call = one_of(2) == 0;
    const double z = between(-2.0, 2.0);
    double y[count], of_two[4][count], of_four[4][count];
    for (double& point : y) point = one_of(50) == 0 ? between(-60.0, 60.0) : between(-8.0, 9.0);
    y[one_of(100) % count] = NAN;
    exercise_at_nodes_kernel<elementary::TwoLanes>(payoff, z,
                                                   {count, y, of_two[0], of_two[1], of_two[2], of_two[3]});
    const bool avx2 = __builtin_cpu_supports("avx2");
    if (avx2) exercise_at_nodes_avx2(payoff, z, {count, y, of_four[0], of_four[1], of_four[2], of_four[3]});
    for (int i = 0; i < count; ++i) {
      const double log_growth = payoff.deviation * (y[i] - payoff.deviation / 2.0);
      const double S = payoff.S0 * exponential(log_growth);
      const double strike = payoff.strike - payoff.S0 * sum_given_expiry(payoff.before, log_growth, z);
      const double alone[] = {S, strike, exercise_margin(payoff, S, strike), exponential(-y[i] * y[i] / 2.0)};
      for (int what = 0; what < 4; ++what)
        differing += !same(alone[what], of_two[what][i]) || (avx2 && !same(alone[what], of_four[what][i]));
      finite += std::isfinite(alone[2]);
    }
  }
  EXPECT_EQ(differing, 0);
  EXPECT_GT(finite, 20000);
}

TEST(CompoundAsian, DegenerateInput) {
  for (int RetType : {INT_MIN, -1, 9, INT_MAX})
    EXPECT_EQ(compound_asian_greek(half_way, RetType), 0.0) << RetType;
  EXPECT_EQ(compound_asian_greek(with(half_way, &CompoundAsian::rc, 0), 4), 0.0);
  const CompoundAsian expired = with(half_way, &CompoundAsian::CmpExpDays, -1);
  EXPECT_EQ(compound_asian_greek(expired, 1), 0.0);
  EXPECT_NEAR(compound_asian_price(expired),
              compound_asian_price(with(half_way, &CompoundAsian::CmpExpDays, 1e-9)), 1e-3);
  // All fixings made: the payoff on their average.
  CompoundAsian settled = half_way;
  settled.m = settled.N;
  settled.A = 110;
  settled.toNext = 0;
  EXPECT_NEAR(compound_asian_price(settled),
              10 * std::exp(-.05 * 60 / 365.25) - 4 * std::exp(-.045 * 45 / 365.25), 1e-12);

  const struct {
    double CompoundAsian::*term;
    double value;
    int N;
  } refused[] = {{&CompoundAsian::ExpDays, 4e3, 31},
                 {&CompoundAsian::ExpDays, 1e300, 31},
                 {&CompoundAsian::ExpDays, NAN, 31},
                 {&CompoundAsian::toNext, -1e300, INT_MAX},
                 {&CompoundAsian::CmpExpDays, 1e300, 31},
                 {&CompoundAsian::CmpExpDays, NAN, 31},
                 {&CompoundAsian::sigma_c, 0, 31},
                 {&CompoundAsian::sigma_c, 1e6, 31},
                 {&CompoundAsian::S0, -1, 31},
                 {&CompoundAsian::A, NAN, 31},
                 {&CompoundAsian::sigma2, NAN, 31},
                 {&CompoundAsian::X, 4, 4000}};
  for (const auto& row : refused) {
    CompoundAsian bad = with(half_way, row.term, row.value);
    bad.N = row.N;
    bad.m = row.term == &CompoundAsian::A ? 1 : 0;
    for (int RetType : {0, 5}) EXPECT_TRUE(std::isnan(compound_asian_greek(bad, RetType))) << row.value;
  }
  set_allocation_limit(1);
  EXPECT_TRUE(std::isnan(compound_asian_price(half_way)));
  set_allocation_limit(0);
}

}  // namespace
}  // namespace kestran
