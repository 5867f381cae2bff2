#!/usr/bin/env python3
"""How long calls from Python take, beside the module's own time and R's.

    PYTHONPATH=build/release/python bench/python.py build/release/bin/korvana [ROWS [RUNS]]

ROWS (10 million by default) in a DataFrame of a float and an int8 column, kaplan_meier with its usual outputs. The
module's own time is what `korvana --timing` reports for the same data from a file, without the phases of reading the
file and writing the results. R has the same numbers in memory and computes survfit with log-log limits. Then calls on
100 rows, each with its usual outputs and with the summary alone. Prints medians; ends with 1 where a call takes more
than 1.2 times the module's own time, or one on 100 rows more than a millisecond.
"""
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import numpy as np
import pandas as pd

import korvana as kv

CASES = {"time": "time", "censor": "status", "complete": 1, "censored": 0}
NOT_THE_MODULE = ("Opening the file", "Writing", "total")

SURVFIT = """
suppressPackageStartupMessages(library(survival))
arguments <- commandArgs(TRUE)
rows <- as.numeric(arguments[2])
connection <- file(arguments[1], "rb")
time <- readBin(connection, "double", rows)
status <- readBin(connection, "integer", rows, size = 1)
for (run in seq_len(as.integer(arguments[3])))
  cat(system.time(survfit(Surv(time, status) ~ 1, conf.type = "log-log"))[["elapsed"]], "")
"""


def median(seconds):
    return f"{statistics.median(seconds):.3f} s (from {min(seconds):.3f} to {max(seconds):.3f})"


def timed(work, runs):
    seconds = []
    for _ in range(runs):
        begin = time.perf_counter()
        work()
        seconds.append(time.perf_counter() - begin)
    return seconds


def module_time(program, path):
    """The phases of the module, in seconds."""
    done = subprocess.run([program, "kaplan-meier", path, "--time", "time", "--censor", "status", "--complete", "1",
                           "--censored", "0", "--format", "json", "--timing", "--outputs", "summary,percentiles"],
                          stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, check=True)
    phases = (line.rsplit(None, 2) for line in done.stderr.splitlines() if line.endswith(" s"))
    return sum(float(seconds) for name, seconds, _ in phases if name.strip() not in NOT_THE_MODULE)


def main():
    program = sys.argv[1]
    rows = int(sys.argv[2]) if len(sys.argv) > 2 else 10_000_000
    runs = int(sys.argv[3]) if len(sys.argv) > 3 else 5
    random = np.random.default_rng(1)
    frame = pd.DataFrame({"time": random.exponential(100.0, rows), "status": (random.random(rows) < 0.7).astype("i1")})
    print(f"{rows} rows, medians of {runs} runs")

    app = kv.Application()
    print("open a float column:      ", median(timed(lambda: app.open({"time": frame["time"]}), runs)))
    print("open both columns:        ", median(timed(lambda: app.open(frame), runs)))
    app.close()
    calls = timed(lambda: kv.kaplan_meier(frame, **CASES), runs)
    print("kaplan_meier:             ", median(calls))
    with tempfile.TemporaryDirectory() as folder:
        path = Path(folder, "data.csv")
        frame.to_csv(path, index=False)
        own = [module_time(program, path) for _ in range(runs)]
        print("the module's own time:    ", median(own))
        path.unlink()
        if shutil.which("Rscript"):
            with open(path, "wb") as out:
                frame["time"].to_numpy().tofile(out)
                frame["status"].to_numpy().tofile(out)
            script = Path(folder, "survfit.R")
            script.write_text(SURVFIT, encoding="ascii")
            done = subprocess.run(["Rscript", script, path, str(rows), str(runs)], capture_output=True, text=True,
                                  check=True)
            print("R's survfit:              ", median([float(each) for each in done.stdout.split()]))
    ratio = statistics.median(calls) / statistics.median(own)
    print(f"kaplan_meier takes {ratio:.2f} times the module's own time")

    texts = pd.DataFrame({"text": [f"group {i}" for i in random.integers(0, 1000, 10**6)]})
    app = kv.Application()
    print("open a million texts:     ", median(timed(lambda: app.open(texts), runs)))

    few = frame.head(100).copy()
    small = timed(lambda: kv.kaplan_meier(few, **CASES), 500)
    print(f"100 rows, usual outputs:   {1e3 * statistics.median(small):.3f} ms")
    one = timed(lambda: kv.kaplan_meier(few, **CASES, outputs="summary"), 500)
    print(f"100 rows, the summary:     {1e3 * statistics.median(one):.3f} ms")
    return 1 if ratio > 1.2 or statistics.median(small) > 1e-3 else 0


if __name__ == "__main__":
    sys.exit(main())
