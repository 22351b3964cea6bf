#include <algorithm>
#include <cmath>
#include <vector>

#include "bench/straight.h"

namespace kestran::straight {

double cnorm(double x) {
  const double k = 1.0 / (1.0 + 0.2316419 * std::fabs(x));
  const double sum =
      k * (0.31938153 + k * (-0.356563782 + k * (1.781477937 + k * (-1.821255978 + k * 1.330274429))));
  const double tail = std::exp(-x * x / 2.0) / 2.506628275 * sum;
  return x < 0.0 ? tail : 1.0 - tail;
}

double normal_density(double x) { return std::exp(-x * x / 2.0) / std::sqrt(6.283185307179586); }

double european(double S, double K, double T, double r, double q, double sigma, int OptType, int RetType) {
  const double sign = OptType == 0 ? -1.0 : 1.0;
  const double d1 = (std::log(S / K) + (r - q + sigma * sigma / 2.0) * T) / (sigma * std::sqrt(T));
  const double d2 = d1 - sigma * std::sqrt(T);
  const double premium =
      sign * (S * std::exp(-q * T) * cnorm(sign * d1) - K * std::exp(-r * T) * cnorm(sign * d2));
  switch (RetType) {
    case 0:
      return premium;
    case 1:
      return sign * std::exp(-q * T) * cnorm(sign * d1);
    case 2:
      return std::exp(-q * T) * normal_density(d1) / (S * sigma * std::sqrt(T));
    case 3:
      return S * std::exp(-q * T) * normal_density(d1) * std::sqrt(T);
    case 4:
      return -T * premium;
    case 5:
      return -S * normal_density(d1) * sigma * std::exp(-q * T) / (2.0 * std::sqrt(T)) +
             sign * q * S * cnorm(sign * d1) * std::exp(-q * T) -
             sign * r * K * std::exp(-r * T) * cnorm(sign * d2);
    case 6:
      return sign * T * K * std::exp(-r * T) * cnorm(sign * d2);
    case 7:
      return -std::exp(-q * T) * normal_density(d1) * d2 / sigma;
    default:
      return -std::exp(-q * T) * (normal_density(d1) * ((r - q) / (sigma * std::sqrt(T)) - d2 / (2.0 * T)) -
                                  sign * q * cnorm(sign * d1));
  }
}

Greeks european_greeks(double S, double K, double T, double r, double q, double sigma, int OptType) {
  const double sign = OptType == 0 ? -1.0 : 1.0;
  const double d1 = (std::log(S / K) + (r - q + sigma * sigma / 2.0) * T) / (sigma * std::sqrt(T));
  const double d2 = d1 - sigma * std::sqrt(T);
  const double N1 = cnorm(sign * d1);
  const double N2 = cnorm(sign * d2);
  const double density = normal_density(d1);
  const double Dq = std::exp(-q * T);
  const double Dr = std::exp(-r * T);
  const double premium = sign * (S * Dq * N1 - K * Dr * N2);
  return {premium,
          sign * Dq * N1,
          Dq * density / (S * sigma * std::sqrt(T)),
          S * Dq * density * std::sqrt(T),
          -T * premium,
          -S * density * sigma * Dq / (2.0 * std::sqrt(T)) + sign * (q * S * Dq * N1 - r * K * Dr * N2),
          -Dq * density * d2 / sigma,
          -Dq * (density * ((r - q) / (sigma * std::sqrt(T)) - d2 / (2.0 * T)) - sign * q * N1)};
}

double american_quadratic(double S, double K, double T, double r, double q, double sigma, int OptType) {
  const double sign = OptType == 0 ? -1.0 : 1.0;
  const double N = 2.0 * (r - q) / (sigma * sigma);
  const double k = 2.0 * r / (sigma * sigma * (1.0 - std::exp(-r * T)));
  const double power = (-(N - 1.0) + sign * std::sqrt((N - 1.0) * (N - 1.0) + 4.0 * k)) / 2.0;
  const double m = 2.0 * r / (sigma * sigma);
  const double power_forever = (-(N - 1.0) + sign * std::sqrt((N - 1.0) * (N - 1.0) + 4.0 * m)) / 2.0;
  const double forever = K / (1.0 - 1.0 / power_forever);
  const double h =
      -(sign * (r - q) * T + 2.0 * sigma * std::sqrt(T)) * K / (OptType == 0 ? K - forever : forever - K);
  double x = forever + (K - forever) * std::exp(h);

  for (int step = 0; step < 100; ++step) {
    const double d1 = (std::log(x / K) + (r - q + sigma * sigma / 2.0) * T) / (sigma * std::sqrt(T));
    const double exercised = sign * (x - K);
    const double held = european(x, K, T, r, q, sigma, OptType, 0) +
                        sign * (1.0 - std::exp(-q * T) * cnorm(sign * d1)) * x / power;
    if (std::fabs(exercised - held) / K < 1e-8) break;
    const double slope =
        sign * std::exp(-q * T) * cnorm(sign * d1) * (1.0 - 1.0 / power) +
        sign * (1.0 - sign * std::exp(-q * T) * normal_density(d1) / (sigma * std::sqrt(T))) / power;
    x = (held + sign * K - slope * x) / (sign - slope);
  }

  if (sign * (S - x) >= 0.0) return sign * (S - K);
  const double d1 = (std::log(x / K) + (r - q + sigma * sigma / 2.0) * T) / (sigma * std::sqrt(T));
  const double A = sign * x / power * (1.0 - std::exp(-q * T) * cnorm(sign * d1));
  return european(S, K, T, r, q, sigma, OptType, 0) + A * std::pow(S / x, power);
}

// The tree's price with k steps before the first exercise and n after it.
static double tree_price(double S, double K, int k, int n, double dt, double r, double q, double sigma,
                         int OptType) {
  const double sign = OptType == 0 ? -1.0 : 1.0;
  const double up = std::exp((r - q) * dt + sigma * std::sqrt(dt));
  const double down = std::exp((r - q) * dt - sigma * std::sqrt(dt));
  const double p = (std::exp((r - q) * dt) - down) / (up - down);
  const double discount = std::exp(-r * dt);

  // Level i has the nodes 0 to i; the last step is the European formula.
  const int last = k + n - 1;
  std::vector<double> value(static_cast<std::size_t>(last) + 1);
  double price = S * std::pow(down, last);
  for (int j = 0; j <= last; ++j) {
    double& node = value[static_cast<std::size_t>(j)];
    node = european(price, K, dt, r, q, sigma, OptType, 0);
    if (last >= k) node = std::max(node, sign * (price - K));
    price *= up / down;
  }
  for (int i = last - 1; i >= 0; --i) {
    price = S * std::pow(down, i);
    for (int j = 0; j <= i; ++j) {
      double* node = &value[static_cast<std::size_t>(j)];
      node[0] = discount * (p * node[1] + (1.0 - p) * node[0]);
      if (i >= k) node[0] = std::max(node[0], sign * (price - K));
      price *= up / down;
    }
  }
  return value[0];
}

double american_tree(double S, double K, double T, double t0, double r, double q, double sigma, int OptType,
                     int N) {
  const int n = t0 <= 0.0 ? N : static_cast<int>(std::lround(N * (T - t0) / T));
  const auto price = [&](int steps) {
    const double dt = (t0 <= 0.0 ? T : T - t0) / steps;
    const int before = t0 <= 0.0 ? 0 : static_cast<int>(std::lround(t0 / dt));
    return tree_price(S, K, before, steps, dt, r, q, sigma, OptType);
  };
  const int m = n / 2;
  return std::max((n * price(n) - m * price(m)) / (n - m), european(S, K, T, r, q, sigma, OptType, 0));
}

double implied_vol_european(double Premium, double S, double K, double T, double r, double q, double Accuracy,
                            int OptType) {
  double sigma = std::sqrt(2.0 * std::fabs(std::log(S / K) + (r - q) * T) / T);
  const double at_the_money = 2.5 * Premium / (S * std::exp(-q * T) * std::sqrt(T));
  if (sigma < at_the_money / 2.0) sigma = at_the_money;
  for (int step = 0; step < 100; ++step) {
    const double excess = european(S, K, T, r, q, sigma, OptType, 0) - Premium;
    if (std::fabs(excess) <= Accuracy) break;
    sigma -= excess / european(S, K, T, r, q, sigma, OptType, 3);
  }
  return sigma;
}

double implied_vol_american(double Premium, double S, double K, double T, double r, double q, double MaxVol,
                            int OptType, int Nsteps, double Accuracy) {
  double low = 1e-5;
  double high = MaxVol;
  for (int step = 0; step < 200; ++step) {
    const double sigma = (low + high) / 2.0;
    const double excess = american_tree(S, K, T, 0.0, r, q, sigma, OptType, Nsteps) - Premium;
    if (std::fabs(excess) <= Accuracy) break;
    (excess > 0.0 ? high : low) = sigma;
  }
  return (low + high) / 2.0;
}

double digital(double Cash, double S, double K, double T, double r, double q, double sigma) {
  const double d2 = (std::log(S / K) + (r - q - sigma * sigma / 2.0) * T) / (sigma * std::sqrt(T));
  return Cash * std::exp(-r * T) * cnorm(d2);
}

double cash_on_delivery(double S, double K, double T, double r, double q, double sigma, double Premium) {
  return european(S, K, T, r, q, sigma, 1, 0) - digital(Premium, S, K, T, r, q, sigma);
}

double contingent_premium(double S, double K, double T, double r, double q, double sigma) {
  const double d2 = (std::log(S / K) + (r - q - sigma * sigma / 2.0) * T) / (sigma * std::sqrt(T));
  return european(S, K, T, r, q, sigma, 1, 0) / (std::exp(-r * T) * cnorm(d2));
}

double strangle(double S, double KA, double KB, double T, double r, double q, double sigmaA, double sigmaB) {
  return european(S, KA, T, r, q, sigmaA, 0, 0) + european(S, KB, T, r, q, sigmaB, 1, 0);
}

double boston_strike(double S, double B, double T, double r, double q, double sigma) {
  double low = 0.0;
  double high = B;
  while (high - low > 1e-9 * B) {
    const double K = (low + high) / 2.0;
    (std::exp(r * T) * european(S, K, T, r, q, sigma, 1, 0) > B - K ? high : low) = K;
  }
  return (low + high) / 2.0;
}

}  // namespace kestran::straight
