#include "models/exotics/quanto.h"

#include <cmath>
#include <limits>

#include "models/bumps.h"

namespace kestran {
namespace {

using B = EuropeanResult;

// The European option behind a quanto.
struct Inner {
  double S, K, T, r, q, sigma;
  int OptType;
  KeptResults<european_results>* kept;
  double operator()(EuropeanResult result) const {
    const int i = static_cast<int>(result);
    if (kept == nullptr) return bs_general(S, K, T, r, q, sigma, OptType, i);
    return kept_result(kept, i,
                       [&](double* results) { bs_general_all(S, K, T, r, q, sigma, OptType, results); });
  }
  // Sensitivity to the yield.
  double to_yield() const { return -T * (*this)(B::premium) - (*this)(B::rho); }
};

// The results of an option on one of the two prices, multiplied by the other, that do not depend on how rates
// and volatilities come in; 0 for the rest.
double multiplied(const Inner& option, double other, bool on_asset, QuantoResult result) {
  const auto delta = on_asset ? QuantoResult::delta_S : QuantoResult::delta_E;
  const auto gamma = on_asset ? QuantoResult::gamma_S : QuantoResult::gamma_E;
  const auto delta_of_other = on_asset ? QuantoResult::delta_E : QuantoResult::delta_S;
  if (result == QuantoResult::premium) return other * option(B::premium);
  if (result == delta) return other * option(B::delta);
  if (result == delta_of_other) return option(B::premium);
  if (result == gamma) return other * option(B::gamma);
  if (result == QuantoResult::cross_gamma) return option(B::delta);
  if (result == QuantoResult::theta) return other * option(B::theta);
  return 0.0;
}

// E max(S - K, 0) at the exchange rate of expiry: the foreign option, exchanged.
double foreign_strike(const Inner& option, double E, QuantoResult result) {
  if (result == QuantoResult::vega_S) return E * option(B::vega);
  if (result == QuantoResult::rho_foreign) return E * option(B::rho);
  return multiplied(option, E, true, result);
}

// max(E S - K, 0): an option on the asset's domestic price.
double domestic_strike(const Inner& option, double E, double S, double sigmaS, double sigmaE, double rho,
                       QuantoResult result) {
  switch (result) {
    case QuantoResult::premium:
      return option(B::premium);
    case QuantoResult::delta_S:
      return E * option(B::delta);
    case QuantoResult::delta_E:
      return S * option(B::delta);
    case QuantoResult::gamma_S:
      return E * E * option(B::gamma);
    case QuantoResult::gamma_E:
      return S * S * option(B::gamma);
    case QuantoResult::cross_gamma:
      return option(B::delta) + E * S * option(B::gamma);
    case QuantoResult::vega_S:
      return option(B::vega) * (sigmaS + rho * sigmaE) / option.sigma;
    case QuantoResult::vega_E:
      return option(B::vega) * (sigmaE + rho * sigmaS) / option.sigma;
    case QuantoResult::by_correlation:
      return option(B::vega) * sigmaS * sigmaE / option.sigma;
    case QuantoResult::rho_domestic:
      return option(B::rho);
    case QuantoResult::theta:
      return option(B::theta);
    default:
      return 0.0;
  }
}

// E max(S - K, 0) at today's exchange rate: the yield holds the domestic less the foreign rate and the
// covariance.
double fixed_exchange_rate(const Inner& option, double E, double sigmaS, double sigmaE, double rho,
                           QuantoResult result) {
  switch (result) {
    case QuantoResult::vega_S:
      return E * (option(B::vega) + option.to_yield() * rho * sigmaE);
    case QuantoResult::vega_E:
      return E * option.to_yield() * rho * sigmaS;
    case QuantoResult::by_correlation:
      return E * option.to_yield() * sigmaS * sigmaE;
    case QuantoResult::rho_domestic:
      return -option.T * E * option(B::premium);
    case QuantoResult::rho_foreign:
      return -E * option.to_yield();
    default:
      return multiplied(option, E, true, result);
  }
}

// S max(E - K, 0): an option on the exchange rate in units of the asset; the rate holds the covariance.
double asset_linked(const Inner& option, double S, double sigmaS, double sigmaE, double rho,
                    QuantoResult result) {
  switch (result) {
    case QuantoResult::vega_S:
      return S * option(B::rho) * rho * sigmaE;
    case QuantoResult::vega_E:
      return S * (option(B::vega) + option(B::rho) * rho * sigmaS);
    case QuantoResult::by_correlation:
      return S * option(B::rho) * sigmaS * sigmaE;
    case QuantoResult::rho_domestic:
      return S * option(B::rho);
    case QuantoResult::rho_foreign:
      return -S * option(B::rho);
    default:
      return multiplied(option, S, false, result);
  }
}

}  // namespace

double quanto_option(const QuantoOption& terms, int RetType, KeptResults<european_results>* kept) {
  const auto [E, S, K, rd, rf, q, given_sigmaS, given_sigmaE, rho, T, OptType, Qtype] = terms;
  if (Qtype < 1 || Qtype > 4 || RetType < 0 || RetType > 11) return 99.0;
  if (!(T > 0.0) && RetType != 0) return 0.0;
  if (T > 0.0 && (E < 0.0 || S < 0.0 || K < 0.0)) return std::numeric_limits<double>::quiet_NaN();
  const double sigmaS = floored_volatility(given_sigmaS);
  const double sigmaE = floored_volatility(given_sigmaE);
  const auto result = static_cast<QuantoResult>(RetType);
  const double covariance = rho * sigmaS * sigmaE;

  if (Qtype == 1) return foreign_strike({S, K, T, rf, q, sigmaS, OptType, kept}, E, result);
  if (Qtype == 2) {
    const double variance = sigmaS * sigmaS + sigmaE * sigmaE + 2.0 * covariance;
    const double sigma =
        variance <= least_volatility * least_volatility ? least_volatility : std::sqrt(variance);
    return domestic_strike({E * S, K, T, rd, q, sigma, OptType, kept}, E, S, sigmaS, sigmaE, rho, result);
  }
  const double carry = rd - rf + q + covariance;
  if (Qtype == 3)
    return fixed_exchange_rate({S, K, T, rd, carry, sigmaS, OptType, kept}, E, sigmaS, sigmaE, rho, result);
  return asset_linked({E, K, T, carry, q, sigmaE, OptType, kept}, S, sigmaS, sigmaE, rho, result);
}

}  // namespace kestran
