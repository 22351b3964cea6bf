#include <gtest/gtest.h>

#include <cmath>

#include "models/black_scholes/boston.h"
#include "models/black_scholes/combo.h"
#include "models/black_scholes/european.h"

namespace kestran {
namespace {

const double nan = NAN;

// S 100, strikes 95 and 105, T 0.5, r 0.05, q 0.02, volatilities 0.32 and 0.28; the sums of closed forms with
// the polynomial normal distribution in mpmath, 30 digits.
TEST(Combination, EveryPositionAndResult) {
  const double expected[3][9] = {
      {12.178159398, 0.12781798516, 0.035971751678, 53.57520975, -6.0890796991, -15.804327084, 0.30181955885,
       0.17500791874, -0.14618492075},
      {5.8183815576, 0.18438599375, -0.0038241776712, -2.139091339, -2.9091907788, -0.69201569667,
       6.3101089086, -0.58381751028, 0.1868053476},
      {3.9347175626, -0.18438599375, 0.0038241776712, 2.139091339, -1.9673587813, 1.1796706527, -11.186658469,
       0.58381751028, -0.1868053476},
  };
  const auto combo = [](int OptType, int RetType) {
    return combo_option(100, 95, 105, 0.5, 0.05, 0.02, 0.32, 0.28, OptType, RetType);
  };
  for (int RetType = 0; RetType <= 8; ++RetType) {
    for (int OptType = 0; OptType <= 2; ++OptType)
      EXPECT_NEAR(combo(OptType, RetType), expected[OptType][RetType], 1e-9) << OptType << " " << RetType;
    EXPECT_EQ(combo(3, RetType), -combo(1, RetType));
    EXPECT_EQ(combo(4, RetType), -combo(2, RetType));
    EXPECT_EQ(combo(6, RetType), -combo(5, RetType));
  }
  EXPECT_NEAR(combo(5, 0), -0.53216017458, 1e-9);
  EXPECT_NEAR(combo(5, 1), -0.80566384, 1e-9);
  EXPECT_NEAR(combo(7, 0), 21.931258519, 1e-9);
  EXPECT_EQ(combo(-1, 0), 99.0);
  EXPECT_EQ(combo(8, 0), 99.0);
  EXPECT_EQ(combo(0, 9), 99.0);
  EXPECT_EQ(combo_option(110, 95, 105, 0, 0.05, 0.02, 0.32, 0.28, 1, 0), 10.0);
  EXPECT_EQ(combo_option(110, 95, 105, 0, 0.05, 0.02, 0.32, 0.28, 1, 1), 0.0);
}

// Expected values: the fair terms solved with the polynomial normal distribution in mpmath, 30 digits (with
// the exact one the strikes differ by 1.3e-5 at most). The strike is where the premium meets the terms within
// 1e-9 of the forward.
TEST(Boston, StrikesOfBothTypes) {
  const struct {
    double S, B, T, r, q, sigma;
    int OptType;
    double strike;
  } rows[] = {
      {100, 105, 0.5, 0.05, 0.02, 0.2, 1, 96.65426644},  {100, 98, 0.5, 0.05, 0.02, 0.2, 0, 107.07145805},
      {1.5, 1.6, 1, 0.03, 0.05, 0.1, 8, 1.5786522434},   {50, 90, 2, 0.04, 0, 0.35, 1, 86.988721871},
      {100, 150, 0.5, 0.05, 0.02, 0.2, 1, 149.98487232}, {100, 30, 3, 0.01, 0.04, 0.5, 0, 32.523173097},
  };
  for (const auto& w : rows) {
    const double K = boston_strike(w.S, w.B, w.T, w.r, w.q, w.sigma, w.OptType);
    EXPECT_NEAR(K, w.strike, 1e-8 * w.S) << w.S << " " << w.B;
    const double premium = std::exp(w.r * w.T) * bs_general(w.S, K, w.T, w.r, w.q, w.sigma, w.OptType, 0);
    EXPECT_NEAR(premium, std::fabs(w.B - K), 1e-7 * w.S) << w.S << " " << w.B;
  }
}

TEST(Boston, WhereNoStrikeExists) {
  const double F = 100 * std::exp(0.015);
  const auto strike = [](double B, int OptType) {
    return boston_strike(100, B, 0.5, 0.05, 0.02, 0.2, OptType);
  };
  EXPECT_EQ(strike(101, 1), -99.0);  // better than the forward price, 101.51
  EXPECT_EQ(strike(102, 0), -99.0);
  EXPECT_EQ(strike(F + 5e-8, 1), 0.0);
  EXPECT_EQ(strike(F - 5e-8, 0), -99.0);
  EXPECT_EQ(strike(0, 1), -99.0);
  EXPECT_EQ(boston_strike(0, 100, 1, 0, 0, 0.2, 1), -99.0);
  EXPECT_EQ(boston_strike(100, 100, 1, 0.05, 0.05, 0.2, 1), 0.0);  // no worse than the forward
  EXPECT_EQ(boston_strike(100, 104, 0, 0, 0, 0.2, 1), 104.0);
  EXPECT_EQ(boston_strike(100, 104, 0, 0, 0, 0.2, 0), -99.0);
  EXPECT_NEAR(strike(1e6, 1), 1e6, 1e-6);
  EXPECT_NEAR(strike(1e-3, 0), 1e-3, 1e-6);
  EXPECT_NEAR(boston_strike(100, 105, 0.5, 0, 0, 0, 1), 105, 1e-3);
  EXPECT_TRUE(std::isnan(boston_strike(nan, 105, 1, 0, 0, 0.2, 1)));
  EXPECT_TRUE(std::isnan(boston_strike(100, 105, 1, nan, 0, 0.2, 1)));
  EXPECT_TRUE(std::isnan(boston_strike(100, 105, 1, 0, 0, nan, 1)));
}

}  // namespace
}  // namespace kestran
