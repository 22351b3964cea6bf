// A strip of caplets or floorlets whose forward prices one common factor moves.
#pragma once

namespace kestran {

/// The periods of a strip, period 1 at index 0 of each array, seen from the time T.
struct BlackStrip {
  const double* Price;    // forward price of each period, before the factor
  const double* IntRt;    // zero rate from today to the period's expiry, continuous, per year
  const double* Vol;      // volatility of the period, per year
  const double* ExpDays;  // the period's expiry in YEARS
  const double* Qty;      // quantity of the period; null for 1 each
  int n;                  // number of periods
  double T;               // time at which the strip is valued, in years
  double r;               // zero rate from today to T, continuous, per year
};

/// What money at the expiry of period i is worth at T, at the forward rate between them.
double forward_discount(const BlackStrip& strip, int i);

/// Adds `sign` times the strip's value at the time T to value[k], for each node k of an even number of nodes
/// at which every forward price is multiplied by factor[k] = e^log_factor[k] > 0: the sum over the periods of
/// quantity times call (else put) struck at K by Black's formula (Black 1976, equation 16), discounted at the
/// forward rate from T to the period's expiry. Normal distribution as cnorm has it. A period that does not
/// expire after T gives a number that is not finite.
void add_strip_values(const BlackStrip& strip, double K, bool is_call, double sign, const double* log_factor,
                      const double* factor, int nodes, double* value);

}  // namespace kestran
