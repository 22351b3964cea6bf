// Options on caps and floors over a strip of forward prices that one common factor moves.
#pragma once

#include "models/repricings.h"

namespace kestran {

/// Premiums that several results need: as the terms are, and with all prices up.
using CapKept = KeptPrices<2>;

/// The terms of a European option on a cap or floor, period 1 at index 0 of each array.
struct CapOption {
  const double* Price = nullptr;    // forward price of each period
  const double* IntRt = nullptr;    // zero rate to the period's expiry, continuous, per year
  const double* Vol = nullptr;      // volatility of the period, per year, for valuing it at option expiry
  const double* ExpDays = nullptr;  // the period's expiry in YEARS (on the worksheet in days)
  const double* Qty = nullptr;      // quantity of the period
  int n = 0;                        // number of periods
  double StripVol = 0.0;            // volatility of the common factor, per year
  double CfStrike = 0.0;            // strike of the cap or floor
  double CompStrike = 0.0;          // strike of the option on it
  double T = 0.0;                   // option expiry in years
  double r = 0.0;                   // discount rate to the option's expiry, continuous, per year
  double r_carry = 0.0;             // carry of the factor: r for a factor without drift
  int N = 0;                        // tree steps, 1 .. xcap_most_steps
  int OptType = 0;                  // lowest bit set: call, else put; below 3: on a cap, else on a floor
  CapKept* kept = nullptr;          // what other results of the same call worked out; null for nothing
};

constexpr int xcap_most_steps = 10000;

/// Value per unit of quantity, at the option's expiry T, of the cap (else floor) struck at CfStrike when
/// every forward price is multiplied by m > 0: the quantity-weighted mean of the periods' calls (puts) by
/// Black's formula (Black 1976, equation 16), each discounted at the forward rate from T to its own expiry.
/// Normal distribution as cnorm has it. A period that does not expire after T or a total quantity of 0 gives
/// a number that is not finite.
double capfloor_strip_value(double m, const double* Price, const double* IntRt, const double* Vol,
                            const double* ExpDays, const double* Qty, double T, double CfStrike, double r,
                            int n, bool is_cap);

/// Premium of the option. The factor moves on the recombining binomial tree in log space that matches its
/// mean and variance over each step (Trigeorgis 1991); the payoffs at the expiry nodes are added up with
/// their binomial weights, which is what rolling them back through the tree gives, within 1e-12 of the price
/// scale. Nodes that cannot reach the last bit of the sum are left out. Against the integral over the
/// lognormal factor (300 options on 2 to 12 periods, volatilities of 10 to 100 %, 20 to 365 days) the error
/// is up to 3.7 % of the premium at the money at 25 steps, 1.5 % at 50, 0.8 % at 100, 0.56 % at 200, 0.24 %
/// at 400 and 0.09 % at 1000, in 95 % of them within about half of that, of either sign.
///
/// N outside 1 .. xcap_most_steps, T <= 0, StripVol = 0 and a lack of memory give not a number; what
/// capfloor_strip_value says of bad periods holds here.
double xcap_tree(const CapOption& option);

enum class CapResult : int {
  premium = 0,
  delta = 1,  // all prices up by 0.001 of their mean
  gamma = 2,  // the same up and down: small against the spacing of the nodes, it meets the payoff's
              // kink only by chance, so gamma is unsteady in N
  vega = 3,   // per 1.00 of StripVol: up by 0.1 %
  rho = 4,    // r and r_carry up by 0.1 %; 0 when r = 0
  theta = 5,  // per year, from 0.001 year (1e-6 when T is not more than 0.001; 0 when T <= 1e-6)
  first_period_delta = 11  // and on: delta to the price of that period alone (up by 0.1 %); 0 beyond the last
};

/// Premium or a sensitivity by repricing: RetType is a CapResult. Any other gives 0.
double xcap_greeks(const CapOption& option, int RetType);

}  // namespace kestran
