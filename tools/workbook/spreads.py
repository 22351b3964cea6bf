"""Deals on several prices: a power plant, a refinery's margin and a basket of products."""
import datetime

from .charts import Series, axis, chart
from .desk import CORRELATION, Desk, MONEY, PREMIUM, PRICE, SHARE, WHOLE, YEARS
from .sheet import DATE, at


class PlantAndCrack(Desk):
    tab = 'Plant and crack'
    title = 'A power plant and a crack spread'
    about = ("the right to run a plant, a contract on the heat rate itself, and a refinery's margin; what the correlation "
             'is worth')
    widths = (31, 15, 42, 3, 31, 15, 42)

    def fill(self):
        day = datetime.date
        row = self.section(3, 0, 'A plant: power less heat rate × gas less costs', 3)
        row = self.inputs(row, 0, [
            ('Decided on', 'Decision', day(2027, 6, 15), DATE, 'once, for all hours of the month'),
            ('Days', 'Days', '=Decision-Today', '0', ''),
            ('Power, $/MWh', 'Power', 48.50, PRICE, 'forward'),
            ('Gas, $/MMBtu', 'Gas', 4.10, PRICE, 'forward'),
            ('Heat rate, MMBtu/MWh', 'HeatRate', 7.5, PRICE, ''),
            ('Other costs, $/MWh', 'Costs', 2.0, PRICE, ''),
            ('Volatility of power', 'PowerVol', 0.55, SHARE, ''),
            ('Volatility of gas', 'GasVol', 0.45, SHARE, 'that of heat rate × gas, too'),
            ('Correlation', 'PlantCorrel', 0.6, CORRELATION, 'of their daily returns'),
            ('Capacity, MW', 'Capacity', 100, WHOLE, ''),
            ('Peak hours', 'Hours', 176, WHOLE, ''),
            ('MWh', 'Energy', '=Capacity*Hours', WHOLE, ''),
            ('Gas for 1 MWh, $', 'Fuel', '=HeatRate*Gas', PRICE, 'the second price of the spread'),
        ])
        plant = lambda result, correlation='PlantCorrel': (
            f"_xll.SPRDOPT(Power,Fuel,Costs,Rate,PowerVol,GasVol,{correlation},Days,1,{self.selector('SPRDOPT', result)})")
        row = self.section(row + 1, 0, 'Worth', 3)
        row = self.results(row, 0, [
            ('Premium, $/MWh', '=' + plant('premium'), PREMIUM, ''),
            ('Premium, $', '=Energy*' + plant('premium'), MONEY, ''),
            ('Were it run today, $', '=Energy*MAX(0,Power-Fuel-Costs)', MONEY, 'without the right to stop'),
            ('Power to sell, MWh', '=Energy*' + plant('delta_a'), WHOLE, ''),
            ('Gas, MMBtu', '=Energy*HeatRate*' + plant('delta_b'), WHOLE, 'negative: to buy'),
            ('Vega of power, $ a point', f"=Energy*{plant('vega_a')}/100", MONEY, ''),
            ('Vega of gas, $ a point', f"=Energy*{plant('vega_b')}/100", MONEY, ''),
            ('Correlation, $ for 0.01', f"=Energy*{plant('correlation')}/100", MONEY,
             'negative: less correlation is worth more'),
        ])
        row = self.section(row + 1, 0, 'Another contract: it pays the ratio above the heat rate', 3)
        heat = lambda result: (
            f"_xll.HEAT(Power,Gas,HeatRate,Rate,PowerVol,GasVol,PlantCorrel,Days,1,{self.selector('HEAT', result)})")
        row = self.results(row, 0, [
            ('Ratio today, MMBtu/MWh', '=Power/Gas', '0.000', ''),
            ('Premium, MMBtu/MWh', '=' + heat('premium'), PREMIUM, 'no money: the contract says how much a point pays'),
            ('Delta of power', '=' + heat('delta_a'), PREMIUM, ''),
            ('Delta of gas', '=' + heat('delta_b'), PREMIUM, ''),
        ])
        self.fill_crack()
        self.fill_correlations(row + 1, plant)

    def fill_crack(self):
        row = self.section(3, 4, 'A crack spread: product less crude', 3)
        row = self.inputs(row, 4, [
            ('Expiry', 'Expiry', datetime.date(2027, 2, 17), DATE, ''),
            ('Days', 'CrackDays', '=Expiry-Today', '0', ''),
            ('Product, $/gal', 'Product', 2.31, '0.0000', 'future'),
            ('Gallons to a barrel', 'Gallons', 42, WHOLE, ''),
            ('Crude, $/bbl', 'Crude', 70.15, PRICE, 'future'),
            ('Strike of the margin, $/bbl', 'Margin', 25.0, PRICE, ''),
            ('Volatility of the product', 'ProductVol', 0.36, SHARE, ''),
            ('Volatility of crude', 'CrudeVol', 0.34, SHARE, ''),
            ('Correlation', 'CrackCorrel', 0.92, CORRELATION, 'of their daily returns'),
            ('Lots of 1000 bbl', 'Lots', 50, WHOLE, ''),
            ('Product, $/bbl', 'Barrel', '=Product*Gallons', PRICE, ''),
            ('Margin today, $/bbl', 'Crack', '=Barrel-Crude', PRICE, ''),
            ('Volatility of the margin', 'CrackVol',
             '=SQRT((ProductVol*Barrel)^2+(CrudeVol*Crude)^2-2*CrackCorrel*ProductVol*Barrel*CrudeVol*Crude)', PRICE,
             '$/bbl per root of a year'),
        ])
        crack = lambda result: (f"_xll.SPRDOPT(Barrel,Crude,Margin,Rate,ProductVol,CrudeVol,CrackCorrel,CrackDays,1,"
                                f"{self.selector('SPRDOPT', result)})")
        row = self.section(row + 1, 4, 'Worth', 3)
        self.results(row, 4, [
            ('Premium, $/bbl', '=' + crack('premium'), PREMIUM, 'both prices lognormal'),
            ('Premium, $/bbl, normal',
             f"=_xll.WSPRD(Crack,Margin,Rate,CrackVol,CrackDays,1,{self.selector('WSPRD', 'premium')})", PREMIUM,
             'the margin itself normal, with the volatility above'),
            ('Premium, $', '=Lots*1000*' + crack('premium'), MONEY, ''),
            ('Product to sell, lots', '=Lots*' + crack('delta_a'), '0.0', 'of 42,000 gallons'),
            ('Crude, lots', '=Lots*' + crack('delta_b'), '0.0', 'negative: to buy'),
            ('Vega of product, $ a point', f"=Lots*1000*{crack('vega_a')}/100", MONEY, ''),
            ('Vega of crude, $ a point', f"=Lots*1000*{crack('vega_b')}/100", MONEY, ''),
            ('Theta, $ a day', f"=Lots*1000*{crack('theta')}/365.25", MONEY, ''),
        ])

    def fill_correlations(self, row, plant):
        sheet = self.sheet
        first = 29
        self.head(first - 1, 4, ['Correlation', 'plant, $', ''])
        rows = first, first + 19
        for i in range(20):
            place = first + i
            sheet.put(place, 4, round(-0.9 + 0.095 * i, 3), 'input', '0.000', align='left')
            sheet.put(place, 5, f"=Energy*{plant('premium', at(place, 4))}", 'live', MONEY)
        chart(sheet, row, 0, 'What the correlation is worth to the plant',
              axis('correlation of power and gas', '0.0', min=-1, max=1),
              axis('$', MONEY), [Series('premium', 4, 5, rows)], size=(590, 290))


class Basket(Desk):
    tab = 'Basket'
    title = 'A basket of products'
    about = 'a call on a formula price of three products: the volatility of the basket first, the option on its forward after'
    widths = (26, 14, 14, 14, 14, 14, 14, 3, 14, 14, 14, 14)

    def fill(self):
        sheet = self.sheet
        row = self.head(3, 0, ['Product', 'forward', 'volatility', 'drift', 'weight', 'in the basket', 'share'])
        names = ('Gasoil, $/t', 'Crude, $/bbl', 'Fuel oil, $/t')
        parts = ((690.0, 0.31, 0.008), (73.40, 0.32, 0.4), (430.0, 0.33, 0.006))
        first, last = row, row + len(parts) - 1
        for i, (name, (forward, volatility, weight)) in enumerate(zip(names, parts)):
            sheet.put(row, 0, name)
            sheet.put(row, 1, forward, 'input', PRICE)
            sheet.put(row, 2, volatility, 'input', SHARE)
            sheet.put(row, 3, 0.0, 'input', SHARE)
            sheet.put(row, 4, weight, 'input', '0.000')
            sheet.put(row, 5, f'={at(row, 1)}*{at(row, 4)}', 'plain', '0.0000')
            sheet.put(row, 6, f'={at(row, 5)}/Formula', 'plain', '0.0%')
            row += 1
        sheet.put(row, 0, 'formula price, $/bbl', 'total')
        sheet.row(row, 1, ['', '', '', ''], 'total')
        sheet.put(row, 5, f'=SUMPRODUCT(Forwards,Weights)', 'total', '0.0000')
        sheet.put(row, 6, f'=SUM({at(first, 6)}:{at(last, 6)})', 'total', '0.0%')
        sheet.name('Formula', row, 5)
        for column, name in ((1, 'Forwards'), (2, 'Vols'), (3, 'Drifts'), (4, 'Weights')):
            sheet.name(name, first, column, last, column)
        row = self.head(row + 2, 0, ['Correlations', 'gasoil', 'crude', 'fuel oil'])
        matrix = ((1.0, 0.9, 0.8), (0.9, 1.0, 0.85), (0.8, 0.85, 1.0))
        for i in range(3):
            sheet.put(row + i, 0, names[i].split(',')[0])
            for k in range(3):
                # What is typed stands above the diagonal.
                content = matrix[i][k] if i < k else 1.0 if i == k else f'={at(row + k, 1 + i)}'
                sheet.put(row + i, 1 + k, content, 'input' if i < k else 'plain', '0.00')
        sheet.name('Correlations', row, 1, row + 2, 3)
        row = self.section(row + 4, 0, 'Deal', 3)
        row = self.inputs(row, 0, [
            ('Expiry', 'Expiry', datetime.date(2027, 6, 15), DATE, ''),
            ('Days', 'Days', '=Expiry-Today', '0', ''),
            ('Years', 'Years', '=Days/365.25', YEARS, ''),
            ('Strike, $/bbl', 'Strike', 38.0, PRICE, ''),
            ('Volume, bbl', 'Volume', 100000, WHOLE, ''),
        ])
        forward = lambda result, price='Formula': (
            f"_xll.EURO_Forward({price},Strike,Rate,BasketVol,Days,1,{self.selector('EURO_Forward', result)})")
        row = self.section(row + 1, 0, 'Worth', 3)
        row = self.results(row, 0, [
            ('Volatility of the basket', '=_xll.BASVOL(Forwards,Vols,Drifts,Weights,Correlations,Years)', SHARE,
             'its parts do not move as one', 'BasketVol'),
            ('Premium, $/bbl', '=' + forward('premium'), PREMIUM, ''),
            ('Premium, $', '=Volume*' + forward('premium'), MONEY, ''),
            ('Delta of the formula price', '=' + forward('delta'), PREMIUM, '', 'Delta'),
            ('Gasoil to sell, t', f'=Volume*Delta*{at(first, 4)}', '#,##0.0', 'delta × weight'),
            ('Crude to sell, bbl', f'=Volume*Delta*{at(first + 1, 4)}', MONEY, ''),
            ('Fuel oil to sell, t', f'=Volume*Delta*{at(first + 2, 4)}', '#,##0.0', ''),
            ('Vega, $ a point', f"=Volume*{forward('vega')}/100", MONEY, 'of the volatility of the basket'),
            ('Theta, $ a day', f"=Volume*{forward('theta')}/365.25", MONEY, ''),
        ])
        self.head(3, 8, ['Formula price', 'value today, $', 'at expiry, $', 'delta, bbl'])
        rows = 4, 28
        for i in range(25):
            place = 4 + i
            sheet.put(place, 8, float(26 + i), 'input', '0', align='left')
            sheet.put(place, 9, f"=Volume*{forward('premium', at(place, 8))}", 'live', MONEY)
            sheet.put(place, 10, f'=Volume*MAX(0,{at(place, 8)}-Strike)', 'plain', MONEY)
            sheet.put(place, 11, f"=Volume*{forward('delta', at(place, 8))}", 'live', WHOLE)
        chart(sheet, row + 1, 0, 'Value today and at expiry', axis('formula price, $/bbl', '0', min=26, max=50),
              axis('$', MONEY),
              [Series('today', 8, 9, rows), Series('at expiry', 8, 10, rows, 'dash')], size=(560, 290))
        chart(sheet, row + 1, 0, 'What the basket is made of', axis(''), axis('share of the formula price', '0%', min=0),
              [Series('share', 0, 6, (first, last))], 'column', size=(430, 290), shift=570)
