"""Results as people and programs take them: cells, files, and what a notebook shows."""
import copy
import csv
import json
import pickle
import tempfile
import unittest
import xml.etree.ElementTree as xml
from pathlib import Path

import numpy
import pandas

import korvana as kv
from support import results_of_aml, specified, started


class TableTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.results = results_of_aml("Summary", "PercentilesOfSurvivalFunction")
        cls.table = cls.results.table

    def test_cells_and_columns(self):
        self.assertEqual(self.table.shape, (23, 5))
        self.assertEqual(self.table.cells[0], [5.0, None, 0.9565217391304348, self.table.cells[0][3], 13])
        self.assertEqual(self.table.cells[7][1:4], ["+", None, None])
        self.assertEqual(list(self.table), self.table.columns)
        self.assertEqual(len(set(self.table.columns)), 5)
        with self.assertRaisesRegex(KeyError, "near: Standard Error"):
            self.table["Standard Eror"]
        with self.assertRaisesRegex(TypeError, "by its name, its id or its place"):
            self.table[0:2]

    def test_numbers_are_read_where_they_are(self):
        survival = self.table["Cumulative Survival"]
        self.assertIs(type(survival), numpy.ndarray)
        self.assertFalse(survival.flags.writeable)
        self.assertTrue(numpy.shares_memory(survival, self.table[2]))
        self.assertEqual([cell[2] for cell in self.table.cells],
                         [None if value != value else value for value in survival.tolist()])
        self.assertEqual(self.table["Case Number"].dtype, numpy.int32)

    def test_pandas(self):
        frame = self.table.to_pandas()
        self.assertEqual(list(frame.columns), self.table.columns)
        self.assertEqual(frame["Case Number"].tolist()[:3], [13, 12, 14])
        self.assertTrue(frame["Cumulative Survival"].isna()[7])
        frame.iloc[0, 2] = 7.0  # its own copy
        self.assertNotEqual(self.table.cells[0][2], 7.0)
        percentiles = self.results.PercentilesOfSurvivalFunction.to_pandas(ids=True)
        self.assertEqual(len(percentiles), 3)
        self.assertIn("median", percentiles.index[1])

    def test_files(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder, "table.csv")
            self.table.save(path)
            with path.open(encoding="utf-8", newline="") as file:
                rows = list(csv.reader(file))
            self.assertEqual(len(rows), 24)
            self.assertEqual(float(rows[1][2]), self.table.cells[0][2])
            for ending in ("xlsx", "html", "json", "txt"):
                self.table.save(str(Path(folder, "table." + ending.upper())))
            self.assertEqual(Path(folder, "table.XLSX").read_bytes()[:2], b"PK")
            with self.assertRaisesRegex(kv.UsageError, r"\.csv, \.xlsx.*not with \.png"):
                self.table.save(Path(folder, "table.png"))
            with self.assertRaisesRegex(kv.Error, "nowhere"):
                self.table.save(Path(folder, "nowhere", "table.csv"))

    def test_html_is_escaped_and_cut(self):
        app = kv.Application()
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder, "a<b>&.csv")
            path.write_text("time,<i>&status\n" + "".join(f"{i},1\n{i},0\n" for i in range(1, 501)), encoding="utf-8")
            app.open(path)
            with app.analysis() as run:
                run.dialog.TypeOfAnalysis = kv.scSurKaplanMeierProductLimit
                run.dialog.OK()
                run.dialog.Variables = [["time"], ["<i>&status"]]
                run.dialog.CodeForCompleteResponses, run.dialog.CodeForCensoredResponses = 1, 0
                run.dialog.OK()
                results = run.dialog.Summary()
        shown = results._repr_html_()
        self.assertNotIn("<i>", shown)
        self.assertIn("&lt;i&gt;&amp;status", shown)
        page = xml.fromstring(f"<div>{results.table._repr_html_()}</div>")
        self.assertEqual(len(page.findall(".//tbody/tr")), 60)
        self.assertIn("The first 60 of 1,000 rows", "".join(page.itertext()))
        self.assertIn("The first 60 of 1,000 rows", str(results.table))


class ChartTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.chart = results_of_aml("PlotOfSurvivalTimesVsCumProportionSurviving").charts[0]

    def test_series(self):
        curve = self.chart.series[0]
        self.assertEqual((curve.style, curve.role), ("step", "estimate"))
        self.assertEqual(len(curve.x), len(curve.y))
        self.assertEqual(curve.y[0], 1.0)
        self.assertEqual({each.role for each in self.chart.series}, {"estimate", "lower", "upper", "censored"})

    def test_pictures_are_drawn_without_a_display(self):
        root = xml.fromstring(self.chart._repr_svg_())
        self.assertTrue(root.tag.endswith("svg"))
        inside = self.chart._repr_html_()
        self.assertNotIn("<?xml", inside)
        page = xml.fromstring(inside)
        self.assertEqual(page[0].get("role"), "img")
        self.assertIn(self.chart.title.strip(), page[0].get("aria-label"))

    def test_files(self):
        with tempfile.TemporaryDirectory() as folder:
            for ending, begin in (("svg", b"<?xml"), ("png", b"\x89PNG"), ("pdf", b"%PDF")):
                path = Path(folder, "chart." + ending)
                self.chart.save(path)
                self.assertTrue(path.read_bytes().startswith(begin), ending)


class ResultsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.results = results_of_aml("Summary", "PlotOfSurvivalTimesVsCumProportionSurviving",
                                     "PercentilesOfSurvivalFunction")

    def test_by_place_kind_and_name(self):
        self.assertEqual([type(each).__name__ for each in self.results],
                         ["Report", "Table", "Table", "Chart", "Table"])
        self.assertEqual(self.results[-1].title, self.results.PercentilesOfSurvivalFunction.title)
        self.assertEqual([each.title for each in self.results[1:3]], [each.title for each in self.results.tables[:2]])
        self.assertIn("PercentilesOfSurvivalFunction", dir(self.results))
        with self.assertRaisesRegex(AttributeError, "near: Summary"):
            self.results.Sumary
        self.assertEqual(self.results.Summary[0].lines, self.results.reports[0].lines)
        self.assertEqual(self.results.table.shape, (23, 5))
        self.assertEqual(self.results.cells, self.results.table.cells)

    def test_a_directory_of_all(self):
        with tempfile.TemporaryDirectory() as folder:
            target = Path(folder, "out")
            files = self.results.save(target, format="json,csv")
            self.assertEqual(sorted(map(str, files)), sorted(str(target / name) for name in
                                                             (each.name for each in target.glob("[!.]*"))))
            book = json.loads((target / "results.json").read_text(encoding="utf-8"))
            self.assertEqual([len(book[kind]) for kind in ("reports", "spreadsheets", "charts")], [1, 3, 1])
            with self.assertRaisesRegex(kv.UsageError, "unknown format 'doc'"):
                self.results.save(target, format="doc")
            self.results.charts.save(target, format=["svg"])  # in place of the earlier ones
            self.assertEqual([each.suffix for each in target.glob("[!.]*")], [".svg"])

    def test_one_file_of_all(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder, "all.xlsx")
            self.assertEqual(self.results.save(path), [str(path)])
            self.assertEqual(path.read_bytes()[:2], b"PK")
            path = Path(folder, "some.json")
            self.results.Summary.save(path)
            self.assertEqual(json.loads(path.read_text(encoding="utf-8"))["charts"], [])
            with self.assertRaisesRegex(kv.UsageError, r"several results.*\.json"):
                self.results.save(Path(folder, "all.csv"))

    def test_copies_are_the_same_and_pickles_say_what_to_do(self):
        self.assertIs(copy.deepcopy(self.results), self.results)
        self.assertIs(copy.copy(self.results.table), self.results.table)
        for one in (self.results, self.results.table, self.results.charts[0]):
            with self.assertRaisesRegex(TypeError, "to_pandas"):
                pickle.dumps(one)
        with self.assertRaisesRegex(TypeError, "open its data in another"):
            copy.copy(kv.Application())
        for error in (kv.AnalysisError(7, "text", "detail"), kv.DataError("text", "file", 3), kv.Busy("text"),
                      kv.AutomationError("text", "detail"), kv.UsageError("text", "level")):
            again = pickle.loads(pickle.dumps(error))
            self.assertEqual((type(again), str(again), vars(again)), (type(error), str(error), vars(error)))

    def test_names_of_files_are_not_cut(self):
        with tempfile.TemporaryDirectory() as folder:
            for save in (self.results.save, self.results.table.save, kv.Application().open):
                with self.assertRaisesRegex(kv.UsageError, "zero byte"):
                    save(folder + "/x\0.csv")
            self.assertEqual(list(Path(folder).iterdir()), [])

    def test_an_earlier_run_keeps_its_own(self):
        app, run = started(kv.scSurKaplanMeierProductLimit)
        with app:
            first = specified(run).Summary()
            run.dialog.Cancel()
            app.select("time < 40")
            run.dialog.OK()
            second = run.dialog.Summary()
            self.assertEqual((first.table.shape[0], second.table.shape[0]), (23, 18))
            self.assertEqual(len(run.results), 3)
            self.assertTrue(any("time < 40" in note for note in run.results.notes))
            self.assertFalse(any("time < 40" in note for note in first.notes))


if __name__ == "__main__":
    unittest.main()
