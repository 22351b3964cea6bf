"""How cells look: a few kinds, told apart by what a cell is for."""

FONT = {'font_name': 'Calibri', 'font_size': 10, 'valign': 'vcenter'}
INK, QUIET, LINE = '#1E2A38', '#66717F', '#D5DAE1'
BLUE, AMBER, RED, GREEN, PURPLE, GREY = '#1F5FA8', '#C98A00', '#B23A2B', '#2F7D4F', '#6D4C9F', '#8A94A0'
COLORS = [BLUE, AMBER, RED, GREEN, PURPLE, GREY]

KINDS = {
    'text': {'font_color': INK},
    'title': {'bold': True, 'font_size': 18, 'font_color': '#17375E'},
    'subtitle': {'bold': True, 'font_size': 12, 'font_color': '#17375E', 'bottom': 2, 'bottom_color': '#17375E'},
    'note': {'font_color': QUIET},
    'wrapped': {'font_color': INK, 'text_wrap': True, 'valign': 'top'},
    'broken': {'font_color': QUIET, 'text_wrap': True, 'valign': 'top', 'indent': 1},
    'head': {'bold': True, 'font_color': '#17375E', 'bg_color': '#E9EEF4', 'bottom': 1, 'bottom_color': '#9FB0C3'},
    'label': {'font_color': INK},
    'unit': {'font_color': QUIET, 'indent': 1},
    'link': {'font_color': BLUE, 'underline': 1},
    # What a user types, what the sheet works out, and what the add-in works out.
    'input': {'font_color': '#1A3FB0', 'bg_color': '#FFF8DC', 'border': 1, 'border_color': '#E3D8A6'},
    'plain': {'font_color': INK},
    'live': {'font_color': '#0B3D2E', 'bg_color': '#EAF4EE', 'border': 1, 'border_color': '#C9E0D2'},
    'total': {'font_color': INK, 'bold': True, 'top': 1, 'top_color': '#17375E'},
    'expected': {'font_color': QUIET},
    'check': {'font_color': QUIET, 'align': 'center'},
}

# Conditional formats.
SLIP = {'bg_color': '#F8D7D3', 'font_color': '#8E1B0E', 'bold': True}
WORDS = {'ok': {'font_color': '#1D6B3A', 'bg_color': '#DDF1E4'}, 'changed': {'font_color': '#7A5200', 'bg_color': '#FFEFC7'},
         'no add-in': {'font_color': QUIET, 'bg_color': '#ECEFF2'}}


class Styles:
    """Formats of the workbook, each made once."""

    def __init__(self, book):
        self.book = book
        self.made = {}

    def __call__(self, kind, number=None, **more):
        key = (kind, number, tuple(sorted(more.items())))
        if key not in self.made:
            look = {**FONT, **KINDS[kind], **more}
            if number:
                look['num_format'] = number
            self.made[key] = self.book.add_format(look)
        return self.made[key]

    def conditional(self, look):
        key = tuple(sorted(look.items()))
        if key not in self.made:
            self.made[key] = self.book.add_format(look)
        return self.made[key]
