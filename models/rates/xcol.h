// Options on collars over a strip of forward prices that one common factor moves.
#pragma once

namespace kestran {

/// The terms of a European option on a collar, long a cap and short a floor on the same periods of equal
/// quantity, period 1 at index 0 of each array. A call is the right to enter the collar as the cap's buyer, a
/// put as the floor's buyer, at no further cost.
struct CollarOption {
  const double* Price = nullptr;    // forward price of each period
  const double* IntRt = nullptr;    // zero rate to the period's expiry, continuous, per year
  const double* Vol = nullptr;      // volatility of the period's caplet, per year, from option expiry on
  const double* ExpDays = nullptr;  // the period's expiry in YEARS (on the worksheet in days)
  int n = 0;                        // number of periods
  double SwapVol = 0.0;             // volatility of the common factor until option expiry, per year
  double VolSpread = 0.0;           // added to Vol for the floorlets, which take at least 1e-5
  double T = 0.0;                   // option expiry in years
  double Cap = 0.0;                 // strike of the cap
  double Floor = 0.0;               // strike of the floor
  double r = 0.0;                   // zero rate to option expiry, continuous, per year
  int N = 0;                        // tree steps; below 1 taken as 1, above xcol_most_steps as that
  int OptType = 0;                  // lowest bit set: call, else put
};

constexpr int xcol_most_steps = 2000;

/// Value per unit of quantity, at option expiry, of the collar when every forward price is multiplied by m >
/// 0: the mean over the periods of caplet less floorlet by Black's formula (Black 1976, equation 16), each
/// discounted at the forward rate from T to its own expiry. Normal distribution as cnorm has it. A period
/// that does not expire after T gives a number that is not finite, a lack of memory not a number.
double collar_strip_value(double m, const CollarOption& option);

/// Premium of the option per unit of quantity: the collar's values at the expiry nodes of the log-space
/// binomial tree of the factor, corrected at the kink of the payoff (see models/trees/log_tree.h), averaged
/// and discounted. Call less put is the discounted mean of the collar over the nodes.
///
/// Largest error against the integral over the lognormal factor, as a share of price SwapVol sqrt(T), for
/// SwapVol of 10 to 100 %, T of 0.1 to 2 years and strikes up to 40 % apart: 5.7e-3 at 50 steps, 2.7e-3 at
/// 100, 1.3e-3 at 200, smooth in N. At 25 %, three months and 100 steps that is 0.07 % of the premium.
///
/// T <= 0, SwapVol = 0 and a lack of memory give not a number; what collar_strip_value says of bad periods
/// holds here.
double xcol_tree(const CollarOption& option);

/// Premium or a sensitivity by repricing, with one-sided moves of 0.1 % unless said otherwise:
///   0 premium
///   1 delta: all prices up by 0.001 of their mean
///   2 gamma: all prices up and down by one spacing of the nodes, since less does not resolve the tree; not a
///     number when that exceeds a price
///   3 vega per 1.00 of SwapVol
///   4 rho: IntRt of every period and r up by 0.0001
///   5 theta per year from 0.001 year (1e-6 when T is not more than 0.001; 0 when T is not more than 1e-6)
///   6 and 7 per 1.00 of every Vol, of VolSpread (up by 0.0001)
///   8 and 9 per 1.00 of Cap, of Floor; 0 for a strike of 0
///   10 value of the collar at option expiry at today's forward prices (not an option's value)
///   11 + k  delta to the price of period k alone, k from 0; 0 for k >= n
/// A negative RetType gives 0.
double xcol_greeks(const CollarOption& option, int RetType);

}  // namespace kestran
