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

// Rolls the values V of a level back to the one before, of `nodes` nodes. With exercise, their prices are
// centre * grid[j].
template <bool exercise>
void roll_back(double* V, const double* grid, int nodes, double up, double down, double centre, double K,
               double sign) {
  const __m128d up2 = _mm_set1_pd(up);
  const __m128d down2 = _mm_set1_pd(down);
  const __m128d centre2 = _mm_set1_pd(sign * centre);
  const __m128d K2 = _mm_set1_pd(sign * K);
  for (int j = 0; j < nodes; j += 2) {
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
  for (int i = M - 2; i >= k; --i) roll_back<true>(V, grid, i + 5, up, down, centre(i), K, sign);
  for (int i = std::min(M - 2, k - 1); i >= 0; --i) roll_back<false>(V, grid, i + 5, up, down, 0.0, K, sign);

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
  if (sigma <= 0.0) sigma = 1e-5;
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
