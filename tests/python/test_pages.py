"""What the page and the examples show."""
import doctest
import os
import re
import subprocess
import sys

import pytest

import kestran
from command import ROOT

OPTIONS = doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE


def failures(text, name):
    said = []
    test = doctest.DocTestParser().get_doctest(text, {}, name, None, 0)
    assert test.examples
    doctest.DocTestRunner(optionflags=OPTIONS).run(test, out=said.append)
    return "".join(said)


def test_the_page():
    with open(os.path.join(ROOT, "docs", "python.md"), encoding="utf-8") as page:
        blocks = re.findall(r"```python\n(.*?)```", page.read(), re.DOTALL)
    assert failures("\n".join(blocks), "docs/python.md") == ""
    assert failures(kestran.__doc__, "kestran") == ""


def run_example(name, *arguments):
    return subprocess.run([sys.executable, os.path.join(ROOT, "examples", name), *map(str, arguments)],
                          capture_output=True, text=True, check=True).stdout


def test_the_book(tmp_path):
    pytest.importorskip("matplotlib")
    shown = run_example("book.py", tmp_path / "book.png")
    assert (tmp_path / "book.png").stat().st_size > 10_000
    line = next(line for line in shown.splitlines() if line.startswith("price +0%"))
    profits = [float(word) for word in line.split()[2:]]
    assert profits[3] == 0.0 and profits == sorted(profits, reverse=True)  # the book is short options
    assert "nan" not in shown.lower()


def test_the_curves():
    shown = run_example("curves.py")
    premium, deltas = re.search(r"three months: ([0-9.]+)\ndeltas.*together ([0-9.]+)", shown).groups()
    # The third of the strips of twelve lengths, and a parallel move of the curve.
    assert re.search(rf"^ +3 +{re.escape(premium)}$", shown, re.MULTILINE)
    moved = {line.split()[0]: float(line.split()[2]) for line in shown.splitlines() if re.match(r"[-+][0-9]+ ", line)}
    assert moved["-5"] < float(premium) < moved["+5"] < float(premium) + 5 * 1.0
    assert (moved["+5"] - moved["-5"]) / 10 == pytest.approx(float(deltas), abs=0.02)
