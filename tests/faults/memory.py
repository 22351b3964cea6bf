"""Memory that runs out at every place in turn: the command, the C interface, the package for Python.

Run with failing_memory loaded; arguments: that library, the command, libkestran.so.
"""
import ctypes
import importlib.machinery
import importlib.util
import json
import os
import subprocess
import sys

failing, command, library = sys.argv[1:]
fail_allocation = ctypes.CDLL(failing).fail_allocation
fail_allocation.restype, fail_allocation.argtypes = ctypes.c_long, [ctypes.c_long, ctypes.c_int]


def run(place, options, text):
    """The command with that failure, and how many allocations it made."""
    ours, theirs = os.pipe()
    done = subprocess.run([command, *options], input=text, capture_output=True, timeout=60, pass_fds=[theirs],
                          env={"LD_PRELOAD": failing, "KESTRAN_FAILS": place, "KESTRAN_TELLS": str(theirs)})
    os.close(theirs)
    with os.fdopen(ours) as told:
        return done, told.read()


def is_answer(line, right):
    return line in (right, b"#MEMORY!") or line[:1] == b"{" and json.loads(line)["error"] == "#MEMORY!"


def sweep_command(options, text="", lines=False):
    """What is printed is right as far as it goes; lines have one answer each, or none at all. The rest is status and reason."""
    right, total = run("1000000000", options, text.encode())
    rows, total = right.stdout.splitlines(), int(total)
    # Of the thousands in which the add-in opens, every seventeenth.
    places = [place for place in range(1, total + 1) if place <= 20 or place > total - 130 or place % 17 == 0]
    for place in (f"{place}{more}" for more in ("", "+") for place in places):
        done, _ = run(place, options, text.encode())
        about = options, place, done
        got = done.stdout.splitlines()
        if done.stdout == right.stdout:
            assert done.returncode in (right.returncode, 2), about
        else:
            assert done.returncode in (2, 3) and (done.stderr or b"#MEMORY!" in done.stdout), about
            if lines and got:
                assert len(got) == len(rows) and all(map(is_answer, got, rows)), about
            else:
                assert got == rows[:len(got)] and done.stdout[-1:] in (b"", b"\n"), about
    print(f"kestran {' '.join(options)}: {len(places)} of {total} allocations")


def sweep(about, call, right, by_new=True, step=1):
    """Repeats the call with a failure at each place until there is none, and gives how many allocations it makes."""
    place = 1
    while True:
        fail_allocation(place, by_new)
        try:
            got = call()
        except MemoryError:
            got = None
        seen = fail_allocation(0, by_new)
        assert right(got) or (got is None and seen >= place), (about, place, got)
        if seen < place:
            return seen
        place += step


def load_module(path):
    loader = importlib.machinery.ExtensionFileLoader("_core", path)
    return loader.create_module(importlib.util.spec_from_loader("_core", loader)) is not None


class Operand(ctypes.Structure):
    _fields_ = [("values", ctypes.POINTER(ctypes.c_double)), ("rows", ctypes.c_int), ("columns", ctypes.c_int),
                ("stride", ctypes.c_ssize_t)]


def operand(value, dimensions):
    rows = value if dimensions == 2 else [value if dimensions == 1 else [value]]
    cells = [float(cell) for row in rows for cell in row]
    return Operand((ctypes.c_double * len(cells))(*cells), *((len(rows), len(rows[0])) if dimensions else (0, 0)), 0)


def sweep_results(function):
    """All results of the example, for two deals: right, or not a number, or memory ran out, says the call."""
    given = (Operand * len(function["arguments"]))(*map(operand, function["example"], function["dimensions"]))
    count = len(function["results"])
    selectors = (ctypes.c_int * count)(*(selector for _, selector in function["results"]))
    results, of = (ctypes.c_double * (2 * count))(), ctypes.c_void_p(interface.kestran_find(function["name"].encode()))
    deals, wanted = ctypes.c_size_t(2), []

    def right(refused):
        wanted.extend(results if not wanted else [])
        return refused == 2**64 - 1 or all(got == one or got != got for got, one in zip(results, wanted))

    def call():
        return interface.kestran_price_many(of, given, deals, selectors, count, results, None, 1)

    assert call() == 0 and right(0)
    seen = sweep(function["name"], call, right, by_new=False)
    assert list(results) == wanted, function["name"]
    return seen


formulas = '1+1\nEURO(100,95,5%,2%,25%,90,1,{0,1})\n\nEURRO(1)\n1+\n"a text that is kept on the heap"\n'
deals = ("Function,Price,Strike,IntRt,Yield,Vol,ExpDays,OptType\nEURO,100,95,5%,2%,25%,90,1\n"
         'AMER,"100",95,5%,2%,25%,90,1\nEURRO,100,95,5%,2%,25%,90,1\nEURO,x,95,5%,2%,25%,90,1\n')
for options in ([], ["--json"], ["--threads", "3"]):
    sweep_command(options, formulas, lines=True)
for options in (["--help"], ["--nonsense"], ["--describe", "EURO"]):
    sweep_command(options)
for options in (["price", "--results", "premium,delta"], ["price", "--threads", "2"]):
    sweep_command(options, deals)

path = importlib.util.find_spec("kestran._core").origin
print("loading the module:", sweep("import", lambda: load_module(path), bool, step=397), "allocations")
import kestran  # noqa: E402

strip = ([20, 21, 22], [0.4, 0.35, 0.3], [0.08, 0.17, 0.25], [0.16, 0.24, 0.32], [21, 20, 22], 0, 21, 0.05, 0.9, 0, 0.42, 1, 0, 1)
for call in (lambda: kestran._core.refusal("EURO", (100, 95, 0.05, 0.02, 0.25, 90, 1, 99)), lambda: kestran.ASTRIP(*strip)):
    assert sweep("kestran", call, lambda got, wanted=call(): got == wanted) > 1

interface = ctypes.CDLL(library)
interface.kestran_find.restype, interface.kestran_price_many.restype = ctypes.c_void_p, ctypes.c_size_t
seen = sum(map(sweep_results, kestran._core.functions))
print("kestran_price_many:", seen, "allocations")
assert seen > 1000
