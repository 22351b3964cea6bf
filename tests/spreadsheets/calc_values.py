#!/usr/bin/python3
"""Prints what LibreOffice Calc makes of a workbook, every cell worked out anew.

    calc_values.py [--extension KESTRAN.oxt] FILE

A line for each cell that is not empty: sheet, cell, kind (number, text or error), value, formula or constant, with
tabulators between them. A number is written so that it reads back to the same bits.
"""
import argparse
import os

from calc import Calc, CellError, cells

options = argparse.ArgumentParser(usage=__doc__)
options.add_argument("--extension", default=os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../build/linux/KESTRAN.oxt"))
options.add_argument("file")
options = options.parse_args()

with Calc(options.extension) as calc:
    for cell in cells(calc.open(options.file)):
        if isinstance(cell.value, CellError):
            kind, value = "error", cell.value.shown
        elif isinstance(cell.value, float):
            kind, value = "number", repr(cell.value)
        else:
            kind, value = "text", cell.value
        print(cell.sheet, cell.place, kind, *(" ".join(text.split()) for text in (value, cell.formula)), sep="\t")
