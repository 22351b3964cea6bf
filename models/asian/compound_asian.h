// Options on average-price options.
#pragma once

namespace kestran {

/// The terms of a European option on an average-price option. Days are calendar days from today, whole or
/// not. The fixings still to be made are evenly spaced from toNext to ExpDays.
struct CompoundAsian {
  double S0 = 0.0;          // futures or forward price
  double r = 0.0;           // zero rate to ExpDays, continuous, per year
  double sigma1 = 0.0;      // volatility from the compound option's expiry until averaging starts, per year
  double sigma2 = 0.0;      // volatility while averaging lasts
  double A = 0.0;           // average of the fixings made
  int N = 0;                // fixings in all
  int m = 0;                // fixings made
  double toNext = 0.0;      // days to the next fixing
  double ExpDays = 0.0;     // days to the last fixing: expiry and payment of the average-price option
  double sigma_c = 0.0;     // volatility from today to the compound option's expiry
  double K = 0.0;           // strike of the average-price option
  double X = 0.0;           // strike of the compound option
  double CmpExpDays = 0.0;  // days to the compound option's expiry
  double rc = 0.0;          // zero rate to CmpExpDays, continuous, per year
  int CmpOptType = 0;       // odd: call on the average-price option, even: put; below 3: that is a call
  int steps = 0;            // tree steps; below 1 taken as 1, above compound_asian_most_steps as that
};

constexpr int compound_asian_most_steps = 2000;

/// Fixings still to be made, and days from the next to the last: ten years of either are priced, more would
/// keep the caller waiting.
constexpr double compound_asian_most_fixings = 3653.0;

/// Whether an option stays within compound_asian_most_fixings; not so where a day count is not a number.
bool compound_asian_is_bounded(const CompoundAsian& option);

/// Value of the average-price option at the compound option's expiry, when the price is then S and m of the N
/// fixings have come in at the average A: by asian_geo_cond, whose daily fixings stand for the evenly spaced
/// ones with sigma2 scaled so that the geometric average has the same variance. f interest rate from then to
/// payment, first and last days from then to the next and the last fixing, rounded to whole days; K, sigma1
/// and sigma2 as in CompoundAsian. No fixing left: the discounted payoff. Fixings made that leave a call
/// nothing but to pay: its discounted forward value, and 0 for the put. Never less than the forward value or
/// 0. A day count that is not a number or beyond 1e9 gives not a number, as does what asian_geo_cond refuses.
double compound_asian_node(double S, double A, double m, double N, double K, double f, double sigma1,
                           double sigma2, double first, double last, bool is_call);

/// Premium of the compound option. The price moves on the driftless log-space binomial tree to the compound
/// option's expiry, where compound_asian_node values the average-price option at each node and the payoff is
/// corrected at its kink (see models/trees/log_tree.h). Fixings on the way there are integrated out at each
/// node: their average, given the node's price, is taken as lognormal with the mean and variance of the
/// Brownian bridge, in three points. CmpExpDays <= 0: the payoff at today's price, undiscounted.
///
/// Error of the tree against 2000 steps, as a share of S0 sigma_c sqrt(CmpExpDays / 365.25), largest of 1188
/// cases with volatilities of 10 to 100 % and 10 to 200 days: 1.9e-3 at 50 steps, 8.6e-4 at 100, 3.8e-4 at
/// 200. At 2000 steps the bridge is within 0.06 % of the premium of simulated fixing paths (a month of daily
/// fixings, some or all of them before expiry, at 30 to 80 %; a year of weekly ones at 60 %). What
/// asian_geo_cond is off by comes on top.
///
/// An option that is not bounded, sigma_c = 0 and a lack of memory give not a number. Nothing else is
/// checked.
double compound_asian_tree(const CompoundAsian& option);

/// Premium or a sensitivity by repricing, with one-sided moves of 0.1 % unless said otherwise:
///   0 premium   1 delta   2 gamma, over one spacing of the nodes   3 vega per 1.00 of sigma_c
///   4 rho: r and rc up by 0.1 %, per 1.00 of rc; 0 when rc = 0
///   5 theta per year from one day (half of CmpExpDays when that is less), with the fixings that fall due
///     coming in at S0
///   6 change of delta with sigma_c   7 and 8 vegas of sigma1 and sigma2
/// Any other RetType gives 0, as do all but 0 when CmpExpDays <= 0. A sensitivity to a volatility of 0 is not
/// a number, nor is any of an option that is not bounded.
double compound_asian_greek(const CompoundAsian& option, int RetType);

}  // namespace kestran
