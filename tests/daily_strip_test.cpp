// Strips of daily options, on one price and on the difference of two.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "models/black_scholes/european.h"
#include "models/exotics/spread_kernel.h"
#include "models/strips/ostrip.h"
#include "models/strips/ostripsprd.h"
#include "models/strips/strip_days.h"

namespace kestran {
namespace {

constexpr int smallest = std::numeric_limits<int>::min();
constexpr int largest = std::numeric_limits<int>::max();

const OptionStrip fixed_price{4, 4.2, 20, 30, 60, 0, .05, .5, .9, 1, 0, 1};
const OptionStrip with_basis{4, 0, 20, 30, 60, 1, .05, .5, .9, .95, .10, 0};
const OptionStrip set_midway{4, 0, 15.5, 5, 40, 1, .05, .6, .9, .95, .2, 3};
const SpreadStrip fixed_spread{5, 4, .4, .8, .35, .7, .9, .8, .9, 20, 30, 60, .05, 1, 0, 0, 1};
const SpreadStrip spread_to_set{5, 4, .4, .8, .35, .7, .9, .8, 0, 20, 30, 60, .05, 1, .05, 1, 1};
const SpreadStrip spread_set_midway{4, 5, .5, .7, .6, .5, .5, .3, 0, 10, 5, 12, .04, .9, -.1, 1, 0};

template <class Strip>
struct Row {
  Strip strip;
  std::vector<double> result;
  struct {
    bool closed_form;
    double simulated, error;  // price by simulating paths, and its standard error
  } known;
};

// Closed form: with cnorm's polynomial in mpmath, 30 digits. The others: numerical integration over the price
// on the setting day with the exact normal distribution.
TEST(OptionStrip, EveryResult) {
  const Row<OptionStrip> rows[] = {
      {fixed_price,
       {0.3295951495087923, 0.4731594349572025, 0.3888347212120116, 0.5327221328629479, -0.04208778758575422,
        -0.7632795818927711, 0.1652812663345602, 0.170305107447707, 0.3624313186389604, -0.371413049611013,
        -1.559935023227127},
       {true, 0.329708, 0.000375}},
      {{4, 4.2, 20, 30, 60, 1, .05, .5, .9, 1, 0, 1},
       {0.3659653618673092, 0.09149134046682731, 0, 0.4046273113500609, -0.04675592231300185,
        0.01829952059871025, 0.1011568278375152, 0, 0.4046273113500609, -0.4511845952, -1.804738121338564},
       {true, 0.36527, 0.00057}},
      {with_basis,
       {0.3139686269, 0.06603591056, 0.0002891103676, 0.3971477798, -0.0403190766, 0.01512139314,
        0.09671637657, 0.0001266594424, 0.3970211344, 0.4982726466, 1.99057457},
       {false, 0.31332, 0.00056}},
      {{4, 4.1, 0, -10, 20, 1, .05, .5, .9, 1, .05, 1},
       {0.1091725572500771, 0.2669908173516704, 0.4846846045981079, 0.1622353590320681, -0.003864322904564275,
        -3.195180218455136, 0.09866211523775539, 0, 0.1622353590320681, -0.2301003804726911,
        -0.9434119093554227},
       {true, 0.10919, 0.00022}},
      {{4, 4.1, 90, 100, 130, 1, .05, .8, 1.2, 1, -.5, 1},
       {0.7486172294, 0.1079404136, 0.006116732579, 0.3534339456, -0.237517811, 0.006120875543, 0.1041632047,
        0.01929351907, 0.33414132, -0.6338084524, -2.419287517},
       {false, 0.748257, 0.000541}},
      {{4, 4.1, 1, -3, 20, 2, -.02, .5, .9, 1.1, .05, 0},
       {0.4610932577, 0.1062053184, 5.041767004e-05, 0.1573601264, -0.01342573276, -0.008947425056,
        0.04124330599, 1.104394909e-06, 0.157359022, 0.7254459818, 2.901739782},
       {false, 0.461120, 0.000060}},
      {set_midway,
       {0.1756600631, 0.06741233167, 0.01736071647, 0.1961566508, -0.0145239683, -0.04270095965,
        0.04710827499, 0.004534109831, 0.1916226034, -0.4693792884, -1.93090944},
       {false, 0.175649, 0.000139}},
  };
  const double steps[11] = {1, 1e3, 1e7, 1e4, 1, 1e3, 1e8, 1e4, 1e4, 1e3, 1e3};  // magnify rounding
  for (const auto& row : rows) {
    for (int RetType = 0; RetType <= 10; ++RetType) {
      const bool to_basis = row.strip.FwdStFlag != 0 && RetType == 9;
      const double tolerance =
          !row.known.closed_form || to_basis ? (RetType == 0 ? 4e-7 : 5e-5) : 1e-14 * steps[RetType];
      EXPECT_NEAR(ostrip_greek(row.strip, RetType), row.result[RetType], tolerance)
          << "B " << row.strip.B << " pct " << row.strip.pct << " RetType " << RetType;
    }
    EXPECT_NEAR(ostrip_greek(row.strip, 0), row.known.simulated, 3 * row.known.error);
  }
}

TEST(OptionStrip, KnownRelations) {
  OptionStrip one_day{100, 95, 3, 90, 90, 0, .05, .3, .3, 1, 0, 1};
  for (int OptType : {0, 1}) {
    one_day.OptType = OptType;
    EXPECT_NEAR(ostrip_greek(one_day, 0), bs_general(100, 95, 90 / 365.25, .05, .05, .3, OptType, 0), 1e-12);
  }

  OptionStrip strip = with_basis;
  strip.OptType = 1;
  double discounts = 0;
  for (int day = 30; day <= 60; ++day) discounts += std::exp(-.05 * day / 365.25) / 31;
  EXPECT_NEAR(ostrip_greek(strip, 0) - ostrip_greek(with_basis, 0), discounts * (4 - .95 * 4 - .1), 4e-7);
  strip.K = 77;
  EXPECT_EQ(ostrip_greek(strip, 0), ostrip_greek({4, 0, 20, 30, 60, 1, .05, .5, .9, .95, .10, 1}, 0));
  strip.basis = 1e-9;
  EXPECT_NEAR(ostrip_greek(strip, 0), ostrip_greek({4, 0, 20, 30, 60, 1, .05, .5, .9, .95, 0, 1}, 0), 6e-7);

  // Without a share in the price to come the strike is known today.
  strip.pct = 0;
  strip.basis = 4.2;
  EXPECT_NEAR(ostrip_greek(strip, 0), ostrip_greek(fixed_price, 0), 6e-7);

  OptionStrip set = fixed_price;
  set.NowToSet = 0;
  for (int RetType : {0, 1, 5}) {
    set.FwdStFlag = 0;
    const double fixed = ostrip_greek(set, RetType);
    set.FwdStFlag = 1;
    EXPECT_EQ(ostrip_greek(set, RetType), fixed);
  }
}

// Expected: the derivatives, that is the probability of exercise and the mean of the setting price under
// exercise, integrated over that price with the exact normal distribution.
TEST(OptionStrip, BasisAndShareOfShortOptionsThatExpireBeforeTheSetting) {
  const struct {
    OptionStrip strip;
    double by_basis, by_pct;
  } rows[] = {{{4, 0, 20, 1, 5, 1, .05, .5, .9, .95, .2, 1}, -0.4910507534, -2.034154688},
              {{4, 0, 20, 3, 10, 1, .05, .5, .9, .95, .2, 0}, 0.5126221462, 1.945953989},
              {{4, 0, 8, 3, 12, 1, .05, .5, .9, .9, .42, 1}, -0.2995557729, -1.245321611}};
  for (const auto& row : rows) {
    EXPECT_NEAR(ostrip_greek(row.strip, 9) / row.by_basis, 1.0, 0.003);
    EXPECT_NEAR(ostrip_greek(row.strip, 10) / row.by_pct, 1.0, 0.003);
  }
  // At a share of 0 the move down would be no price.
  EXPECT_TRUE(std::isfinite(ostrip_greek({4, 0, 8, 9, 12, 1, .05, .5, .9, 0, 4, 1}, 10)));
}

TEST(OptionStrip, DegenerateInputs) {
  const auto days = [](int B, int E, int RetType) {
    return ostrip_greek({4, 3.5, 0, B, E, 0, .05, .5, .9, 1, 0, 1}, RetType);
  };
  EXPECT_EQ(days(0, 0, 0), 0.5);
  EXPECT_EQ(days(0, 0, 5), 0.0);
  EXPECT_EQ(days(-1, 0, 0), 0.25);
  EXPECT_EQ(days(5, 4, 0), 0.0);
  EXPECT_EQ(days(-9, -3, 0), 0.0);
  EXPECT_NEAR(days(smallest, 0, 0), 0.5 / 2147483649.0, 1e-24);
  EXPECT_TRUE(std::isfinite(days(1, 36525, 0)));
  EXPECT_TRUE(std::isnan(days(0, 36525, 0)));
  EXPECT_TRUE(std::isnan(days(smallest, largest, 4)));
  EXPECT_TRUE(std::isfinite(days(largest, largest, 0)));
  for (int RetType : {-1, 11, largest}) EXPECT_EQ(days(1, 2, RetType), 99.0);
  for (double NowToSet : {-5.0, 0.5, 1e300})
    for (double basis : {0.0, -9.0}) {
      const OptionStrip no_volatility{4, 3.5, NowToSet, 1, 3, 1, 0, 0, 0, 1, basis, 1};
      EXPECT_NEAR(ostrip_greek(no_volatility, 0), (NowToSet > 0 ? 0 : 0.5) - basis, 1e-9) << NowToSet;
    }
  const double nan = std::nan("");
  EXPECT_TRUE(std::isnan(ostrip_greek({nan, 4.2, 20, 30, 60, 1, .05, .5, .9, 1, -5, 0}, 0)));
  EXPECT_TRUE(std::isnan(ostrip_greek({4, 4.2, nan, 30, 60, 1, .05, .5, .9, 1, 0, 0}, 0)));
  EXPECT_TRUE(std::isnan(ostrip_greek({4, 4.2, 20, 30, 60, 1, .05, .5, nan, 1, .1, 0}, 0)));
}

// Expected: the strip with the spread options integrated over one price on a dense grid with the exact normal
// distribution; the same with 31 x 31 Gauss-Hermite nodes up to 1e-8.
TEST(SpreadStrip, EveryResult) {
  const Row<SpreadStrip> rows[] = {
      {fixed_spread,
       {0.3128513124, 0.5864918063, -0.5344141655, 0.6003002769, 0.6255099208, 0.4481937377, -0.1029832763,
        -0.5341151281, -0.03957639495, -0.2551939724, 0.07441266533, -0.1126031352, -0.6123847588,
        0.3307197377, -0.05337866139, -0.4403955797, -0.520167596, -0.4691904},
       {false, 0.312798, 0.000471}},
      {spread_to_set,
       {0.2258123066, 0.0592958632, -0.01221647623, 0.01214763614, 0.0191662778, 0.3725572249, -0.06874385894,
        -0.4654625106, -0.02896020832, 0.006561514771, 0.004441555453, -0.003630525556, -0.01521778003,
        0.3711546393, -0.06862219256, -0.4631319373, -0.4284464056, -0.4297252406},
       {false, 0.225465, 0.000212}},
      {{4, 5, .5, .7, .6, .5, -.2, -.3, 0, 1, -3, 12, .04, .9, -.1, 1, 0},
       {0.1442842334, -0.01808621422, 0.05718910608, 1.581346401, 1.268500445, 0.1117554283, 0.1317742511,
        -0.0551299834, -0.003128511331, -0.2311507685, 1.10698589, 1.106290433, -0.6436477473, 0.111220069,
        0.1309123244, -0.05482352262, 0.4434079258, -0.3834670732},
       {false, 0.144234, 0.000091}},
      {spread_set_midway,
       {0.03155379879, -0.04573827114, 0.05308259472, 0.0858354787, 0.08567686679, 0.0195461766,
        0.03374518276, -0.0241271293, -0.0008808422804, -0.3099098539, -0.02902582278, -0.02386827636,
        -0.08573344061, 0.01601917549, 0.01624775776, -0.01361883134, 0.5108393515, -0.6091831566},
       {false, 0.031580, 0.000036}},
  };
  for (const auto& row : rows) {
    for (int RetType = 0; RetType <= 17; ++RetType)
      EXPECT_NEAR(ostripsprd_greek(row.strip, RetType), row.result[RetType], RetType == 0 ? 5e-7 : 5e-5)
          << "B " << row.strip.B << " RetType " << RetType;
    EXPECT_NEAR(ostripsprd_greek(row.strip, 0), row.known.simulated, 3 * row.known.error);
  }
}

TEST(SpreadStrip, KnownRelations) {
  const double T = 90 / 365.25;
  double out[3];
  const double expected =
      spread_kernel(100, 90, 8, .3 * std::sqrt(T), .25 * std::sqrt(T), .6, std::exp(-.05 * T), 1, out);
  // By the correlation, where it may only fall.
  EXPECT_NEAR(ostripsprd_greek({5, 4, .4, .8, .35, .7, -.5, 1, .9, 20, 30, 60, .05, 1, 0, 0, 1}, 7),
              ostripsprd_greek({5, 4, .4, .8, .35, .7, -.5, .9995, .9, 20, 30, 60, .05, 1, 0, 0, 1}, 7),
              1e-3);
  EXPECT_NEAR(ostripsprd_greek({100, 90, .3, .3, .25, .25, .6, .6, 8, 30, 90, 90, .05, 1, 0, 0, 1}, 0),
              expected, 1e-6);
  // Set after the strip, the daily inputs do not count.
  EXPECT_NEAR(ostripsprd_greek({100, 90, .3, 9, .25, 9, .6, -1, 8, 90, 90, 90, .05, 1, 0, 0, 1}, 0), expected,
              1e-6);

  // A second price near 0 leaves a strip on the first.
  for (const OptionStrip& s : {fixed_price, with_basis})
    EXPECT_NEAR(ostripsprd_greek({s.F, 1e-12, s.sigma_before, s.sigma_after, .1, .1, 0, 0, s.K, s.NowToSet,
                                  s.B, s.E, s.r, s.pct, s.basis, s.FwdStFlag != 0, s.OptType != 0},
                                 0),
                ostrip_greek(s, 0), 1e-6);

  // Call less put is what the strikes leave of the spread, also where they are set within the strip.
  double discounts = 0;
  for (int day = 5; day <= 12; ++day) discounts += std::exp(-.04 * day / 365.25) / 8;
  for (double pct : {.9, 1.0, 1.2}) {
    SpreadStrip strip = spread_set_midway;
    strip.pct = pct;
    const double put = ostripsprd_greek(strip, 0);
    strip.OptType = 1;
    EXPECT_NEAR(ostripsprd_greek(strip, 0) - put, discounts * ((1 - pct) * (4 - 5) + .1), 1e-6) << pct;
  }
}

double one_result(const OptionStrip& strip, int RetType) { return ostrip_greek(strip, RetType); }
double one_result(const SpreadStrip& strip, int RetType) { return ostripsprd_greek(strip, RetType); }

template <class Strip>
double mean_of_days(Strip strip, int RetType) {
  const int B = strip.B, E = strip.E;
  double sum = 0;
  for (strip.B = B < 0 ? 0 : B; strip.B <= E; ++strip.B) {
    strip.E = strip.B;
    sum += one_result(strip, RetType);
  }
  return sum / (E - B + 1);
}

// A strip of one day is priced as it is.
TEST(LongStrips, InterpolationMeetsTheMeanOfOneDayStrips) {
  const SpreadStrip spreads[] = {
      {5, 4, .4, .8, .35, .7, .9, .8, 0, 20, 30, 394, .05, 1, .05, 1, 1},      // 18 nodes
      {5, 6, .2, .3, 1.1, 1.9, -.6, .3, 0, 29, 30, 394, -.02, .9, .3, 1, 0},   // 24
      {5, 4.8, .3, .5, .25, .4, .95, .9, 0, 12.5, -10, 430, .05, 1, 0, 1, 1},  // 55, set within
      {5, 4, .01, .01, .012, .009, .5, .6, 0, 40, 1, 120, .05, 1.02, -.03, 1, 1},
      {5, 3, 1.6, 2, 1.5, 2, .99, 1, 0, 9, 10, 375, .05, 1.1, 0, 1, 0},
      {5, 6, .4, .5, .4, .6, -.999, -.9999, 0, 9, 10, 130, .05, 1, -.2, 1, 0},
      // spread_kernel jumps on some of the days
      {5.04, 6.145, .45, 1.18, .32, .56, .88, .999, 0, 107, 125, 391, .05, .92, -.359, 1, 1},
  };
  for (const SpreadStrip& strip : spreads) {
    const auto row = &strip - spreads;
    EXPECT_NEAR(ostripsprd_greek(strip, 0), mean_of_days(strip, 0), 1e-9 * 5) << row;
    EXPECT_NEAR(ostripsprd_greek(strip, 8), mean_of_days(strip, 8), 2e-9 * 5) << row;
  }
  const OptionStrip options[] = {{4, 0, 20, 30, 394, 1, .05, .5, .9, .95, .1, 0},
                                 {4, 0, 29, 30, 394, 1, .05, .3, .4, 1, .02, 1},
                                 {4, 0, 200.5, -5, 900, 1, -.02, .5, .6, .9, .35, 1},
                                 {4, 0, 9, 10, 375, 1, .05, .01, .015, 1.01, -.04, 0},
                                 {4, 0, 84, 113, 364, 1, .05, .26, .38, .949, -.0228, 1}};
  for (const OptionStrip& strip : options) {
    const auto row = &strip - options;
    EXPECT_NEAR(ostrip_greek(strip, 0), mean_of_days(strip, 0), 1e-9 * 4) << row;
    for (int RetType : {1, 3, 4, 5, 7, 8, 9})
      EXPECT_NEAR(ostrip_greek(strip, RetType), mean_of_days(strip, RetType), 2e-6) << row << ' ' << RetType;
  }
  SpreadStrip season = spreads[0];
  season.E = 89;
  for (int RetType = 1; RetType <= 17; ++RetType) {
    const bool second_difference = RetType == 3 || RetType == 4 || (RetType >= 10 && RetType <= 12);
    EXPECT_NEAR(ostripsprd_greek(season, RetType), mean_of_days(season, RetType),
                second_difference ? 2e-5 : 2e-7)  // that is, the noise of spread_kernel
        << RetType;
  }

  for (double SpreadStrip::*input : {&SpreadStrip::F2, &SpreadStrip::sigma1_d, &SpreadStrip::rho_d,
                                     &SpreadStrip::rho_m, &SpreadStrip::r, &SpreadStrip::pct}) {
    SpreadStrip strip = spreads[0];
    strip.*input = NAN;
    EXPECT_TRUE(std::isnan(ostripsprd_greek(strip, 0)));
  }
}

// Where the lognormal distribution has no answer; prices of 0, strikes below 0 and payoffs of today do.
TEST(DailyStrips, PricesThatAreNotPositive) {
  const double disc = std::exp(-.05 * 60 / 365.25), no_number = NAN;
  const struct {
    OptionStrip strip;
    double value;
  } options[] = {{{-4, -4.2, 20, 60, 60, 0, .05, .5, .9, 1, 0, 1}, no_number},
                 {{-4, 4.2, 20, 60, 60, 0, .05, .5, .9, 1, 0, 0}, no_number},
                 {{-4, 0, 20, 60, 60, 1, .05, .5, .9, 1, 0, 1}, no_number},
                 {{-4, 0, 90, 60, 60, 1, .05, .5, .9, .9, .1, 1}, no_number},
                 {{-4, -4.2, 20, 60, 60, 0, .05, 0, 0, 1, 0, 1}, .2 * disc},
                 {{-4, -4.2, 20, 0, 0, 0, .05, .5, .9, 1, 0, 1}, .2},
                 {{0, 4.2, 20, 60, 60, 0, .05, .5, .9, 1, 0, 0}, 4.2 * disc},
                 {{0, 0, 20, 60, 60, 1, .05, .5, .9, 1, .1, 0}, .1 * disc},
                 {{4, -4.2, 20, 60, 60, 0, .05, .5, .9, 1, 0, 1}, 8.2 * disc},
                 {{4, -4.2, 20, 60, 60, 0, .05, .5, .9, 1, 0, 0}, 0}};
  for (const auto& row : options) {
    const double value = ostrip_greek(row.strip, 0);
    if (std::isnan(row.value)) {
      EXPECT_TRUE(std::isnan(value)) << &row - options;
    } else {
      EXPECT_NEAR(value, row.value, 1e-9) << &row - options;
    }
  }
  const auto spread = [](double F1, double F2, double K, int day, int flag) {
    return ostripsprd_greek({F1, F2, .4, .8, .35, .7, .9, .8, K, 20, day, day, .05, 1, .1, flag, 0}, 0);
  };
  for (int flag : {0, 1})
    for (int day : {10, 60}) {
      EXPECT_TRUE(std::isnan(spread(5, -4, 9, day, flag))) << flag << day;
      EXPECT_TRUE(std::isnan(spread(-5, 4, -9, day, flag))) << flag << day;
      EXPECT_TRUE(std::isnan(spread(-5, -4, -1, day, flag))) << flag << day;
    }
  EXPECT_NEAR(spread(5, -4, 9, 0, 0), .1, 1e-15);
  EXPECT_NEAR(spread(0, 4, .9, 60, 0), 5 * disc, 1e-9);
}

TEST(SpreadStrip, DegenerateInputs) {
  const auto days = [](int B, int E, int RetType, double rho = .9, double sigma = .4, int flag = 0) {
    return ostripsprd_greek({5, 4, sigma, .8, .35, .7, rho, .8, .5, 4, B, E, .05, 1, 0, flag, 1}, RetType);
  };
  EXPECT_EQ(days(0, 0, 0), 0.5);
  EXPECT_EQ(days(0, 0, 9), 0.0);
  EXPECT_EQ(days(5, 4, 0), 0.0);
  EXPECT_TRUE(std::isnan(days(0, 3653, 0)));
  EXPECT_TRUE(std::isnan(days(smallest, largest, 12)));
  EXPECT_FALSE(days(largest, largest, 0) < 0.0);
  EXPECT_EQ(days(1, 2, 18), 99.0);
  for (int flag : {0, 1}) {
    for (double SpreadStrip::*rho : {&SpreadStrip::rho_m, &SpreadStrip::rho_d})
      for (double limit : {-1.0, 1.0}) {
        SpreadStrip within{5, 4, .4, .8, .35, .7, .3, .2, .5, 4, 2, 9, .05, 1, 0, flag, 1}, beyond = within;
        within.*rho = limit;
        beyond.*rho = 1.5 * limit;
        EXPECT_EQ(ostripsprd_greek(beyond, 0), ostripsprd_greek(within, 0)) << flag << limit;
      }
    EXPECT_EQ(days(2, 9, 0, .9, -1, flag), days(2, 9, 0, .9, 1e-5, flag)) << flag;
    EXPECT_TRUE(std::isnan(days(2, 9, 0, std::nan(""), .4, flag))) << flag;
  }
}

}  // namespace
}  // namespace kestran
