// Worksheet functions of the baskets: argument by argument as on the worksheet.
#pragma once

#include "functions/answer.h"
#include "functions/parameters.h"
#include "models/baskets/basket_correl.h"
#include "models/baskets/basket_vol.h"
#include "models/baskets/basket_vol_tset.h"
#include "models/baskets/pplus.h"

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
inline Answer BASVOL(Range Forward_Price, Range Annual_Vol, Range Drift, Range Weight,
                     SquareMatrix Correl_Matrix, double ExpTime) {
  return basket_vol_moment_match(Forward_Price.values, Annual_Vol.values, Drift.values, Weight.values,
                                 Correl_Matrix.values, Forward_Price.count, ExpTime, Correl_Matrix.apart);
}

/// Times are in years; Correl_rng is the strictly lower triangle of the correlation matrix, row by row.
inline Answer BASVOLT(NothingKept*, Basket Fwd_rng, Basket Vol_rng, Basket Weight_rng, Basket Tset_rng,
                      LowerTriangle Correl_rng, double ExpTime, int RetType) {
  const int n = Fwd_rng.count;
  if (Vol_rng.count != n || Weight_rng.count != n || Tset_rng.count != n ||
      Correl_rng.count != n * (n - 1) / 2)
    return Answer::failure(missing_code, Reason::sizes);
  const FixingBasket basket = {Fwd_rng.values, Vol_rng.values, Weight_rng.values, Tset_rng.values, n};
  return basket_vol_tset(basket, Correl_rng.values, ExpTime, RetType);
}

/// Times are in years; Correl_rng is the strictly lower triangle of the correlation matrix of both baskets'
/// components together, those of the first before those of the second.
inline Answer BASCORR(Basket Fwd1_rng, Basket Fwd2_rng, Basket Vol1_rng, Basket Vol2_rng, Basket Weight1_rng,
                      Basket Weight2_rng, Basket Tset1_rng, Basket Tset2_rng, LowerTriangle Correl_rng,
                      double ExpTime) {
  const int n1 = Fwd1_rng.count;
  const int n2 = Fwd2_rng.count;
  if (Vol1_rng.count != n1 || Weight1_rng.count != n1 || Tset1_rng.count != n1 || Vol2_rng.count != n2 ||
      Weight2_rng.count != n2 || Tset2_rng.count != n2 || Correl_rng.count != (n1 + n2) * (n1 + n2 - 1) / 2)
    return Answer::failure(missing_code, Reason::sizes);
  const FixingBasket first = {Fwd1_rng.values, Vol1_rng.values, Weight1_rng.values, Tset1_rng.values, n1};
  const FixingBasket second = {Fwd2_rng.values, Vol2_rng.values, Weight2_rng.values, Tset2_rng.values, n2};
  return basket_correl_tset(first, second, Correl_rng.values, ExpTime);
}

/// Tmat is in years. Risk outside 0..24 is #VALUE!.
inline Answer PPLUS(TwoBasketRepricings* kept, double SA1, double SA2, double SB1, double SB2, double DaysSB1,
                    double DaysSB2, double VolA1, double VolA2, double VolB1, double VolB2, double CorrA1A2,
                    double CorrB1B2, double CorrA1B1, double CorrA2B1, double CorrA1B2, double CorrA2B2,
                    double Strike, double IR, double Tmat, int Opttype, int Risk, int Aflag, int Bflag) {
  if (Risk < 0 || Risk > 24) return Answer::failure(value_code, Reason::result);
  return pplus_greek({{SA1, SA2, SB1, SB2},
                      {VolA1, VolA2, VolB1, VolB2},
                      {CorrA1A2, CorrB1B2, CorrA1B1, CorrA2B1, CorrA1B2, CorrA2B2},
                      {DaysSB1, DaysSB2},
                      Strike,
                      IR,
                      Tmat,
                      Opttype,
                      Aflag,
                      Bflag,
                      kept},
                     Risk);
}

}  // namespace kestran::worksheet
