"""Ends the command line at many moments, by signals, limits and closed pipes, and checks what is left.

usage: stops.py KORVANA [RUNS]

A run that is stopped leaves the folder as it was, says so and exits as the shell expects; one that finished has all of
its files. Nothing else is allowed, at any moment; and no run leaves anything elsewhere."""
import os
import random
import resource
import signal
import subprocess
import sys
import tempfile
import time

korvana = os.path.abspath(sys.argv[1])
runs = int(sys.argv[2]) if len(sys.argv) > 2 else 12
chance = random.Random(7)
environment = {name: value for name, value in os.environ.items() if not name.startswith(("XDG_", "QT_"))}
faults = []


def contents(folder):
    """Names and bytes of all files below; None when there is no such folder."""
    if not os.path.isdir(folder):
        return None
    found = {}
    for place, _, names in os.walk(folder):
        for name in names:
            with open(os.path.join(place, name), "rb") as file:
                found[os.path.relpath(os.path.join(place, name), folder)] = file.read()
    return found


def command(data, folder, formats):
    return [korvana, "kaplan-meier", data, "--time", "time", "--censor", "status", "--complete", "1", "--censored", "0",
            "-o", folder, "--format", formats]


def write_earlier(folder):
    """Writes the files of an earlier run."""
    subprocess.run(command("few.csv", folder, "json,txt,svg"), env=environment, check=True, capture_output=True)
    return contents(folder)


def check(truth, text):
    if not truth:
        faults.append(text)
        print("FAULT", text)


def write_data(path, cases):
    with open(path, "w", encoding="ascii") as file:
        file.write("time,status\n" + "".join(f"{case % 997 + 1},{int(case % 3 > 0)}\n" for case in range(cases)))


def stop_at_random_moments():
    formats = "json,csv,html,xlsx,png"
    start = time.monotonic()
    subprocess.run(command("many.csv", "whole", formats), env=environment, check=True, capture_output=True)
    length = time.monotonic() - start
    complete = set(contents("whole"))
    stopped = waited = rest = 0
    for run in range(5 * runs):
        if stopped == runs:
            break
        number = [signal.SIGINT, signal.SIGTERM, signal.SIGHUP][run % 3]
        folder = f"run/of/{run}"
        # Into the folder of an earlier run, else into a new one.
        before = write_earlier(folder) if run % 2 == 0 else None
        # Late moments are when files are written.
        delay = length * (1 - chance.random() ** 2)
        start = time.monotonic()
        process = subprocess.Popen(command("many.csv", folder, formats), env=environment, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.PIPE, text=True,
                                   preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_DFL))
        try:
            process.wait(delay)
            length = time.monotonic() - start  # the machine has less to do than before
        except subprocess.TimeoutExpired:
            process.send_signal(number)
        asked = time.monotonic()
        error = process.communicate(timeout=60)[1]
        what = f"{number.name} after {delay:.2f} of {length:.2f} s"
        left = contents(folder)
        if process.returncode == 0:
            check(set(left) == complete, f"{what}: came through, but left {sorted(left)}")
        elif process.returncode == -number:
            # Before the program had set its handlers: nothing had begun.
            check(delay < length / 2 and left == before, f"{what}: died of the signal")
        else:
            stopped += 1
            waited += time.monotonic() - asked
            rest += length - delay
            check(process.returncode == 128 + number, f"{what}: exit {process.returncode}: {error}")
            check(error.endswith("korvana: stopped\n"), f"{what}: said {error!r}")
            all_done = left is not None and set(left) == complete
            check(all_done or left == before, f"{what}: left {left if left is None else sorted(left)}")
    check(stopped >= runs / 2, f"only {stopped} of {run + 1} runs were stopped")
    # Compared with the remaining time, for machines of any speed.
    check(waited < 0.6 * rest, f"after a stop {waited:.1f} s went by where {rest:.1f} s were left to do")
    print(f"{stopped} of {runs} runs stopped, each of up to {length:.1f} s; waited {waited:.1f} of {rest:.1f} s")


def stop_while_reading_standard_output():
    run = subprocess.run(f"'{korvana}' kaplan-meier many.csv --time time --censor status --complete 1 --censored 0 "
                         "--format json | head -c 10", shell=True, env=environment, capture_output=True, check=True)
    check(run.stdout == b'{"format":', f"through a closed pipe: {run.stdout!r}")
    check(run.stderr == b"", f"a closed pipe is no news: {run.stderr!r}")


def limit_the_size_of_files():
    before = write_earlier("limited")
    for formats, size in [("json", 0), ("csv", 100), ("txt", 100), ("html", 5000), ("xlsx", 5000), ("png", 5000),
                          ("pdf", 5000)]:
        run = subprocess.run(command("many.csv", "limited", formats), env=environment, capture_output=True, text=True,
                             timeout=120,
                             preexec_fn=lambda size=size: resource.setrlimit(resource.RLIMIT_FSIZE, (size, size)))
        what = f"{formats} with files of {size} bytes"
        check(run.returncode == 2, f"{what}: exit {run.returncode}")
        check("korvana: cannot write '" in run.stderr and "File too large" in run.stderr, f"{what}: {run.stderr}")
        left = contents("limited")
        check(left == before, f"{what}: left {sorted(left)}")


def close_standard_files():
    """With any of standard input, output and error closed, files opened later must not get their descriptors."""
    formats = "json,txt,svg,xlsx"
    complete = None
    for which in range(8):
        files = [file for file in range(3) if which & 1 << file]
        folder = f"closed-{which}"
        run = subprocess.run(command("few.csv", folder, formats), env=environment, timeout=120,
                             stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                             preexec_fn=lambda files=files: [os.close(file) for file in files])
        left = contents(folder) or {}
        left.update({name: b"" for name in left if name.endswith(".xlsx")})  # it has the time at which it was made
        complete = complete or left
        check(run.returncode == 0 and len(left) > 4 and left == complete,
              f"without the files {files}: exit {run.returncode}, {sorted(left)}")


def leave_nothing_elsewhere():
    """Each format by itself, with and without a runtime folder: programs that draw like to create one."""
    for formats in "json txt csv html xlsx svg png pdf json,txt,csv,html,xlsx,svg,png,pdf".split():
        for runtime in [None, "no/runtime", "own/runtime"]:
            places = dict(environment)
            if runtime is not None:
                places["XDG_RUNTIME_DIR"] = os.path.abspath(runtime)
            subprocess.run(command("few.csv", f"elsewhere/{formats}", formats), env=places, check=True,
                           capture_output=True)
            check(not os.path.exists("no"), f"{formats}: the runtime folder was created")
            check(os.stat("own/runtime").st_mode & 0o777 == 0o750, f"{formats}: the runtime folder was changed")
            check_elsewhere(formats)


def check_elsewhere(what):
    found = [os.path.join(place, name) for folder in ["home", "temporary", "own/runtime"]
             for place, folders, names in os.walk(folder) for name in folders + names]
    # The system's own index of its fonts, for all programs, which it may make anew.
    found = [path for path in found if not "home/.cache/fontconfig".startswith(path.split("/fontconfig/")[0])]
    check(not found, f"{what}: left {found}")


with tempfile.TemporaryDirectory() as scratch:
    os.chdir(scratch)
    for place in ["home", "temporary", "own/runtime"]:
        os.makedirs(place)
    os.chmod("own/runtime", 0o750)
    environment.update(HOME=os.path.abspath("home"), TMPDIR=os.path.abspath("temporary"))
    write_data("few.csv", 30)
    write_data("many.csv", 20000)
    stop_at_random_moments()
    stop_while_reading_standard_output()
    limit_the_size_of_files()
    close_standard_files()
    check_elsewhere("stopped and limited runs")
    leave_nothing_elsewhere()
    os.chdir("/")
sys.exit(1 if faults else 0)
