#include "models/black_scholes/implied_vol.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "models/black_scholes/american_tree.h"
#include "models/black_scholes/european.h"
#include "models/bumps.h"
#include "numerics/elementary.h"
#include "numerics/root_bracketed.h"

namespace kestran {
namespace {

constexpr double no_answer = -99.0;
constexpr int long_tree = 1000;  // steps; 150 smaller trees take a few milliseconds

bool searchable(double Premium, double S, double K, double T, double MaxVol) {
  return T > 0.0 && S > 0.0 && K > 0.0 && MaxVol > least_volatility && !std::isnan(Premium);
}

// The answer where the premiums `least` and `most` at the two ends of the search decide it.
std::optional<double> answer_at_ends(double Premium, double least, double most, double Accuracy,
                                     double highest_vol) {
  if (std::isnan(least + most)) return least + most;
  if (Premium < least - Accuracy || Premium > most + Accuracy) return no_answer;
  if (Premium <= least + Accuracy) return 0.0;
  if (Premium >= most - Accuracy) return highest_vol;
  return std::nullopt;
}

}  // namespace

double implied_vol_european(int CallPutStr, double Premium, double S, double K, double T, double r, double q,
                            double MaxVol, double Accuracy, int Maxiter) {
  if (CallPutStr < 0 || CallPutStr > 2) return 99.0;
  if (!searchable(Premium, S, K, T, MaxVol)) return no_answer;
  if (!(Accuracy > 0.0)) Accuracy = 1e-8;
  Maxiter = Maxiter < 1 ? 100 : std::min(Maxiter, 1000);

  const bool straddle = CallPutStr == 2;
  const auto value = [&](double sigma, int RetType) {
    const double single = bs_general(S, K, T, r, q, sigma, CallPutStr, RetType);
    return straddle ? single + bs_general(S, K, T, r, q, sigma, 0, RetType) : single;
  };
  const double root_T = std::sqrt(T);
  double lo = least_volatility;
  double hi = std::min(MaxVol, 60.0 / root_T);
  if (const auto answer = answer_at_ends(Premium, value(lo, 0), value(hi, 0), Accuracy, hi)) return *answer;

  const double at_the_money = 2.5 * Premium / (S * exponential(-q * T) * root_T) / (straddle ? 2.0 : 1.0);
  double sigma = std::sqrt(2.0 * std::fabs(natural_log(S / K) + (r - q) * T) / T);
  if (sigma < at_the_money / 2.0) sigma = at_the_money;
  if (!(sigma > lo && sigma < hi)) sigma = (lo + hi) / 2.0;
  for (int step = 0; step < Maxiter; ++step) {
    const double excess = value(sigma, 0) - Premium;
    if (std::fabs(excess) <= Accuracy) return sigma;
    (excess > 0.0 ? hi : lo) = sigma;
    if (hi - lo <= 1e-12 * (1.0 + sigma)) return sigma;
    sigma -= excess / value(sigma, 3);
    if (!(sigma > lo && sigma < hi)) sigma = (lo + hi) / 2.0;
  }
  return no_answer;
}

double implied_vol_american(double Premium, double S, double K, double T, double r, double q, double MaxVol,
                            int OptType, int Nsteps, double Accuracy, StillWanted still_wanted) {
  if (!searchable(Premium, S, K, T, MaxVol)) return no_answer;
  if (!(Accuracy > 0.0)) Accuracy = 1e-8;

  const bool is_long = Nsteps >= long_tree && still_wanted != nullptr;
  const auto premium = [&](double sigma) {
    if (is_long && !still_wanted()) return std::numeric_limits<double>::quiet_NaN();
    return american_tree(S, K, T, 0.0, r, q, sigma, OptType, Nsteps).price;
  };
  const double highest_vol = std::min(MaxVol, 30.0 / std::sqrt(T));
  const double least = premium(least_volatility);
  const double most = premium(highest_vol);
  if (const auto answer = answer_at_ends(Premium, least, most, Accuracy, highest_vol)) return *answer;

  // No derivative is used: the premium does not move with the volatility where the option is exercised at
  // once.
  const auto excess = [&](double sigma) { return premium(sigma) - Premium; };
  const BracketedRoot root = root_bracketed(excess, least_volatility, highest_vol, least - Premium,
                                            most - Premium, Accuracy, 1e-10, 150);
  return root.status == 1 || std::isnan(root.x) ? root.x : no_answer;
}

}  // namespace kestran
