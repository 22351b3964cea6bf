"""python -m workbook COMMAND OUT.xlsx"""
import sys

from xlsxwriter.exceptions import FileCreateError

from .averages import CrudeApo, GasStrip
from .command import Command
from .collars import Collar, Swaption
from .contents import Contents
from .currency import FxBarrier
from .european import Greeks, Grid, Smile
from .families import FamilySheet
from .positions import BookOfDeals, BookTotals
from .sheet import Book
from .spreads import Basket, PlantAndCrack
from .today import Today

DESKS = [Today, Greeks, Grid, Smile, CrudeApo, GasStrip, PlantAndCrack, Collar, Swaption, FxBarrier, Basket, BookOfDeals,
         BookTotals]


def main(command_path, path):
    command = Command(command_path)
    book = Book(path, command)
    contents = Contents(book)
    desks = [desk(book) for desk in DESKS]
    families = [FamilySheet(book, family) for family in command.catalogue['families']]
    contents.fill(desks, families)
    try:
        book.close()
    except FileCreateError as error:
        sys.exit(f'make-workbook: {error}')


main(*sys.argv[1:])
