#include "models/rates/xcap.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

#include "numerics/arrays.h"

namespace kestran {
namespace {

const double Price[4] = {20, 20.5, 21, 21.5};
const double IntRt[4] = {.05, .051, .052, .053};
const double Vol[4] = {.3, .29, .28, .27};
const double Expiry[4] = {120 / 365.25, 150 / 365.25, 181 / 365.25, 212 / 365.25};
const double Qty[4] = {1, 2, 1.5, 3};
const double T = 90 / 365.25;

CapOption four_periods(int OptType, int N) {
  return {Price, IntRt, Vol, Expiry, Qty, 4, 0.25, 21, 0.8, T, 0.05, 0.05, N, OptType};
}

double strip_value(double m, bool is_cap, int n = 4) {
  return capfloor_strip_value(m, Price, IntRt, Vol, Expiry, Qty, T, 21, .05, n, is_cap);
}

// Expected values here and below: the tree rolled back level by level in mpmath, 30 digits.
TEST(Xcap, EveryResult) {
  const int RetTypes[] = {0, 1, 2, 3, 4, 5, 11, 14};
  const double scale[] = {1, 1e3, 1e6, 1e3, 1e4, 1e3, 1e3, 1e3};
  const double expected[4][8] = {
      {0.86513172249417, 0.44866823698362, 0.074723801631768, 3.3331083653314, 0.1229846844068,
       -1.6458851115866, 0.051264331049944, 0.19184244003591},
      {0.18145252849729, -0.062116222914667, -0.026499264583377, 0.59833044360378, -0.071725624508587,
       -0.29556676830397, -0.0017339666689304, -0.03588282629708},
      {0.90106608593435, -0.40224475100136, 0.069195878462474, 3.2152473698621, 0.13196700455893,
       -1.5846891916605, -0.068505323463085, -0.13814449791223},
      {0.14961348648883, 0.062066488308164, -0.03202718775267, 0.48072798812667, -0.062743304356464,
       -0.23743899543668, 0.0096574270922688, 0.022012886065083}};
  for (int OptType = 1; OptType <= 4; ++OptType)
    for (int k = 0; k < 8; ++k)
      EXPECT_NEAR(xcap_greeks(four_periods(OptType, 25), RetTypes[k]), expected[OptType - 1][k],
                  2e-13 * scale[k])
          << "OptType " << OptType << " RetType " << RetTypes[k];
  EXPECT_NEAR(strip_value(1.1, true), 2.4205429448982, 1e-12);
  EXPECT_NEAR(strip_value(1.1, false), 0.42295210100097, 1e-12);

  CapOption with_drift = four_periods(1, 7);
  with_drift.r_carry = 0.01;
  EXPECT_NEAR(xcap_tree(with_drift), 0.9618454027054, 1e-12);
  CapOption one_step = four_periods(3, 1);
  one_step.n = 1;
  EXPECT_NEAR(xcap_tree(one_step), 1.331174521839, 1e-12);
}

// Rolls the payoffs back level by level, as the tree is defined.
double rolled_back(const CapOption& option) {
  const double v = option.StripVol * option.StripVol * option.T / option.N;
  const double nu = (option.r - option.r_carry) / (option.StripVol * option.StripVol) - 0.5;
  const double dx = std::sqrt(nu * nu * v * v + v);
  const double p = 0.5 * (1.0 + nu * v / dx);
  std::vector<double> value;
  for (int j = -option.N; j <= option.N; j += 2) {
    const double V = strip_value(std::exp(j * dx), option.OptType < 3);
    const double payoff = option.OptType % 2 != 0 ? V - option.CompStrike : option.CompStrike - V;
    value.push_back(payoff > 0.0 ? payoff : 0.0);
  }
  for (int k = option.N - 1; k >= 0; --k)
    for (int i = 0; i <= k; ++i)
      value[i] = (p * value[i + 1] + (1.0 - p) * value[i]) * std::exp(-option.r * option.T / option.N);
  return value[0];
}

TEST(Xcap, BinomialWeightsEqualRollingBack) {
  for (int N : {2, 3, 100, 1001, 3000})
    for (double StripVol : {0.01, 0.25, 2.5})
      for (int OptType : {-2, -1, 5}) {
        CapOption option = four_periods(OptType, N);
        option.StripVol = StripVol;
        EXPECT_NEAR(xcap_tree(option), rolled_back(option), 2e-11) << N << " " << StripVol << " " << OptType;
      }
}

// Nodes that make up the premium where it is high above and far below the likeliest ones.
TEST(Xcap, UnlikelyNodesThatCount) {
  CapOption violent = four_periods(1, 1000);
  violent.StripVol = 9;
  EXPECT_NEAR(xcap_tree(violent), rolled_back(violent), 1e-11 * rolled_back(violent));
  CapOption far_out = four_periods(1, 1000);
  far_out.CompStrike = 60;
  EXPECT_NEAR(xcap_tree(far_out), rolled_back(far_out), 1e-11 * rolled_back(far_out));
  far_out = four_periods(3, 1000);
  far_out.CompStrike = 17;
  EXPECT_NEAR(xcap_tree(far_out), rolled_back(far_out), 1e-11 * rolled_back(far_out));
}

TEST(Xcap, LimitsAndIdentities) {
  // Trapezoidal integral over the lognormal factor of the same strip values, with its normal density.
  EXPECT_NEAR(xcap_tree(four_periods(1, xcap_most_steps)), 0.86479626, 1e-4);
  // A call less the put, for any CompStrike, holds the strip's mean value less the strike.
  CapOption call = four_periods(1, 40), put = four_periods(2, 40);
  const double difference = xcap_tree(call) - xcap_tree(put);
  call.CompStrike = put.CompStrike = 1.7;
  EXPECT_NEAR(difference - (xcap_tree(call) - xcap_tree(put)), 0.9 * std::exp(-.05 * T), 1e-12);
  // Cap less floor is the discounted forward less strike, period by period.
  EXPECT_NEAR(strip_value(0.8, true, 1) - strip_value(0.8, false, 1),
              (16 - 21) * std::exp(-(.05 * Expiry[0] - .05 * T)), 1e-8);
}

TEST(Xcap, DegenerateInput) {
  for (int RetType : {INT_MIN, -1, 6, 10, 15, INT_MAX})
    EXPECT_EQ(xcap_greeks(four_periods(1, 25), RetType), 0.0) << RetType;
  for (int N : {INT_MIN, -1, 0, xcap_most_steps + 1, INT_MAX})
    EXPECT_TRUE(std::isnan(xcap_tree(four_periods(1, N)))) << N;
  CapOption option = four_periods(1, 25);
  option.r = option.r_carry = 0;
  EXPECT_EQ(xcap_greeks(option, 4), 0.0);
  option.T = 1e-6;
  EXPECT_EQ(xcap_greeks(option, 5), 0.0);
  for (double no_time : {Expiry[0], 0.0, -1.0}) {
    option.T = no_time;  // Expiry[0]: the first period expires with the option
    EXPECT_TRUE(std::isnan(xcap_tree(option))) << no_time;
  }
  option = four_periods(1, 25);
  option.StripVol = 0;
  EXPECT_TRUE(std::isnan(xcap_tree(option)));
  option.n = 0;
  EXPECT_TRUE(std::isnan(xcap_greeks(option, 1)));
  for (int failing = 1; failing <= 3; ++failing) {
    set_allocation_limit(failing);
    EXPECT_TRUE(std::isnan(xcap_greeks(four_periods(1, 25), 1))) << failing;
  }
  set_allocation_limit(0);
}

}  // namespace
}  // namespace kestran
