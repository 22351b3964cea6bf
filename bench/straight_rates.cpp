#include <algorithm>
#include <cmath>
#include <vector>

#include "bench/straight.h"

namespace kestran::straight {

double cap(double m, const CapOption& option) {
  double value = 0.0;
  double quantity = 0.0;
  for (int i = 0; i < option.n; ++i) {
    const double tau = option.ExpDays[i] - option.T;
    const double forward_rate = (option.IntRt[i] * option.ExpDays[i] - option.r * option.T) / tau;
    value += option.Qty[i] * european(m * option.Price[i], option.CfStrike, tau, forward_rate, forward_rate,
                                      option.Vol[i], 1, 0);
    quantity += option.Qty[i];
  }
  return value / quantity;
}

double option_on_cap(const CapOption& option) {
  const int N = option.N;
  const double dt = option.T / N;
  const double sigma = option.StripVol;
  const double nu = option.r - option.r_carry - sigma * sigma / 2.0;
  const double dx = std::sqrt(sigma * sigma * dt + nu * nu * dt * dt);
  const double p = 0.5 + 0.5 * nu * dt / dx;
  const double discount = std::exp(-option.r * dt);
  std::vector<double> value(static_cast<std::size_t>(N) + 1);
  for (int k = 0; k <= N; ++k)
    value[static_cast<std::size_t>(k)] =
        std::max(cap(std::exp((2 * k - N) * dx), option) - option.CompStrike, 0.0);
  for (int i = N - 1; i >= 0; --i)
    for (int k = 0; k <= i; ++k) {
      double* node = &value[static_cast<std::size_t>(k)];
      node[0] = discount * (p * node[1] + (1.0 - p) * node[0]);
    }
  return value[0];
}

void swaption(const double* Fwd, const double* Qty, const double* Swaptime, const double* Rates,
              const double* Strikes, double Strike, double Swapvol, double IntRt, double Expiry, int n,
              SwaptionRecord& record) {
  const auto discount = [&](int i) { return std::pow(1.0 + Rates[i] / 2.0, -2.0 * Swaptime[i]); };
  double quantity = 0.0, A = 0.0, FW = 0.0, KW = 0.0, rate_part = 0.0, decay_part = 0.0;
  for (int i = 0; i < n; ++i) {
    const double weight = Qty[i] * discount(i);
    quantity += Qty[i];
    A += weight;
    FW += weight * Fwd[i];
    if (Strikes) KW += weight * Strikes[i];
    rate_part += weight * Swaptime[i] / (1.0 + Rates[i] / 2.0);
    decay_part += weight * std::log(1.0 + Rates[i] / 2.0);
  }
  const double D0 = std::pow(1.0 + IntRt / 2.0, -2.0 * Expiry);
  const double ratio = A / (quantity * D0);
  const double decay = 2.0 * (decay_part - std::log(1.0 + IntRt / 2.0) * A) / D0;
  const Greeks black = european_greeks(FW / A, Strikes ? KW / A : Strike, Expiry, IntRt, IntRt, Swapvol, 1);
  record.price = black.premium * ratio;
  record.vega = black.vega * ratio;
  record.theta = black.theta * ratio + decay * black.premium / quantity;
  record.rate_sens = black.rates_together * ratio +
                     (A * Expiry / (1.0 + IntRt / 2.0) - rate_part) * black.premium / (D0 * quantity);
  for (int i = 0; i < n; ++i) {
    const double D = discount(i);
    record.delta_by_period[i] = black.delta * D / D0;
    record.gamma_by_period[i] = black.gamma * D / D0;
    record.decay_by_period[i] = (black.charm / D0 + black.delta * decay / A) * D;
    record.vanna_by_period[i] = black.vanna * D / D0;
  }
}

}  // namespace kestran::straight
