#!/usr/bin/env python3
"""Runs korvana with and without the product-limit table of FOLDER/data.csv and prints what the table costs: medians of
alternating runs.

    writing.py KORVANA FOLDER RUNS

Seconds are those of the phases Printing and Writing, beyond those of a run without the table: from the results of the
analysis to whole files. Memory is the largest resident set of the process.
"""
import os
import statistics
import subprocess
import sys
from pathlib import Path

from compare import processor

WITHOUT = "percentiles"
FORMATS = ("csv", "json", "txt", "html")


def run(korvana, folder, outputs, form):
    """Seconds of printing and writing, megabytes of memory, bytes of the largest file."""
    out = folder / form
    command = [korvana, "kaplan-meier", str(folder / "data.csv"), "--time", "time", "--censor", "status", "--complete",
               "1", "--censored", "0", "--outputs", outputs, "--format", form, "-o", str(out), "--quiet", "--timing"]
    with open(folder / "phases", "w+", encoding="utf-8") as phases:
        process = subprocess.Popen(command, stderr=phases)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        phases.seek(0)
        lines = phases.read().splitlines()
    if process.returncode != 0:
        sys.exit(f"writing: failed: {' '.join(command)}\n" + "\n".join(lines))
    seconds = sum(float(line.split()[-2]) for line in lines if line.startswith(("Printing ", "Writing ")))
    return seconds, usage.ru_maxrss / 1024, max(file.stat().st_size for file in out.iterdir())


def main(korvana, folder, runs):
    folder = Path(folder)
    measured = {}
    for _ in range(int(runs)):
        for form in FORMATS:
            measured.setdefault((WITHOUT, form), []).append(run(korvana, folder, WITHOUT, form))
            measured.setdefault(("summary", form), []).append(run(korvana, folder, "summary", form))
    medians = {what: [statistics.median(column) for column in zip(*rows)] for what, rows in measured.items()}

    print(f"\n{processor()}, {os.cpu_count()} cores; medians of {runs} alternating runs\n")
    print("| Format | MB | s | MB/s | Peak memory, MB | without the table |")
    print("|---|---|---|---|---|---|")
    for form in FORMATS:
        seconds, memory, size = medians["summary", form]
        seconds -= medians[WITHOUT, form][0]
        print(f"| {form} | {size / 1e6:.1f} | {seconds:.2f} | {size / 1e6 / max(seconds, 0.001):.0f} | {memory:.0f} | "
              f"{medians[WITHOUT, form][1]:.0f} |")
    print()


if __name__ == "__main__":
    main(*sys.argv[1:])
