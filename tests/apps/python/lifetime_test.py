"""Who lives how long, and what stops: several analyses, threads, forks, signals, the end of the program."""
import gc
import os
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

import korvana as kv
from support import DATA, specified, started

KM = kv.scSurKaplanMeierProductLimit


def regression_of_many(cases=30000):
    """An estimation that takes seconds: of a model whose likelihood is long to compute."""
    import numpy
    chance = numpy.random.default_rng(5)
    columns = {f"x{i}": chance.normal(size=cases) for i in range(12)}
    app = kv.Application()
    app.open({"time": numpy.arange(1.0, cases + 1), "status": numpy.ones(cases), **columns})
    run = app.analysis()
    run.dialog.TypeOfAnalysis = kv.scSurTimeDependentCovariates
    run.dialog.OK()
    dialog = run.dialog
    dialog.Variables = [["time"], ["status"], []][:len(dialog.Variables)]
    dialog.CodeForCompleteResponses, dialog.CodeForCensoredResponses = 1, 0
    dialog.TimeDependentCovariateNames = ["LATE", "LATER"]
    dialog.TimeDependentCovariateExpressions = ["x1 * log(T_)", "x2 * sqrt(T_)"]
    return app, run


class OneAtATimeTest(unittest.TestCase):
    def test_a_second_analysis_is_refused_until_the_first_is_closed(self):
        first, run = started(KM)
        other = kv.Application()
        other.open(DATA / "veteran.csv")
        for again in (first.analysis, other.analysis):
            with self.assertRaisesRegex(kv.Busy, r"'aml.csv'.*close\(\)"):
                again()
        with self.assertRaises(kv.Busy):
            kv.kaplan_meier(DATA / "aml.csv", time="time", censor="status", complete=1, censored=0)
        self.assertEqual(specified(run).Summary().table.shape[0], 23)  # the first is not disturbed
        run.close()
        with other.analysis() as second:
            self.assertIs(second.application, other)
        first.close()

    def test_an_analysis_that_nobody_holds_is_closed(self):
        app, run = started(KM)
        del run
        gc.collect()
        self.assertIsNone(app.run)
        app.analysis().close()

    def test_results_outlive_everything(self):
        app, run = started(KM)
        dialog = specified(run)
        summary, chart = dialog.Summary(), dialog.PlotOfSurvivalTimesVsCumProportionSurviving()
        column = summary.table[2]
        before = column.tolist()
        app.close()
        del app, run, dialog
        gc.collect()
        table = summary.table
        del summary
        gc.collect()
        self.assertEqual(str(column.tolist()), str(before))
        self.assertEqual(table.shape, (23, 5))
        self.assertIn("<svg", chart._repr_svg_())

    def test_an_application_that_is_closed_closes_its_analysis(self):
        app, run = started(KM)
        dialog = run.dialog
        app.close()
        with self.assertRaisesRegex(kv.AutomationError, "closed"):
            dialog.OK()
        with self.assertRaises(kv.UsageError):
            app.analysis()

    def test_other_data_while_a_dialog_is_open(self):
        app, run = started(KM)
        with app:
            specified(run)
            app.open(DATA / "veteran.csv")
            self.assertEqual(run.dialog.Name, "CDefineKaplanDlg")
            self.assertEqual(specified(run).Summary().table.shape[0], 137)


class StopTest(unittest.TestCase):
    def test_a_signal_stops_a_computation_and_leaves_the_dialog(self):
        app, run = regression_of_many()
        with app:
            name = run.dialog.Name
            timer = threading.Timer(0.3, os.kill, (os.getpid(), signal.SIGINT))
            timer.start()
            begin = time.monotonic()
            self.addCleanup(timer.cancel)
            with self.assertRaises(KeyboardInterrupt):
                run.dialog.OK()
            self.assertLess(time.monotonic() - begin, 4)
            timer.join()
            self.assertEqual(run.dialog.Name, name)
            self.assertEqual(len(run.results), 0)

    def test_a_signal_ends_the_wait_for_data(self):
        with tempfile.TemporaryDirectory() as folder, kv.Application() as app:
            pipe = Path(folder) / "data.csv"  # which nobody ever writes to
            os.mkfifo(pipe)
            codes = {"time": "time", "censor": "status", "complete": 1, "censored": 0}
            before = str(kv.kaplan_meier(DATA / "veteran.csv", **codes).percentiles)
            for use in (app.open, lambda path: kv.kaplan_meier(path, **codes)):
                timer = threading.Timer(0.3, os.kill, (os.getpid(), signal.SIGINT))
                timer.start()
                self.addCleanup(timer.cancel)
                with self.assertRaises(KeyboardInterrupt):
                    use(pipe)
                timer.join()
            self.assertEqual(str(kv.kaplan_meier(DATA / "veteran.csv", **codes).percentiles), before)

    def test_other_threads_run_meanwhile_and_are_refused(self):
        app, run = regression_of_many()
        with app:
            dialog = run.dialog
            refused, ticks, over = [], [], threading.Event()

            def meddle():
                uses = (lambda: dialog.Name, dialog.OK, run.close, lambda: app.variables, lambda: app.select("x1 > 0"),
                        lambda: run.results)
                while not over.is_set() and len(ticks) < 20:
                    time.sleep(0.02)
                    ticks.append(1)
                    for use in uses:
                        if over.is_set():
                            break
                        try:
                            use()
                        except (kv.Busy, kv.AutomationError) as error:
                            refused.append(type(error))
                if not over.is_set():
                    os.kill(os.getpid(), signal.SIGINT)
            thread = threading.Thread(target=meddle)
            timer = threading.Timer(0.2, thread.start)
            timer.start()
            try:
                with self.assertRaises(KeyboardInterrupt):
                    dialog.OK()
            finally:
                over.set()
            timer.join()
            thread.join()
            self.assertIn(kv.Busy, refused)
            self.assertGreater(len(ticks), 5)


class ProcessTest(unittest.TestCase):
    def outcome(self, code):
        return subprocess.run([sys.executable, "-c", "import korvana as kv\nfrom support import *\n" + code],
                              cwd=Path(__file__).parent, capture_output=True, text=True, timeout=120, check=False)

    def test_the_program_ends_with_everything_open(self):
        for end in ("", "import os; os._exit(0)", "raise SystemExit(0)",
                    "import atexit; atexit.register(lambda: run.dialog.Summary())"):
            code = f"""
app, run = started(kv.scSurKaplanMeierProductLimit)
dialog = specified(run)
results = dialog.Summary()
chart = dialog.PlotOfSurvivalTimesVsCumProportionSurviving()
column = results.table[2]
run.modal = lambda one: (run, dialog, run.modal)
cycle = [run]; cycle.append(cycle)
{end}
"""
            ended = self.outcome(code)
            self.assertEqual((ended.returncode, ended.stderr), (0, ""), end)

    def test_the_program_ends_while_a_daemon_thread_works(self):
        works = {"km": "kv.kaplan_meier(big, time='t', censor='s', complete=1, censored=0, outputs='percentiles')",
                 "cox": "kv.cox(big, time='t', censor='s', complete=1, censored=0, covariates='x', outputs='summary')",
                 "open": "app.open({'t': texts})", "draw": "results.curve.save(os.devnull + '.png')",
                 "cells": "results.summary.tables[-1].cells"}
        for name, work in works.items():
            ended = self.outcome(f"""
import os, threading, time
big = {{"t": list(range(1, 20001)), "s": [1] * 20000, "x": [i * i % 7 for i in range(20000)]}}
texts = [str(i) for i in range(20000)]
app = kv.Application()
results = kv.kaplan_meier(big, time="t", censor="s", complete=1, censored=0, outputs="summary,curve")
begun = threading.Event()
def again():
    while True:
        begun.set()
        try:
            {work}
        except OSError:
            pass
threading.Thread(target=again, daemon=True).start()
begun.wait()
time.sleep(0.05)
""")
            self.assertEqual((ended.returncode, ended.stderr), (0, ""), name)

    @unittest.skipIf("asan" in os.environ.get("LD_PRELOAD", ""), "the sanitizer needs all addresses")
    def test_too_little_memory_is_an_exception(self):
        for megabytes in (20, 40, 60, 90):
            ended = self.outcome(f"""
import numpy, resource
n = 300000
results = kv.kaplan_meier({{"t": numpy.arange(1.0, n + 1), "s": numpy.ones(n)}}, time="t", censor="s", complete=1,
                          censored=0)
with open("/proc/self/statm") as file:
    used = int(file.read().split()[0]) * resource.getpagesize()
resource.setrlimit(resource.RLIMIT_AS, (used + {megabytes} * 2**20,) * 2)
try:
    results.cells
except MemoryError:
    print("short")
""")
            self.assertEqual((ended.returncode, ended.stderr), (0, ""), megabytes)
            if megabytes == 20:
                self.assertEqual(ended.stdout, "short\n")

    def test_a_fork_has_a_life_of_its_own(self):
        app, run = started(KM)
        with app:
            dialog = specified(run)
            child = os.fork()
            if child == 0:
                try:
                    good = dialog.Summary().table.shape == (23, 5)
                    run.close()
                    other, second = started(KM, "aml.csv")
                    good = good and specified(second).Summary().table.shape == (23, 5)
                    other.close()
                    os._exit(0 if good else 1)
                finally:
                    os._exit(2)
            self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), 0)
            self.assertEqual(dialog.Summary().table.shape, (23, 5))

    def test_a_stopped_writing_leaves_nothing(self):
        with tempfile.TemporaryDirectory() as folder:
            ended = self.outcome(f"""
import numpy, os, signal, threading, time
n = 300000
results = kv.kaplan_meier({{"time": numpy.arange(1.0, n + 1), "status": numpy.ones(n)}}, time="time", censor="status",
                          complete=1, censored=0)
threading.Timer(0.3, os.kill, (os.getpid(), signal.SIGINT)).start()
try:
    results.tables.save({folder!r} + "/all.xlsx")
    time.sleep(20)
except KeyboardInterrupt:
    print("stopped", [name for name in os.listdir({folder!r}) if name != "all.xlsx"])
""")
            self.assertEqual((ended.stdout, ended.stderr), ("stopped []\n", ""))


if __name__ == "__main__":
    unittest.main()
