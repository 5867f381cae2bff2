"""Runs made from Python are recorded, and scripts run by the program end as they do."""
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import korvana as kv
from support import DATA, specified, started

KORVANA = os.environ["KORVANA"]
ENVIRONMENT = dict(os.environ)
places = tempfile.TemporaryDirectory()


def setUpModule():
    unittest.addModuleCleanup(places.cleanup)
    # The runtime of the sanitizers comes first in an interpreter; a program that was built with them has its own.
    if runtime := ENVIRONMENT.pop("LD_PRELOAD", None):
        python = pathlib.Path(places.name, "python")
        python.write_text(f'#!/bin/sh\nLD_PRELOAD="{runtime}" exec "{sys.executable}" "$@"\n')
        python.chmod(0o755)
        ENVIRONMENT["KORVANA_PYTHON"] = str(python)


def run(*arguments, **options):
    return subprocess.run([KORVANA, "run", *arguments], capture_output=True, text=True, env=ENVIRONMENT, **options)


class Recording(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)

    def test_a_run_is_made_again(self):
        app, run_ = started(kv.scSurKaplanMeierProductLimit)
        app.describe("status", label="how it ended", labels={1: 'it\'s "over"', 0: "going on"})
        app.define("half", "time / 2")
        app.describe("half", label="in half-weeks")
        app.select("half > 3")
        specified(run_).Summary()
        run_.dialog.ConfidenceLevel = 0.8
        run_.dialog.PercentilesOfSurvivalFunction()
        script = self.folder / "odd 'name'\n.py"
        run_.record(script)
        text = script.read_text()
        self.assertIn("app.describe(\"half\", label=\"in half-weeks\")\n", text)
        run_.results.save(self.folder / "same.py")
        self.assertEqual((self.folder / "same.py").read_text(), text)

        again = run(script, self.folder / "again", cwd=self.folder)
        self.assertEqual(again.returncode, 0, again.stderr)
        run_.results.save(self.folder / "first")
        for table in (self.folder / "first").glob("*.csv"):
            self.assertEqual(table.read_bytes(), (self.folder / "again" / table.name).read_bytes())
        self.assertEqual((self.folder / "again" / "script.py").read_text(), text)
        # It may be written over itself, and over nothing else.
        run_.record(script)
        mine = self.folder / "mine.py"
        mine.write_text("print('mine')\n")
        for target, why in [(mine, "is no recorded script"), (self.folder, "is a folder"),
                            (self.folder / "gone" / "x.py", "there is no folder"), (DATA / "aml.csv", "is there already")]:
            with self.assertRaisesRegex(kv.UsageError, why):
                run_.record(target)
        with self.assertRaisesRegex(kv.UsageError, "is no recorded script"):
            run_.results.save(mine)
        self.assertEqual(mine.read_text(), "print('mine')\n")
        run_.close()
        run_.record(script)
        self.assertEqual(script.read_text(), text)
        app.close()
        with self.assertRaises(kv.Error):
            app.describe("status", label="x")

    def expect_again(self, run_):
        """The script of a run makes the same tables."""
        script = self.folder / "script.py"
        run_.record(script)
        for kind in ("first", "again"):
            shutil.rmtree(self.folder / kind, ignore_errors=True)
        run_.results.save(self.folder / "first", "csv")
        again = run(script, self.folder / "again")
        self.assertEqual(again.returncode, 0, script.read_text() + again.stderr)
        tables = list((self.folder / "first").glob("*.csv"))
        self.assertTrue(tables)
        for table in tables:
            self.assertEqual(table.read_bytes(), (self.folder / "again" / table.name).read_bytes(), script.read_text())

    def test_settings_that_cannot_be_seen_are_kept(self):
        # A step that gives too many intervals: the analysis goes back to their number, which is greyed out.
        app, run_ = started(kv.scSurLifeTablesAndDistributions, "veteran.csv")
        dialog = run_.dialog
        dialog.Variables = [["time"], ["status"]]
        dialog.CodeForCompleteResponses, dialog.CodeForCensoredResponses = 1, 0
        dialog.NumberOfIntervals = 5
        dialog.UseUserDefinedStepSize = True
        dialog.StepSize = 1
        dialog.OK()
        self.assertEqual(len(run_.dialog.Summary().table.cells), 5)
        self.expect_again(run_)
        app.close()

    def test_a_long_script_is_whole(self):
        app, run_ = started(kv.scSurKaplanMeierProductLimit)
        app.describe("status", labels={code: f"label {code} äöü" * 3 for code in range(20000)})
        specified(run_).Summary()
        self.expect_again(run_)
        self.assertGreater((self.folder / "script.py").stat().st_size, 1 << 20)
        app.close()

    def test_data_are_found_where_they_were(self):
        here = os.getcwd()
        self.addCleanup(os.chdir, here)
        shutil.copy(DATA / "aml.csv", self.folder / "mine.csv")
        (self.folder / "sub").mkdir()
        (self.folder / "sub" / "mine.csv").write_text("time,status\n1,1\n")
        os.chdir(self.folder)
        results = kv.kaplan_meier("mine.csv", time="time", censor="status", complete=1, censored=0)
        os.chdir("sub")
        with self.assertRaisesRegex(kv.Error, "it is the data file"):
            results.percentiles.save("../mine.csv")
        results.percentiles.save("mine.csv")  # which is another one
        results.save(self.folder / "script.py")
        self.assertIn(f'DATA = "{self.folder}/mine.csv"  # given as "mine.csv"\n', (self.folder / "script.py").read_text())
        self.assertEqual(run(self.folder / "script.py").returncode, 0)

    def test_joined_runs_have_their_own_data(self):
        of = {"time": "time", "censor": "status", "complete": 1, "censored": 0}
        veteran = DATA / "veteran.csv"
        joined = kv.joined_results([
            ("one", kv.kaplan_meier(veteran, **of, select="trt=1", outputs="percentiles")),
            ("two", kv.kaplan_meier(veteran, **of, select="trt=2", weight="prior", outputs="percentiles")),
            ("three", kv.kaplan_meier(veteran, **of, define="z = age > 60", select="z", outputs="percentiles")),
            ("four", kv.kaplan_meier(veteran, **of, define="z = age > 60", select="z", outputs="percentiles")),
            ("five", kv.kaplan_meier(DATA / "aml.csv", **of, outputs="percentiles"))])
        joined.save(self.folder / "script.py")
        self.assertEqual((self.folder / "script.py").read_text().count("app.open("), 4)
        again = run(self.folder / "script.py", self.folder / "again")
        self.assertEqual(again.returncode, 0, again.stderr)
        joined.save(self.folder / "first", "csv")
        tables = list((self.folder / "first").glob("*.csv"))
        self.assertEqual(len(tables), 5)
        for table in tables:
            self.assertEqual(table.read_bytes(), (self.folder / "again" / table.name).read_bytes())

    def test_one_run_after_another_is_kept_alone(self):
        app, run_ = started(kv.scSurRegressionModels, "veteran.csv")
        dialog = run_.dialog
        dialog.Variables = [["time"], ["status"], ["karno", "age"], []]
        dialog.CodeForCompleteResponses, dialog.CodeForCensoredResponses = 1, 0
        dialog.NonDefaultStartValuesIterations = True
        run_.modal = {"StartValues": [-0.05, 0.01], "MaxNumberOfIterations": 7, "ConvergenceCriterion": 0.5}
        dialog.OK()
        run_.dialog.Summary()
        self.expect_again(run_)
        for member, value in (("NonDefaultStartValuesIterations", False), ("Variables", [["time"], ["status"], ["age"]])):
            run_.dialog.Cancel()
            setattr(run_.dialog, member, value)
            run_.dialog.OK()
            run_.dialog.Summary()
            self.expect_again(run_)
            self.assertIn("run.dialog.NonDefaultStartValuesIterations = False\n", (self.folder / "script.py").read_text())
        run_.close()
        # Nothing of an analysis is left for the next one.
        plain = kv.kaplan_meier(DATA / "aml.csv", time="time", censor="status", complete=1, censored=0)
        kv.kaplan_meier(DATA / "aml.csv", time="time", censor="status", complete=1, censored=0, level=0.8)
        again = kv.kaplan_meier(DATA / "aml.csv", time="time", censor="status", complete=1, censored=0)
        self.assertEqual(again.percentiles.columns, plain.percentiles.columns)
        self.assertEqual(again.percentiles.cells, plain.percentiles.cells)
        app.close()

    def test_tables_in_memory_are_a_place_to_fill_in(self):
        times = [5, 8, 8, 12, 20, 31]
        results = kv.kaplan_meier({"t": times, "d": [1, 0, 1, 1, 0, 1]}, time="t", censor="d", complete=1, censored=0)
        script = self.folder / "script.py"
        results.save(script)
        asks = run(script)
        self.assertEqual((asks.returncode, asks.stdout), (1, ""))
        self.assertIn("Fill in DATA", asks.stderr)
        script.write_text(script.read_text().replace(
            "DATA = None", f"DATA = {{'t': {times}, 'd': [1, 0, 1, 1, 0, 1]}}"))
        filled = run(script, self.folder / "out")
        self.assertEqual(filled.returncode, 0, filled.stderr)
        results.save(self.folder / "first", "csv")
        for table in (self.folder / "first").glob("*.csv"):
            self.assertEqual(table.read_bytes(), (self.folder / "out" / table.name).read_bytes())

    def test_a_variable_is_described_or_says_what_is_wrong(self):
        with kv.Application() as app:
            app.open(DATA / "aml.csv")
            for labels in (3, {"dead": 1}, ["alive"], {None: "x"}):
                with self.assertRaisesRegex(kv.UsageError, "a dict of codes"):
                    app.describe("status", labels=labels)
            with self.assertRaisesRegex(kv.DataError, "no variable 'gone'"):
                app.describe("gone", label="x")
            app.describe("status", labels={})
            app.describe("status", labels={1: "dead"})
            self.assertEqual([v.label for v in app.variables if v.name == "status"], [""])

    def test_a_script_ends_as_python_ends_it(self):
        for text, code in [("pass", 0), ("raise SystemExit(7)", 7), ("1 / 0", 1), ("import sys; sys.exit('no')", 1)]:
            self.assertEqual(run("-", "more", input=text).returncode, code, text)
        echo = self.folder / "-echo.py"
        echo.write_text("import sys, korvana; print(sys.argv[1:], korvana.__version__)")
        done = run("--", "-echo.py", "--help", "-o", "", cwd=self.folder)
        self.assertEqual(done.stdout, f"['--help', '-o', ''] {kv.__version__}\n", done.stderr)
        refused = run("-", input="import korvana as kv\nkv.kaplan_meier({'t': [1, 2], 'd': [2, 2]}, time='t', "
                                 "censor='d', complete=1, censored=0)")
        self.assertEqual(refused.returncode, 1)
        self.assertIn("Error: ", refused.stderr.splitlines()[-1])

    def test_a_signal_reaches_the_script(self):
        waits = self.folder / "waits.py"
        waits.write_text("import time\nprint('ready', flush=True)\ntime.sleep(60)\n")
        for sent in (signal.SIGINT, signal.SIGTERM):
            with subprocess.Popen([KORVANA, "run", waits], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                  env=ENVIRONMENT) as script:
                self.assertEqual(script.stdout.readline(), b"ready\n")
                begin = time.monotonic()
                script.send_signal(sent)
                self.assertEqual(script.wait(), -sent)
                self.assertLess(time.monotonic() - begin, 30)


if __name__ == "__main__":
    unittest.main()
