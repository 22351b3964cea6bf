// European options on the difference of two futures or forward prices.
#pragma once

#include "models/repricings.h"

namespace kestran {

/// Results of a spread option, by their number on the worksheet.
enum class SpreadResult : int {
  premium,
  delta_A,
  delta_B,
  gamma_A,
  gamma_B,
  vega_A,
  vega_B,
  by_correlation,
  rho,
  theta,
  delta_A_by_time,
  delta_B_by_time,
  cross_gamma,
  delta_A_by_vol_A,
  delta_B_by_vol_B,
  delta_A_by_vol_B,
  delta_B_by_vol_A,
};

/// What moves from one repricing of a spread option to the next, and what the kernel answers.
struct SpreadTerms {
  double SA, SB, sigmaA, sigmaB, rho, T;
};
struct SpreadValues {
  double premium, delta_A, delta_B;
};
using SpreadRepricings = Repricings<SpreadTerms, SpreadValues, 16>;

/// Premium or a sensitivity of a European option on the difference of two lognormal prices without drift,
/// payoff max(+-(A - B - K), 0), by spread_kernel, which states the accuracy. Where no closed form exists,
/// sensitivities are two-sided differences over 0.1 % steps, of the premium or of the kernel's own deltas.
///
/// SA, SB futures or forward prices (0 and below as in spread_kernel), K strike of any sign, r interest rate
/// (continuous, per year), sigmaA, sigmaB volatilities (per year), rho correlation, taken as 1 or -1 beyond,
/// T years to expiry. OptType 0 put, any other value call. RetType selects the result:
///   0 premium   1, 2 delta in A, B   3, 4 gamma in A, B
///   5, 6 vega to sigmaA, sigmaB, per 1.00 of volatility
///   7 to rho, per 1.00 of correlation, over 0.001 each way within [-1, 1]
///   8 to r, as for futures: -T times the premium   9 theta, change of value per year as time passes
///   10, 11 change of delta A, B per year as time passes   12 cross gamma
///   13, 14 change of delta A with sigmaA, of delta B with sigmaB
///   15, 16 change of delta A with sigmaB, of delta B with sigmaA
/// Steps in time are those of day_step.
///
/// T <= 0 or not a number: RetType 0 is the exercise value, every other RetType 0. Volatilities of 0 and less
/// are taken as 1e-5. An unknown RetType gives 99.0.
///
/// kept: what other results of the same call worked out, null for nothing.
double spread_option(double SA, double SB, double K, double r, double sigmaA, double sigmaB, double rho,
                     double T, int OptType, int RetType, SpreadRepricings* kept = nullptr);

}  // namespace kestran
