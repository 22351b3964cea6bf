// Worksheet functions of the average-price options: argument by argument as on the worksheet.
#pragma once

#include "functions/answer.h"
#include "functions/parameters.h"
#include "models/asian/asian_fast.h"
#include "models/asian/asian_geo_cond.h"
#include "models/asian/asian_spread.h"
#include "models/asian/asian_vol_approx.h"
#include "models/asian/compound_asian.h"

namespace kestran::worksheet {

inline Answer ASN(KeptResults<7>* kept, double Price, double Strike, double IntRt, double Vol,
                  double SetPrice, Selector<1> TotDays, Selector<0> SetDays, double toNext, double toEnd,
                  int OptType, Selector<0, 6> RetType) {
  return kept_result(kept, RetType, [&](double* results) {
    asn_model(Price, Strike, IntRt, Vol, SetPrice, TotDays, SetDays, toNext, toEnd, OptType, results);
  });
}

inline Answer AGC(GeoCondRepricings* kept, double Price, double Strike, double SetPrice, double IntRt,
                  double Yield, double Vol1, double Vol2, int AvgStart, int AvgEnd, int OptType,
                  Selector<0, 9> RetType) {
  return asian_geo_cond(Price, Strike, SetPrice, IntRt, Yield, Vol1, Vol2, AvgEnd, AvgStart, OptType, RetType,
                        kept);
}

inline Answer ASV(KeptResults<7>* kept, double Price, double Strike, double IntRt, double Vol,
                  double SetPrice, double toExp, double toStart, double toEnd, double TradeDays, int OptType,
                  Selector<0, 6> RetType) {
  TradingDayAverage option;
  option.S = Price;
  option.K = Strike;
  option.r = IntRt;
  option.sigma = Vol;
  option.A = SetPrice;
  option.toExp = toExp;
  option.toStart = toStart;
  option.toEnd = toEnd;
  option.TradeDays = TradeDays;
  option.OptType = OptType;
  return kept_result(kept, RetType, [&](double* results) { asian_vol_approx(option, results); });
}

inline Answer ASNSPRD2(AsianSpreadKept* kept, double PriceA, double PriceB, double Strike, double IntRt,
                       double q1, double q2, double VolAf, double VolBf, double VolA, double VolB,
                       double Correl, double SetAvgA, double SetAvgB, int ExpDays, int AvgBegDaysA,
                       int AvgBegDaysB, int OptType, Selector<0, 13> RetType) {
  if (asian_spread_days(ExpDays, AvgBegDaysA, AvgBegDaysB) > asian_spread_most_days)
    return Answer::failure(value_code, Reason::days);
  AsianSpread option;
  option.PriceA = PriceA;
  option.PriceB = PriceB;
  option.K = Strike;
  option.r = IntRt;
  option.q1 = q1;
  option.q2 = q2;
  option.VolAf = VolAf;
  option.VolBf = VolBf;
  option.VolA = VolA;
  option.VolB = VolB;
  option.rho = Correl;
  option.SetAvgA = SetAvgA;
  option.SetAvgB = SetAvgB;
  option.E = ExpDays;
  option.BA = AvgBegDaysA;
  option.BB = AvgBegDaysB;
  option.OptType = OptType;
  option.kept = kept;
  return asian_spread_greek(option, RetType);
}

/// On futures, whose yield is the interest rate.
inline Answer ASNSPRD(AsianSpreadKept* kept, double PriceA, double PriceB, double Strike, double IntRt,
                      double VolA, double VolB, double Correl, double SetAvgA, double SetAvgB, int ExpDays,
                      int AvgBegDays, int OptType, Selector<0, 12> RetType) {
  return ASNSPRD2(kept, PriceA, PriceB, Strike, IntRt, IntRt, IntRt, VolA, VolB, VolA, VolB, Correl, SetAvgA,
                  SetAvgB, ExpDays, AvgBegDays, AvgBegDays, OptType, {RetType});
}

/// More than ten years of fixings still to be made are #VALUE!: no cell may hang Excel.
inline Answer CMPASN(CompoundAsianRepricings* kept, double Price, double IntRt, double Vol1, double Vol2,
                     double SetPrice, int TotDays, int SetDays, double toNext, double ExpDays, double CmpVol,
                     double AsnStrike, double CompStrike, double CmpExpDays, double CmpIntRt, int CmpOptType,
                     int RetType, int /*Tsteps*/) {
  CompoundAsian option;
  option.S0 = Price;
  option.r = IntRt;
  option.sigma1 = Vol1;
  option.sigma2 = Vol2;
  option.A = SetPrice;
  option.N = TotDays;
  option.m = SetDays;
  option.toNext = toNext;
  option.ExpDays = ExpDays;
  option.sigma_c = CmpVol;
  option.K = AsnStrike;
  option.X = CompStrike;
  option.CmpExpDays = CmpExpDays;
  option.rc = CmpIntRt;
  option.CmpOptType = CmpOptType;
  option.kept = kept;
  if (!compound_asian_is_bounded(option)) return Answer::failure(value_code, Reason::fixings);
  return compound_asian_greek(option, RetType);
}

}  // namespace kestran::worksheet
