"""Three workers price what one process prices, to the bit, also when one of them dies; what the page shows."""
import doctest
import itertools
import os
import re
import signal

import dask.array as da
import numpy as np
import pytest
from dask.distributed import as_completed, futures_of, progress

import kestran
from servers import cluster, ended_by_timeout

OPTIONS = int(os.environ["KESTRAN_CLUSTER_OPTIONS"])
BLOCK = 500_000
PAGE = os.path.join(os.path.dirname(__file__), "..", "..", "docs", "scale.md")

ended_by_timeout()


@pytest.fixture
def client(tmp_path):
    with cluster(tmp_path, 3) as client:
        yield client


def deals(rows):
    """Arguments of EURO for the deals of these numbers, in arrays of NumPy or of Dask. All results are asked for, and one
    that is refused."""
    return {"Price": 50 + rows * 0.6180339887 % 100, "Strike": 50 + rows * 0.7548776662 % 100, "IntRt": 0.05, "Yield": 0.02,
            "Vol": 0.1 + rows * 0.5698402910 % 0.5, "ExpDays": 5 + rows % 695, "OptType": rows % 2, "RetType": rows % 10}


def same_bits(one, other):
    one, other = np.asarray(one), np.asarray(other)
    return one.shape == other.shape and one.dtype == other.dtype == float and (one.view("u8") == other.view("u8")).all()


def test_a_worker_dies(client, capsys):
    results = client.persist(kestran.EURO(**deals(da.arange(OPTIONS, chunks=BLOCK))))
    blocks = futures_of(results)
    processes = client.run(os.getpid)
    for _ in itertools.islice(as_completed(blocks), len(blocks) // 3):
        pass
    lost = max(processes, key=lambda worker: len(client.has_what()[worker]))
    held = client.has_what()[lost]
    os.kill(processes[lost], signal.SIGKILL)
    assert held and not all(block.done() for block in blocks)
    progress(results, notebook=False)
    assert "100% Completed" in capsys.readouterr().out
    assert set(client.scheduler_info()["workers"]) == set(processes) - {lost}
    refused = 0
    for i, first in enumerate(range(0, OPTIONS, BLOCK)):
        got = results.blocks[i].compute()
        assert same_bits(got, kestran.EURO(**deals(np.arange(first, min(first + BLOCK, OPTIONS))))), i
        refused += np.count_nonzero(kestran.error_code(got) == 65535)
    assert refused == OPTIONS // 10


def test_scenario_grid(client):
    prices, vols = np.linspace(0.7, 1.3, 7)[:, None, None], np.linspace(0.8, 1.2, 3)[:, None]

    def grid(rows):
        book = deals(rows)
        return kestran.EURO(**book | {"Price": book["Price"] * prices, "Vol": book["Vol"] * vols, "RetType": 0})

    lazy, whole = grid(da.arange(100_000, chunks=30_000)), grid(np.arange(100_000))
    assert same_bits(lazy.compute(), whole)
    assert np.allclose(lazy.sum(axis=2).compute(), whole.sum(axis=2), rtol=1e-12, atol=0)


def test_every_function(client):
    """As a function that is sent to a worker, and over rows in blocks."""
    for name in kestran.functions():
        function = getattr(kestran, name)
        expected = function(*function.example)
        sent = client.submit(function, *function.example)
        rows = [np.array([argument] * 4, dtype=float) for argument in function.example]
        blocks = function(*(da.from_array(row, chunks=(2, *row.shape[1:])) for row in rows))
        assert isinstance(blocks, da.Array) and blocks.numblocks == (2,), name
        assert same_bits([sent.result(timeout=60), *blocks.compute()], [expected] * 5), name


def test_the_page(client, tmp_path, monkeypatch):
    with open(PAGE, encoding="utf-8") as page:
        text = "\n".join(re.findall(r"```python\n(.*?)```", page.read(), re.DOTALL))
    monkeypatch.chdir(tmp_path)
    header = "Id,Price,Strike,Vol,ExpDays\n"
    (tmp_path / "deals-1.csv").write_text(header + "a,100,95,0.25,90\nb,100,,0.25,90\n")
    (tmp_path / "deals-2.csv").write_text(header + "c,104,95,0.25,60\n")
    said = []
    test = doctest.DocTestParser().get_doctest(text, {}, "docs/scale.md", None, 0)
    assert len(test.examples) > 10
    runner = doctest.DocTestRunner(optionflags=doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE)
    try:
        runner.run(test, out=said.append, clear_globs=False)
    finally:
        if "client" in test.globs:
            test.globs["client"].close(timeout=10)
    assert not said, "".join(said)
    assert (tmp_path / "priced-0.csv").read_text().splitlines()[2] == "b,100,,0.25,90,"
