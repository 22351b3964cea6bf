"""The formulas of a folder through Python and, as one file of deals, through the command; an answer a line.

calls.py FOLDER COMMAND reads FOLDER/calls and writes FOLDER/python and FOLDER/files.
"""
import csv
import subprocess
import sys

import kestran
from command import call_of

folder, command = sys.argv[1:]
with open(f"{folder}/calls", encoding="utf-8") as file:
    written = [line.rstrip("\n").split("\t") for line in file]
calls = [call_of(formula) for formula, _, _, _ in written]

with open(f"{folder}/python", "w", encoding="utf-8") as file:
    for _, _, _, call in written:
        print(repr(float(eval(call, {"kestran": kestran}))), file=file)


def field(value):
    """A number, a range 20;21;22 or a matrix 1;0.5|0.5;1."""
    if not isinstance(value, list):
        return repr(value)
    if isinstance(value[0], list):
        return "|".join(field(row) for row in value)
    return ";".join(repr(cell) for cell in value)


names = sorted({name.lower() for function, _ in calls for name in function.arguments})
with open(f"{folder}/deals.csv", "w", encoding="utf-8", newline="") as file:
    deals = csv.DictWriter(file, ["Function", *names])
    deals.writeheader()
    for function, arguments in calls:
        cells = zip((name.lower() for name in function.arguments), map(field, arguments))
        deals.writerow({"Function": function.__name__, **dict(cells)})

subprocess.run(
    [command, "price", "--strict", "--input", f"{folder}/deals.csv", "--output", f"{folder}/prices.csv"], check=True
)
with open(f"{folder}/prices.csv", encoding="utf-8", newline="") as prices, open(
    f"{folder}/files", "w", encoding="utf-8"
) as file:
    for row in csv.DictReader(prices):
        print(row["result"], file=file)
