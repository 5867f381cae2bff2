"""Records a run of every analysis, runs the script, and compares what both made: numbers, texts, origins, messages.

usage: recording.py KORVANA SOURCE_FOLDER"""
import filecmp
import glob
import json
import os
import re
import subprocess
import sys
import tempfile

korvana, source = sys.argv[1:3]
environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", PYTHONDONTWRITEBYTECODE="1")
data = os.path.join(os.path.abspath(source), "examples", "data")
codes = ["--complete", "1", "--censored", "0"]
aml = [os.path.join(data, "aml.csv"), "--time", "time", "--censor", "status", *codes]
angina = [os.path.join(data, "angina.csv"), "--table", "lower,withdrawn,dying"]
veteran = [os.path.join(data, "veteran.csv"), "--time", "time", "--censor", "status", *codes]

# Names and labels that would end a literal, or be taken for something else, if they were written as they are.
odd = """t|`s "q"|d|g\\n|w
1,5|it's "dead"|01/02/1995|a, b|1
2|alive\\|01/03/1995|{c}|2
3,25|it's "dead"|02/03/1995|a, b|3
4|alive\\|01/04/1995|{c}|0,5
5,5|it's "dead"|03/04/1995|ä\u202e#|1
9|it's "dead"|03/05/1995|ä\u202e#|1
"""
told = ["--separator", "|", "--decimal", "comma", "--dates", "mdy", "--header"]
of_odd = ["odd.txt", *told, "--time", "t", "--censor", '`s "q"', "--complete", 'it\'s "dead"', "--censored", "alive\\"]

# What is run, and how often the script opens the analysis.
cases = {
    "kaplan-meier": [
        aml,
        aml + ["--select", "time > 5", "--weight", "time", "--missing", "time=9", "--level", "0.9"],
        of_odd + ["--define", "late = d > 2449720", "--select", "late >= 0 and `g\\n` <> '{c}'", "--weight", "w"],
    ],
    "life-table": [
        aml + ["--intervals", "5", "--no-correction"],
        aml + ["--step", "12.345678901234567", "--distribution", "weibull,gompertz", "--weighting", "1,3"],
        angina + ["--entering", "2418", "--survival", ".9,.5", "--times", "1,0.1", "--level", "0.9"],
        angina + ["--outputs", "survival-times"],
    ],
    "two-sample": [
        aml + ["--group", "group", "--group1", "Nonmaintained", "--group2", "Maintained"],
        of_odd + ["--group", "g\\n", "--group1", "ä\u202e#", "--group2", "a, b"],
    ],
    "k-sample": [
        veteran + ["--group", "celltype", "--codes", "squamous,large,adeno"],
        veteran + ["--group", "trt", "--define", "young = age < 50", "--select", "young = 0"],
    ],
    "cox": [
        aml + ["--covariates", "group:cat"],
        veteran + ["--covariates", "karno,celltype:cat=large", "--strata", "trt", "--separate", "--at",
                   "karno=60,celltype=adeno", "--at", "karno=90.125", "--criterion", "0.00123456789012345", "--start",
                   "0.1,0,-0.25,0", "--level", "0.9"],
        veteran + ["--covariates", "karno,diagtime,age", "--missing", "age=63", "--mean-substitution", "--strata",
                   "celltype", "--strata-codes", "large,adeno", "--max-iterations", "20"],
        # Questions on the way: the iterations are used up several times.
        veteran + ["--covariates", "karno,age", "--criterion", "0.00001", "--max-iterations", "3", "--continue"],
    ],
    "cox-time": [
        veteran + ["--covariate", "k=karno", "--covariate", "kT=karno*log(T_+20)", "--strata", "trt", "--separate"],
        veteran + ["--covariate", "is 'L'=celltype = 'large'", "--covariate", "kT=karno*(T_>99)", "--missing",
                   "karno=30", "--mean-substitution", "--start", "0,0.01", "--criterion", "0.001"],
    ],
    "regression": [
        aml + ["--covariates", "group:cat", "--model", "all", "--at", "group=Maintained"],
        veteran + ["--covariates", "karno,age", "--model", "lognormal", "--start", "0,0.01,5,1", "--max-iterations",
                   "60"],
        veteran + ["--covariates", "karno", "--model", "exponential", "--level", "0.5", "--outputs", "summary,forest"],
    ],
}


def call(*arguments, folder, expected=0, **options):
    done = subprocess.run([korvana, *arguments], env=environment, cwd=folder, capture_output=True, text=True,
                          errors="surrogateescape", **options)
    assert done.returncode == expected, (f"{arguments}: exit {done.returncode}, not {expected}\n{done.stdout}"
                                         f"\n{done.stderr}")
    return done


def book(folder):
    """The results.json without what says how the files were asked for."""
    with open(os.path.join(folder, "results.json"), encoding="utf-8") as file:
        results = json.load(file)
    for run in results["runs"]:
        run["data"]["file"] = os.path.basename(run["data"]["file"])
    del results["files"]     # --format is of the command
    # Outputs that failed are not in a script.
    del results["status"]
    results["messages"] = [each for each in results["messages"] if not each["detail"].startswith("Output: ")]
    del results["analysis"]  # a command gives its results a title of its own
    # Commands tell how they understood their options; indicators are a sentence for all of them there.
    own = re.compile(r"Computed|[Ii]ndicator|taken|stands for|covariate|no case has this code|enter the first interval")
    results["notes"] = [note for note in results["notes"] if not own.search(note)]
    return results


def differences(one, other, place=""):
    if isinstance(one, dict) and isinstance(other, dict) and one.keys() == other.keys():
        return [d for key in one for d in differences(one[key], other[key], f"{place}/{key}")]
    if isinstance(one, list) and isinstance(other, list) and len(one) == len(other):
        return [d for i, (a, b) in enumerate(zip(one, other)) for d in differences(a, b, f"{place}/{i}")]
    return [] if one == other else [f"{place}: {str(one)[:200]} | {str(other)[:200]}"]


with tempfile.TemporaryDirectory() as scratch:
    with open(os.path.join(scratch, "odd.txt"), "w", encoding="utf-8") as file:
        file.write(odd)
    listed = call("--help", folder=scratch).stdout.split("Commands:")[1].split("Options:")[0]
    commands = [line.split()[0] for line in listed.splitlines() if line.startswith("  ") and line[2] != " "]
    recording = {name for name in commands if "--record" in call(name, "--help", folder=scratch).stdout}
    assert recording == set(cases), f"commands that record: {recording}; tried here: {set(cases)}"

    elsewhere = os.path.join(scratch, "elsewhere")
    os.mkdir(elsewhere)
    for name, lines in cases.items():
        for place, arguments in enumerate(lines):
            first = os.path.join(scratch, f"{name}-{place}")
            again = os.path.join(elsewhere, f"{name}-{place}")
            call(name, *arguments, "-o", first, "--format", "json,csv,py", "--record", f"{name}-{place}.py",
                 folder=scratch)
            assert filecmp.cmp(os.path.join(first, "script.py"), f"{first}.py", shallow=False), name
            call("run", os.path.join(first, "script.py"), again, folder=elsewhere)
            different = differences(book(first), book(again))
            assert not different, f"{name} {arguments}:\n" + "\n".join(different[:9])
            tables = sorted(map(os.path.basename, glob.glob(os.path.join(first, "*.csv"))))
            assert tables, f"{name} {arguments} made no table"
            for table in tables:
                assert filecmp.cmp(os.path.join(first, table), os.path.join(again, table), shallow=False), (name, table)
            # A script records itself: the next one is the same.
            with open(os.path.join(first, "script.py"), encoding="utf-8") as file:
                script = file.read()
            assert "\u202e" not in script, "a text changes how the script is shown"
            with open(os.path.join(again, "script.py"), encoding="utf-8") as file:
                recorded = file.read()
            given = "  # given as "
            assert recorded == "\n".join(line.split(given)[0] for line in script.split("\n")), (
                f"{name} {arguments}:\n{script}\n--- recorded again:\n{recorded}")

    # Without a folder the results are shown; the data are found from anywhere.
    call("kaplan-meier", "odd.txt", *of_odd[1:], "--record", "shown.py", folder=scratch)
    shown = call("run", os.path.join(scratch, "shown.py"), folder=elsewhere).stdout
    assert "Product-Limit" in shown or "product-limit" in shown, shown[:500]

    # Data that cannot be opened again are a place to fill in.
    with open(os.path.join(data, "aml.csv"), encoding="utf-8") as file:
        call("kaplan-meier", "-", *aml[1:], "--record", "piped.py", folder=scratch, input=file.read())
    asks = call("run", "piped.py", folder=scratch, expected=1).stderr
    assert "Fill in DATA" in asks, asks
    with open(os.path.join(scratch, "piped.py"), encoding="utf-8") as file:
        script = file.read()
    with open(os.path.join(scratch, "piped.py"), "w", encoding="utf-8") as file:
        file.write(script.replace("DATA = None", f"DATA = {aml[0]!r}"))
    call("run", "piped.py", folder=scratch)
print("ok")
