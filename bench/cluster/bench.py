"""Ten million EURO on workers of Dask against one process; see run."""
import statistics
import tempfile
import time

import dask.array as da
import numpy as np

import kestran
from servers import cluster, ended_by_timeout

OPTIONS = 10_000_000
TURNS = 5
RUNS = [(1, 500_000), (2, 500_000), (3, 500_000), (3, 100_000), (3, 10_000)]  # workers, rows of a block


def premiums(rows):
    return kestran.EURO(50 + rows * 1e-5, 100, 0.05, 0.02, 0.25, 90, 1)


def alone():
    for first in range(0, OPTIONS, 500_000):
        premiums(np.arange(first, first + 500_000)).sum()


def timed(work, processor_time):
    wall, processor = time.perf_counter(), processor_time()
    work()
    return time.perf_counter() - wall, processor_time() - processor


def ratios(workers, block):
    with tempfile.TemporaryDirectory() as folder, cluster(folder, workers) as client:
        total = premiums(da.arange(OPTIONS, chunks=block)).sum()

        def processor_time():
            servers = [*client.run(time.process_time).values(), client.run_on_scheduler(time.process_time)]
            return time.process_time() + sum(servers)

        total.compute()
        turns = [(timed(alone, time.process_time), timed(total.compute, processor_time)) for _ in range(TURNS)]
    return [statistics.median(many[i] / one[i] for one, many in turns) for i in range(2)]


ended_by_timeout()
alone()
print("workers  rows a block  time  processor time")
for workers, block in RUNS:
    print("{:7} {:13} {:5.2f} {:15.2f}".format(workers, block, *ratios(workers, block)), flush=True)
