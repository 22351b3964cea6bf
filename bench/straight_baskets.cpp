#include <algorithm>
#include <cmath>

#include "bench/straight.h"

namespace kestran::straight {

double basket_vol(const double* F, const double* sigma, const double* mu, const double* w, const double* rho,
                  int n, double T) {
  double first = 0.0;
  double second = 0.0;
  for (int i = 0; i < n; ++i) {
    first += w[i] * F[i] * std::exp(mu[i] * T);
    for (int j = 0; j < n; ++j)
      second +=
          w[i] * w[j] * F[i] * F[j] * std::exp((mu[i] + mu[j] + rho[i * n + j] * sigma[i] * sigma[j]) * T);
  }
  return std::sqrt(std::log(second / (first * first)) / T);
}

static double correlation(const double* packed_correl, int i, int j) {
  const int row = std::max(i, j), column = std::min(i, j);
  return i == j ? 1.0 : packed_correl[row * (row - 1) / 2 + column];
}

double basket_vol_tset(const double* F, const double* sigma, const double* w, const double* Tset,
                       const double* packed_correl, double T, int n) {
  double first = 0.0;
  double second = 0.0;
  for (int i = 0; i < n; ++i) {
    first += w[i] * F[i];
    for (int j = 0; j < n; ++j)
      second += w[i] * w[j] * F[i] * F[j] *
                std::exp(correlation(packed_correl, i, j) * sigma[i] * sigma[j] *
                         std::min(T, std::min(Tset[i], Tset[j])));
  }
  return std::sqrt(std::log(second / (first * first)) / T);
}

double basket_correl(const double* F, const double* sigma, const double* w, const double* Tset,
                     const double* packed_correl, double T, int n1, int n2) {
  double first[2] = {};
  double second[2][2] = {};
  for (int i = 0; i < n1 + n2; ++i) {
    first[i >= n1] += w[i] * F[i];
    for (int j = 0; j < n1 + n2; ++j)
      second[i >= n1][j >= n1] += w[i] * w[j] * F[i] * F[j] *
                                  std::exp(correlation(packed_correl, i, j) * sigma[i] * sigma[j] *
                                           std::min(T, std::min(Tset[i], Tset[j])));
  }
  return std::log(second[0][1] / (first[0] * first[1])) /
         std::sqrt(std::log(second[0][0] / (first[0] * first[0])) *
                   std::log(second[1][1] / (first[1] * first[1])));
}

}  // namespace kestran::straight
