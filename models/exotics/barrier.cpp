#include "models/exotics/barrier.h"

#include <cmath>
#include <limits>

#include "models/bumps.h"
#include "models/calendar.h"
#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {

double barrier_price(double S, double K, double sigma, double r, double q, double days, double H, double R,
                     int OptType, int KnockType) {
  if (OptType < 0 || OptType > 2 || std::isnan(H)) return std::numeric_limits<double>::quiet_NaN();
  const double phi = OptType == 1 ? 1.0 : -1.0;
  const double eta = H <= S ? 1.0 : -1.0;

  const double T = days / days_per_year;
  const double v = sigma * std::sqrt(T);
  const double variance_rate = sigma * sigma;
  const double m = natural_log((1.0 + r) / (1.0 + q)) - variance_rate / 2.0;
  const double mu = m / variance_rate;
  const double shift = (1.0 + mu) * v;
  double logs[4];  // of S / K, S / H, H^2 / (S K) and H / S
  _mm_storeu_pd(logs, natural_log(_mm_set_pd(S / H, S / K)));
  _mm_storeu_pd(logs + 2, natural_log(_mm_set_pd(H / S, H * H / (S * K))));
  const double x1 = logs[0] / v + shift, x2 = logs[1] / v + shift;
  const double y1 = logs[2] / v + shift, y2 = logs[3] / v + shift;
  double discounts[2];
  _mm_storeu_pd(discounts, exponential(_mm_set_pd(-q * T, -r * T)));
  const double Dr = discounts[0], Dq = discounts[1];

  // Of a ratio that is zero, infinite or negative only `power` knows the powers.
  const bool ordinary = H / S > 0.0 && std::isfinite(H / S);
  const auto ratio_power = [&](double x) { return ordinary ? exponential(x * logs[3]) : power(H / S, x); };
  const double power_2mu = ratio_power(2.0 * mu);
  const double power_2mu_2 = ratio_power(2.0 * (mu + 1.0));
  const double price_leg = phi * S * Dq;
  const double strike_leg = phi * K * Dr;
  const auto direct = [&](double x) {
    const __m128d N = cnorm(phi * _mm_set_pd(x - v, x));
    return price_leg * N[0] - strike_leg * N[1];
  };
  const auto reflected = [&](double y) {
    const __m128d N = cnorm(eta * _mm_set_pd(y - v, y));
    return price_leg * power_2mu_2 * N[0] - strike_leg * power_2mu * N[1];
  };
  const auto A = [&] { return direct(x1); };
  const auto B = [&] { return direct(x2); };
  const auto C = [&] { return reflected(y1); };
  const auto D = [&] { return reflected(y2); };
  const auto E = [&] {
    if (R == 0.0) return 0.0;
    const __m128d N = cnorm(eta * _mm_set_pd(y2 - v, x2 - v));
    return R * Dr * (N[0] - power_2mu * N[1]);
  };
  const auto F = [&] {
    if (R == 0.0) return 0.0;
    const double lambda = std::sqrt(2.0 * natural_log(1.0 + r) * variance_rate + m * m) / variance_rate;
    const double z = logs[3] / v + lambda * v;
    const __m128d N = cnorm(eta * _mm_set_pd(z - 2.0 * lambda * v, z));
    return R * (ratio_power(mu + lambda) * N[0] + ratio_power(mu - lambda) * N[1]);
  };

  // Whether the option is in the money at the barrier, and whether it gains from there towards the price.
  const bool in_the_money = phi > 0.0 ? K < H : H <= K;
  const bool gains_towards_price = phi == eta;
  if (KnockType == 0) {
    if (in_the_money) return gains_towards_price ? B() - D() + F() : A() - B() + C() - D() + F();
    if (gains_towards_price) return A() - C() + F();
    // Knocked out before it can gain: the rebate only. The zero without one keeps NaN of bad input.
    return R == 0.0 ? 0.0 * A() : F();
  }
  if (in_the_money) return gains_towards_price ? A() - B() + D() + E() : B() - C() + D() + E();
  return gains_towards_price ? C() + E() : A() + E();
}

double barrier_greek(double S, double K, double sigma, double r, double q, double days, double H, double R,
                     int OptType, int KnockType, int RetType, BarrierRepricings* kept) {
  const auto value = [&](double price, double volatility, double rate, double yield, double time) {
    return repriced(kept, BarrierTerms{price, volatility, rate, yield, time}, [&](const BarrierTerms& t) {
      return barrier_price(t.S, K, t.sigma, t.r, t.q, t.days, H, R, OptType, KnockType);
    });
  };
  const auto V = [&] { return value(S, sigma, r, q, days); };
  const auto V_at_price = [&](double price) { return value(price, sigma, r, q, days); };
  switch (static_cast<BarrierResult>(RetType)) {
    case BarrierResult::premium:
      return V();
    case BarrierResult::delta:
      return (V_at_price(S * bump_up) - V()) / (bump * S);
    case BarrierResult::gamma:
      return (V_at_price(S * bump_up) + V_at_price(S * bump_down) - 2.0 * V()) / (bump * S * S * bump);
    case BarrierResult::vega:
      return (value(S, sigma * bump_up, r, q, days) - V()) / (sigma * bump);
    case BarrierResult::rho: {
      if (r == 0.0) return 0.0;
      // The yield is replaced, not kept, and the moved rate divides: both are intended.
      const double moved_rate = bump_up * r;
      return (value(S, sigma, moved_rate, moved_rate, days) - V()) / (moved_rate * bump);
    }
    case BarrierResult::theta:
      return (V() - value(S, sigma, r, q, days * bump_up)) / (days * bump / days_per_year);
    default:
      return -99.0;
  }
}

}  // namespace kestran
