#include "models/asian/asian_vol_approx.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "models/asian/asian_fast.h"

namespace kestran {
namespace {

const double nan = std::numeric_limits<double>::quiet_NaN();

// Expected values: the same closed forms in mpmath, 34 digits, written independently.
TEST(AsianVolApprox, EveryResultOfEveryBranch) {
  struct Option {
    double S, K, r, sigma, A, toExp, toStart, toEnd, TradeDays;
    int OptType;
  };
  const struct {
    Option option;
    double out[7];
  } rows[] = {
      {{100, 98, 0.05, 0.3, 0, 100, 20, 60, 252, 1},
       {5.2966315200920375, 0.5867609933717035, 0.03512812891746143, 13.871734996442376, -1.261273496914163,
        -15.54279057850567, -0.16720242739497632}},
      {{100, 98, 0.05, 0.3, 0, 100, 20, 60, 252, 0},
       {3.3245406514213762, -0.3996430244373509, 0.03512812891746143, 13.871734996442376, -0.7915572979574705,
        -15.641430980286575, -0.16720242739497632}},
      {{100, 98, 0.05, 0.4, 103, 10, -3, 2.4, 252, 1},
       {3.5886070871495024, 0.4678392526716101, 0.00038477263063578846, 0.005836057536980213,
        -0.03418106213513881, -0.6890873856662617, -0.00764366389990134}},
      {{100, 98, 0.05, 0.4, 93, 10, -3, 2.4, 252, 0},
       {1.7538961084163958, -0.4336669730673601, 0.02651123447675058, 0.4021104347443651,
        -0.016703772461108532, -21.39533904291971, 0.24068084036959864}},
      {{100, 50, 0.05, 0.4, 103, 10, -30, 2.4, 252, 1},
       {52.70543511928686, 0.08977759786387723, 0, 0, -1.4429961702747942, -0.0072149808513739715, 0}},
      {{100, 50, 0.05, 0.4, 103, 10, -30, 2.4, 252, 0}, {}},
      {{100, 98, 0.05, 0.4, 103, 30, -30, 0, 252, 1},
       {4.97950822546281, 0, 0, 0, -0.4089945154384238, 0.0006816575257307064, 0}},
      {{100, 98, 0.05, 0.4, 90, -4, -30, -1, 252, 0}, {8.0, 0, 0, 0, 0, 0.0010951403148528405, 0}},
  };
  for (const auto& row : rows) {
    const Option& o = row.option;
    double out[7];
    asian_vol_approx({o.S, o.K, o.r, o.sigma, o.A, o.toExp, o.toStart, o.toEnd, o.TradeDays, o.OptType}, out);
    for (int i = 0; i < 7; ++i)
      EXPECT_NEAR(out[i], row.out[i], 1e-13 * o.S)
          << "A " << o.A << " toEnd " << o.toEnd << " OptType " << o.OptType << " out " << i;
  }
}

// With 365.25 trading days and payment at the last of daily fixings it is the approximation in calendar time.
TEST(AsianVolApprox, CalendarDaysGiveTheFastApproximation) {
  double out[7], fast[7];
  for (int OptType : {0, 1}) {
    asian_vol_approx({100, 103, 0.05, 0.35, 0, 50, 11, 50, 365.25, OptType}, out);
    asn_model(100, 103, 0.05, 0.35, 0, 40, 0, 11 / 365.25, 50 / 365.25, OptType, fast);
    for (int i = 0; i < 7; ++i) EXPECT_NEAR(out[i], fast[i], 1e-12) << OptType << " " << i;
  }
}

TEST(AsianVolApprox, BadInputGivesNoNumber) {
  double out[7];
  asian_vol_approx({100, 98, 0.05, 0.3, 0, 100, 20, 60, 0, 1}, out);  // no trading days
  EXPECT_FALSE(std::isfinite(out[0]));
  asian_vol_approx({100, 98, 0.05, 0.3, 0, 100, 61, 60, 252, 1}, out);  // no fixing
  EXPECT_FALSE(std::isfinite(out[0]));
  for (double toEnd : {nan, 1e17, std::numeric_limits<double>::infinity()}) {
    asian_vol_approx({100, 98, 0.05, 0.3, 99, 100, -1, toEnd, 252, 1}, out);
    EXPECT_FALSE(out[0] > 0.0 && out[0] < 1.0) << toEnd;
  }
  asian_vol_approx({100, nan, 0.05, 0.3, 99, 100, -1, -1, 252, 1}, out);
  EXPECT_TRUE(std::isnan(out[0]));
  asian_vol_approx({100, 98, 0.05, 0.3, 99, nan, -1, -1, 252, 1}, out);
  EXPECT_TRUE(std::isnan(out[0]));
}

}  // namespace
}  // namespace kestran
