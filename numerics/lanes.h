// Doubles side by side: two in SSE2, four where a file is compiled for AVX2. A kernel is written once as a
// template of elementary::TwoLanes and elementary::FourLanes and compiled for both; nothing in it is fused
// and every lane goes through the same operations in the same order, so each has the bits of the others and
// of one value.
#pragma once

#include <immintrin.h>

#include <cstddef>

#include "numerics/elementary.h"

namespace kestran {

/// How many lanes kernels are to use: 4 where the processor and the system have AVX2, else 2. The environment
/// variable KESTRAN_LANES lowers it, to 2, or to 1 for no kernel at all; it is read once. Always 2 in
/// WebAssembly.
int lanes();

/// Numbers some way apart: number k is values[k * stride]. With a stride of 0 all are the same.
struct Strided {
  const double* values;
  std::ptrdiff_t stride;
};

[[gnu::always_inline]] inline __m128d absolute(__m128d x) { return _mm_andnot_pd(_mm_set1_pd(-0.0), x); }
[[gnu::always_inline]] inline __m128d square_root(__m128d x) { return _mm_sqrt_pd(x); }
/// The greater of the two; the second where one is not a number.
[[gnu::always_inline]] inline __m128d greater(__m128d a, __m128d b) { return _mm_max_pd(a, b); }
/// The lesser of the two; the second where one is not a number.
[[gnu::always_inline]] inline __m128d lesser(__m128d a, __m128d b) { return _mm_min_pd(a, b); }
[[gnu::always_inline]] inline void store(double* to, __m128d x) { _mm_storeu_pd(to, x); }
[[gnu::always_inline]] inline double sum_of_lanes(__m128d x) {
  return _mm_cvtsd_f64(x) + _mm_cvtsd_f64(_mm_unpackhi_pd(x, x));
}
/// sum + x, pair after pair: whatever the width, the sums of the even and of the odd numbers.
[[gnu::always_inline]] inline __m128d sum_of_pairs(__m128d sum, __m128d x) { return sum + x; }
/// Bit i stands for lane i.
[[gnu::always_inline]] inline unsigned lanes_where(__m128d mask) {
  return static_cast<unsigned>(_mm_movemask_pd(mask));
}

/// Numbers k and on, one in each lane.
template <class Width>
typename Width::Real load(const Strided& from, std::size_t k);

/// Numbers that stand one after the other.
template <class Width>
typename Width::Real load(const double* from);

template <>
[[gnu::always_inline]] inline __m128d load<elementary::TwoLanes>(const double* from) {
  return _mm_loadu_pd(from);
}

template <>
[[gnu::always_inline]] inline __m128d load<elementary::TwoLanes>(const Strided& from, std::size_t k) {
  const double* at = from.values + static_cast<std::ptrdiff_t>(k) * from.stride;
  return from.stride == 1 ? _mm_loadu_pd(at) : _mm_set_pd(at[from.stride], at[0]);
}

#if defined(__AVX2__)
[[gnu::always_inline]] inline __m256d absolute(__m256d x) {
  return _mm256_andnot_pd(_mm256_set1_pd(-0.0), x);
}
[[gnu::always_inline]] inline __m256d square_root(__m256d x) { return _mm256_sqrt_pd(x); }
[[gnu::always_inline]] inline __m256d greater(__m256d a, __m256d b) { return _mm256_max_pd(a, b); }
[[gnu::always_inline]] inline __m256d lesser(__m256d a, __m256d b) { return _mm256_min_pd(a, b); }
[[gnu::always_inline]] inline void store(double* to, __m256d x) { _mm256_storeu_pd(to, x); }
[[gnu::always_inline]] inline __m128d sum_of_pairs(__m128d sum, __m256d x) {
  return sum + _mm256_castpd256_pd128(x) + _mm256_extractf128_pd(x, 1);
}
[[gnu::always_inline]] inline unsigned lanes_where(__m256d mask) {
  return static_cast<unsigned>(_mm256_movemask_pd(mask));
}

template <>
[[gnu::always_inline]] inline __m256d load<elementary::FourLanes>(const double* from) {
  return _mm256_loadu_pd(from);
}

template <>
[[gnu::always_inline]] inline __m256d load<elementary::FourLanes>(const Strided& from, std::size_t k) {
  const std::ptrdiff_t stride = from.stride;
  const double* at = from.values + static_cast<std::ptrdiff_t>(k) * stride;
  return stride == 1 ? _mm256_loadu_pd(at) : _mm256_set_pd(at[3 * stride], at[2 * stride], at[stride], at[0]);
}
#endif

}  // namespace kestran
