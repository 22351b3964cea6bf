#include "models/exotics/wilcox_spread.h"

#include <cmath>

#include "models/repricings.h"
#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {
namespace {

// The density's factor with 2 pi as published with this formula.
const double over_root_of_6_2832 = 1.0 / std::sqrt(6.2832);

// The result RetType, or all of them, into `out`.
template <bool all>
[[gnu::always_inline]] inline void work_out(double F, double K, double r, double sigma, double T, int OptType,
                                            int RetType, double* out) {
  const bool call = OptType == 1;
  const double root_T = std::sqrt(T);
  const double d = (F - K) / (sigma * root_T);
  const double D = exponential(-r * T);
  const auto density = once<all>([&] { return exponential(-d * d / 2.0) * over_root_of_6_2832; });
  const auto N = once<all>([&] { return cnorm(d); });
  const auto call_premium = [&] { return (root_T * sigma * density() + (F - K) * N()) * D; };
  const auto premium = [&] { return call ? call_premium() : (K - F) * D + call_premium(); };

  const auto result = [&](int which) __attribute__((always_inline))->double {
    switch (static_cast<EuropeanResult>(which)) {
      case EuropeanResult::premium:
        return premium();
      case EuropeanResult::delta:
        return call ? D * N() : (N() - 1.0) * D;
      case EuropeanResult::gamma:
        return D * density() / sigma / root_T;
      case EuropeanResult::vega:
        return root_T * D * density();
      case EuropeanResult::carry_rho:
        return -T * premium();
      case EuropeanResult::theta: {
        const double decay = sigma * density() / 2.0 / root_T;
        // Intended: the put's adds (F - K) r D to the call's, where the exact derivative takes it off.
        return r * call_premium() - (call ? decay : decay - (F - K) * r) * D;
      }
      case EuropeanResult::delta_by_time: {
        const double drift = r * N() + d * density() / 2.0 / T;
        return (call ? drift : drift - r) * D;
      }
      default:
        return 0.0;
    }
  };
  if constexpr (all)
    every_result(out, result, Results<european_results>());
  else
    *out = result(RetType);
}

}  // namespace

double wilcox_spread(double F, double K, double r, double sigma, double T, int OptType, int RetType) {
  double result;
  work_out<false>(F, K, r, sigma, T, OptType, RetType, &result);
  return result;
}

void wilcox_spread_all(double F, double K, double r, double sigma, double T, int OptType,
                       double results[european_results]) {
  work_out<true>(F, K, r, sigma, T, OptType, 0, results);
}

}  // namespace kestran
