#include <cmath>

#include "bench/straight.h"
#include "models/asian/asian_correction_table.h"

namespace kestran::straight {

// The table at a point inside it, from the second node of each axis on: a parabola along each axis and the
// products of the fractions between the axes.
static double call_correction(double S, double K, double sigma, double t1, double T) {
  const double i = std::log(sigma * std::sqrt(T) / 0.04) / (std::log(62.5) / 9.0);
  const double j = std::log(1.0 + t1 / T) / (std::log(2.0) / 16.0);
  const double k = std::log(S / K * 3.0) / std::log(1.1);
  const int i0 = static_cast<int>(i), j0 = static_cast<int>(j), k0 = static_cast<int>(k);
  // Next to the first node the parabola starts from node 1 and looks back.
  const int step_j = j0 == 0 ? -1 : 1;
  const int centre_j = j0 == 0 ? 1 : j0;
  const double a = i - i0, b = j0 == 0 ? 1.0 - j : j - j0, c = k - k0;
  const auto f = [&](int di, int dj, int dk) {
    return asian_correction_table[i0 + di][centre_j + dj * step_j][k0 + dk];
  };
  const double slopes =
      (f(1, 0, 0) - f(-1, 0, 0)) * a + (f(0, 1, 0) - f(0, -1, 0)) * b + (f(0, 0, 1) - f(0, 0, -1)) * c;
  const double curvatures = (f(1, 0, 0) - 2.0 * f(0, 0, 0) + f(-1, 0, 0)) * a * a +
                            (f(0, 1, 0) - 2.0 * f(0, 0, 0) + f(0, -1, 0)) * b * b +
                            (f(0, 0, 1) - 2.0 * f(0, 0, 0) + f(0, 0, -1)) * c * c;
  const double products = (f(1, 1, 0) - f(1, 0, 0) - f(0, 1, 0) + f(0, 0, 0)) * a * b +
                          (f(1, 0, 1) - f(1, 0, 0) - f(0, 0, 1) + f(0, 0, 0)) * a * c +
                          (f(0, 1, 1) - f(0, 1, 0) - f(0, 0, 1) + f(0, 0, 0)) * b * c +
                          (f(1, 1, 1) - f(1, 1, 0) - f(1, 0, 1) - f(0, 1, 1) + f(1, 0, 0) + f(0, 1, 0) +
                           f(0, 0, 1) - f(0, 0, 0)) *
                              a * b * c;
  return (f(0, 0, 0) + (slopes + curvatures) / 2.0 + products) * S / 2.0;
}

void asian_fast(double S, double K, double r, double sigma, int N, double t1, double T, double out[7]) {
  const double f = std::sqrt(((T - t1) * (N - 0.5) / N / 3.0 + t1) / T);
  const Greeks black = european_greeks(S, K, T, r, r, sigma * f, 1);
  out[0] = black.premium + call_correction(S, K, sigma, t1, T);
  out[1] = black.delta;
  out[2] = black.gamma;
  out[3] = black.vega * f;
  out[4] = black.rates_together;
  out[5] = (f - 1.0 / f) * black.vega * sigma / (2.0 * T) + black.theta;
  out[6] = black.vanna * f;
}

double asian_geo_cond(double S, double K, double r, double q, double sigma1, double sigma2, int E, int B) {
  const double day = 1.0 / 365.25;
  const int n = E - B + 1;
  const double t0 = B * day;
  const double mean_G =
      std::log(S) + (r - q) - sigma1 * sigma1 * t0 / 2.0 - sigma2 * sigma2 * day * (n - 1.0) / 4.0;
  const double var_G = sigma1 * sigma1 * t0 + sigma2 * sigma2 * day * (n - 1.0) * (2.0 * n - 1.0) / (6.0 * n);
  const double sigma_G = std::sqrt(var_G);
  const auto time = [&](int i) { return t0 + i * day; };
  const auto variance = [&](int i) { return sigma1 * sigma1 * t0 + sigma2 * sigma2 * i * day; };
  const auto mean = [&](int i) { return std::log(S) + (r - q) * time(i) - variance(i) / 2.0; };
  const auto covariance = [&](int i) {
    return sigma1 * sigma1 * t0 + sigma2 * sigma2 * day * i * (1.0 - (i + 1.0) / (2.0 * n));
  };

  double conditional = 0.0;
  for (int i = 0; i < n; ++i) {
    const double c = covariance(i);
    conditional +=
        std::exp(mean(i) + c / var_G * (std::log(K) - mean_G) + (variance(i) - c * c / var_G) / 2.0);
  }
  const double distance = mean_G - std::log(2.0 * K - conditional / n);

  double above = 0.0;
  for (int i = 0; i < n; ++i)
    above += std::exp(mean(i) + variance(i) / 2.0) * cnorm((distance + covariance(i)) / sigma_G);
  return std::exp(-r * time(n - 1)) * (above / n - K * cnorm(distance / sigma_G));
}

void asian_vol_approx(double S, double K, double r, double sigma, double toExp, double toStart, double toEnd,
                      double TradeDays, double out[7]) {
  const double n = toEnd - toStart + 1.0;
  const double f = std::sqrt(((n - 1.0) * (n - 0.5) / n / 3.0 + toStart) / toEnd);
  const double T = toEnd / TradeDays;
  const double D = std::exp(r * (T - toExp / 365.25));
  const Greeks black = european_greeks(S, K, T, r, r, sigma * f, 1);
  out[0] = D * (black.premium + call_correction(S, K, sigma, toStart / TradeDays, T));
  out[1] = D * black.delta;
  out[2] = D * black.gamma;
  out[3] = D * black.vega * f;
  out[4] = D * black.rates_together;
  out[5] = D * ((f - 1.0 / f) * black.vega * sigma / (2.0 * T) + black.theta);
  out[6] = D * black.vanna * f;
}

}  // namespace kestran::straight
