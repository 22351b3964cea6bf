#include "models/exotics/quanto.h"

#include <cmath>
#include <limits>

#include "models/black_scholes/european.h"
#include "models/bumps.h"
#include "models/repricings.h"

namespace kestran {
namespace {

using B = EuropeanResult;

// The European option behind a quanto.
struct Inner {
  double S, K, T, r, q, sigma;
  int OptType;
  double operator()(EuropeanResult result) const {
    return bs_general(S, K, T, r, q, sigma, OptType, static_cast<int>(result));
  }
};

// The same with all its results worked out.
struct KnownInner {
  double T, sigma;
  double results[european_results];
  double operator()(EuropeanResult result) const { return results[static_cast<int>(result)]; }
};

// Sensitivity to the yield.
template <class Option>
double to_yield(const Option& option) {
  return -option.T * option(B::premium) - option(B::rho);
}

// The results of an option on one of the two prices, multiplied by the other, that do not depend on how rates
// and volatilities come in; 0 for the rest.
template <class Option>
[[gnu::always_inline]] inline double multiplied(const Option& option, double other, bool on_asset,
                                                QuantoResult result) {
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
template <class Option>
[[gnu::always_inline]] inline double foreign_strike(const Option& option, double E, QuantoResult result) {
  if (result == QuantoResult::vega_S) return E * option(B::vega);
  if (result == QuantoResult::rho_foreign) return E * option(B::rho);
  return multiplied(option, E, true, result);
}

// max(E S - K, 0): an option on the asset's domestic price.
template <class Option>
[[gnu::always_inline]] inline double domestic_strike(const Option& option, double E, double S, double sigmaS,
                                                     double sigmaE, double rho, QuantoResult result) {
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
template <class Option>
[[gnu::always_inline]] inline double fixed_exchange_rate(const Option& option, double E, double sigmaS,
                                                         double sigmaE, double rho, QuantoResult result) {
  switch (result) {
    case QuantoResult::vega_S:
      return E * (option(B::vega) + to_yield(option) * rho * sigmaE);
    case QuantoResult::vega_E:
      return E * to_yield(option) * rho * sigmaS;
    case QuantoResult::by_correlation:
      return E * to_yield(option) * sigmaS * sigmaE;
    case QuantoResult::rho_domestic:
      return -option.T * E * option(B::premium);
    case QuantoResult::rho_foreign:
      return -E * to_yield(option);
    default:
      return multiplied(option, E, true, result);
  }
}

// S max(E - K, 0): an option on the exchange rate in units of the asset; the rate holds the covariance.
template <class Option>
[[gnu::always_inline]] inline double asset_linked(const Option& option, double S, double sigmaS,
                                                  double sigmaE, double rho, QuantoResult result) {
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

Inner inner_of(const QuantoOption& terms, double sigmaS, double sigmaE) {
  const auto& [E, S, K, rd, rf, q, given_sigmaS, given_sigmaE, rho, T, OptType, Qtype] = terms;
  const double covariance = rho * sigmaS * sigmaE;
  if (Qtype == 1) return {S, K, T, rf, q, sigmaS, OptType};
  if (Qtype == 2) {
    const double variance = sigmaS * sigmaS + sigmaE * sigmaE + 2.0 * covariance;
    const double sigma =
        variance <= least_volatility * least_volatility ? least_volatility : std::sqrt(variance);
    return {E * S, K, T, rd, q, sigma, OptType};
  }
  const double carry = rd - rf + q + covariance;
  if (Qtype == 3) return {S, K, T, rd, carry, sigmaS, OptType};
  return {E, K, T, carry, q, sigmaE, OptType};
}

// A result of the quanto from those of the option behind it.
template <class Option>
[[gnu::always_inline]] inline double result_of(const QuantoOption& terms, double sigmaS, double sigmaE,
                                               const Option& option, QuantoResult result) {
  if (terms.Qtype == 1) return foreign_strike(option, terms.E, result);
  if (terms.Qtype == 2) return domestic_strike(option, terms.E, terms.S, sigmaS, sigmaE, terms.rho, result);
  if (terms.Qtype == 3) return fixed_exchange_rate(option, terms.E, sigmaS, sigmaE, terms.rho, result);
  return asset_linked(option, terms.S, sigmaS, sigmaE, terms.rho, result);
}

bool has_negative_price(const QuantoOption& terms) {
  return terms.T > 0.0 && (terms.E < 0.0 || terms.S < 0.0 || terms.K < 0.0);
}

}  // namespace

double quanto_option(const QuantoOption& terms, int RetType) {
  if (terms.Qtype < 1 || terms.Qtype > 4 || RetType < 0 || RetType >= quanto_results) return 99.0;
  if (!(terms.T > 0.0) && RetType != 0) return 0.0;
  if (has_negative_price(terms)) return std::numeric_limits<double>::quiet_NaN();
  const double sigmaS = floored_volatility(terms.sigmaS);
  const double sigmaE = floored_volatility(terms.sigmaE);
  return result_of(terms, sigmaS, sigmaE, inner_of(terms, sigmaS, sigmaE),
                   static_cast<QuantoResult>(RetType));
}

void quanto_all(const QuantoOption& terms, double results[quanto_results]) {
  if (terms.Qtype < 1 || terms.Qtype > 4 || !(terms.T > 0.0) || has_negative_price(terms)) {
    for (int i = 0; i < quanto_results; ++i) results[i] = quanto_option(terms, i);
    return;
  }
  const double sigmaS = floored_volatility(terms.sigmaS);
  const double sigmaE = floored_volatility(terms.sigmaE);
  const auto [S, K, T, r, q, sigma, OptType] = inner_of(terms, sigmaS, sigmaE);
  KnownInner known;
  known.T = T;
  known.sigma = sigma;
  bs_general_all(S, K, T, r, q, sigma, OptType, known.results);
  const auto result = [&](int i) __attribute__((always_inline)) {
    return result_of(terms, sigmaS, sigmaE, known, static_cast<QuantoResult>(i));
  };
  every_result(results, result, Results<quanto_results>());
}

}  // namespace kestran
