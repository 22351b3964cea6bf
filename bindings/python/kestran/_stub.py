"""Writes what type checkers read: python3 -m kestran._stub FILE."""
import sys

from . import _core

_HEAD = '''# Made from the catalogue of functions.
from typing import Any, Optional, Protocol, Sequence, Union, overload

__version__: str

class _Array(Protocol):
    def __array__(self, *arguments: Any, **named: Any) -> Any: ...

_Numbers = Union[float, _Array, Sequence[Optional[float]]]
_Ranges = Union[_Numbers, Sequence[Sequence[Optional[float]]]]
_Results = Union[_Numbers, str, Sequence[str]]
_Names = Union[str, Sequence[str], None]

def functions() -> dict[str, str]: ...
def set_threads(n: int, /) -> None: ...
def threads() -> int: ...
error_code: Any

class _Function:
    __name__: str
    arguments: tuple[str, ...]
    dimensions: tuple[int, ...]
    results: dict[str, int]
    example: tuple[Any, ...]
    ufunc: Any
'''
_OPTIONS = "out: Any = ..., where: Any = ..., results: _Names = ..., errors: Optional[str] = ..."


def _parameters(about, by_keyword_after_result):
    selector = about["result_argument"]
    parameters = []
    for i, (name, dimensions) in enumerate(zip(about["arguments"], about["dimensions"])):
        if i == selector:
            if by_keyword_after_result:
                parameters.append("*")
            optional = by_keyword_after_result or i == len(about["arguments"]) - 1
            parameters.append(f"{name}: _Results" + (" = ..." if optional else ""))
        else:
            parameters.append(f"{name}: {'_Ranges' if dimensions else '_Numbers'}")
    if not by_keyword_after_result:
        parameters.append("*")
    return ", ".join(parameters + [_OPTIONS])


def text():
    """The whole file. Where arguments follow RetType, it can be left out when they are named."""
    lines = [_HEAD]
    for about in _core.functions:
        lines.append(f"\nclass _{about['name']}(_Function):\n")
        several = 0 <= about["result_argument"] < len(about["arguments"]) - 1
        for keywords in (False, True) if several else (False,):
            lines.append("    @overload\n" if several else "")
            lines.append(f"    def __call__(self, {_parameters(about, keywords)}) -> Any:\n")
            lines.append(f'        """{about["description"]}"""\n')
        lines.append(f"{about['name']}: _{about['name']}\n")
    return "".join(lines)


if __name__ == "__main__":
    with open(sys.argv[1], "w", encoding="utf-8") as file:
        file.write(text())
