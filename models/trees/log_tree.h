// The recombining binomial tree of a factor in log space, for European payoffs at its last level.
#pragma once

namespace kestran {

/// Node i = 0 .. N of level N has the factor e^((2i - N) dx); each step goes up with probability p.
struct LogTree {
  double dx;
  double p;
};

/// The tree that matches mean and variance of the factor's logarithm over each step (Trigeorgis 1991, "A
/// log-transformed binomial numerical analysis method", Journal of Financial and Quantitative Analysis 26).
/// sigma volatility (per year), nu drift of the logarithm per unit of variance (-0.5 for a factor of constant
/// mean), T years in N steps. p is not a number when there is no such tree: T <= 0, sigma = 0, N < 1.
LogTree log_tree(double sigma, double nu, double T, int N);

/// How many nodes tree_factors writes: those of level N, made an even number by one beyond the top.
constexpr int padded_nodes(int N) { return N / 2 * 2 + 2; }

/// The logarithms of the factor at the padded_nodes(N) nodes, and the factors themselves.
void tree_factors(const LogTree& tree, int N, double* log_factor, double* factor);

/// The mean of x[0 .. N] over the nodes, which is what rolling back without discount gives, within 1e-12 of
/// the largest x for any N.
double binomial_mean(const double* x, int N, double p);

/// Corrects the payoffs pay[i] = max(g[i], 0) at the nodes i = 0 .. N beside each change of sign of the
/// exercise margin g, so that the sum over the nodes meets the integral of a payoff whose kink lies between
/// two nodes (Euler-Maclaurin end correction at the kink). It takes away the odd-even oscillation in N and
/// lets second differences see the kink. A corrected payoff may lie below 0, by up to 1/24 of the margin's
/// move between the nodes; a premium so far out of the money that the kink lies between the last nodes may
/// therefore come out below 0, by at most 2e-5 of price times sigma sqrt(T) (near 15 steps; 3e-7 at 25, 1e-12
/// at 50).
void kink_correct(const double* g, double* pay, int N);

}  // namespace kestran
