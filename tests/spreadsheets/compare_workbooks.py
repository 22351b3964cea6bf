"""Compares the numbers of a workbook that calls the functions before and after a spreadsheet worked them out.

  compare_workbooks.py BEFORE.xlsx AFTER.xlsx

The numbers of formulas must agree to 1e-8: spreadsheets read typed decimals, and reckon, in a precision of their own, and
a difference of two prices shows it more. Formulas with a LAMBDA, which only Excel knows, are left out.
"""

import re
import sys
import xml.etree.ElementTree as tree
import zipfile

MAIN = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
OFFICE = "{http://schemas.openxmlformats.org/officeDocument/2006/relationships}"


def cells(path):
    """By sheet and place: formula, kind and value of the cells that have a value."""
    found = {}
    with zipfile.ZipFile(path) as book:
        targets = {
            relation.get("Id"): relation.get("Target").removeprefix("/xl/")
            for relation in tree.fromstring(book.read("xl/_rels/workbook.xml.rels"))
        }
        for sheet in tree.fromstring(book.read("xl/workbook.xml")).iter(f"{MAIN}sheet"):
            for cell in tree.fromstring(book.read("xl/" + targets[sheet.get(f"{OFFICE}id")])).iter(f"{MAIN}c"):
                value = cell.findtext(f"{MAIN}v")
                if value is not None:
                    formula = cell.find(f"{MAIN}f")
                    found[sheet.get("name"), cell.get("r")] = (formula is not None and (formula.text or ""), cell.get("t", "n"), value)
    return found


before, after = (cells(path) for path in sys.argv[1:])
calls = same_bits = numbers = 0
wrong = []
for place, (formula, kind, value) in before.items():
    if formula is False or kind != "n" or "LAMBDA(" in formula:
        continue
    numbers += 1
    calls += bool(re.search(r"\b_xll\.", formula))
    _, kind_after, value_after = after.get(place, ("", "nothing", ""))
    if kind_after != "n" or abs(float(value) - float(value_after)) > 1e-8 * max(1e-3, abs(float(value))):
        wrong.append((*place, formula[:200], value, value_after))
    else:
        same_bits += float(value) == float(value_after)
for row in wrong[:20]:
    print(*row, sep="\t")
print(f"{numbers} numbers of formulas, {calls} of calls; {same_bits} with the same bits, {len(wrong)} wrong")
sys.exit(bool(wrong) or not calls)
