// European options on a heat rate, the ratio of two prices, and their sensitivities.
#pragma once

namespace kestran {

/// Results of a heat-rate option, by their number on the worksheet.
enum class HeatRateResult : int {
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
};
constexpr int heat_rate_results = 13;

/// Premium or a sensitivity of an option on the ratio SA / SB of two lognormal prices: Black's formula (1976)
/// on the ratio, taken as without drift, with the volatility of ln SA - ln SB; normal distribution by cnorm.
///
/// SA and SB prices, K strike (a ratio), r interest rate (continuous, per year), sigma_A and sigma_B
/// volatilities (per year), rho their correlation, T years to expiry. OptType 0 put, any other value call.
/// RetType:
///   0 premium   1, 2 deltas in SA and SB   3, 4 gammas in SA and SB
///   5, 6 vegas of sigma_A and sigma_B, per 1.00   7 sensitivity to the correlation, per 1.00
///   8 sensitivity to r, per 1.00   9 theta, change of value per year as time passes
///   10, 11 changes of the deltas 1 and 2 per year as time passes   12 change of delta 1 with SB
/// The put's theta has its terms in r, and the put's results 10 and 11 are as a whole, of the opposite sign:
/// both are intended. An unknown RetType gives 99.
///
/// T <= 0: RetType 0 is the intrinsic value, every other RetType 0. sigma_A <= 0 is taken as 1e-5, sigma_B as
/// it is. Nothing else is checked: a zero SB or K or a joint volatility of 0 gives what the arithmetic gives,
/// and two negative prices give the same answers as two positive ones.
double heat_rate_option(double SA, double SB, double K, double r, double sigma_A, double sigma_B, double rho,
                        double T, int OptType, int RetType);

/// Every result of heat_rate_option for one option: results[RetType], with its bits.
void heat_rate_all(double SA, double SB, double K, double r, double sigma_A, double sigma_B, double rho,
                   double T, int OptType, double results[heat_rate_results]);

}  // namespace kestran
