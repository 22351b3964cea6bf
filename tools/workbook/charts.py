"""Charts of one look."""
from .styles import COLORS, INK, LINE, QUIET

FONT = {'name': 'Calibri', 'size': 9, 'color': QUIET}
GRID = {'visible': True, 'line': {'color': LINE, 'width': 0.5}}
AXIS_LINE = {'color': '#9FB0C3', 'width': 0.75}


def axis(title, number='General', **more):
    return {'name': title, 'name_font': {**FONT, 'bold': False}, 'num_font': FONT, 'num_format': number, 'line': AXIS_LINE,
            'major_gridlines': GRID, 'minor_tick_mark': 'none', 'major_tick_mark': 'none', **more}


class Series:
    """A column of cells over another: rows first to last of `x` and `y` on one sheet."""

    def __init__(self, name, x, y, rows, dash=None, second=False, color=None, points=False):
        self.name, self.x, self.y, self.rows = name, x, y, rows
        self.dash, self.second, self.color, self.points = dash, second, color, points

    def options(self, tab, i, kind):
        first, last = self.rows
        color = self.color or COLORS[i % len(COLORS)]
        options = {'name': self.name, 'categories': [tab, first, self.x, last, self.x],
                   'values': [tab, first, self.y, last, self.y], 'y2_axis': self.second}
        if kind == 'column':
            return {**options, 'fill': {'color': color}, 'border': {'none': True}, 'gap': 70, 'overlap': -5}
        line = {'color': color, 'width': 1.75, **({'dash_type': self.dash} if self.dash else {})}
        marker = {'type': 'circle', 'size': 6, 'fill': {'color': color}, 'border': {'color': '#FFFFFF'}}
        return {**options, 'line': line, 'marker': marker if self.points else {'type': 'none'}}


def chart(sheet, row, column, title, x, y, series, kind='scatter', second=None, size=(520, 290), shift=0):
    """Puts a chart at a cell, or `shift` pixels to its right. `x`, `y` and `second` are what axis() makes; kind is scatter,
    line or column."""
    made = sheet.book.file.add_chart({'type': kind, **({'subtype': 'straight'} if kind == 'scatter' else {})})
    for i, one in enumerate(series):
        made.add_series(one.options(sheet.tab, i, kind))
    made.set_title({'name': title, 'name_font': {'name': 'Calibri', 'size': 11, 'bold': True, 'color': INK},
                    'overlay': False})
    if len(series) > 1:
        made.set_legend({'position': 'bottom', 'font': FONT})
    else:
        made.set_legend({'none': True})
    made.set_x_axis({'label_position': 'low', 'crossing': 'min', **x})
    # Columns stand on 0, lines on the bottom.
    made.set_y_axis(y if kind == 'column' else {'crossing': 'min', **y})
    if second:
        made.set_y2_axis({**second, 'major_gridlines': {'visible': False}})
    made.set_chartarea({'border': {'color': LINE}})
    made.set_plotarea({'fill': {'none': True}})
    made.set_size({'width': size[0], 'height': size[1]})
    sheet.raw.insert_chart(row, column, made, {'description': title, 'object_position': 1, 'x_offset': shift})
    return made
