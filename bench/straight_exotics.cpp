#include <algorithm>
#include <cmath>
#include <vector>

#include "bench/straight.h"
#include "numerics/gauss_legendre.h"

namespace kestran::straight {

static int sign_of(double x) { return x < 0.0 ? -1 : 1; }

double binorm(double a, double b, double rho) {
  if (a <= 0.0 && b <= 0.0 && rho <= 0.0) {
    const double weight[4] = {0.3253030, 0.4211071, 0.1334425, 0.006374323};
    const double node[4] = {0.1337764, 0.6243247, 1.3425378, 2.2626645};
    const double a1 = a / std::sqrt(2.0 * (1.0 - rho * rho));
    const double b1 = b / std::sqrt(2.0 * (1.0 - rho * rho));
    double sum = 0.0;
    for (int i = 0; i < 4; ++i)
      for (int j = 0; j < 4; ++j)
        sum += weight[i] * weight[j] *
               std::exp(a1 * (2.0 * node[i] - a1) + b1 * (2.0 * node[j] - b1) +
                        2.0 * rho * (node[i] - a1) * (node[j] - b1));
    return std::sqrt(1.0 - rho * rho) / 3.141592653589793 * sum;
  }
  if (a * b * rho <= 0.0) {
    if (a <= 0.0 && b >= 0.0 && rho >= 0.0) return cnorm(a) - binorm(a, -b, -rho);
    if (a >= 0.0 && b <= 0.0 && rho >= 0.0) return cnorm(b) - binorm(-a, b, -rho);
    return cnorm(a) + cnorm(b) - 1.0 + binorm(-a, -b, rho);
  }
  const double distance = std::sqrt(a * a - 2.0 * rho * a * b + b * b);
  const double rho1 = (rho * a - b) * sign_of(a) / distance;
  const double rho2 = (rho * b - a) * sign_of(b) / distance;
  const double delta = (1 - sign_of(a) * sign_of(b)) / 4.0;
  return binorm(a, 0.0, rho1) + binorm(b, 0.0, rho2) - delta;
}

double barrier(double S, double K, double sigma, double r, double q, double days, double H, double R,
               int OptType, int KnockType) {
  const double phi = OptType == 1 ? 1.0 : -1.0;
  const double eta = H <= S ? 1.0 : -1.0;
  const double T = days / 365.25;
  const double v = sigma * std::sqrt(T);
  const double b = std::log((1.0 + r) / (1.0 + q));
  const double mu = (b - sigma * sigma / 2.0) / (sigma * sigma);
  const double lambda = std::sqrt(mu * mu + 2.0 * std::log(1.0 + r) / (sigma * sigma));
  const double x1 = std::log(S / K) / v + (1.0 + mu) * v;
  const double x2 = std::log(S / H) / v + (1.0 + mu) * v;
  const double y1 = std::log(H * H / (S * K)) / v + (1.0 + mu) * v;
  const double y2 = std::log(H / S) / v + (1.0 + mu) * v;
  const double z = std::log(H / S) / v + lambda * v;

  const double A =
      phi * S * std::exp(-q * T) * cnorm(phi * x1) - phi * K * std::exp(-r * T) * cnorm(phi * x1 - phi * v);
  const double B =
      phi * S * std::exp(-q * T) * cnorm(phi * x2) - phi * K * std::exp(-r * T) * cnorm(phi * x2 - phi * v);
  const double C = phi * S * std::exp(-q * T) * std::pow(H / S, 2.0 * (mu + 1.0)) * cnorm(eta * y1) -
                   phi * K * std::exp(-r * T) * std::pow(H / S, 2.0 * mu) * cnorm(eta * y1 - eta * v);
  const double D = phi * S * std::exp(-q * T) * std::pow(H / S, 2.0 * (mu + 1.0)) * cnorm(eta * y2) -
                   phi * K * std::exp(-r * T) * std::pow(H / S, 2.0 * mu) * cnorm(eta * y2 - eta * v);
  const double E = R * std::exp(-r * T) *
                   (cnorm(eta * x2 - eta * v) - std::pow(H / S, 2.0 * mu) * cnorm(eta * y2 - eta * v));
  const double F = R * (std::pow(H / S, mu + lambda) * cnorm(eta * z) +
                        std::pow(H / S, mu - lambda) * cnorm(eta * z - 2.0 * eta * lambda * v));

  const bool out = KnockType == 0;
  const bool call = phi > 0.0;
  const bool down = eta > 0.0;
  if (call && down) {
    if (K >= H) return out ? A - C + F : C + E;
    return out ? B - D + F : A - B + D + E;
  }
  if (call) {
    if (K >= H) return out ? F : A + E;
    return out ? A - B + C - D + F : B - C + D + E;
  }
  if (down) {
    if (K >= H) return out ? A - B + C - D + F : B - C + D + E;
    return out ? F : A + E;
  }
  if (K >= H) return out ? B - D + F : A - B + D + E;
  return out ? A - C + F : C + E;
}

double lookback(double S, double K, double r, double q, double sigma, double days, int OptType,
                double daysPerYear) {
  const double T = days / daysPerYear;
  const double v = sigma * std::sqrt(T);
  const double b = r - q;
  const double d1 = (std::log(S / K) + (b + sigma * sigma / 2.0) * T) / v;
  const double d2 = d1 - v;
  const double ratio = sigma * sigma / (2.0 * b);
  if (OptType != 0)
    return S * std::exp(-q * T) * cnorm(d1) - K * std::exp(-r * T) * cnorm(d2) +
           S * std::exp(-r * T) * ratio *
               (std::pow(S / K, -2.0 * b / (sigma * sigma)) * cnorm(-d1 + 2.0 * b * std::sqrt(T) / sigma) -
                std::exp(b * T) * cnorm(-d1));
  return K * std::exp(-r * T) * cnorm(-d2) - S * std::exp(-q * T) * cnorm(-d1) +
         S * std::exp(-r * T) * ratio *
             (-std::pow(S / K, -2.0 * b / (sigma * sigma)) * cnorm(d1 - 2.0 * b * std::sqrt(T) / sigma) +
              std::exp(b * T) * cnorm(d1));
}

double compound(double S, double X1, double X, double days1, double days2, double r, double q, double sigma_f,
                double sigma) {
  const double t1 = days1 / 365.35;
  const double T2 = days2 / 365.35;
  const double sigma1 = std::sqrt((T2 * sigma * sigma - (T2 - t1) * sigma_f * sigma_f) / t1);

  double low = 1e-12;
  double high = 1e8;
  double critical = (low + high) / 2.0;
  for (;;) {
    const double excess = european(critical, X, (days2 - days1) / 365.25, r, r, sigma_f, 1, 0) - X1;
    if (std::fabs(excess) < 0.0001) break;
    (excess > 0.0 ? high : low) = critical;
    critical = (low + high) / 2.0;
  }

  const double y1 =
      (std::log(S / critical) + (r - q + sigma1 * sigma1 / 2.0) * t1) / (sigma1 * std::sqrt(t1));
  const double y2 = y1 - sigma1 * std::sqrt(t1);
  const double z1 = (std::log(S / X) + (r - q + sigma * sigma / 2.0) * T2) / (sigma * std::sqrt(T2));
  const double z2 = z1 - sigma * std::sqrt(T2);
  const double rho = std::sqrt(t1 / T2) * sigma1 / sigma;
  return S * std::exp(-q * T2) * binorm(z1, y1, rho) - X * std::exp(-r * T2) * binorm(z2, y2, rho) -
         X1 * std::exp(-r * t1) * cnorm(y2);
}

double rainbow(double S1, double S2, double X, double r, double q1, double q2, double T, double sigma1,
               double sigma2, double rho, int OptType) {
  const double sigma = std::sqrt(sigma1 * sigma1 + sigma2 * sigma2 - 2.0 * rho * sigma1 * sigma2);
  const double d = (std::log(S1 / S2) + (q2 - q1 + sigma * sigma / 2.0) * T) / (sigma * std::sqrt(T));
  if (OptType == 5)
    return S1 * std::exp(-q1 * T) * cnorm(d) - S2 * std::exp(-q2 * T) * cnorm(d - sigma * std::sqrt(T));

  const double y1 = (std::log(S1 / X) + (r - q1 + sigma1 * sigma1 / 2.0) * T) / (sigma1 * std::sqrt(T));
  const double y2 = (std::log(S2 / X) + (r - q2 + sigma2 * sigma2 / 2.0) * T) / (sigma2 * std::sqrt(T));
  const double reverse_d = (std::log(S2 / S1) + (q1 - q2 + sigma * sigma / 2.0) * T) / (sigma * std::sqrt(T));
  const double rho1 = (rho * sigma2 - sigma1) / sigma;
  const double rho2 = (rho * sigma1 - sigma2) / sigma;
  return S1 * std::exp(-q1 * T) * (cnorm(d) - binorm(-y1, d, rho1)) +
         S2 * std::exp(-q2 * T) * (cnorm(reverse_d) - binorm(-y2, reverse_d, rho2)) -
         X * std::exp(-r * T) * (1.0 - binorm(-y1 + sigma1 * std::sqrt(T), -y2 + sigma2 * std::sqrt(T), rho));
}

double spread_of_forwards(double F, double K, double r, double sigma, double T) {
  const double d = (F - K) / (sigma * std::sqrt(T));
  const double density = std::exp(-d * d / 2.0) / std::sqrt(6.2832);
  return std::exp(-r * T) * ((F - K) * cnorm(d) + sigma * std::sqrt(T) * density);
}

double heat_rate(double SA, double SB, double K, double r, double sigma_A, double sigma_B, double rho,
                 double T) {
  const double sigma = std::sqrt(sigma_A * sigma_A + sigma_B * sigma_B - 2.0 * rho * sigma_A * sigma_B);
  const double d1 = (std::log(SA / (SB * K)) + sigma * sigma * T / 2.0) / (sigma * std::sqrt(T));
  const double d2 = d1 - sigma * std::sqrt(T);
  return std::exp(-r * T) * (SA / SB * cnorm(d1) - K * cnorm(d2));
}

double quanto(double E, double S, double K, double rd, double rf, double q, double sigma_S, double sigma_E,
              double rho, double T) {
  return E * european(S, K, T, rd, rd - rf + q + rho * sigma_S * sigma_E, sigma_S, 1, 0);
}

double spread(double SA, double SB, double K, double r, double sigma_A, double sigma_B, double rho,
              double T) {
  const double vA = sigma_A * std::sqrt(T);
  const double vB = sigma_B * std::sqrt(T);
  const double m = rho * vA;
  const double s = vA * std::sqrt(1.0 - rho * rho);
  const auto A = [&](double z) { return SA * std::exp(m * z - m * m / 2.0); };
  const auto strike = [&](double z) { return K + SB * std::exp(vB * z - vB * vB / 2.0); };

  // The integrand bends where exercise starts to pay: the panels meet there.
  const double lowest = std::min({0.0, m, vB});
  const double highest = std::max({0.0, m, vB});
  const double turning = (std::log(SB * vB / (SA * m)) + (m * m - vB * vB) / 2.0) / (m - vB);
  std::vector<double> monotone = {lowest - 5.0, highest + 5.0};
  if (turning > monotone[0] && turning < monotone[1]) monotone.insert(monotone.begin() + 1, turning);
  std::vector<double> panels = {lowest - 6.5};
  for (std::size_t i = 1; i < monotone.size(); ++i) {
    double left = monotone[i - 1], right = monotone[i];
    const bool pays_left = A(left) > strike(left);
    if ((A(right) > strike(right)) == pays_left) continue;
    while (right - left > 1e-10) {
      const double z = (left + right) / 2.0;
      ((A(z) > strike(z)) == pays_left ? left : right) = z;
    }
    panels.push_back(left);
  }
  panels.push_back(highest + 6.5);

  const int points[3][3] = {{55}, {27, 28}, {18, 19, 18}};
  double sum = 0.0;
  for (std::size_t panel = 0; panel + 1 < panels.size(); ++panel) {
    const QuadratureRule rule = gauss_legendre(points[panels.size() - 2][panel]);
    const double centre = (panels[panel + 1] + panels[panel]) / 2.0;
    const double half = (panels[panel + 1] - panels[panel]) / 2.0;
    for (int i = 0; i < rule.size; ++i) {
      const double z = centre + half * rule.nodes[i].x;
      const double d1 = std::log(A(z) / strike(z)) / s + s / 2.0;
      sum += half * rule.nodes[i].weight * normal_density(z) * (A(z) * cnorm(d1) - strike(z) * cnorm(d1 - s));
    }
  }
  return std::exp(-r * T) * sum;
}

double warrant(double S, double K, double r, double q, double sigma, double tv, double T, double Nwar,
               double Nshr) {
  const double m = Nwar / Nshr;
  double W = american_tree(S, K, T, tv, r, q, sigma, 1, 400) / (1.0 + m);
  for (int step = 0; step < 100; ++step) {
    const double before = W;
    W = american_tree(S + m * W, K, T, tv, r, q, sigma, 1, 400) / (1.0 + m);
    if (std::fabs(W - before) <= 1e-9 * K) break;
  }
  return W;
}

}  // namespace kestran::straight
