#include "models/baskets/pplus.h"

#include <cmath>
#include <limits>

#include "models/baskets/basket_correl.h"
#include "models/baskets/basket_vol_tset.h"
#include "models/bumps.h"
#include "models/exotics/spread_kernel.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

constexpr double least_volatility = 1e-5;
constexpr double step = 0.001;

bool flags_known(const TwoBaskets& option) {
  return option.Aflag >= 0 && option.Aflag <= 2 && option.Bflag >= 0 && option.Bflag <= 2;
}

// Weights of the four components in their baskets.
void basket_weights(const TwoBaskets& option, double w[4]) {
  const double days = option.days_B[0] + option.days_B[1];
  w[0] = option.Aflag == 1 ? 0.5 : 1.0;
  w[1] = option.Aflag == 0 ? 0.0 : w[0];
  w[2] = w[3] = 1.0;
  if (option.Bflag == 0) w[3] = 0.0;
  if (option.Bflag == 1) {
    w[2] = days == 0.0 ? 0.5 : option.days_B[0] / days;
    w[3] = days == 0.0 ? 0.5 : option.days_B[1] / days;
  }
}

// The two lognormal variables that stand for the baskets.
struct Lognormals {
  double FA, FB;
  double sigma_A, sigma_B, rho;
};

Lognormals match_moments(const TwoBaskets& option) {
  double w[4];
  basket_weights(option, w);
  double sigma[4];
  // A component that is left out must not enter, whatever its volatility.
  for (int i = 0; i < 4; ++i)
    sigma[i] = w[i] == 0.0 || option.sigma[i] <= 0.0 ? least_volatility : option.sigma[i];
  const double* S = option.S;
  const double T = option.T;
  const double Tset[2] = {T, T};
  const double* rho = option.rho;
  const double packed_correl[6] = {rho[0], rho[2], rho[3], rho[4], rho[5], rho[1]};
  const double FA = w[0] * S[0] + w[1] * S[1];
  const double FB = w[2] * S[2] + w[3] * S[3];
  constexpr double none = std::numeric_limits<double>::quiet_NaN();
  if (has_both_signs(S, w, 2) || has_both_signs(S + 2, w + 2, 2)) return {FA, FB, none, none, none};
  return {FA, FB, basket_vol_tset(S, sigma, w, Tset, rho, T, 0, 2),
          basket_vol_tset(S + 2, sigma + 2, w + 2, Tset, rho + 1, T, 0, 2),
          basket_correl_tset(S, S + 2, sigma, sigma + 2, w, w + 2, Tset, Tset, packed_correl, T, 2, 2)};
}

// With the prices of basket A multiplied by `up_A` and those of B by `up_B`.
double price_of_moved(TwoBaskets option, double up_A, double up_B) {
  for (int i = 0; i < 2; ++i) {
    option.S[i] *= up_A;
    option.S[2 + i] *= up_B;
  }
  return pplus_price(option);
}

}  // namespace

double pplus_price(const TwoBaskets& option) {
  if (!flags_known(option)) return -99.0;
  const double sign = option.OptType == 0 ? -1.0 : 1.0;
  const Lognormals of = match_moments(option);
  if (option.T <= 0.0) return positive_part(sign * (of.FA - of.FB - option.K));
  const double root_T = std::sqrt(option.T);
  double result[3];
  return spread_kernel(of.FA, of.FB, option.K, of.sigma_A * root_T, of.sigma_B * root_T, of.rho,
                       exponential(-option.r * option.T), option.OptType, result);
}

double pplus_greek(const TwoBaskets& option, int Risk) {
  if (!flags_known(option)) return -99.0;
  if (Risk < 0 || Risk > 24) return 99.0;
  if (Risk == 0) return pplus_price(option);
  if (option.T <= 0.0) return 0.0;

  TwoBaskets moved = option;
  const auto price_at = [&](double& input, double value) {
    const double unmoved = input;
    input = value;
    const double price = pplus_price(moved);
    input = unmoved;
    return price;
  };
  const auto base = [&] { return pplus_price(option); };

  if (Risk <= 12) {
    const int i = (Risk - 1) % 4;
    double w[4];
    basket_weights(option, w);
    if (w[i] == 0.0) return 0.0;
    if (moved.sigma[i] <= 0.0) moved.sigma[i] = least_volatility;
    double& input = Risk <= 8 ? moved.S[i] : moved.sigma[i];
    const double size = step * input;
    const double up = price_at(input, (1.0 + step) * input);
    if (Risk <= 4 || Risk > 8) return (up - base()) / size;
    return (up + price_at(input, (1.0 - step) * input) - 2.0 * base()) / (size * size);
  }
  if (Risk <= 18) {
    double& rho = moved.rho[Risk - 13];
    if (rho == 0.0) return (price_at(rho, step) - base()) / step;
    return (price_at(rho, (1.0 - step) * rho) - base()) / (-step * rho);
  }
  const Lognormals of = match_moments(option);
  const double up = 1.0 + step;
  const double down = 1.0 - step;
  const double time_step = day_step(option.T);
  switch (Risk) {
    case 19:
      return -option.T * base();
    case 20:
      return (price_at(moved.T, option.T - time_step) - base()) / time_step;
    case 21:
      return (price_of_moved(option, up, up) + price_of_moved(option, down, down) -
              price_of_moved(option, up, down) - price_of_moved(option, down, up)) /
             (4.0 * (step * of.FA) * (step * of.FB));
    case 22:
      return of.sigma_A;
    case 23:
      return of.sigma_B;
    default:
      return of.rho;
  }
}

}  // namespace kestran
