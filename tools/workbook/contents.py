"""The first sheet: what there is, whether the add-in is loaded, and where each function is."""
from .families import NOT_COMPUTED, plain
from .sheet import at
from .styles import SLIP


class Contents:
    """Made first, so that it is the first sheet; filled once the others are known."""

    def __init__(self, book):
        self.book = book
        self.sheet = book.sheet('Contents')

    def fill(self, desks, families):
        sheet = self.sheet
        sheet.raw.set_tab_color('#17375E')
        sheet.widths(28, 74, 26, 3, 25, 78)
        sheet.raw.set_row(0, 30)
        sheet.put(0, 0, 'KESTRAN', 'title')
        sheet.put(0, 1, 'options on commodities, energy, currencies and rates', 'note', font_size=12)
        row = self.fill_state(2, families)
        row = self.fill_legend(row + 1)
        row = self.fill_desks(row + 1, desks)
        row = self.fill_families(row + 1, families)
        self.fill_index(families)
        sheet.raw.freeze_panes(1, 0)
        sheet.raw.repeat_rows(0)
        sheet.raw.activate()

    def fill_state(self, row, families):
        sheet = self.sheet
        first = families[0].blocks[0].function
        sheet.put(row, 0, 'Add-in', 'label', bold=True)
        call = f"_xll.{first['name']}({','.join(first['example'])})"
        sheet.put(row, 1, f'=IF(ISNUMBER({call}),"loaded: green cells are live",'
                  '"not loaded: green cells show what is stored, or an error once they are worked out anew")',
                  'text', stored=NOT_COMPUTED, bold=True)
        sheet.put(row + 1, 0, 'To load it', 'label', bold=True)
        sheet.put(row + 1, 1, 'File > Options > Add-ins > Manage: Excel Add-ins > Go > Browse; then Ctrl+Alt+F9 works out '
                  'every cell', 'text')
        sheet.put(row + 2, 0, 'Stored numbers', 'label', bold=True)
        sheet.put(row + 2, 1, 'are those of the command kestran, whose bits are those of the add-in', 'text')
        return row + 3

    def fill_legend(self, row):
        sheet = self.sheet
        for kind, look, words in (('input', {}, 'an input: type over it'), ('plain', {}, "the sheet's own arithmetic"),
                                  ('live', {}, 'a function of the add-in'),
                                  ('text', SLIP, 'looks like a slip, such as a rate of 5 in place of 0.05')):
            sheet.put(row, 0, 1.25, kind, '0.00', align='center', **look)
            sheet.put(row, 1, words, 'text')
            row += 1
        return row

    def fill_desks(self, row, desks):
        sheet = self.sheet
        sheet.row(row, 0, ['Deals', 'what the sheet works out', ''], 'head')
        for desk in desks:
            row += 1
            sheet.link(row, 0, desk.tab, 'A1', desk.tab)
            sheet.put(row, 1, desk.about, 'text')
        return row + 1

    def fill_families(self, row, families):
        sheet = self.sheet
        sheet.row(row, 0, ['Functions', 'all of them, with inputs, results and what was expected',
                           'results that are as expected'], 'head')
        for family in families:
            row += 1
            sheet.link(row, 0, family.tab, 'A1', family.tab)
            sheet.put(row, 1, f'{sum(len(block.names) for block in family.blocks)} functions', 'text')
            rows = sum(block.results[1] - block.results[0] + 1 for block in family.blocks)
            sheet.put(row, 2, f'=COUNTIF({family.checks},"ok")&" of {rows}"', 'check', stored=NOT_COMPUTED, align='left')
        return row + 1

    def fill_index(self, families):
        """A line for each function and its twin."""
        sheet = self.sheet
        sheet.row(2, 4, ['Functions by name', 'what they price'], 'head')
        entries = [(family.tab, block) for family in families for block in family.blocks]
        for i, (tab, block) in enumerate(sorted(entries, key=lambda entry: entry[1].names[0].lstrip('x').upper())):
            sheet.link(3 + i, 4, tab, at(block.head, 0), ', '.join(block.names))
            sheet.put(3 + i, 5, plain(block.function['headline']), 'text')
