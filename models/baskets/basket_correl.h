// Correlation of two weighted baskets whose components fix at different times.
#pragma once

#include "models/baskets/basket_vol_tset.h"

namespace kestran {

/// Whether prices of both signs are among the components whose weight is not 0. No lognormal variable fits
/// such a basket.
bool has_both_signs(const FixingBasket& basket);

/// Correlation of the logarithms of two weighted baskets, each taken as the lognormal variable with its first
/// two moments (as basket_vol_tset takes them), from the expected product of the two: ln(E[AB] / (E[A] E[B]))
/// over the root of the product of both logarithmic variances, cut to -1 .. 1.
///
/// packed_correl are the correlations of all components, those of the first basket before those of the
/// second, as unpack_lower_correl reads them; T horizon in years. Components share variance up to the earlier
/// of their fixing times and the horizon.
///
/// A basket of forward value 0, T <= 0 and a basket without variance give 0: intended, as in basket_vol_tset.
/// A basket of negative prices counts as one of their amounts; prices of both signs in one basket are not a
/// number. Moments without a real logarithm (which negative weights can give) are not a number, and so are a
/// basket without components and a lack of memory.
double basket_correl_tset(const FixingBasket& first, const FixingBasket& second, const double* packed_correl,
                          double T);

}  // namespace kestran
