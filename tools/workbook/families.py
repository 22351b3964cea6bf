"""A sheet for each family of functions, from the catalogue: every function with inputs, all results and a check."""
import re

from .sheet import at, exact
from .styles import WORDS

NAME, FIRST, EXPECTED, SELECTOR, UNIT, MEANING, LOOK = 0, 1, 3, 4, 5, 6, 7
WIDEST = 4  # cells of a range beside one another
PAGE_ROWS = 52
PER_YEAR = ('per year', 'per year, continuous', 'per year, semi-annual')
NOT_COMPUTED = 'not computed'
RESULT = '[<-99999999]0E+00;0.000000'  # some functions answer a huge number for what they have not


def tab_of(family):
    return family['title'].replace(': ', ', ')


def plain(text):
    return text.replace('`', '')


def rows_of(written):
    """The cells of an argument, row after row; a long row is folded, as the functions read row after row."""
    if not written.startswith('{'):
        return [[written]]
    rows = [row.split(',') for row in written[1:-1].split(';')]
    if len(rows) == 1 and len(rows[0]) > WIDEST:
        cells = rows[0]
        width = next(w for w in (4, 3, 2, 1) if len(cells) % w == 0)
        rows = [cells[i:i + width] for i in range(0, len(cells), width)]
    return rows


def number_format(unit, written):
    if unit in PER_YEAR:
        return '0.00%'
    return '0E+00' if 'E' in written else None


class Area:
    """Where an argument stands."""

    def __init__(self, row, rows):
        self.row, self.height, self.width = row, len(rows), len(rows[0])

    @property
    def cells(self):
        first, last = at(self.row, FIRST), at(self.row + self.height - 1, FIRST + self.width - 1)
        return first if first == last else f'{first}:{last}'

    @property
    def bounds(self):
        return self.row, FIRST, self.row + self.height - 1, FIRST + self.width - 1


def between(cells, odd):
    """A condition on cells, and the cell that meets it."""
    above, below = odd['above'], odd['below']
    if below is None:
        return f'MAX({cells})>{exact(above)}', f'MAX({cells})'
    if above is None:
        return f'MIN({cells})<{exact(below)}', f'MIN({cells})'
    return f'SUMPRODUCT(({cells}>{exact(above)})*({cells}<{exact(below)}))>0', f'MAX({cells})'


def words_formula(words, number):
    """The words with the number in them, as a formula."""
    for place, shown in (('{%}', f'ROUND(100*{number},4)&" %"'), ('{}', f'ROUND({number},4)')):
        words = words.replace(place, f'"&{shown}&"')
    return f'"{words}"'


def slips_of(function, i, areas):
    """What may look wrong with an argument: conditions of the whole, their words, and conditions cell by cell."""
    argument, area = function['arguments'][i], areas[i]
    cell = at(area.row, FIRST)
    for odd in argument['odd']:
        bounds = [cell + sign + exact(odd[side]) for side, sign in (('above', '>'), ('below', '<')) if odd[side] is not None]
        condition, number = between(area.cells, odd)
        yield condition, words_formula(odd['words'], number), f"AND(ISNUMBER({cell}),{','.join(bounds)})"
    if argument['whole']:
        words = f'"counts as "&TRUNC({cell})' if area.cells == cell else '"counts without its decimals"'
        yield f'SUMPRODUCT(({area.cells}<>TRUNC({area.cells}))*1)>0', words, f'{cell}<>TRUNC({cell})'
    for first, second in function['in_order']:
        if first == i:
            later = areas[second]
            words = f"\"is more than {function['arguments'][second]['name']}\""
            yield f'SUMPRODUCT(({area.cells}>{later.cells})*1)>0', words, f'{cell}>{at(later.row, FIRST)}'
    for count, begin, end in function['fixings_within']:
        if count == i:
            days = lambda last, first: f'({last}-{first})*365.25+1'
            names = [function['arguments'][place]['name'] for place in (begin, end)]
            words = '"is more fixings than days from {} to {}"'.format(*names)
            a, b = areas[begin], areas[end]
            yield (f'SUMPRODUCT(({a.cells}>0)*({area.cells}>{days(b.cells, a.cells)}+0.5))>0', words,
                   f'AND({at(a.row, FIRST)}>0,{cell}>{days(at(b.row, FIRST), at(a.row, FIRST))}+0.5)')


class FunctionBlock:
    """One function on its family's sheet."""

    def __init__(self, sheet, function, row):
        self.sheet, self.function, self.row = sheet, function, row
        self.names = function['functions']
        self.head = row
        self.areas = {}
        self.live = 0
        self.write_head()
        self.write_arguments()
        self.write_results()
        self.write_accuracy()

    def write_head(self):
        function = self.function
        for column in range(LOOK + 1):
            self.sheet.put(self.row, column, '', 'subtitle')
        self.sheet.put(self.row, NAME, ', '.join(self.names), 'subtitle')
        self.sheet.put(self.row, EXPECTED, plain(function['headline']), 'subtitle', font_size=10, bold=False)
        self.sheet.merged(self.row + 1, NAME, LOOK, function['prices'], lines=1 + len(function['prices']) // 190)
        self.row += 2

    def write_arguments(self):
        self.write_heads(['argument', 'value', '', '', '', 'unit', 'meaning', 'look again'])
        self.row += 1
        for i, (argument, written) in enumerate(zip(self.function['arguments'], self.function['example'])):
            if i == self.function['result_argument']:
                continue
            self.areas[i] = self.write_argument(argument, written)
        for i in self.areas:
            self.write_slips(i)

    def write_heads(self, heads):
        for column, head in enumerate(heads):
            align = 'right' if FIRST <= column <= SELECTOR else 'center' if head == 'check' else 'left'
            self.sheet.put(self.row, column, head, 'head', align=align, indent=int(column == UNIT))

    def write_argument(self, argument, written):
        rows = rows_of(written)
        area = Area(self.row, rows)
        self.sheet.put(self.row, NAME, argument['name'], 'label')
        for r, cells in enumerate(rows):
            for c, cell in enumerate(cells):
                share = re.fullmatch(r'(-?[\d.]+)%', cell)
                content = float(share[1]) / 100.0 if share else '=' + cell if '/' in cell else float(cell)
                self.sheet.put(self.row + r, FIRST + c, content, 'input',
                               '0.000000' if '/' in cell else number_format(argument['unit'], cell))
        self.sheet.name(f"{self.function['name']}_{argument['name']}", *area.bounds)
        if argument['unit'] != 'selector':
            self.sheet.put(self.row, UNIT, argument['unit'], 'unit')
        meaning = argument['meaning']
        if argument['choices']:
            meaning += ': ' + ', '.join(f"{one['value']} {one['meaning']}" for one in argument['choices'])
        self.sheet.put(self.row, MEANING, meaning, 'note')
        self.row += area.height
        return area

    def write_slips(self, i):
        area = self.areas[i]
        formula = ''
        found = list(slips_of(self.function, i, self.areas))
        for condition, words, of_cell in found:
            self.sheet.slips(*area.bounds, of_cell)
        for condition, words, _ in reversed(found):
            formula = f'IF({condition},{words},{formula or chr(34) * 2})'
        if formula:
            self.sheet.put(area.row, LOOK, '=' + formula, 'note', font_color='#8E1B0E')

    def result_rows(self):
        """Selector, name, unit, meaning and the functions that answer."""
        for result in self.function['results']:
            count = 1
            name = result['name']
            if result['each'] == 'period':
                count = len(rows_of(self.function['example'][0])[0])
            for k in range(count):
                meaning = result['meaning'] + ('; of RetMonth' if result['each'] == 'month' else '')
                numbered = f'{name} {k + 1}' if count > 1 else name
                yield result['selector'] + k, numbered, result['unit'], meaning, result['functions']

    def call(self, name, selector):
        function = self.function
        given = [f"{function['name']}_{argument['name']}" if i in self.areas else f'$E{selector + 1}'
                 for i, argument in enumerate(function['arguments'])]
        return f"=_xll.{name}({','.join(given)})"

    def write_results(self):
        selects = self.function['result_argument'] >= 0
        heads = ['result', *self.names[:2]] + [''] * (2 - len(self.names[:2])) + ['expected', '', 'unit', 'meaning', 'check']
        if selects:
            heads[SELECTOR] = self.function['arguments'][self.function['result_argument']]['name']
        self.write_heads(heads)
        self.row += 1
        first = self.row
        for selector, name, unit, meaning, functions in self.result_rows():
            self.sheet.put(self.row, NAME, name, 'label')
            if selects:
                self.sheet.put(self.row, SELECTOR, selector, 'plain')
            self.sheet.put(self.row, UNIT, unit, 'unit')
            self.sheet.put(self.row, MEANING, meaning, 'note')
            self.write_calls([self.call(twin, self.row) if twin in functions else None for twin in self.names])
        written = ','.join(self.function['example'])
        self.sheet.put(self.row, NAME, 'as one formula', 'label')
        formula = f"{self.function['name']}({written})"
        if len(formula) > 70:
            self.sheet.merged(self.row, UNIT, MEANING, formula, 'broken', 1 + len(formula) // 105)
        else:
            self.sheet.put(self.row, MEANING, formula, 'note')
        self.write_calls([f'=_xll.{twin}({written})' for twin in self.names])
        self.results = first, self.row - 1

    def write_calls(self, calls):
        cells = [self.sheet.put(self.row, FIRST + k, call, 'live', RESULT) for k, call in enumerate(calls) if call]
        expected = at(self.row, EXPECTED)
        self.sheet.book.expect(self.sheet, self.row, FIRST, EXPECTED, RESULT)
        off = [f'ABS({cell}-{expected})' for cell in cells]
        worst = off[0] if len(off) == 1 else f"MAX({','.join(off)})"
        area = cells[0] if len(cells) == 1 else f'{cells[0]}:{cells[-1]}'
        as_expected = f'{worst}<=1E-9*MAX(1,ABS({expected}))'
        self.sheet.put(self.row, LOOK, f'=IF(COUNT({area})<{len(cells)},"no add-in",IF({as_expected},"ok","changed"))',
                       'check', stored=NOT_COMPUTED)
        self.live += len(cells)
        self.row += 1

    def write_accuracy(self):
        words = 'How far to trust it: ' + self.function['accuracy']
        self.sheet.merged(self.row, NAME, LOOK, words, 'wrapped', 1 + len(words) // 190)
        self.row += 2


class FamilySheet:
    def __init__(self, book, family):
        self.family = family
        self.tab = tab_of(family)
        self.sheet = sheet = book.sheet(self.tab)
        sheet.raw.set_tab_color('#9FB0C3')
        sheet.widths(17, 12.5, 12.5, 12.5, 12.5, 30, 76, 34)
        sheet.put(0, NAME, family['title'], 'title')
        sheet.raw.set_row(0, 26)
        sheet.put(1, NAME, 'Yellow cells are inputs, green cells are worked out by the add-in. Names such as '
                  f"{family['functions'][0]['name']}_{family['functions'][0]['arguments'][0]['name']} belong to this sheet. "
                  'A red cell looks like a slip; the last column says why.', 'note')
        sheet.link(0, LOOK, 'Contents', 'A1', 'Contents')
        sheet.raw.freeze_panes(2, 1)
        sheet.raw.repeat_rows(0, 2)
        row, breaks = 3, []
        self.blocks = []
        for function in family['functions']:
            block = FunctionBlock(sheet, function, row)
            self.blocks.append(block)
            row = block.row
            breaks.append(row)
        self.rows = row
        # Pages end between functions, each with about as many rows as fit.
        pages, begun = [], 0
        for k, end in enumerate(breaks):
            following = breaks[k + 1] if k + 1 < len(breaks) else None
            if following and following - begun > PAGE_ROWS:
                pages.append(end)
                begun = end
        sheet.raw.set_h_pagebreaks(pages)
        for words, look in WORDS.items():
            sheet.raw.conditional_format(3, LOOK, row, LOOK, {
                'type': 'cell', 'criteria': '==', 'value': f'"{words}"', 'format': book.style.conditional(look)})
        self.checks = f"'{self.tab}'!$H$4:$H${row + 1}"
