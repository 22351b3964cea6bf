"""A Dask cluster on loopback: Debian's dask-scheduler and dask-worker as processes of their own, on free ports."""
import contextlib
import os
import signal
import subprocess
import time

from dask.distributed import Client

import kestran

PACKAGE = os.path.dirname(os.path.dirname(os.path.abspath(kestran.__file__)))
SECONDS = 300  # after which a server ends whatever becomes of this process
START = 60


def ended_by_timeout():
    """Has a SIGTERM, as `timeout` sends it, end this process by way of its `finally` clauses."""
    def end(*_):
        raise KeyboardInterrupt
    signal.signal(signal.SIGTERM, end)


@contextlib.contextmanager
def cluster(folder, workers):
    """A client of a scheduler whose file is folder/scheduler.json. Every worker is a process with one thread and nobody
    who starts it again."""
    servers = []
    scheduler_file = os.path.join(folder, "scheduler.json")

    def start(name, *command):
        log = os.path.join(folder, name + ".log")
        with open(log, "w", encoding="utf-8") as said:
            servers.append((log, subprocess.Popen(
                ["timeout", "--foreground", "--kill-after=5", str(SECONDS), *command, "--host", "127.0.0.1", "--no-dashboard",
                 "--scheduler-file", scheduler_file],
                stdin=subprocess.DEVNULL, stdout=said, stderr=said, cwd=folder, start_new_session=True,
                env=os.environ | {"PYTHONPATH": PACKAGE})))

    try:
        start("scheduler", "dask-scheduler", "--port", "0")
        until = time.monotonic() + START
        while not os.path.exists(scheduler_file) and servers[0][1].poll() is None and time.monotonic() < until:
            time.sleep(0.05)
        for i in range(workers):
            start(f"worker{i}", "dask-worker", "--nthreads", "1", "--no-nanny", "--memory-limit", "1GB",
                  "--death-timeout", str(START), "--local-directory", os.path.join(folder, f"files{i}"))
        try:
            client = Client(scheduler_file=scheduler_file, timeout=START)
            client.wait_for_workers(workers, timeout=START)
        except Exception:
            for log, _ in servers:
                with open(log, encoding="utf-8") as said:
                    print(log, said.read()[-2000:], sep="\n")
            raise
        try:
            yield client
        finally:
            client.close(timeout=10)
    finally:
        for _, server in servers:
            server.send_signal(signal.SIGTERM)
        for _, server in servers:
            try:
                server.wait(15)
            except subprocess.TimeoutExpired:
                os.killpg(server.pid, signal.SIGKILL)
                server.wait()
