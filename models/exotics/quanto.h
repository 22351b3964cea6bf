// Options on assets priced in a foreign currency.
#pragma once

namespace kestran {

/// Results of a quanto option, by their number on the worksheet; S is the asset, E the exchange rate.
enum class QuantoResult : int {
  premium,
  delta_S,
  delta_E,
  gamma_S,
  gamma_E,
  cross_gamma,
  vega_S,
  vega_E,
  by_correlation,
  rho_domestic,
  rho_foreign,
  theta,
};
constexpr int quanto_results = 12;

/// The terms of an option on an asset S priced in a foreign currency, of which one unit costs E. Rates are
/// continuous, rates and volatilities per year.
struct QuantoOption {
  double E = 0.0;       // exchange rate, domestic per foreign
  double S = 0.0;       // price of the asset, foreign
  double K = 0.0;       // strike
  double rd = 0.0;      // domestic interest rate
  double rf = 0.0;      // foreign interest rate
  double q = 0.0;       // yield of the asset
  double sigmaS = 0.0;  // volatility of the asset, 0 and less taken as 1e-5
  double sigmaE = 0.0;  // and of the exchange rate
  double rho = 0.0;     // correlation of their logarithms (not checked)
  double T = 0.0;       // years to expiry
  int OptType = 0;      // 0 put, any other value call
  int Qtype = 0;        // see below
};

/// Premium or a sensitivity, in domestic currency, of a European option on an asset priced in a foreign
/// currency, of Reiner's (1992, "Quanto mechanics") four types, each a bs_general with the drift and
/// volatility it implies. Qtype and the call's payoff are
///   1 E max(S - K, 0) at the rate of expiry, K foreign    2 max(E S - K, 0), K domestic
///   3 E max(S - K, 0) at today's rate, K foreign          4 S max(E - K, 0), K domestic per foreign
///
/// All results are closed forms. RetType:
///   0 premium   1, 2 delta to the asset, to the exchange rate   3, 4 gamma likewise   5 cross gamma
///   6, 7 vega to sigmaS, to sigmaE, per 1.00 of volatility   8 to rho, per 1.00 of correlation
///   9, 10 rho to the domestic, to the foreign rate   11 theta, change of value per year as time passes
///
/// T <= 0 or not a number: RetType 0 is the payoff, every other RetType 0. A negative E, S or K before expiry
/// gives not a number, an unknown Qtype or RetType 99.0.
double quanto_option(const QuantoOption& terms, int RetType);

/// Every result of quanto_option for one option: results[RetType], with its bits.
void quanto_all(const QuantoOption& terms, double results[quanto_results]);

}  // namespace kestran
