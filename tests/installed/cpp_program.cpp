// The same numbers through the C++ interface of the models.
#include <kestran/models/baskets/basket_vol.h>
#include <kestran/models/black_scholes/european.h>

#include <cstdio>

int main() {
  const double F[] = {100, 90}, sigma[] = {0.3, 0.4}, mu[] = {0.02, -0.01}, w[] = {0.6, 0.4},
               rho[] = {1, 0.5, 0.5, 1};
  const auto euro = [](double strike, int result) {
    return kestran::bs_general(100, strike, 90 / 365.25, 0.05, 0.02, 0.25, 1, result);
  };
  std::printf("EURO %.17g\n", euro(95, 0));
  std::printf("BASVOL %.17g\n", kestran::basket_vol_moment_match(F, sigma, mu, w, rho, 2, 0.75));
  std::printf("book %.17g %.17g %.17g\n", euro(95, 0), euro(95, 1), euro(105, 0));
}
