"""A book of 100,000 oil and gas deals: its value, its risks, and its P&L over a grid of prices and volatilities.

    PYTHONPATH=build/python /usr/bin/python3 examples/book.py book.png

The deals are made up. Each `# %%` begins a cell of a notebook.
"""
# %% The deals: a table for each function, with a column for each of its arguments
import sys

import numpy as np
import pandas as pd

import kestran

random = np.random.default_rng(2026)


def draw(low, high, count):
    return random.uniform(low, high, count)


def table(count, **arguments):
    deals = pd.DataFrame(arguments | {"IntRt": 0.04, "OptType": random.integers(0, 2, count)}, index=range(count))
    return deals.assign(Quantity=random.integers(-50, 51, count) * 1000)


def shares(price, low, high):
    return price * draw(low, high, len(price))


oil, crude, gas, product = (draw(low, high, n) for low, high, n in
                            ((65, 75, 40_000), (68, 72, 25_000), (3, 4, 15_000), (68, 72, 10_000)))
average, leg = draw(68, 72, 6_000), draw(85, 95, 4_000)
book = {
    "EURO_Forward": table(40_000, Price=oil, Strike=shares(oil, 0.8, 1.2), Vol=draw(0.25, 0.4, 40_000),
                          ExpDays=draw(5, 700, 40_000)),
    "EURO": table(25_000, Price=crude, Strike=shares(crude, 0.8, 1.2), Yield=0.02, Vol=draw(0.25, 0.4, 25_000),
                  ExpDays=draw(5, 700, 25_000)),
    "AMER": table(15_000, Price=gas, Strike=shares(gas, 0.8, 1.2), Yield=0.04, Vol=draw(0.4, 0.7, 15_000),
                  ExpDays=draw(5, 360, 15_000)),
    "BRRR": table(10_000, Price=product, Strike=shares(product, 0.9, 1.1), Yield=0.04, Vol=draw(0.25, 0.4, 10_000),
                  ExpDays=draw(5, 360, 10_000), BarrPr=shares(product, 0.4, 0.5), Rebate=0, KnockType=0),
    "ASN": table(6_000, Price=average, Strike=shares(average, 0.9, 1.1), Vol=draw(0.25, 0.4, 6_000), SetPrice=0,
                 TotDays=21, SetDays=0, toNext=0.1, toEnd=0.18),
    "SPRDOPT": table(4_000, PriceA=leg, PriceB=shares(leg, 0.8, 0.95), Strike=draw(2, 12, 4_000),
                     VolA=draw(0.25, 0.35, 4_000), VolB=draw(0.25, 0.35, 4_000), Correl=0.9,
                     ExpDays=draw(5, 360, 4_000)),
}


def arguments(deals):
    return {name: deals[name] for name in deals.columns if name != "Quantity"}


# %% Value and risks: every result of every deal, one line for each function
def risks(name, deals):
    results = getattr(kestran, name)(**arguments(deals), results="all", errors="raise")
    in_money = results.mul(deals.Quantity, axis=0).sum()

    def total(risk):  # a function of two prices has a risk for each
        return sum(in_money.get(one, 0.0) for one in (risk, risk + "_a", risk + "_b"))

    return {"deals": len(deals), "value": in_money["premium"]} | {risk: total(risk)
                                                                 for risk in ("delta", "gamma", "vega", "theta")}


report = pd.DataFrame({name: risks(name, deals) for name, deals in book.items()}).T
report.loc["book"] = report.sum()
print("Value and risks, in thousands of dollars (gamma and delta per dollar of price)\n")
print((report / np.array([1, *[1000] * 5])).round(0).astype(int).to_string())

# %% The scenario grid: all deals under all shocks at once, by broadcasting
price_shocks = np.linspace(-0.25, 0.25, 11)
vol_shocks = np.linspace(-0.3, 0.3, 7)


def scenario_values(name, deals):
    shocked = {}
    for argument, column in arguments(deals).items():
        numbers = column.to_numpy(float)
        if argument.startswith("Price"):
            numbers = numbers * (1 + price_shocks)[:, None, None]
        elif argument.startswith("Vol"):
            numbers = numbers * (1 + vol_shocks)[:, None]
        shocked[argument] = numbers
    return getattr(kestran, name)(**shocked, errors="raise") @ deals.Quantity.to_numpy(float)


values = sum(scenario_values(name, deals) for name, deals in book.items())
profit = (values - values[len(price_shocks) // 2, len(vol_shocks) // 2]) / 1e6
grid = pd.DataFrame(profit, index=[f"price {shock:+.0%}" for shock in price_shocks],
                    columns=[f"vol {shock:+.0%}" for shock in vol_shocks])
priced = sum(map(len, book.values())) * profit.size
print(f"\nP&L in millions of dollars, from {priced:,} prices\n")
print(grid.round(2).to_string())

# %% The picture
import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt

figure, axes = plt.subplots(figsize=(8, 5))
for k, shock in enumerate(vol_shocks):
    axes.plot(100 * price_shocks, profit[:, k], label=f"{shock:+.0%}", color=plt.cm.viridis(k / len(vol_shocks)))
axes.axhline(0, color="grey", linewidth=0.8)
axes.set(xlabel="change of all prices, %", ylabel="P&L, millions of dollars", title="P&L of the book")
axes.legend(title="change of volatility")
picture = sys.argv[1] if len(sys.argv) > 1 else "book.png"
figure.savefig(picture, dpi=120)
print(f"\n{picture} has the picture")
