"""Runs the program with too few resources: memory limits of every size, and no further thread.

usage: limits.py PROGRAM DATA [NO_THREADS_LIBRARY]

At any limit, a run ends in time, with all results or with exit 2 and a message, never by a signal; no message has a
name of the program's inside; and numbers are written whenever a run without pictures can write them at the same limit.
"""
import gzip
import json
import math
import os
import random
import resource
import shutil
import subprocess
import sys
import tempfile
import zipfile

KIB = 1024
SECONDS = 60
LOADER_FAILS = 127
LARGE_FILE = 4 * KIB * KIB
PICTURES = ["svg", "png", "pdf", "html"]
CODES = ["--complete", "1", "--censored", "0"]
KAPLAN_MEIER = ["kaplan-meier", "--time", "weeks", "--censor", "relapse", *CODES]
OF_GROUPS = ["--time", "weeks", "--censor", "relapse", *CODES, "--covariates", "group:cat=placebo"]
faults = []


def ends(command, memory=None, preload=None):
    """Exit status (negative: a signal) and standard error under a limit in KiB."""
    def limit():
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        if memory is not None:
            resource.setrlimit(resource.RLIMIT_AS, (memory * KIB, memory * KIB))

    environment = dict(os.environ, **({"LD_PRELOAD": preload} if preload else {}))
    try:
        done = subprocess.run(command, capture_output=True, text=True, errors="replace", timeout=SECONDS,
                              preexec_fn=limit, env=environment)
    except subprocess.TimeoutExpired:
        return "hangs", ""
    return done.returncode, done.stderr


def run(program, data, formats, memory=None, preload=None, analysis=KAPLAN_MEIER):
    """Exit status, standard error, and the files written, with their contents."""
    with tempfile.TemporaryDirectory() as folder:
        out = os.path.join(folder, "out")
        status, said = ends([program, analysis[0], data, *analysis[1:], "--quiet", "-o", out, "--format", formats],
                            memory, preload)
        files = {name: content(os.path.join(out, name)) for name in os.listdir(out)} if os.path.isdir(out) else {}
        return status, said, files


def content(path):
    """The tables of results.json, which also lists the pictures; the sheets of a workbook; of other files their size."""
    if path.endswith(".xlsx"):
        with zipfile.ZipFile(path) as book:
            return [(one.filename, one.file_size, one.CRC) for one in book.infolist() if "docProps" not in one.filename]
    if os.path.basename(path) != "results.json":
        return f"{os.path.getsize(path)} bytes"
    with open(path, encoding="utf-8") as file:
        return json.load(file)["spreadsheets"]


def least(suffices, step):
    """The least memory in KiB that suffices, to within a step."""
    low, high = 4 * KIB, 4 * KIB * KIB
    while high - low > step:
        middle = (low + high) // 2
        low, high = (low, middle) if suffices(middle) else (middle, high)
    return high


def check_beginning(program, data):
    """Small steps from the limit at which the system can load the program: start-up before main() needs memory, too."""
    loads = least(lambda memory: ends([program, "--version"], memory)[0] != LOADER_FAILS, 4)
    refused = 0
    for memory in range(loads, loads + 1024, 16):
        for command in [["--version"], ["info", data]]:
            status, said = ends([program, *command], memory)
            refused += status == 2
            if status != 0 and (status != 2 or not said.startswith("korvana: ")):
                faults.append(f"{command[0]} at {memory} KiB: ended with {status}: {said!r}")
    assert faults or (refused > 0 and status == 0), "the sweep passed by where the memory begins to suffice"
    return loads


def check(what, outcome, wanted):
    status, said, files = outcome
    if status not in (0, 2) or (status == 2 and not said.startswith("korvana: ")):
        faults.append(f"{what}: ended with {status}: {said!r}")
    if any(word in said for word in ["bad_alloc", "terminate", "[ERROR]", "Exception", "::"]):
        faults.append(f"{what}: names of the program's inside: {said}")
    for name, holds in wanted.items():
        if files.get(name) != holds:
            faults.append(f"{what}: {name} has {files.get(name)} instead of {holds}"[:400])
    if any(name.endswith(".part") for name in files):
        faults.append(f"{what}: left {sorted(files)}")


def sweep(program, data, analysis, limits):
    """Whatever a regression needs memory for, it ends with all tables, or with exit 2 and a message about memory."""
    whole = run(program, data, "json", analysis=analysis)
    assert whole[0] == 0 and whole[2]["results.json"], whole
    ended = []
    for memory in limits:
        outcome = run(program, data, "json", memory, analysis=analysis)
        what = f"{' '.join(analysis[:3])} of {os.path.basename(data)} at {memory} KiB"
        check(what, outcome, whole[2] if outcome[0] == 0 else {name: outcome[2][name] for name in outcome[2]})
        if (outcome[0] == 0 and "memory" in outcome[1]) or (outcome[0] == 2 and "memory" not in outcome[1]):
            faults.append(f"{what}: ended with {outcome[:2]}")
        ended.append(outcome[0])
    return ended


def check_regressions(program, data, enough):
    # Their matrices are on the stack, which grows as long as there is memory.
    for analysis in [["cox"], ["regression", "--model", "lognormal"]]:
        ended = sweep(program, data, analysis + OF_GROUPS, range(enough - KIB, enough + KIB, 32))
        assert faults or (ended[0] == 2 and ended[-1] == 0), ended
    with tempfile.TemporaryDirectory() as folder:
        large = os.path.join(folder, "large.csv")
        numbers = random.Random(1)
        with open(large, "w", encoding="ascii") as file:
            file.write("t,e,a,b,c,d,f\n")
            for _ in range(32_000):
                x = [numbers.gauss(0, 1) for _ in range(5)]
                time = math.exp(1 + 0.3 * x[0] - 0.2 * x[1] + numbers.gauss(0, 1))
                file.write(f"{time:.5f},{int(numbers.random() < 0.7)},{','.join(f'{value:.4f}' for value in x)}\n")
        of_all = ["--time", "t", "--censor", "e", *CODES, "--covariates", "a,b,c,d,f", "--outputs"]
        one = ["regression", "--model", "lognormal", *of_all, "summary,residuals"]
        ended = sweep(program, large, one, range(enough + 4 * KIB, enough + 18 * KIB, 2 * KIB))
        assert faults or (ended[0] == 2 and ended[-1] == 0), ended
        sweep(program, large, ["regression", "--model", "all", *of_all, "all"],
              range(enough + 7 * KIB, enough + 19 * KIB, 4 * KIB))


def check_kept_values(program, enough):
    """Values of expressions that have no room are computed each time; that changes nothing and is no lack of memory."""
    with tempfile.TemporaryDirectory() as folder:
        data = os.path.join(folder, "data.csv")
        numbers = random.Random(2)
        with open(data, "w", encoding="ascii") as file:
            file.write("t,e,x\n")
            for _ in range(2000):
                x = numbers.gauss(0, 1)
                file.write(f"{numbers.expovariate(math.exp(0.5 * x)):.5f},{int(numbers.random() < 0.7)},{x:.4f}\n")
        command = [program, "cox-time", data, "--time", "t", "--censor", "e", *CODES, "--covariate", "x=x",
                   "--covariate", "xT=x*T_", "--verbose", "--format", "json", "-o"]
        found = []
        for memory, said in [(None, "values of the expressions are kept: "),
                             (enough + 4 * KIB, "the expressions are evaluated each time")]:
            out = os.path.join(folder, str(memory))
            ended = ends([*command, out], memory)
            if ended[0] != 0 or said not in ended[1]:
                faults.append(f"values of expressions at {memory} KiB: {ended}")
                continue
            found.append(content(os.path.join(out, "results.json")))
            status, refusal = ends([*command, out + "-few", "--max-iterations", "3", "--criterion", "0.00001"], memory)
            if status != 1 or "enough memory" in refusal:
                faults.append(f"no convergence, at {memory} KiB: {status}: {refusal}")
        if found[1:] != found[:1]:
            faults.append("whether values of expressions are kept changes the results")


def check_large_data(program, enough, preloads):
    with tempfile.TemporaryDirectory() as folder:
        packed = os.path.join(folder, "zeros.csv.gz")
        with gzip.open(packed, "wt", encoding="ascii") as file:
            file.write("x\n" + "0\n" * (16 * KIB * KIB))
        status, said = ends([program, "info", packed], enough + 32 * KIB)
        if status != 2 or f"{packed}: there is not enough memory for the data" not in said:
            faults.append(f"data that unpack to more than the memory: {status}: {said}")
        # Large files are read by several threads if they are available.
        large = os.path.join(folder, "large.csv")
        with open(large, "w", encoding="ascii") as file:
            file.write("weeks,relapse\n" + "".join(f"{i},{i % 2}\n" for i in range(1, 600_001)))
        assert os.path.getsize(large) > LARGE_FILE
        for library in preloads:
            outcome = run(program, large, "txt", preload=library)
            check("a large file without threads", outcome, {})
            if outcome[0] != 0:
                faults.append(f"a large file without threads: {outcome}")


def main():
    program, data = sys.argv[1:3]
    loads = check_beginning(program, data)

    status, said, whole = run(program, data, "json,csv,txt")
    assert status == 0 and len(whole) > 3, said
    # Below, the system may not even load the program.
    enough = least(lambda memory: run(program, data, "json", memory)[0] == 0, 256)
    # No library that only draws is loaded for numbers.
    assert enough < 32 * KIB, enough
    check_large_data(program, enough, sys.argv[3:])
    check_regressions(program, data, enough)
    check_kept_values(program, enough)
    # A workbook is written whole or not at all; its library takes memory in many small pieces.
    writes = least(lambda memory: run(program, data, "xlsx", memory)[0] == 0, 64)
    limits = range(max(loads, writes - KIB), writes + 2 * KIB, 64)
    outcomes = [run(program, data, "xlsx", memory) for memory in limits]
    for memory, outcome in zip(limits, outcomes):
        what = f"xlsx at {memory} KiB"
        # A message, such as that a chart could not be made, stands in the workbook's report.
        whole_book = outcome[0] == 0 and not outcome[1]
        check(what, outcome, {"results.xlsx": outcomes[-1][2]["results.xlsx"]} if whole_book else {})
        if outcome[0] == 0 and "results.xlsx" not in outcome[2]:
            faults.append(f"{what}: {outcome}")
        if outcome[0] == 2 and (outcome[2] or "not enough memory" not in outcome[1]):
            faults.append(f"{what}: {outcome}")
    assert {outcome[0] for outcome in outcomes} >= {0, 2}, (writes, [outcome[:2] for outcome in outcomes])

    complete = dict.fromkeys(PICTURES, 0)
    refused = 0
    # Limits at which the drawing libraries cannot be loaded, fail, and succeed: some 90 MiB above.
    for step in [*range(0, 64 * KIB, 16 * KIB), *range(64 * KIB, 104 * KIB, 4 * KIB), 160 * KIB]:
        for formats in PICTURES:
            outcome = run(program, data, "json,csv,txt," + formats, enough + 512 + step)
            check(f"{formats} at {enough + 512 + step} KiB", outcome, whole)
            complete[formats] += outcome[0] == 0
            refused += outcome[0] == 2
    # Else the sweep missed all failures, or never reached a success.
    assert refused > 0 and all(complete.values()), (enough, complete, refused)

    with tempfile.TemporaryDirectory() as folder:  # without what draws
        for file in ["korvana", "libkorvana-support.so", "libOZMSurvival.so"]:
            shutil.copy(os.path.join(os.path.dirname(program), file), folder)
        for formats in PICTURES:
            outcome = run(os.path.join(folder, "korvana"), data, "json,csv,txt," + formats)
            check(f"{formats} without the drawing library", outcome, whole)
            if outcome[0] != 2 or "libkorvana-drawing.so" not in outcome[1]:
                faults.append(f"{formats} without the drawing library: {outcome[:2]}")
    for library in sys.argv[3:]:
        for formats in PICTURES:
            outcome = run(program, data, "json,csv,txt," + formats, preload=library)
            check(f"{formats} without threads", outcome, whole)
            if outcome[0] != 0 or len(outcome[2]) <= len(whole):
                faults.append(f"{formats} without threads: {outcome}")

    print("\n".join(faults) or f"least memory {enough} KiB; {refused} pictures refused, {complete} drawn")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
