"""One European option looked at from all sides: its sensitivities, the smile of a chain, and a grid of price and
volatility."""
import datetime

from .charts import Series, axis, chart
from .desk import Desk, MONEY, PREMIUM, PRICE, SHARE, WHOLE
from .sheet import DATE, at
from .styles import RED

DEAL = [
    ('Expiry', 'Expiry', datetime.date(2027, 2, 17), DATE, ''),
    ('Days', 'Days', '=Expiry-Today', '0', ''),
    ('Future', 'Future', 70.15, PRICE, ''),
    ('Strike', 'Strike', 72.0, PRICE, ''),
    ('Volatility', 'Vol', 0.34, SHARE, ''),
]


class Greeks(Desk):
    """The results of calls, in plain cells and spilled by GREEKS."""

    tab = 'GREEKS'
    title = 'All results of a call'
    about = 'every result in a cell of its own, and spilled by GREEKS in Excel 365; sensitivities against the price'
    widths = (31, 14, 14, 46, 3, 10, 12, 12, 12, 12, 12, 12, 12)

    def fill(self):
        sheet = self.sheet
        row = self.section(3, 0, 'A call on a crude future', 4)
        row = self.inputs(row, 0, DEAL)
        given = 'Future,Strike,Rate,Vol,Days,1'
        row = self.fill_results(row + 1, 'EURO_Forward', given)
        row = self.section(row + 1, 0, 'A crack spread', 4)
        row = self.inputs(row, 0, [('Product, $/bbl', 'Product', 97.02, PRICE, ''), ('Margin', 'Margin', 25.0, PRICE, ''),
                                   ('Volatility of the product', 'ProductVol', 0.36, SHARE, ''),
                                   ('Correlation', 'Correl', 0.92, '0.000', '')])
        row = self.fill_results(row + 1, 'SPRDOPT', 'Product,Future,Margin,Rate,ProductVol,Vol,Correl,Days,1')
        self.fill_definition(row + 1)
        self.fill_ladder(given)

    def fill_results(self, row, function, given):
        sheet = self.sheet
        entry = self.book.function(function)
        row = self.head(row, 0, [function, 'plain cells', 'GREEKS', ''])
        first, count = row, len(entry['results'])
        for result in entry['results']:
            sheet.put(row, 0, f"{result['selector']} {result['name']}", 'label')
            sheet.put(row, 1, f"=_xll.{function}({given},{result['selector']})", 'live', '0.000000')
            sheet.put(row, 3, result['unit'], 'unit')
            row += 1
        sheet.spill(first, 2, f'=GREEKS(_xlfn.LAMBDA(_xlpm.which,_xll.{function}({given},_xlpm.which)),{count})', count,
                    (first, 1))
        sheet.put(row, 0, f'=GREEKS(LAMBDA(which, {function}({given},which)), {count})'[1:], 'note')
        return row + 1

    def fill_definition(self, row):
        sheet = self.sheet
        row = self.section(row, 0, 'How GREEKS is defined (Formulas > Name Manager)', 4)
        sheet.put(row, 0, 'LAMBDA(priced, count, MAP(SEQUENCE(count, 1, 0), priced))', 'text')
        sheet.put(row + 1, 0, 'Give it a call with RetType left open, and how many results it has. Programs without LAMBDA '
                  'show an error beside the plain cells.', 'note')
        self.book.file.define_name('GREEKS', '=_xlfn.LAMBDA(_xlpm.priced,_xlpm.count,'
                                   '_xlfn.MAP(_xlfn.SEQUENCE(_xlpm.count,1,0),_xlpm.priced))')

    def fill_ladder(self, given):
        sheet = self.sheet
        call = lambda price, result, days='Days': (f"=_xll.EURO_Forward({price},Strike,Rate,Vol,{days},1,"
                                                   f"{self.selector('EURO_Forward', result)})")
        self.head(3, 5, ['Future', 'premium', 'in half the time', 'at expiry', 'delta', 'gamma', 'vega', 'theta'])
        rows = 4, 36
        for i in range(33):
            place = 4 + i
            price = at(place, 5)
            sheet.put(place, 5, float(54 + i), 'input', '0', align='left')
            sheet.put(place, 6, call(price, 'premium'), 'live', '0.0000')
            sheet.put(place, 7, call(price, 'premium', 'Days/2'), 'live', '0.0000')
            sheet.put(place, 8, f'=MAX(0,{price}-Strike)', 'plain', '0.0000')
            for k, result in enumerate(('delta', 'gamma', 'vega', 'theta')):
                sheet.put(place, 9 + k, call(price, result), 'live', '0.0000')
        x = axis('price of the future, $/bbl', '0', min=54, max=86)
        draw = lambda row, shift, title, y, *series, **more: chart(sheet, row, 5, title, x, y, series, size=(330, 240),
                                                                   shift=shift, **more)
        draw(38, 0, 'Value', axis('$/bbl', '0'), Series('today', 5, 6, rows), Series('half time', 5, 7, rows, 'dash'),
             Series('expiry', 5, 8, rows))
        draw(38, 340, 'Delta and gamma', axis('delta', '0.0'), Series('delta', 5, 9, rows),
             Series('gamma (right)', 5, 10, rows, second=True, color=RED),
             second=axis('gamma', '0.00'))
        draw(53, 0, 'Vega', axis('$/bbl for 1.00 of volatility', '0'), Series('vega', 5, 11, rows))
        draw(53, 340, 'Theta', axis('$/bbl a year', '0'), Series('theta', 5, 12, rows, color=RED))


# Strikes and mid prices of a morning; puts below 70, calls above.
CHAIN = [(56, 0.47), (58, 0.65), (60, 0.91), (62, 1.25), (64, 1.71), (66, 2.31), (68, 3.05), (70, 4.11), (72, 3.20),
         (74, 2.45), (76, 1.85), (78, 1.38), (80, 1.01), (82, 0.74), (84, 0.54), (86, 0.40)]


class Smile(Desk):
    tab = 'Smile'
    title = 'The smile of an option chain'
    about = 'implied volatilities of puts and calls on one future, and what they are worth against the one at the money'
    widths = (14, 12, 12, 13, 14, 14, 13, 13, 15, 3, 26, 14, 30)

    def fill(self):
        sheet = self.sheet
        row = self.section(3, 10, 'Chain', 3)
        row = self.inputs(row, 10, [
            ('Expiry', 'Expiry', datetime.date(2027, 2, 17), DATE, ''),
            ('Days', 'Days', '=Expiry-Today', '0', ''),
            ('Future', 'Future', 70.15, PRICE, ''),
            ('Greatest volatility', 'MaxVol', 2.0, SHARE, '-99 where the premium wants more'),
            ('Accuracy', 'Accuracy', 1e-8, '0E+00', 'of the premium'),
            ('Iterations', 'Maxiter', 100, '0', ''),
            ('Volatility at the money', 'Atm', f'=INDEX(E5:E{4 + len(CHAIN)},MATCH(70,A5:A{4 + len(CHAIN)},0))', SHARE,
             'the strike of 70'),
        ])
        self.head(3, 0, ['Strike', 'put or call', 'premium', 'strike / future', 'implied volatility', 'delta',
                         'vega, a point', 'premium at that', 'over at the money'])
        sheet.raw.set_row(3, 30)
        first = 4
        for i, (strike, premium) in enumerate(CHAIN):
            place = first + i
            k, kind, quote, volatility = (at(place, c) for c in (0, 1, 2, 4))
            sheet.put(place, 0, float(strike), 'input', '0', align='left')
            sheet.put(place, 1, 0 if strike < 70 else 1, 'input', '"call";;"put"', align='right')
            sheet.put(place, 2, premium, 'input', PRICE)
            sheet.put(place, 3, f'={k}/Future', 'plain', '0.0%')
            sheet.put(place, 4, f'=_xll.EIMPVOL({kind},{quote},Future,{k},Days,Rate,Rate,MaxVol,Accuracy,Maxiter)', 'live',
                      SHARE)
            call = lambda volatility, result: (f"_xll.EURO_Forward(Future,{k},Rate,{volatility},Days,{kind},"
                                               f"{self.selector('EURO_Forward', result)})")
            sheet.put(place, 5, '=' + call(volatility, 'delta'), 'live', '0.000')
            sheet.put(place, 6, f"={call(volatility, 'vega')}/100", 'live', '0.000')
            sheet.put(place, 7, '=' + call(volatility, 'premium'), 'live', '0.0000')
            sheet.put(place, 8, f"={quote}-{call('Atm', 'premium')}", 'live', '+0.000;-0.000;0.000')
        rows = first, first + len(CHAIN) - 1
        chart(sheet, rows[1] + 2, 0, 'Smile', axis('strike, $/bbl', '0', min=54, max=88),
              axis('implied volatility', '0%', min=0.30, max=0.46),
              [Series('implied volatility', 0, 4, rows, points=True)], size=(560, 310))
        chart(sheet, rows[1] + 2, 0, 'Premium over the volatility at the money', axis('strike'), axis('$/bbl', '0.00'),
              [Series('premium', 0, 8, rows)], 'column', size=(480, 310), shift=570)


class Grid(Desk):
    tab = 'Price and volatility'
    title = 'Profit and loss by price and volatility'
    about = '50 lots of calls on a crude future some days from now: what they have made, and their delta'
    widths = (27, 13) + (11,) * 9 + (3,) + (11,) * 6
    vols = [0.22, 0.26, 0.30, 0.34, 0.38, 0.42, 0.46, 0.50, 0.54]
    prices = [58 + 2 * i for i in range(15)]

    def fill(self):
        sheet = self.sheet
        row = self.section(3, 0, 'Deal', 3)
        row = self.inputs(row, 0, DEAL + [
            ('Lots', 'Lots', 50, WHOLE, ''),
            ('Barrels a lot', 'Size', 1000, WHOLE, ''),
            ('Bought at, $/bbl', 'Paid', '=_xll.EURO_Forward(Future,Strike,Rate,Vol,Days,1,'
             f"{self.selector('EURO_Forward', 'premium')})", PREMIUM, "today's value; type what was paid"),
            ('Days from today', 'Later', 10, '0', 'the grid is of that day'),
        ])
        self.grids = {}
        for result, title, formula, number in (
                ('premium', 'Profit and loss, $', '=Lots*Size*({call}-Paid)', '#,##0;-#,##0;0'),
                ('delta', 'Delta, bbl', '=Lots*Size*{call}', WHOLE)):
            row = self.fill_grid(row + 1, title, result, formula, number)
        top = self.grids['premium']
        rows = top + 1, top + len(self.prices)
        sheet.raw.conditional_format(rows[0], 2, rows[1], 10, {
            'type': '3_color_scale', 'mid_type': 'num', 'mid_value': 0, 'min_color': '#D98880', 'mid_color': '#FBFBF8',
            'max_color': '#7FB58F'})
        top_delta = self.grids['delta']
        sheet.raw.conditional_format(top_delta + 1, 2, top_delta + len(self.prices), 10, {
            'type': '2_color_scale', 'min_color': '#FBFBF8', 'max_color': '#7FA6D6'})
        series = [Series(f'{vol:.0%}', 1, 2 + i, rows) for i, vol in enumerate(self.vols) if i in (0, 3, 6, 8)]
        x = axis('price of the future, $/bbl', '0', min=58, max=86)
        chart(sheet, self.grids['premium'], 12, 'Profit and loss at four volatilities', x, axis('$', MONEY), series,
              size=(520, 300))
        chart(sheet, top_delta, 12, 'Delta at four volatilities', x, axis('bbl', WHOLE), [
            Series(one.name, 1, one.y, (top_delta + 1, top_delta + len(self.prices))) for one in series], size=(520, 300))

    def fill_grid(self, row, title, result, formula, number):
        sheet = self.sheet
        sheet.put(row, 0, title, 'subtitle')
        for column in range(1, 11):
            sheet.put(row, column, 'volatility' if column == 2 else '', 'subtitle', font_size=10, bold=False)
        row += 1
        self.grids[result] = row
        sheet.put(row, 0, '', 'head')
        sheet.put(row, 1, 'future', 'head', align='right')
        first_grid = result == 'premium'
        for k, vol in enumerate(self.vols):
            content = vol if first_grid else f"={at(self.grids['premium'], 2 + k)}"
            sheet.put(row, 2 + k, content, 'input' if first_grid else 'head', '0%', align='right')
        for i, price in enumerate(self.prices):
            place = row + 1 + i
            content = float(price) if first_grid else f"={at(self.grids['premium'] + 1 + i, 1)}"
            sheet.put(place, 1, content, 'input' if first_grid else 'plain', '0.00')
            for k in range(len(self.vols)):
                future, vol = at(place, 1, col_abs=True), at(row, 2 + k, row_abs=True)
                call = f"_xll.EURO_Forward({future},Strike,Rate,{vol},Days-Later,1,{self.selector('EURO_Forward', result)})"
                sheet.put(place, 2 + k, formula.format(call=call), 'plain', number, border=1, border_color='#FFFFFF')
        return row + len(self.prices) + 1
