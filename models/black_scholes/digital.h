// Options that pay or cost a fixed amount when they end in the money: cash-or-nothing and pay-later options.
#pragma once

namespace kestran {

/// Results of the options below, 0 .. 5 of a European option.
constexpr int digital_results = 6;

/// Premium or a sensitivity of a cash-or-nothing option (Rubinstein and Reiner 1991, "Unscrambling the binary
/// code"): it pays Cash at expiry if the price then is above the strike (call) or below it (put); at the
/// strike itself it pays nothing. Normal distribution by cnorm, so within 7.5e-8 of Cash.
///
/// Cash of any sign, S price, K strike, T years to expiry, r interest rate and q yield (continuous, per
/// year), sigma volatility (per year). OptType 0 put, any other value call. RetType selects the result:
///   0 premium   1 delta   2 gamma   3 vega, per 1.00 of volatility
///   4 -T times the premium, as in bs_general   5 theta, change of value per year as time passes
///
/// T <= 0 or not a number: RetType 0 is what is paid, every other RetType 0. sigma <= 0 is taken as 1e-5. An
/// unknown RetType gives 99.0. S and K are not checked.
double digital_option(double Cash, double S, double K, double T, double r, double q, double sigma,
                      int OptType, int RetType);

/// Every result of digital_option for one option: results[RetType], with its bits.
void digital_option_all(double Cash, double S, double K, double T, double r, double q, double sigma,
                        int OptType, double results[digital_results]);

/// Premium or a sensitivity of a cash-on-delivery (pay-later) option (Kat 1994, "Contingent premium
/// options"): nothing is paid today; at expiry, if and only if it is in the money, the holder must exercise
/// and pay Premium, even where that is more than the exercise brings, so the value may be negative.
/// Arguments, RetType 0..5, expiry and the volatility's floor as in digital_option, Premium as an amount at
/// expiry; an unknown RetType gives 99.0. A negative S or K before expiry gives not a number.
double cod_option(double S, double K, double T, double r, double q, double sigma, double Premium, int OptType,
                  int RetType);

/// Every result of cod_option for one option: results[RetType], with its bits.
void cod_option_all(double S, double K, double T, double r, double q, double sigma, double Premium,
                    int OptType, double results[digital_results]);

/// The contingent premium: the Premium, due at expiry, that makes cod_option worth nothing today. Arguments
/// as there. Positive and at least the forward's exercise value, measured within 6e-5 of itself, also far
/// out of the money. T <= 0 or not a number: the exercise value. A negative S or K before expiry, and one of
/// 0 that leaves no chance of exercise, give not a number.
double cod_premium(double S, double K, double T, double r, double q, double sigma, int OptType);

}  // namespace kestran
