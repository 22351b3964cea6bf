#include "models/exotics/warrant.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "models/black_scholes/american_tree.h"
#include "models/black_scholes/european.h"
#include "numerics/arrays.h"

namespace kestran {
namespace {

TEST(Warrant, AgreesWithTheSolvedFixedPoint) {
  // Never exercised early: the fixed point and its derivatives with the exact normal distribution in mpmath,
  // 30 digits; 3 and 4 are one-sided here.
  const struct {
    double r, q;
    int WarType;
    double results[6];
  } rows[] = {
      {0.05, 0, 1, {30.5192274, 0.707274351, 0.00560785229, 72.682956, -174.181604, -4.19089907}},
      {0, 0.02, 0, {42.0808491, -0.447537323, 0.00461984885, 98.254933, -191.571495, -3.91805365}},
  };
  for (const auto& row : rows)
    for (int i = 0; i < 6; ++i)
      EXPECT_NEAR(warrant_value({100, 110, row.r, row.q, 0.3, 2, 5, 20, 100, row.WarType}, i), row.results[i],
                  i < 3 ? 1e-5 : 1e-3 * std::fabs(row.results[i]))
          << row.WarType << " RetType " << i;
  // The same in another currency.
  for (const auto& row : rows)
    EXPECT_NEAR(1000.0 * warrant_value({0.1, 0.11, row.r, row.q, 0.3, 2, 5, 20, 100, row.WarType}, 0),
                row.results[0], 1e-5)
        << row.WarType;
}

TEST(Warrant, AgreesWithFiniteDifferences) {
  // Crank-Nicolson differences of the pricing equation, exercise after vesting by Brennan and Schwartz's
  // projection, 4,000 by 4,000 points; the fixed point by bisection.
  const struct {
    double tv, Nwar;
    int WarType;
    double results[3];
  } rows[] = {{2, 20, 1, {23.8759, 0.58276, 0.005458}},
              {0, 20, 1, {23.8765, 0.58282, 0.005463}},
              {2, 20, 0, {27.6371, -0.39304, 0.005734}},
              {0, 20, 0, {28.0730, -0.41300, 0.006662}}};
  const double tolerance[] = {2e-3, 1e-4, 1e-5};
  for (const auto& row : rows)
    for (int i = 0; i < 3; ++i)
      EXPECT_NEAR(warrant_value({100, 110, 0.05, 0.02, 0.3, row.tv, 5, row.Nwar, 100, row.WarType}, i),
                  row.results[i], tolerance[i])
          << row.tv << " " << row.WarType << " RetType " << i;
  EXPECT_NEAR(warrant_value({95, 100, 0.06, 0.04, 0.25, 1.7, 3, 0, 1, 0}, 0), 15.17735, 1e-3);
  EXPECT_NEAR(warrant_value({55, 50, 0.02, 0.06, 0.4, 0.5, 4, 0, 1, 1}, 0), 14.4593, 1e-3);
}

TEST(Warrant, IsOrderedByVestingAndDilution) {
  const auto value = [](double tv, double Nwar, int WarType) {
    return warrant_value({90, 100, 0.04, 0.05, 0.3, tv, 3, Nwar, 100, WarType}, 0);
  };
  for (const int WarType : {0, 1}) {
    const double european = bs_general(90, 100, 3, 0.04, 0.05, 0.3, WarType, 0);
    EXPECT_EQ(value(0, 0, WarType), american_tree(90, 100, 3, 0, 0.04, 0.05, 0.3, WarType, 400).price);
    EXPECT_NEAR(value(1e-9, 0, WarType), value(0, 0, WarType), 2e-3);
    EXPECT_EQ(value(3, 0, WarType), european);
    for (double tv = 0.0; tv < 3.0; tv += 0.1) {
      EXPECT_GE(value(tv, 0, WarType), value(tv + 0.1, 0, WarType) - 2e-3) << tv;
      EXPECT_GE(value(tv, 0, WarType), european) << tv;
    }
  }
  for (double Nwar = 0; Nwar < 95; Nwar += 10) EXPECT_GT(value(1, Nwar, 1), value(1, Nwar + 10, 1)) << Nwar;
}

TEST(Warrant, BadInputHasAnswers) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double exercised[] = {290, 1, 0, 0, 0, 0};
  for (int i = 0; i < 6; ++i) {
    EXPECT_NEAR(warrant_value({400, 110, 0.05, 0.08, 0.3, 0, 5, 20, 100, 1}, i), exercised[i], 1e-9);
    EXPECT_EQ(warrant_value({90, 110, 0.05, 0.02, 0.3, 0, 0, 20, 100, 0}, i), i == 0 ? 20.0 : 0.0);
    for (int bad = 0; bad < 8; ++bad) {
      double x[] = {90, 110, 0.05, 0.02, 0.3, 1, 20, 100};
      x[bad] = nan;
      EXPECT_TRUE(std::isnan(warrant_value({x[0], x[1], x[2], x[3], x[4], x[5], 3, x[6], x[7], 0}, i)))
          << bad;
      x[bad] = 1e300;
      warrant_value({x[0], x[1], x[2], x[3], x[4], x[5], 3, x[6], x[7], 1}, i);
    }
  }
  const double refused[][4] = {
      {0, 110, 20, 100}, {90, -1, 20, 100}, {90, 110, -1, 100}, {90, 110, 20, 0}, {90, 110, 100, 100}};
  for (const auto& x : refused)
    EXPECT_EQ(warrant_value({x[0], x[1], 0.05, 0.02, 0.3, 1, 3, x[2], x[3], 0}, 0), -99.0);
  EXPECT_EQ(warrant_value({90, 110, 0.05, 0.02, 0.3, 1, 3, 20, 100, 0}, 6), 99.0);
  set_allocation_limit(4);
  EXPECT_TRUE(std::isnan(warrant_value({90, 110, 0.05, 0.02, 0.3, 1, 3, 20, 100, 0}, 0)));
  set_allocation_limit(0);
}

}  // namespace
}  // namespace kestran
