#include "models/asian/asian_fast.h"

#include <cmath>

#include "models/asian/asian_correction.h"
#include "models/black_scholes/black_scholes_sens.h"
#include "models/calendar.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

double negligible_is_zero(double x) { return std::fabs(x) < 1e-20 ? 0.0 : x; }

// A rate beyond expiry does not accrue.
double discount(double r, double T) { return T <= 0.0 ? 1.0 : exponential(-r * T); }

double payoff(double average, double K, int OptType) {
  return positive_part(OptType == 0 ? K - average : average - K);
}

// The strike for the fixings to come that leaves the payoff what it was.
double strike_to_come(double K, double A, double N, double m) { return (N * K - m * A) / (N - m); }

// No fixing made yet; N to come.
void average_ahead(double S, double K, double r, double sigma, double N, double t1, double T, int OptType,
                   double out[7]) {
  const double c = (N - 0.5) / N;
  const double f = std::sqrt(((T - t1) * c / 3.0 + t1) / T);
  const double days = T * days_per_year;
  double g[7];
  double V;
  if (OptType == 0) {
    V = bs_put_sens(S, K, days, r, r, sigma * f, g);
  } else {
    V = bs_call_sens(S, K, days, r, r, sigma * f, g) +
        asian_call_correction(S, K, sigma, t1 * days_per_year, days);
    if (V / S < 1e-7) V = 0.0;
  }
  out[0] = V;
  out[1] = g[0];
  out[2] = g[1];
  out[3] = g[2] * f;
  out[4] = g[5];
  out[5] = (f - 1.0 / f) * g[2] * sigma / (2.0 * T) + g[4];
  out[6] = g[6] * f;
  for (int i = 0; i < 7; ++i) out[i] = negligible_is_zero(out[i]);
}

// The fixings made alone put the average above the strike.
double certain_price(double S, double K, double A, double N, double m, double D, int OptType) {
  return OptType == 0 ? 0.0 : (((N - m) * S + m * A) / N - K) * D;
}

// Theta with fixings made: a day passes on which a fixing comes in at S.
double theta_with_fixing(double S, double K, double r, double sigma, double A, int N, int m, double t1,
                         double T, int OptType, double price) {
  const double total = N;
  const double made = m + 1.0;
  const double average = (m * A + S) / made;
  const double T_after = T - one_day;
  if (made >= total) return (payoff(average, K, OptType) * exponential(-r * T_after) - price) * days_per_year;

  const double K_after = strike_to_come(K, average, total, made);
  if (K_after < 0.0) {
    // Interest on the value alone, not a difference; intended.
    return r * ((OptType == 0 ? 0.0 : average - K) * exponential(-r * T_after));
  }
  // The time to the next fixing stays while expiry comes a day nearer; intended.
  const int left = N - m - 1;
  const double after = left / total * asn_price(S, K_after, r, sigma, average, left, 0, t1, T_after, OptType);
  return (after - price) * days_per_year;
}

}  // namespace

void asn_model(double S, double K, double r, double sigma, double A, int N, int m, double t1, double T,
               int OptType, double out[7]) {
  const double D = discount(r, T);
  for (int i = 0; i < 7; ++i) out[i] = 0.0;
  if (m >= N) {
    out[0] = D * payoff(A, K, OptType);
    if (!(T <= 0.0)) {
      out[4] = -T * out[0];
      out[5] = r * out[0];
    }
  } else if (m <= 0) {
    average_ahead(S, K, r, sigma, N, t1, T, OptType, out);
  } else {
    const double left = static_cast<double>(N - m) / N;
    const double K_left = strike_to_come(K, A, N, m);
    if (K_left < 0.0) {
      out[0] = certain_price(S, K, A, N, m, D, OptType);
      if (OptType != 0) {
        out[1] = left * D;
        out[4] = -T * out[0];
        out[5] = r * out[0];
      }
    } else {
      average_ahead(S, K_left, r, sigma, N - m, t1, T, OptType, out);
      for (int i = 0; i < 7; ++i) out[i] *= left;
      out[5] = theta_with_fixing(S, K, r, sigma, A, N, m, t1, T, OptType, out[0]);
    }
  }
  for (int i = 0; i < 7; ++i) out[i] = negligible_is_zero(out[i]);
}

double asn_price(double S, double K, double r, double sigma, double A, int N, int m, double t1, double T,
                 int OptType) {
  if (m >= N) return negligible_is_zero(discount(r, T) * payoff(A, K, OptType));
  double K_left = K;
  double left = 1.0;
  if (m > 0) {
    K_left = strike_to_come(K, A, N, m);
    left = static_cast<double>(N - m) / N;
    if (K_left < 0.0) return negligible_is_zero(certain_price(S, K, A, N, m, discount(r, T), OptType));
  }
  double out[7];
  average_ahead(S, K_left, r, sigma, N - (m > 0 ? m : 0), t1, T, OptType, out);
  return negligible_is_zero(left * out[0]);
}

}  // namespace kestran
