"""A million EURO through the package, against the bare model and what users write themselves; see run."""
import ctypes
import sys
import time

import numpy as np
from scipy.special import ndtr
from scipy.stats import norm

import kestran

RATE, YIELD, CALL = 0.05, 0.02, 1
IN_CACHE = 4000
OPTIONS = 1_000_000


def book(rows):
    random = np.random.default_rng(1)
    return [np.ascontiguousarray(random.uniform(low, high, rows))
            for low, high in ((50, 150), (50, 150), (0.1, 0.6), (5, 700))]


def bare_model(library):
    kernel = ctypes.CDLL(library).kernel
    pointer, double, integer = ctypes.c_void_p, ctypes.c_double, ctypes.c_int
    kernel.argtypes = [pointer, pointer, double, double, pointer, pointer, integer, integer, pointer, ctypes.c_long]
    kernel.restype = None

    def call(price, strike, vol, days):
        premium = np.empty_like(price)
        data = [array.ctypes.data for array in (price, strike, vol, days, premium)]
        kernel(data[0], data[1], RATE, YIELD, data[2], data[3], CALL, 0, data[4], len(price))
        return premium

    return call


def package(price, strike, vol, days):
    return kestran.EURO(price, strike, RATE, YIELD, vol, days, CALL)


def users_own(price, strike, vol, days, normal=norm.cdf):
    years = days / 365.25
    deviation = vol * np.sqrt(years)
    d1 = (np.log(price / strike) + (RATE - YIELD + 0.5 * vol * vol) * years) / deviation
    call = price * np.exp(-YIELD * years) * normal(d1) - strike * np.exp(-RATE * years) * normal(d1 - deviation)
    return np.where(CALL != 0, call, call - price * np.exp(-YIELD * years) + strike * np.exp(-RATE * years))


def users_quickest(price, strike, vol, days):
    return users_own(price, strike, vol, days, ndtr)


def quantlib():
    import QuantLib as ql

    today = ql.Date(15, 1, 2024)
    ql.Settings.instance().evaluationDate = today
    count = ql.Actual365Fixed()
    spot, vol = ql.SimpleQuote(100.0), ql.SimpleQuote(0.2)
    rates = [ql.YieldTermStructureHandle(ql.FlatForward(today, rate, count)) for rate in (YIELD, RATE)]
    surface = ql.BlackVolTermStructureHandle(
        ql.BlackConstantVol(today, ql.NullCalendar(), ql.QuoteHandle(vol), count))
    engine = ql.AnalyticEuropeanEngine(ql.BlackScholesMertonProcess(ql.QuoteHandle(spot), *rates, surface))

    def call(price, strike, vols, days):
        premium = []
        for s, k, v, d in zip(price, strike, vols, days):
            spot.setValue(float(s))
            vol.setValue(float(v))
            option = ql.VanillaOption(ql.PlainVanillaPayoff(ql.Option.Call, float(k)), ql.EuropeanExercise(today + int(d)))
            option.setPricingEngine(engine)
            premium.append(option.NPV())
        return premium

    return call


def nanoseconds(call, arrays, repeats):
    begin = time.process_time()
    for _ in range(repeats):
        call(*arrays)
    return (time.process_time() - begin) * 1e9 / (repeats * len(arrays[0]))


def main():
    bare = bare_model(sys.argv[1])
    cases = [("bare model, in cache", bare, IN_CACHE), ("kestran, in cache", package, IN_CACHE),
             ("bare model", bare, OPTIONS), ("kestran", package, OPTIONS),
             ("NumPy, scipy.stats.norm", users_own, OPTIONS), ("the same, in cache", users_own, IN_CACHE),
             ("NumPy, scipy.special.ndtr", users_quickest, OPTIONS),
             ("the same instead, in cache", users_quickest, IN_CACHE)]
    if "--no-quantlib" not in sys.argv:
        cases.append(("loop over QuantLib", quantlib(), 2000))
    books = {rows: book(rows) for _, _, rows in cases}
    assert (package(*books[IN_CACHE]) == bare(*books[IN_CACHE])).all()
    assert np.abs(package(*books[IN_CACHE]) - users_own(*books[IN_CACHE])).max() < 1e-4
    times = {name: [] for name, _, _ in cases}
    for _ in range(9):  # in turns, so that what else the machine does meets all of them
        for name, call, rows in cases:
            times[name].append(nanoseconds(call, books[rows], max(1, OPTIONS // 2 // rows) if rows == IN_CACHE else 1))
    medians = {name: float(np.median(values)) for name, values in times.items()}
    print(f"{'':28}{'ns an option':>14}{'to kestran':>12}")
    for name, value in medians.items():
        against = medians["kestran, in cache" if name.endswith("in cache") else "kestran"]
        print(f"{name:28}{value:14.0f}{value / against:12.2f}")
    begin = time.process_time()
    for _ in range(20000):
        kestran.EURO(100, 95, RATE, YIELD, 0.25, 90, CALL)
    print(f"one call of numbers alone: {(time.process_time() - begin) / 20000 * 1e6:.1f} microseconds")


main()
