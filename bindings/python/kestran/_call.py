"""A function of the catalogue as a function of Python."""
import inspect
import sys

import numpy as np

from . import _core
from ._arguments import aligned, cells_of, is_lazy

_LEFT_OUT = object()


class _Caller:
    """What one function takes, and the way of a call."""

    def __init__(self, about):
        self.name = about["name"]
        self.arguments = tuple(about["arguments"])
        self.dimensions = tuple(about["dimensions"])
        self.selector = about["result_argument"]
        self.results = dict(about["results"])
        self.ufunc = about["ufunc"]
        self.places = {argument.lower(): i for i, argument in enumerate(self.arguments)}

    def bind(self, positional, named):
        """All arguments in worksheet order."""
        if len(positional) > len(self.arguments):
            raise TypeError(f"{self.name} takes {len(self.arguments)} arguments, {len(positional)} given")
        values = list(positional) + [_LEFT_OUT] * (len(self.arguments) - len(positional))
        for key, value in named.items():
            place = self.places.get(key.lower())
            if place is None:
                raise TypeError(f"{self.name} has no argument {key}; it takes {', '.join(self.arguments)}")
            if values[place] is not _LEFT_OUT:
                raise TypeError(f"{self.name}: {self.arguments[place]} is given twice")
            values[place] = value
        return values

    def complete(self, values):
        missing = [name for name, value in zip(self.arguments, values) if value is _LEFT_OUT]
        if missing:
            raise TypeError(f"{self.name}: {', '.join(missing)} not given; None is an empty cell")

    def selected(self, value):
        """RetType with names of results made numbers; a name among several that is none stays text."""
        if isinstance(value, str):
            return self.selector_of(value)
        if isinstance(value, (list, tuple)):
            return [self.results.get(one.lower(), one) if isinstance(one, str) else one for one in value]
        if getattr(getattr(value, "dtype", None), "kind", "") in ("U", "O"):
            numbers = np.array(self.selected(list(np.ravel(value))), dtype=object).reshape(np.shape(value))
            return type(value)(numbers, index=value.index) if hasattr(value, "index") else numbers
        return value

    def selector_of(self, name):
        try:
            return self.results[name.lower()]
        except KeyError:
            raise ValueError(f"{self.name} has no result {name}; it has {', '.join(self.results)}") from None

    def call(self, values, out, where):
        try:
            return self.call_ufunc(values, out, where)
        except ValueError as error:
            shaped = [f"{name} {np.shape(value)}" for name, value in zip((*self.arguments, "out"), (*values, out))
                      if np.ndim(value) > 0]
            raise ValueError(f"{self.name}: the shapes do not fit together: {', '.join(shaped)}") from error

    def call_ufunc(self, values, out, where):
        options = {} if out is None else {"out": out}
        if where is True:
            return self.ufunc(*values, **options)
        if not any(self.dimensions):
            return self.ufunc(*values, where=where, **options)
        # Generalised ufuncs know no where.
        result = self.ufunc(*values)
        chosen = np.empty_like(result) if out is None else out
        np.copyto(chosen, result, where=where)
        return chosen

    def check(self, result, values, labels):
        """Raises for the first row that is refused."""
        refused = np.asarray(_core.error_code(np.asarray(result))) >= 0
        if not refused.any():
            return
        row = np.unravel_index(np.argmax(refused), refused.shape)
        if any(is_lazy(value) for value in values):
            reason = f"code {_core.error_code(np.asarray(result)[row])}"
        else:
            cells = [self.cells_at(value, d, row, refused.shape) for value, d in zip(values, self.dimensions)]
            reason = _core.refusal(self.name, tuple(cells))
            if not reason:
                raise MemoryError(self.name)
        if refused.ndim == 0:
            raise ValueError(f"{self.name}: {reason}")
        place = labels[row[0]] if labels is not None else row[0] if len(row) == 1 else tuple(map(int, row))
        count = f"{np.count_nonzero(refused)} of {refused.size} rows refused"
        raise ValueError(f"{self.name}: {count}, the first is row {place}: {reason}")

    @staticmethod
    def cells_at(value, dimensions, row, shape):
        array = np.asarray(value, dtype=float)
        return np.broadcast_to(array, shape + array.shape[array.ndim - dimensions:])[row]

    def finished(self, result, values, labels, errors):
        """The result as the caller gets it: checked, and with the labels that went in."""
        if errors == "raise" or (errors is None and isinstance(result, float) and result != result):
            self.check(result, values, labels)
        if labels is not None and np.shape(result) == (len(labels),):
            return sys.modules["pandas"].Series(result, index=labels, name=self.name)
        return result

    def several(self, values, names, labels, errors):
        """A result for each name, from the same arguments."""
        names = list(self.results) if isinstance(names, str) and names == "all" else names
        if isinstance(names, str):
            raise ValueError(f'results is "all" or a list of names, not "{names}"')
        found = {}
        for name in names:
            selector = self.selector_of(name)
            if self.selector >= 0:
                values[self.selector] = float(selector)
            found[name.lower()] = self.finished(self.call(values, None, True), values, labels, errors)
        if labels is not None and found and hasattr(next(iter(found.values())), "to_frame"):
            return sys.modules["pandas"].DataFrame(found)
        return found

    def __call__(self, positional, named, out, where, results, errors):
        if errors not in (None, "raise", "nan"):
            raise ValueError(f'errors is "raise" or "nan", not {errors!r}')
        values = self.bind(positional, named)
        if self.selector >= 0:
            if results is not None and values[self.selector] is not _LEFT_OUT:
                raise TypeError(f"{self.name}: {self.arguments[self.selector]} and results are given both")
            if values[self.selector] is _LEFT_OUT:
                values[self.selector] = 0.0
            values[self.selector] = self.selected(values[self.selector])
        self.complete(values)
        values, labels = aligned(values, self.dimensions)
        values = list(map(cells_of, self.arguments, values, self.dimensions))
        if results is None:
            result = self.call(values, out, where)
            return self.finished(result, values, None if out is not None else labels, errors)
        if out is not None or where is not True:
            raise TypeError(f"{self.name}: results goes without out and where")
        return self.several(values, results, labels, errors)


def _signature(arguments, selector):
    kind = inspect.Parameter
    parameters = [kind(name, kind.POSITIONAL_OR_KEYWORD) for name in arguments]
    if 0 <= selector == len(arguments) - 1:
        parameters[selector] = parameters[selector].replace(default=0)
    for name, default in (("out", None), ("where", True), ("results", None), ("errors", None)):
        parameters.append(kind(name, kind.KEYWORD_ONLY, default=default))
    return inspect.Signature(parameters)


def _in_python(name, arguments, example):
    def shown(value):
        return f"[{', '.join(map(shown, value))}]" if isinstance(value, list) else repr(value).removesuffix(".0")

    return f"kestran.{name}({', '.join(f'{argument}={shown(value)}' for argument, value in zip(arguments, example))})"


def function_of(about):
    """The function, which pickles by its name."""
    caller = _Caller(about)

    def function(*arguments, out=None, where=True, results=None, errors=None, **named):
        return caller(arguments, named, out, where, results, errors)

    function.__name__ = function.__qualname__ = caller.name
    function.__module__ = "kestran"
    function.__signature__ = _signature(caller.arguments, caller.selector)
    example = _in_python(caller.name, caller.arguments, about["example"])
    function.__doc__ = f"{about['description']}\nIn Python\n  {example}\n"
    function.ufunc = caller.ufunc
    function.arguments = caller.arguments
    function.dimensions = caller.dimensions
    function.results = caller.results
    function.example = tuple(about["example"])
    return function
