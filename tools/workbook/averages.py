"""Average-price deals: a month of crude that rolls, and a strip of gas days."""
import datetime

from .charts import Series, axis, chart
from .desk import CORRELATION, Desk, MONEY, PREMIUM, PRICE, SHARE, WHOLE, YEARS
from .sheet import DATE, at

# Settlements of the nearby contract made this month, typed as they come in.
SETTLED = [69.35, 69.80, 70.42, 70.11, 70.65, 71.02, 70.48, 69.95, 70.20, 70.77, 70.58, 70.30, 70.12]


class CrudeApo(Desk):
    tab = 'Crude APO'
    title = 'Average-price call on crude'
    about = ('calls on the average of the nearby future over a month, which rolls from one contract to the next; '
             'one with fixings made')
    widths = (31, 16, 16, 40, 3, 17, 14, 12, 3, 12, 14, 14, 14)

    def fill(self):
        row = self.fill_deals(3)
        self.fill_fixings(3)
        self.fill_shifts(3)
        self.fill_charts(row + 1)

    def fill_deals(self, row):
        sheet = self.sheet
        self.head(row, 0, ['Deal', 'December', 'February', ''])
        day = datetime.date
        made = '$H$5:$H$26'
        # Label, short name, content of both deals, number format, note. $ stands for the deal's column.
        lines = [
            ('Month', 'Month', [day(2026, 12, 1), day(2027, 2, 1)], 'mmm yyyy', ''),
            ('Last day of the first contract', 'Roll', [day(2026, 12, 21), day(2027, 2, 22)], DATE,
             'the next contract is the nearby from then on'),
            ('Volume, bbl', 'Volume', [100000, 50000], WHOLE, ''),
            ('Strike', 'Strike', [70.0, 72.0], PRICE, ''),
            ('First contract', 'Price1', [70.05, 71.10], PRICE, 'settlement of today'),
            ('Second contract', 'Price2', [70.40, 71.35], PRICE, ''),
            ('Volatility of the first, before', 'Vol1', [0.34, 0.34], SHARE, 'until the averaging begins'),
            ('Volatility of the second, before', 'Vol2', [0.33, 0.33], SHARE, ''),
            ('Volatility of the first, within', 'Sig1', [0.36, 0.38], SHARE, 'within the averaging'),
            ('Volatility of the second, within', 'Sig2', [0.35, 0.36], SHARE, ''),
            ('Correlation', 'Correl', [0.99, 0.985], CORRELATION, 'of the two contracts'),
            ('First fixing', 'First', ['=WORKDAY({Month}-1,1,Holidays)'] * 2, DATE, 'first business day of the month'),
            ('Last fixing', 'Last', ['=WORKDAY(EOMONTH({Month},0)+1,-1,Holidays)'] * 2, DATE,
             'last business day of the month'),
            ('Payment', 'Payment', ['=WORKDAY({Last},5,Holidays)'] * 2, DATE, 'fifth business day after'),
            ('Fixings on the first contract', 'Settle1', ['=NETWORKDAYS({First},{Roll},Holidays)'] * 2, '0', ''),
            ('Fixings on the second', 'Settle2', ['=NETWORKDAYS({Roll}+1,{Last},Holidays)'] * 2, '0', ''),
            ('Fixings made', 'SetDays', [f'=COUNT({made})', 0.0], '0', 'counted in the table of fixings'),
            ('Their average', 'SetPrice', [f'=ROUND(AVERAGE({made}),4)', 0.0], '0.0000',
             'to four decimals; any number while none is made'),
            ('Years to the first fixing', 'AvgStart', ['=({First}-Today)/365.25'] * 2, YEARS,
             'below 0: the averaging has begun'),
            ('Years to the last fixing', 'AvgEnd', ['=({Last}-Today)/365.25'] * 2, YEARS, ''),
            ('Years to payment', 'ToExp', ['=({Payment}-Today)/365.25'] * 2, YEARS, ''),
        ]
        rows = {line[1]: row + 1 + i for i, line in enumerate(lines)}
        self.rows = rows
        for label, name, contents, number, note in lines:
            row += 1
            sheet.put(row, 0, label, 'label')
            sheet.put(row, 3, note, 'unit')
            for k, content in enumerate(contents):
                if isinstance(content, str):
                    content = content.format(**{key: at(r, 1 + k) for key, r in rows.items()})
                    sheet.put(row, 1 + k, content, 'plain', number)
                else:
                    sheet.put(row, 1 + k, content, 'input', number)
        row = self.section(row + 2, 0, 'Premium and sensitivities', 4)
        for label, result, month, factor, number, note in [
                ('Premium, $/bbl', 'premium', 1, '', PREMIUM, 'what xCrudeAPO answers'),
                ('Premium, $', 'premium', 1, '*{Volume}', MONEY, ''),
                ('Delta of the first contract, bbl', 'delta', 1, '*{Volume}', WHOLE,
                 'to sell against the deal; / 1000 for lots'),
                ('Delta of the second contract, bbl', 'delta', 2, '*{Volume}', WHOLE, ''),
                ('Vega before, first, $ a point', 'vega', 1, '*{Volume}/100', MONEY,
                 'a point: one percentage point of volatility'),
                ('Vega before, second, $ a point', 'vega', 2, '*{Volume}/100', MONEY, ''),
                ('Vega within, first, $ a point', 'vega_within', 1, '*{Volume}/100', MONEY, ''),
                ('Vega within, second, $ a point', 'vega_within', 2, '*{Volume}/100', MONEY, ''),
                ('Theta, $ a day', 'theta', 1, '*{Volume}/365.25', MONEY, "tomorrow's fixing made at today's price"),
                ('Rho, $ a basis point', 'carry_rho', 1, '*{Volume}/10000', '#,##0.00', 'forward prices unchanged')]:
            sheet.put(row, 0, label, 'label')
            sheet.put(row, 3, note, 'unit')
            for k in range(2):
                cell = {key: at(r, 1 + k) for key, r in rows.items()}
                sheet.put(row, 1 + k, '=' + self.call(cell, result, month) + factor.format(**cell), 'live', number)
            if result == 'premium' and factor == '':
                self.premium = row
            if label.startswith('Delta of the first'):
                self.delta = row
            row += 1
        return row

    def call(self, cell, result, month, shift=''):
        """The call of one deal, both prices moved by a cell's number."""
        return ('_xll.xCrudeAPO({Price1}' + shift + ',{Price2}' + shift + ',{Vol1},{Vol2},{Sig1},{Sig2},{AvgStart},{AvgEnd},'
                '{Settle1},{Settle2},{SetDays},{Strike},Rate,{Correl},{SetPrice},{ToExp},1,'
                f"{self.selector('xCrudeAPO', result)},{month})").format(**cell)

    def fill_fixings(self, row):
        """The fixings of December: its business days, the contract of each, and the settlements typed so far."""
        sheet = self.sheet
        self.head(row, 5, ['Fixings of December', 'contract', 'settled'])
        for i in range(22):
            place = row + 1 + i
            before = '$B$5-1' if i == 0 else at(place - 1, 5)
            sheet.put(place, 5, f'=WORKDAY({before},1,Holidays)', 'plain', DATE, align='left')
            sheet.put(place, 6, f'=IF({at(place, 5)}<=$B$6,"first","second")', 'plain', align='right')
            sheet.put(place, 7, SETTLED[i] if i < len(SETTLED) else None, 'input', PRICE)
        sheet.put(row + 24, 5, 'Fixings due by today', 'label')
        sheet.put(row + 24, 7, f"=NETWORKDAYS({at(self.rows['First'], 1)},Today,Holidays)", 'plain', '0')
        sheet.put(row + 25, 5, 'Fixings missing', 'label')
        sheet.put(row + 25, 7, f"={at(row + 24, 7)}-{at(self.rows['SetDays'], 1)}", 'plain', '0')

    def fill_shifts(self, row):
        """December's value as both contracts move."""
        sheet = self.sheet
        cell = {key: f'$B${r + 1}' for key, r in self.rows.items()}
        self.head(row, 9, ['Prices move by', 'value today', 'if prices stay', 'delta, bbl'])
        self.shifts = row + 1, row + 21
        for i in range(21):
            place = row + 1 + i
            move = '+' + at(place, 9, col_abs=True)
            sheet.put(place, 9, float(i - 10), 'input', '+0;-0;0')
            sheet.put(place, 10, '=' + self.call(cell, 'premium', 1, move) + '*' + cell['Volume'], 'live', MONEY)
            average = ('({SetDays}*{SetPrice}+MAX(0,{Settle1}-{SetDays})*({Price1}%s)'
                       '+MIN({Settle2},{Settle1}+{Settle2}-{SetDays})*({Price2}%s))/({Settle1}+{Settle2})')
            average = average.replace('%s', move).format(**cell)
            sheet.put(place, 11, f"=MAX(0,{average}-{cell['Strike']})*{cell['Volume']}", 'plain', MONEY)
            deltas = '+'.join(self.call(cell, 'delta', month, move) for month in (1, 2))
            sheet.put(place, 12, f"=({deltas})*{cell['Volume']}", 'live', WHOLE)

    def fill_charts(self, row):
        chart(self.sheet, 30, 5, 'December: today, and what is paid if prices stay',
              axis('both contracts move by, $/bbl', '+0;-0;0', min=-10, max=10),
              axis('$', MONEY),
              [Series('value today', 9, 10, self.shifts), Series('if prices stay', 9, 11, self.shifts, 'dash')],
              size=(470, 300))
        made = chart(self.sheet, 30, 5, 'Delta by contract', axis(''), axis('bbl', WHOLE, min=0), [], 'column',
                     size=(320, 300), shift=480)
        for k, (name, color) in enumerate((('December', '#1F5FA8'), ('February', '#C98A00'))):
            made.add_series({'name': name, 'categories': [self.tab, self.rows['Price1'], 0, self.rows['Price2'], 0],
                             'values': [self.tab, self.delta, 1 + k, self.delta + 1, 1 + k],
                             'fill': {'color': color}, 'border': {'none': True}, 'gap': 80})
        made.set_legend({'position': 'bottom'})


# Forward, strike and daily volatility of each month of gas.
GAS = [(4.20, 4.25, 0.95), (4.05, 4.25, 0.90), (3.60, 4.25, 0.75), (3.35, 3.50, 0.60), (3.30, 3.50, 0.55), (3.38, 3.50, 0.55),
       (3.47, 3.50, 0.58), (3.50, 3.50, 0.58), (3.46, 3.50, 0.58), (3.52, 3.50, 0.60), (3.80, 4.00, 0.70), (4.15, 4.25, 0.85)]


class GasStrip(Desk):
    tab = 'Gas strip'
    title = 'Daily calls on gas'
    about = 'a call on each day of the year, month by month, with volumes and dollars; and the first quarter alone'
    widths = (13, 12, 12, 8, 9, 9, 12, 13, 10, 10, 10, 10, 10, 14, 14, 14, 14)

    def fill(self):
        sheet = self.sheet
        sheet.put(3, 0, 'MMBtu a day', 'label')
        sheet.put(3, 1, 10000, 'input', WHOLE)
        sheet.name('DailyVolume', 3, 1)
        self.head(5, 0, ['Month', 'first day', 'last day', 'days', 'days to first', 'days to last', 'MMBtu', 'forward',
                         'strike', 'rate', 'volatility', 'days to strike', 'premium', 'dollars', 'delta, MMBtu',
                         'vega, $ a point', 'theta, $ a day'])
        sheet.raw.set_row(5, 30)
        first = 6
        for i, (forward, strike, volatility) in enumerate(GAS):
            row = first + i
            cell = [at(row, c) for c in range(12)]
            sheet.put(row, 0, f'=B{row + 1}', 'plain', 'mmm yyyy', align='left')
            if i == 0:
                sheet.put(row, 1, datetime.date(2027, 1, 1), 'input', 'd mmm yyyy')
            else:
                sheet.put(row, 1, f'=C{row}+1', 'plain', 'd mmm yyyy')
            sheet.put(row, 2, f'=EOMONTH({cell[1]},0)', 'plain', 'd mmm yyyy')
            sheet.put(row, 3, f'={cell[2]}-{cell[1]}+1', 'plain', '0')
            sheet.put(row, 4, f'={cell[1]}-Today', 'plain', '0')
            sheet.put(row, 5, f'={cell[2]}-Today', 'plain', '0')
            sheet.put(row, 6, f'=DailyVolume*{cell[3]}', 'plain', WHOLE)
            sheet.put(row, 7, forward, 'input', '0.000')
            sheet.put(row, 8, strike, 'input', '0.000')
            sheet.put(row, 9, '=Rate', 'plain', SHARE)
            sheet.put(row, 10, volatility, 'input', SHARE)
            sheet.put(row, 11, 0.0, 'input', '0')
            self.fill_results(row, row, row)
        last = first + len(GAS) - 1
        sheet.put(last + 1, 0, 'sum of the months', 'total')
        for column in range(1, 17):
            content = None
            if column in (3, 6, 13, 14, 15, 16):
                content = f'=SUM({at(first, column)}:{at(last, column)})'
            sheet.put(last + 1, column, content, 'total', WHOLE)
        for row, label, end in ((last + 2, 'the year at once', last), (last + 3, 'January to March', first + 2)):
            sheet.put(row, 0, label, 'label')
            sheet.put(row, 6, f'=SUM({at(first, 6)}:{at(end, 6)})', 'plain', WHOLE)
            self.fill_results(row, first, end)
        sheet.put(last + 4, 0, 'A premium is per MMBtu of its months; times their volume it is dollars, and the dollars '
                  'of the months add up.', 'note')
        months = first, last
        chart(sheet, last + 6, 0, 'Forward curve, strikes and volatility', axis('', 'mmm yy'), axis('$/MMBtu', '0.00', min=2),
              [Series('forward', 0, 7, months, points=True), Series('strike', 0, 8, months, 'dash'),
               Series('volatility (right)', 0, 10, months, 'round_dot', second=True)], 'line', axis('per year', '0%', min=0),
               size=(600, 290))
        chart(sheet, last + 6, 7, 'Delta by month', axis('', 'mmm yy'), axis('MMBtu', WHOLE),
              [Series('delta', 0, 14, months)], 'column', size=(470, 290))
        chart(sheet, last + 6, 13, 'Premium by month', axis('', 'mmm yy'), axis('$', MONEY),
              [Series('dollars', 0, 13, months)], 'column', size=(430, 290))

    def fill_results(self, row, first, last):
        """Premium, dollars and sensitivities of the months first to last."""
        area = lambda column: f'{at(first, column)}:{at(last, column)}'
        volume = at(row, 6)

        def call(result):
            ranges = ','.join(map(area, (7, 8, 9, 10, 11, 4, 5, 6)))
            return f"_xll.YRSTRIP({ranges},{volume},1,{self.selector('YRSTRIP', result)})"
        for column, formula, number in ((12, call('premium'), '0.000000'), (13, f"{volume}*{call('premium')}", MONEY),
                                        (14, f"{volume}*{call('delta')}", WHOLE), (15, f"{volume}*{call('vega')}/100", MONEY),
                                        (16, f"{volume}*{call('theta')}/365.25", MONEY)):
            self.sheet.put(row, column, '=' + formula, 'live', number)
