// Options to enter a swap of a strip of forward prices against fixed prices.
#pragma once

namespace kestran {

/// Results of swaption_model, all per unit of total quantity except those of one period, which are per unit
/// of the period's own quantity. The four arrays belong to the caller and have room for every period; what a
/// null one would hold is not worked out.
struct SwaptionRecord {
  double price = 0.0;
  double vega = 0.0;       // per 1.00 of Swapvol
  double rate_sens = 0.0;  // all zero rates moving together, the average forward held
  double theta = 0.0;      // change of value per year as time passes, the average forward held
  double* delta_by_period = nullptr;
  double* gamma_by_period = nullptr;  // change of the period's delta as the average forward rises by 1.00
  double* decay_by_period = nullptr;  // change of the period's delta per year as time passes, see below
  double* vanna_by_period = nullptr;  // change of the period's delta with Swapvol
};

/// Discount factor of a semi-annually compounded zero rate: (1 + rate/2)^(-2t), 1 for t <= 0. Not a number
/// for rates below -2.
double semiannual_discount(double rate, double t);

/// ln(1 + x), for x = rate/2; the rounding of 1 + x is part of it.
double log1p_half(double x);

/// European option to enter a swap of n settlement periods, premium and sensitivities. The strip is taken as
/// one average forward price, weighted with quantity and discount factor, on which Black's formula is applied
/// (Black 1976), scaled back to a price per unit of quantity.
///
/// Fwd forward price, Qty quantity, Swaptime years to settlement and Rates semi-annual zero rate to it, of
/// each period; Swapvol volatility of the average forward (per year), Strike fixed price, IntRt semi-annual
/// zero rate to the option's expiry, Expiry years; Opttype 0 put (receive the fixed price), any other value
/// call. IntRt discounts semi-annually in the scale of the result and stands unchanged for the continuous
/// rate and yield of Black's formula: intended.
///
/// The decay of a period's delta takes the average of the zero rates, weighted like the forwards, for the
/// period's own: exact where the rates are equal, and for the sum over all periods weighted with quantity; of
/// one period it is too low by its delta times the difference of ln(1 + rate/2) from the average, doubled.
/// With forwards 3 % and rates up to 1 % apart, holding the average forward costs 0.5 % in the rate
/// sensitivity (5 % in one case of 20) and 0.02 % (0.3 %) in theta.
///
/// Nothing is checked: a period of quantity 0 has results per period that are no numbers. Expiry = 0 or
/// Swapvol = 0 leave the intrinsic value, delta and its decay, and a gamma, vanna and theta that are no
/// numbers; at the money no result is one, nor at a negative Expiry. A total quantity of 0 makes the
/// whole-strip results not finite. n < 1 or a lack of memory: every result is not a number.
void swaption_model(const double* Fwd, const double* Qty, const double* Swaptime, const double* Rates,
                    double Swapvol, double Strike, double IntRt, double Expiry, int n, int Opttype,
                    SwaptionRecord& record);

/// The same with a fixed price for each period, Strike: the option is struck at their average, weighted like
/// the forward prices with quantity and discount factor, since the fixed and the floating leg are then one
/// amount each. Exact when one lognormal factor moves all forwards. The average strike is held constant in
/// the sensitivities to rates and time, as the average forward is; a negative one makes the results not a
/// number. Everything else is as in swaption_model.
void swaption1_model(const double* Fwd, const double* Qty, const double* Swaptime, const double* Rates,
                     const double* Strike, double Swapvol, double IntRt, double Expiry, int n, int Opttype,
                     SwaptionRecord& record);

}  // namespace kestran
