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

CollarOption four_periods(int OptType) {
  return {Price, IntRt, Vol, Expiry, 4, .25, .03, T, 22, 19, .05, OptType};
}

// Expected values here and below: the integral over the lognormal factor in mpmath, 25 digits, with the same
// approximation of the normal distribution.
TEST(Xcol, EveryResult) {
  const int RetTypes[13] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 14};
  const double expected[2][13] = {
      {0.55396902244529, -0.28011772643464, 0.10882792477735, 2.8787324530847, -0.24095484500153,
       -1.4329386539648, 0.53254298554, 1.3638522054362, 0.052390865248196, 0.27632904669623,
       0.16380991613562, -0.072113977683628, -0.070481997323508},
      {0.76563360510092, 0.39332819795545, 0.12178371111269, 3.2372451237534, -0.37151428937885,
       -1.6035699878522, 0.76665005863759, -0.89870006139787, -0.27102510175123, -0.074280563709664,
       0.16380991613562, 0.083119115115281, 0.10897970348005}};
  for (int OptType : {0, 1, 2, -1})
    for (int k = 0; k < 13; ++k)
      EXPECT_NEAR(xcol_greeks(four_periods(OptType), RetTypes[k]), expected[OptType & 1][k],
                  RetTypes[k] == 0 || RetTypes[k] == 10 ? 1e-10 : 1e-6)
          << "OptType " << OptType << " RetType " << RetTypes[k];
  CollarOption option = four_periods(1);
  option.n = 1;
  EXPECT_NEAR(xcol_greeks(option, 11), xcol_greeks(option, 1), 1e-9);  // the only period
  option.Cap = option.Floor = 0;
  EXPECT_EQ(xcol_greeks(option, 8), 0.0);
  EXPECT_EQ(xcol_greeks(option, 9), 0.0);
  option = four_periods(0);
  option.VolSpread = -0.4;  // no volatility is left for the floorlets
  EXPECT_NEAR(xcol_price(option), 0.32313668705265, 1e-8);
  option = four_periods(1);
  option.T = 0.0008;  // theta over a hundredth of the time left
  EXPECT_NEAR(xcol_greeks(option, 5), -9.4442746747209, 1e-6);
  EXPECT_NEAR(collar_strip_value(.9, four_periods(1)), -1.0655359118645, 1e-13);
}

TEST(Xcol, Limits) {
  // The integral with the exact normal distribution; simulated with 12 million pairs of antithetic values:
  // 0.765815 +- 0.000195 and 0.554099 +- 0.000135.
  EXPECT_NEAR(xcol_price(four_periods(1)), 0.765633590245, 5e-8);
  EXPECT_NEAR(xcol_price(four_periods(0)), 0.553969001288, 5e-8);
  // Both strikes alike and no spread: an option on the swap, by Black's formula on its average price.
  CollarOption swap = four_periods(1);
  swap.Cap = swap.Floor = 20.5;
  swap.VolSpread = 0;
  double A = 0, F = 0;
  for (int i = 0; i < 4; ++i) {
    A += std::exp(-IntRt[i] * Expiry[i]);
    F += std::exp(-IntRt[i] * Expiry[i]) * Price[i];
  }
  const double v = .25 * std::sqrt(T), d1 = std::log(F / A / 20.5) / v + v / 2;
  const auto normal = [](double x) { return std::erfc(-x / std::sqrt(2.0)) / 2; };
  EXPECT_NEAR(xcol_price(swap), (F * normal(d1) - A * 20.5 * normal(d1 - v)) / 4, 1e-6);
}

// Without a floor the collar is the cap, which the tree of xcap_tree prices ever better with more steps.
TEST(Xcol, WithoutAFloorIsAnOptionOnTheCap) {
  const double Qty[4] = {2, 2, 2, 2};
  CollarOption collar = four_periods(1);
  collar.Floor = 0;
  const CapOption cap{Price, IntRt, Vol, Expiry, Qty, 4, .25, 22, 0, T, .05, .05, 10000, 1};
  EXPECT_NEAR(xcol_price(collar), xcap_tree(cap), 5e-6);
  EXPECT_EQ(xcol_greeks(collar, 9), 0.0);
}

// The fourth difference of a smooth function falls with the fourth power of the step, that of one that jumps
// or has a kink does not: here it is lost in rounding. Some deals have periods that expire right after the
// option, or floorlets without volatility.
TEST(Xcol, NoResultJumpsAsAnInputMoves) {
  double P[4], R[4], V[4], E[4];
  for (int deal = 0; deal < 4; ++deal)
    for (int input = 0; input < 8; ++input)
      for (int RetType : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 13}) {
        const int OptType = (deal + input) % 2;
        const int steps = 30;
        double results[steps + 1];
        double scale = 1e-3;
        for (int k = 0; k <= steps; ++k) {
          const double factor = 0.97 + 3e-5 * k;
          const auto moved = [&](int which, double x) { return input == which ? x * factor : x; };
          CollarOption option = four_periods(OptType);
          option.T = moved(0, T);
          for (int i = 0; i < 4; ++i) {
            P[i] = moved(1, Price[i]);
            R[i] = moved(2, IntRt[i]);
            V[i] = moved(3, Vol[i]);
            E[i] = option.T + (deal == 1 ? 0.002 * (i + 1) : Expiry[i] - T);
          }
          option.Price = P, option.IntRt = R, option.Vol = V, option.ExpDays = E;
          option.SwapVol = moved(4, deal == 3 ? 0.9 : 0.25);
          option.VolSpread = moved(5, deal == 2 ? -0.35 : 0.03);
          option.Cap = moved(6, 22);
          option.Floor = moved(7, deal == 3 ? 21 : 19);
          results[k] = xcol_greeks(option, RetType);
          scale = std::fmax(scale, std::fabs(results[k]));
        }
        for (int k = 2; k + 2 <= steps; ++k) {
          const double* y = results + k;
          ASSERT_NEAR((y[-2] + y[2]) - 4 * (y[-1] + y[1]) + 6 * y[0], 0, 5e-7 * scale)
              << "deal " << deal << " input " << input << " RetType " << RetType << " OptType " << OptType;
        }
      }
}

TEST(Xcol, DegenerateInput) {
  for (int RetType : {INT_MIN, -1, 15, INT_MAX})
    EXPECT_EQ(xcol_greeks(four_periods(1), RetType), 0.0) << RetType;
  CollarOption option = four_periods(1);
  for (double no_time : {Expiry[0], 0.0, -1.0}) {
    option.T = no_time;  // Expiry[0]: the first period expires with the option
    EXPECT_TRUE(std::isnan(xcol_price(option))) << no_time;
    EXPECT_EQ(xcol_greeks(option, 5) == 0.0, no_time <= 0.0) << no_time;
  }
  // Never and always exercised: nothing, and the collar's forward value, discounted.
  option = four_periods(1);
  option.Cap = option.Floor = 1e4;
  EXPECT_EQ(xcol_price(option), 0.0);
  option.OptType = 0;
  EXPECT_NEAR(xcol_price(option), -std::exp(-.05 * T) * collar_strip_value(1, option), 1e-6);
  option = four_periods(1);
  option.SwapVol = 0;
  for (int RetType : {0, 2, 3}) EXPECT_TRUE(std::isnan(xcol_greeks(option, RetType))) << RetType;
  for (double SwapVol : {1e-9, 1e3, 1e9}) {
    option.SwapVol = SwapVol;
    EXPECT_TRUE(std::isfinite(xcol_price(option))) << SwapVol;
  }
  option.n = 0;
  for (int RetType : {0, 1, 10}) EXPECT_TRUE(std::isnan(xcol_greeks(option, RetType))) << RetType;
  for (int failing : {1, 2}) {
    set_allocation_limit(failing);
    EXPECT_TRUE(std::isnan(xcol_greeks(four_periods(1), 1))) << failing;
  }
  set_allocation_limit(0);
}

}  // namespace
}  // namespace kestran
