// European options with one barrier and a cash rebate, and their sensitivities.
#pragma once

#include "models/repricings.h"

namespace kestran {

/// Results of a barrier option, by their number on the worksheet.
enum class BarrierResult : int {
  premium,
  delta,
  gamma,
  vega,
  rho,
  theta,
};

/// Price of a knock-in or knock-out option: Reiner and Rubinstein (1991), "Breaking down the barriers", in
/// the terms A to F of Haug (2007), section 4.17.1; normal distribution by cnorm. Every term that the option
/// does not need is left out.
///
/// S price, K strike, sigma volatility (per year), r interest rate and q yield (per year), days to expiry, H
/// barrier, R rebate: of a knock-in paid at expiry if the barrier was never touched, of a knock-out when it
/// is touched. OptType 1 call, 2 or 0 put; KnockType 0 out, any other value in. H <= S is a barrier below the
/// price, H > S one above it. The price drifts at ln((1 + r) / (1 + q)), rates compounded once a year, while
/// values are discounted by e^(-rT) and e^(-qT) with T = days / 365.25; that mixture is intended.
///
/// Any other OptType and an H that is not a number give NaN. Nothing else is checked: a zero volatility,
/// time, price or barrier gives the infinities and NaN of the arithmetic. With a rebate of exactly 0 the
/// rebate's terms are 0 even where they could not be worked out, so that knock-in and knock-out add up to the
/// European option.
///
/// The error of cnorm is multiplied by powers of H / S that grow as the volatility falls: for S = 100 up to
/// 6e-5 at 20 %, 1e-3 at 10 %, 1e-2 at 5 % and 2e-2 at 3 %; at about 1 % and below a far barrier can make a
/// power infinite and the price not a number.
double barrier_price(double S, double K, double sigma, double r, double q, double days, double H, double R,
                     int OptType, int KnockType);

/// What moves from one repricing of a barrier option to the next.
struct BarrierTerms {
  double S, sigma, r, q, days;
};
using BarrierRepricings = Repricings<BarrierTerms, double, 8>;

/// Price or a sensitivity by repricing, arguments as in barrier_price. RetType:
///   0 price   1 delta   2 gamma   3 vega, per 1.00 of volatility   4 rho, per 1.00 of rate
///   5 theta, change of value per year as time passes: negative when value decays
/// Each moves its argument up by 0.1 %, gamma also down. Rho of a zero rate is 0; otherwise it moves both
/// rates to 1.001 r. Any other RetType gives -99.
///
/// kept: what other results of the same call worked out, null for nothing.
double barrier_greek(double S, double K, double sigma, double r, double q, double days, double H, double R,
                     int OptType, int KnockType, int RetType, BarrierRepricings* kept = nullptr);

}  // namespace kestran
