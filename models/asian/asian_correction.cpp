#include "models/asian/asian_correction.h"

#include <cmath>
#include <limits>

#include "models/asian/asian_correction_table.h"
#include "models/calendar.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

// Spacing and origin of the table's axes.
constexpr double log_62_5_over_9 = 4.1351665567423556 / 9.0;
constexpr double log_0_04 = -3.2188758248682006;
constexpr double log_2_over_16 = 0.69314718055994531 / 16.0;
constexpr double log_1_1 = 0.095310179804324860;
constexpr double log_one_third = -1.0986122886681098;

// A point on one axis: the node to start from, the direction (1 or -1) to the next node and the fraction of
// the spacing that the point lies in that direction.
struct Place {
  int node;
  int direction;
  double fraction;
};

// Finds the place of a coordinate that counts nodes from 0; the table has nodes 0 to highest + 1. The
// coordinate is compared as a double, as it may be infinite.
Place locate(double coordinate, int highest) {
  // Off the table: a fixed place next to the edge, not an extrapolation. Below the first node that place lies
  // near node 2, which is intended.
  if (coordinate >= highest + 1) return {highest, 1, 0.99};
  if (coordinate <= -1.0) return {1, 1, 0.99};
  const int node = static_cast<int>(coordinate);
  const double fraction = coordinate - node;
  // Next to the first node the parabola starts from node 1 and looks back.
  if (node == 0) return {1, -1, 1.0 - fraction};
  return {node, 1, fraction};
}

}  // namespace

double interp3_quadratic(const CorrectionStencil& f, double a, double b, double c) {
  const double cross_ij = f.ahead_ij - f.ahead_i - f.ahead_j + f.centre;
  const double cross_ik = f.ahead_ik - f.ahead_i - f.ahead_k + f.centre;
  const double cross_jk = f.ahead_jk - f.ahead_j - f.ahead_k + f.centre;
  const double cross_ijk =
      f.ahead_ijk - f.ahead_ik - f.ahead_jk + f.ahead_k - f.ahead_ij + f.ahead_i + f.ahead_j - f.centre;
  const double slopes =
      (f.ahead_i - f.behind_i) * a + (f.ahead_j - f.behind_j) * b + (f.ahead_k - f.behind_k) * c;
  const double curvatures = a * a * (f.ahead_i - 2.0 * f.centre + f.behind_i) +
                            b * b * (f.ahead_j - 2.0 * f.centre + f.behind_j) +
                            c * c * (f.ahead_k - 2.0 * f.centre + f.behind_k);
  return f.centre + a * b * cross_ij + a * c * cross_ik + b * c * cross_jk + a * b * c * cross_ijk +
         0.5 * (slopes + curvatures);
}

double asian_call_correction(double S, double K, double sigma, double t1_days, double T_days) {
  const double s = sigma * std::sqrt(T_days / days_per_year);
  const double start = t1_days / T_days;
  const double moneyness = S / K;
  if (s <= 0.0 || moneyness <= 0.0 || start < 0.0) return 0.0;
  if (std::isnan(s) || std::isnan(start) || std::isnan(moneyness))
    return std::numeric_limits<double>::quiet_NaN();

  const Place deviation = locate((natural_log(s) - log_0_04) / log_62_5_over_9, 8);
  const Place begin = locate(natural_log(start + 1.0) / log_2_over_16, 15);
  const Place strike = locate((natural_log(moneyness) - log_one_third) / log_1_1, 50);
  const auto value = [&](int steps_i, int steps_j, int steps_k) {
    return asian_correction_table[deviation.node + steps_i * deviation.direction]
                                 [begin.node + steps_j * begin.direction]
                                 [strike.node + steps_k * strike.direction];
  };
  CorrectionStencil stencil;
  stencil.centre = value(0, 0, 0);
  stencil.ahead_i = value(1, 0, 0);
  stencil.behind_i = value(-1, 0, 0);
  stencil.ahead_j = value(0, 1, 0);
  stencil.behind_j = value(0, -1, 0);
  stencil.ahead_k = value(0, 0, 1);
  stencil.behind_k = value(0, 0, -1);
  stencil.ahead_ij = value(1, 1, 0);
  stencil.ahead_ik = value(1, 0, 1);
  stencil.ahead_jk = value(0, 1, 1);
  stencil.ahead_ijk = value(1, 1, 1);
  return interp3_quadratic(stencil, deviation.fraction, begin.fraction, strike.fraction) * S / 2.0;
}

}  // namespace kestran
