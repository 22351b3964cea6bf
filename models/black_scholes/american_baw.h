// American options by the quadratic approximation.
#pragma once

#include "models/black_scholes/american_result.h"

namespace kestran {

/// What american_baw works out in one go.
struct BawResult {
  double price = 0.0;
  double delta = 0.0;
  double gamma = 0.0;
};

/// Price beyond which the approximation below exercises an option: above the strike K for a call, below it
/// for a put. Arguments as in american_baw, T and sigma above 0. Meant for options with one exercise boundary
/// (see early_exercise.h); not a number where none is found.
double baw_critical_price(double K, double T, double r, double q, double sigma, int OptType);

/// Premium or a sensitivity of an American option by the quadratic approximation (Barone-Adesi and Whaley
/// 1987, "Efficient analytic approximation of American option values"): the European premium, by bs_general,
/// plus a multiple of a power of S.
///
/// S price, K strike, T years to expiry, r interest rate and q yield (continuous, per year; both may be zero
/// or negative), sigma volatility (per year). OptType 0 put, any other value call. RetType:
///   0 premium   1 delta   2 gamma   3 vega, per 1.00 of volatility
///   4 sensitivity to r and q moving together   5 theta, change of value per year as time passes
///   6 rho, r alone   7 change of delta with volatility
/// 3 .. 7 are one-sided differences over 0.1 % of the volatility or the rate (0.0001 for one nearer zero) and
/// over one day. An option that is never exercised early, as a call without yield at r >= 0, has every result
/// of the European one. Beyond the critical price the premium is the intrinsic value, delta 1 or -1, the rest
/// 0.
///
/// Root mean square error at K = 100, S 78 .. 128, rates and yields up to 12 %, against a tree of 1000 steps:
/// 0.010 at T = 0.1, 0.033 at 0.5, 0.072 at 1, 0.42 at 3 and 1.8 at 10 years, the largest five times that;
/// long options are better priced by american_binomial. Where negative rates lead to two boundaries the
/// result is only a lower bound: the greater of European premium and intrinsic value.
///
/// T <= 0 or not a number: RetType 0 is the intrinsic value, every other RetType 0. sigma <= 0 is taken as
/// 1e-5. A negative S or K before expiry gives not a number, an unknown RetType 99.0. Other bad input gives
/// what the arithmetic gives, mostly not a number.
///
/// kept: what other results of the same call worked out, null for nothing.
double american_baw(double S, double K, double T, double r, double q, double sigma, int OptType, int RetType,
                    AmericanRepricings<BawResult>* kept = nullptr);

}  // namespace kestran
