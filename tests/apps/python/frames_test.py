"""Data in memory: each becomes what a file with the same values becomes."""
import array
import datetime
import decimal
import gc
import math
import sys
import tempfile
import unittest
import weakref
from pathlib import Path

import korvana as kv

try:
    import numpy as np
except ImportError:
    np = None
try:
    import pandas as pd
except ImportError:
    pd = None

needs_numpy = unittest.skipUnless(np, "numpy is not installed")
needs_pandas = unittest.skipUnless(pd, "pandas is not installed")


def opened(source, **reading):
    app = kv.Application()
    app.open(source, **reading)
    return app


def variables(source, **reading):
    """Name, kind and labels of each variable."""
    return [(each.name, each.kind, each.labels) for each in opened(source, **reading).variables]


def statistics(source, column="v"):
    """What the data set holds in a column, which an estimate shows: each value is a time."""
    results = kv.kaplan_meier(source, time=column, censor="c", complete=1, censored=0)
    return sorted(row[0] for row in results.table.cells)


class FilesTest(unittest.TestCase):
    """Columns beside the same values in a file."""

    def expect_as_in_file(self, source, text, **reading):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder, "same.csv")
            path.write_text(text, encoding="utf-8")
            self.assertEqual(variables(source, **reading), variables(path, header=True, **reading))

    def test_lists(self):
        self.expect_as_in_file({"a": [1, 2.5, None], "b": ["x", "", "é"], "c": ["1", "2", " 3 "], "d": [None] * 3},
                               "a,b,c,d\n1,x,1,\n2.5,,2,\n,é, 3 ,\n")
        self.expect_as_in_file({"a": [1, "x", 2.5, True, None]}, "a,z\n1,\nx,\n2.5,\nTrue,\n,\n".replace(",z", ",")
                               .replace("a,", "a").replace(",\n", "\n"))
        self.expect_as_in_file({"a": ["01/02/2000", "31/12/1999"]}, "a\n01/02/2000\n31/12/1999\n")
        self.expect_as_in_file({"a": ["1,5", "2,5"]}, 'a\n"1,5"\n"2,5"\n', decimal="comma")
        self.expect_as_in_file({"a": ["01/02/2000", "03/04/2000"]}, "a\n01/02/2000\n03/04/2000\n", dates="mdy")

    def test_dates(self):
        days = [datetime.date(2001, 2, 3), None, datetime.datetime(1969, 12, 31)]
        self.expect_as_in_file({"a": days, "b": [1, 2, 3]}, "a,b\n2001-02-03,1\n,2\n1969-12-31,3\n")

    def test_numbers_in_order_among_texts(self):
        self.assertEqual(variables({"a": ["b", "10", "9", "a"]})[0][2], {1.0: "9", 2.0: "10", 3.0: "a", 4.0: "b"})


class ColumnsTest(unittest.TestCase):
    def test_truth_values_are_zero_and_one_with_labels(self):
        for truths in ([True, False, None], *([np.array([True, False, True])] if np is not None else [])):
            self.assertEqual(variables({"a": truths}), [("a", "number", {0.0: "False", 1.0: "True"})])
        for complete, censored in ((1, 0), (True, False), ("True", "False")):
            results = kv.kaplan_meier({"t": [3, 1, 2], "dead": [True, False, True]}, time="t", censor="dead",
                                      complete=complete, censored=censored)
            self.assertEqual(len(results.table.cells), 3)

    def test_other_sequences(self):
        self.assertEqual(variables({"a": (1, 2), "b": range(2), "c": array.array("d", [1, 2]), "d": (x for x in "xy")}),
                         [("a", "number", {}), ("b", "number", {}), ("c", "number", {}),
                          ("d", "text", {1.0: "x", 2.0: "y"})])
        self.assertEqual(variables({"a": [decimal.Decimal("1.5"), decimal.Decimal("NaN")]})[0][1], "number")

    def test_awkward_tables_are_refused_with_their_fault(self):
        class Strange:
            def __float__(self):
                raise RuntimeError("no")

        for source, said in (({}, "no cases"), ({"a": []}, "no cases"), ({"a": [1], "b": [1, 2]}, "has 2 values"),
                             ({"a": 5}, "a column is a list"), ({"a": {0: 1, 1: 2}}, "not a dict"),
                             ({"a": {1, 2}}, "not a set"), ({"a\udc80": [1]}, "surrogates"), ({"a": "text"}, "a column is a list"),
                             ({"a": [1 + 2j]}, "complex is no value"), ({"a": [[1], [2]]}, "list is no value"),
                             ({"a": [b"x"]}, "bytes is no value"), ({"a": [1.0, math.inf]}, "infinite"),
                             ({"a": [10**400]}, "infinite"), ({"a": ["\ud800"]}, "'a'"),
                             ({"a": ["1", "2", "1.2.3"]}, "line 3|:3:")):
            with self.subTest(source=str(source)), self.assertRaisesRegex(kv.DataError, said):
                opened(source)
        for source in (5, None, [1, 2], object()):
            with self.assertRaises(TypeError):
                opened(source)
        with self.assertRaisesRegex(kv.UsageError, "header"):
            opened({"a": [1]}, header=True)
        self.assertEqual(variables({"a": [Strange(), 1]})[0][1], "text")

    def test_a_list_that_changes_while_it_is_read_does_no_harm(self):
        values = ["x"] * 2000

        class Clears:
            def __str__(self):
                values.clear()
                return "y"

        values[3] = Clears()
        self.assertEqual(variables({"a": values})[0][1], "text")


@needs_numpy
class ArraysTest(unittest.TestCase):
    def check(self, values, expected):
        table = {"v": values, "c": [1] * len(values)}
        self.assertEqual(statistics(table), expected)

    def test_every_type_of_number(self):
        for code in ("i1", "i2", "i4", "i8", "u1", "u2", "u4", "u8", "f2", "f4", "f8", ">i4", ">f8", ">u2", "longdouble"):
            with self.subTest(code=code):
                self.check(np.array([1, 2, 3], dtype=code), [1.0, 2.0, 3.0])
        self.check(np.array([2**49 + 1, -1, 5, 2**49], dtype="i8"), [5.0, 2.0**49, 2.0**49 + 1])

    def test_every_layout(self):
        base = np.arange(1.0, 13.0)
        fixed = base[:3].copy()
        fixed.flags.writeable = False
        packed = np.zeros(3, dtype=[("flag", "u1"), ("v", "f8")])
        packed["v"] = [1, 2, 3]
        for values in (base[::2][:3], base[2::-1], base.reshape(4, 3)[:, 0], fixed, packed["v"],
                       np.asfortranarray(base.reshape(3, 4))[:, 1]):
            with self.subTest(strides=values.strides):
                self.check(values, sorted(values.tolist()))
        self.assertEqual([name for name, _, _ in variables(packed)], ["flag", "v"])
        for values, said in ((np.array(5.0), "a column is|dimensions"), (base.reshape(4, 3), "2 dimensions"),
                             (np.array([1 + 2j]), "complex128"), (np.zeros(2, dtype="V8"), "no variable|is no")):
            with self.assertRaisesRegex(kv.DataError, said):
                opened({"v": values})

    def test_missing_ones(self):
        self.check(np.ma.array([1, 2, 3, 4], mask=[False, True, False, False]), [1.0, 3.0, 4.0])
        self.check(np.array([1.0, np.nan, 3.0, 4.0]), [1.0, 3.0, 4.0])
        self.assertEqual(variables({"v": np.ma.array(["a", "b"], mask=[True, False])}), [("v", "text", {1.0: "b"})])

    def test_times_and_dates(self):
        for unit in ("D", "h", "s", "ms", "us", "ns", "M", "10m"):
            days = np.array(["2001-02-01", "NaT", "1969-12-01"], dtype=f"M8[{unit}]")
            self.assertEqual(variables({"v": days})[0][1], "date", unit)
        self.check(np.array([3, 1, 2], dtype="m8[D]"), [1.0, 2.0, 3.0])
        self.check(np.array([36, 12, 24], dtype="m8[h]"), [0.5, 1.0, 1.5])
        self.assertEqual(variables({"v": np.array(["NaT"], dtype="M8[ns]")})[0][1], "number")  # nothing shows what it is
        with self.assertRaises(kv.DataError):
            opened({"v": np.array([1], dtype="m8[M]")})
        with self.assertRaisesRegex(kv.DataError, "beyond the years"):
            opened({"v": np.array([10**7], dtype="M8[D]")})

    def test_texts(self):
        self.assertEqual(variables({"v": np.array(["b", "a"])}), [("v", "text", {1.0: "a", 2.0: "b"})])
        self.assertEqual(variables({"v": np.array([b"b", b"a"])}), [("v", "text", {1.0: "a", 2.0: "b"})])

    def test_arrays_are_borrowed_and_never_changed(self):
        values = np.array([3.0, 1.0, 2.0])
        before = sys.getrefcount(values)
        app = opened({"v": values, "c": [1, 1, 1]})
        self.assertGreater(sys.getrefcount(values), before)
        with self.assertRaises(ValueError):
            values.resize(10, refcheck=True)
        app.select("v > 1")
        app.define("w", "v * 2")
        values[0] = np.nan  # the owner's right
        values[1] = np.inf
        run = app.analysis()
        run.close()
        app.close()
        gc.collect()
        self.assertEqual(sys.getrefcount(values), before)
        self.assertTrue(math.isnan(values[0]) and values[2] == 2.0)

    def test_whatever_is_named_is_read(self):
        times = np.array([4.0, 2.0, 3.0])
        codes = np.array([1, 0, 1])
        for name, given in (("my 'own' time", "my 'own' time"), ("  time\t", "time"), ('a, "b"', ['a, "b"']), ("T I", "t i"),
                            ("", "Var1"), ("", 1)):
            with self.subTest(name=name):
                results = kv.kaplan_meier({name: times, "c": codes}, time=given, censor=2, complete=1, censored=0)
                self.assertEqual([row[0] for row in results.table.cells], [2.0, 3.0, 4.0])
        results = kv.kaplan_meier({"my 'own' time": times, "c": codes}, time="t", censor="c", complete=1, censored=0,
                                  define="t = 'my ''own'' time' * 2")
        self.assertEqual([row[0] for row in results.table.cells], [4.0, 6.0, 8.0])

    def test_what_nobody_uses_is_not_looked_at(self):
        class Untouchable:
            def __str__(self):
                raise RuntimeError("looked at")

        columns = {"t": np.array([1.0, 2.0, 3.0]), "c": np.array([1, 0, 1]),
                   "other": np.array([Untouchable()] * 3, object), "endless": np.array([np.inf, 1.0, 2.0])}
        self.assertEqual(len(kv.kaplan_meier(columns, time="t", censor="c", complete=1, censored=0).table.cells), 3)
        # By its number, or in an expression, it is used.
        for more in ({"select": "v4 > 0"}, {"weight": 4}, {"define": "x = ENDLESS + 1"}):
            with self.assertRaisesRegex(kv.DataError, "infinite"):
                kv.kaplan_meier(columns, time="t", censor="c", complete=1, censored=0, **more)


@needs_pandas
class DataFramesTest(unittest.TestCase):
    def test_names(self):
        frame = pd.DataFrame([[1, 2, 3, 4]], columns=["a", "a", 7, ""])
        self.assertEqual([name for name, _, _ in variables(frame)], ["a", "a_2", "7", "Var4"])
        levels = pd.DataFrame([[1, 2]], columns=pd.MultiIndex.from_tuples([("a", "x"), ("a", 2)]))
        self.assertEqual([name for name, _, _ in variables(levels)], ["a.x", "a.2"])

    def test_own_types_of_pandas(self):
        frame = pd.DataFrame({
            "whole": pd.array([1, None, 3], dtype="Int64"), "real": pd.array([1.5, None, 3], dtype="Float64"),
            "truth": pd.array([True, None, False], dtype="boolean"), "text": pd.array(["b", None, "a"], dtype="string"),
            "category": pd.Categorical(["lo", None, "hi"], categories=["hi", "lo", "none"]),
            "numbers": pd.Categorical([10, 9, 10]), "sparse": pd.arrays.SparseArray([0.0, 0.0, 1.0]),
            "zoned": pd.to_datetime(["2001-02-03 23:30", None, "2001-02-04"]).tz_localize("Europe/Berlin"),
            "span": pd.to_timedelta([1, None, 2], unit="D"), "period": pd.period_range("2001-01", periods=3, freq="M"),
            "object": [pd.NA, pd.NaT, "x"]})
        got = {name: (kind, labels) for name, kind, labels in variables(frame)}
        truth = {0.0: "False", 1.0: "True"}
        self.assertEqual(got["whole"], ("number", {}))
        self.assertEqual(got["real"], ("number", {}))
        self.assertEqual(got["truth"], ("number", truth))
        self.assertEqual(got["text"], ("text", {1.0: "a", 2.0: "b"}))
        self.assertEqual(got["category"], ("text", {1.0: "hi", 2.0: "lo"}))
        self.assertEqual(got["numbers"], ("number", {}))
        self.assertEqual(got["sparse"], ("number", {}))
        self.assertEqual(got["zoned"][0], "date")
        self.assertEqual(got["span"], ("number", {}))
        self.assertEqual(got["period"][1], {1.0: "2001-01", 2.0: "2001-02", 3.0: "2001-03"})
        self.assertEqual(got["object"], ("text", {1.0: "x"}))

    def test_a_frame_is_its_file(self):
        frame = pd.DataFrame({"t": [5, 3.5, None, 8], "s": ["b", "a", None, "b"], "n": ["1", "2", "3", "x"],
                              "d": pd.to_datetime(["2001-02-03", None, "1999-01-01", "2000-02-29"]),
                              "i": [1, 2, 1, 1]})
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder, "frame.csv")
            frame.to_csv(path, index=False)
            self.assertEqual(variables(frame), variables(path))
            for column in ("d", "i", "n"):
                self.assertEqual(*(kv.kaplan_meier(source, time="u", define=f"u = {column} + 1", censor="i", complete=1,
                                                   censored=[2], missing={"t": 9}).table.cells
                                   for source in (frame, path)))

    def test_awkward_frames(self):
        with self.assertRaisesRegex(kv.DataError, "no cases"):
            opened(pd.DataFrame({"a": []}))
        with self.assertRaises(kv.DataError):
            opened(pd.DataFrame())
        self.assertEqual(variables(pd.DataFrame({"a": [1.0]})), [("a", "number", {})])
        frame = pd.DataFrame({"t": [3.0, 1.0, 2.0], "s": [0, 1, 1]})
        with self.assertRaisesRegex(kv.DataError, "not a dict"):
            opened(frame.to_dict())
        # Of other cases than their place says.
        with self.assertRaisesRegex(kv.DataError, "'s': its index is not that of 't'"):
            opened({"t": frame.t, "s": frame.s.sort_values(ascending=False)})
        self.assertEqual(len(variables({"t": frame.t, "s": frame.s, "x": [7, 8, 9]})), 3)
        for source in (frame.t, frame.groupby("s")):
            with self.assertRaisesRegex(TypeError, "data are a path, a pandas DataFrame or a dict"):
                opened(source)

    def test_arrays_of_pandas_in_a_dict_are_as_in_a_frame(self):
        for values in (pd.array(["a", "b", None], dtype="string"), pd.array([1, None, 3], dtype="Int64"),
                       pd.Categorical(["x", None, "y"]), pd.array([True, None, False], dtype="boolean")):
            with self.subTest(type=str(values.dtype)):
                self.assertEqual(variables({"v": values}), variables(pd.DataFrame({"v": values})))

    def test_the_frame_may_go(self):
        frame = pd.DataFrame({"v": np.arange(1.0, 1000.0), "c": 1})
        gone = weakref.ref(frame)
        app = opened(frame)
        del frame
        gc.collect()
        self.assertIsNone(gone())
        app.define("w", "v + 1")
        self.assertEqual(len(app.variables), 3)


if __name__ == "__main__":
    unittest.main()
