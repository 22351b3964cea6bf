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

/// How likely each node of level N is, relative to the likeliest of them, whose number is returned:
/// weight[0 .. N], within 1e-12 for any N.
int binomial_weights(int N, double p, double* weight);

/// The mean of x over the nodes, which is what rolling back without discount gives, where weight is of
/// binomial_weights and `likeliest` its answer. Only the nodes first .. last, the likeliest among them, are
/// added up; the mean of all has the same bits where no weight and no product of weight and x beyond reaches
/// the last bit of its sum.
double binomial_mean(const double* x, const double* weight, int first, int likeliest, int last);

}  // namespace kestran
