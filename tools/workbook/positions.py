"""A book of mixed deals, and its totals."""
import datetime

from .charts import Series, axis, chart
from .desk import Desk, MONEY, PRICE, SHARE, WHOLE
from .sheet import at

DEALS = 200
COLUMNS = ['#', 'Product', 'Deal', 'Function', 'Lots', 'Units a lot', 'Price', 'Second price, rate', 'Strike',
           'Second strike, barrier, cash', 'Volatility', 'Second volatility', 'Correlation', 'Expiry', 'Days', 'Put or call',
           'Premium', 'Value, $', 'Delta', 'Delta, second', 'Gamma', 'Vega, $ a point', 'Vega, second',
           'Correlation, $ for 0.01', 'Theta, $ a day', 'Rho, $ a basis point', '$ for 1 % up']
(NUMBER, PRODUCT, DEAL, FUNCTION, LOTS, SIZE, A, B, K, K2, VOL, VOL2, CORREL, EXPIRY, DAYS, KIND,
 PREMIUM, VALUE, DELTA, DELTA2, GAMMA, VEGA, VEGA2, CORRELATION, THETA, RHO, PERCENT) = range(len(COLUMNS))

# What is summed: column, results of the catalogue by the first name that a function has, and the factor after the volume.
SENSITIVITIES = [
    (DELTA, ('delta', 'delta_a'), '', WHOLE), (DELTA2, ('delta_b',), '', WHOLE), (GAMMA, ('gamma', 'gamma_a'), '', WHOLE),
    (VEGA, ('vega', 'vega_a'), '/100', MONEY), (VEGA2, ('vega_b',), '/100', MONEY),
    (CORRELATION, ('correlation',), '/100', MONEY),
    (THETA, ('theta',), '/365.25', MONEY), (RHO, ('carry_rho', 'rho'), '/10000', '#,##0.0')]

# Product: units a lot, price, volatility, step of strikes, decimals.
PRODUCTS = {
    'Crude': (1000, 70.0, 0.34, 1.0, 2),
    'Gas': (10000, 3.80, 0.62, 0.05, 3),
    'Heating oil': (42000, 2.30, 0.36, 0.01, 4),
    'Power': (800, 48.0, 0.58, 0.5, 2),
    'EUR/USD': (125000, 1.085, 0.08, 0.005, 4),
}

# Deal: function, and its call from the columns of the book, RetType left open.
CALLS = {
    'European': ('EURO_Forward', '{A},{K},Rate,{VOL},{DAYS},{KIND}'),
    'American': ('AMER', '{A},{K},Rate,Rate,{VOL},{DAYS},{KIND}'),
    'Average': ('ASN', '{A},{K},Rate,{VOL},0,21,0,({DAYS}-30)/365.25,{DAYS}/365.25,{KIND}'),
    'Spread': ('SPRDOPT', '{A},{B},{K},Rate,{VOL},{VOL2},{CORREL},{DAYS},{KIND}'),
    'Barrier': ('BRRR', '{A},{K},Rate,Rate,{VOL},{DAYS},{K2},0,{KIND},0'),
    'Digital': ('DIGITAL', '{K2},{A},{K},Rate,Rate,{VOL},{DAYS},{KIND}'),
    'Collar': ('COMBOPT', '{A},{K},{K2},Rate,Rate,{VOL},{VOL2},{DAYS},{KIND}'),
    'Lookback': ('LKBK', '{A},{K},Rate,Rate,{VOL},{DAYS},{KIND}'),
    'Currency': ('FOREXCH', '{A},{K},Rate,{B},{VOL},{DAYS},{KIND}'),
}
DEAL_KINDS = {
    'Crude': ['European', 'American', 'Average', 'Spread', 'European', 'Barrier', 'Collar', 'Average', 'Lookback', 'American',
              'Digital'],
    'Gas': ['European', 'European', 'Average', 'Spread', 'Digital', 'Collar'],
    'Heating oil': ['European', 'Average', 'American', 'Spread'],
    'Power': ['European', 'Spread', 'Average', 'Collar'],
    'EUR/USD': ['Currency'],
}
OF_DEALS = ['Crude', 'Crude', 'Gas', 'Crude', 'Power', 'Heating oil', 'Crude', 'Gas', 'EUR/USD', 'Gas', 'Heating oil',
            'Crude', 'Power']


class Dice:
    """The same numbers each time, so that the workbook is the same."""

    def __init__(self):
        self.state = 20261217

    def __call__(self, low, high):
        self.state = (self.state * 1103515245 + 12345) % 2 ** 31
        return low + (high - low) * (self.state / 2 ** 31)

    def whole(self, low, high):
        return int(self(low, high + 1))


class Deal:
    """One line of the book, made up."""

    def __init__(self, i, dice):
        self.product = OF_DEALS[i % len(OF_DEALS)]
        self.size, price, volatility, step, digits = PRODUCTS[self.product]
        kinds = DEAL_KINDS[self.product]
        self.kind = kinds[dice.whole(0, len(kinds) - 1)]
        self.lots = dice.whole(5, 60) * (1 if dice(0, 1) < 0.55 else -1)
        self.expiry = datetime.date(2027, 1, 20) + datetime.timedelta(28 * dice.whole(0, 11))
        self.price = round(price * dice(0.97, 1.03), digits)
        self.strike = round(round(self.price * dice(0.9, 1.1) / step) * step, 4)
        self.volatility = round(volatility * dice(0.9, 1.15), 3)
        self.call = 1 if dice(0, 1) < 0.5 else 0
        self.second = self.second_strike = self.second_volatility = self.correlation = None
        if self.kind == 'Spread':
            self.second = round(self.price * dice(0.85, 0.95), digits)
            self.strike = round(round((self.price - self.second) * dice(0.5, 1.2) / step) * step, 4)
            self.second_volatility = round(volatility * dice(0.85, 1.1), 3)
            self.correlation = round(dice(0.7, 0.95), 2)
        elif self.kind == 'Barrier':
            far = 1.25 if self.call else 0.78
            self.second_strike = round(round(max(self.price, self.strike) * far / step) * step if self.call else
                                       round(min(self.price, self.strike) * far / step) * step, 4)
        elif self.kind == 'Digital':
            self.second_strike = round(step * 2, 4)
        elif self.kind == 'Collar':
            self.strike = round(round(self.price * 0.92 / step) * step, 4)
            self.second_strike = round(round(self.price * 1.09 / step) * step, 4)
            self.second_volatility = round(self.volatility * 0.95, 3)
            self.call = 5
        elif self.kind == 'Currency':
            self.second = 0.023


class BookOfDeals(Desk):
    tab = 'Book'
    title = 'A book of 200 deals'
    about = 'premium, value and every sensitivity of each deal; the next sheet adds them up'
    widths = (5, 11, 10, 14, 7, 9, 9, 9, 9, 11, 9, 9, 9, 12, 6, 9, 11, 12, 11, 11, 11, 11, 11, 11, 11, 11, 12)
    head_row = 3

    def fill(self):
        sheet = self.sheet
        self.head(self.head_row, 0, COLUMNS)
        sheet.raw.set_row(self.head_row, 44)
        for column in (PRODUCT, DEAL, FUNCTION):
            sheet.put(self.head_row, column, COLUMNS[column], 'head', text_wrap=True)
        dice = Dice()
        self.first, self.last = self.head_row + 1, self.head_row + DEALS
        for i in range(DEALS):
            self.fill_deal(self.first + i, i + 1, Deal(i, dice))
        total = self.last + 1
        sheet.row(total, 0, [''] * len(COLUMNS), 'total')
        sheet.put(total, PRODUCT, 'all deals', 'total')
        for column in (VALUE, VEGA, VEGA2, CORRELATION, THETA, RHO, PERCENT):
            sheet.put(total, column, f'=SUM({at(self.first, column)}:{at(self.last, column)})', 'total', MONEY)
        sheet.raw.autofilter(self.head_row, 0, self.last, len(COLUMNS) - 1)
        sheet.raw.freeze_panes(self.head_row + 1, DEAL + 1)
        sheet.raw.repeat_rows(self.head_row)
        sheet.raw.set_paper(8)
        sheet.raw.fit_to_pages(1, 0)

    def fill_deal(self, row, number, deal):
        sheet = self.sheet
        price = '0.0000' if deal.product in ('EUR/USD', 'Heating oil') else '0.000' if deal.product == 'Gas' else PRICE
        function, arguments = CALLS[deal.kind]
        sheet.put(row, NUMBER, number, 'plain', '0', align='left')
        sheet.row(row, PRODUCT, [deal.product, deal.kind, function], 'plain')
        sheet.put(row, LOTS, deal.lots, 'input', '0')
        sheet.put(row, SIZE, deal.size, 'plain', WHOLE)
        kinds = '[=0]"put";[=1]"call";"collar"'
        for column, content, number_format in (
                (A, deal.price, price), (B, deal.second, SHARE if deal.kind == 'Currency' else price),
                (K, deal.strike, price),
                (K2, deal.second_strike, price), (VOL, deal.volatility, '0.0%'), (VOL2, deal.second_volatility, '0.0%'),
                (CORREL, deal.correlation, '0.00'), (EXPIRY, deal.expiry, 'd mmm yyyy'), (KIND, deal.call, kinds)):
            if content is not None:
                sheet.put(row, column, content, 'input', number_format, align='right')
        sheet.put(row, DAYS, f'={at(row, EXPIRY)}-Today', 'plain', '0')
        cell = {name: at(row, column) for name, column in (
            ('A', A), ('B', B), ('K', K), ('K2', K2), ('VOL', VOL), ('VOL2', VOL2), ('CORREL', CORREL), ('DAYS', DAYS),
            ('KIND', KIND))}
        volume = f'{at(row, LOTS)}*{at(row, SIZE)}'
        call = lambda result: f'_xll.{function}({arguments.format(**cell)},{self.selector(function, result)})'
        sheet.put(row, PREMIUM, '=' + call('premium'), 'live', '0.0000')
        sheet.put(row, VALUE, f'={volume}*{at(row, PREMIUM)}', 'plain', MONEY)
        for column, results, factor, number_format in SENSITIVITIES:
            result = next((one for one in results if self.has(function, one)), None)
            if result:
                sheet.put(row, column, f'={volume}*{call(result)}{factor}', 'live', number_format)
        # Both prices move by 1 % where the second one is a price.
        second = f'+{at(row, DELTA2)}*{at(row, B)}' if deal.kind == 'Spread' else ''
        sheet.put(row, PERCENT, f'=({at(row, DELTA)}*{at(row, A)}{second})/100', 'plain', MONEY)

    def has(self, function, result):
        return any(one['name'] == result for one in self.book.function(function)['results'])


class BookTotals(Desk):
    tab = 'Book totals'
    title = 'The book added up'
    about = 'value and sensitivities by product, by function and by month of expiry'
    widths = (18, 9, 14, 14, 14, 14, 14, 14, 14, 14, 14, 14)
    summed = (VALUE, PERCENT, DELTA, DELTA2, GAMMA, VEGA, VEGA2, CORRELATION, THETA, RHO)

    def fill(self):
        row = self.fill_table(3, 'Product', list(PRODUCTS), PRODUCT)
        self.products = 4, 3 + len(PRODUCTS)
        functions = list(dict.fromkeys(function for function, _ in CALLS.values()))
        row = self.fill_table(row + 1, 'Function', functions, FUNCTION)
        self.functions = row - 1 - len(functions), row - 2
        self.fill_months(row + 1)
        row += 2 + 12
        sheet = self.sheet
        sheet.put(row, 0, 'Delta and gamma are in units of each product and are not added up. A second price is that of a '
                  'spread.', 'note')
        chart(sheet, row + 2, 0, 'What 1 % up in all prices makes', axis(''), axis('$', MONEY),
              [Series('1 % up', 0, 3, self.products)], 'column',
              size=(420, 280))
        chart(sheet, row + 2, 0, 'Vega by product', axis(''), axis('$ a point', MONEY), [
            Series('vega', 0, 7, self.products), Series('vega, second price', 0, 8, self.products)], 'column',
            size=(420, 280), shift=430)
        chart(sheet, row + 2, 0, 'Value by month of expiry', axis('', 'mmm yy'), axis('$', MONEY), [
            Series('value', 0, 2, self.months)], 'column', size=(420, 280), shift=860)

    def book_column(self, column):
        return f"Book!{at(4, column, True, True)}:{at(3 + DEALS, column, True, True)}"

    def fill_table(self, row, title, keys, key_column):
        sheet = self.sheet
        self.head(row, 0, [title, 'deals'] + [COLUMNS[column] for column in self.summed])
        sheet.raw.set_row(row, 30)
        first = row + 1
        for i, key in enumerate(keys):
            place = first + i
            sheet.put(place, 0, key, 'label')
            sheet.put(place, 1, f'=COUNTIF({self.book_column(key_column)},{at(place, 0)})', 'plain', '0')
            for k, column in enumerate(self.summed):
                if key_column == FUNCTION and column in (DELTA, DELTA2, GAMMA):
                    continue
                sheet.put(place, 2 + k, f'=SUMIF({self.book_column(key_column)},{at(place, 0)},{self.book_column(column)})',
                          'plain', MONEY)
        last = first + len(keys) - 1
        sheet.put(last + 1, 0, 'in all', 'total')
        sheet.put(last + 1, 1, f'=SUM({at(first, 1)}:{at(last, 1)})', 'total', '0')
        for k, column in enumerate(self.summed):
            content = '' if column in (DELTA, DELTA2, GAMMA) else f'=SUM({at(first, 2 + k)}:{at(last, 2 + k)})'
            sheet.put(last + 1, 2 + k, content, 'total', MONEY)
        return last + 2

    def fill_months(self, row):
        sheet = self.sheet
        self.head(row, 0, ['Expiry in', 'deals'] + [COLUMNS[column] for column in self.summed])
        sheet.raw.set_row(row, 30)
        self.months = row + 1, row + 11
        expiry = self.book_column(EXPIRY)
        for i in range(11):
            place = row + 1 + i
            month = at(place, 0)
            if i == 0:
                sheet.put(place, 0, datetime.date(2027, 1, 1), 'input', 'mmm yyyy', align='left')
            else:
                sheet.put(place, 0, f'=EOMONTH({at(place - 1, 0)},0)+1', 'plain', 'mmm yyyy', align='left')
            within = f'({expiry}>={month})*({expiry}<=EOMONTH({month},0))'
            sheet.put(place, 1, f'=SUMPRODUCT({within})', 'plain', '0')
            for k, column in enumerate(self.summed):
                if column not in (DELTA, DELTA2, GAMMA):
                    sheet.put(place, 2 + k, f'=SUMPRODUCT({within}*1,{self.book_column(column)})', 'plain', MONEY)
