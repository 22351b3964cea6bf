#include "models/strips/yrstrip.h"

#include <gtest/gtest.h>

#include <cmath>

#include "models/black_scholes/european.h"

namespace kestran {
namespace {

const double Price[3] = {4, 4.1, 3.9};
const double Strike[3] = {4.1, 4.1, 4};
const double Other_strike[3] = {3.9, 4.1, 4.3};
const double IntRt[3] = {.05, .051, .052};
const double Vol[3] = {.6, .55, .5};
const double Fixed[3] = {0, 0, 0};
const double Month_before[3] = {4, 35, 65};
const double Mixed[3] = {-3, 50.5, 70};
const double Beg[3] = {5, 36, 66};
const double End[3] = {35, 65, 96};
const double Running_beg[3] = {-10, 36, 96};  // the third month ends before it begins
const double Running_end[3] = {20, 65, 66};
const double Qty[3] = {310, 300, 620};

// Expected values: the sums over months and days in mpmath, 30 digits, with the same normal distribution.
// Daily prices simulated in 2.5 million antithetic pairs give for the first four premiums 0.284597 +-
// 0.000113, 0.359550 +- 0.000066, 0.135466 +- 0.000042 and 0.210448 +- 0.000033.
TEST(YrStrip, EveryResult) {
  const struct {
    YearStrip strip;
    double expected[7];
  } rows[] = {{{Price, Strike, IntRt, Vol, Fixed, Beg, End, Qty, 3, 1230, 1},
               {0.28458741622426, 0.4950087812594, 0.52832510350502, 0.60082204797079, -0.049810276805088,
                -1.2549599136289, 0.1508539214876}},
              {{Price, Strike, IntRt, Vol, Fixed, Beg, End, Qty, 3, 0, 0},
               {0.35955038283896, -0.49680971240171, 0.52832510350502, 0.60082204797079, -0.062234538012455,
                -1.25111210809, 0.1508539214876}},
              {{Price, Strike, IntRt, Vol, Month_before, Beg, End, Qty, 3, -1, -1},
               {0.13548888818855, 0.033971439862094, 0.0, 0.30552493601601, -0.021610463420374,
                0.0069288960234748, 0.076870640180122}},
              {{Price, Strike, IntRt, Vol, Month_before, Beg, End, Qty, 3, 1230, 0},
               {0.21045185480325, 0.05303159564469, 0.0, 0.30552493601601, -0.03403472462774,
                0.010776701562433, 0.076870640180122}},
              {{Price, Other_strike, IntRt, Vol, Mixed, Running_beg, Running_end, Qty, 3, 0, 1},
               {0.049372218559674, 0.1070307032245, 0.17695413496876, 0.066362009338847, -0.003487134466191,
                -0.50718523237608, -0.01839264769999}},
              {{Price, Other_strike, IntRt, Vol, Mixed, Running_beg, Running_end, Qty, 3, 0, 0},
               {0.032322397877422, -0.055337422297208, 0.17695413496876, 0.066362009338847,
                -0.0030205701209976, -0.50799707300368, -0.01839264769999}}};
  for (const auto& row : rows) {
    double result[7];
    yrstrip_value(row.strip, result);
    for (int k = 0; k < 7; ++k)
      EXPECT_NEAR(result[k], row.expected[k], 1e-13) << "row " << &row - rows << " result " << k;
  }
}

// Months of 32 days are never summed by blocks.
TEST(YrStrip, LongMonthIsTheMeanOfItsParts) {
  for (double ToSet : {0.0, 900.0, 5000.0}) {
    const double first = -3, last = 32 * 250 - 4;
    double whole[7], sum[7] = {};
    yrstrip_value({Price, Strike, IntRt, Vol, &ToSet, &first, &last, Qty, 1, 0, 1}, whole);
    for (int part = 0; part < 250; ++part) {
      const double from = first + 32 * part, to = from + 31;
      double result[7];
      yrstrip_value({Price, Strike, IntRt, Vol, &ToSet, &from, &to, Qty, 1, 0, 1}, result);
      for (int k = 0; k < 7; ++k) sum[k] += result[k] / 250;
    }
    for (int k = 0; k < 7; ++k) EXPECT_NEAR(whole[k], sum[k], 1e-10) << ToSet << ' ' << k;
  }
}

TEST(YrStrip, DegenerateInput) {
  double result[7];
  const auto one_month = [&](double ToSet, double first, double last) {
    yrstrip_value({Price, Strike, IntRt, Vol, &ToSet, &first, &last, Qty, 1, 0, 0}, result);
    return result[0];
  };
  // Days are truncated; today's option is worth its payoff, one of a day before the setting the discounted
  // one.
  EXPECT_EQ(one_month(-1, -.9, .9), 4.1 - 4.0);
  EXPECT_EQ(result[5], 0.0);
  EXPECT_NEAR(one_month(40, 30, 30), (4.1 - 4.0) * std::exp(-.05 * 30 / 365.25), 1e-15);
  EXPECT_NEAR(one_month(0, 30, 30), bs_general(4, 4.1, 30 / 365.25, .05, .05, .6, 0, 0), 1e-15);
  EXPECT_EQ(one_month(0, -40, -10), 0.0);
  EXPECT_EQ(one_month(0, 60, 30), 0.0);
  EXPECT_TRUE(std::isfinite(one_month(0, -1e300, 5)));
  EXPECT_TRUE(std::isfinite(one_month(0, 1, yrstrip_most_days)));
  EXPECT_TRUE(std::isnan(one_month(0, 0, yrstrip_most_days)));
  for (double bad : {1e300, HUGE_VAL, double{NAN}}) EXPECT_TRUE(std::isnan(one_month(0, 0, bad))) << bad;
  EXPECT_TRUE(std::isnan(one_month(0, NAN, 30)));
  EXPECT_TRUE(std::isnan(one_month(NAN, 0, 30)));
  for (double below : {-2.0, 4.0})
    for (double ToSet : {0.0, 20.0, 50.0}) {
      const double price[1] = {-1}, strike[1] = {below}, first[1] = {10}, last[1] = {40};
      yrstrip_value({price, strike, IntRt, Vol, &ToSet, first, last, Qty, 1, 0, 1}, result);
      EXPECT_TRUE(std::isnan(result[0]) && std::isnan(result[4])) << below << ' ' << ToSet;
    }
  const double none[3] = {}, today[3] = {}, below[3] = {-1, -1, -1};
  yrstrip_value({none, Strike, IntRt, Vol, Fixed, Beg, Beg, Qty, 1, 0, 0}, result);
  EXPECT_NEAR(result[0], 4.1 * std::exp(-.05 * 5 / 365.25), 1e-14);
  yrstrip_value({Price, none, IntRt, Vol, Fixed, Beg, Beg, Qty, 1, 0, 1}, result);
  EXPECT_NEAR(result[0], 4 * std::exp(-.05 * 5 / 365.25), 1e-14);
  yrstrip_value({below, none, IntRt, Vol, Fixed, today, today, Qty, 1, 0, 0}, result);
  EXPECT_EQ(result[0], 1);
  yrstrip_value({}, result);
  EXPECT_TRUE(std::isnan(result[6]));
}

}  // namespace
}  // namespace kestran
