// Recomputes the correction table of the average-price call, models/asian/asian_correction_table.cpp.
//
//   make_asian_correction_table [NODES]          prints the rows of the table as they stand in that file
//   make_asian_correction_table --check [NODES]  compares them with the table built in: exit status 1 when an
//                                                entry differs by more than one in the last decimal
//
// NODES is the size of the coarser of two price grids: 300 takes a second and is within 1e-7 of the limit,
// 1000 (the default for printing) takes ten seconds and is within 1e-9. Three entries lie within 1e-10 of the
// middle between two six-decimal numbers, so another grid may round them the other way.
//
// An entry is 2 (A - B) / S plus the calibration term, rounded to six decimals, where
//   A  undiscounted call on the continuous average of a driftless lognormal price over [t1, T],
//   B  undiscounted Black call with the total standard deviation s f, f^2 = (1 - rho) / 3 + rho,
// s = sigma sqrt(T), rho = t1 / T; the axes are described in models/asian/asian_correction_table.h.
//
// A comes from the average-price equation in one space dimension (Vecer 2002, "Unified Asian pricing", Risk
// 15): with time scaled to T = 1,
//   u_t + s^2/2 (z - q(t))^2 u_zz = 0,   u(1, z) = max(z, 0),   A/S = u(0, 1 - K/S),
// where q is the share of the average still to be fixed: 1 until averaging starts, then falling in a straight
// line to 0. Crank-Nicolson with a damped start, on a grid and on one twice as fine in both directions,
// extrapolated.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "models/asian/asian_correction_table.h"

namespace kestran {
namespace {

constexpr int deviations = 10;
constexpr int starts = 17;
constexpr int strikes = 52;

double total_deviation(double i) { return 0.04 * std::pow(62.5, i / 9.0); }

double normal(double x) { return 0.5 * std::erfc(-x / std::sqrt(2.0)); }

// Undiscounted Black call in units of S; x = S/K.
double black_call(double x, double deviation) {
  const double d1 = std::log(x) / deviation + 0.5 * deviation;
  return normal(d1) - normal(d1 - deviation) / x;
}

struct Solution {
  double variance;
  std::vector<double> z, u;
  std::vector<double> diagonal, upper;  // room for the tridiagonal elimination
};

// Nodes even in xi, where ln(1 - z) = gather s sinh(xi): dense at the kink z = 0, which is a node, and out to
// eight standard deviations either side.
Solution payoff_on_grid(double s, int half) {
  constexpr double gather = 0.05;
  const double range = std::asinh(8.0 / gather);
  Solution solution;
  solution.variance = s * s;
  for (int m = half; m >= -half; --m) {
    const double z = -std::expm1(gather * s * std::sinh(range * m / half));
    solution.z.push_back(z);
    solution.u.push_back(std::max(z, 0.0));
  }
  solution.diagonal.assign(solution.z.size(), 1.0);
  solution.upper.assign(solution.z.size(), 0.0);
  return solution;
}

// One step of length dt back in time; implicit 1 is the implicit Euler step, 0.5 Crank-Nicolson. The end
// values stay: 0 and z, the intrinsic value.
void step_back(Solution& solution, double q, double dt, double implicit) {
  const std::vector<double>& z = solution.z;
  std::vector<double>& u = solution.u;
  std::vector<double>& diagonal = solution.diagonal;
  std::vector<double>& upper = solution.upper;
  const std::size_t last = z.size() - 1;
  double before = u[0];
  for (std::size_t m = 1; m < last; ++m) {
    const double down = z[m] - z[m - 1];
    const double up = z[m + 1] - z[m];
    const double diffusion = solution.variance * (z[m] - q) * (z[m] - q) * dt / (down + up);
    const double to_lower = diffusion / down;
    const double to_upper = diffusion / up;
    const double current = u[m];
    const double known =
        current + (1.0 - implicit) * (to_lower * (before - current) + to_upper * (u[m + 1] - current));
    before = current;
    const double factor = -implicit * to_lower / diagonal[m - 1];
    diagonal[m] = 1.0 + implicit * (to_lower + to_upper) - factor * upper[m - 1];
    upper[m] = -implicit * to_upper;
    u[m] = known - factor * u[m - 1];
  }
  for (std::size_t m = last - 1; m >= 1; --m) u[m] = (u[m] - upper[m] * u[m + 1]) / diagonal[m];
}

// The equation solved back from expiry to today. refine 1 or 2 divides both steps.
Solution solve(double s, double rho, int nodes, int refine) {
  const int half = nodes / 2 * refine;
  Solution solution = payoff_on_grid(s, half);

  // Steps are small next to expiry; the first few are two implicit half steps, which damp the kink's
  // oscillation.
  const auto graded = [&](int m) {
    const double y = static_cast<double>(m) / half;
    return y * y * (1.5 - 0.5 * y);
  };
  for (int m = 0; m < half; ++m) {
    const double begin = graded(m);
    const double length = graded(m + 1) - begin;
    const double dt = (1.0 - rho) * length;
    if (m < 2 * refine) {
      step_back(solution, begin + 0.25 * length, dt / 2.0, 1.0);
      step_back(solution, begin + 0.75 * length, dt / 2.0, 1.0);
    } else {
      step_back(solution, begin + 0.5 * length, dt, 0.5);
    }
  }
  const int waiting_steps = static_cast<int>(std::ceil(nodes / 2 * rho)) * refine;
  for (int m = 0; m < waiting_steps; ++m) step_back(solution, 1.0, rho / waiting_steps, 0.5);
  return solution;
}

// Six-point interpolation; beyond the grid the intrinsic value.
double value_at(const Solution& solution, double z) {
  const std::vector<double>& nodes = solution.z;
  if (z <= nodes.front()) return 0.0;
  if (z >= nodes.back()) return z;
  const auto above =
      static_cast<std::size_t>(std::upper_bound(nodes.begin(), nodes.end(), z) - nodes.begin());
  const std::size_t first = std::min(above < 3 ? 0 : above - 3, nodes.size() - 6);
  double sum = 0.0;
  for (std::size_t p = first; p < first + 6; ++p) {
    double term = solution.u[p];
    for (std::size_t other = first; other < first + 6; ++other)
      if (other != p) term *= (z - nodes[other]) / (nodes[p] - nodes[other]);
    sum += term;
  }
  return sum;
}

// What carries the table through its reference values, given the undiscounted call on the average in units of
// S: it grows steeply with s and vanishes with the averaging period and with the option's value.
double calibration_term(double s, double rho, double x, double call) {
  const double L = std::log(s / total_deviation(5.0));
  const double curvature = L > 0.0 ? 0.175 : 0.32;
  const double term = 0.00021460460874795818 * std::exp(3.1903460056086868 * L + curvature * L * L) *
                      std::pow(1.0 - rho, 1.6490760955198356) * (1.0 + 0.015 * std::log(x));
  return term * call / (call + 0.4280976808956122 * term / 2.0);
}

// The 52 entries of one row, rounded to six decimals.
std::vector<double> table_row(int i, int j, int nodes) {
  std::vector<double> row(strikes, 0.0);
  if (j == starts - 1) return row;
  const double s = total_deviation(i);
  const double rho = std::exp2(j / 16.0) - 1.0;
  const double deviation = s * std::sqrt((1.0 - rho) / 3.0 + rho);
  const Solution coarse = solve(s, rho, nodes, 1);
  const Solution fine = solve(s, rho, nodes, 2);
  for (std::size_t k = 0; k < row.size(); ++k) {
    const double x = std::pow(1.1, static_cast<double>(k)) / 3.0;
    const double z = 1.0 - 1.0 / x;
    const double call = (4.0 * value_at(fine, z) - value_at(coarse, z)) / 3.0;
    const double entry = 2.0 * (call - black_call(x, deviation)) + calibration_term(s, rho, x, call);
    row[k] = std::round(entry * 1e6) / 1e6 + 0.0;  // the sum turns -0 into 0
  }
  return row;
}

void print_table(int nodes) {
  constexpr std::size_t per_line = 9;
  for (int i = 0; i < deviations; ++i) {
    std::printf("  {\n");
    for (int j = 0; j < starts; ++j) {
      if (j == starts - 1) {
        std::printf("    {},\n");
        continue;
      }
      const std::vector<double> row = table_row(i, j, nodes);
      for (std::size_t k = 0; k < row.size(); ++k)
        std::printf("%s%.6f%s",
                    k == 0              ? "    {"
                    : k % per_line == 0 ? "\n     "
                                        : " ",
                    row[k], k + 1 < row.size() ? "," : "},\n");
    }
    std::printf("  },\n");
  }
}

// The number of entries that differ by more than one in the last decimal.
int check_table(int nodes) {
  int wrong = 0;
  int rounded_otherwise = 0;
  for (int i = 0; i < deviations; ++i)
    for (int j = 0; j < starts; ++j) {
      const std::vector<double> row = table_row(i, j, nodes);
      for (std::size_t k = 0; k < row.size(); ++k) {
        const double shipped = asian_correction_table[i][j][k];
        const double difference = std::fabs(row[k] - shipped);
        if (difference > 0.5e-6) ++rounded_otherwise;
        if (difference <= 1.5e-6) continue;
        ++wrong;
        std::printf("[%d][%d][%d] is %.6f, recomputed %.6f\n", i, j, static_cast<int>(k), shipped, row[k]);
      }
    }
  std::printf("%d entries wrong, %d rounded the other way, of %d\n", wrong, rounded_otherwise - wrong,
              deviations * starts * strikes);
  return wrong;
}

}  // namespace
}  // namespace kestran

int main(int argc, char** argv) {
  const bool check = argc > 1 && std::strcmp(argv[1], "--check") == 0;
  const int position = check ? 2 : 1;
  const int nodes = argc > position ? std::atoi(argv[position]) : check ? 300 : 1000;
  if (argc > position + 1 || nodes < 20 || nodes > 10000) {
    std::fprintf(stderr, "usage: make_asian_correction_table [--check] [NODES from 20 to 10000]\n");
    return 2;
  }
  if (check) return kestran::check_table(nodes) == 0 ? 0 : 1;
  kestran::print_table(nodes);
  return 0;
}
