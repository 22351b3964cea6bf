// Worksheet functions of the strips of options: argument by argument as on the worksheet.
#pragma once

#include "addin/range_frame.h"
#include "models/strips/asian_strip.h"

namespace kestran::worksheet {

inline Answer OSTRIP(double, double, double, int, int, int, double, double, double, double, double, int,
                     Selector<0, 6>) {
  return no_model();
}

inline Answer OSTRIP2(double, double, double, int, int, int, double, double, double, double, double, int,
                      Selector<0, 10>) {
  return no_model();
}

inline Answer OSTRIPSPRD(double, double, double, double, double, double, double, double, double, double, int,
                         int, double, double, double, int, int, Selector<0, 17>) {
  return no_model();
}

/// Times are in years. RetType outside 0..9, SetDays below 0, and a RetMonth that is no month of the strip
/// where the result is one of a month, are #VALUE!.
inline Answer ASTRIP(Range& Price_rng, Range& Vol_rng, Range& Next_rng, Range& End_rng, Range& Settles_rng,
                     int SetDays, double Strike, double IntRt, double Correl, double SetPrice, double ToExp,
                     int Opttype, int RetType, int RetMonth) {
  const bool by_month = RetType == 1 || RetType == 2 || RetType == 3 || RetType == 7 || RetType == 9;
  if (RetType < 0 || RetType > 9 || SetDays < 0 ||
      (by_month && (RetMonth < 1 || RetMonth > Settles_rng.count)))
    return Answer::failure(xlerrValue);
  AsianStrip strip;
  strip.F = Price_rng.values;
  strip.K = Strike;
  strip.r = IntRt;
  strip.sigma = Vol_rng.values;
  strip.rho = Correl;
  strip.A = SetPrice;
  strip.n = Settles_rng.values;
  strip.m = SetDays;
  strip.Next = Next_rng.values;
  strip.End = End_rng.values;
  strip.ToExp = ToExp;
  strip.OptType = Opttype;
  strip.L = Settles_rng.count;
  return asian_strip(strip, RetType, RetMonth);
}

}  // namespace kestran::worksheet
