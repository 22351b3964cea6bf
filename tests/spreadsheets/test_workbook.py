"""The workbook that teaches: its stored values against the command, and against LibreOffice Calc working it out anew."""
import os
import re
import shutil
import struct
import subprocess
import zipfile
from xml.etree import ElementTree

import openpyxl
import pytest
from openpyxl.utils import range_boundaries

from calc import Calc, cells

COMMAND = "build/linux/bin/kestran"
EXTENSION = "build/linux/KESTRAN.oxt"
NOT_COMPUTED = "not computed"
MAIN = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
CHART = "{http://schemas.openxmlformats.org/drawingml/2006/chart}"


def same_bits(a, b):
    return struct.pack("d", a) == struct.pack("d", b)


def ask(formulas):
    answers = subprocess.run([COMMAND], input="\n".join(formulas) + "\n", capture_output=True, text=True, check=True,
                             timeout=100)
    return answers.stdout.splitlines()


class Workbook:
    def __init__(self, path):
        self.path = path
        self.formulas = openpyxl.load_workbook(path)
        self.values = openpyxl.load_workbook(path, data_only=True)
        self.names = {}
        for name in self.formulas.defined_names.definedName:
            if "!" not in name.attr_text:
                continue
            sheet = None if name.localSheetId is None else self.formulas.sheetnames[name.localSheetId]
            self.names[sheet, name.name] = name.attr_text.replace("$", "").replace("'", "").rsplit("!", 1)

    def cells(self):
        """Sheet, cell, formula and stored value; a formula that fills several cells is left out."""
        for sheet in self.formulas:
            spilled = set()
            for place in sheet.formula_attributes:
                spilled |= {cell.coordinate for row in sheet[sheet.formula_attributes[place]["ref"]] for cell in row}
            for row in sheet.iter_rows():
                for cell in row:
                    if isinstance(cell.value, str) and cell.value.startswith("=") and cell.coordinate not in spilled:
                        yield sheet.title, cell.coordinate, cell.value[1:], self.values[sheet.title][cell.coordinate].value

    def live(self):
        return [cell for cell in self.cells() if "_xll." in cell[2] and cell[3] != NOT_COMPUTED]

    def block(self, sheet, cells):
        """The stored values of cells as they are typed into a formula."""
        left, top, right, bottom = range_boundaries(cells)
        values = self.values[sheet]
        rows = [",".join(typed(values.cell(r, c).value) for c in range(left, right + 1)) for r in range(top, bottom + 1)]
        return rows[0] if ":" not in cells else "{" + ";".join(rows) + "}"

    def in_numbers(self, sheet, formula):
        """A live formula with the stored values of the cells that it names in their places."""
        def replaced(match):
            word = match[0].replace("$", "")
            if re.fullmatch(r"[A-Z]{1,3}\d+(:[A-Z]{1,3}\d+)?", word):
                return self.block(sheet, word)
            for scope in (sheet, None):
                if (scope, word) in self.names:
                    return self.block(*self.names[scope, word])
            return word
        assert "!" not in formula
        words = r"(?<![\w.$])(?:\$?[A-Z]{1,3}\$?\d+(?::\$?[A-Z]{1,3}\$?\d+)?|[A-Za-z_]\w*)(?![\w(.])"
        return re.sub(words, replaced, formula).replace("_xll.", "")


def typed(value):
    if value is None:
        return ""
    if hasattr(value, "toordinal"):
        value = value.toordinal() - 693594
    return repr(value)


@pytest.fixture(scope="module")
def folder(tmp_path_factory):
    return tmp_path_factory.mktemp("workbook")


@pytest.fixture(scope="module")
def book(folder):
    path = str(folder / "KESTRAN.xlsx")
    subprocess.run(["tools/make-workbook", path], check=True, timeout=120)
    return Workbook(path)


@pytest.fixture(scope="module")
def calc():
    with Calc(EXTENSION, 350) as running:
        yield running


def test_is_the_same_each_time(book, folder):
    """From any folder, and where a file of the name stands already."""
    for _ in range(2):
        subprocess.run([os.path.abspath("tools/make-workbook"), "again.xlsx"], check=True, timeout=120, cwd=folder)
        with open(book.path, "rb") as first, open(folder / "again.xlsx", "rb") as second:
            assert first.read() == second.read()


def test_stored_values_have_the_commands_bits(book):
    live = book.live()
    answers = ask([book.in_numbers(sheet, formula) for sheet, _, formula, _ in live])
    wrong = [(sheet, place, answer, value) for (sheet, place, _, value), answer in zip(live, answers)
             if not re.match(r"-?[\d.]", answer) or not same_bits(float(answer), float(value))]
    assert len(live) == len(answers) > 3000
    assert not wrong, wrong[:5]


# Where the deals of docs/from-a-deal-to-arguments.md stand: sheet, label of the row, columns to its right, and the formula.
DEALS = [
    ("GREEKS", "0 premium", 1, "EURO_Forward(70.15,72,4.1%,34%,62,1,0)"),
    ("Price and volatility", "Bought at, $/bbl", 1, "EURO_Forward(70.15,72,4.1%,34%,62,1,0)"),
    ("Smile", 72, 4, "EIMPVOL(1,3.2,70.15,72,62,4.1%,4.1%,2,1E-8,100)"),
    ("Collar", "Put, $/bbl", 1, "EURO_Forward(70.15,65,4.1%,36%,62,0,0)"),
    ("Collar", "Collar, $/bbl", 1, "COMBOPT(70.15,65,75.15,4.1%,4.1%,36%,33%,62,5,0)"),
    ("FX barrier", "Plain call", 1, "FOREXCH(1.0850,1.10,4.1%,2.3%,8%,180,1,0)"),
    ("Plant and crack", "Premium, $/MWh", 1, "SPRDOPT(48.5,7.5*4.1,2,4.1%,55%,45%,0.6,180,1,0)"),
    ("Plant and crack", "Premium, $", 1, "17600*SPRDOPT(48.5,7.5*4.1,2,4.1%,55%,45%,0.6,180,1,0)"),
    ("Plant and crack", "Power to sell, MWh", 1, "17600*SPRDOPT(48.5,7.5*4.1,2,4.1%,55%,45%,0.6,180,1,1)"),
    ("Plant and crack", "Gas, MMBtu", 1, "17600*7.5*SPRDOPT(48.5,7.5*4.1,2,4.1%,55%,45%,0.6,180,1,2)"),
    ("Plant and crack", "Premium, MMBtu/MWh", 1, "HEAT(48.5,4.1,7.5,4.1%,55%,45%,0.6,180,1,0)"),
    ("Crude APO", "Premium, $/bbl", 2,
     "xCrudeAPO(71.1,71.35,34%,33%,38%,36%,46/365.25,71/365.25,15,4,0,72,4.1%,0.985,0,78/365.25,1,0,1)"),
    ("Gas strip", "January to March", 13, "900000*YRSTRIP("),
    ("Basket", "Volatility of the basket", 1, "BASVOL({690"),
    ("Basket", "Premium, $/bbl", 1, "EURO_Forward(0.008*690"),
    ("Swaption", "Payer, $/bbl", 1, "SWAPTION("),
    ("Swaption", "Payer, $", 1, "30000*SWAPTION("),
]


def test_deals_of_the_page_have_the_values_found_elsewhere(book):
    with open("tests/data/deals.cases", encoding="utf-8") as file:
        cases = [line.rstrip("\n").split("\t") for line in file if not line.startswith("#")]
    for sheet, label, column, formula in DEALS:
        case, = [case for case in cases if case[0].startswith(formula)]
        cell = next(row[0] for row in book.values[sheet].iter_rows(max_col=1) if row[0].value == label)
        assert abs(cell.offset(0, column).value - float(case[1])) <= float(case[2]), (sheet, label)


def test_every_function_stands_in_one_formula_and_by_reference(book):
    listed = subprocess.run([COMMAND, "--list"], capture_output=True, text=True, check=True).stdout.splitlines()
    functions = {line.split("\t")[0] for line in listed}
    inline, by_reference = set(), set()
    for _, _, formula, _ in book.live():
        call = re.fullmatch(r"_xll\.(\w+)\((.*)\)", formula)
        if call:
            (by_reference if re.search(r"[A-Za-z_]{2}", call[2]) else inline).add(call[1])
    assert inline == by_reference == functions
    assert len(functions) == 81


def test_asks_for_no_calculation_and_claims_none(book):
    with zipfile.ZipFile(book.path) as archive:
        calculation = ElementTree.fromstring(archive.read("xl/workbook.xml")).find(MAIN + "calcPr")
    assert calculation.attrib == {"calcId": "191029"}
    stored = [value for _, _, _, value in book.cells()]
    assert stored.count(NOT_COMPUTED) > 400
    assert not [value for value in stored if isinstance(value, str) and re.search(r"\bok\b|loaded", value)]


def test_greeks_is_stored_as_excel_365_stores_it(book):
    greeks, = [name.attr_text for name in book.formulas.defined_names.definedName if name.name == "GREEKS"]
    assert greeks == "_xlfn.LAMBDA(_xlpm.priced,_xlpm.count,_xlfn.MAP(_xlfn.SEQUENCE(_xlpm.count,1,0),_xlpm.priced))"
    sheet, values = book.formulas["GREEKS"], book.values["GREEKS"]
    areas = [attributes["ref"] for attributes in sheet.formula_attributes.values()]
    assert len(areas) == 2
    for area in areas:
        column, first, _, last = re.fullmatch(r"([A-Z])(\d+):([A-Z])(\d+)", area).groups()
        beside = chr(ord(column) - 1)
        for row in range(int(first), int(last) + 1):
            assert same_bits(values[f"{column}{row}"].value, values[f"{beside}{row}"].value)
    with zipfile.ZipFile(book.path) as archive:
        assert b'fDynamic="1"' in archive.read("xl/metadata.xml")
        number = book.formulas.sheetnames.index("GREEKS") + 1
        sheet = ElementTree.fromstring(archive.read(f"xl/worksheets/sheet{number}.xml"))
    dynamic = [cell for cell in sheet.iter(MAIN + "c") if cell.get("cm") == "1"]
    assert [cell.find(MAIN + "f").get("ref") for cell in dynamic] == areas


def test_charts_show_numbers_that_are_there(book):
    with zipfile.ZipFile(book.path) as archive:
        charts = [ElementTree.fromstring(archive.read(name)) for name in archive.namelist()
                  if name.startswith("xl/charts/chart")]
    drawn = set()
    for chart in charts:
        for reference in chart.iter(CHART + "f"):
            sheet, cells = reference.text.replace("'", "").replace("$", "").rsplit("!", 1)
            left, top, right, bottom = range_boundaries(cells)
            values = [book.values[sheet].cell(r, c).value for r in range(top, bottom + 1) for c in range(left, right + 1)]
            assert None not in values, reference.text
            drawn.add(sheet)
    desks = {sheet.title for sheet in book.formulas if sheet.sheet_properties.tabColor.rgb == "FF1F5FA8"}
    assert len(desks) == 13
    assert desks - drawn == {"Today", "Book"}


def test_calc_works_out_the_same(book, calc):
    """Calls to the bit, the sheet's own arithmetic to rounding; checks say ok once there is somebody to check."""
    worked_out = {(cell.sheet, cell.place): cell.value for cell in cells(calc.open(book.path))}
    wrong, compared = [], {"live": 0, "own": 0, "checks": 0}
    for sheet, place, formula, stored in book.cells():
        value = worked_out.get((sheet, place), "")
        if stored == NOT_COMPUTED:
            good = value == "ok" or re.match(r"loaded|(\d+) of \1$", str(value))
            compared["checks"] += 1
        elif "_xll." in formula:
            good = isinstance(value, float) and same_bits(value, float(stored))
            compared["live"] += 1
        elif isinstance(value, float):
            stored = float(typed(stored))
            good = abs(value - stored) <= 1e-12 * max(abs(stored), abs(value))
            compared["own"] += 1
        else:
            good = value == (stored or "")
        if not good:
            wrong.append((sheet, place, formula, stored, value))
    assert not wrong, (len(wrong), {one[:2] for one in wrong}, wrong[:6])
    assert compared["live"] > 3000 and compared["own"] > 900 and compared["checks"] > 400


def test_gnumeric_works_out_the_same(book, folder):
    """To 1e-8: Gnumeric reads typed decimals, and reckons, in a precision of its own, and a difference of two prices shows
    it more. Formulas with a LAMBDA, which only Excel knows, are left out."""
    subprocess.run(["tests/spreadsheets/gnumeric.sh", "workbook", book.path, folder / "reckoned.xlsx"], check=True, timeout=150)
    reckoned = openpyxl.load_workbook(folder / "reckoned.xlsx", data_only=True)
    numbers = [(sheet, place, formula, float(typed(stored)), reckoned[sheet][place].value)
               for sheet, place, formula, stored in book.cells() if "LAMBDA(" not in formula and not isinstance(stored, (str, type(None)))]
    wrong = [one for one in numbers
             if isinstance(one[4], (str, type(None))) or abs(one[3] - float(typed(one[4]))) > 1e-8 * max(1e-3, abs(one[3]))]
    assert len(numbers) > 4000
    assert not wrong, (len(wrong), wrong[:5])


def first_warnings(calls):
    """What --explain says first of one argument of each call: pairs of call and argument."""
    said = []
    for begin in range(0, len(calls), 100):
        part = calls[begin:begin + 100]
        options = [option for call, _ in part for option in ("--explain", call)]
        blocks = re.split(r"(?m)^(?=\w+: )(?!refused|warning)", subprocess.run(
            [COMMAND, *options], capture_output=True, text=True, check=True, timeout=100).stdout)[1:]
        assert len(blocks) == len(part)
        for block, (_, name) in zip(blocks, part):
            words = re.search(rf"(?m)^warning: {name} \S+ (.*)$", block)
            words = re.sub(r"(more than \w+) \S+$|(than) the \S+( days from)", r"\1\2\3", words[1]) if words else ""
            said.append(re.sub(r"[\d.]+e\+\d+", lambda number: f"{float(number[0]):.0f}", words))
    return said


def test_slips_are_those_that_explain_tells(book, calc):
    """One input after another takes odd numbers; the last column and the red of the cell tell what --explain tells."""
    arguments = [(sheet, name, cell) for (sheet, name), (_, cell) in book.names.items()
                 if sheet and book.formulas[sheet].sheet_properties.tabColor.rgb == "FF9FB0C3" and ":" not in cell]
    calls = {name: (sheet, formula) for sheet, _, formula, _ in book.live()
             for name in re.findall(r"(?<![\w.])\w+_\w+(?![\w(])", formula)}
    tried, shown, red = [], [], []
    document = calc.open(book.path)
    for sheet, name, cell in arguments:
        conditions = [rule.formula[0].replace(",", ";") for area in book.formulas[sheet].conditional_formatting
                      if cell in str(area.sqref).split() for rule in area.rules]
        inputs = document.Sheets.getByName(sheet)
        given, look = inputs.getCellRangeByName(cell), inputs.getCellRangeByName("H" + cell[1:])
        spare = inputs.getCellRangeByName("Z" + cell[1:])
        spare.setFormula(f"=IF(OR({';'.join(conditions)});1;0)" if conditions else "=0")
        before = given.getFormula()
        for number in (40000, 5, 0.5, -7, 2.5, 300):
            given.setValue(number)
            formula = re.sub(rf"(?<![\w.]){name}(?![\w(])", repr(number), calls[name][1])
            tried.append((book.in_numbers(sheet, formula), name))
            shown.append(look.getString())
            red.append(spare.getValue() == 1.0)
        given.setFormula(before)
    expected = first_warnings([(call, argument_of(call, name)) for call, name in tried])
    wrong = [(*what, one, other, is_red) for what, one, other, is_red in zip(tried, expected, shown, red)
             if one != other or is_red != bool(one)]
    assert not wrong, (len(wrong), wrong[:5])
    assert sum(map(bool, expected)) > 500


def argument_of(call, name):
    """EURO_Equity_Price is an argument of EURO_Equity."""
    function = re.match(r"(\w+)\(", call)[1]
    stem = function if name.startswith(function + "_") else function[1:]
    return name[len(stem) + 1:]


def test_prints_without_errors(book, folder):
    """Every sheet as PDF and as a picture: nothing but GREEKS shows an error, nothing is too wide for its column."""
    subprocess.run(["timeout", "--kill-after=9", "120", "soffice", "--headless",
                    f"-env:UserInstallation=file://{folder}/profile", "--convert-to", "pdf", "--outdir", folder,
                    shutil.copy(book.path, folder / "printed.xlsx")], check=True, capture_output=True)
    subprocess.run(["pdftotext", "-layout", folder / "printed.pdf", folder / "text"], check=True, timeout=60)
    subprocess.run(["pdftoppm", "-r", "40", "-gray", folder / "printed.pdf", folder / "page"], check=True, timeout=100)
    pages = (folder / "text").read_text().split("\f")[:-1]
    sheets = {page.split("\n")[0].split("  ")[-1].strip() for page in pages}
    assert sheets == set(book.formulas.sheetnames)
    for page in pages:
        if page.split("\n")[0].rstrip().endswith("GREEKS"):
            continue
        assert not re.search(r"Err:|#(NAME|VALUE|REF|DIV|N/A|NUM)|###", page), page[:100]
    pictures = sorted(folder.glob("page*.pgm"))
    assert len(pictures) == len(pages)
    for picture in pictures:
        dots = picture.read_bytes()
        assert sum(dot < 200 for dot in dots) > 300, picture
