#include "models/black_scholes/american_tree.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/black_scholes/american_result.h"
#include "models/black_scholes/european.h"
#include "models/bumps.h"
#include "numerics/arrays.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// Keeps the prices of all nodes within the range of doubles.
constexpr double largest_deviation = 30.0;  // sigma sqrt(T)
constexpr double largest_spread = 600.0;    // sigma sqrt(T N), the logarithm of the tree's half width

// Rolls the values V[first .. last] of a level back to the one before. With exercise, the prices of its nodes
// are centre * grid[j].
template <bool exercise>
void roll_back(double* V, const double* grid, int first, int last, double up, double down, double centre,
               double K, double sign) {
  const __m128d up2 = _mm_set1_pd(up);
  const __m128d down2 = _mm_set1_pd(down);
  const __m128d centre2 = _mm_set1_pd(sign * centre);
  const __m128d K2 = _mm_set1_pd(sign * K);
  for (int j = first; j <= last; j += 2) {
    __m128d value =
        _mm_add_pd(_mm_mul_pd(up2, _mm_loadu_pd(V + j + 1)), _mm_mul_pd(down2, _mm_loadu_pd(V + j)));
    if (exercise) {
      // The value comes second, so that NaN stays.
      const __m128d intrinsic = _mm_sub_pd(_mm_mul_pd(centre2, _mm_loadu_pd(grid + j)), K2);
      value = _mm_max_pd(intrinsic, value);
    }
    _mm_storeu_pd(V + j, value);
  }
}

// The nodes of each level that matter. Those thirteen deviations beyond the price's path, in the money beyond
// the path towards the strike, do not move the premium's last bit: they keep the values of a later level.
struct Reach {
  double up_probability;
  double log_to_strike;  // ln(K / S) at the tree's start
  double growth;         // of the forward price a level, and
  double spacing;        // of the nodes, as logarithms
  double deviations_down, deviations_up;
  double tilt_up;  // nodes a level

  static int within(int level, double node) {
    return static_cast<int>(std::min(std::max(0.0, node), level + 4.0));
  }
  int first(int level) const { return within(level, up_probability * level - width(deviations_down, level)); }
  int last(int level) const {
    return within(level, 5.0 + (up_probability + tilt_up) * level + width(deviations_up, level));
  }
  // The node nearest to the strike.
  int strike(int level) const {
    return within(level, (level + 4) / 2.0 + (log_to_strike - growth * level) / spacing);
  }

 private:
  static double width(double deviations, int level) {
    return deviations / 2.0 * std::sqrt(static_cast<double>(level)) + 8.0;
  }
};

Reach reach_of_levels(double S, double K, double b, double f, int M, double dt, double h,
                      double up_probability, bool call) {
  const double deviation = h * std::sqrt(static_cast<double>(M));
  const double log_to_strike = natural_log(K / S) - b * f;
  const double to_strike = (call ? 1.0 : -1.0) * (log_to_strike - b * M * dt) / deviation;
  // Far in the money all values lie on one line, along which roundings travel any distance: no node is left
  // out.
  const double least = to_strike < -6.0 ? 1e9 : 13.0;
  const double inwards = least + std::max(0.0, to_strike);
  // A call's premium comes from higher prices.
  return {up_probability,         log_to_strike,       b * dt, 2.0 * h, call ? least : inwards,
          call ? inwards : least, call ? h / 2.0 : 0.0};
}

// Values of this size at the end of a level count as 0: they are slow to work with and lost in any premium
// above 1e-290.
constexpr double negligible = 1e-307;

// Price, delta and gamma by one tree: k steps of dt before the first exercise and n after it, starting at the
// time f < dt, from which the five nodes of the first level are taken back to now by the pricing equation.
TreeResult tree_pass(double S, double K, double f, int k, int n, double dt, double r, double q, double sigma,
                     int OptType) {
  const int M = k + n;
  const int nodes = M + 4;  // of level M - 1; level i has i + 5
  const int padded = nodes + 3;
  double* V = dvector(0, 2 * padded);
  if (!V) return {nan, nan, nan, nan};
  double* grid = V + padded;

  const double sign = OptType == 0 ? -1.0 : 1.0;
  const double b = r - q;
  const double h = sigma * std::sqrt(dt);
  const double up = exponential(-r * dt) / (1.0 + exponential(h));
  const double down = exponential(-r * dt) / (1.0 + exponential(-h));

  // Node j of level i costs centre(i) * grid[j].
  const int middle = nodes / 2;
  for (int j = 0; j < padded; j += 2) {
    const __m128d steps = _mm_set_pd(j + 1 - middle, j - middle);
    _mm_storeu_pd(grid + j, exponential(_mm_mul_pd(steps, _mm_set1_pd(2.0 * h))));
  }
  const auto centre = [&](int i) { return S * exponential(b * (f + i * dt) + (2 * middle - i - 4) * h); };

  const double last = centre(M - 1);
  const double last_d1 = (natural_log(last / K) + (b + sigma * sigma / 2.0) * dt) / h;
  const double Dq = exponential(-q * dt);
  const double Dr = exponential(-r * dt);
  for (int j = 0; j < nodes; ++j) {
    const double price = last * grid[j];
    const double d1 = sign * (last_d1 + 2.0 * (j - middle));
    const double d2 = d1 - sign * h;
    if (d1 < -25.0 && d2 < -25.0)  // where cnorm is exactly 0, and 1 above 25
      V[j] = 0.0;
    else if (d1 > 25.0 && d2 > 25.0)
      V[j] = sign * (Dq * price - Dr * K);
    else
      V[j] = bs_general(price, K, dt, r, q, sigma, OptType, 0);
    if (M - 1 >= k && V[j] < sign * (price - K)) V[j] = sign * (price - K);
  }
  for (int j = nodes; j < padded; ++j) V[j] = 0.0;

  // Only the nodes first .. final of a level are worked. Out of the money that ends where nodes are out of
  // reach or worth nothing; in the money where they are out of reach or exercised: where both nodes that
  // follow are exercised and interest outweighs the yield beyond rounding, so is the node. `edge` is the
  // innermost node of which this is known, with all those farther in the money.
  const bool call = sign > 0.0;
  const bool ordinary = S > 0.0 && K > 0.0;
  const auto none = [&](int level) { return call ? level + 5 : -1; };
  const auto intrinsic = [&](double level_centre, int j) { return sign * level_centre * grid[j] - sign * K; };
  const auto stays_exercised = [&](double price) {
    return sign * (price * (1.0 - Dq) - K * (1.0 - Dr)) > 1e-12 * (price + K);
  };
  const Reach reach = reach_of_levels(S, K, b, f, M, dt, h, up / (up + down), call);
  int first = 0;
  int final = nodes - 1;
  int edge = none(M - 1);

  // Moves `edge` inwards over nodes that have turned out to be exercised.
  const auto extend_edge = [&](double level_centre) {
    for (int j = call ? edge - 1 : edge + 1; j >= first && j <= final; j += call ? -1 : 1) {
      if (V[j] != intrinsic(level_centre, j) || !stays_exercised(level_centre * grid[j])) break;
      edge = j;
    }
  };
  const auto drop_negligible = [&] {
    if (call)
      for (; first < final && std::fabs(V[first]) < negligible; ++first) V[first] = 0.0;
    else
      for (; final > first && std::fabs(V[final]) < negligible; --final) V[final] = 0.0;
  };
  const bool some_stay_exercised = ordinary && (call || stays_exercised(0.0));
  if (some_stay_exercised && M - 1 >= k && stays_exercised(last * grid[call ? nodes - 1 : 0]))
    extend_edge(last);
  if (ordinary) drop_negligible();

  double level_centre = last;
  for (int i = M - 2; i >= 0; --i) {
    const double later_centre = level_centre;
    const int later_edge = edge;
    edge = none(i);
    if (i >= k) {
      level_centre = centre(i);
      const int candidate = call ? std::min(later_edge, i + 5) : std::max(later_edge - 1, -1);
      const auto stays = [&](int j) { return stays_exercised(level_centre * grid[j]); };
      if (candidate != edge && stays(candidate) && (!call || stays(i + 4))) edge = candidate;
    }
    for (int j = call ? later_edge : edge + 1; j <= (call ? edge : later_edge); ++j)
      V[j] = intrinsic(later_centre, j);
    if (!ordinary) {
      final = i + 4;
    } else if (call) {
      const int worthless = i >= k ? std::min(first, reach.strike(i)) : first;
      first = std::max(worthless - 1, reach.first(i));
      final = std::min(edge - 1, reach.last(i));
    } else {
      const int worthless = i >= k ? std::max(final, reach.strike(i) + 1) : final;
      first = std::max(edge + 1, reach.first(i));
      final = std::min(worthless, reach.last(i));
    }
    if (i >= k) {
      roll_back<true>(V, grid, first, final, up, down, level_centre, K, sign);
      if (some_stay_exercised) extend_edge(level_centre);
    } else {
      roll_back<false>(V, grid, first, final, up, down, 0.0, K, sign);
    }
    if (ordinary) drop_negligible();
  }
  for (int j = call ? edge : 0; j <= (call ? 4 : edge); ++j) V[j] = intrinsic(level_centre, j);

  const double y = 2.0 * h;
  const auto now = [&](int j) {
    if (f == 0.0) return V[j];
    const double curvature = (V[j + 1] - 2.0 * V[j] + V[j - 1]) / (y * y) - (V[j + 1] - V[j - 1]) / (2.0 * y);
    return V[j] + f * (sigma * sigma / 2.0 * curvature - r * V[j]);
  };
  const double below = now(1);
  const double price = now(2);
  const double above = now(3);
  free_dvector(V, 0, 2 * padded);

  const double up_move = S * (exponential(y) - 1.0);
  const double down_move = S * (1.0 - exponential(-y));
  const double slope_up = (above - price) / up_move;
  const double slope_down = (price - below) / down_move;
  const double width = up_move + down_move;
  return {price, (down_move * slope_up + up_move * slope_down) / width, 2.0 * (slope_up - slope_down) / width,
          0.0};
}

}  // namespace

TreeResult american_tree(double S, double K, double T, double t0, double r, double q, double sigma,
                         int OptType, int N) {
  const double sign = OptType == 0 ? -1.0 : 1.0;
  const double intrinsic = positive_part(sign * (S - K));
  if (!(T > 0.0)) return {intrinsic, 0.0, 0.0, 0.0};
  sigma = floored_volatility(sigma);
  const double root_T = std::sqrt(T);
  if (sigma * root_T > largest_deviation) sigma = largest_deviation / root_T;

  N = std::clamp(N, 1, 5000);
  const double widest = largest_spread / (sigma * root_T);
  if (widest * widest < N) N = static_cast<int>(widest * widest);

  const bool american = t0 <= 0.0;
  const double share = american ? 1.0 : (T - t0) / T;  // of the time, with exercise
  if (std::isnan(share)) return {nan, nan, nan, nan};
  const auto european = [&](int RetType) { return bs_general(S, K, T, r, q, sigma, OptType, RetType); };
  if (share < 1.0 / 400.0) return {european(0), european(1), european(2), european(5)};
  const int n = american ? N : std::max(1, static_cast<int>(std::floor(N * share + 0.5)));

  const auto pass = [&](int steps) {
    if (american) return tree_pass(S, K, 0.0, 0, steps, T / steps, r, q, sigma, OptType);
    const double dt = (T - t0) / steps;
    const double k = std::floor(t0 / dt + 1e-9);
    return tree_pass(S, K, positive_part(t0 - k * dt), static_cast<int>(k), steps, dt, r, q, sigma, OptType);
  };
  TreeResult result = pass(n);
  if (n >= 5) {
    const int m = n / 2;
    const TreeResult half = pass(m);
    const auto extrapolated = [&](double full_value, double half_value) {
      return (n * full_value - m * half_value) / (n - m);
    };
    result = {extrapolated(result.price, half.price), extrapolated(result.delta, half.delta),
              extrapolated(result.gamma, half.gamma), 0.0};
  }
  // The tree's error must not take the price below the European one. Only the price is lifted: its
  // derivatives would jump.
  const double european_price = european(0);
  if (result.price < european_price) result.price = european_price;
  result.theta = r * result.price - (r - q) * S * result.delta - sigma * sigma / 2.0 * S * S * result.gamma;

  const double margin = intrinsic > 0.0 ? 1e-10 * K : 0.0;
  if (american && result.price <= intrinsic + margin)
    return {intrinsic, intrinsic > 0.0 ? sign : 0.0, 0.0, 0.0};
  return result;
}

double american_binomial(double S, double K, double T, double r, double q, double sigma, int OptType,
                         int Nsteps, int RetType) {
  if (Nsteps < 1) return -99.0;
  if (RetType < 0 || RetType > 8) return 99.0;
  if (!(T > 0.0) && RetType != 0) return 0.0;
  if (T > 0.0 && (S < 0.0 || K < 0.0)) return nan;
  sigma = floored_volatility(sigma);

  const auto tree = [&](double years, double rate, double yield, double volatility) {
    return american_tree(S, K, years, 0.0, rate, yield, volatility, OptType, Nsteps);
  };
  const auto result = static_cast<EuropeanResult>(RetType);
  if (result == EuropeanResult::theta) return tree(T, r, q, sigma).theta;
  return american_result(tree, T, r, q, sigma, result);
}

}  // namespace kestran
