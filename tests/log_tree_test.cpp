#include "models/trees/log_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace kestran {
namespace {

// Mean and variance of the number of steps up are N p and N p (1 - p).
TEST(LogTree, WeightsAreBinomial) {
  for (int N : {1, 2, 3, 24, 1001, 10000})
    for (double p : {0.0, 0.003, 0.4, 0.5, 0.77, 1.0}) {
      std::vector<double> weight(N + 1), ups, squares;
      for (int k = 0; k <= N; ++k) {
        ups.push_back(k);
        squares.push_back((k - N * p) * (k - N * p));
      }
      const int likeliest = binomial_weights(N, p, weight.data());
      EXPECT_EQ(*std::max_element(weight.begin(), weight.end()), weight[likeliest]) << N << " " << p;
      const auto mean = [&](const std::vector<double>& x) {
        return binomial_mean(x.data(), weight.data(), 0, likeliest, N);
      };
      EXPECT_NEAR(mean(ups), N * p, 1e-12 * N) << N << " " << p;
      EXPECT_NEAR(mean(squares), N * p * (1 - p), 1e-12 * N) << N << " " << p;
    }
}

// 1, 4, 6, 4, 1 of 16, of which the outer ones are left out.
TEST(LogTree, MeanOverSomeNodes) {
  const double x[5] = {NAN, 1, 2, 4, NAN};
  double weight[5];
  const int likeliest = binomial_weights(4, 0.5, weight);
  EXPECT_EQ(likeliest, 2);
  EXPECT_NEAR(binomial_mean(x, weight, 1, likeliest, 3), (4 * 1 + 6 * 2 + 4 * 4) / 14.0, 1e-15);
}

}  // namespace
}  // namespace kestran
