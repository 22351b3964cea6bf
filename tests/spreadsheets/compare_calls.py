"""Compares what a spreadsheet shows for the calls of make_calls.py with what it must show, as numbers by their bits.

  compare_calls.py EXPECTED SHOWN.csv...
"""

import csv
import struct
import sys


def value(text):
    # The command's names of what spreadsheets show as errors.
    text = {"#ERR(65535)": "#65535!", "inf": "#NUM!", "-inf": "#NUM!", "nan": "#NUM!", "-nan": "#NUM!"}.get(text, text)
    try:
        return struct.pack("<d", float(text))
    except ValueError:
        return text


expected = [line.rstrip("\n").split("\t") for line in open(sys.argv[1])]
failed = not expected
for path in sys.argv[2:]:
    shown = [row[0] if row else "" for row in csv.reader(open(path))]
    wrong = [(*row, show) for row, show in zip(expected, shown) if value(row[1]) != value(show)]
    print(f"{path}: {len(expected) - len(wrong)} of {len(expected)} alike")
    for formula, must, show in wrong[:20]:
        print(f"  {formula}\n    must show {must}\n    shows     {show}")
    failed |= bool(wrong) or len(shown) != len(expected)
sys.exit(failed)
