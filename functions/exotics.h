// Worksheet functions of the single- and two-asset exotics: argument by argument as on the worksheet.
#pragma once

#include "functions/answer.h"
#include "functions/parameters.h"
#include "models/exotics/barrier.h"
#include "models/exotics/compound.h"
#include "models/exotics/heat_rate.h"
#include "models/exotics/lookback.h"
#include "models/exotics/quanto.h"
#include "models/exotics/rainbow.h"
#include "models/exotics/spread_option.h"
#include "models/exotics/warrant.h"
#include "models/exotics/wilcox_spread.h"

namespace kestran::worksheet {

inline Answer BRRR(BarrierRepricings* kept, double Price, double Strike, double IntRt, double Yield,
                   double Vol, double ExpDays, double BarrPr, double Rebate, Selector<0, 2> OptType,
                   int KnockType, Selector<0, 5> RetType) {
  return barrier_greek(Price, Strike, Vol, IntRt, Yield, ExpDays, BarrPr, Rebate, OptType, KnockType, RetType,
                       kept);
}

inline Answer LKBK(LookbackRepricings* kept, double Price, double Strike, double IntRt, double Yield,
                   double Vol, double ExpDays, int OptType, Selector<0, 6> RetType) {
  return lookback_greek(Price, Strike, IntRt, Yield, Vol, ExpDays, OptType, days_per_year, RetType, kept);
}

inline Answer CMPDV(CompoundKept* kept, double Price, double StrOver, double StrUnder, double TimeOver,
                    double TimeUnder, double IntRt, double Yield, double FwdVol, double Vol, int OptType,
                    Selector<0, 5> RetType) {
  CompoundOption option;
  option.S = Price;
  option.X1 = StrOver;
  option.X = StrUnder;
  option.days1 = TimeOver;
  option.days2 = TimeUnder;
  option.r = IntRt;
  option.q = Yield;
  option.sigma_f = FwdVol;
  option.sigma = Vol;
  option.OptType = OptType;
  return compound_greek(option, RetType, kept);
}

inline Answer RBOW(RainbowRepricings* kept, double PriceA, double PriceB, double Strike, double IntRt,
                   double VolA, double VolB, double Correl, Years ExpDays, Selector<1, 6> OptType,
                   Selector<0, 10> RetType) {
  RainbowOption option;
  option.S1 = PriceA;
  option.S2 = PriceB;
  option.X = Strike;
  // The rate is both yields too: the prices are futures.
  option.r = option.q1 = option.q2 = IntRt;
  option.T = ExpDays;
  option.sigma1 = VolA;
  option.sigma2 = VolB;
  option.rho = Correl;
  option.OptType = OptType;
  option.kept = kept;
  return rainbow_greek(option, RetType);
}

inline Answer WSPRD(KeptResults<european_results>* kept, double FwdSpd, double Strike, double IntRt,
                    double Vol, Years ExpDays, int OptType, Selector<0, 8> RetType) {
  if (kept != nullptr)
    return kept_result(kept, RetType, [&](double* results) {
      wilcox_spread_all(FwdSpd, Strike, IntRt, Vol, ExpDays, OptType, results);
    });
  return wilcox_spread(FwdSpd, Strike, IntRt, Vol, ExpDays, OptType, RetType);
}

inline Answer HEAT(KeptResults<heat_rate_results>* kept, double PriceA, double PriceB, double Strike,
                   double IntRt, double VolA, double VolB, double Correl, Years ExpDays, int OptType,
                   Selector<0, 12> RetType) {
  if (kept != nullptr)
    return kept_result(kept, RetType, [&](double* results) {
      heat_rate_all(PriceA, PriceB, Strike, IntRt, VolA, VolB, Correl, ExpDays, OptType, results);
    });
  return heat_rate_option(PriceA, PriceB, Strike, IntRt, VolA, VolB, Correl, ExpDays, OptType, RetType);
}

inline Answer QUANTO(KeptResults<quanto_results>* kept, double ExRt, double Price, double Strike,
                     double dIntRt, double fIntRt, double Yield, double Vol, double exVol, double Correl,
                     Years ExpDays, int OptType, Selector<1, 4> Qtype, Selector<0, 11> RetType) {
  const auto option = [&]() -> QuantoOption {
    return {ExRt, Price, Strike, dIntRt, fIntRt, Yield, Vol, exVol, Correl, ExpDays, OptType, Qtype};
  };
  if (kept != nullptr)
    return kept_result(kept, RetType, [&](double* results) { quanto_all(option(), results); });
  return quanto_option(option(), RetType);
}

inline Answer SPRDOPT(SpreadRepricings* kept, double PriceA, double PriceB, double Strike, double IntRt,
                      double VolA, double VolB, double Correl, Years ExpDays, int OptType,
                      Selector<0, 16> RetType) {
  return spread_option(PriceA, PriceB, Strike, IntRt, VolA, VolB, Correl, ExpDays, OptType, RetType, kept);
}

/// The one twin that differs: it does not answer the results above 12.
inline Answer xSPRDOPT(SpreadRepricings* kept, double PriceA, double PriceB, double Strike, double IntRt,
                       double VolA, double VolB, double Correl, Years ExpDays, int OptType,
                       Selector<0, 12> RetType) {
  return spread_option(PriceA, PriceB, Strike, IntRt, VolA, VolB, Correl, ExpDays, OptType, RetType, kept);
}

inline Answer WARRANT(KeptResults<warrant_results>* kept, double Price, double Strike, double IntRt,
                      double Yield, double Vol, Years toVested, Years toExp, double Nwar, double Nshr,
                      int WarType, Selector<0, 5> RetType) {
  Warrant warrant;
  warrant.S = Price;
  warrant.K = Strike;
  warrant.r = IntRt;
  warrant.q = Yield;
  warrant.sigma = Vol;
  warrant.tv = toVested;
  warrant.T = toExp;
  warrant.Nwar = Nwar;
  warrant.Nshr = Nshr;
  warrant.WarType = WarType;
  if (kept == nullptr) return warrant_value(warrant, RetType);
  return kept_result(kept, RetType, [&](double* results) { warrant_values(warrant, results); });
}

}  // namespace kestran::worksheet
