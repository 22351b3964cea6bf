// Options on the average of daily prices: conditioning on the geometric average.
#pragma once

#include "models/repricings.h"

namespace kestran {

/// Results of the average-price option, by their number on the worksheet: `before` and `within` averaging.
enum class GeoCondResult : int {
  premium,
  delta,
  gamma,
  vega_before,
  rho,
  theta,
  delta_by_vol_before,
  vega_within,
  delta_by_vol_within,
};

/// What moves from one repricing of the option to the next.
struct GeoCondTerms {
  double S, r, q, sigma1, sigma2, E, B;
};
using GeoCondRepricings = Repricings<GeoCondTerms, double, 16>;

/// European option on the arithmetic average of daily fixings, one a calendar day from B to E days ahead,
/// paid on the day of the last: the expected average given the geometric average of the same fixings sets an
/// effective strike, above which the average's lognormal terms are summed (after Curran 1994, "Valuing Asian
/// and portfolio options by conditioning on the geometric mean price", Management Science 40).
///
/// S price, K strike, A average of the fixings made, r interest rate and q yield (continuous, per year),
/// sigma1 volatility until averaging starts and sigma2 from then on (per year), E days to the last fixing, B
/// days to the first, negative once averaging has begun: -B fixings are made, that of today is not. OptType 0
/// put, any other value call. RetType selects the result:
///   0 price   1 delta   2 gamma   3 and 7 vega by sigma1 and sigma2, per 1.00 of volatility
///   4 sensitivity to r and q moving in proportion, per 1.00 of r; not finite at r = 0
///   5 theta, change over one day per year; today's fixing is taken to come in at A
///   6 and 8 change of delta with sigma1 and sigma2   9 and any other: -1e17, no such sensitivity
/// Sensitivities are differences of repriced values: relative steps of 0.001, theta one day.
///
/// E < 1: averaging is over; RetType 0 is the payoff on A, undiscounted, every other RetType 0. Not a number:
/// no fixing left (B > E), more than 100,000 fixings left, fixings made that leave no positive strike (a call
/// then surely pays), a negative strike, and a price that is not positive. Nothing else is checked.
///
/// The price lies below the exact one. Largest error in units of S, against the exact value of the discrete
/// average (the average-price equation solved numerically, itself checked by simulation), for S/K from 0.7
/// to 1.5, one volatility for both, averaging over all or the last part of T, 5 to 365 fixings:
///   sigma sqrt(T)           0.04     0.1      0.25     0.4      0.63     1        1.6      2.5
///   r = q                   4e-7     1.4e-6   1.4e-5   6e-5     2.3e-4   9e-4     3.5e-3   1.5e-2
///   |r - q| = 0.05          9e-5     4.5e-5   6e-5     1.4e-4   3.5e-4   9e-4     3.6e-3   1.8e-2
///   |r - q| = 0.1           1.8e-3   8e-4     4.5e-4   6e-4     1e-3     1.7e-3   5e-3     2.5e-2
/// With r away from q the error comes from a drift that is not scaled by time. A sigma2 of 1.5 times sigma1
/// doubles or triples the error; from about sigma sqrt(T) = 2.5 on the price is no longer usable. Neither is
/// it for a strike many times the price, as fixings made can leave it near the end of averaging (from about 8
/// times with a few fixings to come): there the call is the forward value, below 0, and the put 0.
///
/// kept: what other results of the same call worked out, null for nothing.
double asian_geo_cond(double S, double K, double A, double r, double q, double sigma1, double sigma2, int E,
                      int B, int OptType, int RetType, GeoCondRepricings* kept = nullptr);

}  // namespace kestran
