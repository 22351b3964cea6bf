// Worksheet functions of the average-price options: argument by argument as on the worksheet.
#pragma once

#include "addin/frame.h"
#include "models/asian/asian_fast.h"
#include "models/asian/asian_geo_cond.h"
#include "models/asian/asian_vol_approx.h"

namespace kestran::worksheet {

inline Answer ASN(double Price, double Strike, double IntRt, double Vol, double SetPrice, Selector<1> TotDays,
                  Selector<0> SetDays, double toNext, double toEnd, int OptType, Selector<0, 6> RetType) {
  double results[7];
  asn_model(Price, Strike, IntRt, Vol, SetPrice, TotDays, SetDays, toNext, toEnd, OptType, results);
  return results[RetType];
}

inline Answer AGC(double Price, double Strike, double SetPrice, double IntRt, double Yield, double Vol1,
                  double Vol2, int AvgStart, int AvgEnd, int OptType, Selector<0, 9> RetType) {
  return asian_geo_cond(Price, Strike, SetPrice, IntRt, Yield, Vol1, Vol2, AvgEnd, AvgStart, OptType,
                        RetType);
}

inline Answer ASV(double Price, double Strike, double IntRt, double Vol, double SetPrice, double toExp,
                  double toStart, double toEnd, double TradeDays, int OptType, Selector<0, 6> RetType) {
  double results[7];
  asian_vol_approx(Price, Strike, IntRt, Vol, SetPrice, toExp, toStart, toEnd, TradeDays, OptType, results);
  return results[RetType];
}

inline Answer ASNSPRD(double, double, double, double, double, double, double, double, double, int, int, int,
                      Selector<0, 12>) {
  return no_model();
}

inline Answer ASNSPRD2(double, double, double, double, double, double, double, double, double, double, double,
                       double, double, int, int, int, int, Selector<0, 13>) {
  return no_model();
}

}  // namespace kestran::worksheet
