#include "models/asian/asian_vol_approx.h"

#include <cmath>

#include "models/asian/asian_correction.h"
#include "models/black_scholes/black_scholes_sens.h"
#include "models/calendar.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

void set_negligible_to_zero(double out[7]) {
  for (int i = 0; i < 7; ++i)
    if (std::fabs(out[i]) < 1e-20) out[i] = 0.0;
}

// The first fixing is still to come.
void average_ahead(const TradingDayAverage& option, double out[7]) {
  const auto [S, K, r, sigma, A, toExp, toStart, toEnd, TradeDays, OptType] = option;
  const double n = toEnd - toStart + 1.0;
  const double c = (n - 0.5) / n;
  const double f = std::sqrt(((n - 1.0) * c / 3.0 + toStart) / toEnd);
  const double sigma_A = sigma * f;
  const double calendar = days_per_year / TradeDays;
  const double end_days = toEnd * calendar;
  double g[7];
  double V;
  if (OptType == 0) {
    V = bs_put_sens(S, K, end_days, r, r, sigma_A, g);
  } else {
    V = bs_call_sens(S, K, end_days, r, r, sigma_A, g) +
        asian_call_correction(S, K, sigma, toStart * calendar, end_days);
    if (V / S < 1e-7) V = 0.0;
  }
  // From the last fixing to payment.
  const double D = end_days == toExp ? 1.0 : exponential((toEnd / TradeDays - toExp / days_per_year) * r);
  out[0] = D * V;
  out[1] = D * g[0];
  out[2] = D * g[1];
  out[3] = D * f * g[2];
  out[4] = D * g[5];
  out[5] = D * ((sigma_A - sigma * sigma / sigma_A) * g[2] * TradeDays / (2.0 * toEnd) + g[4]);
  out[6] = D * g[6] * f;
  set_negligible_to_zero(out);
}

}  // namespace

void asian_vol_approx(const TradingDayAverage& option, double out[7]) {
  const auto [S, K, r, sigma, A, toExp, toStart, toEnd, TradeDays, OptType] = option;
  const double sign = OptType == 0 ? -1.0 : 1.0;
  const double days = toExp < 0.0 ? 0.0 : toExp;
  for (int i = 0; i < 7; ++i) out[i] = 0.0;

  if (toEnd <= 0.0) {
    out[0] = exponential(-days * r / days_per_year) * positive_part(sign * (A - K));
    out[4] = -days * out[0] / days_per_year;
    // Per day, unlike theta before averaging ends; intended.
    out[5] = r * out[0] / days_per_year;
  } else if (toStart <= 0.0) {
    const double total = toEnd - toStart + 1.0;
    const double left = std::ceil(toEnd);
    const double made = total - left;
    const double K_left = (total * K - made * A) / left;
    if (K_left < 0.0) {
      // The fixings made alone put the average above the strike. It is discounted to the last fixing, not to
      // payment, and its theta is negative; both intended.
      const double D = exponential(-r * (toEnd / TradeDays));
      const double average = (left * S + made * A) / total;
      out[0] = positive_part(sign * (average - K) * D);
      if (OptType != 0) {
        out[1] = left / total * D;
        out[4] = -days * out[0] / days_per_year;
        out[5] = -r * out[0] / days_per_year;
      }
    } else {
      const double toNext = toEnd - (left - 1.0);
      average_ahead({S, K_left, r, sigma, A, days, toNext, toEnd, TradeDays, OptType}, out);
      for (int i = 0; i < 7; ++i) out[i] *= left / total;
      out[5] -= out[0] / total;
    }
  } else {
    average_ahead({S, K, r, sigma, A, days, toStart, toEnd, TradeDays, OptType}, out);
  }
  set_negligible_to_zero(out);
}

}  // namespace kestran
