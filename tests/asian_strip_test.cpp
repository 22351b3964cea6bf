#include "models/strips/asian_strip.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "models/black_scholes/european.h"

namespace kestran {
namespace {

struct Months {
  double Next[4], End[4];
  double F[4] = {20, 21, 22, 21.5}, sigma[4] = {.4, .35, .3, .28}, n[4] = {21, 20, 22, 19};
  int L = 4;
};

AsianStrip option_on(const Months& of, double K, double rho, double A, double m, double ToExp, int OptType) {
  return {of.F, K, 0.05, of.sigma, rho, A, of.n, m, of.Next, of.End, ToExp, OptType, of.L};
}

const Months ahead{{.08, .17, .25, .33}, {.16, .24, .32, .40}};
const Months under_way{{-.08, -.001, .05, .13}, {-.02, .04, .12, .20}};

// Expected values: the double sum over pairs of months and all moves in mpmath, 30 digits; month 2 where a
// result is one of a month. Gammas, second differences of moves of 1e-4, carry the rounding of the premium
// 1e8-fold.
TEST(AsianStrip, EveryResult) {
  const Months out_of_order{{.17, .08, .33, .25}, {.24, .16, .40, .32}};
  const Months begun{{.002, .07, .15, .23}, {.06, .14, .22, .30}};
  const Months over{{-.3, -.25, -.15, -.1}, {-.28, -.2, -.11, -.05}};
  const struct {
    const char* name;
    AsianStrip strip;
    double result[10];
  } rows[] = {
      {"ahead, call",
       option_on(ahead, 21, .9, 0, 0, .42, 1),
       {1.1693570664878, 0.13057393343602, 0.033278059598943, 0.7914854147686, -0.49111965433994,
        -3.0117351947247, -3.0117351947247, 0, 0.41476946331756, 0.0063600445680263}},
      {"out of order, put",
       option_on(out_of_order, 21, .8, 0, 0, .35, 20),
       {1.0256121553234, -0.11343668173113, 0.034263155180907, 0.49360908655204, -0.35895797256204,
        -2.8404322716141, -2.8404322716141, 0, 0.43419224084897, 0.0036980992186017}},
      {"second month, put",
       option_on(under_way, 21, .9, 19.5, 30, .22, -10),
       {0.48454512168006, -0.075663449856002, 0.033017070777838, 0.071836298120699, -0.10659875417902,
        -3.2153941701854, -2.4285769087011, 0, 0.10133700393079, 0.0091601034671742}},
      {"first month, call",
       option_on(begun, 21, .9, 19.5, 5, .30, 3),
       {0.79799469764049, 0.12918899478321, 0.046943417692124, 0.52283989373224, -0.23939481835192,
        -4.9391399743591, -3.7701174184639, 0, 0.25809919534277, -0.000644045572179}},
      {"certain to be exercised",
       option_on(under_way, 10, .9, 60, 30, .22, 1),
       {25.371808492732, 0.1326788178845, 0, 0, -5.5817364690747, 1.2686772588812, 1.2686772588812, 0, 0, 0}},
      {"settled",
       option_on(over, 19, .9, 19.5, 82, .02, 1),
       {0.49950024991669, 0, 0, 0, -0.0099899950083354, 0.024976722020281, 0.024976722020281, 0, 0, 0}},
  };
  const double tolerance[10] = {1e-13, 1e-9, 1e-6, 1e-9, 1e-9, 1e-10, 1e-10, 0, 1e-9, 1e-6};
  for (const auto& row : rows)
    for (int RetType = 0; RetType <= 9; ++RetType) {
      EXPECT_NEAR(asian_strip(row.strip, RetType, 2), row.result[RetType], 20 * tolerance[RetType])
          << row.name << " RetType " << RetType;
      if (row.strip.OptType % 10 == 0) continue;
      double by_month[3] = {};
      const bool whole = RetType == 0 || (RetType >= 4 && RetType != 7 && RetType != 9);
      asian_strip_sens(row.strip, RetType, 1, 3, by_month);
      EXPECT_EQ(by_month[whole ? 0 : 1], asian_strip(row.strip, RetType, 2))
          << row.name << " RetType " << RetType;
    }
}

// Expected values as above; month 2 again.
TEST(AsianStrip, EveryResultWithVolumes) {
  const double u[4] = {1000, 1500, 500, 2000};
  const Months over{{-.08, -.08, -.08, -.08}, {-.02, -.02, -.02, -.02}};
  const struct {
    const char* name;
    AsianStrip strip;
    double result[10];
  } rows[] = {
      {"ahead, call",
       option_on(ahead, 21, .9, 0, 0, .42, 1),
       {1.1701617273823, 0.15878447769391, 0.040312256113069, 0.97213809280363, -0.49145760481861,
        -2.880362277473, -2.880362277473, -6.3694708531238e-6, 0.38292139684128, 0.01274382270136}},
      {"second month, put",
       option_on(under_way, 21, .9, 19.5, 30, .22, 0),
       {0.55618861076543, -0.095365895964106, 0.037709617616148, 0.082335054522818, -0.12236014840183,
        -3.0619441220157, -2.1717056054352, -1.3403114205981e-5, 0.072441574719377, 0.011474943921975}},
      {"certain to be exercised",
       option_on(under_way, 10, .9, 60, 30, .22, 1),
       {24.484187201084, 0.16319494599794, 0, 0, -5.38646193294, 1.2242931564419, 1.2242931564419,
        0.00075067423136356, 0, 0}},
      {"settled",
       option_on(over, 19, .9, 19.5, 80, .02, 1),
       {0.57942028990336, 0, 0, 0, -0.011588394209669, 0.028972997543526, 0.028972997543526,
        -1.5983528491479e-5, 0, 0}},
  };
  const double tolerance[10] = {1e-12, 1e-9, 1e-6, 1e-9, 1e-9, 1e-10, 1e-10, 1e-12, 1e-9, 1e-6};
  for (const auto& row : rows) {
    AsianStrip strip = row.strip;
    strip.u = u;
    for (int RetType = 0; RetType <= 9; ++RetType)
      EXPECT_NEAR(asian_strip(strip, RetType, 2), row.result[RetType], tolerance[RetType])
          << row.name << " RetType " << RetType;
  }
}

TEST(AsianStrip, OnlyRelativeVolumesMatter) {
  const double even[4] = {70, 70, 70, 70}, uneven[4] = {1000, 1500, 500, 0}, late[4] = {0, 0, 0, 3};
  for (double m : {0.0, 30.0}) {
    const AsianStrip plain = option_on(m > 0 ? under_way : ahead, 21, .9, 19.5, m, .42, 1);
    AsianStrip strip = plain;
    strip.u = even;
    for (int RetType : {0, 1, 3, 4, 5, 6, 8})
      EXPECT_NEAR(asian_strip(strip, RetType, 3), asian_strip(plain, RetType, 3), 1e-9)
          << m << ' ' << RetType;

    strip.u = uneven;
    double volume_moves = 0.0;
    for (int month = 1; month <= 3; ++month) volume_moves += uneven[month - 1] * asian_strip(strip, 7, month);
    if (m == 0.0) {
      EXPECT_NEAR(volume_moves, 0.0, 1e-4);
    }
    EXPECT_TRUE(std::isnan(asian_strip(strip, 7, 4)));
    AsianStrip without = strip;
    without.L = 3;
    EXPECT_NEAR(asian_strip_price(strip), asian_strip_price(without), 1e-13) << m;

    strip.u = late;
    EXPECT_TRUE(std::isfinite(asian_strip(strip, 5, 1))) << m;
  }
  AsianStrip settled = option_on(under_way, 19, .9, 19.5, 65, .22, 1);
  settled.u = uneven;  // what is left to fix has no volume
  EXPECT_NEAR(asian_strip_price(settled), .5 * std::exp(-.05 * .22), 1e-13);
}

// 2,500,000 pairs of antithetic paths of all fixings gave 1.033916 with a standard error of 0.0006.
TEST(AsianStrip, AgreesWithSimulationWithinItsLinearisation) {
  const double day = 1 / 365.25, u[3] = {1000, 1500, 500};
  const Months months{{30 * day, 61 * day, 91 * day}, {59 * day, 90 * day, 120 * day}};
  AsianStrip strip = option_on(months, 21, .9, 0, 0, 125 * day, 1);
  strip.u = u;
  strip.L = 3;
  const double price = asian_strip_price(strip);
  EXPECT_NEAR(price, 1.0226417266335657, 1e-12);  // mpmath, as above
  EXPECT_TRUE(price < 1.0339 && price > 1.0339 * (1 - .017)) << price;
}

TEST(AsianStrip, OneFixingIsAEuropeanOption) {
  for (double End : {0.01, 4.0})
    for (int OptType : {0, 1}) {
      const Months month{{End}, {End}, {100}, {.3}, {1.9}, 1};
      const double european = bs_general(100, 95, End, .05, .05, .3, OptType, 0) * std::exp(-.05 * .25);
      EXPECT_NEAR(asian_strip(option_on(month, 95, .7, 0, 0, End + .25, OptType), 0, 1), european, 1e-12)
          << End;
    }
  // Of two months the last fixing of the first is due now, or in a moment.
  const auto price = [](double End) {
    const Months months{{0, .1}, {End, .2}, {20, 21}, {.4, .3}, {1, 20}, 2};
    return asian_strip(option_on(months, 20, .9, 0, 0, .3, 1), 0, 1);
  };
  EXPECT_NEAR(price(0), price(1e-9), 1e-8);
}

TEST(AsianStrip, ADayPassesWithAFixingAsLargeAsThoseMade) {
  const double day = 1 / 365.25;
  for (double due : {0.5 * day, day}) {
    const Months today{{due, .1}, {.06, .16}, {20, 21}, {.4, .3}, {3, 20}, 2},
        tomorrow{{due - day, .1 - day}, {.06 - day, .16 - day}, {20, 21}, {.4, .3}, {3, 20}, 2};
    for (int made : {1, 3}) {  // 3 are all of the first month
      const AsianStrip option = option_on(today, 20, .9, 18, made, .3, 1);
      const double average = (18 * made + (made < 3 ? 20 : 21)) / (made + 1.0);
      const double later = asian_strip(option_on(tomorrow, 20, .9, average, made + 1, .3 - day, 1), 0, 1);
      EXPECT_NEAR(asian_strip(option, 5, 1), (later - asian_strip(option, 0, 1)) / day, 1e-9) << due;
    }
  }
}

TEST(AsianStrip, NegativePricesWhereTheyAreRefused) {
  Months months = ahead;
  const double without_second[4] = {1000, 0, 500, 200}, all[4] = {1000, 1500, 500, 200};
  AsianStrip strip = option_on(months, 21, .9, 19.5, 0, .42, 1);
  months.F[1] = -21;
  strip.u = all;
  EXPECT_TRUE(std::isfinite(asian_strip_price(strip)));
  strip.positive_prices = true;
  EXPECT_TRUE(std::isnan(asian_strip_price(strip)));
  strip.K = -30;  // a call sure to be exercised, were the prices positive
  EXPECT_TRUE(std::isnan(asian_strip_price(strip)));
  strip.K = 21;
  strip.u = without_second;
  EXPECT_TRUE(std::isfinite(asian_strip_price(strip)));
  strip.u = all;
  strip.m = 41;  // its fixings are made
  EXPECT_TRUE(std::isfinite(asian_strip_price(strip)));
  strip.m = 82;
  EXPECT_TRUE(std::isfinite(asian_strip_price(strip)));
  months.F[1] = 0;
  strip.m = 0;
  EXPECT_TRUE(std::isfinite(asian_strip_price(strip)));
}

TEST(AsianStrip, DegenerateInput) {
  const AsianStrip strip = option_on(ahead, 21, .9, 0, 0, .42, 1);
  const Months no_End{{0, 0, 0, 0}, {-1, NAN, -1, -1}};
  const Months no_count{{.1}, {.2}, {20}, {.3}, {NAN}, 1}, no_fixings{{.1}, {.2}, {20}, {.3}, {0}, 1};
  const struct {
    const char* fault;
    AsianStrip strip;
    int RetType, RetMonth;
  } rows[] = {{"month 0", strip, 1, 0},
              {"month 5", strip, 9, 5},
              {"unknown result", strip, 10, 1},
              {"fixings made below 0", option_on(ahead, 21, .9, 0, -1, .42, 1), 0, 1},
              {"average not a number", option_on(under_way, 21, .9, NAN, 30, .42, 1), 0, 1},
              {"End not a number", option_on(no_End, 21, .9, 0, 0, .42, 1), 0, 1},
              {"count not a number", option_on(no_count, 21, .9, 20, 1, .42, 1), 0, 1},
              {"no fixings", option_on(no_fixings, 21, .9, 20, 0, .42, 1), 0, 1}};
  for (const auto& row : rows)
    EXPECT_TRUE(std::isnan(asian_strip(row.strip, row.RetType, row.RetMonth))) << row.fault;
  const Months endless{{.1, .1}, {.2, .2}, {20, 20}, {.3, .3}, {double{INT_MAX}, double{INT_MAX}}, 2};
  EXPECT_TRUE(std::isfinite(asian_strip(option_on(endless, 21, .9, 20, INT_MAX, .42, 1), 5, 1)));
}

}  // namespace
}  // namespace kestran
