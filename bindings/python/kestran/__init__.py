"""KESTRAN: functions that price commodity, energy, foreign-exchange and interest-rate options.

    >>> import kestran
    >>> kestran.EURO(Price=100, Strike=95, IntRt=0.05, Yield=0.02, Vol=0.25, ExpDays=90, OptType=1)
    8.14303821049409

functions() lists them, help(kestran.EURO) describes one. Arguments are numbers or whatever NumPy takes for arrays
of numbers, and broadcast; a range is the last dimension of an array, a square block the last two. A pandas Series
gives a Series with its index, arrays of Dask and xarray give the like.

RetType is a number or the name of a result, 0 when left out. results="all", or a list of names, gives a dict of
results, or a DataFrame where a Series went in. out= and where= are those of any NumPy ufunc.

A call of numbers alone that is refused raises ValueError with the argument and the reason. In arrays the rows that
are refused are NaN, and error_code() tells their codes; errors="raise" raises, errors="nan" does not. None, NaN and
masked values are empty cells; text and True are refused.
"""
from ._call import function_of as _function_of
from ._core import error_code, functions as _table, set_threads, threads, version as __version__


def functions():
    """The functions: what each prices, by name."""
    return {about["name"]: about["headline"] for about in _table}


for _about in _table:
    globals()[_about["name"]] = _function_of(_about)

__all__ = ["error_code", "functions", "set_threads", "threads", *functions()]
