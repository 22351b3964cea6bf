#include "models/rates/xcol.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "models/rates/xcap.h"
#include "numerics/arrays.h"

namespace kestran {
namespace {

const double Price[4] = {20, 20.5, 21, 21.5};
const double IntRt[4] = {.05, .051, .052, .053};
const double Vol[4] = {.3, .29, .28, .27};
const double Expiry[4] = {120 / 365.25, 150 / 365.25, 181 / 365.25, 212 / 365.25};
const double T = 90 / 365.25;

CollarOption four_periods(int OptType, int N) {
  return {Price, IntRt, Vol, Expiry, 4, .25, .03, T, 22, 19, .05, N, OptType};
}

// Expected values here and below: the tree rolled back level by level in mpmath, 30 digits.
TEST(Xcol, EveryResult) {
  const int RetTypes[13] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 14};
  const double expected[2][13] = {
      {0.5559901368689, -0.28020582513306, 0.10730195841902, 2.8893565689525, -0.24188849492297,
       -1.4382251685075, 0.53600838061397, 1.3664824560285, 0.052008804942241, 0.2769588559048,
       0.16380991613562, -0.07214737385502, -0.070488263840487},
      {0.76783903972011, 0.3939281500378, 0.11980105930571, 3.250431245597, -0.37256192238547,
       -1.6101453161869, 0.76871777704277, -0.89337843444743, -0.27174029085324, -0.073995761331488,
       0.16380991613562, 0.083415582363092, 0.10903971000891}};
  for (int OptType : {0, 1, 2, -1})
    for (int k = 0; k < 13; ++k)
      EXPECT_NEAR(xcol_greeks(four_periods(OptType, 25), RetTypes[k]), expected[OptType & 1][k],
                  RetTypes[k] == 0 || RetTypes[k] == 10 ? 1e-13 : 2e-10)
          << "OptType " << OptType << " RetType " << RetTypes[k];
  EXPECT_NEAR(xcol_tree(four_periods(1, 1)), 0.83704198418842, 1e-13);
  CollarOption no_floor_vol = four_periods(0, 7);
  no_floor_vol.VolSpread = -0.4;
  EXPECT_NEAR(xcol_tree(no_floor_vol), 0.33604716607333, 1e-13);
  EXPECT_NEAR(collar_strip_value(.9, four_periods(1, 1)), -1.0655359118645, 1e-13);
}

TEST(Xcol, Limits) {
  // Integral over the lognormal factor in mpmath with the exact normal distribution; simulated with 12
  // million pairs of antithetic values: 0.765815 +- 0.000195 and 0.554099 +- 0.000135.
  EXPECT_NEAR(xcol_tree(four_periods(1, 2000)), 0.765633590245, 3e-5);
  EXPECT_NEAR(xcol_tree(four_periods(0, 2000)), 0.553969001288, 3e-5);
  // Both strikes alike and no spread: an option on the swap, by Black's formula on its average price.
  CollarOption swap = four_periods(1, 200);
  swap.Cap = swap.Floor = 20.5;
  swap.VolSpread = 0;
  double A = 0, F = 0;
  for (int i = 0; i < 4; ++i) {
    A += std::exp(-IntRt[i] * Expiry[i]);
    F += std::exp(-IntRt[i] * Expiry[i]) * Price[i];
  }
  const double v = .25 * std::sqrt(T), d1 = std::log(F / A / 20.5) / v + v / 2;
  const auto normal = [](double x) { return std::erfc(-x / std::sqrt(2.0)) / 2; };
  EXPECT_NEAR(xcol_tree(swap), (F * normal(d1) - A * 20.5 * normal(d1 - v)) / 4, 5e-4);
}

TEST(Xcol, WithoutAFloorIsAnOptionOnTheCap) {
  const double Qty[4] = {2, 2, 2, 2};
  for (int N : {1, 24, 25}) {
    CollarOption collar = four_periods(1, N);
    collar.Floor = 0;
    const CapOption cap{Price, IntRt, Vol, Expiry, Qty, 4, .25, 22, 0, T, .05, .05, N, 1};
    EXPECT_NEAR(xcol_tree(collar), xcap_tree(cap), 1e-13) << N;
    EXPECT_EQ(xcol_greeks(collar, 9), 0.0);
  }
}

TEST(Xcol, DegenerateInput) {
  for (int RetType : {INT_MIN, -1, 15, INT_MAX})
    EXPECT_EQ(xcol_greeks(four_periods(1, 25), RetType), 0.0) << RetType;
  EXPECT_EQ(xcol_tree(four_periods(1, INT_MIN)), xcol_tree(four_periods(1, 1)));
  EXPECT_EQ(xcol_tree(four_periods(1, INT_MAX)), xcol_tree(four_periods(1, xcol_most_steps)));
  CollarOption option = four_periods(1, 25);
  option.T = 1e-6;
  EXPECT_EQ(xcol_greeks(option, 5), 0.0);
  for (double no_time : {Expiry[0], 0.0, -1.0}) {
    option.T = no_time;  // Expiry[0]: the first period expires with the option
    EXPECT_TRUE(std::isnan(xcol_tree(option))) << no_time;
  }
  option = four_periods(1, 25);
  option.SwapVol = 0;
  for (int RetType : {0, 2, 3}) EXPECT_TRUE(std::isnan(xcol_greeks(option, RetType))) << RetType;
  option.n = 0;
  for (int RetType : {0, 1, 10}) EXPECT_TRUE(std::isnan(xcol_greeks(option, RetType))) << RetType;
  for (int failing : {1, 2, 3}) {
    set_allocation_limit(failing);
    EXPECT_TRUE(std::isnan(xcol_greeks(four_periods(1, 25), 1))) << failing;
  }
  set_allocation_limit(0);
}

}  // namespace
}  // namespace kestran
