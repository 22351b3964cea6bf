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

/// Premium or a sensitivity, in domestic currency, of a European option on an asset priced in a foreign
/// currency, of Reiner's (1992, "Quanto mechanics") four types, each a bs_general with the drift and
/// volatility it implies. With S the asset in foreign currency and E the domestic price of one unit of that
/// currency, Qtype and the call's payoff are
///   1 E max(S - K, 0) at the rate of expiry, K foreign    2 max(E S - K, 0), K domestic
///   3 E max(S - K, 0) at today's rate, K foreign          4 S max(E - K, 0), K domestic per foreign
///
/// E exchange rate, S price, K strike, rd and rf domestic and foreign interest rates and q the asset's yield
/// (continuous, per year), sigmaS and sigmaE volatilities of the asset and of the exchange rate (per year; 0
/// and less are taken as 1e-5), rho correlation of their logarithms (not checked), T years to expiry. OptType
/// 0 put, any other value call. All results are closed forms. RetType:
///   0 premium   1, 2 delta to the asset, to the exchange rate   3, 4 gamma likewise   5 cross gamma
///   6, 7 vega to sigmaS, to sigmaE, per 1.00 of volatility   8 to rho, per 1.00 of correlation
///   9, 10 rho to the domestic, to the foreign rate   11 theta, change of value per year as time passes
///
/// T <= 0 or not a number: RetType 0 is the payoff, every other RetType 0. A negative E, S or K before expiry
/// gives not a number, an unknown Qtype or RetType 99.0.
double quanto_option(double E, double S, double K, double rd, double rf, double q, double sigmaS,
                     double sigmaE, double rho, double T, int OptType, int Qtype, int RetType);

}  // namespace kestran
