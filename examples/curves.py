"""Strips: options on forward curves, a curve for each deal.

    PYTHONPATH=build/python /usr/bin/python3 examples/curves.py

The last dimension of an array is the curve. The deals are made up. Each `# %%` begins a cell of a notebook.
"""
# %% A year of monthly futures: prices, volatilities and the days on which each month's average is made
import numpy as np
import pandas as pd

import kestran

months = np.arange(12)
futures = 72 - 0.4 * months
vols = 0.36 - 0.008 * months
first_day, last_day = (10 + 30.4 * months) / 365.25, (38 + 30.4 * months) / 365.25
fixings = np.full(12, 21)

# %% One deal: a call on the average of the first three months
three = slice(0, 3)
strip = dict(Price_rng=futures[three], Vol_rng=vols[three], Next_rng=first_day[three], End_rng=last_day[three],
             Settles_rng=fixings[three], SetDays=0, Strike=71, IntRt=0.04, Correl=0.95, SetPrice=0,
             ToExp=last_day[2], Opttype=1)
print("A call on the average of three months:", round(kestran.ASTRIP(**strip, RetMonth=1), 4))

# The delta with each month's price, by broadcasting over RetMonth.
deltas = kestran.ASTRIP(**strip, RetType="delta", RetMonth=np.arange(1, 4))
print("deltas by month:", deltas.round(4), "together", round(deltas.sum(), 4))

# %% Twelve deals of different lengths at once: what a shorter curve lacks is NaN, in every range
lengths = np.arange(1, 13)
own = np.where(months < lengths[:, None], 1.0, np.nan)  # a row a deal
deals = pd.DataFrame({
    "months": lengths,
    "premium": kestran.ASTRIP(futures * own, vols * own, first_day * own, last_day * own, fixings * own, SetDays=0,
                              Strike=71, IntRt=0.04, Correl=0.95, SetPrice=0, ToExp=last_day[lengths - 1],
                              Opttype=1, RetMonth=1),
})
print("\nCalls on the average of the first months\n")
print(deals.round(4).to_string(index=False))

# %% The same strip after parallel moves of the curve, and with flatter and steeper curves
moves = np.linspace(-10, 10, 5)[:, None]
tilts = np.linspace(-0.5, 0.5, 3)[:, None, None] * (months[three] - 1)
moved = futures[three] + moves + tilts  # tilts x moves x months
strip["Price_rng"] = moved
grid = kestran.ASTRIP(**strip, RetMonth=1)
print("\nThe call on three months: curve moved up and down, and tilted\n")
print(pd.DataFrame(grid.T, index=[f"{move:+.0f}" for move in moves[:, 0]],
                   columns=[f"tilt {tilt:+.2f}" for tilt in (-0.5, 0, 0.5)]).round(3).to_string())

# %% Daily gas options for three months, every result of three volumes at once
gas = kestran.YRSTRIP(Price_rng=[4, 4.1, 3.9], Strike_rng=[4.1, 4.1, 4], IntRt_rng=[0.05, 0.051, 0.052],
                      Vol_rng=[0.6, 0.55, 0.5], ToSet_rng=[0, 0, 0], BegDays_rng=[5, 36, 66],
                      EndDays_rng=[35, 65, 96], Qty_rng=[310, 300, 620], AnnualQty=1230,
                      Opttype=pd.Series([0, 1], index=["puts", "calls"]), results="all")
print("\nDaily gas options: every result\n")
print(gas.T.round(4).to_string())
