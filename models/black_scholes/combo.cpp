#include "models/black_scholes/combo.h"

#include <limits>

#include "models/black_scholes/european.h"

namespace kestran {

double combo_option(double S, double KA, double KB, double T, double r, double q, double sigmaA,
                    double sigmaB, int OptType, int RetType) {
  if (OptType < 0 || OptType > 7 || RetType < 0 || RetType > 8) return 99.0;
  if (T > 0.0 && (S < 0.0 || KA < 0.0 || KB < 0.0)) return std::numeric_limits<double>::quiet_NaN();
  constexpr int put = 0, call = 1;
  constexpr struct {
    double number_A;
    int type_A;
    double number_B;
    int type_B;
  } positions[8] = {{1, put, 1, call}, {1, call, -1, call}, {-1, put, 1, put},  {-1, call, 1, call},
                    {1, put, -1, put}, {1, put, -1, call},  {-1, put, 1, call}, {1, call, 1, put}};
  const auto& position = positions[OptType];
  return position.number_A * bs_general(S, KA, T, r, q, sigmaA, position.type_A, RetType) +
         position.number_B * bs_general(S, KB, T, r, q, sigmaB, position.type_B, RetType);
}

}  // namespace kestran
