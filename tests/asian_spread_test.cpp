#include "models/asian/asian_spread.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "models/exotics/spread_kernel.h"

namespace kestran {
namespace {

const AsianSpread futures{100, 90, 8, .05, .05, .05, .30, .25, .30, .25, .6, 0, 0, 60, 30, 30, 1};
const AsianSpread averaging{100, 90, 8, .05, .05, .05, .30, .25, .30, .25, .6, 102, 88, 60, -30, -30, 1};
const AsianSpread spot{50, 52, -3, .05, .02, .04, .50, .40, .30, .35, .7, 0, 51, 120, 60, -20, 0};

// Expected: the double sums of the moments, the spread option integrated on a dense grid with the exact
// normal distribution. Simulated: paths of daily fixings, with the error that the lognormal averages make
// allowed for.
TEST(AsianSpread, EveryResult) {
  const struct {
    AsianSpread option;
    std::vector<double> result;
    struct {
      double price, error, allowed;
    } simulated;
  } rows[] = {
      {futures,
       {4.260089366, 0.6114747482, -0.5753706663, 0.04686276436, 0.04882511137, 8.296525267, 2.335330573,
        -3.521121305, -0.6998093415, -13.9478028, 0.4119313085, -0.5448884684, -0.04783125928, 2.628909169},
       {4.25804, 0.00333, 0.002}},
      {averaging,
       {3.677985631, 0.5460089825, -0.5325063926, 0.03043154984, 0.03372529602, 2.619769396, 0.8941643579,
        -1.175797863, -0.6041865513, -8.902623628, -1.858512953, 1.659824582, -0.03203547221, 3.512936158},
       {3.67472, 0.00107, 0.002}},
      {spot,
       {1.901907117, -0.3820997354, 0.3718581062, 0.05799098209, 0.04476068186, 5.513873915, 0.6168926915,
        -2.69368011, -0.6248565476, -4.558413879, 0.05474530118, -1.24662201, -0.05094420041, 3.558195385},
       {1.89539, 0.00510, 0.003}},
      {{100, 100, 0, .03, .03, .03, .6, .2, .6, .2, -.5, 0, 0, 250, 100, 200, 1},
       {18.50694512, 0.582769557, -0.3969059466, 0.007945564878, 0.007945564602, 23.4601507, 20.63755976,
        -4.486790226, -12.66731357, -20.13905661, -0.08550779833, -0.1148992702, -0.007945555709,
        9.312312233},
       {18.45416, 0.02555, 0.004}},
      {{100, 90, 8, .05, .05, .05, .45, .40, .45, .40, .9, 0, 0, 365, 1, 1, 1},
       {5.42042356, 0.564291207, -0.5187856166, 0.03149954583, 0.03279538948, 13.25787118, -3.744038214,
        -17.85307885, -5.416713482, -6.033575667, 0.09149036378, -0.148313862, -0.03213473022, 9.432522822},
       {5.34130, 0.00871, 0.015}},
      {{20, 24, -5, .04, 0, .06, .5, .4, .3, .35, 0, 0, 24, 12, 3, -5, 1},
       {1.1656423, 0.8044484135, -0.5636494371, 0.2167534251, 0.1256846484, 0.5525110606, 0.3052318689,
        -0.1611877515, -0.03829625626, -9.773021524, 5.683201238, 11.57683482, -0.1650495439, 0.6440680518},
       {1.16449, 0.00037, 0.002}},
      // The last day before the last fixing: theta has both fixings left made at today's prices.
      {{100, 90, 8, .05, .05, .05, .30, .25, .30, .25, .6, 101, 93, 1, -9, -3, 1},
       {1.018042448, 0.1817932871, -0.3999452116, 0, 0, 0, 0, 0, -0.002787248317, 0.05090500093, -66.39999811,
        146.0799885, 0, 0},
       {1.018051, 0.000005, 0.0}},
  };
  for (const auto& row : rows) {
    for (int RetType = 0; RetType <= 13; ++RetType) {
      const bool of_delta = RetType == 10 || RetType == 11;
      const double tolerance = RetType == 0 ? 3e-6 : 2e-4 * std::fabs(row.result[RetType]) + 1e-6;
      EXPECT_NEAR(asian_spread_greek(row.option, RetType), row.result[RetType], of_delta ? 2e-4 : tolerance)
          << "E " << row.option.E << " B " << row.option.BA << " RetType " << RetType;
    }
    EXPECT_NEAR(asian_spread_price(row.option), row.simulated.price,
                3 * row.simulated.error + row.simulated.allowed * row.simulated.price);
  }
}

TEST(AsianSpread, OneFixingIsASpreadOption) {
  const double T = 30 / 365.25;
  double out[3];
  const double expected =
      spread_kernel(100, 90, 8, .3 * std::sqrt(T), .25 * std::sqrt(T), .6, std::exp(-.05 * T), 1, out);
  EXPECT_NEAR(expected, 3.871456, 1e-6);
  for (int B : {30, 31, std::numeric_limits<int>::max()}) {
    AsianSpread option = futures;
    option.E = 30;
    option.BA = option.BB = B;
    EXPECT_NEAR(asian_spread_price(option), expected, 1e-11);
  }
}

TEST(AsianSpread, CallLessPut) {
  for (AsianSpread option : {futures, averaging}) {
    const double call = asian_spread_price(option);
    option.OptType = 0;
    const double share = option.BA < 0 ? 61.0 / 91.0 : 1.0;
    const double margin = share * (100 - 90) + (1 - share) * (102 - 88) - 8;
    EXPECT_NEAR(call - asian_spread_price(option), std::exp(-.05 * 60 / 365.25) * margin, 1e-5);
  }
}

TEST(AsianSpread, DegenerateInputs) {
  constexpr int smallest = std::numeric_limits<int>::min();
  constexpr int largest = std::numeric_limits<int>::max();
  const auto days = [](int E, int BA, int BB, int RetType) {
    AsianSpread option = averaging;
    option.E = E;
    option.BA = BA;
    option.BB = BB;
    return asian_spread_greek(option, RetType);
  };
  EXPECT_EQ(days(0, -30, -30, 0), 102.0 - 88.0 - 8.0);
  EXPECT_EQ(days(smallest, smallest, largest, 0), 6.0);
  EXPECT_EQ(days(0, -30, -30, 9), 0.0);
  EXPECT_EQ(asian_spread_days(0, -30, -30), 0.0);
  EXPECT_EQ(asian_spread_days(60, 20, 30), 40.0);
  for (int RetType : {-1, 14}) EXPECT_EQ(days(60, 30, 30, RetType), 99.0);
  EXPECT_NEAR(days(60, smallest, smallest, 0), std::exp(-.05 * 60 / 365.25) * 6, 1e-6);
  EXPECT_TRUE(std::isfinite(days(60, smallest, smallest, 9)));
  EXPECT_TRUE(std::isfinite(days(36525, -1, 30, 0)));
  EXPECT_TRUE(std::isnan(days(36526, 30, -1, 0)));
  EXPECT_TRUE(std::isnan(days(largest, smallest, 5, 12)));

  AsianSpread option = averaging;
  option.VolA = option.VolB = 7;  // until averaging starts, which it has
  EXPECT_EQ(asian_spread_price(option), asian_spread_price(averaging));
  option.VolAf = option.VolBf = -1;
  EXPECT_NEAR(asian_spread_price(option), std::exp(-.05 * 60 / 365.25) * (10 * 61 + 14 * 30 - 8 * 91) / 91,
              1e-9);
  option.rho = std::nan("");
  EXPECT_TRUE(std::isnan(asian_spread_price(option)));
  option = averaging;
  option.PriceA = 0;
  EXPECT_TRUE(std::isnan(asian_spread_greek(option, 1)));
}

}  // namespace
}  // namespace kestran
