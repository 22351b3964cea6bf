#include "models/asian/asian_fast.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "models/asian/asian_correction.h"
#include "models/asian/asian_correction_table.h"
#include "models/black_scholes/black_scholes_sens.h"

namespace kestran {
namespace {

const double nan = std::numeric_limits<double>::quiet_NaN();

// Expected values, unless said otherwise: the same closed forms in mpmath, 34 digits, written independently.
TEST(BlackScholesSens, PremiumAndEverySensitivity) {
  const struct {
    struct {
      bool call;
      double S, K, days, r, q, sigma, premium;
    } of;
    double sensitivities[7];
  } rows[] = {
      {{true, 100, 95, 45, 0.06, 0.02, 0.35, 7.967517687189848},
       {0.6964238764846553, 0.028311004565913442, 12.208030716307643, 7.598546607138688, -19.648134741329212,
        -0.9816243557112749, -0.39372700146137646}},
      {{false, 100, 95, 45, 0.06, 0.02, 0.35, 2.5139514328372248},
       {-0.30111509112489043, 0.028311004565913442, 12.208030716307643, -4.019563927555598,
        -15.985192846152188, -0.30972707591423715, -0.39372700146137646}},
      {{false, 42, 57, 900, -0.01, 0.03, 0.6, 28.816105914833653},
       {-0.44880306298628186, 0.009358275896012359, 24.406076078043895, -117.45174840309853,
        -4.0135899674671345, -71.00477843490839, 0.555164064674974}},
  };
  for (const auto& [of, sensitivities] : rows) {
    double out[7];
    const auto sens = of.call ? bs_call_sens : bs_put_sens;
    EXPECT_NEAR(sens(of.S, of.K, of.days, of.r, of.q, of.sigma, out), of.premium, 1e-13 * of.S);
    for (int i = 0; i < 7; ++i)
      EXPECT_NEAR(out[i], sensitivities[i], 1e-14 * of.S) << "S " << of.S << " out " << i;
  }
}

// The table's published facts; the values themselves are recomputed by make_asian_correction_table --check.
TEST(AsianCorrection, TableFacts) {
  EXPECT_EQ(asian_correction_table[9][0][0], 0.164644);
  EXPECT_EQ(asian_correction_table[9][0][5], 0.124277);
  EXPECT_EQ(asian_correction_table[5][0][5], 0.000635);
  EXPECT_EQ(asian_correction_table[5][8][5], 0.000369);
  double least = 0.0, greatest = 0.0;
  int not_zero = 0;
  for (const auto& plane : asian_correction_table)
    for (const auto& row : plane)
      for (double value : row) {
        least = std::fmin(least, value);
        greatest = std::fmax(greatest, value);
        not_zero += value != 0.0;
      }
  EXPECT_EQ(least, -0.00962);
  EXPECT_EQ(greatest, 0.164644);
  EXPECT_EQ(not_zero, 6900);
}

TEST(AsianCorrection, InsideAndBeyondTheTable) {
  const struct {
    double S, K, sigma, t1_days, T_days, expected;
    const char* where;
  } rows[] = {
      {100, 95, 0.4, 30, 120, -0.007548820971041577, "inside"},
      {100, 104, 0.02, 0, 365.25, 0.00673579553824117, "deviation far below"},
      {100, 99, 0.038, 9, 365.25, 0.0008964450433993268, "deviation just below"},
      {100, 90, 3, 10, 365.25, 3.576109905307064, "deviation above"},
      {100, 100, 0.3, 365.25, 365.25, 8.20480521785292e-07, "one fixing, at expiry"},
      {100, 100, 0.8, 900, 365.25, -0.00024495532179876644, "start after expiry"},
      {1000, 10, 0.5, 50, 365.25, 0.2101292955216087, "moneyness above"},
      {100, 320, 0.8, 20, 365.25, 0.3236367617282468, "moneyness just below"},
      {100, 400, 0.8, 20, 365.25, 0.44066618538889535, "moneyness below"},
      {100, 100, 0.0, 20, 365.25, 0, "no volatility"},
      {100, -100, 0.3, 20, 365.25, 0, "strike below zero"},
      {100, 100, 0.3, -1, 365.25, 0, "start in the past"},
  };
  for (const auto& row : rows)
    EXPECT_NEAR(asian_call_correction(row.S, row.K, row.sigma, row.t1_days, row.T_days), row.expected,
                1e-13 * row.S)
        << row.where;
  // No strike is infinitely far in the money: the edge value.
  EXPECT_EQ(asian_call_correction(100, 0, 0.5, 50, 365), asian_call_correction(100, 1e-9, 0.5, 50, 365));
  // And no price infinitely far out of it.
  EXPECT_NEAR(asian_call_correction(5, 100, 0.5, 50, 365), asian_call_correction(20, 100, 0.5, 50, 365) / 4,
              1e-15);
  EXPECT_TRUE(std::isnan(asian_call_correction(100, 100, nan, 50, 365)));
  EXPECT_TRUE(std::isnan(asian_call_correction(100, nan, 0.3, 50, 365)));
}

TEST(AsianFast, EveryResultOfEveryBranch) {
  struct Option {
    double S, K, r, sigma, A;
    int N, m;
    double t1, T;
    int OptType;
  };
  const struct {
    Option option;
    double out[7];
  } rows[] = {
      {{100, 102, 0.05, 0.3, 0, 30, 0, 0.1, 0.2, 1},
       {3.4406917113715543, 0.44519682303448976, 0.03584336320013886, 14.277606341388646, -0.6879763381236035,
        -15.957519355531586, 0.3079856192049276}},
      {{100, 102, 0.05, 0.3, 0, 30, 0, 0.1, 0.2, 0},
       {5.419981358116353, -0.5448530107146783, 0.03584336320013886, 14.277606341388646, -1.0839962716232707,
        -15.85851437215667, 0.3079856192049276}},
      {{100, 95, 0.04, 0.45, 97, 60, 25, 0.004, 0.1, 2},
       {4.318140233346283, 0.4621838038146309, 0.01943042599747467, 3.107757849538949, -0.4325034309953288,
        -20.936497166319064, -0.27136267451785195}},
      {{100, 110, 0.04, 0.45, 97, 60, 25, 0.004, 0.1, 0},
       {11.241989484057251, -0.568884099576662, 0.0034365257014945206, 0.549647739341895, -1.124198948405725,
        -2.767182378342865, 0.13742292393395025}},
      // The fixings made suffice for exercise; they do with today's; one is left; all are made.
      {{100, 60, 0.04, 0.25, 130, 40, 30, 0.003, 0.03, 1},
       {62.425044982005396, 0.2497001799280216, 0, 0, -1.872751349460162, 2.497001799280216, 0}},
      {{100, 60, 0.04, 0.25, 130, 40, 30, 0.003, 0.03, 0}, {}},
      {{100, 75.2, 0.04, 0.25, 100, 40, 30, 0.003, 0.03, 1},
       {24.7702721823816, 0.2497001799280216, 0, 0, -0.7431077354657922, 0.990918827528079, 0}},
      {{100, 75.2, 0.04, 0.25, 100, 40, 30, 0.003, 0.03, 0}, {}},
      {{100, 101, 0.04, 0.25, 98, 40, 39, 0.01, 0.01, 0},
       {2.9488202359685363, -0.02499000199973336, 0, 0, -0.029488202359685366, 0.1179592684183656, 0}},
      {{100, 110, 0.04, 0.25, 112.5, 40, 40, 0.01, 0.2, 1},
       {2.4800797870926514, 0, 0, 0, -0.49601595741853033, 0.09920319148370606, 0}},
      {{100, 101, 0.04, 0.25, 98, 40, 41, 0.01, -0.5, 0}, {3.0, 0, 0, 0, 0, 0, 0}},
      // A call of 6.8e-6 is too small to count, but keeps its sensitivities.
      {{100, 139, 0.04, 0.2, 98, 40, 0, 0.01, 0.25, 1},
       {0, 2.00233832514042e-08, 1.8951626248734216e-08, 3.3733894722746908e-06, -5.01836704333349e-09,
        -3.78952231101991e-06, 3.137287716438494e-06}},
  };
  for (const auto& row : rows) {
    const Option& o = row.option;
    double out[7];
    asn_model(o.S, o.K, o.r, o.sigma, o.A, o.N, o.m, o.t1, o.T, o.OptType, out);
    for (int i = 0; i < 7; ++i)
      EXPECT_NEAR(out[i], row.out[i], (i == 5 ? 1e-11 : 1e-13) * o.S)
          << "K " << o.K << " m " << o.m << " OptType " << o.OptType << " out " << i;
    EXPECT_EQ(asn_price(o.S, o.K, o.r, o.sigma, o.A, o.N, o.m, o.t1, o.T, o.OptType), out[0]);
  }
}

// Exact values for discrete averages: the average-price equation solved on 3200 price nodes, 1e-7 of S.
TEST(AsianFast, NearTheExactPrice) {
  const struct {
    double sigma, t1;
    int N;
    double K, call, call_error, put_error;
  } rows[] = {
      {0.1, 0.25, 21, 1 / 1.02, 0.0386424, 2e-5, 3e-5}, {0.25, 0.1, 250, 1.05, 0.0427287, 4e-5, 3e-4},
      {0.4, 0.5, 60, 0.9, 0.1793029, 8e-5, 3e-4},       {0.63, 0.02, 250, 1.0, 0.1464726, 6e-4, 1e-3},
      {1.0, 0.25, 30, 1.2, 0.2125998, 2e-3, 4e-4},
  };
  for (const auto& row : rows) {
    EXPECT_NEAR(asn_price(1, row.K, 0, row.sigma, 0, row.N, 0, row.t1, 1, 1), row.call, row.call_error)
        << row.sigma;
    EXPECT_NEAR(asn_price(1, row.K, 0, row.sigma, 0, row.N, 0, row.t1, 1, 0), row.call - 1 + row.K,
                row.put_error)
        << row.sigma;
  }
}

TEST(AsianFast, ExtremeCountsAndBadInput) {
  const int most = std::numeric_limits<int>::max(), least = std::numeric_limits<int>::min();
  double out[7];
  asn_model(100, 60, 0.04, 0.15, 0, 40, 0, 0.01, 0.2, 0, out);
  for (int i : {0, 1, 4}) EXPECT_EQ(out[i], 0.0) << i;  // the price is 1.4e-37 before the cut
  asn_model(100, 60, 40, 0.15, 130, 40, 30, 0.01, 2, 1, out);
  for (double result : out) EXPECT_EQ(result, 0.0);  // discounted by e^-80
  // Theta in another currency, where hardly any of the strike is left.
  double of_cents[7];
  asn_model(100, 100, 0.05, 0.3, 180, 40, 20, 0.1, 0.2, 1, out);
  asn_model(100 / 128.0, 100 / 128.0, 0.05, 0.3, 180 / 128.0, 40, 20, 0.1, 0.2, 1, of_cents);
  EXPECT_NEAR(of_cents[5] * 128, out[5], 1e-10);
  for (int m : {1, 9, 20}) {
    asn_model(100, 98, 0.05, 0.3, 99, 40, m, 0.1, 0.2, 1, out);
    EXPECT_EQ(asn_price(100, 98, 0.05, 0.3, 99, 40, m, 0.1, 0.2, 1), out[0]) << m;
  }
  for (int N : {least, -1, 0, 1, most})
    for (int m : {least, 0, 1, most - 1, most}) asn_model(100, 98, 0.05, 0.3, 99, N, m, 0.1, 0.2, 1, out);
  EXPECT_EQ(asn_price(100, 98, 0.05, 0.3, 99, 20, least, 0.1, 0.2, 1),
            asn_price(100, 98, 0.05, 0.3, 99, 20, 0, 0.1, 0.2, 1));
  EXPECT_TRUE(std::isnan(asn_price(100, 98, 0.05, 0.3, 99, 20, 3, 0, -0.1, 0)));
  EXPECT_TRUE(std::isnan(asn_price(100, 98, 0.05, nan, 99, 20, 0, 0, 0.1, 1)));
  EXPECT_TRUE(std::isnan(asn_price(100, nan, 0.05, 0.2, 99, 20, 30, 0, 0.1, 1)));
}

}  // namespace
}  // namespace kestran
