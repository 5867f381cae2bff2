#!/usr/bin/env python3
"""What the scripts around regressions.bash measured: medians of whole processes (wall and CPU time, peak memory), and in
memory of the fastest CPU time in each round; and whether the results agree.

    regressions.py FOLDER

FOLDER has a list `order` of what was compared, and a folder for each with `times` of processes, a line in `memory` for
each run of korvana-bench, and what R found, and how long its functions took:

    is NAME VALUE TOLERANCE     of the benchmark's counter NAME; the tolerance is relative
    took NAME MILLISECONDS      CPU time

Exits 1 when a result differs.
"""
import json
import os
import statistics
import sys
from pathlib import Path


def processes(file):
    measured = {}
    for line in file.read_text().splitlines():
        who, *numbers = line.split()
        wall, user, system, kilobytes = map(float, numbers)
        measured.setdefault(who, []).append((wall, user + system, kilobytes / 1024))
    whole = {who: [statistics.median(column) for column in zip(*times)] for who, times in measured.items()}
    for who, (wall, cpu, megabytes) in whole.items():
        ratios = [r / max(ours, 0.001) for ours, r in zip(whole[who], whole["R"])]
        beside = "" if who == "R" else "  R / {}: {:.1f} by wall time, {:.1f} by CPU time, {:.1f} by memory".format(
            who, *ratios)
        print(f"  {who:12} {wall:7.3f} s  CPU {cpu:7.3f} s  {megabytes:5.0f} MB{beside}")


def compare(folder):
    """Whether the results agree."""
    processes(folder / "times")
    rounds = [[run for run in json.loads(line)["benchmarks"] if run["run_type"] == "iteration"]
              for line in (folder / "memory").read_text().splitlines()]
    ours = statistics.median(min(run["cpu_time"] for run in each) for each in rounds)
    took, found = {}, {}
    for line in (folder / "R.out").read_text().splitlines():
        what, name, *numbers = line.split()
        if what == "took":
            took.setdefault(name, []).append(float(numbers[0]))
        else:
            found[name] = tuple(map(float, numbers))
    print(f"  in memory: korvana {ours:.1f} ms", *(
        f"{name} {statistics.median(times):.0f} ms, {statistics.median(times) / ours:.1f} times as long"
        for name, times in took.items()), sep="; ")
    all_agree = bool(found)
    for name, (value, tolerance) in found.items():
        counter = rounds[-1][0][name]
        agree = abs(counter - value) <= tolerance * abs(value)
        all_agree = all_agree and agree
        print(f"  {name} {counter:.10g} and {value:.10g}: {'agree' if agree else 'DIFFER'}")
    return all_agree


def main(folder):
    agree = True
    for what in (folder / "order").read_text().splitlines():
        print(what)
        agree = compare(folder / what) and agree
    print(f"load at the end {os.getloadavg()[0]:.1f} on {os.cpu_count()} cores")
    return 0 if agree else 1


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1])))
