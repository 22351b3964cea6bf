"""The same bits as the command, however the numbers are given and on however many threads."""
import ctypes
import multiprocessing
import pickle
import subprocess
import threading
from concurrent.futures import ThreadPoolExecutor

import numpy as np
import pytest

import kestran
from command import NotPlain, answer_of, answers, call_of, case_formulas, same_bits

FUNCTIONS = [getattr(kestran, name) for name in kestran.functions()]
EURO = (100.0, 95.0, 0.05, 0.02, 0.25, 90.0, 1.0)


def test_the_formulas_of_the_case_files():
    calls = {}
    for formula in case_formulas():
        try:
            calls[formula] = call_of(formula)
        except NotPlain:
            pass
    expected = answers(list(calls))
    wrong = [
        (formula, want, got)
        for (formula, call), want in zip(calls.items(), expected)
        if want != (got := answer_of(*call))
    ]
    assert not wrong
    # Among them refusals of each kind.
    assert len(calls) > 300 and {15, 36, 42, 65535} <= {code for code in expected if isinstance(code, int)}


def rows_of(function, count):
    """The example `count` times with its first number moved a little; each row of ranges its own."""
    dimensions = function.dimensions
    moved = dimensions.index(0)
    factors = np.linspace(1.0, 1.01, count)
    columns = []
    for i, value in enumerate(function.example):
        column = np.array([value] * count)
        columns.append(column * factors if i == moved else column)
    return columns


def test_arrays_of_any_layout():
    columns = rows_of(kestran.EURO, 600)
    rows = [kestran.EURO(*row) for row in zip(*columns)]
    assert same_bits(kestran.EURO(*columns), rows)
    assert same_bits(kestran.EURO(*[column[::-1] for column in columns])[::-1], rows)
    assert same_bits(kestran.EURO(*[np.repeat(column, 3)[::3] for column in columns]), rows)
    table = np.array(columns)  # a column of a row-major table
    assert same_bits(kestran.EURO(*table.T.copy().T), rows)
    records = np.zeros(600, dtype=[("flag", "i1"), ("price", "f8")])  # unaligned
    records["price"] = columns[0]
    assert same_bits(kestran.EURO(records["price"], *columns[1:]), rows)
    swapped = columns[0].astype(">f8")
    assert same_bits(kestran.EURO(swapped, *columns[1:]), rows)
    grid = kestran.EURO(np.array([90.0, 100.0])[:, None], *EURO[1:4], np.array([0.2, 0.25, 0.3]), 90, 1)
    assert grid.shape == (2, 3) and grid[1, 1] == kestran.EURO(*EURO)


def test_ranges_of_any_layout():
    columns = rows_of(kestran.BASVOL, 150)
    rows = [kestran.BASVOL(*row) for row in zip(*columns)]
    assert same_bits(kestran.BASVOL(*columns), rows)
    assert same_bits(kestran.BASVOL(*[np.asfortranarray(column) for column in columns]), rows)
    transposed = [np.repeat(column, 2, axis=-1)[..., ::2] for column in columns]
    assert same_bits(kestran.BASVOL(*transposed), rows)
    # One curve for all rows.
    example = kestran.BASVOL.example
    assert same_bits(kestran.BASVOL(*example[:5], columns[5]), rows)


def test_dtypes():
    integers = [np.array([value] * 3) for value in (100, 95, 0, 0)] + [0.25, np.int8(90), np.uint16(1)]
    assert (kestran.EURO(*integers) == kestran.EURO(100, 95, 0, 0, 0.25, 90, 1)).all()
    assert kestran.EURO(np.float32(100), *EURO[1:]) == kestran.EURO(*EURO)
    assert kestran.EURO(np.array([100], dtype=np.float16), *EURO[1:]).dtype == np.float64
    assert kestran.EURO(np.longdouble(100), *EURO[1:]) == kestran.EURO(*EURO)
    assert kestran.EURO([], *EURO[1:]).shape == (0,)


def test_out_and_where():
    out = np.full(3, 7.0)
    where = np.array([True, False, True])
    assert kestran.EURO([100, 101, 102], *EURO[1:], out=out, where=where) is out
    assert out[1] == 7.0 and out[0] == kestran.EURO(*EURO)
    prices = np.linspace(90.0, 110.0, 2000)
    expected = kestran.EURO(prices, *EURO[1:])
    kestran.EURO(prices, *EURO[1:], out=prices)
    assert same_bits(prices, expected)
    columns = rows_of(kestran.ASTRIP, 3)
    expected = kestran.ASTRIP(*columns)
    out[:] = 7.0
    assert kestran.ASTRIP(*columns, out=out, where=where) is out
    assert (out == np.where(where, expected, 7.0)).all()
    kestran.ASTRIP(*columns, out=out)
    assert same_bits(out, expected)


def test_shorter_rows_are_filled_up_with_nan():
    ragged = [[100, 90, 80], [100, 90, np.nan]]
    vols = [[0.3, 0.4, 0.2], [0.3, 0.4, np.nan]]
    zeros = [[0, 0, 0], [0, 0, np.nan]]
    weights = [[0.5, 0.3, 0.2], [0.6, 0.4, np.nan]]
    correlations = np.array([[[1, 0.5, 0.2], [0.5, 1, 0.3], [0.2, 0.3, 1]]] * 2)
    correlations[1, 2, :] = correlations[1, :, 2] = np.nan
    found = kestran.BASVOL(ragged, vols, zeros, weights, correlations, 0.75)
    alone = kestran.BASVOL([100, 90], [0.3, 0.4], [0, 0], [0.6, 0.4], [[1, 0.5], [0.5, 1]], 0.75)
    assert found[1] == alone and found[0] != alone
    # An empty cell before the last is none that fills up.
    assert kestran.error_code(kestran.BASVOL([100, np.nan, 90], *[row[0] for row in (vols, zeros, weights)],
                                             correlations[0], 0.75, errors="nan")) == 15
    with pytest.raises(ValueError, match="Forward_Price.*NaN"):
        kestran.BASVOL([[100, 90, 80], [100, 90]], vols, zeros, weights, correlations, 0.75)


def test_threads_change_no_bit():
    alone = [f(*rows_of(f, 200)) for f in FUNCTIONS]
    with ThreadPoolExecutor(4) as pool:
        together = list(pool.map(lambda f: f(*rows_of(f, 200)), FUNCTIONS * 2))
    assert all(same_bits(one, other) for one, other in zip(alone * 2, together))
    try:
        kestran.set_threads(3)
        assert kestran.threads() == 3
        assert all(same_bits(one, f(*rows_of(f, 200))) for f, one in zip(FUNCTIONS, alone))
        assert kestran.EURO([], *EURO[1:]).shape == (0,)
    finally:
        kestran.set_threads(1)
    for wrong in (0, -1, 5000):
        with pytest.raises(ValueError):
            kestran.set_threads(wrong)


def test_other_threads_run_meanwhile():
    out = np.zeros(600)
    worker = threading.Thread(
        target=lambda: kestran.AMERB(np.linspace(90, 110, 600), 100, 0.05, 0.02, 0.25, 365, 0, 1000, out=out))
    worker.start()
    seen_half_done = False
    while worker.is_alive() and not seen_half_done:
        seen_half_done = out[0] != 0 and out[-1] == 0
    worker.join()
    assert seen_half_done and (out > 0).all()


def double_of_price(function, price):
    return 2 * function(price, *EURO[1:])


@pytest.mark.parametrize("way", ["fork", "spawn"])
def test_functions_go_to_other_processes(way):
    for function in FUNCTIONS:
        assert pickle.loads(pickle.dumps(function)) is function
        assert pickle.loads(pickle.dumps(function.ufunc)) is function.ufunc
    with multiprocessing.get_context(way).Pool(2) as pool:
        found = pool.starmap(double_of_price, [(kestran.EURO, 100.0), (kestran.EURO, 101.0)])
    assert found[0] == 2 * kestran.EURO(*EURO)


def test_the_state_of_the_processor_does_not_matter(tmp_path):
    source = tmp_path / "state.c"
    source.write_text("#include <immintrin.h>\n"
                      "unsigned get(void) { return _mm_getcsr(); }\nvoid set(unsigned s) { _mm_setcsr(s); }\n")
    subprocess.run(["gcc", "-shared", "-fPIC", "-o", tmp_path / "state.so", source], check=True)
    state = ctypes.CDLL(str(tmp_path / "state.so"))
    tiny = (1e-310, 1e-310, 0.05, 0.3, 365.25, 1)
    calls = [(kestran.EURO_Forward, tiny)] + [(f, rows_of(f, 3)) for f in FUNCTIONS]
    usual = [f(*given) for f, given in calls]
    assert usual[0] > 0
    for changed in (0x9FC0, 0x3F80, 0x5F80, 0x7F80):  # flush to zero; down, up, toward zero
        prepared = [[np.asarray(one, dtype=float) for one in given] for _, given in calls]
        state.set(changed)
        found = [f.ufunc(*given, *[0.0] * (len(f.arguments) - len(given))) for (f, _), given in zip(calls, prepared)]
        after = state.get()
        state.set(0x1F80)
        assert all(same_bits(one, other) for one, other in zip(usual, found)), hex(changed)
        assert after & 0xFFC0 == changed


def test_no_warnings_from_inside():
    with np.errstate(all="raise"):
        assert kestran.EURO(1e-300, 1e300, 0.05, 0.02, 1e-5, 1e-9, 1) == 0.0
        kestran.EURO([1e308, 0, -1], [1e-308, 0, 1], 10, -10, [1e10, 0, -3], 1e8, 1)
