// Worksheet functions of the baskets: argument by argument as on the worksheet.
#pragma once

#include "addin/range_frame.h"
#include "models/baskets/basket_vol.h"
#include "models/baskets/basket_vol_tset.h"

namespace kestran::worksheet {

inline Answer BASVOL2d(double Price1, double Price2, double Vol1, double Vol2, double Drift1, double Drift2,
                       double Weight1, double Weight2, double Correl, double ExpTime) {
  const double F[2] = {Price1, Price2};
  const double sigma[2] = {Vol1, Vol2};
  const double mu[2] = {Drift1, Drift2};
  const double w[2] = {Weight1, Weight2};
  const double rho[4] = {1.0, Correl, Correl, 1.0};
  return basket_vol_moment_match(F, sigma, mu, w, rho, 2, ExpTime);
}

/// ExpTime is in years. Six single numbers are a basket of one asset, with the matrix its own correlation.
inline Answer BASVOL(Range& Forward_Price, Range& Annual_Vol, Range& Drift, Range& Weight,
                     SquareMatrix& Correl_Matrix, double ExpTime) {
  return basket_vol_moment_match(Forward_Price.values, Annual_Vol.values, Drift.values, Weight.values,
                                 Correl_Matrix.values, Forward_Price.count, ExpTime);
}

/// Times are in years; Correl_rng is the strictly lower triangle of the correlation matrix, row by row.
inline Answer BASVOLT(Basket& Fwd_rng, Basket& Vol_rng, Basket& Weight_rng, Basket& Tset_rng,
                      LowerTriangle& Correl_rng, double ExpTime, int RetType) {
  const int n = Fwd_rng.count;
  if (Vol_rng.count != n || Weight_rng.count != n || Tset_rng.count != n ||
      Correl_rng.count != n * (n - 1) / 2)
    return Answer::failure(missing_code);
  return basket_vol_tset(Fwd_rng.values, Vol_rng.values, Weight_rng.values, Tset_rng.values,
                         Correl_rng.values, ExpTime, RetType, n);
}

}  // namespace kestran::worksheet
