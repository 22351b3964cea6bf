// Worksheet functions of the rate options: argument by argument as on the worksheet.
#pragma once

#include "functions/answer.h"
#include "functions/parameters.h"
#include "models/rates/swaption.h"
#include "models/rates/xcap.h"
#include "models/rates/xcol.h"

namespace kestran::worksheet {

/// Tsteps below 0 or above 10,000 is #VALUE!: no cell may hang Excel.
inline Answer XCAP(CapKept* kept, Range Price_rng, Range IntRt_rng, Range Vol_rng, DaysRange ExpDays_rng,
                   Range Qty_rng, double StripVol, double CfStrike, double CompStrike, Years OptExpDays,
                   double OptIntRt, int OptType, int RetType, int Tsteps) {
  if (Tsteps < 0 || Tsteps > xcap_most_steps) return Answer::failure(value_code, Reason::tree_steps);
  CapOption option;
  option.Price = Price_rng.values;
  option.IntRt = IntRt_rng.values;
  option.Vol = Vol_rng.values;
  option.ExpDays = ExpDays_rng.values;
  option.Qty = Qty_rng.values;
  option.n = Qty_rng.count;
  option.StripVol = StripVol;
  option.CfStrike = CfStrike;
  option.CompStrike = CompStrike;
  option.T = OptExpDays;
  option.r = OptIntRt;
  option.r_carry = OptIntRt;
  option.N = Tsteps;
  option.OptType = OptType;
  option.kept = kept;
  return xcap_greeks(option, RetType);
}

inline CollarOption collar_option(CollarKept* kept, Range Price_rng, Range IntRt_rng, Range Vol_rng,
                                  DaysRange ExpDays_rng, double SwapVol, double VolSpread, double OptExpDays,
                                  double Cap, double Floor, double OptIntRt, int OptType) {
  CollarOption option;
  option.Price = Price_rng.values;
  option.IntRt = IntRt_rng.values;
  option.Vol = Vol_rng.values;
  option.ExpDays = ExpDays_rng.values;
  option.n = ExpDays_rng.count;
  option.SwapVol = SwapVol;
  option.VolSpread = VolSpread;
  option.T = OptExpDays;
  option.Cap = Cap;
  option.Floor = Floor;
  option.r = OptIntRt;
  option.OptType = OptType;
  option.kept = kept;
  return option;
}

/// Tsteps is read and changes nothing: the premium is worked without a tree.
inline Answer XCOL3(CollarKept* kept, Range Price_rng, Range IntRt_rng, Range Vol_rng, DaysRange ExpDays_rng,
                    double SwapVol, double VolSpread, Years OptExpDays, double Cap, double Floor,
                    double OptIntRt, int /*Tsteps*/, int OptType, int RetType) {
  return xcol_greeks(collar_option(kept, Price_rng, IntRt_rng, Vol_rng, ExpDays_rng, SwapVol, VolSpread,
                                   OptExpDays, Cap, Floor, OptIntRt, OptType),
                     RetType);
}

/// The call alone.
inline Answer XCOL2(CollarKept* kept, Range Price_rng, Range IntRt_rng, Range Vol_rng, DaysRange ExpDays_rng,
                    double SwapVol, double VolSpread, Years OptExpDays, double Cap, double Floor,
                    double OptIntRt, int Tsteps, int RetType) {
  return XCOL3(kept, Price_rng, IntRt_rng, Vol_rng, ExpDays_rng, SwapVol, VolSpread, OptExpDays, Cap, Floor,
               OptIntRt, Tsteps, 1, RetType);
}

/// The call's premium alone.
inline Answer XCOL(Range Price_rng, Range IntRt_rng, Range Vol_rng, DaysRange ExpDays_rng, double SwapVol,
                   double VolSpread, Years OptExpDays, double Cap, double Floor, double OptIntRt,
                   int Tsteps) {
  return XCOL3(nullptr, Price_rng, IntRt_rng, Vol_rng, ExpDays_rng, SwapVol, VolSpread, OptExpDays, Cap,
               Floor, OptIntRt, Tsteps, 1, 0);
}

/// The result of a swaption of n periods that `model` puts into a record; those of one period are asked for
/// by RetMonth, counted from 1.
template <class Model>
Answer swaption_result(KeptResults<8>* kept, int n, int RetType, int RetMonth, const Model& model) {
  if (RetType < 0 || RetType > 7) return Answer::failure(value_code, Reason::result);
  SwaptionRecord record;
  // Where the result stands when it is one of the whole strip, and when it is one of each period.
  const double* const of_strip[8] = {&record.price,     nullptr,       nullptr, &record.vega,
                                     &record.rate_sens, &record.theta, nullptr, nullptr};
  double** const of_periods[8] = {nullptr, &record.delta_by_period, &record.gamma_by_period, nullptr, nullptr,
                                  nullptr, &record.vanna_by_period, &record.decay_by_period};
  const bool is_month = RetMonth >= 1 && RetMonth <= n;
  if (!of_strip[RetType] && !is_month) return Answer::failure(value_code, Reason::month);
  if (kept != nullptr)
    return kept_result(kept, RetType, [&](double* results) {
      double by_period[8][range_cells];
      for (int i = 0; i < 8; ++i)
        if (of_periods[i] && is_month) *of_periods[i] = by_period[i];
      model(record);
      for (int i = 0; i < 8; ++i)
        results[i] = of_strip[i] ? *of_strip[i] : is_month ? by_period[i][RetMonth - 1] : 0.0;
    });
  if (of_strip[RetType]) {
    model(record);
    return *of_strip[RetType];
  }
  double by_period[range_cells];
  *of_periods[RetType] = by_period;
  model(record);
  return by_period[RetMonth - 1];
}

inline Answer SWAPTION(KeptResults<8>* kept, Range Fwd, Range Qty, Range Swaptime, Range Rates,
                       double Swapvol, double Strike, double IntRt, double Expiry, int Opttype, int RetType,
                       int RetMonth) {
  return swaption_result(kept, Rates.count, RetType, RetMonth, [&](SwaptionRecord& record) {
    swaption_model(Fwd.values, Qty.values, Swaptime.values, Rates.values, Swapvol, Strike, IntRt, Expiry,
                   Rates.count, Opttype, record);
  });
}

inline Answer SWAPTION1(KeptResults<8>* kept, Range Fwd, Range Qty, Range Swaptime, Range Rates,
                        RangeOrNumber Strike, double Swapvol, double IntRt, double Expiry, int Opttype,
                        int RetType, int RetMonth) {
  return swaption_result(kept, Rates.count, RetType, RetMonth, [&](SwaptionRecord& record) {
    swaption1_model(Fwd.values, Qty.values, Swaptime.values, Rates.values, Strike.values, Swapvol, IntRt,
                    Expiry, Rates.count, Opttype, record);
  });
}

}  // namespace kestran::worksheet
