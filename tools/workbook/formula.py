"""Worksheet formulas: read once, worked out from the cells they name. It knows the few functions of a spreadsheet
that the workbook uses; calls of the add-in are handed on."""
import datetime
import math
import re

TOKEN = re.compile(r'''\s*(?:
    (?P<number>\d+\.?\d*(?:E[+-]?\d+)?)
  | "(?P<text>(?:[^"]|"")*)"
  | (?:(?P<sheet>'[^']+'|[A-Za-z_]\w*)!)?(?P<cell>\$?[A-Z]{1,3}\$?\d+(?::\$?[A-Z]{1,3}\$?\d+)?)(?![\w(.])
  | (?P<call>(?:_xll\.)?[A-Za-z_]\w*)\(
  | (?P<name>[A-Za-z_]\w*)
  | (?P<sign><=|>=|<>|[-+*/^&%=<>(),{};])
)''', re.VERBOSE)


def tokens(text):
    place, found = 0, []
    while place < len(text):
        match = TOKEN.match(text, place)
        if match is None:
            raise SyntaxError(f'{text[place:]!r} in ={text}')
        found.append(match)
        place = match.end()
    return found


def number_of_column(letters):
    number = 0
    for letter in letters:
        number = number * 26 + ord(letter) - 64
    return number - 1


def place_of(cell):
    """Row and column of B7, counted from 0."""
    letters, digits = re.fullmatch(r'\$?([A-Z]+)\$?(\d+)', cell).groups()
    return int(digits) - 1, number_of_column(letters)


class Pending(Exception):
    """A value is still to come."""


class Formula:
    """Read from its text without the leading sign; `value(cells)` works it out. `cells` answers cell(sheet, row,
    column), name(name), which gives (sheet, reference), and call(function, arguments)."""

    def __init__(self, text):
        self.found = tokens(text)
        self.at = 0
        self.tree = self.comparison()
        if self.at != len(self.found):
            raise SyntaxError(text)

    def value(self, cells):
        value = self.tree(cells)
        return value[0][0] if isinstance(value, list) else value

    # One method a level of precedence; each gives a function of the cells.
    def sign(self, *signs):
        if self.at < len(self.found) and self.found[self.at]['sign'] in signs:
            self.at += 1
            return self.found[self.at - 1]['sign']
        return None

    def expect(self, sign):
        if not self.sign(sign):
            raise SyntaxError(f'{sign} expected')

    def left_to_right(self, part, operations):
        tree = part()
        while sign := self.sign(*operations):
            tree = self.joined(operations[sign], tree, part())
        return tree

    @staticmethod
    def joined(operation, a, b):
        def value(cells):
            x, y = a(cells), b(cells)
            if isinstance(x, list) or isinstance(y, list):
                return [[operation(p, q) for p, q in zip(*pair)] for pair in zip(*stretched(x, y))]
            return operation(x, y)
        return value

    def comparison(self):
        return self.left_to_right(self.joining, {
            '=': lambda x, y: x == y, '<>': lambda x, y: x != y, '<': lambda x, y: x < y, '>': lambda x, y: x > y,
            '<=': lambda x, y: x <= y, '>=': lambda x, y: x >= y})

    def joining(self):
        return self.left_to_right(self.total, {'&': lambda x, y: shown(x) + shown(y)})

    def total(self):
        return self.left_to_right(self.product, {'+': lambda x, y: number(x) + number(y),
                                                 '-': lambda x, y: number(x) - number(y)})

    def product(self):
        return self.left_to_right(self.power, {'*': lambda x, y: number(x) * number(y),
                                               '/': lambda x, y: number(x) / number(y)})

    def power(self):
        return self.left_to_right(self.signed, {'^': lambda x, y: number(x) ** number(y)})

    def signed(self):
        if self.sign('-'):
            return self.joined(lambda _, y: -number(y), lambda cells: 0.0, self.signed())
        self.sign('+')
        return self.percent()

    def percent(self):
        tree = self.operand()
        while self.sign('%'):
            tree = self.joined(lambda x, y: x / y, tree, lambda cells: 100.0)
        return tree

    def operand(self):
        token = self.found[self.at]
        self.at += 1
        if token['number'] is not None:
            constant = float(token['number'])
            return lambda cells: constant
        if token['text'] is not None:
            text = token['text'].replace('""', '"')
            return lambda cells: text
        if token['cell'] is not None:
            return self.reference(token['sheet'], token['cell'])
        if token['name'] is not None:
            return self.named(token['name'])
        if token['call'] is not None:
            return self.called(token['call'])
        if token['sign'] == '(':
            tree = self.comparison()
            self.expect(')')
            return tree
        if token['sign'] == '{':
            return self.block()
        raise SyntaxError(token.group())

    @staticmethod
    def reference(sheet, cell):
        sheet = sheet and sheet.strip("'")
        first, _, last = cell.partition(':')
        (top, left), (bottom, right) = place_of(first), place_of(last or first)

        def value(cells):
            block = [[cells.cell(sheet, r, c) for c in range(left, right + 1)] for r in range(top, bottom + 1)]
            return block if last else block[0][0]
        return value

    def named(self, name):
        if name in ('TRUE', 'FALSE'):
            return lambda cells: name == 'TRUE'

        def value(cells):
            sheet, cell = cells.name(name)
            return self.reference(sheet, cell)(cells)
        return value

    def block(self):
        rows = [[]]
        while True:
            rows[-1].append(self.signed()(None))
            sign = self.sign(',', ';', '}')
            if sign == '}':
                return lambda cells: rows
            if sign == ';':
                rows.append([])

    def called(self, name):
        arguments = []
        if not self.sign(')'):
            while True:
                if self.found[self.at]['sign'] in (',', ')'):
                    arguments.append(lambda cells: None)
                else:
                    arguments.append(self.comparison())
                if self.sign(')'):
                    break
                self.expect(',')
        if name == 'IF':
            return lambda cells: arguments[1 if arguments[0](cells) else 2](cells)
        if name.startswith('_xll.'):
            return lambda cells: cells.call(name[5:], [argument(cells) for argument in arguments])
        function = FUNCTIONS[name]
        return lambda cells: function(*[argument(cells) for argument in arguments])


def stretched(x, y):
    """Two blocks of one size; what is a single value, row or column is repeated."""
    x, y = (v if isinstance(v, list) else [[v]] for v in (x, y))
    rows, columns = max(len(x), len(y)), max(len(x[0]), len(y[0]))

    def stretch(block):
        block = [row * columns if len(row) == 1 else row for row in block]
        return block * rows if len(block) == 1 else block
    return stretch(x), stretch(y)


def number(value):
    if value is None:
        return 0.0
    if isinstance(value, str):
        raise ValueError(f'{value!r} is no number')
    return float(value)


def shown(value):
    if isinstance(value, float):
        return repr(value)[:-2] if value == int(value) else f'{value:.15g}'
    return '' if value is None else str(value)


def cells_of(values):
    for value in values:
        if isinstance(value, list):
            for row in value:
                yield from row
        else:
            yield value


def numbers_of(values):
    return [float(v) for v in cells_of(values) if isinstance(v, (float, int)) and not isinstance(v, bool)]


def date_of(serial):
    return datetime.date(1899, 12, 30) + datetime.timedelta(int(serial))


def serial_of(date):
    return float((date - datetime.date(1899, 12, 30)).days)


def business_day(serial, holidays):
    return date_of(serial).weekday() < 5 and serial not in holidays


def each(function):
    """The function for a number, and for each of a block."""
    def value(x, *more):
        if isinstance(x, list):
            return [[value(cell, *more) for cell in row] for row in x]
        return function(number(x), *more)
    return value


def rounded(x, digits):
    """Half a unit goes away from 0."""
    return math.copysign(math.floor(abs(x) * 10.0 ** digits + 0.5) / 10.0 ** digits, x)


def networkdays(first, last, holidays=()):
    free = set(numbers_of([holidays]))
    return float(sum(business_day(day, free) for day in range(int(first), int(last) + 1)))


def workday(day, count, holidays=()):
    free = set(numbers_of([holidays]))
    step = math.copysign(1.0, count)
    while count != 0.0:
        day += step
        count -= step * business_day(day, free)
    return float(day)


def end_of_month(day, months):
    date = date_of(day)
    month = date.year * 12 + date.month - 1 + int(months) + 1
    return serial_of(datetime.date(month // 12, month % 12 + 1, 1)) - 1.0


def sum_of_products(*blocks):
    total = 0.0
    for cells in zip(*(cells_of([block]) for block in blocks)):
        total += math.prod(number(cell) for cell in cells)
    return total


def matching(criterion):
    if isinstance(criterion, str) and criterion[:1] in '<>=' and criterion:
        raise NotImplementedError(criterion)
    return lambda cell: cell == criterion


def sum_if(keys, criterion, values):
    matches = matching(criterion)
    total = 0.0
    for key, value in zip(cells_of([keys]), cells_of([values])):
        if matches(key):
            total += number(value)
    return total


def total_of(*values):
    total = 0.0
    for value in numbers_of(values):
        total += value
    return total


def mean_of(*values):
    return total_of(*values) / len(numbers_of(values))


FUNCTIONS = {
    'ABS': each(abs),
    'AVERAGE': mean_of,
    'COUNT': lambda *values: float(len(numbers_of(values))),
    'COUNTIF': lambda cells, criterion: float(sum(map(matching(criterion), cells_of([cells])))),
    'EOMONTH': end_of_month,
    'EXP': each(math.exp),
    'INDEX': lambda block, row, column=1.0: block[int(row) - 1][int(column) - 1],
    'ISNUMBER': lambda value: isinstance(value, float),
    'MATCH': lambda key, block, kind: float([v for v in cells_of([block])].index(key) + 1),
    'MAX': lambda *values: max(numbers_of(values)),
    'MIN': lambda *values: min(numbers_of(values)),
    'NETWORKDAYS': networkdays,
    'ROUND': each(rounded),
    'SQRT': each(math.sqrt),
    'SUM': total_of,
    'SUMIF': sum_if,
    'SUMPRODUCT': sum_of_products,
    'TRUNC': each(math.trunc),
    'WORKDAY': workday,
}
