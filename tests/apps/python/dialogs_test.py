"""The dialogs of an analysis, as scripts drive them."""
import contextlib
import inspect
import io
import pydoc
import tempfile
import unittest
from pathlib import Path

import korvana as kv
from support import DATA, specified, started


class MembersTest(unittest.TestCase):
    def setUp(self):
        self.app, self.run_ = started(kv.scSurKaplanMeierProductLimit)
        self.addCleanup(self.app.close)

    def test_values_are_those_of_the_controls(self):
        dialog = self.run_.dialog
        dialog.Variables = [["time"], [2]]
        dialog.CodeForCompleteResponses = 1.0
        self.assertEqual(dialog.Variables, [[1], [2]])
        self.assertEqual(dialog.CodeForCompleteResponses, 1)
        self.assertEqual(dialog.Name, "CDefineKaplanDlg")
        self.assertIs(dialog.Application, self.app)
        self.assertIs(dialog.Parent, self.run_)

    def test_values_of_numpy_and_pandas_are_taken_as_they_are(self):
        import numpy
        import pandas
        dialog = self.run_.dialog
        dialog.Variables = numpy.array([[1], [2]])
        dialog.CodeForCompleteResponses = numpy.int8(1)
        dialog.CodeForCensoredResponses = numpy.float32(0)
        self.assertEqual((dialog.Variables, dialog.CodeForCensoredResponses), ([[1], [2]], 0))
        dialog.Variables = (pandas.Series(["time"]), range(2, 3))
        self.assertEqual(dialog.Variables, [[1], [2]])

    def test_unknown_members_name_the_nearest(self):
        dialog = self.run_.dialog
        with self.assertRaisesRegex(AttributeError, "'Variable'; near: .*Variables"):
            dialog.Variable = 1
        with self.assertRaisesRegex(AttributeError, "near: Variables"):
            dialog.variables
        with self.assertRaisesRegex(AttributeError, "it has Variables, CodeForCompleteResponses"):
            dialog.Zzz()
        self.assertEqual(len(self.run_.results), 0)

    def test_a_wrong_type_names_the_accessor(self):
        dialog = self.run_.dialog
        before = dialog.Variables
        endless = []
        endless.append(endless)
        for wrong in ("time", [1], [["nowhere"]], [[1.5]], object(), {"time": 1}, [[b"time"]], endless, [["\ud800"]],
                      10 ** 400):
            with self.assertRaises(kv.AutomationError) as caught:
                dialog.Variables = wrong
            self.assertEqual(caught.exception.text, "Exception in analysis method: CDefineKaplanDlg::put_Variables")
            self.assertNotEqual(caught.exception.detail, "")
        self.assertEqual(dialog.Variables, before)
        with self.assertRaisesRegex(kv.AutomationError, "put_OK.*action"):
            dialog.OK = True

    def test_a_closed_dialog_says_so(self):
        dialog = self.run_.dialog
        specified(self.run_)
        for use in (lambda: dialog.Variables, dialog.OK, lambda: setattr(dialog, "Variables", [])):
            with self.assertRaises(kv.AutomationError) as caught:
                use()
            self.assertEqual(caught.exception.detail, "the dialog has been closed")
        open_one = self.run_.dialog
        self.run_.close()
        with self.assertRaisesRegex(kv.AutomationError, "CKaplanResultsDlg::Summary.*analysis has been closed"):
            open_one.Summary()

    def test_help_and_completion_come_from_the_library(self):
        dialog = self.run_.dialog
        self.assertLessEqual({"Variables", "CodeForCompleteResponses", "OK", "Cancel"}, set(dir(dialog)))
        with contextlib.redirect_stdout(io.StringIO()) as shown:
            pydoc.Helper(output=shown).help(dialog)
        self.assertIn("Code for complete responses (observed failures)", shown.getvalue())
        specified(self.run_)
        results = self.run_.dialog
        self.assertEqual(inspect.getdoc(results.PercentilesOfSurvivalFunction), "Percentiles of survival function.")


class RefusalsTest(unittest.TestCase):
    def test_a_refused_run_leaves_its_dialog(self):
        app, run = started(kv.scSurKaplanMeierProductLimit)
        with app:
            run.dialog.Variables = [["time"], ["status"]]
            run.dialog.CodeForCompleteResponses = 7
            run.dialog.CodeForCensoredResponses = 8
            with self.assertRaises(kv.AnalysisError) as caught:
                run.dialog.OK()
            self.assertGreater(caught.exception.number, 0)
            self.assertNotEqual(caught.exception.text, "")
            self.assertEqual(run.dialog.Name, "CDefineKaplanDlg")
            self.assertEqual(run.messages[-1].text, caught.exception.text)
            specified(run)
            self.assertEqual(run.dialog.Name, "CKaplanResultsDlg")

    def test_how_a_run_is_answered_is_checked_when_it_is_given(self):
        app, run = started(kv.scSurKaplanMeierProductLimit)
        with app:
            self.assertEqual(run.dialog, run.dialog)
            self.assertNotEqual(run.dialog, 5)
            for name, value in (("modal", 5), ("answer", "yes"), ("file", "x\0.ini")):
                with self.assertRaisesRegex(kv.UsageError, name if name != "file" else "zero byte"):
                    setattr(run, name, value)
            for wrong in (None, "x.csv", app):
                with self.assertRaisesRegex(TypeError, r"app.analysis\(\)"):
                    kv.Analysis(app, wrong)
            for condition in (5, True):
                with self.assertRaisesRegex(kv.UsageError, "a condition is a text"):
                    app.select(condition)
            with self.assertRaisesRegex(kv.UsageError, "header is True or False"):
                app.open(DATA / "aml.csv", header="no")

    def test_cancel_goes_back_and_ends(self):
        app, run = started(kv.scSurKaplanMeierProductLimit)
        specified(run)
        for name in ("CDefineKaplanDlg", "CDefineTask"):
            run.dialog.Cancel()
            self.assertEqual(run.dialog.Name, name)
        run.dialog.Cancel()
        self.assertFalse(run.active)
        with self.assertRaisesRegex(kv.UsageError, "ended"):
            run.dialog
        app.analysis().close()  # the process is free for another one

    def test_an_unknown_analysis(self):
        with self.assertRaisesRegex(kv.UsageError, "'Survival Analysis'"):
            kv.Application().analysis("Regression")


class OnTheWayTest(unittest.TestCase):
    """What an analysis asks for before it goes on."""

    def regression(self):
        app, run = started(kv.scSurRegressionModels, "leukaemia-wbc.csv")
        self.addCleanup(app.close)
        run.dialog.TypeOfSurvivalRegressionModel = kv.scSurProportionalHazardRegression
        names = [each.name for each in app.variables]
        run.dialog.Variables = [["weeks"], ["relapse"], ["logwbc"], [], []][:len(run.dialog.Variables)]
        self.assertIn("logwbc", names)
        run.dialog.CodeForCompleteResponses = 1
        run.dialog.CodeForCensoredResponses = 0
        return run

    @staticmethod
    def estimate(run):
        """OK, by way of the dialog of the estimation."""
        run.dialog.NonDefaultStartValuesIterations = True
        return run.dialog.OK()

    def test_members_of_a_modal_dialog(self):
        run = self.regression()
        seen = []

        def fill(dialog):
            seen.append((dialog.Name, dialog.MaxNumberOfIterations))
            dialog.MaxNumberOfIterations = 40
            seen.append(dialog)
        run.modal = fill
        self.estimate(run)
        self.assertEqual(run.dialog.Name, "CRegResultsDlg")
        self.assertEqual(seen[0][0], "RegEstDlg")
        with self.assertRaisesRegex(kv.AutomationError, "RegEstDlg::get_StartValues: the dialog has been closed"):
            seen[1].StartValues

    def test_answers_to_questions(self):
        run = self.regression()
        run.modal = {"MaxNumberOfIterations": 3, "ConvergenceCriterion": 1e-5}
        with self.assertRaisesRegex(kv.AnalysisError, r"(?s)did not converge.*more iterations\?. was answered with no"):
            self.estimate(run)
        asked = []

        def fail(question):
            asked.append(question)
            raise LookupError("nobody knows")
        run.answer = fail
        with self.assertRaisesRegex(LookupError, "nobody knows"):
            self.estimate(run)
        run.answer = lambda question: asked.append(question) or "perhaps".startswith("p")
        self.assertTrue(self.estimate(run))
        self.assertEqual(run.dialog.Name, "CRegResultsDlg")
        self.assertRegex(asked[0], "maximum number of iterations")

    def test_what_a_function_raises_reaches_the_caller(self):
        run = self.regression()

        def fail(dialog):
            raise ZeroDivisionError("mine")
        run.modal = fail
        with self.assertRaisesRegex(ZeroDivisionError, "mine"):
            self.estimate(run)
        run.modal = {"MaxNumberOfIteration": 3}
        with self.assertRaisesRegex(AttributeError, "near: MaxNumberOfIterations"):
            self.estimate(run)
        run.modal = {"MaxNumberOfIterations": "many"}
        with self.assertRaisesRegex(kv.AutomationError, "RegEstDlg::put_MaxNumberOfIterations"):
            self.estimate(run)
        run.modal = {}
        self.assertTrue(self.estimate(run))

    def test_only_the_modal_dialog_can_be_used_while_it_is_open(self):
        run = self.regression()
        specification = run.dialog
        refused = []

        def meddle(dialog):
            for use in (specification.OK, run.close, run.application.close, lambda: run.application.select("weeks > 1")):
                try:
                    use()
                except (kv.AutomationError, kv.Busy) as error:
                    refused.append(str(error))
        run.modal = meddle
        self.estimate(run)
        self.assertEqual(len(refused), 4, refused)
        self.assertEqual(run.dialog.Name, "CRegResultsDlg")

    def test_files_are_named_for_the_next_action(self):
        with tempfile.TemporaryDirectory() as folder:
            app, run = started(kv.scSurTimeDependentCovariates, "veteran.csv")
            self.addCleanup(app.close)
            path = Path(folder, "covariates.ini")
            run.dialog.TimeDependentCovariateNames = ["LATE"]
            run.dialog.TimeDependentCovariateExpressions = ["karno * log(T_)"]
            run.file = path
            run.dialog.SaveExpressions()
            self.assertIsNone(run.file)
            self.assertIn("karno * log(T_)", path.read_text(encoding="utf-8"))
            run.dialog.TimeDependentCovariateNames = []
            with self.assertRaisesRegex(kv.AnalysisError, "names no file"):
                run.dialog.OpenExpressions()
            run.file = path
            run.dialog.OpenExpressions()
            self.assertEqual(run.dialog.TimeDependentCovariateNames, ["LATE"])

    def test_outputs_also_go_into_the_file_that_the_dialog_names(self):
        with tempfile.TemporaryDirectory() as folder:
            app, run = started(kv.scSurKaplanMeierProductLimit)
            self.addCleanup(app.close)
            dialog = specified(run)
            path = Path(folder, "survival.csv")
            dialog.ResultsSaveFileName = str(path)
            dialog.ResultsOutputFields = ["time", "survival"]
            dialog.ResultsVariables = ["time"]
            dialog.ResultsCodes = [5, 9]
            dialog.Summary()
            lines = path.read_text(encoding="utf-8").splitlines()
            self.assertEqual([line.split(",")[-2] for line in lines[1:]], ["5", "5", "9"])
            dialog.ResultsOutputFields = ["hazard"]
            with self.assertRaisesRegex(kv.AutomationError, "the output is in the book, but .* it has .*survival"):
                dialog.Summary()

    def test_the_data_file_is_not_written_over(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder, "aml.csv")
            path.write_bytes((DATA / "aml.csv").read_bytes())
            app, run = started(kv.scSurKaplanMeierProductLimit, path)
            self.addCleanup(app.close)
            with self.assertRaisesRegex(kv.AutomationError, "is the data file"):
                specified(run).ResultsSaveFileName = f"{folder}/./aml.csv"
            self.assertEqual(path.read_bytes(), (DATA / "aml.csv").read_bytes())


if __name__ == "__main__":
    unittest.main()
