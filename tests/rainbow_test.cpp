#include "models/exotics/rainbow.h"

#include <gtest/gtest.h>

#include <cmath>

#include "models/bumps.h"

namespace kestran {
namespace {

TEST(Bumps, TimeMovesByADayButNotPastTheMiddle) {
  EXPECT_EQ(day_step(2.05 * one_day), one_day);
  EXPECT_EQ(day_step(1.9 * one_day), 1.9 * one_day / 2.0);
}

TEST(Rainbow, AgreesWithIndependentValues) {
  // The same formulas with mpmath, 40 digits.
  const struct {
    double X, rho;
    int OptType, RetType;
    double value, tolerance;
  } rows[] = {
      {98, 0.63, 1, 0, 8.0697399993754631, 1e-12},   {98, 0.63, 2, 0, 2.9342775289275191, 1e-12},
      {98, 0.63, 3, 0, 1.2177594456708826, 1e-12},   {98, 0.63, 4, 0, 3.5227118928589948, 1e-12},
      {98, 0.63, 5, 0, 2.0526163400056918, 1e-12},   {98, 0.63, 6, 0, 103.65011137815206, 1e-12},
      {98, 0.63, 1, 1, 0.22357049411099146, 1e-11},  {98, 0.63, 2, 2, 0.11336858686650065, 1e-11},
      {98, 0.63, 3, 3, 0.0013651827759009348, 1e-9}, {98, 0.63, 4, 4, 0.027999078976854969, 1e-9},
      {98, 0.63, 6, 5, -0.023892806393615851, 1e-9}, {98, 0.63, 1, 6, 10.751075951113594, 1e-8},
      {98, 0.63, 4, 7, 19.003683254287657, 1e-8},    {98, 0.63, 2, 8, 2.1989166649037685, 1e-8},
      {98, 0, 2, 8, 1.8983357088721744, 1e-8},       {98, 0.63, 3, 9, -4914.6640514849582, 1e-6},
      {98, 0.63, 5, 9, -9062.4519431873521, 1e-6},   {98, 0.63, 1, 10, -2.2624887703439332, 1e-8},
      {0, 0.63, 1, 0, 102.43235193248118, 1e-12},    {0, 0.63, 6, 0, 102.43235193248118, 1e-12},
  };
  for (const auto& row : rows) {
    EXPECT_NEAR(rainbow_greek({100, 105, row.X, 0.05, 0.06, 0.09, 0.5, 0.11, 0.16, row.rho, row.OptType},
                              row.RetType),
                row.value, row.tolerance)
        << row.OptType << ' ' << row.RetType;
  }
  // Haug (1998), "The Complete Guide to Option Pricing Formulas", page 58, with a more exact distribution.
  const double published[] = {8.0701, 2.9340, 1.2181, 3.5224};
  for (int OptType = 1; OptType <= 4; ++OptType) {
    EXPECT_NEAR(rainbow_price({100, 105, 98, 0.05, 0.06, 0.09, 0.5, 0.11, 0.16, 0.63, OptType}),
                published[OptType - 1], 5e-4);
  }
}

TEST(Rainbow, DoesNotDependOnWhichPriceComesFirst) {
  const auto price = [](double S1, double S2, double sigma1, double sigma2, int OptType) {
    return rainbow_price({S1, S2, 95, 0.04, 0.04, 0.04, 1.5, sigma1, sigma2, -0.4, OptType});
  };
  for (const int OptType : {1, 2, 3, 4, 6}) {
    EXPECT_NEAR(price(90, 110, 0.2, 0.35, OptType), price(110, 90, 0.35, 0.2, OptType), 1e-12) << OptType;
  }
  EXPECT_NEAR(price(90, 110, 0.2, 0.35, 5) - price(110, 90, 0.35, 0.2, 5), -20 * std::exp(-0.06), 1e-12);
}

// Perfectly correlated prices, where rounding puts the correlations that follow beyond 1. Expected: the
// payoff integrated over the one variable that moves both.
TEST(Rainbow, PerfectlyCorrelatedPrices) {
  const struct {
    double S1, S2, X, sigma1, sigma2, rho, days;
    int OptType;
    double value;
  } rows[] = {
      {109.77, 95.85, 115.1, 0.48, 0.44, 1, 180, 6, 124.519196175},
      {126.95, 113.27, 127.25, 0.15, 0.43, 1, 390, 1, 14.9106401198},
      {109.77, 95.85, 115.1, 0.48, 0.44, 1, 180, 2, 5.36999647559},
      {123, 116, 125, 0.3, 0.27, -1, 180, 1, 14.3646703941},
      {126, 113, 72, 0.23, 0.44, -1, 180, 2, 24.9668189555},
      {82, 111, 95, 0.52, 0.6, -1, 180, 3, 0.596632505962},
  };
  for (const auto& w : rows) {
    EXPECT_NEAR(
        rainbow_greek(
            {w.S1, w.S2, w.X, 0.05, 0.05, 0.05, w.days / 365.25, w.sigma1, w.sigma2, w.rho, w.OptType}, 0),
        w.value, 3e-5)
        << w.S1;
  }
  // A correlation that is none stays without an answer.
  EXPECT_TRUE(std::isnan(rainbow_price({100, 105, 98, 0.05, 0.05, 0.05, 1, 0.2, 0.3, 1.01, 1})));
}

TEST(Rainbow, DefinesTheDegenerateCases) {
  EXPECT_EQ(rainbow_price({100, 105, 98, 0.05, 0.05, 0.05, 1, 0.1, 0.2, 0.5, 0}), -1e26);
  EXPECT_EQ(rainbow_price({100, 105, 98, 0.05, 0.05, 0.05, 1, 0.1, 0.2, 0.5, 7}), -1e26);
  EXPECT_EQ(rainbow_greek({100, 105, 98, 0, 0.05, 0.05, 100, 0.1, 0.2, 0.5, 1}, 9), 0.0);
  EXPECT_TRUE(std::isnan(rainbow_greek({100, 105, 98, 0.05, 0.05, 0.05, 100, 0.1, 0.2, 0.5, 1}, 11)));
  EXPECT_TRUE(std::isnan(rainbow_price({100, 105, 98, 0.05, 0.05, 0.05, 1, 0.2, 0.2, 1, 1})));
  EXPECT_TRUE(std::isnan(rainbow_price({100, NAN, 98, 0.05, 0.05, 0.05, 1, 0.1, 0.2, 0.5, 2})));
}

}  // namespace
}  // namespace kestran
