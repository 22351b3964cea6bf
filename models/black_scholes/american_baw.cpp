#include "models/black_scholes/american_baw.h"

#include <cmath>
#include <limits>

#include "models/black_scholes/early_exercise.h"
#include "models/black_scholes/european.h"
#include "models/bumps.h"
#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {
namespace {

double sign_of(int OptType) { return OptType == 0 ? -1.0 : 1.0; }

// The European option's three at once, which share all their costly parts.
BawResult european_option(double S, double K, double T, double r, double q, double sigma, int OptType) {
  const double sign = sign_of(OptType);
  const double v = sigma * std::sqrt(T);
  const double over_v = 1.0 / v;
  const double d1 = (natural_log(S / K) + (r - q + sigma * sigma / 2.0) * T) * over_v;
  const NormalPair normal = cnorm_and_bell(_mm_set_pd(sign * (d1 - v), sign * d1));
  // As bs_general works its premium out, so that no rounding puts an American price below it.
  const __m128d discount = exponential(_mm_set_pd(-r * T, -q * T));
  const __m128d parts = discount * _mm_set_pd(K, S) * normal.N;
  return {sign * (parts[0] - parts[1]), sign * discount[0] * normal.N[0],
          discount[0] * normal.bell[0] * over_root_2_pi * over_v / S};
}

// Exponent of the early exercise premium as a power of the price: above 1 for a call, negative for a put.
double baw_power(double T, double r, double q, double sigma, int OptType) {
  const double variance = sigma * sigma;
  const double x = r * T;
  // r T / (1 - exp(-r T)), continued through a zero rate.
  const double growth = std::fabs(x) < 1e-4 ? 1.0 + x / 2.0 + x * x / 12.0 : x / (1.0 - exponential(-x));
  const double m = 2.0 / (variance * T) * growth;
  const double n1 = 2.0 * (r - q) / variance - 1.0;
  const double R = std::sqrt(n1 * n1 + 4.0 * m);
  // The root that adds terms of one sign comes first, the other from the product of the two, which is -m.
  if (n1 <= 0.0) {
    const double positive = (R - n1) / 2.0;
    return OptType == 0 ? -m / positive : positive;
  }
  const double negative = -(n1 + R) / 2.0;
  return OptType == 0 ? negative : -m / negative;
}

// Barone-Adesi and Whaley's start of the search for the critical price, between its limits at once and at
// infinite maturity; not a number where they do not hold.
double critical_price_seed(double K, double T, double r, double q, double sigma, int OptType) {
  const double sign = sign_of(OptType);
  const double variance = sigma * sigma;
  const double n1 = 2.0 * (r - q) / variance - 1.0;
  const double power_forever = (-n1 + sign * std::sqrt(n1 * n1 + 8.0 * r / variance)) / 2.0;
  const double forever = K / (1.0 - 1.0 / power_forever);
  const double speed = (r - q) * T + sign * 2.0 * sigma * std::sqrt(T);
  const double h = -speed * K / (forever - K);
  const bool valid = (OptType == 0 ? power_forever < 0.0 : power_forever > 1.0) && h < 0.0;
  return valid ? forever + (K - forever) * exponential(h) : std::numeric_limits<double>::quiet_NaN();
}

double critical_price(double K, double T, double r, double q, double sigma, int OptType, double power_of_S) {
  const double sign = sign_of(OptType);
  const double v = sigma * std::sqrt(T);
  const double over_v = 1.0 / v;
  const double drift = (r - q + sigma * sigma / 2.0) * T;
  const double Dq = exponential(-q * T);
  const double Dr = exponential(-r * T);

  // Gain of exercise over holding at the price x, 0 at the critical price and negative on the strike's side.
  struct Gain {
    double value, slope;
  };
  const auto gain = [&](double x) -> Gain {
    const double d1 = (natural_log(x / K) + drift) * over_v;
    const NormalPair normal = cnorm_and_bell(_mm_set_pd(sign * (d1 - v), sign * d1));
    const double delta = Dq * normal.N[0];
    const double european = sign * (x * delta - Dr * K * normal.N[1]);
    const double density = normal.bell[0] * over_root_2_pi;
    return {sign * (x - K) - european - sign * (1.0 - delta) * x / power_of_S,
            sign * (1.0 - delta) * (1.0 - 1.0 / power_of_S) + Dq * density * over_v / power_of_S};
  };

  double inner = K;
  double outer = OptType == 0 ? K / 2.0 : 2.0 * K;
  for (int moves = 0; gain(outer).value < 0.0; ++moves) {
    if (moves == 40) return std::numeric_limits<double>::quiet_NaN();
    inner = outer;
    outer = OptType == 0 ? outer / 2.0 : 2.0 * outer;
  }
  const auto inside = [&](double x) { return sign * (x - inner) > 0.0 && sign * (outer - x) > 0.0; };

  double x = critical_price_seed(K, T, r, q, sigma, OptType);
  if (!inside(x)) x = (inner + outer) / 2.0;
  for (int step = 0; step < 100; ++step) {
    const Gain g = gain(x);
    if (std::isnan(g.value)) return g.value;
    if (std::fabs(g.value) <= 1e-13 * K) break;
    (g.value < 0.0 ? inner : outer) = x;
    double next = x - g.value / g.slope;
    if (!inside(next)) next = (inner + outer) / 2.0;
    const double move = std::fabs(next - x);
    x = next;
    if (move <= 1e-12 * K) break;
  }
  return x;
}

BawResult baw_core(double S, double K, double T, double r, double q, double sigma, int OptType) {
  const double sign = sign_of(OptType);
  const BawResult exercised = {sign * (S - K), sign, 0.0};
  BawResult result = european_option(S, K, T, r, q, sigma, OptType);

  const EarlyExercise rule = early_exercise_rule(r, q, OptType);
  if (rule == EarlyExercise::never) return result;
  if (rule == EarlyExercise::one_boundary) {
    const double p = baw_power(T, r, q, sigma, OptType);
    const double critical = critical_price(K, T, r, q, sigma, OptType, p);
    if (sign * (S - critical) >= 0.0) return exercised;
    if (!std::isnan(critical)) {
      const double delta = european_option(critical, K, T, r, q, sigma, OptType).delta;
      const double premium = (sign - delta) * critical / p * power(S / critical, p);
      result.price += premium;
      result.delta += premium * p / S;
      result.gamma += premium * p * (p - 1.0) / (S * S);
    }
  }
  return result.price < exercised.price ? exercised : result;
}

}  // namespace

double baw_critical_price(double K, double T, double r, double q, double sigma, int OptType) {
  return critical_price(K, T, r, q, sigma, OptType, baw_power(T, r, q, sigma, OptType));
}

double american_baw(double S, double K, double T, double r, double q, double sigma, int OptType, int RetType,
                    AmericanRepricings<BawResult>* kept) {
  if (RetType < 0 || RetType > 7) return 99.0;
  const bool european = early_exercise_rule(r, q, OptType) == EarlyExercise::never;
  if (T > 0.0 && (S < 0.0 || K < 0.0)) return std::numeric_limits<double>::quiet_NaN();
  if (!(T > 0.0) || european) return bs_general(S, K, T, r, q, sigma, OptType, RetType);
  sigma = floored_volatility(sigma);

  const auto core = [&](double years, double rate, double yield, double volatility) {
    return repriced(kept, AmericanTerms{years, rate, yield, volatility},
                    [&](const AmericanTerms& t) { return baw_core(S, K, t.T, t.r, t.q, t.sigma, OptType); });
  };
  return american_result(core, T, r, q, sigma, static_cast<EuropeanResult>(RetType));
}

}  // namespace kestran
