"""Sheets whose formulas are worked out before they are written, so that the file shows every number where no add-in
is loaded."""
import datetime

import xlsxwriter
from xlsxwriter.utility import xl_range_abs, xl_rowcol_to_cell
from xlsxwriter.worksheet import Worksheet

from .formula import Formula, Pending, serial_of
from .styles import SLIP, Styles

CALCULATION_ENGINE = 191029  # of today's Excel, which works out on loading what an older one left

DATE = 'ddd d mmm yyyy'
ROW_HEIGHT = 13.5

at = xl_rowcol_to_cell


def exact(number):
    """The shortest digits that read back as this number."""
    digits = repr(float(number))
    return digits[:-2] if digits.endswith('.0') else digits


class ExactWorksheet(Worksheet):
    """Numbers in the shortest form that reads back exactly; the library's own has 16 digits."""

    def _xml_number_element(self, number, attributes=()):
        self._xml_data_cell(f'<v>{exact(number)}</v>', attributes)

    def _xml_formula_element(self, formula, result, attributes=()):
        if result == '':
            attributes = [*attributes, ('t', 'str')]
        value = exact(result) if isinstance(result, float) else self._escape_data(result)
        self._xml_data_cell(f'<f>{self._escape_data(formula)}</f><v>{value}</v>', attributes)

    def _write_cell_value(self, value):
        self.fh.write(f'<v>{exact(value) if isinstance(value, float) else self._escape_data(value)}</v>')

    def _xml_data_cell(self, inner, attributes):
        named = ''.join(f' {key}="{self._escape_attributes(value)}"' for key, value in attributes)
        self.fh.write(f'<c{named}>{inner}</c>')


class ExactWorkbook(xlsxwriter.Workbook):
    worksheet_class = ExactWorksheet


class Cell:
    def __init__(self, content, look, stored):
        self.content = content
        self.look = look
        self.stored = stored
        self.is_formula = isinstance(content, str) and content.startswith('=')
        if self.is_formula and stored is None:
            self.formula = Formula(content[1:])


class Sheet:
    """Cells by row and column, counted from 0. `raw` is the library's sheet, for what is no cell."""

    def __init__(self, book, tab):
        self.book = book
        self.tab = tab
        self.raw = book.file.add_worksheet(tab)
        self.cells = {}
        self.names = {}
        self.spilled = []
        self.links = []
        self.raw.hide_gridlines(2)
        self.raw.set_default_row(ROW_HEIGHT)
        self.raw.set_landscape()
        self.raw.set_paper(9)
        self.raw.set_margins(left=0.4, right=0.4, top=0.7, bottom=0.6)
        self.raw.set_header('&L&9&"Calibri"KESTRAN&R&9&A')
        self.raw.set_footer('&R&9&P / &N')
        self.raw.fit_to_pages(1, 0)

    def widths(self, *widths):
        for column, width in enumerate(widths):
            self.raw.set_column(column, column, width)

    def put(self, row, column, content, kind='text', number=None, stored=None, **more):
        """A number, a date, a text, or a formula with the leading =. `stored` is shown until it is worked out."""
        if isinstance(content, datetime.date):
            content, number = serial_of(content), number or DATE
        if isinstance(content, int):
            content = float(content)
        self.cells[row, column] = Cell(content, self.book.style(kind, number, **more), stored)
        return at(row, column)

    def row(self, row, column, contents, kind='text', number=None, **more):
        for i, content in enumerate(contents):
            if content is not None:
                self.put(row, column + i, content, kind, number, **more)

    def merged(self, row, first, last, text, kind='wrapped', lines=1):
        """A text over several columns and as many lines."""
        self.raw.merge_range(row, first, row, last, text, self.book.style(kind))
        self.raw.set_row(row, ROW_HEIGHT * lines)

    def link(self, row, column, tab, cell, text):
        self.links.append((row, column, f"internal:'{tab}'!{cell}", text))

    def name(self, name, row, column, last_row=None, last_column=None):
        """A name that belongs to this sheet."""
        last_row, last_column = row if last_row is None else last_row, column if last_column is None else last_column
        area = xl_range_abs(row, column, last_row, last_column)
        self.names[name] = area
        self.book.file.define_name(f"'{self.tab}'!{name}", f"='{self.tab}'!{area}")

    def spill(self, row, column, formula, rows, values_from):
        """A formula of Excel 365 that fills several rows; what it stores are the values of those cells, in a column."""
        self.spilled.append((row, column, formula, rows, values_from))

    def slips(self, row, column, last_row, last_column, condition):
        self.raw.conditional_format(row, column, last_row, last_column, {
            'type': 'formula', 'criteria': '=' + condition, 'format': self.book.style.conditional(SLIP)})

    def value(self, row, column):
        return self.book.value(self.tab, row, column)

    def write(self):
        for (row, column), cell in sorted(self.cells.items(), key=lambda item: item[0]):
            if cell.is_formula:
                value = cell.stored if cell.stored is not None else self.value(row, column)
                self.raw.write_formula(row, column, cell.content, cell.look, value)
            elif cell.content is None:
                self.raw.write_blank(row, column, None, cell.look)
            elif isinstance(cell.content, float):
                self.raw.write_number(row, column, cell.content, cell.look)
            else:
                self.raw.write_string(row, column, cell.content, cell.look)
        for row, column, target, text in self.links:
            self.raw.write_url(row, column, target, self.book.style('link'), text)
        for row, column, formula, rows, values_from in self.spilled:
            look = self.book.style('live', '0.000000')
            values = [self.value(values_from[0] + i, values_from[1]) for i in range(rows)]
            self.raw.write_dynamic_array_formula(row, column, row + rows - 1, column, formula, look, values[0])
            for i in range(1, rows):
                self.raw.write_number(row + i, column, values[i], look)


class Book:
    def __init__(self, path, command):
        self.file = ExactWorkbook(path)
        self.command = command
        self.style = Styles(self.file)
        self.sheets = {}
        self.values = {}
        self.wanted = []
        self.expected = []
        # Stored values stay where the add-in is missing only if nothing asks for a calculation on loading.
        self.file.set_calc_mode('auto', CALCULATION_ENGINE)
        self.file.calc_on_load = False
        self.file.set_properties({
            'title': 'KESTRAN', 'subject': 'Options on commodities, energy, currencies and rates',
            'comments': 'Every function with an example, and deals as a desk books them.',
            'created': datetime.datetime(2026, 12, 17)})
        self.names = {}

    def sheet(self, tab):
        self.sheets[tab] = Sheet(self, tab)
        return self.sheets[tab]

    def name(self, name, tab, row, column, last_row=None, last_column=None):
        """A name that holds in the whole workbook."""
        area = xl_range_abs(row, column, row if last_row is None else last_row,
                            column if last_column is None else last_column)
        self.names[name] = (tab, area)
        self.file.define_name(name, f"='{tab}'!{area}")

    def value(self, tab, row, column):
        """The value of a cell; Pending while the add-in's part of it is not worked out."""
        place = tab, row, column
        if place not in self.values:
            cell = self.sheets[tab].cells.get((row, column))
            if cell is None:
                return None
            if cell.stored is not None:
                raise ValueError(f'{tab} {at(row, column)} is not worked out here')
            self.values[place] = cell.formula.value(Cells(self, tab)) if cell.is_formula else cell.content
        return self.values[place]

    def function(self, name):
        """What the catalogue says of a function."""
        return next(entry for family in self.command.catalogue['families'] for entry in family['functions']
                    if name in entry['functions'])

    def selector(self, function, result):
        """Which number asks a function for a result."""
        return next(one['selector'] for one in self.function(function)['results'] if one['name'] == result)

    def expect(self, sheet, row, column, expected, number):
        """The value of a cell, as a constant in another column of its row."""
        self.expected.append((sheet, row, column, expected, number))

    def work_out(self):
        left = [(tab, *place) for tab, sheet in self.sheets.items() for place, cell in sheet.cells.items()
                if cell.is_formula and cell.stored is None]
        while left:
            self.wanted, pending = [], []
            for place in left:
                try:
                    self.value(*place)
                except Pending:
                    pending.append(place)
                except Exception as error:
                    tab, row, column = place
                    raise RuntimeError(f'{tab} {at(row, column)}: {self.sheets[tab].cells[row, column].content}') from error
            if pending:
                self.command.price(list(dict.fromkeys(self.wanted)))
            left = pending

    def close(self):
        self.work_out()
        for sheet, row, column, expected, number in self.expected:
            sheet.put(row, expected, sheet.value(row, column), 'expected', number)
        for sheet in self.sheets.values():
            sheet.write()
        self.file.close()


class Cells:
    """What a formula of one sheet sees."""

    def __init__(self, book, tab):
        self.book = book
        self.tab = tab

    def cell(self, sheet, row, column):
        return self.book.value(sheet or self.tab, row, column)

    def name(self, name):
        names = self.book.sheets[self.tab].names
        return (self.tab, names[name]) if name in names else self.book.names[name]

    def call(self, function, arguments):
        text = f"{function}({','.join(map(written, arguments))})"
        if text not in self.book.command.answers:
            self.book.wanted.append(text)
            raise Pending(text)
        return self.book.command.answers[text]


def written(argument):
    """A value as the command reads it."""
    if isinstance(argument, list):
        return '{' + ';'.join(','.join(map(written, row)) for row in argument) + '}'
    if argument is None:
        return ''
    return exact(argument)
