#include "models/exotics/barrier.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "models/black_scholes/european.h"

namespace kestran {
namespace {

const double nan = std::numeric_limits<double>::quiet_NaN();

// Expected: the closed form with the polynomial normal distribution in mpmath, 30 digits. Exact: quadrature
// of the payoff over the reflected density, and of the rebate over the density of the first passage time.
TEST(Barrier, EveryCaseWithRebate) {
  const struct {
    int OptType, KnockType;
    double H, K, expected, exact;
  } rows[] = {
      {1, 0, 92, 90, 11.132289819381306, 11.1322787884},
      {1, 0, 92, 96, 9.3391185833510476, 9.33913046035},
      {1, 0, 113, 105, 1.4313630553848408, 1.43137135918},
      {1, 0, 113, 118, 1.367294885750183, 1.36729488736},
      {1, 1, 92, 90, 6.2192689639518093, 6.21927398536},
      {1, 1, 92, 96, 4.3312605718626464, 4.33125192382},
      {1, 1, 113, 105, 7.9638878427151053, 7.96388935708},
      {1, 1, 113, 118, 4.2281874283573225, 4.22818489858},
      {2, 0, 92, 90, 1.7034404230890679, 1.70344070596},
      {2, 0, 92, 96, 1.7108901878758963, 1.71091388106},
      {2, 0, 113, 105, 9.2492584699119163, 9.24926014823},
      {2, 0, 113, 118, 14.761084092419243, 14.7610762334},
      {2, 1, 92, 90, 3.8929944526538244, 3.89298816024},
      {2, 1, 92, 96, 5.9787373617600251, 5.97871689753},
      {2, 1, 113, 105, 2.8267992756289327, 2.82680741547},
      {2, 1, 113, 118, 6.026345056822808, 6.02635038764},
      {1, 0, 92, 92, 10.532082819108944, 10.53208},
      {2, 1, 92, 92, 4.5161849584884496, 4.51618},
      {1, 0, 100, 96, 2.5, 2.5},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << "OptType " << row.OptType << " KnockType " << row.KnockType << " H "
                                    << row.H << " K " << row.K);
    const double price =
        barrier_price(100, row.K, 0.28, 0.07, 0.03, 200, row.H, 2.5, row.OptType, row.KnockType);
    EXPECT_NEAR(price, row.expected, 1e-13 * 100);
    EXPECT_NEAR(price, row.exact, 4e-5);
    if (row.OptType == 2) {
      EXPECT_EQ(price, barrier_price(100, row.K, 0.28, 0.07, 0.03, 200, row.H, 2.5, 0, row.KnockType));
    }
  }
}

// Expected: the same differences of the closed form in mpmath, 30 digits.
TEST(Barrier, Sensitivities) {
  const struct {
    struct {
      double K, H;
      int OptType, KnockType;
    } of;
    double result[6];
  } rows[] = {
      {{96, 92, 1, 0},
       {9.3391185833510476, 0.84459446176549314, -0.00016326145228021248, 5.0674505848660616,
        -13635.914229992111, -2.5704436675732746}},
      {{118, 113, 2, 1},
       {6.026345056822808, 0.2721838092599989, 0.012102115907516314, 24.140755499644218, 3348.3254514702929,
        -5.2903391630085719}},
  };
  const double tolerance[] = {1e-12, 1e-12, 1e-11, 1e-9, 1e-8, 1e-10};
  for (const auto& [of, result] : rows)
    for (int RetType = 0; RetType <= 5; ++RetType)
      EXPECT_NEAR(
          barrier_greek(100, of.K, 0.28, 0.07, 0.03, 200, of.H, 2.5, of.OptType, of.KnockType, RetType),
          result[RetType], 10 * tolerance[RetType])
          << "K " << of.K << " RetType " << RetType;
  EXPECT_EQ(barrier_greek(100, 96, 0.28, 0.0, 0.03, 200, 92, 2.5, 1, 0, 4), 0.0);
  EXPECT_EQ(barrier_greek(100, 96, 0.28, 0.07, 0.03, 200, 92, 2.5, 1, 0, 6), -99.0);
}

// Without a rebate a knock-in and the knock-out together are the European option, also at rates so negative
// that the rebate's own discounting has no real value.
TEST(Barrier, InAndOutMakeTheEuropeanOption) {
  for (const double r : {0.07, -0.1})
    for (const int OptType : {1, 2})
      for (const double H : {92.0, 113.0, 100.0, 96.0, 118.0})
        for (const double K : {90.0, 96.0, 118.0}) {
          const double out = barrier_price(100, K, 0.28, r, r, 200, H, 0, OptType, 0);
          const double in = barrier_price(100, K, 0.28, r, r, 200, H, 0, OptType, 1);
          EXPECT_NEAR(out + in, bs_general(100, K, 200 / 365.25, r, r, 0.28, OptType % 2, 0), 1e-11)
              << "r " << r << " OptType " << OptType << " H " << H << " K " << K;
        }
  EXPECT_TRUE(std::isnan(barrier_price(100, 96, 0.28, -0.1, -0.1, 200, 92, 1, 1, 0)));
  EXPECT_NEAR(barrier_price(100, 104, 0.31, -0.03, 0.01, 150, 88, 1.5, 2, 1), 11.12929992045162, 1e-12);
}

TEST(Barrier, RebatesCountInProportion) {
  for (const int KnockType : {0, 1})
    for (const double H : {92.0, 113.0}) {
      const auto rebate = [&](double R) {
        return barrier_price(100, 96, 0.28, 0.07, 0.03, 200, H, R, 1, KnockType) -
               barrier_price(100, 96, 0.28, 0.07, 0.03, 200, H, 0, 1, KnockType);
      };
      for (double R : {0.1, 1.0})
        EXPECT_NEAR(rebate(R), rebate(10) * R / 10, 1e-13) << H << " " << KnockType << " " << R;
    }
}

TEST(Barrier, DegenerateInputs) {
  EXPECT_EQ(barrier_price(100, 90, 0.28, 0.07, 0.03, 0, 80, 2.5, 1, 0), 10.0);
  EXPECT_EQ(barrier_price(100, 118, 0.28, 0.07, 0.03, 200, 113, 0, 1, 0), 0.0);
  for (const int OptType : {-1, 3})
    EXPECT_TRUE(std::isnan(barrier_price(100, 90, 0.3, 0, 0, 90, 80, 0, OptType, 0)));
  // Of these the barrier, or all but the barrier and the price, is not needed for the answer.
  EXPECT_TRUE(std::isnan(barrier_price(100, 90, 0.3, 0.01, 0.01, 90, nan, 0, 1, 1)));
  EXPECT_TRUE(std::isnan(barrier_price(100, 118, 0.28, 0.07, 0.03, -1, 113, 0, 1, 0)));
  EXPECT_TRUE(std::isnan(barrier_price(100, nan, 0.28, 0.07, 0.03, 200, 113, 0, 1, 0)));
  EXPECT_TRUE(std::isnan(barrier_price(100, 90, 0, 0.07, 0.03, 200, 80, 0, 1, 0)));
  // A barrier at 0 to a positive power is 0, to a negative one infinite times the probability 0.
  EXPECT_NEAR(barrier_price(100, 90, 0.3, 0.2, 0.01, 90, 0, 0, 1, 0) -
                  barrier_price(100, 90, 0.3, 0.2, 0.01, 90, 1e-9, 0, 1, 0),
              0, 1e-12);
  EXPECT_TRUE(std::isnan(barrier_price(100, 90, 0.3, 0.01, 0.01, 90, 0, 0, 1, 0)));
}

}  // namespace
}  // namespace kestran
