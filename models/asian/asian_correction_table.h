// Correction to the Black-Scholes approximation of a call on an average, tabulated.
#pragma once

namespace kestran {

/// Twice what a call on an average is worth above the Black call that stands in for it, in units of the
/// price S: undiscounted, six decimals, over three axes:
///   i  total standard deviation s = sigma sqrt(T)            s = 0.04 * 62.5^(i/9)
///   j  share of the time before averaging starts, t1 / T     1 + t1/T = 2^(j/16)
///   k  moneyness S / K                                       S/K = 1.1^k / 3
///
/// The average is that of a driftless lognormal price, taken continuously from t1 to T; the Black call has
/// the standard deviation s f with f^2 = (1 - t1/T)/3 + t1/T. The table is calibrated to reference values
/// ([9][0][0] = 0.164644, [9][0][5] = 0.124277, [5][0][5] = 0.000635, [5][8][5] = 0.000369), which lie above
/// that difference: a smooth term carries it through them, which adds 4e-7 of S to a call at s = 0.04, 1e-4
/// at s = 0.4, 2e-3 at s = 1 and 6e-2 at s = 2.5 (at the money, averaging from the start). Values run from
/// -0.00962 to 0.164644; the plane j = 16, nothing left to average, is 0. The program
/// make_asian_correction_table recomputes them all.
extern const double asian_correction_table[10][17][52];

}  // namespace kestran
