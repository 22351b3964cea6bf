#include "numerics/elementary.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace kestran {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

// e^x = 2^(count/32) e^remainder with |remainder| <= ln 2 / 64. The leading part of ln 2 / 32 has 36 bits, so
// its product with any count in use (16 bits) is exact; the trailing part completes it to 89 bits.
constexpr double thirty_two_over_ln2 = 0x1.71547652b82fep+5;
constexpr double ln2_over_32_leading = 0x1.62e42fefap-6;
constexpr double ln2_over_32_trailing = 0x1.cf79abc9e3b3ap-45;

// Adding this leaves the nearest whole number in the low bits of the sum.
constexpr double whole_number_shift = 0x1.8p+52;

// Arguments up to this size give results, and partial results, well inside the normal range.
constexpr double exponential_safe_limit = 700.0;

// The arithmetic below is written once for one value and for two lanes, so both forms give the same bits.
struct OneValue {
  using Real = double;
};
struct TwoLanes {
  using Real = __m128d;
};

struct PowerOfTwo {
  double value;            // 2^(j/32) rounded to double
  double relative_excess;  // exact 2^(j/32) / value - 1
};

// Worked in 300-bit arithmetic for j = 0 ... 31.
alignas(16) constexpr PowerOfTwo powers_of_two[32] = {
    {0x1p+0, 0x0p+0},
    {0x1.059b0d3158574p+0, 0x1.cd2523567f613p-55},
    {0x1.0b5586cf9890fp+0, 0x1.79aa65d837b6dp-54},
    {0x1.11301d0125b51p+0, -0x1.556522a2fbd0ep-54},
    {0x1.172b83c7d517bp+0, -0x1.01b15eaa59348p-55},
    {0x1.1d4873168b9aap+0, 0x1.aecf73e3a2f6p-54},
    {0x1.2387a6e756238p+0, 0x1.68efde3a8a894p-54},
    {0x1.29e9df51fdee1p+0, 0x1.2f7e16d09ab31p-55},
    {0x1.306fe0a31b715p+0, 0x1.34d754db0abb6p-55},
    {0x1.371a7373aa9cbp+0, -0x1.24aedcc4b5068p-54},
    {0x1.3dea64c123422p+0, 0x1.59f48a72a4c6dp-55},
    {0x1.44e086061892dp+0, 0x1.363ed60c2ac11p-59},
    {0x1.4bfdad5362a27p+0, 0x1.690cebb7aafbp-56},
    {0x1.5342b569d4f82p+0, -0x1.8dec6bd0f385fp-56},
    {0x1.5ab07dd485429p+0, 0x1.063e1e21c5409p-54},
    {0x1.6247eb03a5585p+0, -0x1.c33c53bef4da8p-55},
    {0x1.6a09e667f3bcdp+0, -0x1.3b3efbf5e2228p-54},
    {0x1.71f75e8ec5f74p+0, -0x1.81f647e5a3ecfp-56},
    {0x1.7a11473eb0187p+0, -0x1.b32dcb94da51dp-56},
    {0x1.82589994cce13p+0, -0x1.369b6f13b3734p-54},
    {0x1.8ace5422aa0dbp+0, 0x1.db72fc1f0eab4p-55},
    {0x1.93737b0cdc5e5p+0, -0x1.da9b88b6c1e29p-58},
    {0x1.9c49182a3f09p+0, 0x1.1affc2b91ce27p-56},
    {0x1.a5503b23e255dp+0, -0x1.1bbd1d3bcbb15p-54},
    {0x1.ae89f995ad3adp+0, 0x1.c1a7792cb3387p-55},
    {0x1.b7f76f2fb5e47p+0, -0x1.8d6f438ad9334p-57},
    {0x1.c199bdd85529cp+0, 0x1.36eae30af0cb3p-56},
    {0x1.cb720dcef9069p+0, 0x1.76b2c6c921968p-57},
    {0x1.d5818dcfba487p+0, 0x1.4a385a63d07a7p-56},
    {0x1.dfc97337b9b5fp+0, -0x1.2d52107b43e1fp-55},
    {0x1.ea4afa2a490dap+0, -0x1.ff7128fd391fp-55},
    {0x1.f50765b6e454p+0, 0x1.a64a931d185eep-55},
};

// ln 2 to the nearest multiple of 2^-42, and the rest.
constexpr double ln2_leading = 0x1.62e42fefa38p-1;
constexpr double ln2_trailing = 0x1.ef35793c7673p-45;

struct LogCentre {
  double reciprocal;    // 1 / centre to 9 binary places
  double log_leading;   // -ln(reciprocal) to the nearest multiple of 2^-42
  double log_trailing;  // the rest of -ln(reciprocal)
};

// Centres 46/64, 47/64 ... 63/64, then 32/32, 33/32 ... 45/32; the logarithms were worked in 300-bit
// arithmetic. The interval about 1 has reciprocal 1 and logarithm 0, so nothing cancels there.
constexpr LogCentre log_centres[32] = {
    {0x1.64p+0, -0x1.51aad872ep-2, 0x1.f4bd8db0a7cc1p-44},
    {0x1.5c8p+0, -0x1.3bdd24eb15p-2, 0x1.257b4970e6ed9p-44},
    {0x1.558p+0, -0x1.27161913f8p-2, -0x1.4f4f1f61564b4p-44},
    {0x1.4e8p+0, -0x1.11e0e2dadap-2, 0x1.a47f88fcce5bap-45},
    {0x1.478p+0, -0x1.f871b28956p-3, 0x1.f75fd6a526efep-44},
    {0x1.418p+0, -0x1.d293581b6cp-3, 0x1.83270128aaa5fp-44},
    {0x1.3bp+0, -0x1.a8becfc882p-3, -0x1.e3185cf21b9cfp-44},
    {0x1.35p+0, -0x1.815c0a1436p-3, 0x1.02a52f9201ce8p-44},
    {0x1.2f8p+0, -0x1.5c94007598p-3, 0x1.a8d948cd23322p-44},
    {0x1.2ap+0, -0x1.371fc201e8p-3, -0x1.ee8779b2d8abcp-44},
    {0x1.248p+0, -0x1.10f8e42254p-3, 0x1.93b3843396307p-45},
    {0x1.1f8p+0, -0x1.db5270187cp-4, -0x1.9277856ae181fp-44},
    {0x1.1a8p+0, -0x1.9375e55594p-4, -0x1.eddc37380c364p-44},
    {0x1.158p+0, -0x1.4a50d3aa1cp-4, 0x1.f7fe1308973e2p-45},
    {0x1.11p+0, -0x1.075983599p-4, 0x1.b8ecfe4b59987p-44},
    {0x1.0c8p+0, -0x1.868a83084p-5, 0x1.2623a134ac693p-46},
    {0x1.088p+0, -0x1.0b94f7c198p-5, 0x1.e89896f022783p-45},
    {0x1.04p+0, -0x1.fc0a8b0fcp-7, -0x1.f1e7cf6d3a69cp-50},
    {0x1p+0, 0x0p+0, 0x0p+0},
    {0x1.fp-1, 0x1.0415d89e78p-5, -0x1.dddc7f461c516p-44},
    {0x1.e2p-1, 0x1.eea31c0068p-5, 0x1.c3dd83606d891p-44},
    {0x1.d4p-1, 0x1.700d30aeacp-4, 0x1.c1e8da99ded32p-49},
    {0x1.c7p-1, 0x1.e3707ee304p-4, 0x1.0f684e6766abdp-45},
    {0x1.bbp-1, 0x1.28753bc11ap-3, 0x1.7494e359302e6p-44},
    {0x1.afp-1, 0x1.60b3100b0ap-3, -0x1.71456c988f814p-44},
    {0x1.a4p-1, 0x1.95a5adcf7p-3, 0x1.7f22858a0ff6fp-47},
    {0x1.9ap-1, 0x1.c6ffbc6fp-3, 0x1.ee138d3a69d43p-44},
    {0x1.9p-1, 0x1.f991c6cb3cp-3, -0x1.90d04cd7cc834p-44},
    {0x1.86p-1, 0x1.16b5ccbadp-2, -0x1.23299042d74bfp-44},
    {0x1.7dp-1, 0x1.2e9e2bce12p-2, 0x1.4300c128d1dc2p-45},
    {0x1.74p-1, 0x1.4718dc271cp-2, 0x1.06c18fb4c14c5p-44},
    {0x1.6cp-1, 0x1.5d5bddf596p-2, -0x1.a0b2a08a465dcp-47},
};

std::int32_t high_word(double x) {
  return _mm_cvtsi128_si32(_mm_shuffle_epi32(_mm_castpd_si128(_mm_set_sd(x)), 1));
}

// x with its last 27 bits cleared: products of two such numbers are exact.
constexpr std::uint64_t leading_half_mask = 0xfffffffff8000000u;
double leading_half(double x) {
  const __m128i mask = _mm_set_epi64x(0, static_cast<std::int64_t>(leading_half_mask));
  return _mm_cvtsd_f64(_mm_and_pd(_mm_set_sd(x), _mm_castsi128_pd(mask)));
}

// The table row for count mod 32, where shifted = whole_number_shift + count, with its value scaled by
// 2^floor(count / 32).
template <class Width>
struct ScaledPower {
  typename Width::Real value, relative_excess;
};

__m128d scaled_by_count(__m128d value, __m128i count) {
  const __m128i exponent_field = _mm_slli_epi64(_mm_srli_epi64(count, 5), 52);
  return _mm_castsi128_pd(_mm_add_epi64(_mm_castpd_si128(value), exponent_field));
}

ScaledPower<OneValue> scaled_power_of_two(double shifted) {
  const __m128i count = _mm_castpd_si128(_mm_set_sd(shifted));
  const PowerOfTwo& row = powers_of_two[_mm_cvtsi128_si32(count) & 31];
  return {_mm_cvtsd_f64(scaled_by_count(_mm_load_sd(&row.value), count)), row.relative_excess};
}

ScaledPower<TwoLanes> scaled_power_of_two(__m128d shifted) {
  const __m128i count = _mm_castpd_si128(shifted);
  const __m128d row0 = _mm_load_pd(&powers_of_two[_mm_cvtsi128_si32(count) & 31].value);
  const __m128d row1 = _mm_load_pd(&powers_of_two[_mm_extract_epi16(count, 4) & 31].value);
  return {scaled_by_count(_mm_unpacklo_pd(row0, row1), count), _mm_unpackhi_pd(row0, row1)};
}

template <class Width>
struct ReducedArgument {
  typename Width::Real remainder, shifted;
};

template <class Width>
ReducedArgument<Width> reduced(typename Width::Real x) {
  using Real = typename Width::Real;
  const Real shifted = x * thirty_two_over_ln2 + whole_number_shift;
  const Real count = shifted - whole_number_shift;
  return {(x - count * ln2_over_32_leading) - count * ln2_over_32_trailing, shifted};
}

// 2^(count / 32) e^remainder: Taylor's series to r^6 (the first term left out is below 2^-58).
template <class Width>
typename Width::Real recombined(const ReducedArgument<Width>& argument) {
  using Real = typename Width::Real;
  const Real r = argument.remainder;
  const ScaledPower<Width> power_of_two = scaled_power_of_two(argument.shifted);
  const Real r2 = r * r;
  const Real tail = (0.5 + r * (1.0 / 6)) + r2 * ((1.0 / 24 + r * (1.0 / 120)) + r2 * (1.0 / 720));
  return power_of_two.value + power_of_two.value * ((power_of_two.relative_excess + r) + r2 * tail);
}

// e^(x + correction), |correction| < 2^-14, where the result may leave the normal range: it is worked 2^64
// times nearer to 1 and scaled last, so that it overflows or is rounded to a subnormal once.
double exponential_near_range_ends(double x, double correction) {
  if (x > 710.0) return infinity;
  if (x < -746.0) return 0.0;
  ReducedArgument<OneValue> argument = reduced<OneValue>(x);
  argument.remainder += correction;
  argument.shifted += x > 0.0 ? -64.0 * 32.0 : 64.0 * 32.0;
  return recombined(argument) * (x > 0.0 ? 0x1p+64 : 0x1p-64);
}

// x = 2^exponent m with m in [91/128, 91/64).
template <class Width>
struct Scaled {
  typename Width::Real exponent, m;
};

// The upper 32 bits of 91/128; the lower 32 are zero.
constexpr std::int32_t lowest_m_high_word = 0x3fe6c000;

Scaled<TwoLanes> scaled(__m128d x) {
  const __m128i bits = _mm_castpd_si128(x);
  const __m128i offset = _mm_sub_epi32(bits, _mm_set_epi32(lowest_m_high_word, 0, lowest_m_high_word, 0));
  const __m128i exponent_field = _mm_and_si128(offset, _mm_set_epi32(-0x100000, 0, -0x100000, 0));
  const __m128i exponent = _mm_shuffle_epi32(_mm_srai_epi32(offset, 20), _MM_SHUFFLE(3, 3, 3, 1));
  return {_mm_cvtepi32_pd(exponent), _mm_castsi128_pd(_mm_sub_epi32(bits, exponent_field))};
}

Scaled<OneValue> scaled(double x) {
  const Scaled<TwoLanes> parts = scaled(_mm_set_sd(x));
  return {_mm_cvtsd_f64(parts.exponent), _mm_cvtsd_f64(parts.m)};
}

// ln(2^extra_exponent x) for normal positive x. With m = 1 + f and s = f / (2 + f), ln(1 + f) is
// 2s + 2/3 s^3 + 2/5 s^5 + ... = f - f^2/2 + s (f^2/2 + z c(z)), z = s^2; the small corrections are added
// first. c(z) is the minimax polynomial of its degree over the z in use (Remez, 200-bit arithmetic), error
// below 2^-58 of the logarithm.
template <class Width>
typename Width::Real log_of_normal(typename Width::Real x, double extra_exponent) {
  using Real = typename Width::Real;
  const Scaled<Width> parts = scaled(x);
  const Real exponent = parts.exponent + extra_exponent;
  const Real f = parts.m - 1.0;
  const Real s = f / (parts.m + 1.0);
  const Real z = s * s;
  const Real z2 = z * z;
  const Real low_terms = (0x1.555555555559dp-1 + z * 0x1.999999997bc16p-2) +
                         z2 * (0x1.249249460aff8p-2 + z * 0x1.c71c4e6536667p-3);
  const Real high_terms = (0x1.74670bd958251p-3 + z * 0x1.398bdf86bdcaep-3) + z2 * 0x1.2fec4ea72fc8bp-3;
  const Real series = z * (low_terms + (z2 * z2) * high_terms);
  const Real half_square = f * f * 0.5;
  const Real small = s * (half_square + series) + exponent * ln2_trailing;
  return exponent * ln2_leading + (f - (half_square - small));
}

// leading + trailing = ln(2^extra_exponent x) for normal positive x, with an error near 2^-65 of it.
struct LongLog {
  double leading, trailing;
};

// m reciprocal = 1 + f + f_rest; then the series of ln(1 + f) to f^11 (the first term left out is below 2^-69
// of f), its first two terms summed without rounding (Dekker, 1971).
LongLog long_log_of_normal(double x, double extra_exponent) {
  const Scaled<OneValue> parts = scaled(x);
  const LogCentre& centre = log_centres[((high_word(x) - lowest_m_high_word) >> 15) & 31];
  const double exponent = parts.exponent + extra_exponent;
  const double m_half = leading_half(parts.m);
  const double f_leading = m_half * centre.reciprocal - 1.0;
  const double f_trailing = (parts.m - m_half) * centre.reciprocal;
  const double f = f_leading + f_trailing;
  const double f_rest = (f_leading - f) + f_trailing;

  const double f_half = leading_half(f);
  const double half_square = f_half * f_half * 0.5;
  const double half_square_rest = (f - f_half) * (f + f_half) * 0.5;

  const double constants = exponent * ln2_leading + centre.log_leading;
  const double constants_rest = exponent * ln2_trailing + centre.log_trailing;
  const double sum = constants + f;
  const double sum_rest = (constants - sum) + f;
  const double head = sum - half_square;
  const double head_rest = (sum - head) - half_square;

  const double f2 = f * f;
  const double f4 = f2 * f2;
  const double low_terms = (1.0 / 3 - f * (1.0 / 4)) + f2 * (1.0 / 5 - f * (1.0 / 6));
  const double high_terms = (1.0 / 7 - f * (1.0 / 8)) + f2 * (1.0 / 9 - f * (1.0 / 10)) + f4 * (1.0 / 11);
  const double series = f * f2 * (low_terms + f4 * high_terms);

  const double tail =
      (sum_rest + head_rest) + (constants_rest + (f_rest - f * f_rest - half_square_rest)) + series;
  const double leading = head + tail;
  return {leading, (head - leading) + tail};
}

constexpr double smallest_normal = std::numeric_limits<double>::min();
constexpr double largest_finite = std::numeric_limits<double>::max();

double log_of_unusual(double x) {
  if (std::isnan(x) || x < 0.0) return not_a_number;
  if (x == 0.0) return -infinity;
  if (x > largest_finite) return infinity;
  return log_of_normal<OneValue>(x * 0x1p+54, -54.0);
}

// Positive finite base other than 1.
double power_of_positive(double base, double exponent) {
  // Even the bases next to 1 overflow or vanish from here on.
  if (std::fabs(exponent) >= 0x1p+64) return (base > 1.0) == (exponent > 0.0) ? infinity : 0.0;
  const bool subnormal = base < smallest_normal;
  const LongLog log_base = long_log_of_normal(subnormal ? base * 0x1p+54 : base, subnormal ? -54.0 : 0.0);
  const double exponent_half = leading_half(exponent);
  const double log_half = leading_half(log_base.leading);
  const double product = exponent_half * log_half;
  const double product_rest =
      (exponent - exponent_half) * log_half + exponent * ((log_base.leading - log_half) + log_base.trailing);
  if (std::fabs(product) > exponential_safe_limit) return exponential_near_range_ends(product, product_rest);
  ReducedArgument<OneValue> argument = reduced<OneValue>(product);
  argument.remainder += product_rest;
  return recombined(argument);
}

bool is_whole(double x) { return std::floor(x) == x; }
bool is_odd(double x) { return is_whole(x) && !is_whole(0.5 * x); }

// Zero, infinite or negative base, or an infinite exponent; neither is NaN.
double power_of_unusual(double base, double exponent) {
  const double size = std::fabs(base);
  if (std::isinf(exponent)) {
    if (size == 1.0) return 1.0;
    return (size > 1.0) == (exponent > 0.0) ? infinity : 0.0;
  }
  const bool endless = size == 0.0 || size > largest_finite;
  if (base < 0.0 && !endless && !is_whole(exponent)) return not_a_number;
  double result = 1.0;
  if (endless) {
    result = (size > 1.0) == (exponent > 0.0) ? infinity : 0.0;
  } else if (size != 1.0) {
    result = power_of_positive(size, exponent);
  }
  return std::signbit(base) && is_odd(exponent) ? -result : result;
}

}  // namespace

double exponential(double x) {
  if (std::fabs(x) <= exponential_safe_limit) {
    return recombined(reduced<OneValue>(x));
  }
  return std::isnan(x) ? not_a_number : exponential_near_range_ends(x, 0.0);
}

__m128d exponential(__m128d x) {
  const __m128d size = _mm_andnot_pd(_mm_set1_pd(-0.0), x);
  if (_mm_movemask_pd(_mm_cmple_pd(size, _mm_set1_pd(exponential_safe_limit))) == 3) {
    return recombined(reduced<TwoLanes>(x));
  }
  return _mm_set_pd(exponential(_mm_cvtsd_f64(_mm_unpackhi_pd(x, x))), exponential(_mm_cvtsd_f64(x)));
}

double natural_log(double x) {
  if (!(x >= smallest_normal && x <= largest_finite)) return log_of_unusual(x);
  return log_of_normal<OneValue>(x, 0.0);
}

__m128d natural_log(__m128d x) {
  const __m128d usual =
      _mm_and_pd(_mm_cmpge_pd(x, _mm_set1_pd(smallest_normal)), _mm_cmple_pd(x, _mm_set1_pd(largest_finite)));
  if (_mm_movemask_pd(usual) == 3) {
    return log_of_normal<TwoLanes>(x, 0.0);
  }
  return _mm_set_pd(natural_log(_mm_cvtsd_f64(_mm_unpackhi_pd(x, x))), natural_log(_mm_cvtsd_f64(x)));
}

double power(double base, double exponent) {
  if (exponent == 0.0 || base == 1.0) return 1.0;
  if (std::isnan(base) || std::isnan(exponent)) return not_a_number;
  if (base > 0.0 && base <= largest_finite) return power_of_positive(base, exponent);
  return power_of_unusual(base, exponent);
}

}  // namespace kestran
