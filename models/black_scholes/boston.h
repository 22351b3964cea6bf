// Boston (break-forward) options.
#pragma once

namespace kestran {

/// The strike at which a Boston option is fair. No premium is paid today: the holder of the call type buys at
/// expiry at the agreed price B but may break the contract at the cost of B less the strike K. That is an
/// option struck at K whose premium, compounded to expiry, is paid then in every case. The put type sells,
/// with a strike above B. K solves e^(rT) option(K) = |B - K| (Hull, "Options, Futures and Other
/// Derivatives", on break forwards) with option by bs_general, met within 1e-7 of the forward price.
///
/// S price, B agreed price (break-even), T years to expiry, r interest rate and q yield (continuous, per
/// year), sigma volatility (per year; 0 and less are taken as 1e-5). OptType 0 put type, any other value call
/// type.
///
/// -99.0 where no strike exists: B better for the holder than the forward price, the put type at the forward
/// price itself, S or B not above 0. The call type at the forward price gives 0: it is never broken. T <= 0
/// or not a number: B where B is no better than S, else -99.0.
double boston_strike(double S, double B, double T, double r, double q, double sigma, int OptType);

}  // namespace kestran
