"""Ends the command line at many moments, by signals, limits and closed pipes, and looks at what is left.

usage: stops.py KORVANA [RUNS]

A run that is ended leaves the folder as it was, says so and exits as the shell expects; one that came through has all
of its files. Nothing else is allowed, whatever the moment."""
import os
import random
import resource
import signal
import subprocess
import sys
import tempfile
import time

korvana = sys.argv[1]
runs = int(sys.argv[2]) if len(sys.argv) > 2 else 24
chance = random.Random(7)
environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")
patience = 80 if len(sys.argv) <= 2 else 3600  # seconds for each kind of end
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


def check(truth, text):
    if not truth:
        faults.append(text)
        print("FAULT", text)


def write_data(path, cases):
    with open(path, "w", encoding="ascii") as file:
        file.write("time,status\n")
        for case in range(cases):
            file.write(f"{case % 997 + 1},{int(case % 3 > 0)}\n")


def stop_at_random_moments(scratch):
    formats = "json,csv,html,xlsx,png"
    few, many = os.path.join(scratch, "few.csv"), os.path.join(scratch, "many.csv")
    write_data(few, 30)
    write_data(many, 20000)
    earlier, whole = os.path.join(scratch, "earlier"), os.path.join(scratch, "whole")
    subprocess.run(command(few, earlier, "json,txt,svg"), env=environment, check=True, capture_output=True)
    start = time.monotonic()
    subprocess.run(command(many, whole, formats), env=environment, check=True, capture_output=True)
    length = time.monotonic() - start
    before, complete = contents(earlier), set(contents(whole))
    stopped = 0
    tried = 0
    begin = time.monotonic()
    for run in range(runs):
        if run >= 4 and time.monotonic() - begin > patience:  # the machine has other things to do
            break
        tried += 1
        number = [signal.SIGINT, signal.SIGTERM, signal.SIGHUP][run % 3]
        folder = os.path.join(scratch, "run", "of", str(run))
        if run % 2 == 0:  # into the folder of an earlier run, else into one that is not there
            os.makedirs(folder)
            for name, text in before.items():
                with open(os.path.join(folder, name), "wb") as file:
                    file.write(text)
        # Late moments are where files are written.
        delay = length * (1 - chance.random() ** 2)
        process = subprocess.Popen(command(many, folder, formats), env=environment, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.PIPE, text=True,
                                   preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_DFL))
        time.sleep(delay)
        process.send_signal(number)
        asked = time.monotonic()
        error = process.communicate(timeout=60)[1]
        waited = time.monotonic() - asked
        what = f"{number.name} after {delay:.2f} s"
        left = contents(folder)
        if process.returncode == 0:
            check(set(left) == complete, f"{what}: came through, but left {sorted(left)}")
        elif process.returncode == -number:
            # Before the program could ask for the signal: nothing had begun.
            check(delay < 0.5 and left == (before if run % 2 == 0 else None), f"{what}: died of the signal")
        else:
            stopped += 1
            check(process.returncode == 128 + number, f"{what}: exit {process.returncode}: {error}")
            check(error.endswith("korvana: stopped\n"), f"{what}: said {error!r}")
            check(waited < 1 or os.getloadavg()[0] > 4 and waited < 5, f"{what}: took {waited:.2f} s")
            whole_run = left is not None and set(left) == complete  # all was done already
            check(whole_run or left == (before if run % 2 == 0 else None),
                  f"{what}: left {left if left is None else sorted(left)}")
    check(stopped >= tried / 2, f"only {stopped} of {tried} runs were stopped")
    print(f"{stopped} of {tried} runs stopped, each of up to {length:.1f} s")


def stop_while_reading_standard_output(scratch):
    data = os.path.join(scratch, "many.csv")
    run = subprocess.run(f"'{korvana}' kaplan-meier '{data}' --time time --censor status --complete 1 --censored 0 "
                         "--format json | head -c 10", shell=True, env=environment, capture_output=True, check=True)
    check(run.stdout == b'{"format":', f"through a closed pipe: {run.stdout!r}")
    check(run.stderr == b"", f"a closed pipe is no news: {run.stderr!r}")


def limit_the_size_of_files(scratch):
    data, folder = os.path.join(scratch, "many.csv"), os.path.join(scratch, "limited")
    subprocess.run(command(os.path.join(scratch, "few.csv"), folder, "json,txt,svg"), env=environment, check=True,
                   capture_output=True)
    before = contents(folder)
    refused = tried = 0
    begin = time.monotonic()
    for formats in ["json", "csv", "txt", "html", "xlsx", "png", "pdf"]:
        for size in [0, 100, 5000, 70000, 300000]:
            if tried >= 5 and time.monotonic() - begin > patience:
                break
            tried += 1
            run = subprocess.run(
                command(data, folder, formats), env=environment, capture_output=True, text=True, timeout=120,
                preexec_fn=lambda size=size: resource.setrlimit(resource.RLIMIT_FSIZE, (size, size)))
            left = contents(folder)
            what = f"{formats} with files of {size} bytes"
            if run.returncode == 0:
                check(all(len(text) <= size for text in left.values()), f"{what}: larger files")
                subprocess.run(command(os.path.join(scratch, "few.csv"), folder, "json,txt,svg"), env=environment,
                               check=True, capture_output=True)
                continue
            refused += 1
            check(run.returncode == 2, f"{what}: exit {run.returncode}")
            check("korvana: cannot write '" in run.stderr and "File too large" in run.stderr, f"{what}: {run.stderr}")
            check(left == before, f"{what}: left {sorted(left)}")
    check(refused >= tried / 3, f"only {refused} of {tried} runs met the limit")


with tempfile.TemporaryDirectory() as scratch:
    stop_at_random_moments(scratch)
    stop_while_reading_standard_output(scratch)
    limit_the_size_of_files(scratch)
sys.exit(1 if faults else 0)
