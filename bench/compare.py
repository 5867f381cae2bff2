#!/usr/bin/env python3
"""What side-by-side.sh measured: the table of medians, whether both programs found the same quartiles, and where the
time of korvana's last run went.

    compare.py FOLDER

R gives the time of the event at which the estimate first is at or below the quartile, and of the event before;
korvana interpolates between the two, so its quartile must lie between them. Exits 1 when one does not.
"""
import json
import os
import platform
import statistics
import sys
from pathlib import Path


def quartiles_agree(folder, data):
    book = json.loads((folder / f"out-{data}" / "results.json").read_text())
    sheet = next(s for s in book["spreadsheets"] if s["title"].startswith("Percentiles"))
    ours = [row["cells"][0] for row in sheet["rows"]]
    theirs = [tuple(map(float, line.split(",")[1:])) for line in (folder / f"R-{data}.out").read_text().split()]
    agree = len(ours) == len(theirs) == 3 and all(
        time is not None and before <= time <= at for time, (before, at) in zip(ours, theirs))
    if not agree:
        print(f"{data}: quartiles differ: korvana {ours}, R between {theirs}")
    return agree


def processor():
    try:
        lines = Path("/proc/cpuinfo").read_text().splitlines()
        return next(line.split(":", 1)[1].strip() for line in lines if line.startswith("model name"))
    except (OSError, StopIteration):
        return platform.machine()


def main(folder):
    folder = Path(folder)
    measured = {}
    for line in (folder / "times").read_text().splitlines():
        who, data, seconds, kilobytes = line.split()
        measured.setdefault(data, {}).setdefault(who, []).append((float(seconds), int(kilobytes) / 1024))

    some = next(iter(measured.values()))
    with_before = "before" in some
    print(f"\n{processor()}, {os.cpu_count()} cores; medians of {len(some['R'])} alternating runs, whole processes\n")
    print("| data | korvana, s |" + (" before, s |" if with_before else "")
          + " R, s | R / korvana | korvana, MB | R, MB | R / korvana | quartiles |")
    print("|---" * (9 if with_before else 8) + "|")
    all_agree = True
    for data, who in measured.items():
        (time, memory), (r_time, r_memory) = (
            [statistics.median(column) for column in zip(*who[name])] for name in ("korvana", "R"))
        before = f"{statistics.median(seconds for seconds, _ in who['before']):.2f} | " if with_before else ""
        agree = quartiles_agree(folder, data)
        all_agree = all_agree and agree
        kind, rows = data.split("-")
        print(f"| {kind}, {int(rows):,} rows | {time:.2f} | {before}{r_time:.2f} | {r_time / max(time, 0.005):.1f} | {memory:.0f} | "
              f"{r_memory:.0f} | {r_memory / memory:.1f} | {'agree' if agree else 'DIFFER'} |")

    for data in measured:
        phases = [line.rsplit(None, 2) for line in (folder / f"korvana-{data}.err").read_text().splitlines()
                  if line.endswith(" s")]
        print(f"\n{data}, the last run: " + ", ".join(f"{name.strip()} {seconds}" for name, seconds, _ in phases) + " s")
    return 0 if all_agree else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
