// American options: the quadratic approximation and the binomial tree.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "models/black_scholes/american_baw.h"
#include "models/black_scholes/american_tree.h"
#include "models/black_scholes/early_exercise.h"
#include "models/black_scholes/european.h"
#include "numerics/arrays.h"

namespace kestran {
namespace {

const double nan = std::numeric_limits<double>::quiet_NaN();

// Plain symmetric tree (Cox, Ross and Rubinstein 1979).
double plain_tree(double S, double K, double T, double r, double q, double sigma, int OptType, int steps) {
  const double dt = T / steps, move = sigma * std::sqrt(dt), sign = OptType == 0 ? -1.0 : 1.0;
  const double p = (std::exp((r - q) * dt) - std::exp(-move)) / (std::exp(move) - std::exp(-move));
  std::vector<double> value(static_cast<std::size_t>(steps) + 1);
  const auto exercise = [&](int i, int j) { return sign * (S * std::exp((2 * j - i) * move) - K); };
  for (int j = 0; j <= steps; ++j) value[static_cast<std::size_t>(j)] = std::max(exercise(steps, j), 0.0);
  for (int i = steps - 1; i >= 0; --i)
    for (int j = 0; j <= i; ++j) {
      double& v = value[static_cast<std::size_t>(j)];
      v = std::max(std::exp(-r * dt) * (p * value[static_cast<std::size_t>(j) + 1] + (1 - p) * v),
                   exercise(i, j));
    }
  return value[0];
}

TEST(AmericanBaw, AgreesWithIndependentValues) {
  // S, T, r, q, sigma, OptType, the critical price and the eight results: mpmath, 40 digits, bisection for
  // the critical price, the same approximation of the normal distribution.
  const double rows[][15] = {
      {90, 0.5, 0.10, 0.10, 0.35, 1, 151.770687867505, 5.00616642811262, 0.367872588745578,
       0.0165807475143173, 23.4131094486593, -1.57176483527714, -7.89016411014889, 12.5136335811509,
       0.579030179562456},
      {90, 0.5, 0.08, 0.02, 0.30, 0, 76.960638867151, 12.4388794331139, -0.641836337270308,
       0.0243928524037039, 22.6095311401657, -2.39269009042489, -4.3689126348147, -19.3548973583799,
       0.91610784867988},
      {100, 1, 0, 0.04, 0.25, 1, 134.778093809487, 8.30683977855244, 0.493992701743951, 0.016919087363063,
       38.2539418169353, -4.0467874261673, -3.40496768761165, 30.4607524876277, 0.322263015702019},
      {100, 1, -0.00005, 0.04, 0.25, 1, 134.763100982903, 8.30531731308394, 0.493948350631723,
       0.0169211270094226, 38.2530055100258, -4.04577462665713, -3.40370225881361, 30.4378758443683,
       0.322372565479274},
  };
  for (const auto& [S, T, r, q, sigma, type, critical, V, delta, gamma, vega, both, theta, rho, vanna] :
       rows) {
    const int OptType = static_cast<int>(type);
    EXPECT_NEAR(baw_critical_price(100, T, r, q, sigma, OptType), critical, 1e-9);
    const double expected[] = {V, delta, gamma, vega, both, theta, rho, vanna};
    for (int i = 0; i < 8; ++i)
      EXPECT_NEAR(american_baw(S, 100, T, r, q, sigma, OptType, i), expected[i], i < 3 ? 1e-12 : 2e-8)
          << S << " " << r << " RetType " << i;
  }
}

TEST(AmericanBaw, AgreesWithPublishedValues) {
  // Haug, "The Complete Guide to Option Pricing Formulas" (1998), page 24: K 100, r and q 0.10. Its search
  // for the critical price stops early.
  const double rows[][4] = {{90, 0.1, 0.15, 0.0206}, {110, 0.1, 0.15, 10.0089}, {100, 0.5, 0.25, 6.8015}};
  for (const auto& [S, T, sigma, call] : rows)
    EXPECT_NEAR(american_baw(S, 100, T, 0.1, 0.1, sigma, 1, 0), call, 3e-3) << S;
}

// A put is a call with price and strike, rate and yield exchanged (McDonald and Schroder 1998): what a tree
// leaves out as exercised, worthless or out of reach lies on its other side then.
TEST(AmericanTree, PutsAndCallsAreSymmetric) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> share(0.0, 1.0);
  for (int deal = 0; deal < 400; ++deal) {
    const double S = 100 * std::exp(share(random) - 0.5), K = 100, T = 0.01 + 2 * share(random);
    const double r = 0.2 * share(random) - 0.05, q = 0.2 * share(random) - 0.05;
    const double sigma = std::exp(5 * share(random) - 5.5);
    const double t0 = deal % 4 == 0 ? T / 2 : 0.0;
    const int steps = 20 + 2 * static_cast<int>(300 * share(random));
    const TreeResult put = american_tree(S, K, T, t0, r, q, sigma, 0, steps);
    const TreeResult call = american_tree(K, S, T, t0, q, r, sigma, 1, steps);
    EXPECT_NEAR(put.price, call.price, 1e-8)
        << S << ' ' << T << ' ' << r << ' ' << q << ' ' << sigma << ' ' << t0;
  }
}

TEST(AmericanTree, IsTheTreeItClaimsToBe) {
  // S, T, t0, r, q, sigma, OptType, N and the results: the same tree node by node in mpmath, 30 digits.
  const double rows[][12] = {
      {95, 0.5, 0, 0.08, 0.03, 0.3, 0, 4, 9.81847400796972, -0.554258383577568, 0.0198678554914267,
       -4.65062756882465},
      {95, 0.5, 0, 0.08, 0.03, 0.3, 0, 25, 9.72323554786186, -0.531846150559723, 0.0218871748063169,
       -5.58480080922781},
      {108, 1.5, 0.4, 0.03, 0.06, 0.25, 1, 30, 14.433458563314, 0.606284968072756, 0.0127064217170411,
       -2.23412366240632},
      {95, 2, 1.1, 0.06, 0.01, 0.3, 0, 21, 14.397029450464, -0.406582002699497, 0.0103056620274331,
       -1.39030071104083},
  };
  for (const auto& [S, T, t0, r, q, sigma, OptType, N, price, delta, gamma, theta] : rows) {
    const TreeResult result =
        american_tree(S, 100, T, t0, r, q, sigma, static_cast<int>(OptType), static_cast<int>(N));
    EXPECT_NEAR(result.price, price, 1e-12) << S << " N " << N;
    EXPECT_NEAR(result.delta, delta, 1e-13) << S << " N " << N;
    EXPECT_NEAR(result.gamma, gamma, 1e-14) << S << " N " << N;
    EXPECT_NEAR(result.theta, theta, 1e-12) << S << " N " << N;
  }
}

TEST(AmericanTree, AgreesWithKnownValues) {
  // Options of Geske and Johnson (1984), table I: S 40, r 0.0488; a smoothed symmetric tree of
  // 10,000 steps with extrapolation, worked out separately.
  const double rows[][4] = {{0.2, 35, 0.0833, 0.0062}, {0.2, 45, 0.3333, 5.0883}, {0.3, 40, 0.5833, 3.1697},
                            {0.4, 45, 0.5833, 7.3830}, {0.2, 40, 0.3333, 1.5798}, {0.3, 35, 0.0833, 0.0774}};
  for (const auto& [sigma, K, T, put] : rows)
    EXPECT_NEAR(american_binomial(40, K, T, 0.0488, 0, sigma, 0, 1000, 0), put, 2e-4) << sigma << " " << K;
  // The European put and the premium 0.106952702747 of Andersen, Lake and Offengenden (2016).
  EXPECT_NEAR(american_binomial(100, 100, 1, 0.05, 0.05, 0.25, 0, 5000, 0), 9.462493 + 0.106952702747, 5e-6);
  // Two exercise boundaries; the same separate tree, 8,000 steps.
  EXPECT_NEAR(american_binomial(100, 100, 1, -0.02, -0.05, 0.3, 0, 2000, 0), 10.97726, 2e-4);
}

TEST(American, EarlyExerciseFollowsTheSignsOfTheRates) {
  const auto never = EarlyExercise::never, once = EarlyExercise::one_boundary;
  const auto twice = EarlyExercise::two_boundaries;
  const struct {
    double r, q;
    EarlyExercise call, put;
  } rows[] = {{0.05, 0.02, once, once}, {0.05, 0, never, once},       {0, 0.02, once, never},
              {0, 0, never, never},     {-0.01, 0.02, once, never},   {0.05, -0.01, never, once},
              {-0.01, 0, once, never},  {-0.02, -0.01, twice, never}, {-0.01, -0.02, never, twice},
              {0, -0.01, never, once},  {0.002, 0.001, once, once}};
  for (const auto& row : rows) {
    EXPECT_EQ(early_exercise_rule(row.r, row.q, 1), row.call) << row.r << " " << row.q;
    EXPECT_EQ(early_exercise_rule(row.r, row.q, 0), row.put) << row.r << " " << row.q;
  }
  EXPECT_EQ(american_baw(60, 100, 1, -0.02, -0.05, 0.3, 0, 0), 40);  // the European put is worth less
}

TEST(American, RandomOptionsKeepTheirBounds) {
  std::mt19937_64 bits(20);
  const auto between = [&](double a, double b) {
    return a + (b - a) * static_cast<double>(bits() >> 11) * 0x1p-53;
  };
  for (int k = 0; k < 400; ++k) {
    const double S = between(70, 140), T = between(0.05, 1.0), sigma = between(0.15, 0.6);
    const double r = between(-0.03, 0.1), q = between(-0.03, 0.1);
    const int OptType = k % 2;
    const double intrinsic = OptType == 0 ? 100 - S : S - 100;
    const EarlyExercise rule = early_exercise_rule(r, q, OptType);
    SCOPED_TRACE(testing::Message() << S << " " << T << " " << r << " " << q << " " << sigma << " "
                                    << OptType);
    const double european = bs_general(S, 100, T, r, q, sigma, OptType, 0);
    double plain = plain_tree(S, 100, T, r, q, sigma, OptType, 400);
    plain = (plain + plain_tree(S, 100, T, r, q, sigma, OptType, 401)) / 2;
    for (const int N : {1, 7, 60, 400}) {
      const double price = american_binomial(S, 100, T, r, q, sigma, OptType, N, 0);
      EXPECT_GE(price, std::max(european, 0.0)) << N;
      EXPECT_GE(price, intrinsic) << N;
      EXPECT_NEAR(price, plain, N == 400 ? 0.015 : N == 60 ? 0.05 : 5.0) << N;
    }
    const double quadratic = american_baw(S, 100, T, r, q, sigma, OptType, 0);
    if (rule == EarlyExercise::never) {
      for (int i = 0; i < 8; ++i)
        EXPECT_EQ(american_baw(S, 100, T, r, q, sigma, OptType, i),
                  bs_general(S, 100, T, r, q, sigma, OptType, i));
    } else {
      EXPECT_GE(quadratic, european);
      EXPECT_GE(quadratic, intrinsic);
      EXPECT_NEAR(quadratic, plain, rule == EarlyExercise::one_boundary ? 0.3 : 2.0);
    }
  }
}

TEST(AmericanTree, SensitivitiesAgreeWithTheFormulaAndWithDifferences) {
  // A call without yield is European.
  const double tolerance[] = {1e-4, 1e-4, 1e-5, 0.01, 0.01, 0.01, 0.05, 0.001, 0.001};
  for (int i = 0; i < 9; ++i)
    EXPECT_NEAR(american_binomial(105, 100, 0.5, 0.05, 0, 0.3, 1, 2000, i),
                bs_general(105, 100, 0.5, 0.05, 0, 0.3, 1, i), tolerance[i])
        << i;
  for (const int OptType : {0, 1}) {
    const auto plain = [&](double T, double r, double q, double sigma) {
      return plain_tree(96, 100, T, r, q, sigma, OptType, 1000);
    };
    const auto result = [&](int i) {
      return american_binomial(96, 100, 0.7, 0.05, 0.04, 0.3, OptType, 500, i);
    };
    EXPECT_NEAR(result(3), (plain(0.7, 0.05, 0.04, 0.31) - plain(0.7, 0.05, 0.04, 0.29)) / 0.02, 0.2);
    EXPECT_NEAR(result(4), (plain(0.7, 0.06, 0.05, 0.3) - plain(0.7, 0.04, 0.03, 0.3)) / 0.02, 0.2);
    EXPECT_NEAR(result(5), (plain(0.68, 0.05, 0.04, 0.3) - plain(0.72, 0.05, 0.04, 0.3)) / 0.04, 0.1);
    EXPECT_NEAR(result(6), (plain(0.7, 0.06, 0.04, 0.3) - plain(0.7, 0.04, 0.04, 0.3)) / 0.02, 0.2);
  }
}

TEST(American, BadAndExtremeInputHasAnswers) {
  const double exercised[] = {300, 1, 0, 0, 0, 0, 0, 0, 0};
  for (int i = 0; i < 9; ++i) {
    EXPECT_EQ(american_binomial(400, 100, 1, 0.02, 0.08, 0.25, 1, 200, i), exercised[i]) << i;
    EXPECT_EQ(american_baw(400, 100, 1, 0.02, 0.08, 0.25, 1, i), i < 8 ? exercised[i] : 99.0) << i;
    // The same of small prices; exactly, as they are divided by a power of 2.
    EXPECT_EQ(american_binomial(400 / 1024.0, 100 / 1024.0, 1, 0.02, 0.08, 0.25, 1, 200, i),
              exercised[i] / (i == 0 ? 1024.0 : 1.0))
        << i;
    EXPECT_EQ(american_binomial(1, 1000, 0.1, 0.02, 0.08, 0.1, 1, 200, i), 0.0) << i;  // out of reach
    EXPECT_EQ(american_binomial(90, 100, 0, 0.05, 0.02, 0.3, 0, 50, i), i == 0 ? 10.0 : 0.0);
    EXPECT_EQ(american_baw(90, 100, -1, 0.05, 0.02, 0.3, 0, i), i == 0 ? 10.0 : i == 8 ? 99.0 : 0.0);
  }
  for (int i = 0; i < 9; ++i)  // nor is a volatility below 0 another than none where it is moved
    EXPECT_EQ(american_binomial(90, 100, 1, 0.05, 0.02, -0.5, 0, 50, i),
              american_binomial(90, 100, 1, 0.05, 0.02, 0, 0, 50, i))
        << i;
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double wild : {nan, -1e300, -1.0, 0.0, 1e-300, 1e300, infinity})
    for (int place = 0; place < 6; ++place) {
      double x[] = {90, 100, 0.05, 0.04, 0.3, 1};
      x[place] = wild;
      for (int i = 0; i < 9; ++i) {
        const double tree = american_binomial(x[0], x[1], x[5], x[2], x[3], x[4], 0, 50, i);
        const double quadratic = american_baw(x[0], x[1], x[5], x[2], x[3], x[4], 0, std::min(i, 7));
        if (std::isnan(wild) && place < 5) {
          EXPECT_TRUE(std::isnan(tree) && std::isnan(quadratic)) << place << " " << i;
        }
      }
    }
  EXPECT_EQ(american_binomial(90, 100, 1, 0.05, 0.02, 0.3, 0, 0, 0), -99.0);
  EXPECT_EQ(american_binomial(90, 100, 1, 0.05, 0.02, 0.3, 0, 50, 9), 99.0);
  EXPECT_EQ(american_binomial(90, 100, 1, 0.05, 0.02, 0.3, 0, INT_MAX, 0),
            american_binomial(90, 100, 1, 0.05, 0.02, 0.3, 0, 5000, 0));
  EXPECT_NEAR(american_binomial(90, 100, 1, 0.05, 0.02, 0, 1, 50, 0), 0, 1e-12);
  EXPECT_NEAR(american_binomial(90, 100, 1, 0.05, 0.02, 1e6, 1, 5000, 0), 90, 0.1);
  set_allocation_limit(2);
  EXPECT_TRUE(std::isnan(american_binomial(90, 100, 1, 0.05, 0.02, 0.3, 0, 50, 0)));
  set_allocation_limit(0);
}

}  // namespace
}  // namespace kestran
