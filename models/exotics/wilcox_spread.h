// European options on a forward spread that is normally distributed, and their sensitivities.
#pragma once

#include "models/black_scholes/european.h"

namespace kestran {

/// Premium or a sensitivity of an option on a forward spread: Wilcox (1990), "Energy futures and options:
/// spread options in energy markets". The formula is Bachelier's (1900), so spread and strike may be
/// negative. Normal distribution by cnorm; the density takes 6.2832 for 2 pi, which is intended.
///
/// F forward spread, K strike, r interest rate (continuous, per year), sigma volatility in price units per
/// root of a year, T years to expiry. OptType 1 call, any other value put. RetType,
/// as in EuropeanResult:
///   0 premium   1 delta   2 gamma   3 vega, per 1.00 of price volatility   4 rho, per 1.00 of rate
///   5 theta, change of value per year as time passes   6 and 7 zero
///   8 change of delta per year as time passes
/// The put's theta lies 2 (F - K) r e^(-rT) above the exact derivative, as intended.
/// Any other RetType gives 0. Nothing is checked: a zero volatility or time gives what the arithmetic gives.
double wilcox_spread(double F, double K, double r, double sigma, double T, int OptType, int RetType);

/// Every result of wilcox_spread for one option: results[RetType], with its bits.
void wilcox_spread_all(double F, double K, double r, double sigma, double T, int OptType,
                       double results[european_results]);

}  // namespace kestran
