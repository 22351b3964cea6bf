#include "models/exotics/quanto.h"

#include <cmath>
#include <limits>

#include "models/black_scholes/european.h"

namespace kestran {
namespace {

// The European option behind a quanto: result B(i) is the RetType i of bs_general.
struct Inner {
  double S, K, T, r, q, sigma;
  int OptType;
  double operator()(int RetType) const { return bs_general(S, K, T, r, q, sigma, OptType, RetType); }
  // Sensitivity to the yield.
  double to_yield() const { return -T * (*this)(0) - (*this)(6); }
};

// E max(S - K, 0) at the exchange rate of expiry: the foreign option, exchanged.
double foreign_strike(const Inner& B, double E, int RetType) {
  switch (RetType) {
    case 0:
    case 1:
      return E * B(RetType);
    case 2:
      return B(0);
    case 3:
      return E * B(2);
    case 5:
      return B(1);
    case 6:
      return E * B(3);
    case 10:
      return E * B(6);
    case 11:
      return E * B(5);
    default:
      return 0.0;
  }
}

// max(E S - K, 0): an option on the asset's domestic price.
double domestic_strike(const Inner& B, double E, double S, double sigmaS, double sigmaE, double rho,
                       int RetType) {
  switch (RetType) {
    case 0:
      return B(0);
    case 1:
      return E * B(1);
    case 2:
      return S * B(1);
    case 3:
      return E * E * B(2);
    case 4:
      return S * S * B(2);
    case 5:
      return B(1) + E * S * B(2);
    case 6:
      return B(3) * (sigmaS + rho * sigmaE) / B.sigma;
    case 7:
      return B(3) * (sigmaE + rho * sigmaS) / B.sigma;
    case 8:
      return B(3) * sigmaS * sigmaE / B.sigma;
    case 9:
      return B(6);
    case 11:
      return B(5);
    default:
      return 0.0;
  }
}

// E max(S - K, 0) at today's exchange rate: the yield holds the domestic less the foreign rate and the
// covariance.
double fixed_exchange_rate(const Inner& B, double E, double sigmaS, double sigmaE, double rho, int RetType) {
  switch (RetType) {
    case 0:
    case 1:
      return E * B(RetType);
    case 2:
      return B(0);
    case 3:
      return E * B(2);
    case 5:
      return B(1);
    case 6:
      return E * (B(3) + B.to_yield() * rho * sigmaE);
    case 7:
      return E * B.to_yield() * rho * sigmaS;
    case 8:
      return E * B.to_yield() * sigmaS * sigmaE;
    case 9:
      return -B.T * E * B(0);
    case 10:
      return -E * B.to_yield();
    case 11:
      return E * B(5);
    default:
      return 0.0;
  }
}

// S max(E - K, 0): an option on the exchange rate in units of the asset; the rate holds the covariance.
double asset_linked(const Inner& B, double S, double sigmaS, double sigmaE, double rho, int RetType) {
  switch (RetType) {
    case 0:
      return S * B(0);
    case 1:
      return B(0);
    case 2:
      return S * B(1);
    case 4:
      return S * B(2);
    case 5:
      return B(1);
    case 6:
      return S * B(6) * rho * sigmaE;
    case 7:
      return S * (B(3) + B(6) * rho * sigmaS);
    case 8:
      return S * B(6) * sigmaS * sigmaE;
    case 9:
      return S * B(6);
    case 10:
      return -S * B(6);
    case 11:
      return S * B(5);
    default:
      return 0.0;
  }
}

}  // namespace

double quanto_option(double E, double S, double K, double rd, double rf, double q, double sigmaS,
                     double sigmaE, double rho, double T, int OptType, int Qtype, int RetType) {
  constexpr double least_sigma = 1e-5;
  if (Qtype < 1 || Qtype > 4 || RetType < 0 || RetType > 11) return 99.0;
  if (!(T > 0.0) && RetType != 0) return 0.0;
  if (T > 0.0 && (E < 0.0 || S < 0.0 || K < 0.0)) return std::numeric_limits<double>::quiet_NaN();
  if (sigmaS <= 0.0) sigmaS = least_sigma;
  if (sigmaE <= 0.0) sigmaE = least_sigma;
  const double covariance = rho * sigmaS * sigmaE;

  if (Qtype == 1) return foreign_strike({S, K, T, rf, q, sigmaS, OptType}, E, RetType);
  if (Qtype == 2) {
    const double variance = sigmaS * sigmaS + sigmaE * sigmaE + 2.0 * covariance;
    const double sigma = variance <= least_sigma * least_sigma ? least_sigma : std::sqrt(variance);
    return domestic_strike({E * S, K, T, rd, q, sigma, OptType}, E, S, sigmaS, sigmaE, rho, RetType);
  }
  const double carry = rd - rf + q + covariance;
  if (Qtype == 3)
    return fixed_exchange_rate({S, K, T, rd, carry, sigmaS, OptType}, E, sigmaS, sigmaE, rho, RetType);
  return asset_linked({E, K, T, carry, q, sigmaE, OptType}, S, sigmaS, sigmaE, rho, RetType);
}

}  // namespace kestran
