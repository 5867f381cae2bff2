"""One function per analysis, against the program's own results."""
import inspect
import json
import math
import os
import subprocess
import tempfile
import unittest
import warnings
from pathlib import Path

import korvana as kv
from support import DATA

KORVANA = os.environ["KORVANA"]
AML = DATA / "aml.csv"
CASES = {"time": "time", "censor": "status", "complete": 1, "censored": 0}


def command(name, path, **options):
    """The results of the program itself, as JSON."""
    words = [KORVANA, name.replace("_", "-"), str(path), "--format", "json"]
    for option, value in options.items():
        words.append("--" + option.strip("_").replace("_", "-"))
        if value is not True:
            words.append(",".join(map(str, value)) if isinstance(value, (list, tuple)) else str(value))
    environment = {name: value for name, value in os.environ.items() if name != "LD_PRELOAD"}  # the interpreter's
    done = subprocess.run(words, capture_output=True, text=True, check=True, env=environment)
    return json.loads(done.stdout)


def as_json(results):
    with tempfile.TemporaryDirectory() as folder:
        results.save(folder, format="json")
        return json.loads(Path(folder, "results.json").read_text(encoding="utf-8"))


def plain(value):
    """Without the times at which outputs were made, and the name of the data."""
    if isinstance(value, dict):
        return {key: plain(each) for key, each in value.items() if key not in ("made", "file", "files", "source")}
    if isinstance(value, list):
        return [plain(each) for each in value]
    return value.replace("dict", "aml.csv") if isinstance(value, str) else value


def columns(path):
    """A file of plain cells as a dict of columns."""
    lines = [line.split(",") for line in Path(path).read_text(encoding="utf-8").splitlines()]
    return {name: [row[i] for row in lines[1:]] for i, name in enumerate(lines[0])}


class AnalysesTest(unittest.TestCase):
    maxDiff = 2000

    def expect_the_same(self, function, path=AML, given=None, **options):
        name = function.__name__
        wanted = plain(command(name, path, **{**options, **(given or {})}))
        for source in (path, columns(path)):
            self.assertEqual(plain(as_json(function(source, **options))), wanted)

    def test_each_gives_the_results_of_its_command(self):
        self.expect_the_same(kv.kaplan_meier, **CASES, outputs="all", level=0.9)
        self.expect_the_same(kv.two_sample, **CASES, group="group", group1="Maintained", group2="Nonmaintained")
        self.expect_the_same(kv.k_sample, **CASES, group="group", codes=["Nonmaintained", "Maintained"])
        self.expect_the_same(kv.life_table, **CASES, intervals=5, no_correction=True, outputs=["summary", "hazard"])
        self.expect_the_same(kv.cox, **CASES, covariates=["group:cat"], continue_=True, max_iterations=60,
                             outputs="all")
        self.expect_the_same(kv.regression, **CASES, covariates="group:cat", model="all")
        self.expect_the_same(kv.cox_time, **CASES, covariate={"g": "(group = 'Maintained') * log(T_ + 1)"},
                             given={"covariate": "g=(group = 'Maintained') * log(T_ + 1)"})

    def test_results_are_attributes_by_the_name_of_their_output(self):
        results = kv.kaplan_meier(AML, **CASES)
        self.assertTrue(all(math.isfinite(row[0]) for row in results.table.cells))
        self.assertTrue(len(results.summary) if isinstance(results.summary, kv.Results) else results.summary)
        with self.assertRaisesRegex(AttributeError, "curve"):
            results.curve
        self.assertIsInstance(kv.kaplan_meier(AML, **CASES, outputs="curve").curve, kv.Chart)
        self.assertFalse(results.charts)

    def test_values_may_be_of_python(self):
        data = {"my, time": [5, 3, 8, 9], "s": [1, 0, 1, 1], 7: [1, 2, 1, 2]}
        results = kv.kaplan_meier(data, time="my, time", censor="s", complete=1.0, censored=0)
        self.assertEqual(len(results.table.cells), 4)
        groups = kv.k_sample({"t": [5, 3, 8, 9] * 3, "s": [1, 0, 1, 1] * 3, 7: [1, 2, 1, 2] * 3}, time="t", censor="s",
                             complete=1, censored=0, group=7, codes=(2, 1), missing={"t": 99},
                             define=["u = t + 1"], select=None)
        self.assertTrue(groups.tables)
        at = kv.cox(AML, **CASES, covariates="group:cat", outputs="plot-at", at={"group": "Maintained"})
        self.assertEqual([len(at.plot_at.tables), len(at.plot_at.charts)], [1, 1])
        with self.assertRaisesRegex(kv.UsageError, "'False' is neither a number nor a value label"):
            kv.kaplan_meier(data, time="my, time", censor="s", complete=1, censored=False)


    def test_entries_of_a_list_are_taken_as_they_are(self):
        labels = ['12" pipe, old', '8" pipe', '"', "a, b", "plain"]
        data = {"t": list(range(1, 16)), "s": [1] * 15, "g": labels * 3}
        for codes in (labels, labels[:2], [labels[0], "plain"], ["a, b", '"']):
            groups = kv.k_sample(data, time="t", censor="s", complete=1, censored=0, group="g", codes=codes)
            self.assertEqual(sorted(groups.tables[0].headings)[:len(codes)], sorted(groups.tables[0].headings[:-1]))
            for code in codes:
                self.assertTrue(any(code in line for line in groups.reports[0].lines), (codes, code))
        with self.assertRaisesRegex(kv.AnalysisError, "Two groups or more are needed"):
            kv.k_sample(data, time="t", censor="s", complete=1, censored=0, group="g", codes=["a, b"])

    def test_what_may_not_be_meant_is_a_warning(self):
        data = {"t": [5, 3, 8, 9], "s": ["yes", "no", "yes", "yes"]}
        with self.assertWarnsRegex(kv.AnalysisWarning, "^censored 0: no case has this code") as caught:
            results = kv.kaplan_meier(data, time="t", censor="s", complete="yes", censored=0)
        self.assertEqual(caught.filename, __file__)
        self.assertRegex(str(results), "^censored 0: no case.*\n1 of 4 cases left out")
        self.assertIn("<p>1 of 4 cases left out", results._repr_html_())
        with warnings.catch_warnings():
            warnings.simplefilter("error")
            kv.kaplan_meier(AML, **CASES)


class FaultsTest(unittest.TestCase):
    def test_unknown_keywords_name_the_nearest(self):
        with self.assertRaisesRegex(TypeError, r"kaplan_meier\(\) has no keyword 'levle'; did you mean 'level'"):
            kv.kaplan_meier(AML, **CASES, levle=0.9)
        for ofFiles in ("output", "format", "quiet", "timing"):
            with self.assertRaises(TypeError):
                kv.kaplan_meier(AML, **CASES, **{ofFiles: "x"})

    def test_wrong_values_name_the_option(self):
        for wrong, option in (({"level": 2}, "level"), ({"level": [0.5, 0.6]}, "level"), ({"censor": "stat"}, "censor"),
                              ({"complete": "alive"}, "complete"), ({"outputs": "curv"}, "outputs"),
                              ({"no_header": "yes"}, "no_header"), ({"time": ""}, "time"), ({"time": []}, "time")):
            with self.assertRaises(kv.UsageError) as caught:
                kv.kaplan_meier(AML, **{**CASES, **wrong})
            self.assertEqual(caught.exception.option, option, caught.exception)
            self.assertIn(option, str(caught.exception))
            self.assertNotIn("--", str(caught.exception))
        with self.assertRaisesRegex(kv.UsageError, "no_correction is True or False"):
            kv.life_table(AML, **CASES, no_correction=3)
        with self.assertRaises(TypeError):
            kv.kaplan_meier(5, **CASES)
        with self.assertRaises(kv.DataError):
            kv.kaplan_meier("nowhere.csv", **CASES)
        with self.assertRaisesRegex(kv.UsageError, "header is for files"):
            kv.kaplan_meier(columns(AML), **CASES, header=True)

    def test_a_refusal_has_its_number_and_harms_no_later_call(self):
        flat = {"time": [1, 2, 3, 4], "status": [1, 1, 0, 1], "x": [2, 2, 2, 2]}
        before = plain(as_json(kv.cox(AML, **CASES, covariates="group:cat")))
        for _ in range(3):
            with self.assertRaises(kv.AnalysisError) as caught:
                kv.cox(flat, **CASES, covariates="x")
            self.assertGreater(caught.exception.number, 0)
            self.assertTrue(caught.exception.text)
        self.assertEqual(plain(as_json(kv.cox(AML, **CASES, covariates="group:cat"))), before)

    def test_one_analysis_at_a_time(self):
        app = kv.Application()
        app.open(AML)
        with app.analysis():
            with self.assertRaises(kv.Busy):
                kv.kaplan_meier(AML, **CASES)
        self.assertTrue(kv.kaplan_meier(AML, **CASES))


class HelpTest(unittest.TestCase):
    def test_signatures_and_texts_come_from_the_table_of_options(self):
        for function in (kv.kaplan_meier, kv.two_sample, kv.k_sample, kv.life_table, kv.cox, kv.regression, kv.cox_time):
            parameters = inspect.signature(function).parameters
            self.assertEqual(next(iter(parameters)), "data")
            for name in ("time", "censor", "complete", "censored", "outputs", "select", "define"):
                self.assertIn(name, parameters)
            for name in parameters:
                self.assertRegex(function.__doc__, rf"\b{name}\b")
            self.assertNotRegex(function.__doc__, r"(?<!-)--[a-z]|(?<!\S)-o\b")
            self.assertEqual(function.__module__, "korvana")
        self.assertIn("continue_", inspect.signature(kv.cox).parameters)


if __name__ == "__main__":
    unittest.main()
