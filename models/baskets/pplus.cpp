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

constexpr int number(TwoBasketResult result) { return static_cast<int>(result); }

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
struct LognormalBaskets {
  double FA, FB;
  double sigma_A, sigma_B, rho;
};

LognormalBaskets match_moments(const TwoBaskets& option) {
  double w[4];
  basket_weights(option, w);
  double sigma[4];
  // A component that is left out must not enter, whatever its volatility.
  for (int i = 0; i < 4; ++i) sigma[i] = w[i] == 0.0 ? least_volatility : floored_volatility(option.sigma[i]);
  const double* S = option.S;
  const double T = option.T;
  const double Tset[2] = {T, T};
  const double* rho = option.rho;
  const double packed_correl[6] = {rho[0], rho[2], rho[3], rho[4], rho[5], rho[1]};
  const double FA = w[0] * S[0] + w[1] * S[1];
  const double FB = w[2] * S[2] + w[3] * S[3];
  constexpr double none = std::numeric_limits<double>::quiet_NaN();
  const FixingBasket A = {S, sigma, w, Tset, 2};
  const FixingBasket B = {S + 2, sigma + 2, w + 2, Tset, 2};
  if (has_both_signs(A) || has_both_signs(B)) return {FA, FB, none, none, none};
  return {FA, FB, basket_vol_tset(A, rho, T, 0), basket_vol_tset(B, rho + 1, T, 0),
          basket_correl_tset(A, B, packed_correl, T)};
}

// With the prices of basket A multiplied by `up_A` and those of B by `up_B`.
double price_of_moved(TwoBaskets option, double up_A, double up_B) {
  for (int i = 0; i < 2; ++i) {
    option.S[i] *= up_A;
    option.S[2 + i] *= up_B;
  }
  return pplus_price(option);
}

double price(const TwoBaskets& option) {
  if (!flags_known(option)) return -99.0;
  const double sign = option.OptType == 0 ? -1.0 : 1.0;
  const LognormalBaskets of = match_moments(option);
  if (option.T <= 0.0) return positive_part(sign * (of.FA - of.FB - option.K));
  const double root_T = std::sqrt(option.T);
  double result[3];
  return spread_kernel(of.FA, of.FB, option.K, of.sigma_A * root_T, of.sigma_B * root_T, of.rho,
                       exponential(-option.r * option.T), option.OptType, result);
}

}  // namespace

double pplus_price(const TwoBaskets& option) { return repriced(option.kept, option, price); }

double pplus_greek(const TwoBaskets& option, int Risk) {
  if (!flags_known(option)) return -99.0;
  if (Risk < 0 || Risk > number(TwoBasketResult::correlation)) return 99.0;
  if (Risk == number(TwoBasketResult::premium)) return pplus_price(option);
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

  if (Risk < number(TwoBasketResult::first_correlation)) {
    const int i = (Risk - number(TwoBasketResult::first_delta)) % 4;
    double w[4];
    basket_weights(option, w);
    if (w[i] == 0.0) return 0.0;
    moved.sigma[i] = floored_volatility(moved.sigma[i]);
    const bool by_volatility = Risk >= number(TwoBasketResult::first_vega);
    double& input = by_volatility ? moved.sigma[i] : moved.S[i];
    const double size = bump * input;
    const double up = price_at(input, bump_up * input);
    if (Risk < number(TwoBasketResult::first_gamma) || by_volatility) return (up - base()) / size;
    return (up + price_at(input, bump_down * input) - 2.0 * base()) / (size * size);
  }
  if (Risk < number(TwoBasketResult::carry_rho)) {
    double& rho = moved.rho[Risk - number(TwoBasketResult::first_correlation)];
    if (rho == 0.0) return (price_at(rho, bump) - base()) / bump;
    return (price_at(rho, bump_down * rho) - base()) / (-bump * rho);
  }
  const LognormalBaskets of = match_moments(option);
  const double time_step = day_step(option.T);
  switch (static_cast<TwoBasketResult>(Risk)) {
    case TwoBasketResult::carry_rho:
      return -option.T * base();
    case TwoBasketResult::theta:
      return (price_at(moved.T, option.T - time_step) - base()) / time_step;
    case TwoBasketResult::cross_gamma:
      return (price_of_moved(option, bump_up, bump_up) + price_of_moved(option, bump_down, bump_down) -
              price_of_moved(option, bump_up, bump_down) - price_of_moved(option, bump_down, bump_up)) /
             (4.0 * (bump * of.FA) * (bump * of.FB));
    case TwoBasketResult::volatility_A:
      return of.sigma_A;
    case TwoBasketResult::volatility_B:
      return of.sigma_B;
    case TwoBasketResult::correlation:
      return of.rho;
    default:
      return 99.0;
  }
}

}  // namespace kestran
