// The normal distribution functions that all models share.
#pragma once

#include "numerics/elementary.h"
#include "numerics/lanes.h"

namespace kestran {

/// Cumulative standard normal distribution N(x), five-term polynomial (Abramowitz and Stegun 1964, 26.2.17).
/// Absolute error at most 7.5e-8; the prices of all models carry this approximation. Exactly 0 below -25 and
/// 1 above 25. The approximation jumps by 1.2e-9 at 0, where it is 0.5000000006, not 0.5; intended. NaN gives
/// NaN.
KESTRAN_SSE_CALL double cnorm(double x);

/// Both lanes' N(x), each with exactly the bits of the one-value form.
__m128d cnorm(__m128d x);

/// The same for loops over many values: worked in the midst of the loop's other arithmetic, which a call
/// would hold up.
__m128d cnorm_inlined(__m128d x);

/// 1 / sqrt(2 pi): the density is e^(-x^2 / 2) times this.
constexpr double over_root_2_pi = 0.3989422804014327;

/// Both lanes' N(x), with the bits of cnorm, and bell = e^(-x^2 / 2).
struct NormalPair {
  __m128d N, bell;
};
NormalPair cnorm_and_bell(__m128d x);

/// N(x) with an absolute error of at most 1e-15 and no jump anywhere, for models whose results are
/// differenced or integrated where cnorm's error would show (rational function, Hart 1968, algorithm 5666,
/// coefficients as in West 2005, "Better approximations to cumulative normal functions", at all x). NaN gives
/// NaN.
KESTRAN_SSE_CALL double cnorm_precise(double x);

/// Both lanes' N(x), each with exactly the bits of the one-value form.
__m128d cnorm_precise(__m128d x);

/// Polynomial of the three-term approximation (Abramowitz and Stegun 1964, 26.2.16), taken at |x|.
double cnorm3_poly(double x);

/// Cumulative standard normal distribution from `polynomial` = cnorm3_poly(x). Absolute error about 1e-5; 0
/// below -40 and 1 above 40, whatever the polynomial. NaN gives NaN.
double cnorm3(double x, double polynomial);

// The arithmetic of cnorm, for kernels that work it in the midst of their own.
namespace normal {

// (1 - N(x)) e^(x^2 / 2) for x >= 0, one value or several lanes. The density's divisor is the published
// ten-digit root of 2 pi; results depend on it.
template <class Real>
[[gnu::always_inline]] inline Real tail_over_bell(Real x) {
  constexpr double root_2_pi = 2.506628275;
  constexpr double a1 = 0.31938153 / root_2_pi;
  constexpr double a2 = -0.356563782 / root_2_pi;
  constexpr double a3 = 1.781477937 / root_2_pi;
  constexpr double a4 = -1.821255978 / root_2_pi;
  constexpr double a5 = 1.330274429 / root_2_pi;
  const Real t = 1.0 / (1.0 + 0.2316419 * x);
  const Real t2 = t * t;
  return t * ((a1 + a2 * t) + t2 * ((a3 + a4 * t) + t2 * a5));
}

// N(x) in each lane from `bell` = e^(-x^2 / 2), which may be anything where N(x) is 0 or 1.
template <class Real>
[[gnu::always_inline]] inline Real cnorm_by_bell(Real x, Real bell) {
  const Real magnitude = absolute(x);
  const Real tail = magnitude > 25.0 ? Real{} : bell * tail_over_bell(magnitude);
  return x >= 0.0 ? 1.0 - tail : tail;
}

// N(x) in each lane, worked in the midst of a loop's other arithmetic, which a call would hold up.
template <class Width>
[[gnu::always_inline]] inline typename Width::Real cnorm_inlined(typename Width::Real x) {
  return cnorm_by_bell(x, elementary::exponential_in_range<Width>(x * x * -0.5));
}

// (1 - N(x)) e^(x^2 / 2) for x from 0 to 40, one value or two lanes.
template <class Real>
[[gnu::always_inline]] inline Real precise_tail_over_bell(Real x) {
  const Real over =
      (((((0.0352624965998911 * x + 0.700383064443688) * x + 6.37396220353165) * x + 33.912866078383) * x +
        112.079291497871) *
           x +
       221.213596169931) *
          x +
      220.206867912376;
  const Real under =
      ((((((0.0883883476483184 * x + 1.75566716318264) * x + 16.064177579207) * x + 86.7807322029461) * x +
         296.564248779674) *
            x +
        637.333633378831) *
           x +
       793.826512519948) *
          x +
      440.413735824752;
  return over / under;
}

// Beyond, N(x) is 0 or 1 whatever the rational function.
constexpr double precise_limit = 40.0;

// cnorm_precise in each lane.
template <class Real>
[[gnu::always_inline]] inline Real cnorm_precise_inlined(Real x) {
  const Real size = absolute(x);
  const Real magnitude = size > precise_limit ? Real{} + precise_limit : size;
  const Real tail = exponential(magnitude * magnitude * -0.5) * precise_tail_over_bell(magnitude);
  return x > 0.0 ? 1.0 - tail : tail;
}

}  // namespace normal

/// x multiplied by itself n times, starting from 1.0; 1.0 for n < 1.
double ipow(double x, int n);

[[gnu::always_inline]] inline __m128d cnorm_inlined(__m128d x) {
  const __m128d bell = elementary::exponential_in_range<elementary::TwoLanes>(x * x * -0.5);
  return normal::cnorm_by_bell(x, bell);
}

}  // namespace kestran
