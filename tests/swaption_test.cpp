#include "models/rates/swaption.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "models/black_scholes/european.h"
#include "numerics/arrays.h"

namespace kestran {
namespace {

struct Swap {
  std::vector<double> Fwd, Qty, Swaptime, Rates;
};

const Swap five_periods{
    {20, 20.5, 21, 21.5, 22}, {1, 1, 2, 1, 3}, {.5, .6, .7, .8, -.1}, {.05, .051, .052, .053, .054}};

// The results in worksheet order: price, delta, gamma, vega, rate, theta, vanna, decay; those of a period for
// `period`. Several strikes are one for each period.
std::vector<double> results(const Swap& swap, const std::vector<double>& Strikes, double IntRt, double Expiry,
                            int Opttype, int period) {
  std::vector<double> arrays[4];
  for (auto& by_period : arrays) by_period.resize(swap.Fwd.size());
  SwaptionRecord record;
  record.delta_by_period = arrays[0].data();
  record.gamma_by_period = arrays[1].data();
  record.decay_by_period = arrays[2].data();
  record.vanna_by_period = arrays[3].data();
  const int n = static_cast<int>(swap.Fwd.size());
  if (Strikes.size() == 1)
    swaption_model(swap.Fwd.data(), swap.Qty.data(), swap.Swaptime.data(), swap.Rates.data(), .25, Strikes[0],
                   IntRt, Expiry, n, Opttype, record);
  else
    swaption1_model(swap.Fwd.data(), swap.Qty.data(), swap.Swaptime.data(), swap.Rates.data(), Strikes.data(),
                    .25, IntRt, Expiry, n, Opttype, record);
  return {record.price,     arrays[0][period], arrays[1][period], record.vega,
          record.rate_sens, record.theta,      arrays[3][period], arrays[2][period]};
}

// Expected values: the closed forms in mpmath, 30 digits, for the second period; its fifth settles in the
// past.
TEST(Swaption, EveryResult) {
  const double call[8] = {1.662671702484,   0.5778625072389, 0.1054019253172,  5.408343049975,
                          -0.6157259808338, -1.415106991855, -0.1122300864324, 0.06148509113827};
  const double put[8] = {1.11669021542,    -0.3921047078774, 0.1054019253172,  5.408343049975,
                         -0.4135363446373, -1.44374483445,   -0.1122300864324, 0.01060833233308};
  Swap larger = five_periods;
  for (double& quantity : larger.Qty) quantity *= 700;
  for (int Opttype : {1, 2, -1, 0})
    for (int k = 0; k < 8; ++k) {
      const double expected = Opttype == 0 ? put[k] : call[k];
      EXPECT_NEAR(results(five_periods, {20.7}, .05, .45, Opttype, 1)[k], expected, 1e-12)
          << Opttype << " " << k;
      EXPECT_NEAR(results(larger, {20.7}, .05, .45, Opttype, 1)[k], expected, 1e-12) << Opttype << " " << k;
    }
}

TEST(Swaption, OnePeriodIsAnOptionOnItsForward) {
  const Swap one{{20}, {3}, {.45}, {.05}};
  for (int Opttype : {0, 1}) {
    const auto value = results(one, {20.7}, .05, .45, Opttype, 0);
    const int RetTypes[] = {0, 1, 2, 3};
    for (int k : RetTypes)
      EXPECT_NEAR(value[k], bs_general(20, 20.7, .45, .05, .05, .25, Opttype, k), 1e-12)
          << Opttype << " " << k;
  }
}

TEST(Swaption, StrikeForEachPeriod) {
  const Swap swap{{20, 20.5, 21, 21.5}, {1, 1, 2, 1}, {.5, .6, .7, .8}, {.05, .051, .052, .053}};
  const std::vector<double> strikes{19.5, 20, 21, 22};
  // The closed forms in mpmath, 30 digits. Simulated with one common factor in 40 million antithetic pairs:
  // 1.389706 +- 0.000192 and 1.291154 +- 0.000132.
  const double expected[2][8] = {{1.291304133599, -0.4412773304545, 0.1102395817461, 5.345349307837,
                                  -0.8441887899941, -1.418246938887, 0.08384417649997, -0.046039804044},
                                 {1.389959811199, 0.5286898846618, 0.1102395817461, 5.345349307837,
                                  -0.9086848408714, -1.413160811997, 0.08384417649997, 0.003966201238304}};
  // Strikes moved so that their sum, each weighted with quantity and discount factor, stays.
  std::vector<double> moved = strikes;
  moved[0] += 1 / semiannual_discount(.05, .5);
  moved[2] -= .5 / semiannual_discount(.052, .7);
  for (int Opttype : {0, 1})
    for (int k = 0; k < 8; ++k) {
      EXPECT_NEAR(results(swap, strikes, .05, .45, Opttype, 1)[k], expected[Opttype][k], 1e-12)
          << Opttype << " " << k;
      EXPECT_NEAR(results(swap, moved, .05, .45, Opttype, 1)[k], expected[Opttype][k], 1e-12)
          << Opttype << " " << k;
      EXPECT_NEAR(results(five_periods, {20.7, 20.7, 20.7, 20.7, 20.7}, .05, .45, Opttype, 1)[k],
                  results(five_periods, {20.7}, .05, .45, Opttype, 1)[k], 1e-12)
          << Opttype << " " << k;
    }
  EXPECT_TRUE(std::isnan(results(swap, {19.5, 20, -99, 22}, .05, .45, 1, 1)[0]));
}

TEST(Swaption, DiscountFactor) {
  EXPECT_NEAR(semiannual_discount(.05, .5), 1 / 1.025, 1e-16);
  EXPECT_EQ(semiannual_discount(-3, 0), 1.0);
  EXPECT_NEAR(semiannual_discount(-.02, 30), std::pow(.99, -60), 1e-14);
  EXPECT_EQ(semiannual_discount(.05, 0), 1.0);
  EXPECT_EQ(semiannual_discount(.05, -2), 1.0);
  EXPECT_TRUE(std::isnan(semiannual_discount(.05, NAN)));
  EXPECT_TRUE(std::isnan(semiannual_discount(-2.1, 1)));
}

TEST(Swaption, DegenerateInput) {
  Swap swap = five_periods;
  swap.Qty[1] = 0;
  EXPECT_TRUE(std::isnan(results(swap, {20.7}, .05, .45, 1, 1)[1]));
  EXPECT_TRUE(std::isfinite(results(swap, {20.7}, .05, .45, 1, 2)[1]));
  EXPECT_FALSE(std::isfinite(results(swap, {20.7}, .05, 0, 1, 2)[2]));
  const std::vector<double> many(17, .5);
  set_allocation_limit(1);
  for (double value : results({many, many, many, many}, {.6}, .05, .45, 1, 4)) EXPECT_TRUE(std::isnan(value));
  set_allocation_limit(0);
}

}  // namespace
}  // namespace kestran
