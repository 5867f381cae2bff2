"""Applications: what they open, and what they say of it."""
import tempfile
import unittest
from pathlib import Path

import korvana as kv
from support import DATA


class OpenTest(unittest.TestCase):
    def test_a_file_and_its_variables(self):
        app = kv.Application()
        app.open(DATA / "leukaemia-6mp.csv")
        self.assertEqual(app.name, "leukaemia-6mp.csv")
        self.assertEqual([each.name for each in app.variables][:3], ["weeks", "relapse", "group"])
        group = app.variables[2]
        self.assertEqual(group.kind, "text")
        self.assertEqual(sorted(group.labels.values()), ["6-MP", "placebo"])
        self.assertIsNone(group.missing)

    def test_how_to_read_is_given_as_on_the_command_line(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder, "odd.txt")
            path.write_text("1,5!2\n2,5!3\n", encoding="ascii")
            app = kv.Application()
            app.open(path, separator="!", decimal="comma", header=False)
            self.assertEqual([each.name for each in app.variables], ["Var1", "Var2"])
            for wrong in ({"separator": "a"}, {"separator": "::"}, {"decimal": ";"}, {"dates": "year"}):
                with self.assertRaisesRegex(kv.UsageError, next(iter(wrong))):
                    app.open(path, **wrong)

    def test_data_that_cannot_be_read_name_the_place(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder, "short.csv")
            path.write_text("a,b\n1,2\n1,2,3\n", encoding="ascii")
            app = kv.Application()
            with self.assertRaises(kv.DataError) as caught:
                app.open(path)
            self.assertEqual((caught.exception.file, caught.exception.line), (str(path), 3))
            with self.assertRaisesRegex(kv.DataError, "nowhere.csv"):
                app.open(Path(folder, "nowhere.csv"))

    def test_what_was_closed_says_so(self):
        with kv.Application() as app:
            app.open(DATA / "aml.csv")
        for use in (lambda: app.variables, lambda: app.name, lambda: app.open(DATA / "aml.csv")):
            with self.assertRaisesRegex(kv.UsageError, "closed"):
                use()
        app.close()


class ConstantsTest(unittest.TestCase):
    def test_enumerations_are_numbered_from_one(self):
        self.assertEqual((kv.scSurLifeTablesAndDistributions, kv.scSurTimeDependentCovariates), (1, 6))
        self.assertEqual((kv.scSurExponential, kv.scSurWeibull), (1, 4))


if __name__ == "__main__":
    unittest.main()
