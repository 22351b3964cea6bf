// Lookback options whose running extreme starts at the strike, and their sensitivities.
#pragma once

#include "models/repricings.h"

namespace kestran {

/// Results of a lookback option, by their number on the worksheet.
enum class LookbackResult : int {
  premium,
  delta,
  gamma,
  vega,
  rho,
  theta,
  delta_by_volatility,
};

/// Price of a floating-strike lookback option, Goldman, Sosin and Gatto (1979) with the yield of Garman
/// (1989); normal distribution by cnorm. K is the extreme seen so far: a call pays the final price less the
/// lower of K and the lowest price from now on, a put the higher of K and the highest price from now on, less
/// the final price. That reading needs K <= S for a call and K >= S for a put; elsewhere the formula is
/// applied all the same.
///
/// S price, K strike, r interest rate and q yield (continuous, per year), sigma volatility (per year), days
/// to expiry, of which daysPerYear make a year. OptType 0 put, any other value call. r and q equal as doubles
/// take the limit; a small difference loses digits to cancellation, about 1e-16 S sigma^2 / |r - q|. Nothing
/// is checked: a zero volatility, time or strike gives the infinities and NaN of the arithmetic. The error of
/// cnorm is multiplied by sigma^2 / (2 (r - q)) and, at low volatility, by powers of S / K: for S = 100 and
/// up to two years within 2e-4 at 5 to 80 %, 1.5e-2 at 2 %; below 1 % the price can be not a number.
double lookback_price(double S, double K, double r, double q, double sigma, double days, int OptType,
                      double daysPerYear);

/// What moves from one repricing of a lookback option to the next: factors, and the time in days.
struct LookbackMoves {
  double price, volatility, rates, days;
};
using LookbackRepricings = Repricings<LookbackMoves, double, 12>;

/// Price or a sensitivity by repricing, arguments as in lookback_price. RetType:
///   0 price   1 delta   2 gamma   3 vega, per 1.00 of volatility
///   4 rho, per 1.00 of r, both rates moving in proportion; 0 for r = 0
///   5 theta, change of value per year as time passes   6 change of delta with volatility
/// Price, volatility and rates move by 0.1 %, theta takes one day off: with less than a day left it is NaN.
/// Any other RetType gives NaN.
///
/// kept: what other results of the same call worked out, null for nothing.
double lookback_greek(double S, double K, double r, double q, double sigma, double days, int OptType,
                      double daysPerYear, int RetType, LookbackRepricings* kept = nullptr);

/// All seven results of lookback_greek into out[0] .. out[6].
void lookback_greeks(double S, double K, double r, double q, double sigma, double days, int OptType,
                     double daysPerYear, double* out);

}  // namespace kestran
