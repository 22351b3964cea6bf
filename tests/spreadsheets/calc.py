"""LibreOffice Calc without a window, with a profile of its own in which the extension is installed.

    with Calc("build/linux/KESTRAN.oxt") as calc:
        document = calc.open("book.xlsx")
        for cell in cells(document): ...

Files are recalculated when they are opened. Everything ends with the block, and after `seconds` at the latest.
"""
import os
import shutil
import signal
import subprocess
import tempfile
import time
from typing import NamedTuple

import uno
from com.sun.star.beans import PropertyValue
from com.sun.star.connection import NoConnectException
from com.sun.star.sheet import FormulaResult

# What the profile says before the first start: recalculate always.
SETTINGS = """<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry">
<item oor:path="/org.openoffice.Office.Calc/Formula/Load"><prop oor:name="OOXMLRecalcMode"><value>0</value></prop></item>
<item oor:path="/org.openoffice.Office.Calc/Formula/Load"><prop oor:name="ODFRecalcMode"><value>0</value></prop></item>
</oor:items>
"""
FILTERS = {".xlsx": "Calc MS Excel 2007 XML", ".ods": "calc8"}


def properties(**values):
    return tuple(PropertyValue(name, 0, value, 0) for name, value in values.items())


def url(path):
    return "file://" + os.path.abspath(path)


class Calc:
    def __init__(self, extension=None, seconds=200):
        self.extension, self.seconds = extension, seconds
        self.office = None

    def __enter__(self):
        self.folder = tempfile.mkdtemp(prefix="kestran_calc.", dir="/tmp")
        try:
            self.start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        if self.office:
            self.end()
        shutil.rmtree(self.folder, ignore_errors=True)

    def start(self):
        # unopkg installs nothing for root, so that a user without rights does it in a folder open to all.
        os.makedirs(self.folder + "/profile/user")
        with open(self.folder + "/profile/user/registrymodifications.xcu", "w", encoding="utf-8") as file:
            file.write(SETTINGS)
        subprocess.run(["chmod", "-R", "a+rwX", self.folder], check=True)
        environment = {"HOME": self.folder, "PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "SAL_USE_VCLPLUGIN": "svp"}
        profile = "-env:UserInstallation=" + url(self.folder + "/profile")
        if self.extension:
            user = {"user": "nobody", "group": "nogroup", "extra_groups": []} if os.getuid() == 0 else {}
            copy = shutil.copy(self.extension, self.folder)
            os.chmod(copy, 0o644)
            subprocess.run(["unopkg", "add", profile, copy], env=environment, cwd="/", check=True, timeout=60, **user)

        self.office = subprocess.Popen(
            ["timeout", "--signal=KILL", str(self.seconds), "soffice", "--headless", "--norestore", "--nologo", profile,
             "--accept=pipe,name=" + self.pipe() + ";urp"],
            env=environment, cwd="/", start_new_session=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.context = self.connect()
        self.desktop = self.service("com.sun.star.frame.Desktop")

    def pipe(self):
        return os.path.basename(self.folder)

    def connect(self):
        here = uno.getComponentContext()
        resolver = here.ServiceManager.createInstanceWithContext("com.sun.star.bridge.UnoUrlResolver", here)
        for _ in range(600):
            try:
                return resolver.resolve("uno:pipe,name=" + self.pipe() + ";urp;StarOffice.ComponentContext")
            except NoConnectException:
                if self.office.poll() is not None:
                    break
                time.sleep(0.1)
        raise RuntimeError("LibreOffice does not start")

    def end(self):
        try:
            os.killpg(self.office.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        self.office.wait()

    def service(self, name):
        return self.context.ServiceManager.createInstanceWithContext(name, self.context)

    def open(self, path):
        """The document, recalculated. It is a copy, which nobody else has open."""
        copy = shutil.copy(path, tempfile.mkdtemp(dir=self.folder))
        document = self.desktop.loadComponentFromURL(url(copy), "_blank", 0, properties(Hidden=True))
        if document is None:
            raise RuntimeError(f"Calc does not open {path}")
        return document

    @staticmethod
    def save(document, path):
        document.storeToURL(url(path), properties(FilterName=FILTERS[os.path.splitext(path)[1]]))


class Cell(NamedTuple):
    sheet: str
    place: str  # such as B7
    formula: str  # as in the English Calc, or the constant
    value: object  # a float with all its bits, a text, or a CellError


class CellError(NamedTuple):
    code: int
    shown: str


def column_name(column):
    name = ""
    while column >= 0:
        name = chr(ord("A") + column % 26) + name
        column = column // 26 - 1
    return name


def cells(document, sheets=None):
    """All cells of these sheets, or of all, that are not empty, row after row."""
    for sheet in map(document.Sheets.getByName, sheets or document.Sheets.ElementNames):
        used = sheet.createCursor()
        used.gotoEndOfUsedArea(False)
        last = used.RangeAddress
        area = sheet.getCellRangeByPosition(0, 0, last.EndColumn, last.EndRow)
        errors = {(cell.CellAddress.Row, cell.CellAddress.Column): CellError(cell.getError(), cell.String)
                  for cell in area.queryFormulaCells(FormulaResult.ERROR).Cells}
        for row, (formulas, values) in enumerate(zip(area.FormulaArray, area.DataArray)):
            for column, (formula, value) in enumerate(zip(formulas, values)):
                if formula != "":
                    place = column_name(column) + str(row + 1)
                    yield Cell(sheet.Name, place, formula, errors.get((row, column), value))
