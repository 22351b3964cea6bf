// Options on collars over a strip of forward prices that one common factor moves.
#pragma once

#include "models/repricings.h"

namespace kestran {

/// What several results need: the premium, and its change with all prices up.
using CollarKept = KeptPrices<2>;

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
  double VolSpread = 0.0;           // added to Vol for the floorlets
  double T = 0.0;                   // option expiry in years
  double Cap = 0.0;                 // strike of the cap
  double Floor = 0.0;               // strike of the floor
  double r = 0.0;                   // zero rate to option expiry, continuous, per year
  int OptType = 0;                  // lowest bit set: call, else put
  CollarKept* kept = nullptr;       // what other results of the same call worked out; null for nothing
};

/// Value per unit of quantity, at option expiry, of the collar when every forward price is multiplied by m >
/// 0: the mean over the periods of caplet less floorlet by Black's formula (Black 1976, equation 16), each
/// discounted at the forward rate from T to its own expiry. Volatilities below 1e-5 are taken as that, normal
/// distribution as cnorm has it. A period that does not expire after T gives a number that is not finite, a
/// lack of memory not a number.
double collar_strip_value(double m, const CollarOption& option);

/// Premium of the option per unit of quantity, for a lognormal factor of mean 1. The collar's value rises
/// with the factor, so there is one factor beyond which the option is exercised (Jamshidian 1989, "An exact
/// bond option formula"), and the premium is the sum over the periods of that part of their caplets and
/// floorlets: probabilities of two normal variables each (as Geske 1979, "The valuation of compound
/// options"). They come from Gauss-Legendre quadrature over the factor, split at the exercise boundary and
/// where the period's own option changes; measured within 1e-11 of a price. So the premium is a smooth
/// function of every input.
///
/// Largest difference from the integral with the exact normal distribution, over 400 random deals of 1 to 6
/// periods with SwapVol 10 to 100 %, T of a week to 2 years and strikes up to 40 % apart: 7e-8 of the price.
///
/// T <= 0, SwapVol = 0 and a lack of memory give not a number; what collar_strip_value says of bad periods
/// holds here.
double xcol_price(const CollarOption& option);

/// What xcol_greeks works out, by repricing, with one-sided moves of 0.1 % unless said otherwise.
enum class CollarResult : int {
  premium = 0,
  delta = 1,               // all prices up by 0.001 of their mean
  gamma = 2,               // all prices up and down by that
  vega = 3,                // per 1.00 of SwapVol
  rho = 4,                 // IntRt of every period and r up by 0.0001
  theta = 5,               // per year, from 0.001 year or a hundredth of T if that is less; 0 when T <= 0
  period_vols = 6,         // per 1.00 of every Vol (up by 0.0001)
  vol_spread = 7,          // per 1.00 of VolSpread (up by 0.0001)
  cap = 8,                 // per 1.00 of Cap; 0 for a strike of 0
  floor = 9,               // per 1.00 of Floor; 0 for a strike of 0
  forward_value = 10,      // of the collar at option expiry at today's forward prices (not an option's value)
  first_period_delta = 11  // and on: delta to the price of that period alone; 0 beyond the last
};

/// Premium or a sensitivity: RetType is a CollarResult. A negative RetType gives 0.
double xcol_greeks(const CollarOption& option, int RetType);

}  // namespace kestran
