"""The extension for LibreOffice Calc: the sheet's bits and refusals, files of Excel, help on every argument."""
import glob
import os
import re
import struct
import subprocess

import pytest
import xlsxwriter

from calc import Calc, CellError, cells

BUILD = os.environ.get("KESTRAN_BUILD", "build/linux")
COMMAND = BUILD + "/bin/kestran"
EXTENSION = BUILD + "/KESTRAN.oxt"
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


def split(text, separator=","):
    """Parts of a text between separators outside brackets and quotes."""
    parts, depth, quoted = [""], 0, False
    for character in text:
        quoted ^= character == '"'
        depth += (character in "({") - (character in ")}")
        if character == separator and depth == 0 and not quoted:
            parts.append("")
        else:
            parts[-1] += character
    return parts


class Call:
    def __init__(self, name, arguments):
        self.name, self.arguments = name, split(arguments)

    def formula(self, arguments=None):
        return f"={self.name}({','.join(arguments or self.arguments)})"

    def blocks(self):
        """Each argument as its rows of cells, None where it is no block."""
        for argument in self.arguments:
            yield [split(row) for row in split(argument[1:-1], ";")] if argument[0:1] == "{" else None

    def told_apart(self):
        """The call as Calc hands it over, cells being given for blocks; or the error that it never gets past."""
        arguments = []
        errors = []
        for argument, block in zip(self.arguments, self.blocks()):
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
        return self.formula(arguments)


def call_of(formula):
    """None for a formula of several calls."""
    call = re.fullmatch(r"=?(\w+)\((.*)\)", formula)
    nested = re.search(r"\w\(|\).*\(", call[2]) if call else None
    return Call(*call.groups()) if call and not nested else None


def xll(formula):
    return re.sub(r"\b([A-Za-z_]\w*)\(", r"_xll.\1(", formula)


def function_list():
    rows = subprocess.run([COMMAND, "--list"], capture_output=True, text=True, check=True).stdout.splitlines()
    return {row.split("\t")[0]: [name.strip() for name in row.split("\t")[1].split(",")] for row in rows}


def describe(name):
    return subprocess.run([COMMAND, "--describe", name], capture_output=True, text=True, check=True).stdout


def calls():
    """The example of every function, and all calls of the case files."""
    formulas = [describe(name).split("\nExample\n")[1].split()[0] for name in function_list()]
    for path in sorted(glob.glob("tests/data/*.cases")):
        with open(path, encoding="utf-8") as file:
            formulas += [line.split("\t")[0] for line in file if line[0] not in "#\n"]
    return [call for call in map(call_of, dict.fromkeys(formulas)) if call]


def write_cell(sheet, row, column, text):
    """A cell with what the text would be in a formula."""
    text = text.strip()
    if text[0:1] == '"' and text != '""':
        sheet.write_string(row, column, text[1:-1])
    elif text in ("TRUE", "FALSE"):
        sheet.write_boolean(row, column, text == "TRUE")
    elif text and re.fullmatch(r"-?[0-9.]+(E-?[0-9]+)?", text) and float(f"{float(text):.16G}") == float(text):
        sheet.write_number(row, column, float(text))
    elif text:
        sheet.write_formula(row, column, "=" + xll(text), None, 12345)


@pytest.fixture(scope="module")
def calc():
    with Calc(EXTENSION, 240) as running:
        yield running


@pytest.fixture(scope="module")
def book(tmp_path_factory):
    """All formulas of the case files as Excel saves them, with a value that nobody computed: sheet Inline with what
    Excel takes as a formula, sheet Cells with arguments and ranges of Data."""
    path = str(tmp_path_factory.mktemp("calc") / "book.xlsx")
    workbook = xlsxwriter.Workbook(path)
    inline, by_cell, data = (workbook.add_worksheet(name) for name in ("Inline", "Cells", "Data"))
    expected = {}
    row = 0
    for i, call in enumerate(calls()):
        references = []
        width, height = 0, 1
        for argument, block in zip(call.arguments, call.blocks()):
            if argument == "":
                references.append("")
                continue
            rows = block or [[argument]]
            for k, texts in enumerate(rows):
                for m, text in enumerate(texts):
                    write_cell(data, row + k, width + m, text)
            first = xlsxwriter.utility.xl_rowcol_to_cell(row, width)
            last = xlsxwriter.utility.xl_rowcol_to_cell(row + len(rows) - 1, width + len(rows[0]) - 1)
            references.append(f"Data!{first}" + ("" if first == last else f":{last}"))
            width += len(rows[0])
            height = max(height, len(rows))
        row += height
        by_cell.write_formula(i, 0, xll(call.formula(references)), None, 12345)
        expected["Cells", f"A{i + 1}"] = call.told_apart()
        # In a block, Excel takes plain numbers and texts only, and Calc no errors.
        if len(call.formula()) < EXCEL_LENGTH and not any(block and re.search(rf"[{{,;][,;}}]|%|{ERROR}", argument)
                   for argument, block in zip(call.arguments, call.blocks())):
            inline.write_formula(i, 0, xll(call.formula()), None, 12345)
            expected["Inline", f"A{i + 1}"] = call.told_apart()
    workbook.close()
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
    functions = function_list()
    known = {name.upper(): arguments for name, arguments in functions.items()}
    descriptions = calc.service("com.sun.star.sheet.FunctionDescriptions")
    told = {}
    for i in range(descriptions.Count):
        values = {value.Name: value.Value for value in descriptions.getByIndex(i)}
        if values["Name"] in known and values["Category"] == ADD_IN:
            told[values["Name"]] = values
    assert told.keys() == known.keys()
    for name in functions:
        values = told[name.upper()]
        assert [argument.Name for argument in values["Arguments"]] == known[name.upper()]
        for argument in values["Arguments"]:
            assert len(argument.Description) > 5 and argument.Description != argument.Name, (name, argument)
        assert "empty cell counts as 0" in values["Description"]
        results = describe(name).split("\nResults\n")[1:]
        for result in re.findall(r"^  (\d+ .*?)  ", results[0].split("\n\n")[0], re.MULTILINE) if results else []:
            assert result in values["Description"], (name, result)


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
