#include "numerics/root_bracketed.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kestran {
namespace {

struct RootCase {
  const char* name;
  double (*f)(double);
  double a, b, root;
  int most;  // evaluations
};

const RootCase root_cases[] = {
    {"line", [](double x) { return 3.0 - 2.0 * x; }, -10.0, 10.0, 1.5, 1},
    {"cosine", [](double x) { return std::cos(x); }, 0.0, 3.0, std::acos(0.0), 15},
    {"flat then steep", [](double x) { return std::pow(x, 21) - 0.5; }, 0.0, 2.0, std::pow(0.5, 1.0 / 21.0),
     30},
    {"a jump", [](double x) { return x < 0.3 ? -1.0 : 1e6; }, 0.0, 1.0, 0.3, 130},
    {"slowly past zero", [](double x) { return x < 1.0 ? -1e-9 : x - 1.0; }, -5.0, 1e9, 1.0, 210},
};

TEST(RootBracketed, FindsRootsInFewEvaluations) {
  for (const RootCase& c : root_cases) {
    int evaluations = 0;
    const auto f = [&](double x) {
      EXPECT_TRUE(x > c.a && x < c.b) << c.name << " evaluated at " << x;
      ++evaluations;
      return c.f(x);
    };
    const BracketedRoot found = root_bracketed(f, c.a, c.b, c.f(c.a), c.f(c.b), 0.0, 1e-12, 250);
    EXPECT_EQ(found.status, 1) << c.name;
    EXPECT_NEAR(found.x, c.root, 1e-12) << c.name;
    EXPECT_LE(evaluations, c.most) << c.name;
  }
}

// No number is the root, and no tolerance lets the search end before.
TEST(RootBracketed, EndsBetweenNeighbouringNumbers) {
  int evaluations = 0;
  const auto f = [&](double x) { return ++evaluations, x < 1e6 * std::sqrt(2.0) ? -1.0 : 1e-3; };
  const BracketedRoot found = root_bracketed(f, 0.0, 1e7, -1.0, 1e-3, 0.0, 0.0, 10000);
  EXPECT_EQ(found.status, 1);
  EXPECT_NEAR(found.x, 1e6 * std::sqrt(2.0), 1e-9);
  EXPECT_LT(evaluations, 200);
}

TEST(RootBracketed, SaysWhyThereIsNone) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const auto line = [](double x) { return x; };
  EXPECT_EQ(root_bracketed(line, 1.0, 2.0, 1.0, 2.0, 0.1, 0.0, 9).status, -1);
  EXPECT_EQ(root_bracketed(line, 1.0, 2.0, nan, 2.0, 0.1, 0.0, 9).status, -1);
  EXPECT_EQ(root_bracketed(line, 0.05, 2.0, 0.05, 2.0, 0.1, 0.0, 9).x, 0.05);
  EXPECT_EQ(root_bracketed(line, -2.0, 0.05, -2.0, 0.05, 0.1, 0.0, 9).x, 0.05);
  const BracketedRoot close =
      root_bracketed([](double x) { return x - 0.7; }, 0.0, 9.0, -0.5, 99.0, 0.0, 0.0, 3);
  EXPECT_EQ(close.status, 0);
  EXPECT_TRUE(close.x > 0.0 && close.x < 9.0) << close.x;
  const BracketedRoot lost = root_bracketed([=](double) { return nan; }, 0.0, 1.0, -1.0, 1.0, 0.0, 0.0, 9);
  EXPECT_TRUE(std::isnan(lost.x) && lost.status == 0);
}

}  // namespace
}  // namespace kestran
