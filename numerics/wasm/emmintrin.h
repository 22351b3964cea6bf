// The part of SSE2 that the models use, in WebAssembly's vectors of 128 bits: the compiler has no header of
// this name for WebAssembly. Every operation rounds as that of SSE2 does; nothing is fused.
#pragma once

#include <wasm_simd128.h>

typedef double __m128d __attribute__((vector_size(16), aligned(16)));
typedef long long __m128i __attribute__((vector_size(16), aligned(16)));

#define KESTRAN_SSE2 [[gnu::always_inline]] static inline

KESTRAN_SSE2 v128_t kestran_vector(__m128d x) { return (v128_t)x; }
KESTRAN_SSE2 v128_t kestran_vector(__m128i x) { return (v128_t)x; }

// Reading, writing, taking apart and putting together.
KESTRAN_SSE2 __m128d _mm_setzero_pd() { return __m128d{0.0, 0.0}; }
KESTRAN_SSE2 __m128d _mm_set1_pd(double x) { return __m128d{x, x}; }
KESTRAN_SSE2 __m128d _mm_set_pd(double high, double low) { return __m128d{low, high}; }
KESTRAN_SSE2 __m128d _mm_set_sd(double low) { return __m128d{low, 0.0}; }
KESTRAN_SSE2 __m128i _mm_set_epi32(int i3, int i2, int i1, int i0) {
  return (__m128i)wasm_i32x4_make(i0, i1, i2, i3);
}
KESTRAN_SSE2 __m128d _mm_load_pd(const double* from) { return (__m128d)wasm_v128_load(from); }
KESTRAN_SSE2 __m128d _mm_loadu_pd(const double* from) { return (__m128d)wasm_v128_load(from); }
KESTRAN_SSE2 __m128d _mm_load_sd(const double* from) { return __m128d{*from, 0.0}; }
KESTRAN_SSE2 void _mm_storeu_pd(double* to, __m128d x) { wasm_v128_store(to, kestran_vector(x)); }
KESTRAN_SSE2 double _mm_cvtsd_f64(__m128d x) { return x[0]; }
KESTRAN_SSE2 int _mm_cvtsi128_si32(__m128i x) { return wasm_i32x4_extract_lane(kestran_vector(x), 0); }
#define _mm_extract_epi16(x, place) static_cast<int>(wasm_u16x8_extract_lane(kestran_vector(x), place))
KESTRAN_SSE2 __m128d _mm_castsi128_pd(__m128i x) { return (__m128d)x; }
KESTRAN_SSE2 __m128i _mm_castpd_si128(__m128d x) { return (__m128i)x; }
KESTRAN_SSE2 __m128d _mm_unpacklo_pd(__m128d a, __m128d b) { return __m128d{a[0], b[0]}; }
KESTRAN_SSE2 __m128d _mm_unpackhi_pd(__m128d a, __m128d b) { return __m128d{a[1], b[1]}; }
#define _MM_SHUFFLE(i3, i2, i1, i0) ((i3) << 6 | (i2) << 4 | (i1) << 2 | (i0))
#define _mm_shuffle_epi32(x, places)                                                                \
  ((__m128i)wasm_i32x4_shuffle(kestran_vector(x), kestran_vector(x), (places)&3, (places) >> 2 & 3, \
                               (places) >> 4 & 3, (places) >> 6 & 3))

// Arithmetic.
KESTRAN_SSE2 __m128d _mm_add_pd(__m128d a, __m128d b) { return a + b; }
KESTRAN_SSE2 __m128d _mm_sub_pd(__m128d a, __m128d b) { return a - b; }
KESTRAN_SSE2 __m128d _mm_mul_pd(__m128d a, __m128d b) { return a * b; }
KESTRAN_SSE2 __m128d _mm_sqrt_pd(__m128d x) { return (__m128d)wasm_f64x2_sqrt(kestran_vector(x)); }
// The second where the numbers are equal or one is NaN.
KESTRAN_SSE2 __m128d _mm_max_pd(__m128d a, __m128d b) {
  return (__m128d)wasm_f64x2_pmax(kestran_vector(b), kestran_vector(a));
}
KESTRAN_SSE2 __m128d _mm_min_pd(__m128d a, __m128d b) {
  return (__m128d)wasm_f64x2_pmin(kestran_vector(b), kestran_vector(a));
}
KESTRAN_SSE2 __m128d _mm_cvtepi32_pd(__m128i x) {
  return (__m128d)wasm_f64x2_convert_low_i32x4(kestran_vector(x));
}
KESTRAN_SSE2 __m128i _mm_add_epi64(__m128i a, __m128i b) { return a + b; }
KESTRAN_SSE2 __m128i _mm_sub_epi32(__m128i a, __m128i b) {
  return (__m128i)wasm_i32x4_sub(kestran_vector(a), kestran_vector(b));
}
KESTRAN_SSE2 __m128i _mm_slli_epi64(__m128i x, int count) {
  return (__m128i)wasm_i64x2_shl(kestran_vector(x), static_cast<unsigned>(count));
}
KESTRAN_SSE2 __m128i _mm_srli_epi64(__m128i x, int count) {
  return (__m128i)wasm_u64x2_shr(kestran_vector(x), static_cast<unsigned>(count));
}
KESTRAN_SSE2 __m128i _mm_srai_epi32(__m128i x, int count) {
  return (__m128i)wasm_i32x4_shr(kestran_vector(x), static_cast<unsigned>(count));
}

// Bits and comparisons, which give all ones where they hold.
KESTRAN_SSE2 __m128d _mm_and_pd(__m128d a, __m128d b) { return (__m128d)((__m128i)a & (__m128i)b); }
KESTRAN_SSE2 __m128d _mm_or_pd(__m128d a, __m128d b) { return (__m128d)((__m128i)a | (__m128i)b); }
KESTRAN_SSE2 __m128d _mm_andnot_pd(__m128d a, __m128d b) { return (__m128d)(~(__m128i)a & (__m128i)b); }
KESTRAN_SSE2 __m128i _mm_and_si128(__m128i a, __m128i b) { return a & b; }
KESTRAN_SSE2 __m128d _mm_cmpgt_pd(__m128d a, __m128d b) { return (__m128d)(a > b); }
KESTRAN_SSE2 __m128d _mm_cmpge_pd(__m128d a, __m128d b) { return (__m128d)(a >= b); }
KESTRAN_SSE2 __m128d _mm_cmple_pd(__m128d a, __m128d b) { return (__m128d)(a <= b); }
KESTRAN_SSE2 __m128d _mm_cmpneq_pd(__m128d a, __m128d b) { return (__m128d)(a != b); }
KESTRAN_SSE2 int _mm_movemask_pd(__m128d x) {
  return static_cast<int>(wasm_i64x2_bitmask(kestran_vector(x)));
}

// WebAssembly always rounds to nearest, keeps subnormal numbers and never traps.
KESTRAN_SSE2 unsigned _mm_getcsr() { return 0x1F80; }
KESTRAN_SSE2 void _mm_setcsr(unsigned) {}

#undef KESTRAN_SSE2
