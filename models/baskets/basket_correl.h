// Correlation of two weighted baskets whose components fix at different times.
#pragma once

namespace kestran {

/// Whether prices F of both signs are among the n components whose weight w is not 0. No lognormal variable
/// fits such a basket.
bool has_both_signs(const double* F, const double* w, int n);

/// Correlation of the logarithms of two weighted baskets, each taken as the lognormal variable with its first
/// two moments (as basket_vol_tset takes them), from the expected product of the two: ln(E[AB] / (E[A] E[B]))
/// over the root of the product of both logarithmic variances, cut to -1 .. 1.
///
/// F1, F2 forward prices, taken as the values expected at fixing, sigma1, sigma2 volatilities (per year), w1,
/// w2 weights and Tset1, Tset2 fixing times (years) of the n1 and n2 components; packed_correl the
/// correlations of all n1 + n2, those of the first basket before those of the second, as unpack_lower_correl
/// reads them; T horizon in years. Components share variance up to the earlier of their fixing times and the
/// horizon.
///
/// A basket of forward value 0, T <= 0 and a basket without variance give 0: intended, as in basket_vol_tset.
/// A basket of negative prices counts as one of their amounts; prices of both signs in one basket are not a
/// number. Moments without a real logarithm (which negative weights can give) are not a number, and so are n1
/// or n2 below 1 and a lack of memory.
double basket_correl_tset(const double* F1, const double* F2, const double* sigma1, const double* sigma2,
                          const double* w1, const double* w2, const double* Tset1, const double* Tset2,
                          const double* packed_correl, double T, int n1, int n2);

}  // namespace kestran
