#include "models/black_scholes/combo.h"

#include <algorithm>
#include <limits>

namespace kestran {
namespace {

constexpr int put = 0, call = 1;
constexpr struct {
  double number_A;
  int type_A;
  double number_B;
  int type_B;
} positions[8] = {{1, put, 1, call}, {1, call, -1, call}, {-1, put, 1, put},  {-1, call, 1, call},
                  {1, put, -1, put}, {1, put, -1, call},  {-1, put, 1, call}, {1, call, 1, put}};

bool is_negative_before_expiry(double S, double KA, double KB, double T) {
  return T > 0.0 && (S < 0.0 || KA < 0.0 || KB < 0.0);
}

}  // namespace

double combo_option(double S, double KA, double KB, double T, double r, double q, double sigmaA,
                    double sigmaB, int OptType, int RetType) {
  if (OptType < 0 || OptType > 7 || RetType < 0 || RetType > 8) return 99.0;
  if (is_negative_before_expiry(S, KA, KB, T)) return std::numeric_limits<double>::quiet_NaN();
  const auto& position = positions[OptType];
  return position.number_A * bs_general(S, KA, T, r, q, sigmaA, position.type_A, RetType) +
         position.number_B * bs_general(S, KB, T, r, q, sigmaB, position.type_B, RetType);
}

void combo_option_all(double S, double KA, double KB, double T, double r, double q, double sigmaA,
                      double sigmaB, int OptType, double results[european_results]) {
  const bool known = OptType >= 0 && OptType <= 7;
  if (!known || is_negative_before_expiry(S, KA, KB, T)) {
    std::fill_n(results, european_results, known ? std::numeric_limits<double>::quiet_NaN() : 99.0);
    return;
  }
  const auto& position = positions[OptType];
  double A[european_results], B[european_results];
  bs_general_all(S, KA, T, r, q, sigmaA, position.type_A, A);
  bs_general_all(S, KB, T, r, q, sigmaB, position.type_B, B);
  for (int i = 0; i < european_results; ++i) results[i] = position.number_A * A[i] + position.number_B * B[i];
}

}  // namespace kestran
