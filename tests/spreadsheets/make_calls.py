"""Writes a workbook of calls for Gnumeric, and what they must show.

  make_calls.py KESTRAN OUT.xlsx OUT.expected < FORMULAS

The last file has the formulas and, behind a tabulator, the answers of the command KESTRAN. Left out is what reckons
outside of functions, which Gnumeric does in a precision of its own. Numbers are written with 17 digits: read as numbers
wider than a double, and rounded to one, they are still the same.
"""
import re
import subprocess
import sys

from call_book import Call, write_book

TEXT = re.compile(r'("(?:[^"]|"")*")')
NUMBER = re.compile(r"(?<![\w.#])((?:\d+\.?\d*|\.\d+)(?:E[+-]?\d+)?)(%?)(?![\w.!])", re.I)


def exact(formula):
    parts = TEXT.split(formula)
    parts[::2] = [NUMBER.sub(lambda found: f"{float(found[1]) / (100 if found[2] else 1):.17g}", part) for part in parts[::2]]
    return "".join(parts)


def reckons(formula):
    return re.search(r"[-+*/^&%]", re.sub(r"(?<=[,({;])-", "", exact(TEXT.sub("", formula)).replace("e-", "e")))


kestran, out, expected = sys.argv[1:]
formulas = [line.strip().lstrip("=") for line in sys.stdin if line.strip()]
formulas = [formula for formula in formulas if re.fullmatch(r"[\w.]+\(.*\)", formula) and not reckons(formula)]
answers = subprocess.run([kestran], input="\n".join(formulas), capture_output=True, text=True).stdout.splitlines()
calls = [Call(*re.fullmatch(r"([\w.]+)\((.*)\)", exact(formula)).groups()) for formula in formulas]
write_book(out, [(call.formula(), call) for call in calls], lambda argument: not re.fullmatch(r"[-+\d.e]+", argument, re.I))
with open(expected, "w") as file:
    file.writelines(f"{formula}\t{answer}\n" for formula, answer in zip(formulas, answers, strict=True))
