// Volatility of a weighted basket whose components fix at different times.
#pragma once

namespace kestran {

/// The n components of a basket, each with its own time of fixing.
struct FixingBasket {
  const double* F;      // forward prices, taken as the values expected at fixing
  const double* sigma;  // volatilities, per year
  const double* w;      // weights
  const double* Tset;   // fixing times, years
  int n;
};

/// Fills the n x n correlation matrix C[0..n-1][0..n-1] from its strictly lower triangle read row by row,
/// (1,0), (2,0), (2,1), (3,0), ...: symmetric, with ones on the diagonal. Reads n (n - 1) / 2 numbers.
void unpack_lower_correl(const double* packed_correl, double** C, int n);

/// Volatility, per year, of the lognormal variable that has the mean and the variance of a weighted basket
/// (matching of two moments) when component i moves only until it fixes: a pair shares variance up to the
/// earlier of its two fixing times and the horizon.
///
/// packed_correl are the correlations of the components as unpack_lower_correl reads them; T horizon in
/// years. RetType 0 gives the volatility, any other value the basket's forward value.
///
/// A forward value of 0, then T <= 0, give 0 for every RetType: intended, an empty basket does not fail. A
/// second moment without a real logarithm gives not a number, and so does a lack of memory.
double basket_vol_tset(const FixingBasket& basket, const double* packed_correl, double T, int RetType);

}  // namespace kestran
