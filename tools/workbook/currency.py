"""A currency option with a barrier."""
import datetime

from .charts import Series, axis, chart
from .desk import Desk, MONEY, SHARE, WHOLE
from .sheet import DATE, at
from .styles import AMBER, BLUE, GREY

RATE = '0.0000'


class FxBarrier(Desk):
    tab = 'FX barrier'
    title = 'A currency option with a barrier'
    about = 'a call on euros that dies above a barrier, watched all the time and daily, beside the plain one'
    widths = (30, 15, 48, 3, 13, 14, 14, 14, 14)

    def fill(self):
        sheet = self.sheet
        row = self.section(3, 0, 'Deal', 3)
        row = self.inputs(row, 0, [
            ('Expiry', 'Expiry', datetime.date(2027, 6, 15), DATE, ''),
            ('Days', 'Days', '=Expiry-Today', '0', ''),
            ('Spot, $ for 1 €', 'Spot', 1.0850, RATE, ''),
            ('Strike', 'Strike', 1.10, RATE, ''),
            ('Rate of the euro', 'EuroRate', 0.023, SHARE, 'per year, continuous'),
            ('Volatility', 'Vol', 0.08, SHARE, ''),
            ('Barrier', 'Barrier', 1.17, RATE, 'above the spot: up and out'),
            ('Rebate', 'Rebate', 0.0, RATE, ''),
            ('Observations', 'Observations', '=NETWORKDAYS(Today+1,Expiry,Holidays)', '0',
             'one at the close of each business day'),
            ('Notional, €', 'Notional', 10000000, WHOLE, ''),
        ])
        row = self.section(row + 1, 0, 'The barrier for daily observations', 3)
        row = self.results(row, 0, [
            ('Moved by', '=EXP(0.5826*Vol*SQRT(Days/365.25/Observations))', '0.000000',
             'away from the spot: an exponent above 0', 'Move'),
            ('Barrier to price with', '=Barrier*Move', RATE, '', 'DailyBarrier'),
        ])
        barrier = lambda level, knock, result, spot='Spot': (
            f"_xll.BRRR({spot},Strike,Rate,EuroRate,Vol,Days,{level},Rebate,1,{knock},{self.selector('BRRR', result)})")
        plain = lambda result, spot='Spot': (
            f"_xll.FOREXCH({spot},Strike,Rate,EuroRate,Vol,Days,1,{self.selector('FOREXCH', result)})")
        row = self.section(row + 1, 0, 'Worth, $ for 1 €', 3)
        row = self.results(row, 0, [
            ('Plain call', '=' + plain('premium'), '0.000000', ''),
            ('Knock-out, watched all the time', '=' + barrier('Barrier', 0, 'premium'), '0.000000', '', 'Out'),
            ('Knock-out, watched daily', '=' + barrier('DailyBarrier', 0, 'premium'), '0.000000', '', 'DailyOut'),
            ('Knock-in, watched all the time', '=' + barrier('Barrier', 1, 'premium'), '0.000000', '', 'In'),
            ('Out and in together', '=Out+In', '0.000000', 'nearly the plain call: see How far to trust it of BRRR'),
        ])
        row = self.section(row + 1, 0, 'Knock-out, watched daily', 3)
        row = self.results(row, 0, [
            ('Premium, $', '=Notional*DailyOut', MONEY, ''),
            ('Delta, €', '=Notional*' + barrier('DailyBarrier', 0, 'delta'), WHOLE, 'to sell'),
            ('Gamma, € for 0.01 of spot', f"=Notional*{barrier('DailyBarrier', 0, 'gamma')}/100", WHOLE, ''),
            ('Vega, $ a point', f"=Notional*{barrier('DailyBarrier', 0, 'vega')}/100", MONEY,
             'below 0: more volatility, more knocked out'),
            ('Theta, $ a day', f"=Notional*{barrier('DailyBarrier', 0, 'theta')}/365.25", MONEY, ''),
        ])
        self.head(3, 4, ['Spot', 'plain, $', 'knock-out, $', 'knock-in, $', 'delta out, €'])
        rows = 4, 32
        for i in range(29):
            place = 4 + i
            spot = at(place, 4)
            sheet.put(place, 4, round(1.00 + 0.006 * i, 3), 'input', '0.000', align='left')
            for k, call in enumerate((plain('premium', spot), barrier('Barrier', 0, 'premium', spot),
                                      barrier('Barrier', 1, 'premium', spot),
                                      barrier('Barrier', 0, 'delta', spot))):
                sheet.put(place, 5 + k, '=Notional*' + call, 'live', MONEY if k < 3 else WHOLE)
        sheet.put(33, 4, 'Below the barrier only: the function does not know that it was touched.', 'note')
        chart(sheet, 35, 0, 'Plain, knocked out and knocked in', axis('spot, $ for 1 €', '0.00', min=1.0, max=1.18),
              axis('$', MONEY),
              [Series('plain', 4, 5, rows, 'dash', color=GREY), Series('knock-out', 4, 6, rows, color=BLUE),
               Series('knock-in', 4, 7, rows, color=AMBER)], size=(560, 300))
        chart(sheet, 35, 0, 'Delta of the knock-out', axis('spot, $ for 1 €', '0.00', min=1.0, max=1.18),
              axis('€', WHOLE),
              [Series('delta', 4, 8, rows)], size=(500, 300), shift=570)
