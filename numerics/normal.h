// The normal distribution functions that all models share.
#pragma once

#include <emmintrin.h>

namespace kestran {

/// Cumulative standard normal distribution N(x), five-term polynomial (Abramowitz and Stegun 1964, 26.2.17).
/// Absolute error at most 7.5e-8; the prices of all models carry this approximation. Exactly 0 below -25 and
/// 1 above 25. The approximation jumps by 1.2e-9 at 0, where it is 0.5000000006, not 0.5; intended. NaN gives
/// NaN.
double cnorm(double x);

/// Both lanes' N(x), each with exactly the bits of the one-value form.
__m128d cnorm(__m128d x);

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
double cnorm_precise(double x);

/// Both lanes' N(x), each with exactly the bits of the one-value form.
__m128d cnorm_precise(__m128d x);

/// Polynomial of the three-term approximation (Abramowitz and Stegun 1964, 26.2.16), taken at |x|.
double cnorm3_poly(double x);

/// Cumulative standard normal distribution from `polynomial` = cnorm3_poly(x). Absolute error about 1e-5; 0
/// below -40 and 1 above 40, whatever the polynomial. NaN gives NaN.
double cnorm3(double x, double polynomial);

/// x multiplied by itself n times, starting from 1.0; 1.0 for n < 1.
double ipow(double x, int n);

}  // namespace kestran
