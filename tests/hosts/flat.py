"""Runs a program that does the same in rounds, and judges whether it stays as it was.

flat.py NAME HOURS GROWTH COMMAND...: the command prints a line a round: calls, seconds of the processor, kB allocated, kB
resident, and words, which must be those of the first round. At the end GROWTH kB more may be allocated, and
16 times as many, or 1 MB, be resident.
"""
import os
import statistics
import subprocess
import sys

name, hours, growth, *command = sys.argv[1:]
rounds, faults, first = [], [], None
# Freed memory that threads keep for themselves would count as allocated.
environment = os.environ | {"GLIBC_TUNABLES": "glibc.malloc.tcache_count=0"}
with subprocess.Popen(command, stdout=subprocess.PIPE, text=True, env=environment) as process:
    for line in process.stdout:
        *numbers, words = line.split(maxsplit=4)
        first = first or words
        rounds.append(tuple(map(float, numbers)))
        if words != first:
            faults.append(f"round {len(rounds)}: {' '.join(set(words.split()) - set(first.split()))}")
        if len(rounds) % 100 == 0:
            print(f"{name}: round {len(rounds)}: {line.strip()}", flush=True)
if process.returncode != 0 or len(rounds) < 20:
    sys.exit(f"{name}: status {process.returncode} after {len(rounds)} rounds")

# The first rounds fill caches.
warm = max(2, len(rounds) // 100)
tenth = max(5, (len(rounds) - warm) // 10)
calls, seconds, allocated, resident = zip(*rounds)
early, late = slice(warm, warm + tenth), slice(-tenth, None)
(slow, grown, at_first), (slower, grown_to, at_last) = (
    [statistics.median(column[part]) for column in (seconds, allocated, resident)] for part in (early, late))
if grown_to > grown + float(growth) or at_last > max(resident[early]) + max(1024, 16 * float(growth)):
    faults.append("memory grows")
# Less than some minutes say nothing about speed.
if float(hours) > 0.1 and slower > 1.25 * slow:
    faults.append("rounds become slower")
print(f"{name}: {sum(calls):.0f} calls in {len(rounds)} rounds, {grown:.0f} kB allocated at first and {grown_to:.0f} kB at last, "
      f"{at_first:.0f} and {at_last:.0f} kB resident, time of the last rounds over that of the first {slower / slow:.3f}: "
      f"{'; '.join(faults[:5]) or 'equal'}")
sys.exit(bool(faults))
