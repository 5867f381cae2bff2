"""The program where the system gives it less than it asks for: memory limits of every size, and no further thread.

usage: limits.py PROGRAM DATA [NO_THREADS_LIBRARY]

Whatever the limit, a run ends within its time, with results or with exit 2 and a message, never by a signal; what it
says names no C++ exception; and numbers are written whenever the same limit lets a run without pictures write them.
"""
import json
import os
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


def run(program, data, formats, memory=None, preload=None):
    """Exit status (negative: a signal), standard error, and the files that were written with what is in them."""
    with tempfile.TemporaryDirectory() as folder:
        command = [program, "kaplan-meier", data, "--time", "weeks", "--censor", "relapse", "--complete", "1",
                   "--censored", "0", "--quiet", "-o", os.path.join(folder, "out"), "--format", formats]

        def limit():
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            if memory is not None:
                resource.setrlimit(resource.RLIMIT_AS, (memory, memory))

        environment = dict(os.environ)
        if preload is not None:
            environment["LD_PRELOAD"] = preload
        try:
            done = subprocess.run(command, capture_output=True, text=True, errors="replace", timeout=SECONDS,
                                  preexec_fn=limit, env=environment)
        except subprocess.TimeoutExpired:
            return "hangs", "", {}
        out = os.path.join(folder, "out")
        files = {name: content(os.path.join(out, name)) for name in os.listdir(out)} if os.path.isdir(out) else {}
        return done.returncode, done.stderr, files


def content(path):
    """The tables of results.json, which also lists the pictures; the sheets of a workbook; of other files their size."""
    if path.endswith(".xlsx"):
        with zipfile.ZipFile(path) as book:
            return [(one.filename, one.file_size, one.CRC) for one in book.infolist() if "docProps" not in one.filename]
    if os.path.basename(path) != "results.json":
        return f"{os.path.getsize(path)} bytes"
    with open(path, encoding="utf-8") as file:
        return json.load(file)["spreadsheets"]


def least_memory(program, data):
    """Where a run that draws nothing succeeds; below, the system may not even load the program."""
    low, high = 0, 4 * KIB * KIB
    while high - low > 256:
        middle = (low + high) // 2
        if run(program, data, "json", middle * KIB)[0] == 0:
            high = middle
        else:
            low = middle
    return high


def ends_at(command, memory):
    """Exit status and standard error under a limit in KiB."""
    def limit():
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        resource.setrlimit(resource.RLIMIT_AS, (memory * KIB, memory * KIB))

    done = subprocess.run(command, capture_output=True, text=True, errors="replace", timeout=SECONDS,
                          preexec_fn=limit)
    return done.returncode, done.stderr


def check_beginning(program, data, faults):
    """From where the system can load the program on, in small steps: what is made before main() needs memory, too."""
    low, high = 4 * KIB, 4 * KIB * KIB
    while high - low > 4:
        middle = (low + high) // 2
        if ends_at([program, "--version"], middle)[0] == LOADER_FAILS:
            low = middle
        else:
            high = middle
    refused = 0
    for memory in range(high, high + 1024, 16):
        for command in [["--version"], ["info", data]]:
            status, said = ends_at([program, *command], memory)
            refused += status == 2
            if status != 0 and (status != 2 or not said.startswith("korvana: ")):
                faults.append(f"{command[0]} at {memory} KiB: ended with {status}: {said!r}")
    assert faults or (refused > 0 and status == 0), "the sweep passed by where the memory begins to suffice"


def main():
    program, data = sys.argv[1:3]
    faults = []
    check_beginning(program, data, faults)

    def check(what, outcome, wanted):
        status, said, files = outcome
        if status not in (0, 2):
            faults.append(f"{what}: ended with {status}: {said}")
        if status == 2 and not said.startswith("korvana: "):
            faults.append(f"{what}: failed without a message: {said!r}")
        if "bad_alloc" in said or "terminate" in said:
            faults.append(f"{what}: {said}")
        for name, holds in wanted.items():
            if files.get(name) != holds:
                faults.append(f"{what}: {name} has {files.get(name)} instead of {holds}")
        if "[ERROR]" in said:
            faults.append(f"{what}: a library speaks: {said}")
        if any(name.endswith(".part") for name in files):
            faults.append(f"{what}: left {sorted(files)}")

    status, said, whole = run(program, data, "json,csv,txt")
    assert status == 0 and len(whole) > 3, said
    for formats in PICTURES:
        status, said, files = run(program, data, formats)
        assert status == 0 and files, (formats, said)

    least = least_memory(program, data)
    # No library that only draws is loaded for numbers.
    assert least < 32 * KIB, least
    # A workbook is written whole or not at all; its library needs some 1.5 MiB more, in many small pieces.
    outcomes = [run(program, data, "xlsx", memory * KIB) for memory in range(least, least + 3 * KIB, 64)]
    for place, outcome in enumerate(outcomes):
        whole_book = outcomes[-1][2] if outcome[0] == 0 else {}
        check(f"xlsx at {least + 64 * place} KiB", outcome,
              {name: holds for name, holds in whole_book.items() if name == "results.xlsx"})
        if outcome[0] == 2 and (outcome[2] or "not enough memory" not in outcome[1]):
            faults.append(f"xlsx at {least + 64 * place} KiB: {outcome}")
    assert {outcome[0] for outcome in outcomes} >= {0, 2}, (least, [outcome[:2] for outcome in outcomes])

    complete = dict.fromkeys(PICTURES, 0)
    refused = 0
    # Where the drawing libraries cannot be loaded, where they fail, and where a picture is drawn: some 90 MiB above.
    steps = [*range(0, 64 * KIB, 16 * KIB), *range(64 * KIB, 104 * KIB, 4 * KIB), 160 * KIB]
    for step in steps:
        for formats in PICTURES:
            outcome = run(program, data, "json,csv,txt," + formats, (least + 512 + step) * KIB)
            check(f"{formats} at {least + 512 + step} KiB", outcome, whole)
            complete[formats] += outcome[0] == 0
            refused += outcome[0] == 2
    # Else the sweep went past everything that can fail, or never reached what can succeed.
    assert refused > 0 and all(complete.values()), (least, complete, refused)

    with tempfile.TemporaryDirectory() as folder:  # without what draws
        alone = os.path.join(folder, "korvana")
        for file in ["korvana", "libkorvana-support.so", "libOZMSurvival.so"]:
            shutil.copy(os.path.join(os.path.dirname(program), file), folder)
        for formats in PICTURES:
            outcome = run(alone, data, "json,csv,txt," + formats)
            check(f"{formats} without the drawing library", outcome, whole)
            if outcome[0] != 2 or "libkorvana-drawing.so" not in outcome[1]:
                faults.append(f"{formats} without the drawing library: {outcome[:2]}")

    for library in sys.argv[3:]:
        for formats in PICTURES:
            what = f"{formats} without threads"
            outcome = run(program, data, "json,csv,txt," + formats, preload=library)
            check(what, outcome, whole)
            if outcome[0] != 0 or len(outcome[2]) <= len(whole):
                faults.append(f"{what}: {outcome}")
        # Large files are read by several threads where there are some.
        with tempfile.NamedTemporaryFile("w", suffix=".csv") as large:
            large.write("weeks,relapse\n" + "".join(f"{i},{i % 2}\n" for i in range(1, 600_001)))
            large.flush()
            assert os.path.getsize(large.name) > LARGE_FILE
            outcome = run(program, large.name, "txt", preload=library)
            check("a large file without threads", outcome, {})
            if outcome[0] != 0:
                faults.append(f"a large file without threads: {outcome}")

    print("\n".join(faults) or f"least memory {least} KiB; {refused} pictures refused, {complete} drawn")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
