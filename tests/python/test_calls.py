"""How arguments and results are named, what is refused, and what pandas, Dask and xarray get."""
import decimal
import inspect
import io
import os
import subprocess
import contextlib

import numpy as np
import pytest

import kestran
from command import same_bits

EURO = (100.0, 95.0, 0.05, 0.02, 0.25, 90.0, 1.0)
PREMIUM = 8.1430382104940776  # closed form, worked out with 30 digits


def test_keywords_in_any_case():
    named = {"PRICE": 100, "strike": 95, "IntRt": 0.05, "yIELD": 0.02, "Vol": 0.25, "expdays": 90}
    assert kestran.EURO(**named, OptType=1) == kestran.EURO(*EURO)
    assert kestran.EURO(100, 95, IntRt=0.05, Yield=0.02, Vol=0.25, ExpDays=90, OptType=1, rettype=0) == pytest.approx(
        PREMIUM, abs=1e-11)
    for arguments, keywords, words in [
        (EURO, {"Spot": 1}, "Spot.*Price, Strike"),
        (EURO, {"price": 1}, "Price is given twice"),
        (EURO[:5], {}, "ExpDays, OptType not given"),
        ((*EURO, 0, 0), {}, "8 arguments, 9 given"),
        (EURO, {"RetType": 0, "results": "all"}, "both"),
    ]:
        with pytest.raises(TypeError, match=words):
            kestran.EURO(*arguments, **keywords)


def test_results_by_name():
    by_number = kestran.EURO(*EURO, np.arange(9))
    assert kestran.EURO(*EURO, "delta") == kestran.EURO(*EURO, RetType="DELTA") == by_number[1]
    assert same_bits(kestran.EURO(*EURO, ["premium", "Vega"]), by_number[[0, 3]])
    assert same_bits(kestran.EURO(*EURO, np.array([["gamma"], ["rho"]])), by_number[[2, 6]][:, None])
    everything = kestran.EURO(*EURO, results="all")
    assert list(everything) == list(kestran.EURO.results)
    assert same_bits(list(everything.values()), by_number)
    assert list(kestran.EURO([100, 101], *EURO[1:], results=["theta"])) == ["theta"]
    assert list(kestran.BOST(*kestran.BOST.example, results="all")) == ["strike"]
    # A twin that has fewer results than its text.
    assert len(kestran.xSPRDOPT.results) < len(kestran.SPRDOPT.results)
    # RetType in the middle.
    strip = kestran.ASTRIP.example
    assert kestran.ASTRIP(*strip[:12], RetMonth=2, RetType="delta") == kestran.ASTRIP(*strip[:12], 1, 2)
    for call in (lambda: kestran.EURO(*EURO, "detla"), lambda: kestran.EURO(*EURO, results=["detla"])):
        with pytest.raises(ValueError, match="no result detla; it has premium, delta"):
            call()


@pytest.mark.parametrize("change, words", [
    ({"RetType": 12}, "RetType 12 is outside 0 to 8"),
    ({"Price": None}, "Price is missing"),
    ({"Price": np.nan}, "Price is missing"),
    ({"Strike": np.ma.masked}, "Strike is missing"),
    ({"OptType": True}, "OptType is text or a logical value"),
    ({"Vol": "25%"}, "Vol is text or a logical value"),
    ({"Vol": 1j}, "Vol is text or a logical value"),
    ({"ExpDays": np.datetime64("2024-01-01")}, "ExpDays is text or a logical value"),
])
def test_refused_numbers_raise(change, words):
    given = dict(zip(kestran.EURO.arguments, EURO)) | change
    with pytest.raises(ValueError, match="EURO: " + words):
        kestran.EURO(**given)
    refused = kestran.EURO(**given, errors="nan")
    assert np.isnan(refused) and kestran.error_code(refused) in (15, 65535)


def test_refused_rows_keep_the_others():
    prices = [100, None, "x", True, np.nan, decimal.Decimal(100), np.float32(100)]
    expected = [-1, 65535, 15, 15, 65535, -1, -1]
    found = kestran.EURO(prices, *EURO[1:])
    assert list(kestran.error_code(found)) == expected
    assert found[0] == found[5] == found[6] == kestran.EURO(*EURO)
    for large in (10**400, [1, 10**400]):
        with pytest.raises(ValueError, match="Price has a number that is too large"):
            kestran.EURO(large, *EURO[1:])
    masked = np.ma.array([100.0, 101.0], mask=[False, True])
    assert list(kestran.error_code(kestran.EURO(masked, *EURO[1:]))) == [-1, 65535]
    assert (kestran.error_code(kestran.EURO(np.array([True, False]), *EURO[1:])) == 15).all()
    assert (kestran.error_code(kestran.EURO(np.array(["1", "2"]), *EURO[1:])) == 15).all()
    assert list(kestran.error_code(kestran.EURO(*EURO, ["premium", "nothing", 9]))) == [-1, 15, 65535]
    # The code outlives what people do with arrays, and an error goes through a formula as on the sheet.
    codes = [65535, 15]
    refused = kestran.EURO([np.nan, "x"], *EURO[1:])
    for copy in (refused.astype(np.float32), refused + 1, -refused, refused.copy(), kestran.EURO(refused, *EURO[1:])):
        assert list(kestran.error_code(copy)) == codes
    assert kestran.error_code(np.nan) == kestran.error_code(-np.inf) == kestran.error_code(1.5) == -1


def test_errors_raise_names_the_first_row():
    with pytest.raises(ValueError, match=r"EURO: 2 of 3 rows refused, the first is row 1: RetType 9 is outside"):
        kestran.EURO([100, 101, None], *EURO[1:], [0, 9, 0], errors="raise")
    with pytest.raises(ValueError, match=r"row \(1, 0\): Strike is missing"):
        kestran.EURO(100, np.array([[95.0], [np.nan]]), *EURO[2:5], [90, 91], 1, errors="raise")
    curves = np.array(kestran.ASTRIP.example[0]) * np.ones((2, 1))
    curves[1, 1] = np.nan
    with pytest.raises(ValueError, match="row 1: Price_rng has a cell that holds no number"):
        kestran.ASTRIP(curves, *kestran.ASTRIP.example[1:], errors="raise")
    with pytest.raises(ValueError, match="Strike is missing"):
        kestran.EURO([100, 101], None, *EURO[2:], results="all", errors="raise")
    assert kestran.EURO([100, 101], *EURO[1:], errors="raise").shape == (2,)
    with pytest.raises(ValueError, match="errors"):
        kestran.EURO(*EURO, errors="ignore")


def test_shapes_that_do_not_fit():
    with pytest.raises(ValueError, match=r"EURO: the shapes do not fit together: Price \(2,\), Vol \(3,\)"):
        kestran.EURO([100, 101], 95, 0.05, 0.02, [0.2, 0.3, 0.4], 90, 1)
    with pytest.raises(ValueError, match=r"EURO: .*Price \(2,\), out \(3,\)"):
        kestran.EURO([100, 101], *EURO[1:], out=np.zeros(3))
    with pytest.raises(ValueError, match=r"BASVOL: .*Forward_Price \(3, 2\).*ExpTime \(2,\)"):
        kestran.BASVOL([[100, 90]] * 3, *kestran.BASVOL.example[1:5], [0.5, 0.75])


def test_ranges_that_cannot_be():
    example = list(kestran.BASVOL.example)
    for place, value, words in [
        (4, [1, 0.5], "Correl_Matrix is a square block"),
        (0, [], "Forward_Price is missing"),
        (0, np.ones(100000), "Forward_Price has more cells than are taken"),
        (4, np.ones((2, 3)), "Correl_Matrix must have a row and a column"),
        (4, np.ones((300, 300)), "Correl_Matrix must have a row and a column"),
        (5, None, "ExpTime is missing"),
    ]:
        given = example[:place] + [value] + example[place + 1:]
        with pytest.raises(ValueError, match=words):
            kestran.BASVOL(*given)


def test_pandas():
    pandas = pytest.importorskip("pandas")
    prices = pandas.Series([100.0, 110.0, np.nan], index=list("abc"))
    strikes = pandas.Series([95.0, 96.0, 97.0], index=list("cba"))
    found = kestran.EURO(prices, strikes, *EURO[2:])
    assert list(found.index) == list("abc")
    assert found["a"] == kestran.EURO(100, 97, *EURO[2:])
    assert list(kestran.error_code(found)) == [-1, -1, 65535]
    assert list(kestran.EURO(prices["a":"b"], strikes, *EURO[2:]).isna()) == [False, False, True]
    frame = pandas.DataFrame({"Price": [100, 101], "Strike": pandas.array([95, None], dtype="Int64")})
    table = kestran.EURO(frame.Price, frame["Strike"], *EURO[2:], results="all")
    assert list(table.columns) == list(kestran.EURO.results) and table.premium[0] == kestran.EURO(*EURO)
    assert np.isnan(table.delta[1])
    types = pandas.Series(["premium", "delta"])
    assert same_bits(kestran.EURO(*EURO, types).to_numpy(), kestran.EURO(*EURO, [0, 1]))
    assert (kestran.error_code(kestran.EURO(prices > 0, *EURO[1:])) == 15).all()
    with pytest.raises(ValueError, match="the first is row c: Price is missing"):
        kestran.EURO(prices, strikes, *EURO[2:], errors="raise")
    # A DataFrame for a range has a curve in each row; a Series is one curve.
    curves = pandas.DataFrame([kestran.ASTRIP.example[0]] * 2, index=["x", "y"])
    strip = kestran.ASTRIP(curves, pandas.Series(kestran.ASTRIP.example[1]), *kestran.ASTRIP.example[2:])
    assert list(strip.index) == ["x", "y"] and strip["y"] == kestran.ASTRIP(*kestran.ASTRIP.example)


def test_dask_and_xarray_stay_what_they_are():
    array = pytest.importorskip("dask.array")
    prices = np.linspace(90, 110, 100)
    lazy = kestran.EURO(array.from_array(prices, chunks=30), *EURO[1:])
    assert isinstance(lazy, array.Array)
    assert same_bits(lazy.compute(scheduler="processes"), kestran.EURO(prices, *EURO[1:]))
    rows = array.from_array(np.array([kestran.ASTRIP.example[0]] * 4), chunks=(2, -1))
    strips = kestran.ASTRIP(rows, *kestran.ASTRIP.example[1:])
    assert same_bits(strips.compute(), [kestran.ASTRIP(*kestran.ASTRIP.example)] * 4)
    xarray = pytest.importorskip("xarray")
    grid = kestran.EURO(xarray.DataArray(prices, dims="spot"), *EURO[1:4], xarray.DataArray([0.2, 0.3], dims="vol"), 90, 1)
    assert grid.dims == ("spot", "vol")
    with pytest.raises(TypeError, match="Price is an array of bool"):
        kestran.EURO(xarray.DataArray([True], dims="spot"), *EURO[1:])


def test_help():
    names = list(kestran.functions())
    assert set(names) <= set(dir(kestran)) and kestran.functions()["EURO"].startswith("European option")
    for name in names:
        function = getattr(kestran, name)
        signature = inspect.signature(function)
        assert [p for p in signature.parameters][:len(function.arguments)] == list(function.arguments)
        page = io.StringIO()
        with contextlib.redirect_stdout(page):
            help(function)
        lines = [line.strip() for line in page.getvalue().splitlines()]
        for part in ("Arguments", "Example", "How far to trust it", "In Python"):
            assert part in lines, name
        # What is shown is what prices.
        assert eval(lines[lines.index("In Python") + 1], {"kestran": kestran}) == function(*function.example)


def test_type_checker(tmp_path):
    good = tmp_path / "good.py"
    good.write_text("import kestran\nimport numpy as np\n"
                    "kestran.EURO(100, 95, 0.05, 0.02, np.array([0.25]), ExpDays=[90, None], OptType=1)\n"
                    "kestran.EURO(100, 95, 0.05, 0.02, 0.25, 90, 1, RetType='delta', errors='raise')\n"
                    "print(kestran.EURO.results['delta'], kestran.EURO.ufunc, *kestran.EURO.example)\n"
                    + "".join(f"kestran.{name}(*{getattr(kestran, name).example!r})\n" for name in kestran.functions())
                    + "kestran.PPLUS(" + ", ".join(f"{name}=1" for name in kestran.PPLUS.arguments if name != "Risk") + ")\n")
    bad = tmp_path / "bad.py"
    bad.write_text("import kestran\n"
                   "kestran.EURO(100, 95)\n"
                   "kestran.EURO('100', 95, 0.05, 0.02, 0.25, 90, 1)\n"
                   "kestran.EURO(100, 95, 0.05, 0.02, 0.25, 90, 1, Spot=1)\n"
                   "kestran.EURO(None, 95, 0.05, 0.02, 0.25, 90, 1)\n"
                   "kestran.ASTRIP2m(1)\n"
                   "kestran.EUROO()\n")
    package = os.path.dirname(kestran.__file__)

    def errors_in(file):
        run = subprocess.run(["mypy", "--no-color-output", "--cache-dir", str(tmp_path / "cache"), str(file)],
                             capture_output=True, text=True, check=False, cwd=tmp_path,
                             env=os.environ | {"MYPYPATH": os.path.dirname(package)})
        return sorted({int(line.split(":")[1]) for line in run.stdout.splitlines() if ": error:" in line}), run.stdout

    assert errors_in(good)[0] == [], errors_in(good)[1]
    assert errors_in(bad)[0] == [2, 3, 4, 5, 6, 7], errors_in(bad)[1]
