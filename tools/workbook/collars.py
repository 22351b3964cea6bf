"""Deals over several periods: collars, the option to enter one, and a swaption."""
import datetime

from .charts import Series, axis, chart
from .desk import Desk, MONEY, PREMIUM, PRICE, SHARE, WHOLE, YEARS
from .sheet import DATE, at
from .styles import GREY


class Collar(Desk):
    tab = 'Collar'
    title = "A producer's collar, and an option on one"
    about = 'a put bought and a call sold on one expiry; and the right to enter a collar over a quarter later'
    widths = (31, 15, 40, 3, 20, 14, 14, 14, 14, 3, 13, 13, 13, 13)

    def fill(self):
        row = self.fill_collar(3)
        self.fill_option(3)
        self.fill_payoff(3)
        chart(self.sheet, row + 1, 0, 'A barrel with the collar, today and at expiry',
              axis('price of the future, $/bbl', '0', min=50, max=90), axis('$/bbl', '0', min=45, max=95),
              [Series('barrel alone', 10, 10, self.rows, 'dash', color=GREY),
               Series('with the collar, at expiry', 10, 12, self.rows),
               Series('with the collar, today', 10, 11, self.rows)], size=(590, 310))

    def fill_collar(self, row):
        row = self.section(row, 0, 'One expiry', 3)
        row = self.inputs(row, 0, [
            ('Expiry', 'Expiry', datetime.date(2027, 2, 17), DATE, ''),
            ('Days', 'Days', '=Expiry-Today', '0', ''),
            ('Future', 'Future', 70.15, PRICE, ''),
            ('Strike of the put, bought', 'PutStrike', 65.0, PRICE, ''),
            ('Strike of the call, sold', 'CallStrike', 75.15, PRICE, 'costless to the cent; 75.00 would pay the producer'),
            ('Volatility of the put', 'PutVol', 0.36, SHARE, 'each strike has its own'),
            ('Volatility of the call', 'CallVol', 0.33, SHARE, ''),
            ('Volume, bbl', 'Volume', 100000, WHOLE, ''),
        ])
        self.collar = lambda result, price='Future': (
            f"_xll.COMBOPT({price},PutStrike,CallStrike,Rate,Rate,PutVol,CallVol,Days,5,{self.selector('COMBOPT', result)})")
        leg = lambda strike, vol, kind: (f"_xll.EURO_Forward(Future,{strike},Rate,{vol},Days,{kind},"
                                         f"{self.selector('EURO_Forward', 'premium')})")
        row = self.section(row + 1, 0, 'Worth', 3)
        return self.results(row, 0, [
            ('Put, $/bbl', '=' + leg('PutStrike', 'PutVol', 0), PREMIUM, '', 'Put'),
            ('Call, $/bbl', '=' + leg('CallStrike', 'CallVol', 1), PREMIUM, '', 'Call'),
            ('Put less call', '=Put-Call', PREMIUM, ''),
            ('Collar, $/bbl', '=' + self.collar('premium'), PREMIUM, 'the same at once: COMBOPT with OptType 5'),
            ('Collar, $', '=Volume*' + self.collar('premium'), MONEY, ''),
            ('Delta, bbl', '=Volume*' + self.collar('delta'), WHOLE, 'negative: the collar is short the price'),
            ('Gamma, bbl for 1 $', '=Volume*' + self.collar('gamma'), WHOLE, ''),
            ('Vega, $ a point', f"=Volume*{self.collar('vega')}/100", MONEY, 'both volatilities'),
            ('Theta, $ a day', f"=Volume*{self.collar('theta')}/365.25", MONEY, ''),
        ])

    def fill_payoff(self, row):
        self.head(row, 10, ['Future', 'with it, today', 'at expiry', 'delta, bbl'])
        self.rows = row + 1, row + 21
        for i in range(21):
            place = row + 1 + i
            price = at(place, 10)
            self.sheet.put(place, 10, float(50 + 2 * i), 'input', '0', align='left')
            self.sheet.put(place, 11, f"={price}+{self.collar('premium', price)}", 'live', PRICE)
            self.sheet.put(place, 12, f'=MIN(CallStrike,MAX(PutStrike,{price}))', 'plain', PRICE)
            self.sheet.put(place, 13, f"=Volume*{self.collar('delta', price)}", 'live', WHOLE)

    def fill_option(self, row):
        sheet = self.sheet
        row = self.section(row, 4, 'An option on a collar: a cap bought, a floor sold', 5)
        row = self.inputs(row, 4, [
            ('Decided on', 'Decision', datetime.date(2027, 6, 15), 'd mmm yyyy', ''),
            ('Days', 'OptionDays', '=Decision-Today', '0', ''),
            ('Cap', 'Cap', 76.0, PRICE, ''),
            ('Floor', 'Floor', 68.0, PRICE, ''),
            ('Volatility of the swap', 'SwapVol', 0.27, SHARE, 'until decided'),
            ('Floor over cap', 'VolSpread', 0.02, SHARE, 'volatility'),
            ('Steps', 'Steps', 100, '0', 'kept; not used'),
            ('Volume a month, bbl', 'MonthVolume', 10000, WHOLE, ''),
        ])
        row = self.head(row + 1, 4, ['Month', 'expiry', 'days', 'forward', 'volatility'])
        first = row
        for i, (forward, volatility) in enumerate(((72.10, 0.30), (71.90, 0.295), (71.70, 0.29))):
            expiry = datetime.date(2027, 7 + i, 20)
            sheet.put(row, 4, expiry.replace(day=1), 'plain', 'mmm yyyy', align='left')
            sheet.put(row, 5, expiry, 'input', 'd mmm yyyy')
            sheet.put(row, 6, f'={at(row, 5)}-Today', 'plain', '0')
            sheet.put(row, 7, forward, 'input', PRICE)
            sheet.put(row, 8, volatility, 'input', SHARE)
            row += 1
        area = lambda column: f'{at(first, column)}:{at(row - 1, column)}'
        sheet.name('Forwards', first, 7, row - 1, 7)
        sheet.name('Vols', first, 8, row - 1, 8)
        sheet.name('ExpDays', first, 6, row - 1, 6)
        self.head(row + 1, 4, ['Month', 'delta', 'bbl to buy', 'rate', ''])
        rates = row + 2
        for i in range(3):
            sheet.put(rates + i, 4, f'={at(first + i, 4)}', 'plain', 'mmm yyyy', align='left')
            sheet.put(rates + i, 7, '=Rate', 'plain', SHARE)
        sheet.name('Rates', rates, 7, rates + 2, 7)
        given = 'Forwards,Rates,Vols,ExpDays,SwapVol,VolSpread,OptionDays,Cap,Floor,Rate,Steps'
        call = lambda selector: f'_xll.XCOL2({given},{selector})'
        for i in range(3):
            sheet.put(rates + i, 5, f"={call(self.selector('XCOL2', 'delta_period') + i)}", 'live', '0.0000')
            sheet.put(rates + i, 6, f'=MonthVolume*{at(rates + i, 5)}', 'plain', WHOLE)
        row = self.section(rates + 4, 4, 'Worth', 5)
        row = self.results(row, 4, [
            ('Premium, $/bbl', f"={call(self.selector('XCOL2', 'premium'))}", PREMIUM, ''),
            ('Premium, $', f"=3*MonthVolume*{call(self.selector('XCOL2', 'premium'))}", MONEY, ''),
            ('Vega, $ a point', f"=3*MonthVolume*{call(self.selector('XCOL2', 'vega'))}/100", MONEY, ''),
        ])
        chart(sheet, row + 1, 4, 'Delta by month of the option on a collar', axis('', 'mmm yy'), axis('bbl', WHOLE, min=0),
              [Series('delta', 4, 6, (rates, rates + 2))], 'column', size=(480, 300))


class Swaption(Desk):
    tab = 'Swaption'
    title = 'A swaption on crude'
    about = ('the right to enter a swap over a quarter at a fixed price; delta by month; payer and receiver against '
             'the fixed price')
    widths = (30, 15, 15, 13, 13, 13, 13, 13, 13, 3, 13, 14, 14, 14)

    def fill(self):
        sheet = self.sheet
        row = self.section(3, 0, 'Deal', 3)
        row = self.inputs(row, 0, [
            ('Decided on', 'Decision', datetime.date(2027, 6, 15), DATE, ''),
            ('Years', 'Expiry', '=(Decision-Today)/365.25', YEARS, ''),
            ('Fixed price', 'Strike', 73.0, PRICE, ''),
            ('Volatility of the swap', 'SwapVol', 0.29, SHARE, ''),
            ('Rate, semi-annual', 'SemiRate', '=2*(EXP(Rate/2)-1)', '0.0000%', 'from the continuous one'),
        ])
        row = self.head(row + 1, 0, ['Month', 'last fixing', 'paid', 'years', 'rate', 'forward', 'volume, bbl', 'delta',
                                     'bbl to sell'])
        first, last = row, row + 2
        for i, forward in enumerate((72.10, 71.90, 71.70)):
            sheet.put(row, 0, datetime.date(2027, 7 + i, 1), 'input', 'mmmm yyyy', align='left')
            sheet.put(row, 1, f'=WORKDAY(EOMONTH({at(row, 0)},0)+1,-1,Holidays)', 'plain', DATE)
            sheet.put(row, 2, f'=WORKDAY(EOMONTH({at(row, 0)},0),5,Holidays)', 'plain', DATE)
            sheet.put(row, 3, f'=({at(row, 2)}-Today)/365.25', 'plain', YEARS)
            sheet.put(row, 4, '=SemiRate', 'plain', '0.0000%')
            sheet.put(row, 5, forward, 'input', PRICE)
            sheet.put(row, 6, 10000, 'input', WHOLE)
            row += 1
        for column, name in ((3, 'Times'), (4, 'Rates'), (5, 'Forwards'), (6, 'Volumes')):
            sheet.name(name, first, column, last, column)
        call = lambda result, month=1, kind=1, strike='Strike': (
            f'_xll.SWAPTION(Forwards,Volumes,Times,Rates,SwapVol,{strike},SemiRate,Expiry,{kind},'
            f"{self.selector('SWAPTION', result)},{month})")
        for i in range(3):
            sheet.put(first + i, 7, '=' + call('delta', i + 1), 'live', '0.0000')
            sheet.put(first + i, 8, f'={at(first + i, 7)}*{at(first + i, 6)}', 'plain', WHOLE)
        sheet.put(row, 0, 'in all', 'total')
        sheet.row(row, 1, [''] * 5, 'total')
        sheet.put(row, 6, f'=SUM(Volumes)', 'total', WHOLE)
        sheet.put(row, 7, '', 'total')
        sheet.put(row, 8, f'=SUM({at(first, 8)}:{at(last, 8)})', 'total', WHOLE)
        sheet.name('Total', row, 6)
        row = self.section(row + 2, 0, 'Worth', 3)
        row = self.results(row, 0, [
            ('Average forward, undiscounted', '=SUMPRODUCT(Forwards,Volumes)/Total', PRICE, ''),
            ('Payer, $/bbl', '=' + call('premium'), PREMIUM, 'paying fixed is a call'),
            ('Payer, $', '=Total*' + call('premium'), MONEY, ''),
            ('Receiver, $/bbl', '=' + call('premium', kind=0), PREMIUM, ''),
            ('Receiver, $', '=Total*' + call('premium', kind=0), MONEY, ''),
            ('Vega, $ a point', f"=Total*{call('vega')}/100", MONEY, ''),
            ('Theta, $ a day', f"=Total*{call('theta')}/365.25", MONEY, ''),
            ('Rho, $ a basis point', f"=Total*{call('carry_rho')}/10000", '#,##0.00', ''),
        ])
        self.head(3, 10, ['Fixed price', 'payer, $', 'receiver, $', 'difference, $'])
        rows = 4, 24
        for i in range(21):
            place = 4 + i
            sheet.put(place, 10, float(62 + i), 'input', '0', align='left')
            for k, kind in enumerate((1, 0)):
                sheet.put(place, 11 + k, '=Total*' + call('premium', kind=kind, strike=at(place, 10)), 'live', MONEY)
            sheet.put(place, 13, f'={at(place, 11)}-{at(place, 12)}', 'plain', MONEY)
        chart(sheet, row + 1, 0, 'Payer and receiver', axis('fixed price, $/bbl', '0', min=62, max=82), axis('$', MONEY),
              [Series('payer', 10, 11, rows), Series('receiver', 10, 12, rows)], size=(560, 300))
        chart(sheet, row + 1, 0, 'Delta by month of the payer', axis('', 'mmm yy'), axis('bbl', WHOLE, min=0),
              [Series('delta', 0, 8, (first, last))], 'column', size=(420, 300), shift=570)
