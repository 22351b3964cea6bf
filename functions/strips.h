// Worksheet functions of the strips of options: argument by argument as on the worksheet.
#pragma once

#include "functions/answer.h"
#include "functions/parameters.h"
#include "models/strips/asian_strip.h"
#include "models/strips/ostrip.h"
#include "models/strips/ostripsprd.h"
#include "models/strips/strip_days.h"
#include "models/strips/two_contract.h"
#include "models/strips/yrstrip.h"

namespace kestran::worksheet {

inline Answer OSTRIP2(OptionStripRepricings* kept, double Price, double Strike, double NowToSet, int BegDays,
                      int EndDays, int FwdStFlag, double IntRt, double Vol_before, double Vol_after,
                      double PctIndex, double BasisOffset, int OptType, Selector<0, 10> RetType) {
  if (strip_days_ahead(BegDays, EndDays) > ostrip_most_days) return Answer::failure(value_code, Reason::days);
  return ostrip_greek({Price, Strike, NowToSet, BegDays, EndDays, FwdStFlag, IntRt, Vol_before, Vol_after,
                       PctIndex, BasisOffset, OptType, kept},
                      RetType);
}

inline Answer OSTRIP(OptionStripRepricings* kept, double Price, double Strike, double NowToSet, int BegDays,
                     int EndDays, int FwdStFlag, double IntRt, double Vol_before, double Vol_after,
                     double PctIndex, double BasisOffset, int OptType, Selector<0, 6> RetType) {
  return OSTRIP2(kept, Price, Strike, NowToSet, BegDays, EndDays, FwdStFlag, IntRt, Vol_before, Vol_after,
                 PctIndex, BasisOffset, OptType, {RetType});
}

inline Answer OSTRIPSPRD(SpreadStripRepricings* kept, double Price1, double Price2, double Vol1m,
                         double Vol1d, double Vol2m, double Vol2d, double Correlm, double Correld,
                         double Strike, double NowToSet, int BegDays, int EndDays, double IntRt,
                         double PctIndex, double BasisOffset, int FwdStFlag, int OptType,
                         Selector<0, 17> RetType) {
  if (strip_days_ahead(BegDays, EndDays) > ostripsprd_most_days)
    return Answer::failure(value_code, Reason::days);
  return ostripsprd_greek({Price1, Price2, Vol1m, Vol1d, Vol2m, Vol2d, Correlm, Correld, Strike, NowToSet,
                           BegDays, EndDays, IntRt, PctIndex, BasisOffset, FwdStFlag, OptType, kept},
                          RetType);
}

// Which results of the strips of months and contracts are one of RetMonth.
inline bool is_of_one_month(int RetType) {
  return RetType == 1 || RetType == 2 || RetType == 3 || RetType == 7 || RetType == 9;
}

inline Answer asian_strip_result(const AsianStrip& strip, int RetType, int RetMonth) {
  if (RetType < 0 || RetType > 9) return Answer::failure(value_code, Reason::result);
  if (strip.m < 0.0) return Answer::failure(value_code, Reason::fixings_made);
  if (is_of_one_month(RetType) && (RetMonth < 1 || RetMonth > strip.L))
    return Answer::failure(value_code, Reason::month);
  return asian_strip(strip, RetType, RetMonth);
}

inline AsianStrip asian_strip_terms(AsianStripKept* kept, const double* Price, const double* Vol,
                                    const double* Next, const double* End, const double* Settles, int months,
                                    int SetDays, double Strike, double IntRt, double Correl, double SetPrice,
                                    double ToExp, int Opttype) {
  AsianStrip strip;
  strip.F = Price;
  strip.K = Strike;
  strip.r = IntRt;
  strip.sigma = Vol;
  strip.rho = Correl;
  strip.A = SetPrice;
  strip.n = Settles;
  strip.m = SetDays;
  strip.Next = Next;
  strip.End = End;
  strip.ToExp = ToExp;
  strip.OptType = Opttype;
  strip.L = months;
  strip.kept = kept;
  return strip;
}

/// Times are in years. RetType outside 0..9, SetDays below 0, and a RetMonth that is no month of the strip
/// where the result is one of a month, are #VALUE!.
inline Answer ASTRIP(AsianStripKept* kept, Range Price_rng, Range Vol_rng, Range Next_rng, Range End_rng,
                     Range Settles_rng, int SetDays, double Strike, double IntRt, double Correl,
                     double SetPrice, double ToExp, int Opttype, int RetType, int RetMonth) {
  return asian_strip_result(asian_strip_terms(kept, Price_rng.values, Vol_rng.values, Next_rng.values,
                                              End_rng.values, Settles_rng.values, Settles_rng.count, SetDays,
                                              Strike, IntRt, Correl, SetPrice, ToExp, Opttype),
                            RetType, RetMonth);
}

/// As ASTRIP, each month with its daily volume.
inline Answer ASTRIPMV(AsianStripKept* kept, Range Price_rng, Range Vol_rng, Range Volume_rng, Range Next_rng,
                       Range End_rng, Range Settles_rng, int SetDays, double Strike, double IntRt,
                       double Correl, double SetPrice, double ToExp, int Opttype, int RetType, int RetMonth) {
  AsianStrip strip = asian_strip_terms(kept, Price_rng.values, Vol_rng.values, Next_rng.values,
                                       End_rng.values, Settles_rng.values, Settles_rng.count, SetDays, Strike,
                                       IntRt, Correl, SetPrice, ToExp, Opttype);
  strip.u = Volume_rng.values;
  strip.positive_prices = true;
  return asian_strip_result(strip, RetType, RetMonth);
}

/// ASTRIP of two months.
inline Answer ASTRIP2m(AsianStripKept* kept, double Price1, double Price2, double Vol1, double Vol2,
                       double Next1, double Next2, double End1, double End2, double Settle1, double Settle2,
                       int SetDays, double Strike, double IntRt, double Correl, double SetPrice, double ToExp,
                       int Opttype, int RetType, int RetMonth) {
  const double Price[] = {Price1, Price2};
  const double Vol[] = {Vol1, Vol2};
  const double Next[] = {Next1, Next2};
  const double End[] = {End1, End2};
  const double Settles[] = {Settle1, Settle2};
  AsianStrip strip = asian_strip_terms(kept, Price, Vol, Next, End, Settles, 2, SetDays, Strike, IntRt,
                                       Correl, SetPrice, ToExp, Opttype);
  strip.positive_prices = true;
  return asian_strip_result(strip, RetType, RetMonth);
}

inline TwoContracts two_contracts(TwoContractRepricings* kept, double Price1, double Price2, double Vol1,
                                  double Vol2, double Sig1, double Sig2, int Settle1, int Settle2,
                                  int SetDays, double Strike, double IntRt, double Correl, double SetPrice,
                                  double ToExp, int Opttype) {
  TwoContracts option;
  option.F[0] = Price1;
  option.F[1] = Price2;
  option.sigma_before[0] = Vol1;
  option.sigma_before[1] = Vol2;
  option.sigma_within[0] = Sig1;
  option.sigma_within[1] = Sig2;
  option.n[0] = Settle1;
  option.n[1] = Settle2;
  option.m = SetDays;
  option.A = SetPrice;
  option.K = Strike;
  option.r = IntRt;
  option.rho = Correl;
  option.ToExp = ToExp;
  option.OptType = Opttype % 10;
  option.kept = kept;
  return option;
}

// RetType outside 0..9, counts of fixings below 0 or beyond what is priced, and a RetMonth that is no
// contract where the result is one of a contract, are #VALUE!.
inline Answer two_contract_result(const TwoContracts& option, int RetType, int RetMonth) {
  const bool fixings_fit = option.n[0] >= 0 && option.n[1] >= 0 && option.m >= 0 &&
                           option.n[0] <= two_contract_most_fixings &&
                           option.n[1] <= two_contract_most_fixings - option.n[0];
  if (RetType < 0 || RetType > 9) return Answer::failure(value_code, Reason::result);
  if (!fixings_fit) return Answer::failure(value_code, Reason::fixings);
  if (is_of_one_month(RetType) && RetMonth != 1 && RetMonth != 2)
    return Answer::failure(value_code, Reason::month);
  return two_contract_sens(option, RetType, RetMonth);
}

/// Times are in years; Vol is the volatility before a contract's averaging, Sig that within.
inline Answer AdjASTRIP2m(TwoContractRepricings* kept, double Price1, double Price2, double Vol1, double Vol2,
                          double Sig1, double Sig2, double Next1, double Next2, double End1, double End2,
                          int Settle1, int Settle2, int SetDays, double Strike, double IntRt, double Correl,
                          double SetPrice, double ToExp, int Opttype, int RetType, int RetMonth) {
  TwoContracts option = two_contracts(kept, Price1, Price2, Vol1, Vol2, Sig1, Sig2, Settle1, Settle2, SetDays,
                                      Strike, IntRt, Correl, SetPrice, ToExp, Opttype);
  option.Next[0] = Next1;
  option.Next[1] = Next2;
  option.End[0] = End1;
  option.End[1] = End2;
  return two_contract_result(option, RetType, RetMonth);
}

/// One averaging period over both contracts, its start negative once averaging has begun.
inline Answer xCrudeAPO(TwoContractRepricings* kept, double Price1, double Price2, double Vol1, double Vol2,
                        double Sig1, double Sig2, double AvgStart, double AvgEnd, int Settle1, int Settle2,
                        int SetDays, double Strike, double IntRt, double Correl, double SetPrice,
                        double ToExp, int Opttype, int RetType, int RetMonth) {
  TwoContracts option = two_contracts(kept, Price1, Price2, Vol1, Vol2, Sig1, Sig2, Settle1, Settle2, SetDays,
                                      Strike, IntRt, Correl, SetPrice, ToExp, Opttype);
  option.one_period = 1;
  option.Next[0] = AvgStart;
  option.End[1] = AvgEnd;
  return two_contract_result(option, RetType, RetMonth);
}

/// RetType outside 0..6, and a month of more than a century of days, are #VALUE!: no cell may hang Excel.
inline Answer YRSTRIP(KeptResults<7>* kept, Range Price_rng, Range Strike_rng, Range IntRt_rng, Range Vol_rng,
                      Range ToSet_rng, Range BegDays_rng, Range EndDays_rng, Range Qty_rng, double AnnualQty,
                      int Opttype, int RetType) {
  YearStrip strip;
  strip.Price = Price_rng.values;
  strip.Strike = Strike_rng.values;
  strip.IntRt = IntRt_rng.values;
  strip.Vol = Vol_rng.values;
  strip.ToSet = ToSet_rng.values;
  strip.Beg = BegDays_rng.values;
  strip.End = EndDays_rng.values;
  strip.Qty = Qty_rng.values;
  strip.L = Qty_rng.count;
  strip.AnnualQty = AnnualQty;
  strip.OptType = Opttype;
  if (RetType < 0 || RetType > 6) return Answer::failure(value_code, Reason::result);
  if (!yrstrip_is_bounded(strip)) return Answer::failure(value_code, Reason::days);
  return kept_result(kept, RetType, [&](double* results) { yrstrip_value(strip, results); });
}

}  // namespace kestran::worksheet
