#include "models/black_scholes/digital.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "models/black_scholes/european.h"

namespace kestran {
namespace {

const double nan = std::numeric_limits<double>::quiet_NaN();

// Expected values: the closed forms with the polynomial normal distribution in mpmath, 30 digits; with the
// exact distribution they agreed with numerical derivatives of the premium.
TEST(Digital, EveryResultOfBothModels) {
  const struct {
    struct {
      double Cash, S, K, T, r, q, sigma, Premium;
      int OptType;
    } of;
    double digital[6], cod[6];
  } rows[] = {
      {{10, 100, 105, 0.5, 0.05, 0.02, 0.3, 8, 1},
       {3.856066177, 0.1770746817, 0.0004442671615, 0.6664007423, -1.928033088, -0.538340959},
       {3.827791516, 0.3323536478, 0.01823742785, 27.35614178, -1.913895758, -9.012513901}},
      {{10, 100, 105, 0.5, 0.05, 0.02, 0.3, 8, 0},
       {5.897032943, -0.1770746817, -0.0004442671615, -0.6664007423, -2.948516472, 1.025995915},
       {5.597575491, -0.3743766952, 0.01894825531, 28.42238297, -2.798787746, -7.12370603}},
      {{3, 42, 40, 2.5, -0.01, 0.03, 0.6, 5, 2},
       {0.9185943708, 0.02678595923, -0.0002825919862, -0.7477383955, -2.296485927, 0.1255430753},
       {12.0507184, 0.5703480194, 0.008974465764, 23.74643641, -30.12679599, -2.011894881}},
  };
  for (const auto& row : rows) {
    const auto& [Cash, S, K, T, r, q, sigma, Premium, OptType] = row.of;
    for (int i = 0; i < 6; ++i) {
      EXPECT_NEAR(digital_option(Cash, S, K, T, r, q, sigma, OptType, i), row.digital[i], 1e-9)
          << S << " " << OptType << " RetType " << i;
      EXPECT_NEAR(cod_option(S, K, T, r, q, sigma, Premium, OptType, i), row.cod[i], 1e-8)
          << S << " " << OptType << " RetType " << i;
    }
  }
  // Published: Haug, "The Complete Guide to Option Pricing Formulas", cash-or-nothing options.
  EXPECT_NEAR(digital_option(10, 100, 80, 0.75, 0.06, 0.06, 0.35, 0, 0), 2.6710, 5e-5);
}

TEST(Digital, ExpiryFloorsAndSentinels) {
  EXPECT_EQ(digital_option(10, 101, 100, 0, 0.05, 0, 0.2, 1, 0), 10.0);
  EXPECT_EQ(digital_option(10, 100, 100, 0, 0.05, 0, 0.2, 1, 0), 0.0);  // nothing is paid at the strike
  EXPECT_EQ(digital_option(10, 101, 100, -1, 0.05, 0, 0.2, 1, 1), 0.0);
  EXPECT_TRUE(std::isnan(digital_option(10, nan, 100, 0, 0.05, 0, 0.2, 1, 0)));
  EXPECT_EQ(digital_option(10, 101, 100, 1, 0.05, 0, 0.2, 1, 6), 99.0);
  EXPECT_NEAR(digital_option(10, 101, 100, 1, 0.05, 0, 0, 1, 0), 10 * std::exp(-0.05), 1e-12);
  EXPECT_EQ(cod_option(110, 100, 0, 0.05, 0, 0.2, 12, 1, 0), -2.0);
  EXPECT_EQ(cod_option(90, 100, 0, 0.05, 0, 0.2, 12, 1, 0), 0.0);
  EXPECT_EQ(cod_option(110, 100, 0, 0.05, 0, 0.2, 12, 1, 6), 99.0);
  EXPECT_EQ(cod_premium(110, 100, 0, 0.05, 0, 0.2, 1), 10.0);
}

// Expected values: exact normal distribution, mpmath, 30 digits.
TEST(Digital, AllResultsAreThoseOfSingleOnes) {
  for (double T : {-0.01, 0.0, 0.01, 1.0})
    for (double S : {-100.0, 0.0, 100.0})
      for (double K : {-95.0, 95.0}) {
        double digital[digital_results], cod[digital_results];
        digital_option_all(10, S, K, T, .05, .02, .3, 1, digital);
        cod_option_all(S, K, T, .05, .02, .3, 10, 1, cod);
        for (int i = 0; i < digital_results; ++i) {
          const double one = digital_option(10, S, K, T, .05, .02, .3, 1, i);
          const double other = cod_option(S, K, T, .05, .02, .3, 10, 1, i);
          EXPECT_TRUE(digital[i] == one || (std::isnan(digital[i]) && std::isnan(one))) << S << " " << T;
          EXPECT_TRUE(cod[i] == other || (std::isnan(cod[i]) && std::isnan(other))) << S << " " << T;
        }
      }
}

TEST(ContingentPremium, NearTheExactValueHoweverUnlikelyTheExercise) {
  const struct {
    double S, K, T, r, q, sigma;
    int OptType;
    double premium, relative_error;
  } rows[] = {
      {100, 105, 0.5, 0.05, 0.02, 0.3, 1, 17.92671041, 2.5e-5},
      {100, 105, 0.5, 0.05, 0.02, 0.3, 0, 17.49220953, 2.5e-5},
      {60, 100, 0.25, 0.05, 0.02, 0.25, 1, 2.844494148, 1e-9},
      {20, 100, 0.25, 0.05, 0.02, 0.25, 1, 0.9685168674, 1e-9},
      {500, 100, 0.25, 0.05, 0.02, 0.1, 0, 0.1541999724, 1e-9},
  };
  for (const auto& w : rows)
    EXPECT_NEAR(cod_premium(w.S, w.K, w.T, w.r, w.q, w.sigma, w.OptType), w.premium,
                w.relative_error * w.premium)
        << w.S << " " << w.OptType;
}

TEST(ContingentPremium, MakesThePayLaterOptionWorthless) {
  for (double S : {85.0, 100.0, 118.0})
    for (int OptType : {0, 1, 8}) {
      const double premium = cod_premium(S, 100, 0.7, 0.04, 0.01, 0.3, OptType);
      const double sign = OptType == 0 ? -1.0 : 1.0;
      EXPECT_NEAR(cod_option(S, 100, 0.7, 0.04, 0.01, 0.3, premium, OptType, 0), 0.0, 1e-13 * S);
      EXPECT_GT(premium, sign * (S * std::exp(0.03 * 0.7) - 100));
    }
  for (double sigma : {0.0, 1e-3, 0.05}) EXPECT_GT(cod_premium(50, 100, 0.1, 0, 0, sigma, 1), 0.0) << sigma;
}

}  // namespace
}  // namespace kestran
