#include "models/exotics/spread_kernel.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "models/exotics/spread_sums_kernel.h"
#include "numerics/elementary.h"
#include "numerics/gauss_legendre.h"
#include "numerics/root_bracketed.h"

namespace kestran {
namespace {

constexpr int points = 55;

// A standard normal variable z carries the given price, given exp(v z - v^2 / 2), and all that the optioned
// price has in common with it: the forward of the optioned price given z is optioned exp(m z - m^2 / 2).
struct Conditional {
  double optioned, m;
  double given, v;
  double strike;           // paid on top of the given price
  double lowest, highest;  // where the mass of z lies, weighted with 1 or with either price
};

// What exercise is worth on the forwards given z.
double margin(const Conditional& c, double z) {
  const __m128d deviation = _mm_set_pd(c.v, c.m);
  const __m128d growth = exponential(deviation * (z - deviation / 2.0));
  return c.optioned * _mm_cvtsd_f64(growth) -
         (c.given * _mm_cvtsd_f64(_mm_unpackhi_pd(growth, growth)) + c.strike);
}

// Points where the margin changes sign: at most two, for the margin rises (falls) on each side of one turning
// point. Those beyond five deviations move no result and would take nodes away from the rest. Without a place
// for them they are only counted. Expanded where it is used, as deal_of is: calls would show in the price's
// time.
[[gnu::always_inline]] inline int exercise_boundaries(const Conditional& c, double* boundary) {
  constexpr double farthest = 5.0;
  double z[3] = {c.lowest - farthest, c.highest + farthest, 0.0};
  int ends = 2;
  double turning = z[0];
  if (c.m * c.given > 0.0)
    turning = (natural_log(c.given * c.v / (c.optioned * c.m)) + (c.m * c.m - c.v * c.v) / 2.0) / (c.m - c.v);
  if (turning > z[0] && turning < z[1]) {
    z[2] = z[1];
    z[1] = turning;
    ends = 3;
  }
  const auto margin_at = [&](double x) { return margin(c, x); };
  int found = 0;
  double at_left = margin_at(z[0]);
  for (int i = 1; i < ends; ++i) {
    const double at_right = margin_at(z[i]);
    if (at_left * at_right < 0.0) {
      if (boundary != nullptr)
        boundary[found] = root_bracketed(margin_at, z[i - 1], z[i], at_left, at_right, 0.0, 1e-10, 100).x;
      ++found;
    }
    at_left = at_right;
  }
  return found;
}

// Nodes and weights over all z that matters, in panels between the boundaries: the integrand bends there,
// sharply when little is left to chance given z.
void place_nodes(const Conditional& c, double z[spread_slots], double weight[spread_slots]) {
  constexpr double reach = 6.5;  // leaves out 4e-11 of the mass at either end
  constexpr int panel_points[3][3] = {{55}, {27, 28}, {18, 19, 18}};
  double boundary[2];
  const int boundaries = exercise_boundaries(c, boundary);
  double left = c.lowest - reach;
  int slot = 0;
  for (int panel = 0; panel <= boundaries; ++panel) {
    const double right = panel < boundaries ? boundary[panel] : c.highest + reach;
    const double centre = (left + right) / 2.0;
    const double half = (right - left) / 2.0;
    const QuadratureRule rule = gauss_legendre(panel_points[boundaries][panel]);
    for (int i = 0; i < rule.size; i += 2, slot += 2) {
      const __m128d first = _mm_loadu_pd(&rule.nodes[i].x);
      const __m128d second = _mm_loadu_pd(&rule.nodes[std::min(i + 1, rule.size - 1)].x);
      store(z + slot, centre + half * _mm_unpacklo_pd(first, second));
      store(weight + slot, half * _mm_unpackhi_pd(first, second));
    }
    slot -= rule.size % 2;  // the last of an odd rule is there twice
    left = right;
  }
  static_assert(points + 1 == spread_slots);
  z[points] = z[points - 1];
  weight[points] = 0.0;
}

struct Deal {
  Conditional conditional;
  double s;     // deviation of the optioned price given z
  bool over_B;  // whether the given price is B; else it is A, and a call on the difference is a put
};

[[gnu::always_inline]] inline Deal deal_of(double FA, double FB, double K, double vA, double vB, double rho) {
  rho = std::min(std::max(rho, -1.0), 1.0);
  const double alone = std::sqrt((1.0 - rho) * (1.0 + rho));

  // The integrand is smooth where the strike given z stays positive, over B for K >= 0 and over A for K < 0,
  // and also over a price that moves little next to the other. The limits are no likely volatilities or
  // ratios of them: a step in one should not change the choice.
  const auto moves_little = [](double v, double other) { return v < 0.37 && other > 2.61 * v; };
  bool over_B = K >= 0.0 ? !moves_little(vA, vB) : moves_little(vB, vA);
  // The optioned price needs a logarithm.
  if (FA <= 0.0 && FB > 0.0) over_B = false;
  if (FB <= 0.0 && FA > 0.0) over_B = true;

  // A call on A - B - K is a put on B - A + K. From here on A is the optioned price.
  if (!over_B) {
    std::swap(FA, FB);
    std::swap(vA, vB);
    K = -K;
  }
  const double m = rho * vA;
  return {{FA, m, FB, vB, K, std::min({0.0, m, vB}), std::max({0.0, m, vB})}, alone * vA, over_B};
}

SpreadSums spread_sums(const SpreadIntegrand& integrand, const SpreadNodes& nodes) {
  using elementary::TwoLanes;
  if (!is_ordinary(integrand, nodes)) return spread_sums_kernel<TwoLanes, false>(integrand, nodes);
#if !defined(__wasm__)
  if (lanes() == 4) return spread_sums_avx2(integrand, nodes);
#endif
  return spread_sums_kernel<TwoLanes, true>(integrand, nodes);
}

// Undiscounted value and derivatives in the two forwards of a call (sign 1) or put (-1) on optioned - given -
// strike, s the deviation of the optioned price given z.
void integrate(const Conditional& c, double s, double sign, double out[3]) {
  SpreadNodes nodes;
  place_nodes(c, nodes.z, nodes.weight);
  const SpreadIntegrand integrand = {c.optioned, natural_log(c.optioned), c.m, c.given, c.v, c.strike, s,
                                     sign};
  const SpreadSums sums = spread_sums(integrand, nodes);
  const double scale = sign / std::sqrt(6.283185307179586);
  out[0] = scale * sums.value;
  out[1] = scale * sums.in_optioned;
  out[2] = -scale * sums.in_given;
}

}  // namespace

bool is_ordinary(const SpreadIntegrand& c, const SpreadNodes& nodes) {
  constexpr double largest_exponent = 300.0, largest_price = 1e100;
  const double farthest = std::max(std::fabs(nodes.z[0]), std::fabs(nodes.z[points]));
  const auto exponent = [&](double deviation) {
    return std::fabs(deviation) * (farthest + std::fabs(deviation) / 2.0);
  };
  return farthest * farthest / 2.0 <= largest_exponent && exponent(c.m) <= largest_exponent &&
         exponent(c.v) <= largest_exponent && std::fabs(c.given) <= largest_price &&
         std::fabs(c.strike) <= largest_price;
}

double spread_kernel(double FA, double FB, double K, double vA, double vB, double rho, double D, int OptType,
                     double out[3]) {
  const double all = FA + FB + K + vA + vB + rho + D;
  if (std::isnan(all)) return out[0] = out[1] = out[2] = all;
  const Deal deal = deal_of(FA, FB, K, vA, vB, rho);
  // The least deviation prices the exercise decision itself.
  constexpr double least_deviation = 1e-10;
  const double sign = (OptType == 0) == deal.over_B ? -1.0 : 1.0;
  integrate(deal.conditional, std::max(deal.s, least_deviation), sign, out);
  if (!deal.over_B) std::swap(out[1], out[2]);
  for (int i = 0; i < 3; ++i) out[i] *= D;
  return out[0];
}

int spread_layout(double FA, double FB, double K, double vA, double vB, double rho) {
  const Deal deal = deal_of(FA, FB, K, vA, vB, rho);
  return 2 * exercise_boundaries(deal.conditional, nullptr) + (deal.over_B ? 1 : 0);
}

}  // namespace kestran
