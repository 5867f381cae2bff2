"""Checks the results.json of real runs of every analysis against docs/results.schema.json.

usage: results_json.py KORVANA SOURCE_FOLDER"""
import copy
import json
import os
import subprocess
import sys
import tempfile

import jsonschema

korvana, source = sys.argv[1:3]
environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")
data = os.path.join(source, "examples", "data")
aml = [os.path.join(data, "aml.csv"), "--time", "time", "--censor", "status", "--complete", "1", "--censored", "0"]

# A file for which every reading option must be given.
told = ["--separator", "|", "--decimal", "comma", "--dates", "mdy", "--header", "--define", "late = d > 2449720",
        "--define", "twice = t * 2", "--select", "late >= 0"]
odd = "t|s|d\n1,5|1|01/02/1995\n2|0|01/03/1995\n3,25|1|02/03/1995\n4|1|01/04/1995\n"

# Every command that makes outputs, with arguments that use the common options.
angina = [os.path.join(data, "angina.csv"), "--table", "lower,withdrawn,dying"]
veteran = [os.path.join(data, "veteran.csv"), "--time", "time", "--censor", "status", "--complete", "1", "--censored", "0"]
runs = {
    "cox": [aml + ["--covariates", "group:cat"],
            veteran + ["--covariates", "karno,celltype:cat=large", "--strata", "trt", "--at", "karno=60,celltype=adeno",
                       "--at", "karno=90", "--criterion", "0.001", "--start", "0,0,0,0", "--level", "0.9"]],
    "cox-time": [veteran + ["--covariate", "k=karno", "--covariate", "kT=karno*log(T_+20)", "--strata", "trt"]],
    "kaplan-meier": [aml, aml + ["--select", "time > 5", "--weight", "time", "--missing", "time=9", "--level", "0.9"]],
    "k-sample": [aml + ["--group", "group"]],
    "life-table": [aml + ["--intervals", "5"], angina + ["--survival", ".9,.5", "--times", "1,10", "--level", "0.9"]],
    "regression": [aml + ["--covariates", "group:cat", "--model", "all", "--at", "group=Maintained"],
                   veteran + ["--covariates", "karno", "--model", "lognormal", "--start", "0,5,1", "--max-iterations", "60"]],
    "two-sample": [aml + ["--group", "group", "--group1", "Maintained", "--group2", "Nonmaintained"]],
}


def run(*arguments):
    return subprocess.run([korvana, *arguments], env=environment, check=True, capture_output=True, text=True)


listed = run("--help").stdout.split("Commands:")[1].split("Options:")[0]
commands = [line.split()[0] for line in listed.splitlines() if line.startswith("  ") and line[2] != " "]
making = {name for name in commands if "--outputs" in run(name, "--help").stdout}
assert making == set(runs), f"commands that make outputs: {making}; tried here: {set(runs)}"

with open(os.path.join(source, "docs", "results.schema.json"), encoding="utf-8") as file:
    schema = json.load(file)
jsonschema.Draft7Validator.check_schema(schema)
validator = jsonschema.Draft7Validator(schema)


def hold(results, what):
    for error in validator.iter_errors(results):
        raise SystemExit(f"{what}: {'/'.join(map(str, error.absolute_path))}: {error.message[:300]}")
    for kind in ["reports", "spreadsheets", "charts"]:
        ids = [output["id"] for output in results[kind]]
        assert all(ids) and len(ids) == len(set(ids)), f"{what}: {kind} are called {ids}"
        for output in results[kind]:
            assert output["origin"]["run"] < len(results["runs"]), f"{what}: {output['id']}"
    for sheet in results["spreadsheets"]:
        ids = sheet["columnIds"]
        assert all(ids) and len(ids) == len(set(ids)) == len(sheet["columns"]), f"{what}: {sheet['title']}: {ids}"
        assert all(len(row["cells"]) == len(ids) for row in sheet["rows"]), f"{what}: {sheet['title']}"


with tempfile.TemporaryDirectory() as scratch:
    with open(os.path.join(scratch, "odd.txt"), "w", encoding="ascii") as file:
        file.write(odd)
    runs["kaplan-meier"].append([os.path.join(scratch, "odd.txt"), "--time", "twice", "--censor", "s", "--complete", "1",
                                 "--censored", "0", *told])
    for name, lines in runs.items():
        for place, arguments in enumerate(lines):
            folder = os.path.join(scratch, f"{name}-{place}")
            run(name, *arguments, "-o", folder, "--format", "json,csv,svg")
            with open(os.path.join(folder, "results.json"), encoding="utf-8") as file:
                text = file.read()
            results = json.loads(text)
            hold(results, name)
            assert sorted(results["files"]) == sorted(os.listdir(folder)), results["files"]
            run(name, *arguments, "-o", folder, "--format", "json,csv,svg")
            with open(os.path.join(folder, "results.json"), encoding="utf-8") as file:
                assert file.read() == text, f"{name}: the same run gave another results.json"
            on_screen = json.loads(run(name, *arguments, "--format", "json").stdout)
            hold(on_screen, name)
            assert on_screen["files"] == []

    # The stable names lead to what was asked for.
    with open(os.path.join(scratch, "kaplan-meier-1", "results.json"), encoding="utf-8") as file:
        results = json.load(file)
    state = results["runs"][0]["data"]
    assert (state["condition"], state["weightVariable"]) == ("time > 5", "time"), state
    assert state["missingCodes"] == [{"variable": "time", "code": 9}], state
    assert set(state["reading"].values()) == {None} and state["definitions"] == [], state
    assert 0 < state["selectedCases"] < state["cases"], state
    specification = results["runs"][0]["dialogs"][-1]["settings"]
    assert [role["variables"] for role in specification["Variables"]] == [["time"], ["status"]], specification
    assert specification["CodeForCompleteResponses"]["code"] == 1, specification
    assert results["spreadsheets"][0]["origin"]["settings"]["ConfidenceLevel"] == 0.9, results["spreadsheets"][0]

    with open(os.path.join(scratch, "kaplan-meier-2", "results.json"), encoding="utf-8") as file:
        state = json.load(file)["runs"][0]["data"]
    assert state["reading"] == {"separator": "|", "decimal": ",", "dates": "mdy", "header": True}, state
    assert [list(one.values()) for one in state["definitions"]] == [["late", "d > 2449720"], ["twice", "t * 2"]], state

# The schema refuses what it should.
for spoil in [lambda r: r.pop("program"), lambda r: r.update(extra=1), lambda r: r["charts"][0].pop("id"),
              lambda r: r["runs"][0]["data"].update(cases=-1), lambda r: r["spreadsheets"][0].update(columnIds="x")]:
    spoilt = copy.deepcopy(results)
    spoil(spoilt)
    assert list(validator.iter_errors(spoilt)), "a spoilt file was accepted"
