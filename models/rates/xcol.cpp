#include "models/rates/xcol.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/bumps.h"
#include "models/rates/black_strip.h"
#include "numerics/arrays.h"
#include "numerics/elementary.h"
#include "numerics/gauss_legendre.h"
#include "numerics/normal.h"
#include "numerics/root_bracketed.h"

namespace kestran {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

// Beyond this many deviations the normal density adds up to 1.3e-12, and N differs from 0 or 1 by that.
constexpr double farthest = 7.0;

__m128d both(double x) { return _mm_set1_pd(x); }

double floored(double vol) { return vol < least_volatility ? least_volatility : vol; }

// value[k] = the collar's value at factor[k] = e^log_factor[k], for an even number of nodes. `vol` has room
// for the strip.
void collar_values(const CollarOption& option, const double* log_factor, const double* factor, int nodes,
                   double* vol, double* value) {
  const BlackStrip strip{option.Price, option.IntRt, vol,      option.ExpDays,
                         nullptr,      option.n,     option.T, option.r};
  std::fill_n(value, nodes, 0.0);
  for (int i = 0; i < option.n; ++i) vol[i] = floored(option.Vol[i]);
  add_strip_values(strip, option.Cap, true, 1.0, log_factor, factor, nodes, value);
  for (int i = 0; i < option.n; ++i) vol[i] = floored(option.Vol[i] + option.VolSpread);
  add_strip_values(strip, option.Floor, false, -1.0, log_factor, factor, nodes, value);
  for (int k = 0; k < nodes; ++k) value[k] /= option.n;
}

double collar_value(const CollarOption& option, double log_factor, double* vol) {
  const double log_factors[2] = {log_factor, log_factor};
  const double factors[2] = {exponential(log_factor), exponential(log_factor)};
  double value[2];
  collar_values(option, log_factors, factors, 2, vol, value);
  return value[0];
}

double mean_price(const CollarOption& option) {
  double sum = 0.0;
  for (int i = 0; i < option.n; ++i) sum += option.Price[i];
  return sum / option.n;
}

// The deviation z at which the collar is worth nothing when the factor is e^(v z - v^2 / 2); infinite where
// it is worth something of the same sign wherever the factor may come. The premium's error is of the second
// order in that of z.
double exercise_boundary(const CollarOption& option, double v, double* vol) {
  constexpr double largest_log = 600.0;
  const double reach = std::min(v * v / 2.0 + farthest * v, largest_log);
  const auto value = [&](double log_factor) { return collar_value(option, log_factor, vol); };
  const double least = value(-reach);
  const double most = value(reach);
  if (std::isnan(least + most)) return not_a_number;
  if (least >= 0.0) return -infinity;
  if (most <= 0.0) return infinity;
  const double ytol = 1e-12 * mean_price(option);
  return root_bracketed(value, -reach, reach, least, most, ytol, 1e-9 * v, 200).x / v + v / 2.0;
}

// The integral over z > b of the normal density times N(alpha + beta z), in both lanes: panels that meet
// where N begins to rise, at its middle and where it is done.
__m128d normal_beyond(__m128d b, __m128d alpha, double beta) {
  const QuadratureRule rule = gauss_legendre(28);
  const __m128d end = both(farthest);
  const __m128d begin = _mm_min_pd(_mm_max_pd(b, both(-farthest)), end);
  const auto within = [&](__m128d z) { return _mm_min_pd(_mm_max_pd(z, begin), end); };
  const auto where = [&](double d) { return within((both(d) - alpha) / both(beta)); };
  const bool rising = beta > 0.0;
  const __m128d meeting[4] = {rising ? where(-farthest) : begin, where(rising ? 0.0 : farthest),
                              where(rising ? farthest : 0.0), rising ? end : where(-farthest)};
  __m128d total = both(0.0);
  for (int panel = 0; panel < 3; ++panel) {
    const __m128d half = (meeting[panel + 1] - meeting[panel]) * both(0.5);
    if (_mm_movemask_pd(_mm_cmpneq_pd(half, both(0.0))) == 0) continue;
    const __m128d middle = (meeting[panel + 1] + meeting[panel]) * both(0.5);
    __m128d sum = both(0.0);
    for (int i = 0; i < rule.size; ++i) {
      const __m128d z = middle + half * both(rule.nodes[i].x);
      const __m128d density = exponential(z * z * both(-0.5));
      sum = sum + both(rule.nodes[i].weight) * density * cnorm_inlined(alpha + both(beta) * z);
    }
    total = total + half * sum;
  }
  return total * both(over_root_2_pi);
}

// The part that one leg's option on period i, a caplet (sign 1) or floorlet (-1) struck at K with the
// deviation s, has in today's value of receiving it where side * z > side * boundary.
double exercised_part(double P, double K, double s, double v, double boundary, double side, double sign) {
  // Lane 0 prices in units of the factor, which moves z by v; lane 1 in money.
  const double moneyness = natural_log(P / K);
  const double half_variance = (v * v + s * s) / 2.0;
  const __m128d alpha = _mm_set_pd((moneyness - half_variance) / s, (moneyness + half_variance) / s);
  const __m128d b = both(side) * _mm_set_pd(boundary, boundary - v);
  double probability[2];
  _mm_storeu_pd(probability, normal_beyond(b, both(sign) * alpha, side * sign * v / s));
  return sign * (P * probability[0] - K * probability[1]);
}

double unmoved_price(const CollarOption& option) {
  return kept_price(option.kept, 0, [&] { return xcol_price(option); });
}

// The change of premium per unit of `step` when one of the option's own terms has moved by it.
double change(const CollarOption& option, const CollarOption& moved, double step) {
  return (xcol_price(moved) - unmoved_price(option)) / step;
}

// The change of premium when h is added to each of the n inputs; `moved` reads them from `input`.
double change_of_all(const CollarOption& option, const CollarOption& moved, const double* unmoved, double h,
                     double* input) {
  for (int i = 0; i < option.n; ++i) input[i] = unmoved[i] + h;
  return xcol_price(moved) - unmoved_price(option);
}

// Results that move an array. `input` has room for the strip.
double array_result(const CollarOption& option, int RetType, double* input) {
  CollarOption moved = option;
  double h = 0.0001;
  const double bump_of_prices = bump * mean_price(option);
  const auto change_up = [&] {
    return kept_price(option.kept, 1, [&] {
      moved.Price = input;
      return change_of_all(option, moved, option.Price, bump_of_prices, input);
    });
  };
  switch (static_cast<CollarResult>(RetType)) {
    case CollarResult::delta:
      return change_up() / bump_of_prices;
    case CollarResult::gamma: {
      const double up = change_up();
      moved.Price = input;
      const double down = change_of_all(option, moved, option.Price, -bump_of_prices, input);
      return (up + down) / (bump_of_prices * bump_of_prices);
    }
    case CollarResult::rho:
      moved.IntRt = input;
      moved.r += h;
      return change_of_all(option, moved, option.IntRt, h, input) / h;
    case CollarResult::theta:
      moved.ExpDays = input;
      h = std::min(0.001, option.T / 100.0);
      moved.T -= h;
      return change_of_all(option, moved, option.ExpDays, -h, input) / h;
    case CollarResult::period_vols:
      moved.Vol = input;
      return change_of_all(option, moved, option.Vol, h, input) / h;
    default: {
      moved.Price = input;
      const int k = RetType - static_cast<int>(CollarResult::first_period_delta);
      std::copy(option.Price, option.Price + option.n, input);
      input[k] *= bump_up;
      return change(option, moved, bump * option.Price[k]);
    }
  }
}

}  // namespace

double collar_strip_value(double m, const CollarOption& option) {
  double* vol = option.n < 1 ? nullptr : dvector(0, option.n - 1);
  if (!vol) return not_a_number;
  const double log_factor[2] = {natural_log(m), natural_log(m)};
  const double factor[2] = {m, m};
  double value[2];
  collar_values(option, log_factor, factor, 2, vol, value);
  free_dvector(vol, 0, option.n - 1);
  return value[0];
}

double xcol_price(const CollarOption& option) {
  const double v = std::fabs(option.SwapVol) * std::sqrt(option.T);
  double* vol = option.n < 1 || !(v > 0.0) ? nullptr : dvector(0, option.n - 1);
  if (!vol) return not_a_number;
  const double boundary = exercise_boundary(option, v, vol);
  free_dvector(vol, 0, option.n - 1);
  if (std::isnan(boundary)) return not_a_number;

  const double side = option.OptType & 1 ? 1.0 : -1.0;
  double sum = 0.0;
  for (int i = 0; i < option.n; ++i) {
    const double root_tau = std::sqrt(option.ExpDays[i] - option.T);
    const auto part = [&](double K, double sigma, double sign) {
      return exercised_part(option.Price[i], K, sigma * root_tau, v, boundary, side, sign);
    };
    const double collar = part(option.Cap, floored(option.Vol[i]), 1.0) -
                          part(option.Floor, floored(option.Vol[i] + option.VolSpread), -1.0);
    sum += side * exponential(-option.IntRt[i] * option.ExpDays[i]) * collar;
  }
  return sum / option.n;
}

double xcol_greeks(const CollarOption& option, int RetType) {
  CollarOption moved = option;
  switch (static_cast<CollarResult>(RetType)) {
    case CollarResult::premium:
      return unmoved_price(option);
    case CollarResult::vega:
      moved.SwapVol *= bump_up;
      return change(option, moved, bump * option.SwapVol);
    case CollarResult::vol_spread:
      moved.VolSpread += 0.0001;
      return change(option, moved, 0.0001);
    case CollarResult::cap:
      moved.Cap *= bump_up;
      return option.Cap == 0.0 ? 0.0 : change(option, moved, bump * option.Cap);
    case CollarResult::floor:
      moved.Floor *= bump_up;
      return option.Floor == 0.0 ? 0.0 : change(option, moved, bump * option.Floor);
    case CollarResult::forward_value:
      return collar_strip_value(1.0, option);
    case CollarResult::theta:
      if (option.T <= 0.0) return 0.0;
      break;
    default:
      if (RetType < 0 || RetType - static_cast<int>(CollarResult::first_period_delta) >= option.n) return 0.0;
  }
  double* input = option.n < 1 ? nullptr : dvector(0, option.n - 1);
  if (!input) return not_a_number;
  const double result = array_result(option, RetType, input);
  free_dvector(input, 0, option.n - 1);
  return result;
}

}  // namespace kestran
