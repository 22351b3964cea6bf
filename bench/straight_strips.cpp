#include <algorithm>
#include <cmath>
#include <vector>

#include "bench/straight.h"

namespace kestran::straight {

double asian_strip(const AsianStrip& strip) {
  const int L = strip.L;
  std::vector<double> w(static_cast<std::size_t>(L));
  double count = 0.0;
  double sum = 0.0;
  double variance = 0.0;
  for (int i = 0; i < L; ++i) {
    const double n = strip.n[i];
    double& w_i = w[static_cast<std::size_t>(i)];
    w_i = n * strip.sigma[i] * strip.F[i] *
          std::sqrt(strip.Next[i] + (strip.End[i] - strip.Next[i]) * (n - 0.5) / (3.0 * n));
    count += n;
    sum += n * strip.F[i];
    variance += w_i * w_i;
    for (int j = 0; j < i; ++j)
      variance +=
          2.0 * strip.rho * std::sqrt(strip.End[j] / strip.End[i]) * w_i * w[static_cast<std::size_t>(j)];
  }
  const double T = strip.End[L - 1];
  const double sigma = std::sqrt(variance / T) / sum;
  return european(sum / count, strip.K, T, strip.r, strip.r, sigma, 1, 0) *
         std::exp(-strip.r * (strip.ToExp - T));
}

double option_strip(const OptionStrip& strip) {
  const double K = strip.pct * strip.K + strip.basis;
  double sum = 0.0;
  for (int day = strip.B; day <= strip.E; ++day) {
    const double T = day / 365.25;
    const double until_set = std::min(strip.NowToSet / 365.25, T);
    const double sigma = std::sqrt((strip.sigma_before * strip.sigma_before * until_set +
                                    strip.sigma_after * strip.sigma_after * (T - until_set)) /
                                   T);
    sum += european(strip.F, K, T, strip.r, strip.r, sigma, 1, 0);
  }
  return sum / (strip.E - strip.B + 1);
}

void year_strip(const YearStrip& strip, double out[7]) {
  std::fill_n(out, 7, 0.0);
  for (int i = 0; i < strip.L; ++i) {
    const double weight = strip.Qty[i] / (strip.End[i] - strip.Beg[i] + 1.0);
    for (double day = strip.Beg[i]; day <= strip.End[i]; ++day) {
      const Greeks option = european_greeks(strip.Price[i], strip.Strike[i], day / 365.25, strip.IntRt[i],
                                            strip.IntRt[i], strip.Vol[i], 1);
      out[0] += weight * option.premium;
      out[1] += weight * option.delta;
      out[2] += weight * option.gamma;
      out[3] += weight * option.vega;
      out[4] += weight * option.rates_together;
      out[5] += weight * option.theta;
      out[6] += weight * option.vanna;
    }
  }
  for (int k = 0; k < 7; ++k) out[k] /= strip.AnnualQty;
}

}  // namespace kestran::straight
