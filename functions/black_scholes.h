// Worksheet functions of the European and American options: argument by argument as on the worksheet.
#pragma once

#include "functions/answer.h"
#include "functions/parameters.h"
#include "functions/still_wanted.h"
#include "models/black_scholes/american_baw.h"
#include "models/black_scholes/american_tree.h"
#include "models/black_scholes/boston.h"
#include "models/black_scholes/combo.h"
#include "models/black_scholes/digital.h"
#include "models/black_scholes/european.h"
#include "models/black_scholes/implied_vol.h"

namespace kestran {

/// Of a function that prices a European option: the places of the terms among its arguments, and what its
/// results are, RetType by RetType. Books of such functions are priced several options at a time.
struct EuropeanForm {
  struct Places {
    int S, K, r, q, sigma, days, OptType;
  } at;
  int results;
  EuropeanResult result[european_results];
};

namespace worksheet {

template <auto function>
inline constexpr EuropeanForm european{};

using KeptEuropean = KeptResults<european_results>;

inline Answer european_result(KeptEuropean* kept, double S, double K, double T, double r, double q,
                              double sigma, int OptType, int result) {
  if (kept == nullptr) return bs_general(S, K, T, r, q, sigma, OptType, result);
  return kept_result(kept, result,
                     [&](double* results) { bs_general_all(S, K, T, r, q, sigma, OptType, results); });
}

inline Answer EURO(KeptEuropean* kept, double Price, double Strike, double IntRt, double Yield, double Vol,
                   Years ExpDays, int OptType, Selector<0, 8> RetType) {
  return european_result(kept, Price, Strike, ExpDays, IntRt, Yield, Vol, OptType, RetType);
}
template <>
inline constexpr EuropeanForm european<EURO>{
    {0, 1, 2, 3, 4, 5, 6},
    9,
    {EuropeanResult::premium, EuropeanResult::delta, EuropeanResult::gamma, EuropeanResult::vega,
     EuropeanResult::carry_rho, EuropeanResult::theta, EuropeanResult::rho,
     EuropeanResult::delta_by_volatility, EuropeanResult::delta_by_time}};

/// Numbers its results its own way: 4 is rho and 6 the change of delta with volatility.
inline Answer EURO_Equity(KeptEuropean* kept, double Price, double Strike, double IntRt, double Yield,
                          double Vol, Years ExpDays, int OptType, Selector<0, 6> RetType) {
  const int result = RetType == 4 ? 6 : RetType == 6 ? 7 : int(RetType);
  return european_result(kept, Price, Strike, ExpDays, IntRt, Yield, Vol, OptType, result);
}
template <>
inline constexpr EuropeanForm european<EURO_Equity>{
    {0, 1, 2, 3, 4, 5, 6},
    7,
    {EuropeanResult::premium, EuropeanResult::delta, EuropeanResult::gamma, EuropeanResult::vega,
     EuropeanResult::rho, EuropeanResult::theta, EuropeanResult::delta_by_volatility}};

/// Options on forwards and futures: the yield equals the rate. 6 is the change of delta with volatility.
inline Answer EURO_Forward(KeptEuropean* kept, double Price, double Strike, double IntRt, double Vol,
                           Years ExpDays, int OptType, Selector<0, 6> RetType) {
  const int result = RetType == 6 ? 7 : int(RetType);
  return european_result(kept, Price, Strike, ExpDays, IntRt, IntRt, Vol, OptType, result);
}
template <>
inline constexpr EuropeanForm european<EURO_Forward>{
    {0, 1, 2, 2, 3, 4, 5},
    7,
    {EuropeanResult::premium, EuropeanResult::delta, EuropeanResult::gamma, EuropeanResult::vega,
     EuropeanResult::carry_rho, EuropeanResult::theta, EuropeanResult::delta_by_volatility}};

/// IntRtA is the rate of the pricing currency; IntRtB, the rate of the priced one, is its yield.
inline Answer FOREXCH(KeptEuropean* kept, double SpotAB, double StrikeAB, double IntRtA, double IntRtB,
                      double VolAB, Years ExpDays, int OptType, Selector<0, 8> RetType) {
  return european_result(kept, SpotAB, StrikeAB, ExpDays, IntRtA, IntRtB, VolAB, OptType, RetType);
}
template <>
inline constexpr EuropeanForm european<FOREXCH> = european<EURO>;

inline Answer AMER(AmericanRepricings<BawResult>* kept, double Price, double Strike, double IntRt,
                   double Yield, double Vol, Years ExpDays, int OptType, Selector<0, 7> RetType) {
  return american_baw(Price, Strike, ExpDays, IntRt, Yield, Vol, OptType, RetType, kept);
}

inline Answer AMERB(AmericanRepricings<TreeResult>* kept, double Price, double Strike, double IntRt,
                    double Yield, double Vol, Years ExpDays, int OptType, Selector<1> Nsteps,
                    Selector<0, 8> RetType) {
  return american_binomial(Price, Strike, ExpDays, IntRt, Yield, Vol, OptType, Nsteps, RetType, kept);
}

inline Answer EIMPVOL(Selector<0, 6> CallPutStr, double Premium, double Price, double Strike, Years ExpDays,
                      double IntRt, double Yield, double MaxVol, double Accuracy, int Maxiter) {
  return implied_vol_european(CallPutStr, Premium, Price, Strike, ExpDays, IntRt, Yield, MaxVol, Accuracy,
                              Maxiter);
}

inline Answer IMPVOLAB(double Premium, double Price, double Strike, double IntRt, double Yield, double MaxVol,
                       Years ExpDays, Selector<0, 6> OptType, Selector<1> Nsteps, double Accuracy) {
  return implied_vol_american(Premium, Price, Strike, ExpDays, IntRt, Yield, MaxVol, OptType, Nsteps,
                              Accuracy, still_wanted);
}

inline Answer DIGITAL(KeptResults<digital_results>* kept, double Cash, Positive Price, Positive Strike,
                      double IntRt, double Yield, NotNegative Vol, NotNegativeYears ExpDays,
                      Selector<0, 1> OptType, Selector<0, 5> RetType) {
  if (kept != nullptr)
    return kept_result(kept, RetType, [&](double* results) {
      digital_option_all(Cash, Price, Strike, ExpDays, IntRt, Yield, Vol, OptType, results);
    });
  return digital_option(Cash, Price, Strike, ExpDays, IntRt, Yield, Vol, OptType, RetType);
}

inline Answer COD(KeptResults<digital_results>* kept, double Price, double Strike, double IntRt, double Yield,
                  double Vol, Years ExpDays, double Premium, int OptType, Selector<0, 5> RetType) {
  if (kept != nullptr)
    return kept_result(kept, RetType, [&](double* results) {
      cod_option_all(Price, Strike, ExpDays, IntRt, Yield, Vol, Premium, OptType, results);
    });
  return cod_option(Price, Strike, ExpDays, IntRt, Yield, Vol, Premium, OptType, RetType);
}

inline Answer CODPREM(double Price, double Strike, double IntRt, double Yield, double Vol, Years ExpDays,
                      Selector<0, 8> OptType) {
  return cod_premium(Price, Strike, ExpDays, IntRt, Yield, Vol, OptType);
}

inline Answer COMBOPT(KeptEuropean* kept, double Price, double StrikeA, double StrikeB, double IntRt,
                      double Yield, double VolA, double VolB, Years ExpDays, int OptType,
                      Selector<0, 8> RetType) {
  if (kept == nullptr)
    return combo_option(Price, StrikeA, StrikeB, ExpDays, IntRt, Yield, VolA, VolB, OptType, RetType);
  return kept_result(kept, RetType, [&](double* results) {
    combo_option_all(Price, StrikeA, StrikeB, ExpDays, IntRt, Yield, VolA, VolB, OptType, results);
  });
}

inline Answer BOST(double Price, double Breakeven, double IntRt, double Yield, double Vol, Years ExpDays,
                   Selector<0, 8> OptType) {
  return boston_strike(Price, Breakeven, ExpDays, IntRt, Yield, Vol, OptType);
}

}  // namespace worksheet
}  // namespace kestran
