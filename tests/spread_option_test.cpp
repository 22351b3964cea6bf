#include "models/exotics/spread_option.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "models/black_scholes/european.h"
#include "models/exotics/spread_kernel.h"
#include "models/exotics/spread_sums_kernel.h"

namespace kestran {
namespace {

const double nan = std::numeric_limits<double>::quiet_NaN();

// Expected values: adaptive quadrature with the exact normal distribution in mpmath, 20 digits, where
// integrating over A and over B agreed to 12 digits; deltas by differences of it.
TEST(SpreadKernel, NearBruteForceQuadratureForAllCorrelations) {
  const struct {
    double FA, FB, K, vA, vB, rho, call, put, delta_A, delta_B, tolerance;
  } rows[] = {
      {100, 96, 2, 0.3, 0.26, 0.85, 7.28603850648, 5.28603850648, 0.581937913933, -0.519473261005, 1e-5},
      {30, 24, -2, 0.6, 0.75, 0.3, 13.129576061, 5.12957606101, 0.780374124661, -0.486747971962, 1e-5},
      {80, 120, -25, 0.9, 0.15, -0.99, 29.1620048884, 44.1620048884, 0.649449884229, -0.253068345281, 1e-4},
      {120, 70, 40, 0.05, 0.8, 0.99, 26.6065923613, 16.6065923613, 0.71647500385, -0.42931341, 1e-4},
      {100, 95, 3, 0.3, 0.3, 1, 2.02092880858, 0.0209288085828, 0.968041070345, -0.968041066418, 1e-6},
      {100, 95, 3, 0.3, 0.2, -1, 20.3219505722, 18.3219505722, 0.613721518029, -0.416456082952, 1e-6},
      {100, 110, -20, 0.06, 0.7, 0, 36.7801922182, 26.7801922182, 0.682816221007, -0.410247989151, 1e-5},
      {60, 140, 25, 0.7, 0.5, 0.95, 0.0034703879776, 105.003470388, 0.000789991059011, -0.000298773374423,
       1e-5},
      {0.9, 0.5, 0.3, 0.4, 0.5, 0.5, 0.179852036557, 0.0798520365573, 0.695777674877, -0.535754482356, 1e-6},
      {100, 95, 3, 0.01, 0.02, -0.4, 2.29678163584, 0.296781635837, 0.79300698625, -0.785589181876, 1e-5},
      {110, 60, 60, 0.5, 1.2, 1, 4.10036069553, 14.1003606955, 0.553589384047, -0.404103224483, 1e-7},
      {100, 96, 20, 3, 2.5, 0.5, 81.0691800921, 97.0691800921, 0.903547302231, -0.0756768896336, 1e-5},
      {90, 100, -5, 1.4, 1.1, 0.6, 38.2959991784, 43.2959991784, 0.703156405923, -0.270077395901, 1e-4},
  };
  for (const auto& w : rows) {
    double call[3], put[3];
    EXPECT_EQ(spread_kernel(w.FA, w.FB, w.K, w.vA, w.vB, w.rho, 0.9, 1, call), call[0]);
    spread_kernel(w.FA, w.FB, w.K, w.vA, w.vB, w.rho, 0.9, 0, put);
    const double expected_call[] = {w.call, w.delta_A, w.delta_B};
    const double expected_put[] = {w.put, w.delta_A - 1, w.delta_B + 1};
    for (int i = 0; i < 3; ++i) {
      EXPECT_NEAR(call[i] / 0.9, expected_call[i], w.tolerance)
          << "rho " << w.rho << " K " << w.K << " result " << i;
      EXPECT_NEAR(put[i] / 0.9, expected_put[i], w.tolerance)
          << "rho " << w.rho << " K " << w.K << " result " << i;
    }
    // Changing sides changes nothing.
    double reversed[3];
    spread_kernel(w.FB, w.FA, -w.K, w.vB, w.vA, w.rho, 0.9, 1, reversed);
    EXPECT_NEAR(reversed[0], put[0], 1e-12 * w.FA);
    EXPECT_NEAR(reversed[2], put[1], 1e-12);
  }
  // Published: Hurd and Zhou (2010), "A Fourier transform method for spread option pricing", table 1.
  const double published[][2] = {{0.4, 8.312461}, {0.8, 8.114994}, {2, 7.542324}, {4, 6.653065}};
  double out[3];
  for (const auto& p : published)
    EXPECT_NEAR(
        spread_kernel(100 * std::exp(0.05), 96 * std::exp(0.05), p[0], 0.2, 0.1, 0.5, std::exp(-0.1), 1, out),
        p[1], 1.2e-5);
}

// Expected values: the conditional expectation of one price given the other, exact, integrated adaptively
// with mpmath, 25 digits.
TEST(SpreadKernel, ANegativePriceMakesASum) {
  const struct {
    double FA, FB, K, vA, vB, rho, call, put, tolerance;
  } rows[] = {
      {100, -80, 190, 0.3, 0.25, 0.6, 13.825859549, 23.825859549, 2e-4},
      {60, -90, 150, 0.2, 0.4, -0.3, 13.6769793848, 13.6769793848, 2e-3},
      {-70, 110, -190, 0.25, 0.35, 0.2, 24.0598730703, 14.0598730703, 2e-3},
      {100, -80, -5, 0.3, 0.6, 0.5, 185, 0, 1e-6},
      {100, 0, 95, 0.2, 0.6, 0.4, 10.5195410637, 5.51954106368, 2e-5},
  };
  double out[3];
  for (const auto& w : rows) {
    EXPECT_NEAR(spread_kernel(w.FA, w.FB, w.K, w.vA, w.vB, w.rho, 1, 1, out), w.call, w.tolerance) << w.FB;
    EXPECT_NEAR(spread_kernel(w.FA, w.FB, w.K, w.vA, w.vB, w.rho, 1, 0, out), w.put, w.tolerance) << w.FB;
  }
  EXPECT_TRUE(std::isnan(spread_kernel(-100, -80, 5, 0.3, 0.25, 0.6, 1, 1, out)));
}

// It takes nothing from the call: Black's option on the other price, worked out with mpmath.
TEST(SpreadKernel, APriceWithItsMeanInTheFarTail) {
  double out[3];
  for (double vB : {20.0, 31.2, 31.4})
    for (int OptType : {0, 1})
      EXPECT_NEAR(spread_kernel(100, 90, 80, 0.5, vB, 0, 1, OptType, out), OptType ? 29.4629658 : 99.4629658,
                  2e-4)
          << vB;
}

TEST(SpreadKernel, LimitsAndBadInput) {
  double out[3];
  // One price next to nothing: Black's formula on the other.
  EXPECT_NEAR(spread_kernel(100, 1e-290, 95, 0.3, 0.2, 0.4, 0.95, 1, out),
              0.95 * bs_general(100, 95, 1, 0, 0, 0.3, 1, 0), 2e-5);
  // Without deviations: the exercise value.
  EXPECT_NEAR(spread_kernel(100, 90, 3, 0, 0, 0.4, 0.95, 1, out), 0.95 * 7, 1e-8);
  EXPECT_NEAR(spread_kernel(100, 90, 3, 0, 0, 0.4, 0.95, 0, out), 0, 1e-8);
  EXPECT_EQ(spread_kernel(100, 90, 3, 0.2, 0.3, 7, 1, 1, out),
            spread_kernel(100, 90, 3, 0.2, 0.3, 1, 1, 1, out));
  for (int bad = 0; bad < 7; ++bad) {
    double x[] = {100, 90, 3, 0, 0, 1, 0.95};
    x[bad] = nan;
    spread_kernel(x[0], x[1], x[2], x[3], x[4], x[5], x[6], 1, out);
    for (double result : out) EXPECT_TRUE(std::isnan(result)) << bad;
    for (double extreme : {0.0, -1.0, 1e300, -1e300, HUGE_VAL, -HUGE_VAL}) {
      x[bad] = extreme;  // any answer, at once
      spread_kernel(x[0], x[1], x[2], x[3], x[4], x[5], x[6], 0, out);
    }
  }
}

// Expected values: derivatives (in time, one-day differences) of the same quadrature's prices.
TEST(SpreadOption, EveryResult) {
  const double call[17] = {7.0806201,    0.5603315,    -0.49955779,  0.023553503,  0.024525203, 17.701348,
                           -0.62557051,  -18.169776,   -5.3104651,   -3.6553201,   0.039786318, -0.077868263,
                           -0.024034095, -0.051403749, 0.0027511076, 0.0014835098, 0.22381762};
  const double put[17] = {4.8479383,   -0.20975241, 0.48859166, 0.011168374,   0.020308387,  4.6135465,
                          8.0902798,   -4.8751762,  -7.2719074, -2.2428475,    -0.010086194, -0.082122701,
                          -0.01504684, 0.022285993, 0.31990251, 0.00054250159, 0.19622883};
  for (int i = 0; i < 17; ++i) {
    EXPECT_NEAR(spread_option(100, 96, 2, 0.05, 0.35, 0.30, 0.85, 0.75, 1, i), call[i],
                1e-5 + (i > 2 ? 1e-3 * std::fabs(call[i]) : 0.0))
        << i;
    EXPECT_NEAR(spread_option(30, 24, -2, 0.03, 0.5, 0.6, 0.3, 1.5, 0, i), put[i],
                1e-5 + (i > 2 ? 1e-4 * std::fabs(put[i]) : 0.0))
        << i;
  }
}

TEST(SpreadKernel, SumsOfOrdinaryDealsHaveTheBitsOfAnyDealsInTwoAndFourLanes) {
  using elementary::TwoLanes;
  const bool four_lanes = __builtin_cpu_supports("avx2");
  std::mt19937_64 random(3);
  const auto between = [&](double low, double high) {
    constexpr double edges[] = {0.0, -0.0, 5e-324, 1e-310, 1e-100, -1.0, 30.0, 800.0, 1e300, HUGE_VAL, NAN};
    if (random() % 64 == 0) return edges[random() % std::size(edges)];
    return low + (high - low) * std::generate_canonical<double, 53>(random);
  };
  const auto same = [](double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
  };
  int differing = 0, finite = 0;
  for (int deal = 0; deal < 2000; ++deal) {
    SpreadNodes nodes;
    const double reach = between(5.0, 9.0);
    for (int i = 0; i < spread_slots; ++i) nodes.z[i] = reach * (2.0 * i / (spread_slots - 1) - 1.0);
    for (double& weight : nodes.weight) weight = between(0.0, 0.5);
    const SpreadIntegrand integrand = {between(60.0, 140.0), between(4.0, 5.0),         between(-1.0, 1.0),
                                       between(60.0, 140.0), between(0.0, 1.0),         between(-60.0, 60.0),
                                       between(0.0, 1.0),    deal % 3 == 0 ? -1.0 : 1.0};
    if (!is_ordinary(integrand, nodes)) continue;
    const SpreadSums any = spread_sums_kernel<TwoLanes, false>(integrand, nodes);
    const SpreadSums two = spread_sums_kernel<TwoLanes, true>(integrand, nodes);
    for (const SpreadSums& sums : {two, four_lanes ? spread_sums_avx2(integrand, nodes) : two})
      differing += !same(any.value, sums.value) || !same(any.in_optioned, sums.in_optioned) ||
                   !same(any.in_given, sums.in_given);
    finite += std::isfinite(any.value);
  }
  EXPECT_EQ(differing, 0);
  EXPECT_GT(finite, 200);
}

TEST(SpreadOption, ExchangeExpiryAndSentinels) {
  // Margrabe's formula with the exact normal distribution.
  EXPECT_NEAR(spread_option(100, 96, 0, 0.05, 0.3, 0.25, 0.7, 1, 1, 0), 10.132630, 1e-5);
  EXPECT_EQ(spread_option(100, 96, -3, 0.05, 0.3, 0.25, 0.7, 0, 1, 0), 7.0);
  EXPECT_EQ(spread_option(100, 96, -3, 0.05, 0.3, 0.25, 0.7, 0, 0, 0), 0.0);
  EXPECT_EQ(spread_option(100, 96, -3, 0.05, 0.3, 0.25, 0.7, nan, 1, 1), 0.0);
  EXPECT_EQ(spread_option(100, 96, -3, 0.05, 0.3, 0.25, 0.7, 1, 1, 17), 99.0);
  EXPECT_EQ(spread_option(100, 96, -3, 0.05, 0.3, 0.25, 0.7, 1, 1, -1), 99.0);
  EXPECT_NEAR(spread_option(100, 96, -3, 0.05, 0, -1, 0.7, 1, 1, 0), 7 * std::exp(-0.05), 1e-5);
  for (double limit : {-1.0, 1.0})
    for (int i = 0; i < 17; ++i) {
      const double value = spread_option(100, 96, 2, 0.05, 0.3, 0.3, limit, 1e-3, 1, i);
      EXPECT_TRUE(std::isfinite(value)) << limit << " " << i;
      EXPECT_EQ(spread_option(100, 96, 2, 0.05, 0.3, 0.3, 1.5 * limit, 1e-3, 1, i), value)
          << limit << " " << i;
    }
  EXPECT_TRUE(std::isnan(spread_option(nan, 96, 2, 0.05, 0.3, 0.3, 0.5, 0, 1, 0)));
}

}  // namespace
}  // namespace kestran
