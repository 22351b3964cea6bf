// Exponential, natural logarithm and power in SSE2 arithmetic only, so that every build gives the same bits.
#pragma once

#include <immintrin.h>

#include <cmath>
#include <cstdint>

#include "numerics/convention.h"

namespace kestran {

// e^x, measured within 0.52 units in the last place (0.76 where the result is subnormal). NaN gives NaN,
// overflow (x > 709.78...) infinity, and below -745.13... zero. Source: table of 2^(j/128) and a short
// polynomial, after Tang (1989), "Table-driven implementation of the exponential function in IEEE
// floating-point arithmetic".
KESTRAN_SSE_CALL double exponential(double x);

// Both lanes' e^x, each with exactly the bits and edge answers of the one-value form.
__m128d exponential(__m128d x);

// The natural logarithm of x, measured within 0.76 units in the last place. Zero of either sign gives
// -infinity, infinity gives itself; a negative x or NaN gives NaN. Source: table of logarithms and a short
// series, after Tang (1990), "Table-driven implementation of the logarithm function in IEEE floating-point
// arithmetic".
KESTRAN_SSE_CALL double natural_log(double x);

// Both lanes' natural logarithm, each with exactly the bits and edge answers of the one-value form.
__m128d natural_log(__m128d x);

// base^exponent, measured within 0.52 units in the last place (0.76 where the result is subnormal): the
// logarithm, as above, is carried to about 64 bits, so that a large exponent does not magnify its rounding.
// Zero, infinite and negative bases, infinite exponents and NaN answer as C99 asks of pow: anything to the
// power 0 and 1 to any power are 1 even with a NaN; a negative base takes whole exponents only and gives NaN
// for the others.
KESTRAN_SSE_CALL double power(double base, double exponent);

// The greater of x and 0, where NaN stays NaN: a payoff that never turns bad input into a price of 0.
inline double positive_part(double x) { return x <= 0.0 ? 0.0 : x; }

// What follows is the arithmetic of the two functions over their ordinary arguments. It stands here so that
// it is worked in the midst of a model's other arithmetic: a call would hold up either. It is written once
// for one value and for two and four lanes, so all forms give the same bits. Four are there where a file is
// compiled for AVX2.
namespace elementary {

struct OneValue {
  using Real = double;
  using Whole = __m128i;
};
struct TwoLanes {
  using Real = __m128d;
  using Whole = __m128i;
};
#if defined(__AVX2__)
struct FourLanes {
  using Real = __m256d;
  using Whole = __m256i;
};
#endif

struct PowerOfTwo {
  double value;            // 2^(j/128) rounded to double
  double relative_excess;  // exact 2^(j/128) / value - 1
};
extern const PowerOfTwo powers_of_two[128];

// e^x = 2^(count/128) e^remainder with |remainder| <= ln 2 / 256. The leading part of ln 2 / 128 has 35 bits,
// so its product with any count in use (18 bits) is exact; the trailing part completes it to 90 bits.
constexpr double over_ln2_128 = 0x1.71547652b82fep+7;
constexpr double ln2_over_128_leading = 0x1.62e42fef8p-8;
constexpr double ln2_over_128_trailing = 0x1.1cf79abc9e3b4p-43;

// Adding this leaves the nearest whole number in the low bits of the sum.
constexpr double whole_number_shift = 0x1.8p+52;

// Arguments up to this size give results, and partial results, well inside the normal range.
constexpr double exponential_safe_limit = 700.0;

// The table row for count mod 128, where shifted = whole_number_shift + count, with its value scaled by
// 2^floor(count / 128).
template <class Width>
struct ScaledPower {
  typename Width::Real value, relative_excess;
};

inline __m128d scaled_by_count(__m128d value, __m128i count) {
  const __m128i exponent_field = _mm_slli_epi64(_mm_srli_epi64(count, 7), 52);
  return _mm_castsi128_pd(_mm_add_epi64(_mm_castpd_si128(value), exponent_field));
}

inline ScaledPower<OneValue> scaled_power_of_two(double shifted) {
  const __m128i count = _mm_castpd_si128(_mm_set_sd(shifted));
  const PowerOfTwo& row = powers_of_two[_mm_cvtsi128_si32(count) & 127];
  return {_mm_cvtsd_f64(scaled_by_count(_mm_load_sd(&row.value), count)), row.relative_excess};
}

inline ScaledPower<TwoLanes> scaled_power_of_two(__m128d shifted) {
  const __m128i count = _mm_castpd_si128(shifted);
  const __m128d row0 = _mm_load_pd(&powers_of_two[_mm_cvtsi128_si32(count) & 127].value);
  const __m128d row1 = _mm_load_pd(&powers_of_two[_mm_extract_epi16(count, 4) & 127].value);
  return {scaled_by_count(_mm_unpacklo_pd(row0, row1), count), _mm_unpackhi_pd(row0, row1)};
}

#if defined(__AVX2__)
// The place of each lane's row in a table of 128.
struct FourRows {
  int first, second, third, fourth;
};
[[gnu::always_inline]] inline FourRows rows_of(__m256i whole) {
  const __m128i low = _mm256_castsi256_si128(whole);
  const __m128i high = _mm256_extracti128_si256(whole, 1);
  return {_mm_cvtsi128_si32(low) & 127, _mm_extract_epi16(low, 4) & 127, _mm_cvtsi128_si32(high) & 127,
          _mm_extract_epi16(high, 4) & 127};
}

[[gnu::always_inline]] inline __m256d both(const double* low, const double* high) {
  return _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_load_pd(low)), _mm_load_pd(high), 1);
}

[[gnu::always_inline]] inline ScaledPower<FourLanes> scaled_power_of_two(__m256d shifted) {
  const __m256i count = _mm256_castpd_si256(shifted);
  const FourRows rows = rows_of(count);
  const __m256d rows02 = both(&powers_of_two[rows.first].value, &powers_of_two[rows.third].value);
  const __m256d rows13 = both(&powers_of_two[rows.second].value, &powers_of_two[rows.fourth].value);
  const __m256i exponent_field = _mm256_slli_epi64(_mm256_srli_epi64(count, 7), 52);
  const __m256i value = _mm256_castpd_si256(_mm256_unpacklo_pd(rows02, rows13));
  return {_mm256_castsi256_pd(_mm256_add_epi64(value, exponent_field)), _mm256_unpackhi_pd(rows02, rows13)};
}
#endif

template <class Width>
struct ReducedArgument {
  typename Width::Real remainder, shifted;
};

template <class Width>
[[gnu::always_inline]] inline ReducedArgument<Width> reduced(typename Width::Real x) {
  using Real = typename Width::Real;
  const Real shifted = x * over_ln2_128 + whole_number_shift;
  const Real count = shifted - whole_number_shift;
  return {(x - count * ln2_over_128_leading) - count * ln2_over_128_trailing, shifted};
}

// 2^(count / 128) e^remainder: Taylor's series to r^5 (the first term left out is below 2^-60).
template <class Width>
[[gnu::always_inline]] inline typename Width::Real recombined(const ReducedArgument<Width>& argument) {
  using Real = typename Width::Real;
  const Real r = argument.remainder;
  const ScaledPower<Width> power_of_two = scaled_power_of_two(argument.shifted);
  const Real r2 = r * r;
  const Real tail = (0.5 + r * (1.0 / 6)) + r2 * (1.0 / 24 + r * (1.0 / 120));
  return power_of_two.value + power_of_two.value * ((power_of_two.relative_excess + r) + r2 * tail);
}

// e^x for |x| <= exponential_safe_limit and NaN; beyond it, some number or NaN.
template <class Width>
[[gnu::always_inline]] inline typename Width::Real exponential_in_range(typename Width::Real x) {
  return recombined(reduced<Width>(x));
}

struct alignas(32) LogCentre {
  double reciprocal;    // of the middle of an interval, to 14 binary places
  double log_leading;   // -ln(reciprocal) to the nearest multiple of 2^-42
  double log_trailing;  // the rest of -ln(reciprocal)
};
extern const LogCentre log_centres[128];

// ln 2 to the nearest multiple of 2^-42, and the rest.
constexpr double ln2_leading = 0x1.62e42fefa38p-1;
constexpr double ln2_trailing = 0x1.ef35793c7673p-45;

// x = 2^exponent m with m in [363/512, 363/256), and m in one of the 128 intervals of log_centres.
template <class Width>
struct Scaled {
  typename Width::Real exponent, m;
  typename Width::Whole
      interval;  // in the low bits of each lane; whatever is above bit 6 is to be masked off
};

// The upper 32 bits of 363/512; the lower 32 are zero.
constexpr std::int32_t lowest_m_high_word = 0x3fe6b000;

[[gnu::always_inline]] inline Scaled<TwoLanes> scaled(__m128d x) {
  const __m128i bits = _mm_castpd_si128(x);
  const __m128i offset = _mm_sub_epi32(bits, _mm_set_epi32(lowest_m_high_word, 0, lowest_m_high_word, 0));
  const __m128i exponent_field = _mm_and_si128(offset, _mm_set_epi32(-0x100000, 0, -0x100000, 0));
  const __m128i exponent = _mm_shuffle_epi32(_mm_srai_epi32(offset, 20), _MM_SHUFFLE(3, 3, 3, 1));
  return {_mm_cvtepi32_pd(exponent), _mm_castsi128_pd(_mm_sub_epi32(bits, exponent_field)),
          _mm_srli_epi64(offset, 45)};
}

[[gnu::always_inline]] inline Scaled<OneValue> scaled(double x) {
  const Scaled<TwoLanes> parts = scaled(_mm_set_sd(x));
  return {_mm_cvtsd_f64(parts.exponent), _mm_cvtsd_f64(parts.m), parts.interval};
}

#if defined(__AVX2__)
[[gnu::always_inline]] inline Scaled<FourLanes> scaled(__m256d x) {
  const __m256i bits = _mm256_castpd_si256(x);
  const __m256i offset =
      _mm256_sub_epi32(bits, _mm256_set1_epi64x(std::int64_t{lowest_m_high_word} * 0x100000000));
  const __m256i exponent_field =
      _mm256_and_si256(offset, _mm256_set1_epi64x(std::int64_t{-0x100000} * 0x100000000));
  const __m256i exponent =
      _mm256_permutevar8x32_epi32(_mm256_srai_epi32(offset, 20), _mm256_setr_epi32(1, 3, 5, 7, 1, 3, 5, 7));
  return {_mm256_cvtepi32_pd(_mm256_castsi256_si128(exponent)),
          _mm256_castsi256_pd(_mm256_sub_epi32(bits, exponent_field)), _mm256_srli_epi64(offset, 45)};
}
#endif

// The same of a positive x below the smallest normal number.
inline Scaled<OneValue> scaled_subnormal(double x) {
  Scaled<OneValue> parts = scaled(x * 0x1p+54);
  parts.exponent -= 54.0;
  return parts;
}

// x rounded to 26 bits: products of two such numbers are exact, as are those with what the rounding took off.
inline __m128d leading_half(__m128d x) {
  const __m128i half_unit = _mm_set_epi32(0, 0x4000000, 0, 0x4000000);
  const __m128i mask = _mm_set_epi32(-1, -0x8000000, -1, -0x8000000);
  return _mm_castsi128_pd(_mm_and_si128(_mm_add_epi64(_mm_castpd_si128(x), half_unit), mask));
}
inline double leading_half(double x) { return _mm_cvtsd_f64(leading_half(_mm_set_sd(x))); }

template <class Width>
struct CentreRow {
  typename Width::Real reciprocal, log_leading, log_trailing;
};

inline CentreRow<OneValue> centre_of(const Scaled<OneValue>& parts) {
  const LogCentre& row = log_centres[_mm_cvtsi128_si32(parts.interval) & 127];
  return {row.reciprocal, row.log_leading, row.log_trailing};
}

inline CentreRow<TwoLanes> centre_of(const Scaled<TwoLanes>& parts) {
  const LogCentre& row0 = log_centres[_mm_cvtsi128_si32(parts.interval) & 127];
  const LogCentre& row1 = log_centres[_mm_extract_epi16(parts.interval, 4) & 127];
  const __m128d first0 = _mm_load_pd(&row0.reciprocal);
  const __m128d first1 = _mm_load_pd(&row1.reciprocal);
  return {_mm_unpacklo_pd(first0, first1), _mm_unpackhi_pd(first0, first1),
          _mm_set_pd(row1.log_trailing, row0.log_trailing)};
}

#if defined(__AVX2__)
[[gnu::always_inline]] inline __m256d leading_half(__m256d x) {
  const __m256i half_unit = _mm256_set1_epi64x(0x4000000);
  const __m256i mask = _mm256_set1_epi64x(-0x8000000);
  return _mm256_castsi256_pd(_mm256_and_si256(_mm256_add_epi64(_mm256_castpd_si256(x), half_unit), mask));
}

[[gnu::always_inline]] inline CentreRow<FourLanes> centre_of(const Scaled<FourLanes>& parts) {
  const FourRows rows = rows_of(parts.interval);
  const LogCentre& row0 = log_centres[rows.first];
  const LogCentre& row1 = log_centres[rows.second];
  const LogCentre& row2 = log_centres[rows.third];
  const LogCentre& row3 = log_centres[rows.fourth];
  const __m256d first02 = both(&row0.reciprocal, &row2.reciprocal);
  const __m256d first13 = both(&row1.reciprocal, &row3.reciprocal);
  return {_mm256_unpacklo_pd(first02, first13), _mm256_unpackhi_pd(first02, first13),
          _mm256_set_pd(row3.log_trailing, row2.log_trailing, row1.log_trailing, row0.log_trailing)};
}
#endif

// ln(2^exponent m) = leading + (f_trailing + trailing) + (ln(1 + f) - f), where f = f_leading + f_trailing
// and leading contains f_leading. No step rounds but the last two, of f itself and of trailing: the products
// have at most 42 bits, and the terms of leading are multiples of 2^-42 below 2^10.
template <class Width>
struct LogParts {
  typename Width::Real leading, trailing, f, f_trailing, f_leading;
};

template <class Width>
[[gnu::always_inline]] inline LogParts<Width> log_parts(const Scaled<Width>& x) {
  using Real = typename Width::Real;
  const CentreRow<Width> centre = centre_of(x);
  const Real m_half = leading_half(x.m);
  const Real f_leading = m_half * centre.reciprocal - 1.0;
  const Real f_trailing = (x.m - m_half) * centre.reciprocal;
  return {(x.exponent * ln2_leading + centre.log_leading) + f_leading,
          x.exponent * ln2_trailing + centre.log_trailing, f_leading + f_trailing, f_trailing, f_leading};
}

// ln(2^exponent m): the series of ln(1 + f), |f| < 2^-7.9, to f^7 (the first term left out is below 2^-58 of
// f).
template <class Width>
[[gnu::always_inline]] inline typename Width::Real log_of_scaled(const Scaled<Width>& x) {
  using Real = typename Width::Real;
  const LogParts<Width> parts = log_parts(x);
  const Real f = parts.f;
  const Real f2 = f * f;
  const Real series =
      ((-0.5 + f * (1.0 / 3)) + f2 * (-0.25 + f * (1.0 / 5))) + (f2 * f2) * (-1.0 / 6 + f * (1.0 / 7));
  return parts.leading + ((parts.f_trailing + parts.trailing) + f2 * series);
}

// The answers for all arguments, in particular those outside the ranges below.
KESTRAN_SSE_CALL double exponential_of_any(double x);
__m128d exponential_of_any(__m128d x);
KESTRAN_SSE_CALL double log_of_any(double x);
__m128d log_of_any(__m128d x);

constexpr double smallest_normal = 0x1p-1022;
constexpr double largest_finite = 0x1.fffffffffffffp+1023;

}  // namespace elementary

// __builtin_expect keeps the ordinary arguments on the straight path.
inline double exponential(double x) {
  const bool in_range = std::fabs(x) <= elementary::exponential_safe_limit;
  if (__builtin_expect(!in_range, 0)) return elementary::exponential_of_any(x);
  return elementary::exponential_in_range<elementary::OneValue>(x);
}

inline __m128d exponential(__m128d x) {
  const __m128d size = _mm_andnot_pd(_mm_set1_pd(-0.0), x);
  const __m128d in_range = _mm_cmple_pd(size, _mm_set1_pd(elementary::exponential_safe_limit));
  if (__builtin_expect(_mm_movemask_pd(in_range) != 3, 0)) return elementary::exponential_of_any(x);
  return elementary::exponential_in_range<elementary::TwoLanes>(x);
}

inline double natural_log(double x) {
  const bool usual = x >= elementary::smallest_normal && x <= elementary::largest_finite;
  if (__builtin_expect(!usual, 0)) return elementary::log_of_any(x);
  return elementary::log_of_scaled(elementary::scaled(x));
}

inline __m128d natural_log(__m128d x) {
  const __m128d usual = _mm_and_pd(_mm_cmpge_pd(x, _mm_set1_pd(elementary::smallest_normal)),
                                   _mm_cmple_pd(x, _mm_set1_pd(elementary::largest_finite)));
  if (__builtin_expect(_mm_movemask_pd(usual) != 3, 0)) return elementary::log_of_any(x);
  return elementary::log_of_scaled(elementary::scaled(x));
}

#if defined(__AVX2__)
// The rare lanes go through the pairs' function, which is not compiled for AVX2.
template <class OfPair>
[[gnu::always_inline]] inline __m256d pair_by_pair(__m256d x, OfPair of_pair) {
  const __m128d low = of_pair(_mm256_castpd256_pd128(x));
  return _mm256_insertf128_pd(_mm256_castpd128_pd256(low), of_pair(_mm256_extractf128_pd(x, 1)), 1);
}

[[gnu::always_inline]] inline __m256d exponential(__m256d x) {
  const __m256d size = _mm256_andnot_pd(_mm256_set1_pd(-0.0), x);
  const __m256d in_range =
      _mm256_cmp_pd(size, _mm256_set1_pd(elementary::exponential_safe_limit), _CMP_LE_OQ);
  if (__builtin_expect(_mm256_movemask_pd(in_range) != 15, 0))
    return pair_by_pair(
        x, [](__m128d pair) __attribute__((always_inline)) { return elementary::exponential_of_any(pair); });
  return elementary::exponential_in_range<elementary::FourLanes>(x);
}

[[gnu::always_inline]] inline __m256d natural_log(__m256d x) {
  const __m256d usual =
      _mm256_and_pd(_mm256_cmp_pd(x, _mm256_set1_pd(elementary::smallest_normal), _CMP_GE_OQ),
                    _mm256_cmp_pd(x, _mm256_set1_pd(elementary::largest_finite), _CMP_LE_OQ));
  if (__builtin_expect(_mm256_movemask_pd(usual) != 15, 0))
    return pair_by_pair(
        x, [](__m128d pair) __attribute__((always_inline)) { return elementary::log_of_any(pair); });
  return elementary::log_of_scaled(elementary::scaled(x));
}
#endif

}  // namespace kestran
