"""What the sheets of deals have in common."""
PRICE, SHARE, MONEY, WHOLE, PREMIUM, YEARS, CORRELATION = '0.00', '0.00%', '#,##0', '#,##0', '0.00000', '0.000000', '0.000'


class Desk:
    """One sheet of deals. A subclass says tab, about and title, and fills the sheet."""

    tab = about = title = ''
    widths = (27, 14, 44)

    def __init__(self, book):
        self.book = book
        self.sheet = book.sheet(self.tab)
        self.sheet.raw.set_tab_color('#1F5FA8')
        self.sheet.widths(*self.widths)
        self.sheet.put(0, 0, self.title, 'title')
        self.sheet.raw.set_row(0, 26)
        self.sheet.put(1, 0, self.about[0].upper() + self.about[1:] + '.', 'note')
        self.sheet.link(0, self.last_column, 'Contents', 'A1', 'Contents')
        self.sheet.raw.freeze_panes(2, 1)
        self.sheet.raw.fit_to_pages(1, 1)
        self.fill()

    @property
    def last_column(self):
        return len(self.widths) - 1

    def fill(self):
        raise NotImplementedError

    def selector(self, function, result):
        """Which number asks a function for a result, from the catalogue."""
        return self.book.selector(function, result)

    def section(self, row, column, title, width):
        for i in range(width):
            self.sheet.put(row, column + i, title if i == 0 else '', 'head')
        return row + 1

    def head(self, row, column, titles):
        """Heads of a table: the first on the left, those of numbers on the right."""
        for i, title in enumerate(titles):
            self.sheet.put(row, column + i, title, 'head', align='left' if i == 0 else 'right', text_wrap=True)
        return row + 1

    def inputs(self, row, column, rows):
        """Label, name, content, number format and a note a row. What is no formula is an input."""
        for label, name, content, number, note in rows:
            self.sheet.put(row, column, label, 'label')
            is_formula = isinstance(content, str) and content.startswith('=')
            self.sheet.put(row, column + 1, content, 'plain' if is_formula else 'input', number, align='right')
            if name:
                self.sheet.name(name, row, column + 1)
            if note:
                self.sheet.put(row, column + 2, note, 'unit')
            row += 1
        return row

    def results(self, row, column, rows):
        """Label, formula, number format and a note a row; what calls the add-in is green. `name` may follow."""
        for label, formula, number, note, *name in rows:
            self.sheet.put(row, column, label, 'label')
            self.sheet.put(row, column + 1, formula, 'live' if '_xll.' in formula else 'plain', number)
            if note:
                self.sheet.put(row, column + 2, note, 'unit')
            if name:
                self.sheet.name(name[0], row, column + 1)
            row += 1
        return row
