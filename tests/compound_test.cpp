#include "models/exotics/compound.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace kestran {
namespace {

TEST(Compound, AgreesWithIndependentValues) {
  // The same formulas and search with mpmath, 40 digits.
  const struct {
    double days1, sigma_f;
    int OptType, RetType;
    double value, tolerance;
  } rows[] = {
      {120, 0.25, 1, 0, 6.72751104953112, 1e-11},
      {120, 0.25, 2, 0, 1.57715715708598, 1e-11},
      {120, 0.25, 3, 0, 4.39365667182244, 1e-11},
      {120, 0.25, 4, 0, 1.63696549806540, 1e-11},
      {120, 0.25, 5, 0, 0.31976553910639, 1e-13},
      {120, 0.25, 1, 1, 0.48148479160945, 1e-10},
      {120, 0.25, 2, 2, 0.00395266544768, 1e-9},
      {120, 0.25, 3, 3, 28.9407458368048, 1e-7},
      {120, 0.25, 4, 4, 4.56610488949963, 1e-6},
      {120, 0.25, 1, 5, -8.5674321353709, 1e-6},
      {120, 0.25, 4, 5, -0.9237880394954, 1e-6},
      {120, 0.25, 5, 3, 1.14201978252282, 1e-10},
      {0.001, 0.28, 1, 5, -7.39539701426, 1e-3},
      {0.0011, 0.28, 1, 5, -7.395402678860, 1e-6},
      {120, 0.45, 1, 0, -1.0, 0.0},
      {120, 0.45, 0, 0, -1.0, 0.0},
      {120, 0.45, 5, 2, 0.0, 0.0},
      {120, 0.25, 6, 0, -999999999.999, 0.0},
  };
  for (const auto& row : rows) {
    EXPECT_NEAR(compound_greek({100, 6, 100, row.days1, 300, 0.05, 0.02, row.sigma_f, 0.28, row.OptType},
                               row.RetType),
                row.value, row.tolerance)
        << row.days1 << ' ' << row.sigma_f << ' ' << row.OptType << ' ' << row.RetType;
  }
  EXPECT_NEAR(black76_call(100, 95, 120, 0.05, 0.3), 9.3201533743691888, 1e-12);
  EXPECT_NEAR(black76_put(100, 95, 120, 0.05, 0.3), 4.40161795248034, 1e-12);
  EXPECT_EQ(compound_greek({100, 6, 100, 120, 300, 0, 0.02, 0.25, 0.28, 1}, 4), 0.0);
  EXPECT_TRUE(std::isnan(compound_greek({100, 6, 100, 120, 300, 0.05, 0.02, 0.25, 0.28, 1}, 6)));
  EXPECT_TRUE(std::isnan(compound_price({100, 6, NAN, 120, 300, 0.05, 0.02, 0.25, 0.28, 1})));
}

TEST(Compound, IsTheExpectedPayoffAtTheFirstExpiry) {
  // Exact theory for r = q: the discounted payoff integrated over the price then, mpmath.
  const double expected[] = {5.62660901, 1.83985781, 5.19766776, 1.41091656};
  for (int OptType = 1; OptType <= 4; ++OptType) {
    EXPECT_NEAR(compound_price({100, 6, 100, 120, 300, 0.05, 0.05, 0.25, 0.28, OptType}),
                expected[OptType - 1], 1e-3);
  }
}

// Halving, step by step, with the premium worked out at every midpoint.
double plain_search(double target, double X, double days, double r, double sigma, bool put) {
  double lo = 1e-12, hi = 1e8;
  bool lower_end_moved = false;
  for (int count = 0; count <= 10000; ++count) {
    const double mid = (lo + hi) / 2;
    const double value = put ? black76_put(mid, X, days, r, sigma) : black76_call(mid, X, days, r, sigma);
    if (std::fabs(target - value) < 0.0001) return mid;
    if (put ? value > target : value < target) {
      lo = mid;
      lower_end_moved = true;
    } else if (put ? value < target : value > target) {
      hi = mid;
    }
  }
  return lower_end_moved ? 1e8 : 1e-12;
}

TEST(Compound, FindsExactlyTheMidpointOfThePlainSearch) {
  const auto check = [](double target, double X, double days, double r, double sigma) {
    for (const bool put : {false, true}) {
      EXPECT_EQ(compound_critical_price(target, X, days, r, sigma, 1e-12, 1e8, put),
                plain_search(target, X, days, r, sigma, put))
          << target << ' ' << X << ' ' << days << ' ' << r << ' ' << sigma << ' ' << put;
    }
  };
  std::mt19937_64 engine(20240229);
  const auto uniform = [&engine](double low, double high) {
    return low + (high - low) * (static_cast<double>(engine() >> 11) * 0x1p-53);
  };
  for (int i = 0; i < 4000; ++i) {
    const double X = uniform(20, 200), days = uniform(5, 700), sigma = uniform(0.05, 0.65);
    check(X * sigma * std::sqrt(days / 365) * uniform(0.01, 1), X, days, uniform(0, 0.1), sigma);
    check(uniform(0, 0.01), X, days / 20, 0.05, sigma / 20);
    if (i % 4 != 0) continue;
    const double any_size = std::exp(uniform(-10, 18));
    check(any_size * std::exp(uniform(-20, 1)), any_size, std::exp(uniform(-8, 9)), uniform(-0.5, 0.8),
          std::exp(uniform(-7, 2)));
  }
  const double odd[] = {0.0, -1.0, 1e-4, 1.0, 5e7, 1e300, -INFINITY, INFINITY, NAN};
  for (const double one : odd) {
    check(5, 100, one, 0.05, 0.3);
    check(5, 100, 90, one, 0.3);
    for (const double other : odd) {
      check(one, other, 90, 0.05, 0.3);
      check(one, 100, 90, 0.05, other);
    }
  }
}

}  // namespace
}  // namespace kestran
