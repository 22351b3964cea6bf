"""The extension for LibreOffice Calc: the sheet's bits and refusals, files of Excel, help on every argument."""
import glob
import os
import re
import shutil
import struct
import subprocess

import pytest
import xlsxwriter

from calc import Calc, CellError, cells
from call_book import Call, write_book, write_cell, xll
from texts import functions, of_argument, of_results, untold

COMMAND = "build/linux/bin/kestran"
EXTENSION = "build/linux/KESTRAN.oxt"
ADD_IN = 11  # Calc's number of the category

# What the command prints for an error, and Calc's number of it.
ERRORS = {"#NULL!": 521, "#DIV/0!": 532, "#VALUE!": 519, "#REF!": 524, "#NAME?": 525, "#NUM!": 503, "#N/A": 32767,
          "#ERR(65535)": 65535}
ERROR_IN_RANGE = 504
EXCEL_LENGTH = 8192  # of a formula
ERROR = r"#(?:NULL!|DIV/0!|VALUE!|REF!|NAME\?|NUM!|N/A)"


def ask(formulas):
    """The command's answers, as Calc would give them: a number, or the code of an error."""
    answers = subprocess.run([COMMAND], input="\n".join(formulas), capture_output=True, text=True, check=False).stdout
    answers = answers.splitlines()
    assert len(answers) == len(formulas)
    return [ERRORS[text] if text in ERRORS else ERRORS["#NUM!"] if text in ("nan", "inf", "-inf") else float(text)
            for text in answers]


def told_apart(call):
    """The call as Calc hands it over, cells being given for blocks; or the error that it never gets past."""
    arguments = []
    errors = []
    for argument, block in zip(call.arguments, call.blocks()):
        single = block is None or block == [block[0][:1]]
        if single:
            errors += re.findall(ERROR, argument)
            argument = {"{TRUE}": "1", "TRUE": "1", "{}": "0"}.get(argument, argument)
        elif re.search(ERROR, argument):
            errors.append(ERROR_IN_RANGE)
        elif re.search("TRUE", argument):
            argument = argument.replace("TRUE", "1")
        arguments.append(argument)
    if errors:  # the last one
        return ERRORS.get(errors[-1], errors[-1])
    return call.formula(arguments)


def call_of(formula):
    """None for a formula of several calls."""
    call = re.fullmatch(r"=?(\w+)\((.*)\)", formula)
    nested = re.search(r"\w\(|\).*\(", call[2]) if call else None
    return Call(*call.groups()) if call and not nested else None


def calls():
    """The example of every function, and all calls of the case files."""
    formulas = [about["example"] for about in functions(COMMAND).values()]
    for path in sorted(glob.glob("tests/data/*.cases")):
        with open(path, encoding="utf-8") as file:
            formulas += [line.split("\t")[0] for line in file if line[0] not in "#\n"]
    return [call for call in map(call_of, dict.fromkeys(formulas)) if call]


@pytest.fixture(scope="module")
def calc():
    with Calc(EXTENSION, 240) as running:
        yield running


@pytest.fixture(scope="module")
def book(tmp_path_factory):
    """All formulas of the case files: sheet Inline with what Excel takes as a formula, sheet Cells with arguments and
    ranges of Data."""
    path = str(tmp_path_factory.mktemp("calc") / "book.xlsx")
    expected, rows = {}, []
    for i, call in enumerate(calls()):
        expected["Cells", f"A{i + 1}"] = told_apart(call)
        # In a block, Excel takes plain numbers and texts only, and Calc no errors.
        taken = len(call.formula()) < EXCEL_LENGTH and not any(
            block and re.search(rf"[{{,;][,;}}]|%|{ERROR}", argument) for argument, block in zip(call.arguments, call.blocks()))
        if taken:
            expected["Inline", f"A{i + 1}"] = told_apart(call)
        rows.append((call.formula() if taken else None, call))
    write_book(path, rows, lambda argument: False)
    formulas = sorted({what for what in expected.values() if isinstance(what, str)})
    answers = dict(zip(formulas, ask(formulas)))
    return path, {place: answers.get(what, what) for place, what in expected.items()}


def bits(value):
    return struct.pack("<d", value) if isinstance(value, float) else value


def wrong_cells(document, expected):
    found = {(cell.sheet, cell.place): cell for cell in cells(document, ("Inline", "Cells"))}
    assert found.keys() == expected.keys()
    wrong = []
    for place, cell in found.items():
        value = cell.value.code if isinstance(cell.value, CellError) else cell.value
        if bits(value) != bits(expected[place]):
            wrong.append((*place, cell.formula[:90], value, expected[place]))
    return wrong


def test_bits_and_refusals(calc, book):
    path, expected = book
    document = calc.open(path)
    wrong = wrong_cells(document, expected)
    document.close(True)
    assert not wrong, "\n".join(map(str, wrong))


def test_files_and_back(calc, book, tmp_path):
    path, expected = book
    for name in ("saved.xlsx", "saved.ods", "again.xlsx"):
        document = calc.open(path)
        path = str(tmp_path / name)
        calc.save(document, path)
        document.close(True)
    document = calc.open(path)
    wrong = wrong_cells(document, expected)
    document.close(True)
    assert not wrong, "\n".join(map(str, wrong))


def test_wizard(calc):
    descriptions = calc.service("com.sun.star.sheet.FunctionDescriptions")
    told = ({value.Name: value.Value for value in descriptions.getByIndex(i)} for i in range(descriptions.Count))
    told = {values["Name"]: values for values in told if values["Category"] == ADD_IN}
    listed = functions(COMMAND)
    assert {name.upper() for name in listed} <= told.keys() and len(listed) == 81
    for name, about in listed.items():
        values = told[name.upper()]
        assert [argument.Name for argument in values["Arguments"]] == [argument["name"] for argument in about["arguments"]]
        for argument, shown in zip(about["arguments"], values["Arguments"]):
            # Asides of choices are left out.
            assert not untold(shown.Description, [word.split(": ")[0] for word in of_argument(argument)]), (name, shown)
        assert not untold(values["Description"].replace("and on ", ""), of_results(about)), name
        assert "empty cell counts as 0" in values["Description"]


def test_packed_elsewhere_it_is_the_same(tmp_path):
    """The same files, copied at another time by another user in another place of the world."""
    shutil.copytree("build/linux/libreoffice/files", tmp_path / "files", copy_function=shutil.copyfile)
    subprocess.run(["bindings/libreoffice/pack.sh", tmp_path / "KESTRAN.oxt", tmp_path / "files"], check=True, umask=0o077,
                   env=os.environ | {"TZ": "Asia/Tokyo", "LC_ALL": "C.UTF-8"})
    with open(EXTENSION, "rb") as one, open(tmp_path / "KESTRAN.oxt", "rb") as other:
        assert one.read() == other.read()


def test_page(calc, tmp_path):
    """The formulas of the page show what stands beside them."""
    with open("docs/calc.md", encoding="utf-8") as file:
        examples = re.findall(r"^\| `=(.*?)` \| (.*?) \|", file.read(), re.MULTILINE)
    assert len(examples) > 10
    workbook = xlsxwriter.Workbook(str(tmp_path / "page.xlsx"))
    sheet = workbook.add_worksheet()
    for row, text in enumerate(("", "TRUE", "1/0", "0.3")):
        write_cell(sheet, row, 0, text)
    for row, (formula, _) in enumerate(examples):
        sheet.write_formula(row, 1, xll(formula))
    workbook.close()
    document = calc.open(str(tmp_path / "page.xlsx"))
    shown = document.Sheets.getByIndex(0)
    wrong = [(formula, expected, shown.getCellByPosition(1, row).String) for row, (formula, expected) in enumerate(examples)
             if shown.getCellByPosition(1, row).String != expected]
    document.close(True)
    assert not wrong, "\n".join(map(str, wrong))
