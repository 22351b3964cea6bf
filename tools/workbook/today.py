"""Today, the rate and the holidays, which all deals share."""
import datetime

from .desk import Desk, SHARE, YEARS
from .sheet import DATE

HOLIDAYS = [(2026, 12, 25), (2027, 1, 1), (2027, 1, 18), (2027, 2, 15), (2027, 3, 26), (2027, 5, 31), (2027, 7, 5),
            (2027, 9, 6)]


class Today(Desk):
    tab = 'Today'
    title = 'Today, rate and holidays'
    about = 'what all deals share: the date they are priced on, the rate and the holidays; days from dates'
    widths = (27, 18, 60)

    def fill(self):
        sheet = self.sheet
        row = self.section(3, 0, 'Priced on', 3)
        sheet.put(row, 0, 'Today')
        sheet.put(row, 1, datetime.date(2026, 12, 17), 'input')
        sheet.put(row, 2, 'after the settlement; typed, so that the numbers stay', 'unit')
        self.book.name('Today', self.tab, row, 1)
        sheet.put(row + 1, 0, 'Rate')
        sheet.put(row + 1, 1, 0.041, 'input', SHARE)
        sheet.put(row + 1, 2, 'per year, continuous', 'unit')
        self.book.name('Rate', self.tab, row + 1, 1)
        row = self.section(row + 3, 0, 'Holidays', 3)
        for i, day in enumerate(HOLIDAYS):
            sheet.put(row + i, 1, datetime.date(*day), 'input')
        self.book.name('Holidays', self.tab, row, 1, row + len(HOLIDAYS) - 1, 1)
        row = self.section(row + len(HOLIDAYS) + 1, 0, 'From dates to arguments', 3)
        row = self.inputs(row, 0, [
            ('Expiry', 'Expiry', datetime.date(2027, 2, 17), DATE, 'as in the term sheet'),
            ('Days', 'Days', '=Expiry-Today', '0', 'what ExpDays wants: the dates subtracted, weekends and holidays too'),
            ('Years', None, '=Days/365.25', YEARS, 'what arguments in years want'),
            ('First fixing', 'First', datetime.date(2027, 1, 4), DATE, ''),
            ('Last fixing', 'Last', datetime.date(2027, 1, 29), DATE, ''),
            ('Fixings', None, '=NETWORKDAYS(First,Last,Holidays)', '0', 'business days, the first and the last included'),
            ('Payment', None, '=WORKDAY(Last,5,Holidays)', DATE, 'the fifth business day after'),
        ])
