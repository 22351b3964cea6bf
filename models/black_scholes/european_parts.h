// The arithmetic of a European option, for one or for several side by side.
#pragma once

#include "models/black_scholes/european.h"
#include "numerics/elementary.h"

namespace kestran {

/// Terms of a European option, what its results are made of, and the results (the letters of bs_general). A
/// result needs only the parts that it names, so that a caller works out no others. Width is one of
/// elementary::OneValue, TwoLanes and FourLanes.
template <class Width>
struct EuropeanParts {
  using Real = typename Width::Real;

  Real S, T, r, q, sigma;
  Real sign;  // 1 for a call, -1 for a put

  Real root_T, moneyness, drift, d1;
  Real over_v;   // 1 / (sigma root_T)
  Real Dq;       // e^(-q T)
  Real density;  // of the normal distribution at d1
  Real N1;       // N(sign d1)
  Real asset;    // S and K after discounting, times their probabilities, without the sign
  Real cash;

  [[gnu::always_inline]] Real premium() const { return sign * (asset - cash); }
  [[gnu::always_inline]] Real delta() const { return sign * Dq * N1; }
  [[gnu::always_inline]] Real gamma() const { return Dq * density * over_v / S; }
  [[gnu::always_inline]] Real vega() const { return Dq * S * density * root_T; }
  [[gnu::always_inline]] Real carry_rho() const { return -T * premium(); }
  [[gnu::always_inline]] Real theta() const {
    return -S * density * sigma * Dq / (2.0 * root_T) + sign * (q * asset - r * cash);
  }
  [[gnu::always_inline]] Real rho() const { return sign * T * cash; }
  [[gnu::always_inline]] Real delta_by_volatility() const { return (root_T - d1 / sigma) * Dq * density; }
  [[gnu::always_inline]] Real delta_by_time() const {
    return -Dq * ((drift - moneyness / T) * density * over_v / 2.0 - sign * q * N1);
  }

  /// Hands every result to use(EuropeanResult, result).
  template <class Use>
  [[gnu::always_inline]] void each_result(const Use& use) const {
    use(EuropeanResult::premium, premium());
    use(EuropeanResult::delta, delta());
    use(EuropeanResult::gamma, gamma());
    use(EuropeanResult::vega, vega());
    use(EuropeanResult::carry_rho, carry_rho());
    use(EuropeanResult::theta, theta());
    use(EuropeanResult::rho, rho());
    use(EuropeanResult::delta_by_volatility, delta_by_volatility());
    use(EuropeanResult::delta_by_time, delta_by_time());
  }
};

}  // namespace kestran
