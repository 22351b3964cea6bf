"""What callers give, as arrays of numbers in which NaN is an empty cell."""
import decimal
import numbers
import sys

import numpy as np

from . import _core

_PLAIN = {float, int, np.float64}


def is_lazy(value):
    """Whether it is an array of another library that brings its own way of calling ufuncs."""
    return hasattr(value, "__array_ufunc__") and not isinstance(value, (np.ndarray, np.generic)) and not _of_pandas(value)


def _of_pandas(value):
    pandas = sys.modules.get("pandas")
    return pandas is not None and isinstance(value, (pandas.Series, pandas.DataFrame, pandas.Index))


def _number(name, value):
    if isinstance(value, (bool, np.bool_, str, bytes)):
        return _core.no_number
    # Nothing, pandas.NA, pandas.NaT
    if value is None or value is np.ma.masked or type(value).__name__ in ("NAType", "NaTType"):
        return np.nan
    if isinstance(value, (numbers.Real, decimal.Decimal)):
        return float(value)
    if isinstance(value, (list, tuple, np.ndarray)):
        raise ValueError(f"{name} has rows of different lengths; fill the shorter ones up with NaN")
    return _core.no_number


def _of_objects(name, array):
    if set(map(type, array.flat)) <= _PLAIN:
        return array.astype(float)
    return np.array([_number(name, value) for value in array.flat], dtype=float).reshape(array.shape)


def numbers_of(name, value):
    """The array of numbers, or the number, that an argument is."""
    if type(value) is float:
        return value
    try:
        return float(value) if type(value) is int else _array_of(name, value)
    except OverflowError:
        raise ValueError(f"{name} has a number that is too large") from None


def _array_of(name, value):
    if is_lazy(value):
        if getattr(value, "dtype", np.dtype(float)).kind not in "fiu":
            raise TypeError(f"{name} is an array of {value.dtype}; numbers are wanted")
        return value
    if isinstance(value, np.ma.MaskedArray):
        return np.where(np.ma.getmaskarray(value), np.nan, numbers_of(name, value.data))
    if _of_pandas(value):
        kind = getattr(getattr(value, "dtype", None), "kind", "O")
        array = value.to_numpy(float, na_value=np.nan) if kind in "fiu" else value.to_numpy()
    else:
        # A list is read cell by cell: NumPy would make numbers of True and text of numbers beside text.
        array = np.asarray(value) if hasattr(value, "__array__") else np.asarray(value, dtype=object)
    if array.dtype.kind == "O":
        return _of_objects(name, array)
    if array.dtype.kind not in "fiu":
        return np.full(array.shape, _core.no_number)
    return array if array.dtype.itemsize <= 8 else array.astype(float)


def cells_of(name, value, dimensions):
    """The same for an argument that takes `dimensions` dimensions of each row."""
    array = numbers_of(name, value)
    if dimensions == 0 or is_lazy(array):
        return array
    if np.ndim(array) == 0:
        return np.reshape(array, (1,) * dimensions)
    if np.ndim(array) < dimensions:
        raise ValueError(f"{name} is a square block: an array of two dimensions, or more, is wanted")
    return array


def aligned(values, dimensions):
    """The values with the labels of pandas brought into one order, and those labels; None without any."""
    pandas = sys.modules.get("pandas")
    if pandas is None:
        return values, None
    # A Series for a range is one curve; a DataFrame has a curve in each row.
    labelled = [
        i for i, value in enumerate(values)
        if isinstance(value, pandas.Series if dimensions[i] == 0 else pandas.DataFrame)
    ]
    if not labelled:
        return values, None
    index = values[labelled[0]].index
    for i in labelled[1:]:
        if not index.equals(values[i].index):
            index = index.union(values[i].index, sort=False)
    values = list(values)
    for i in labelled:
        if not values[i].index.equals(index):
            values[i] = values[i].reindex(index)
    return values, index
