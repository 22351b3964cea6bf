// Correction that takes a call on an average from its Black-Scholes stand-in towards the exact value.
#pragma once

namespace kestran {

/// Table values around the node at which an interpolation starts: ahead is one node on in the direction of
/// the point, behind one node back. Named by axis, in the order deviation, start, moneyness; two or three
/// axes named are ahead on each of them.
struct CorrectionStencil {
  double centre;
  double ahead_i, behind_i;
  double ahead_j, behind_j;
  double ahead_k, behind_k;
  double ahead_ij, ahead_ik, ahead_jk, ahead_ijk;
};

/// Value at the fractions a, b, c of a node's spacing ahead of the centre, along i, j, k: a parabola along
/// each axis and the products of the fractions between the axes (exact on the nodes of the stencil that it
/// passes).
double interp3_quadratic(const CorrectionStencil& stencil, double a, double b, double c);

/// What a call on the average of a futures price, averaged from t1_days to T_days from now, is worth above
/// the Black call that stands in for it, undiscounted, in units of price: asian_correction_table times S / 2.
///
/// S price, K strike, sigma volatility (per year), times in calendar days (a year has 365.25). Off the table
/// a fixed place stands in: above it (sigma sqrt(T) over 2.5, S/K over 43) the last place before its edge,
/// and one spacing or more below it (sigma sqrt(T) under 0.025, S/K under 0.3) that just before the third
/// node, which is intended and puts a call wrong by up to 8e-5 of S. A single fixing at expiry (t1_days =
/// T_days) too reads the last place before the edge, not the zeros on it. Without volatility or time, or with
/// S/K <= 0 or t1_days < 0, there is no correction: 0. NaN gives NaN.
double asian_call_correction(double S, double K, double sigma, double t1_days, double T_days);

}  // namespace kestran
