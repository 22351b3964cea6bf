#include "models/baskets/basket_correl.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/baskets/basket_vol.h"
#include "models/baskets/basket_vol_tset.h"
#include "numerics/arrays.h"

namespace kestran {
namespace {

constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

// Components of both baskets in one list.
struct Components {
  double* value;  // forward price times weight
  double* sigma;
  double* time;  // until which the component moves
  double** C;
};

// Covariance of the values of components first1 .. end1 - 1 with those of first2 .. end2 - 1: without
// volatility it is exactly 0.
double covariance(const Components& of, int first1, int end1, int first2, int end2) {
  double mean2 = 0.0;
  for (int j = first2; j < end2; ++j) mean2 += of.value[j];
  double sum = 0.0;
  for (int i = first1; i < end1; ++i)
    sum += of.value[i] * (exponential_sum(of.value + first2, end2 - first2,
                                          [&](int k) {
                                            const int j = first2 + k;
                                            return of.sigma[i] * of.sigma[j] * of.C[i][j] *
                                                   std::min(of.time[j], of.time[i]);
                                          }) -
                          mean2);
  return sum;
}

double correlation(const Components& of, int n1, int n, double mean1, double mean2) {
  const double log1 = natural_log(1.0 + covariance(of, 0, n1, 0, n1) / (mean1 * mean1));
  const double log2 = natural_log(1.0 + covariance(of, n1, n, n1, n) / (mean2 * mean2));
  if (log1 * log2 <= 0.0) return 0.0;
  const double log12 = natural_log(1.0 + covariance(of, 0, n1, n1, n) / (mean1 * mean2));
  const double result = log12 / std::sqrt(log1 * log2);
  return result > 1.0 ? 1.0 : result < -1.0 ? -1.0 : result;
}

}  // namespace

bool has_both_signs(const FixingBasket& basket) {
  double least = 0.0;
  double greatest = 0.0;
  for (int i = 0; i < basket.n; ++i) {
    if (basket.w[i] == 0.0) continue;
    least = std::min(least, basket.F[i]);
    greatest = std::max(greatest, basket.F[i]);
  }
  return least < 0.0 && greatest > 0.0;
}

double basket_correl_tset(const FixingBasket& first, const FixingBasket& second, const double* packed_correl,
                          double T) {
  const int n1 = first.n;
  const int n2 = second.n;
  if (n1 < 1 || n2 < 1 || std::isnan(T)) return not_a_number;
  double mean1 = 0.0;
  double mean2 = 0.0;
  for (int i = 0; i < n1; ++i) mean1 += first.F[i] * first.w[i];
  for (int i = 0; i < n2; ++i) mean2 += second.F[i] * second.w[i];
  if (mean1 == 0.0 || mean2 == 0.0 || T <= 0.0) return 0.0;
  if (has_both_signs(first) || has_both_signs(second)) return not_a_number;

  double result = not_a_number;
  const int n = n1 + n2;
  double** C = dmatrix(0, n - 1, 0, n - 1);
  double** lists = dmatrix(0, 2, 0, n - 1);
  if (C && lists) {
    unpack_lower_correl(packed_correl, C, n);
    for (int i = 0; i < n; ++i) {
      const FixingBasket& of = i < n1 ? first : second;
      const int j = i < n1 ? i : i - n1;
      lists[0][i] = of.F[j] * of.w[j];
      lists[1][i] = of.sigma[j];
      lists[2][i] = std::min(of.Tset[j], T);
    }
    result = correlation({lists[0], lists[1], lists[2], C}, n1, n, mean1, mean2);
  }
  free_dmatrix(lists, 0, 2, 0, n - 1);
  free_dmatrix(C, 0, n - 1, 0, n - 1);
  return result;
}

}  // namespace kestran
