// Average-price options whose fixings run over two consecutive futures contracts.
#pragma once

#include <cstddef>
#include <cstdint>

#include "models/repricings.h"

namespace kestran {

/// More fixings than this (270 years of daily ones) are not priced.
constexpr int two_contract_most_fixings = 100000;
struct TwoContracts;
using TwoContractRepricings = Repricings<TwoContracts, double, 20>;

/// The terms of an average-price option on two contracts, contract 1 at index 0 of each pair: its fixings
/// come first in the count of those made. Times are in years from today; a fixing that is outstanding though
/// its time has passed counts as one of today.
struct TwoContracts {
  double F[2] = {};             // futures prices
  double sigma_before[2] = {};  // volatility up to the contract's first fixing, per year
  double sigma_within[2] = {};  // volatility from then on, and throughout once one of its fixings is made
  double Next[2] = {};          // next outstanding fixing of each contract
  double End[2] = {};           // last fixing of each contract
  std::int64_t one_period = 0;  // 1: all fixings lie evenly from Next[0], then the very first, to End[1]
  int n[2] = {};                // number of fixings of each contract, made or not
  int m = 0;                    // number of fixings made over both contracts
  int OptType = 0;              // 0 put, any other value call
  double A = 0.0;               // average of the fixings made
  double K = 0.0;               // strike of the average
  double r = 0.0;               // interest rate, continuous, per year
  double rho = 0.0;             // correlation of the two contracts
  double ToExp = 0.0;           // years to payment
  TwoContractRepricings* kept = nullptr;  // what other results of the same call worked out; null for nothing
};
template <>
inline constexpr std::size_t bytes_of_terms<TwoContracts> = offsetof(TwoContracts, kept);
static_assert(bytes_of_terms<TwoContracts> == 18 * sizeof(double));

/// Premium of the option. The average of the outstanding fixings, spread evenly over each contract's dates
/// (or, with one_period, over both contracts' together), is taken as the lognormal variable with its exact
/// first two moments (compare Turnbull and Wakeman 1991, Levy 1992); fixings made move the strike. The
/// premium at the last fixing is carried to the payment at r.
///
/// Error against simulations of the fixings (tools/measure-accuracy: averaging over the last two to fifteen
/// weeks, sigma_within 0.8 to 1.5 times sigma_before, price / strike 0.7 to 1.4), as a share of the premium
/// at the money: half of the deals within 0.08 %; 95 % of them within 0.4 % at sigma sqrt(T) up to 0.12 and
/// within 1 % above, to 0.8; the largest from 1.4 % below to 2.2 % above, and to 3 %
/// where volatilities exceed 100 %.
///
/// With nothing left to fix the result is the payoff of the settled average, and with an average set so high
/// that the call cannot end worthless, that of the expected average: discounted over ToExp unless that is
/// negative. An End before Next counts as Next.
///
/// Not a number: n or m below 0, more than two_contract_most_fixings in all, no fixings at all, a price below
/// 0 of a contract that has fixings to come (unless all are due today), and both prices 0. One price of 0
/// stays 0; a price without fixings to come is not looked at.
double two_contract_price(const TwoContracts& option);

/// Premium or sensitivities by repricing with small moves (h is 0.0001 of the mean of the two prices):
///   0 premium
///   1 delta of a contract: its price up by h
///   2 change of a contract's delta as both prices rise by h, per 1.00 of price
///   3 vega of a contract by sigma_before, up by 0.01 %, per 1.00 of volatility
///   4 rho: rate up by 0.0001, per 1.00 of rate
///   5 theta per year from one calendar day, a fixing that falls due made at its contract's price
///   6 theta per year from one calendar day, time passing only
///   7 vega of a contract by sigma_within, up by 0.01 %, per 1.00 of volatility
///   8 sensitivity to the correlation: up by 0.0001, per 1.00
///   9 change of a contract's vega (result 3) as both prices rise by h, per 1.00 of price
/// Results 1, 2, 3, 7 and 9 are those of `contract`, 1 or 2, which the others do not look at. Not a number:
/// an unknown RetType, another contract, and a vega at no volatility.
double two_contract_sens(const TwoContracts& option, int RetType, int contract);

}  // namespace kestran
