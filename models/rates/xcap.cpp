#include "models/rates/xcap.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numerics/arrays.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

__m128d both(double x) { return _mm_set1_pd(x); }

__m128d select(__m128d condition, __m128d when_true, __m128d when_false) {
  return _mm_or_pd(_mm_and_pd(condition, when_true), _mm_andnot_pd(condition, when_false));
}

// The polynomial that turns the density at x into the tail beyond |x|, as in cnorm.
__m128d tail_polynomial(__m128d x) {
  const __m128d magnitude = _mm_andnot_pd(both(-0.0), x);
  const __m128d t = both(1.0) / (both(1.0) + both(0.2316419) * magnitude);
  const __m128d inner = both(1.781477937) + t * (both(-1.821255978) + t * both(1.330274429));
  return t * (both(0.31938153) + t * (both(-0.356563782) + t * inner));
}

// N(x) or N(-x) times `amount` from the tail beyond |x| times `amount`.
__m128d amount_below(__m128d x, __m128d amount, __m128d tail) {
  return select(_mm_cmpge_pd(x, both(0.0)), amount - tail, tail);
}

// value[k] = the strip's value at factor[k] = e^log_factor[k]; `nodes` is even.
void strip_values(const CapOption& strip, const double* log_factor, const double* factor, int nodes,
                  double* value) {
  const bool is_cap = strip.OptType < 3;
  const __m128d K = both(strip.CfStrike);
  std::fill_n(value, nodes, 0.0);
  double Qsum = 0.0;
  for (int i = 0; i < strip.n; ++i) {
    const double tau = strip.ExpDays[i] - strip.T;
    const double forward_rate = (strip.IntRt[i] * strip.ExpDays[i] - strip.r * strip.T) / tau;
    const __m128d weight = both(strip.Qty[i] * exponential(-forward_rate * tau));
    const __m128d deviation = both(strip.Vol[i] * std::sqrt(tau));
    const __m128d per_deviation = both(1.0) / deviation;
    const __m128d moneyness =
        both(natural_log(strip.Price[i] / strip.CfStrike) + strip.Vol[i] * strip.Vol[i] / 2.0 * tau);
    for (int k = 0; k < nodes; k += 2) {
      const __m128d F = _mm_loadu_pd(factor + k) * both(strip.Price[i]);
      const __m128d d1 = (moneyness + _mm_loadu_pd(log_factor + k)) * per_deviation;
      const __m128d d2 = d1 - deviation;
      // F n(d1) = K n(d2), so one density serves both normals; cnorm's divisor is a root of 2 pi to ten
      // digits.
      const __m128d density = F * exponential(d1 * d1 * both(-0.5)) / both(2.506628275);
      const __m128d F_tail = density * tail_polynomial(d1);
      const __m128d K_tail = density * tail_polynomial(d2);
      const __m128d option = is_cap ? amount_below(d1, F, F_tail) - amount_below(d2, K, K_tail)
                                    : amount_below(-d2, K, K_tail) - amount_below(-d1, F, F_tail);
      _mm_storeu_pd(value + k, _mm_loadu_pd(value + k) + weight * option);
    }
    Qsum += strip.Qty[i];
  }
  for (int k = 0; k < nodes; ++k) value[k] /= Qsum;
}

// The mean of x[0..N] under the binomial distribution with up-probability p, which lies in 0 .. 1. The
// weights follow from the largest one outwards, relative to it, so that rounding stays far below 1e-12 for
// any N.
double binomial_mean(const double* x, int N, double p) {
  const double odds = p / (1.0 - p);
  const int top = std::min(N, static_cast<int>((N + 1) * p));
  double total = x[top];
  double weight_sum = 1.0;
  double weight = 1.0;
  for (int k = top; k < N; ++k) {
    weight *= (N - k) / (k + 1.0) * odds;
    weight_sum += weight;
    total += weight * x[k + 1];
  }
  weight = 1.0;
  for (int k = top; k > 0; --k) {
    weight *= k / ((N - k + 1.0) * odds);
    weight_sum += weight;
    total += weight * x[k - 1];
  }
  return total / weight_sum;
}

// Results 1, 2, 5 and 11 + k with the move h. `input` has room for the strip.
double bumped_array_result(const CapOption& option, int RetType, double h, double* input) {
  const int n = option.n;
  const double P0 = xcap_tree(option);
  CapOption moved = option;
  if (RetType == 5) {
    for (int i = 0; i < n; ++i) input[i] = option.ExpDays[i] - h;
    moved.ExpDays = input;
    moved.T -= h;
    return (xcap_tree(moved) - P0) / h;
  }
  moved.Price = input;
  if (RetType >= 11) {
    const int k = RetType - 11;
    std::copy(option.Price, option.Price + n, input);
    input[k] *= 1.001;
    return (xcap_tree(moved) - P0) / (option.Price[k] * 0.001);
  }
  for (int i = 0; i < n; ++i) input[i] = option.Price[i] + h;
  const double P1 = xcap_tree(moved);
  if (RetType == 1) return (P1 - P0) / h;
  for (int i = 0; i < n; ++i) input[i] = option.Price[i] - h;
  return (P1 + xcap_tree(moved) - 2.0 * P0) / (h * h);
}

}  // namespace

double capfloor_strip_value(double m, const double* Price, const double* IntRt, const double* Vol,
                            const double* ExpDays, const double* Qty, double T, double CfStrike, double r,
                            int n, bool is_cap) {
  CapOption strip;
  strip.Price = Price;
  strip.IntRt = IntRt;
  strip.Vol = Vol;
  strip.ExpDays = ExpDays;
  strip.Qty = Qty;
  strip.n = n;
  strip.T = T;
  strip.CfStrike = CfStrike;
  strip.r = r;
  strip.OptType = is_cap ? 1 : 3;
  const double log_factor[2] = {natural_log(m), natural_log(m)};
  const double factor[2] = {m, m};
  double value[2];
  strip_values(strip, log_factor, factor, 2, value);
  return value[0];
}

double xcap_tree(const CapOption& option) {
  const int N = option.N;
  if (N < 1 || N > xcap_most_steps) return not_a_number;
  const double step = option.T / N;
  const double v = option.StripVol * option.StripVol * step;
  const double nu = (option.r - option.r_carry) / (option.StripVol * option.StripVol) - 0.5;
  const double dx = std::sqrt(nu * nu * v * v + v);
  const double p = 0.5 * (1.0 + nu * v / dx);
  if (!(v > 0.0 && p >= 0.0 && p <= 1.0)) return not_a_number;

  const int nodes = N / 2 * 2 + 2;  // N + 1 made even
  double* log_factor = dvector(0, nodes - 1);
  double* factor = dvector(0, nodes - 1);
  double* value = dvector(0, nodes - 1);
  double price = not_a_number;
  if (log_factor && factor && value) {
    for (int k = 0; k < nodes; ++k) log_factor[k] = (2 * k - N) * dx;
    for (int k = 0; k < nodes; k += 2) _mm_storeu_pd(factor + k, exponential(_mm_loadu_pd(log_factor + k)));
    strip_values(option, log_factor, factor, nodes, value);
    const double sign = option.OptType & 1 ? 1.0 : -1.0;
    for (int k = 0; k <= N; ++k) value[k] = positive_part(sign * (value[k] - option.CompStrike));
    price = binomial_mean(value, N, p) * exponential(-option.r * option.T);
  }
  free_dvector(value, 0, nodes - 1);
  free_dvector(factor, 0, nodes - 1);
  free_dvector(log_factor, 0, nodes - 1);
  return price;
}

double xcap_greeks(const CapOption& option, int RetType) {
  CapOption moved = option;
  double h = 0.0;
  switch (RetType) {
    case 0:
      return xcap_tree(option);
    case 3:
      moved.StripVol *= 1.001;
      return (xcap_tree(moved) - xcap_tree(option)) / (option.StripVol * 0.001);
    case 4:
      if (option.r == 0.0) return 0.0;
      moved.r *= 1.001;
      moved.r_carry *= 1.001;
      return (xcap_tree(moved) - xcap_tree(option)) / (option.r * 0.001);
    case 1:
    case 2:
      for (int i = 0; i < option.n; ++i) h += 0.001 * option.Price[i];
      h /= option.n;
      break;
    case 5:
      if (option.T <= 1e-6) return 0.0;
      h = option.T > 0.001 ? 0.001 : 1e-6;
      break;
    default:
      if (RetType < 11 || RetType - 11 >= option.n) return 0.0;
  }

  double* input = dvector(0, option.n - 1);
  if (!input) return not_a_number;
  const double result = bumped_array_result(option, RetType, h, input);
  free_dvector(input, 0, option.n - 1);
  return result;
}

}  // namespace kestran
