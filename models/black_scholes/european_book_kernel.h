// The kernel of european_book, compiled for two and for four lanes. Everything is expanded where it is used:
// what was compiled for AVX2 must not serve other files.
#pragma once

#include "models/black_scholes/european_book.h"
#include "models/black_scholes/european_parts.h"
#include "models/bumps.h"
#include "numerics/normal.h"

namespace kestran {

/// european_book with the lanes of Width.
template <class Width, bool all_results>
[[gnu::always_inline]] inline void european_book_kernel(const EuropeanBook& book, std::size_t first,
                                                        std::size_t count, double* results, bool* left) {
  using Real = typename Width::Real;
  using namespace elementary;
  constexpr std::size_t width = sizeof(Real) / sizeof(double);
  std::size_t k = 0;
  for (; k + width <= count; k += width) {
    const auto term = [&](const Strided& column) __attribute__((always_inline)) {
      return load<Width>(column, first + k);
    };
    const Real S = term(book.S), K = term(book.K), r = term(book.r), q = term(book.q);
    const Real T = term(book.days) / days_per_year;
    const Real given_sigma = term(book.sigma), OptType = term(book.OptType);
    const Real sigma = given_sigma <= 0.0 ? Real{} + least_volatility : given_sigma;
    const Real sign = absolute(OptType) < 1.0 ? Real{} - 1.0 : Real{} + 1.0;

    const Real root_T = square_root(T);
    const Real v = sigma * root_T;
    const Real over_v = 1.0 / v;
    const Real ratio = S / K;
    const Real moneyness = log_of_scaled(scaled(ratio));
    const Real drift = (r - q) + sigma * sigma / 2.0;
    const Real d1 = (moneyness + drift * T) * over_v;
    const Real yield_exponent = -q * T, rate_exponent = -r * T;
    const Real Dq = exponential_in_range<Width>(yield_exponent);
    const Real Dr = exponential_in_range<Width>(rate_exponent);
    const Real x1 = sign * d1, x2 = sign * (d1 - v);
    const Real bell1 = exponential_in_range<Width>(x1 * x1 * -0.5);
    const Real bell2 = exponential_in_range<Width>(x2 * x2 * -0.5);
    const Real N1 = normal::cnorm_by_bell(x1, bell1);
    const Real N2 = normal::cnorm_by_bell(x2, bell2);
    const EuropeanParts<Width> option = {S,
                                         T,
                                         r,
                                         q,
                                         sigma,
                                         sign,
                                         root_T,
                                         moneyness,
                                         drift,
                                         d1,
                                         over_v,
                                         Dq,
                                         bell1 * over_root_2_pi,
                                         N1,
                                         Dq * S * N1,
                                         Dr * K * N2};

    // Comparisons are false where a number is not one.
    auto usual = (T > 0.0) & (ratio >= smallest_normal) & (ratio <= largest_finite) &
                 (absolute(yield_exponent) <= exponential_safe_limit) &
                 (absolute(rate_exponent) <= exponential_safe_limit) & (sigma == sigma) &
                 (OptType == OptType);
    if constexpr (all_results) {
      usual &= absolute(x1 * x1 * -0.5) <= exponential_safe_limit;
      option.each_result([&](EuropeanResult result, Real value) __attribute__((always_inline)) {
        store(results + static_cast<std::size_t>(result) * count + k, value);
      });
    } else {
      store(results + k, option.premium());
    }
    const unsigned mask = lanes_where(reinterpret_cast<const Real&>(usual));
    for (std::size_t i = 0; i < width; ++i) left[k + i] = (mask >> i & 1) == 0;
  }
  for (; k < count; ++k) left[k] = true;
}

}  // namespace kestran
