"""Formulas of the case files as calls, and what the command answers for them."""
import glob
import os
import re
import struct
import subprocess

import numpy as np

import kestran
from kestran import _core

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
COMMAND = os.path.join(os.path.dirname(os.path.dirname(kestran.__file__)), "bin", "kestran")
CODES = {"#NULL!": 0, "#DIV/0!": 7, "#VALUE!": 15, "#REF!": 23, "#NAME?": 29, "#NUM!": 36, "#N/A": 42}


class NotPlain(Exception):
    """A formula that is more than one call of constants."""


def cell(text):
    text = text.strip()
    if text == "":
        return None
    if text in CODES:
        return _core.error_number(CODES[text])
    if text.upper() in ("TRUE", "FALSE"):
        return text.upper() == "TRUE"
    if re.fullmatch(r'"[^"]*"', text):
        return text[1:-1]
    try:
        if text.endswith("%"):
            return float(text[:-1]) / 100
        if "/" in text:
            dividend, divisor = text.split("/")
            return float(dividend) / float(divisor)
        return float(text)
    except (ValueError, ZeroDivisionError):
        raise NotPlain from None


def argument(text, dimensions):
    text = text.strip()
    if not text.startswith("{"):
        return cell(text)
    rows = [[cell(one) for one in row.split(",")] for row in text[1:-1].split(";")]
    # Arrays of Python have no cell that is not a number, and no column.
    if dimensions == 0 or len(rows) * len(rows[0]) == 1 or any(len(row) != len(rows[0]) for row in rows):
        raise NotPlain
    if dimensions == 2:
        return rows
    if min(len(rows), len(rows[0])) > 1:
        raise NotPlain
    line = [one for row in rows for one in row]
    if line[-1] is None:  # fills up a shorter row
        raise NotPlain
    return line


def call_of(formula):
    """The function and its arguments; NotPlain for what Python has no like of."""
    match = re.fullmatch(r"=?(\w+)\((.*)\)", formula.strip())
    names = {name.lower(): name for name in kestran.functions()}
    if match is None or match.group(1).lower() not in names:
        raise NotPlain
    function = getattr(kestran, names[match.group(1).lower()])
    texts = re.findall(r"(?:\{[^}]*\}|\"[^\"]*\"|[^,{}\"])+|(?<=,)(?=,)|(?<=,)$|^(?=,)", match.group(2))
    if len(texts) != len(function.arguments) or any("(" in text for text in texts):
        raise NotPlain
    return function, [argument(text, d) for text, d in zip(texts, function.dimensions)]


def case_formulas():
    for path in sorted(glob.glob(os.path.join(ROOT, "tests", "data", "*.cases"))):
        with open(path, encoding="utf-8") as lines:
            for line in lines:
                if line.strip() and not line.startswith("#"):
                    yield line.split("\t")[0].strip()


def answers(formulas):
    """For each formula the bits of the command's number, or the code of its refusal."""
    output = subprocess.run([COMMAND], input="\n".join(formulas) + "\n", capture_output=True, text=True, check=False)
    lines = output.stdout.splitlines()
    assert len(lines) == len(formulas), output.stderr[-500:]
    return [bits(float(line)) if not line.startswith("#") else CODES.get(line, 65535) for line in lines]


def bits(number):
    """Those of the number; a model's own NaN has no sign that counts."""
    return struct.pack("<d", number if number == number else np.nan)


def answer_of(function, arguments):
    """The same of a call in Python."""
    number = float(function(*arguments, errors="nan"))
    code = int(kestran.error_code(number))
    return bits(number) if code < 0 else code


def same_bits(one, other):
    one, other = np.asarray(one), np.asarray(other)
    return one.shape == other.shape and (one.view("u8") == other.view("u8")).all()
