"""Results: tables, charts and reports. They live on when their analysis and application are gone."""
import difflib
import html
import os
import re
import warnings
from collections.abc import Sequence
from typing import NamedTuple

from korvana import _korvana
from korvana._errors import UsageError
from korvana._paths import path_bytes
from korvana._words import python_text

_MOST_ROWS = 60  # that a notebook or print() shows of a table
_FORMATS = "txt,json,csv,html,svg,png,py"


class Message(NamedTuple):
    """What an analysis said. number: in the module, 0 for a message of the program; severity: note, warning, error."""
    number: int
    severity: str
    text: str
    detail: str


class Series(NamedTuple):
    """A series of a chart. style: line, step, markers or histogram (whose y are counted into classes); role: estimate,
    lower, upper (bounds), observed or censored."""
    legend: str
    x: object
    y: object
    style: str
    role: str


def _array(values):
    """Numbers as a numpy array that reads them where they are; as a list without numpy, and where texts are among
    them."""
    if isinstance(values, list):
        return values
    try:
        import numpy
    except ImportError:
        return memoryview(values).tolist()
    return numpy.asarray(values)


def _unique(names):
    """The names, numbered where they are equal."""
    taken = set()
    unique = []
    for place, name in enumerate(names, 1):
        stem = name = name or f"Column {place}"
        number = 1
        while name in taken:
            number += 1
            name = f"{stem} {number}"
        taken.add(name)
        unique.append(name)
    return unique


class _Unchanging:
    """Results stay as they were made: a copy would be the same. They are of this process."""
    __slots__ = ()

    def __copy__(self):
        return self

    def __deepcopy__(self, memo):
        return self

    def __reduce__(self):
        raise TypeError("results cannot be pickled; give their to_pandas() or cells to other processes, or save() them")


class _Result(_Unchanging):
    """What tables, charts and reports have in common."""
    __slots__ = ("_output", "__weakref__")

    def __init__(self, output):
        self._output = output

    @property
    def title(self):
        """The title."""
        return self._output.title

    def save(self, path):
        """Writes it into a file, in the format that the file's name ends with. A file that is there is replaced."""
        path = os.fspath(path)
        ending = os.path.splitext(os.fsdecode(path))[1].lower().lstrip(".")
        self._output.save(ending, path_bytes(path))


class Table(_Result):
    """A table of results: rows of cells under named columns.

    table.columns, table.cells, table["Standard Error"], table.to_pandas(), table.save("table.xlsx")
    """
    __slots__ = ()

    @property
    def columns(self):
        """The names of the columns; equal ones are numbered."""
        return _unique(name for name, _ in self._output.columns())

    @property
    def ids(self):
        """Names of the columns for programs, which do not change with headings; empty where there is none."""
        return [name for _, name in self._output.columns()]

    @property
    def headings(self):
        """The heading of each row; an empty list when the rows have none."""
        return [heading.rstrip() for heading in self._output.row_headings()]

    @property
    def notes(self):
        """The lines above and below the table."""
        return self._output.notes()

    @property
    def shape(self):
        """The numbers of rows and columns."""
        return self._output.rows(), len(self._output.columns())

    @property
    def cells(self):
        """All cells, as a list of rows; an empty one is None."""
        return self._output.cells()

    def column(self, name):
        """A column, by its name, its id or its place from 0: numbers as a numpy array (NaN: an empty cell) that cannot
        be written to, texts as a list (None: an empty cell)."""
        return _array(self._output.column(self._place(name)))

    __getitem__ = column

    # Without it, Python would take the columns for the items of a sequence.
    def __iter__(self):
        return iter(self.columns)

    def __contains__(self, name):
        return name in self.columns or name != "" and name in self.ids

    def to_pandas(self, ids=False):
        """The table as a pandas DataFrame, with the rows' headings as its index. ids: name the columns by their ids,
        where they have one."""
        import pandas
        names = self.columns
        if ids:
            names = _unique(one or name for one, name in zip(self.ids, names))
        data = {name: self.column(place) for place, name in enumerate(names)}
        headings = self.headings
        return pandas.DataFrame(data, columns=names, index=headings or range(self.shape[0]))

    def _place(self, name):
        names = self.columns
        if isinstance(name, str):
            for known in (names, self.ids):
                if name in known and name:
                    return known.index(name)
            near = difflib.get_close_matches(name, names + self.ids, 3, 0.5)
            raise KeyError(f"no column {name!r}; " + (f"near: {', '.join(near)}" if near else
                                                      f"there are: {', '.join(names)}"))
        if not hasattr(name, "__index__"):
            raise TypeError(f"a column is named by its name, its id or its place, not by {name!r}")
        return range(len(names))[name]  # also from the end

    def __repr__(self):
        rows, columns = self.shape
        return f"<Table {self.title!r}: {rows} rows, {columns} columns>"

    def __str__(self):
        rows = self.shape[0]
        text = self._output.text(_MOST_ROWS).rstrip("\n")
        return text if rows <= _MOST_ROWS else text + f"\nThe first {_MOST_ROWS} of {rows:,} rows."

    def _repr_html_(self):
        return self._output.html(_MOST_ROWS, ".cells, .to_pandas() and .save() have all of them.")


class Chart(_Result):
    """A chart. chart.series has its numbers; chart.save("chart.svg") draws it (also .png and .pdf)."""
    __slots__ = ("_drawn",)

    @property
    def x_title(self):
        """The title of the x axis."""
        return self._output.axes()[0]

    @property
    def y_title(self):
        """The title of the y axis."""
        return self._output.axes()[1]

    @property
    def notes(self):
        """What a reader must know to understand the picture."""
        return self._output.chart_notes()

    @property
    def series(self):
        """The series: legend, x, y (numpy arrays), style and role."""
        return [Series(legend, _array(x), _array(y), style, role)
                for legend, x, y, style, role in self._output.series()]

    def __repr__(self):
        return f"<Chart {self.title!r}: {len(self._output.series())} series>"

    def _repr_svg_(self):
        return self._picture("")

    def _repr_html_(self):
        return f'<div style="max-width: 60em; background: #fff">{self._picture("korvana-")}</div>'

    def _picture(self, prefix):
        """Drawn once: notebooks ask for each form of it."""
        try:
            drawn = self._drawn
        except AttributeError:
            drawn = self._drawn = {}
        if prefix not in drawn:
            drawn[prefix] = self._output.picture(prefix)
        return drawn[prefix]


class Report(_Result):
    """A report: text, line by line."""
    __slots__ = ()

    @property
    def lines(self):
        """The lines below the title."""
        return self._output.lines()

    @property
    def text(self):
        """The title and the lines."""
        return "\n".join([self.title, *self.lines]) + "\n"

    def __repr__(self):
        return f"<Report {self.title!r}: {len(self.lines)} lines>"

    def __str__(self):
        return self.text.rstrip("\n")

    def _repr_html_(self):
        return f'<pre style="line-height: 1.3">{html.escape(self.text)}</pre>'


_KINDS = {"table": Table, "chart": Chart, "report": Report}


def wrap(output):
    """The Table, Chart or Report of an output."""
    return _KINDS[output.kind](output)


class Results(_Unchanging, Sequence):
    """Several results, in the order in which they were made.

    Each is also an attribute, by the name of the action that made it: results.Summary. Where one action made several,
    such as a report and a table, the attribute is a Results of these.
    """
    __slots__ = ("_book", "_items", "_names")

    def __init__(self, book, outputs=None, names=None):
        """names: those of the attributes, one per output; by default the actions'."""
        self._book = book
        outputs = book.outputs() if outputs is None else outputs
        self._items = [wrap(each) for each in outputs]
        if names is None:
            ids = book.ids()
            names = [re.sub(r"\W", "_", ids[each.place]) for each in outputs]
        self._names = list(names)

    def __len__(self):
        return len(self._items)

    def __getitem__(self, place):
        if isinstance(place, slice):
            return self._some(range(len(self))[place])
        return self._items[place]

    def __getattr__(self, name):
        if name.startswith("__"):  # protocols that ask whether there is something
            raise AttributeError(name)
        places = [place for place, known in enumerate(self._names) if known == name]
        if len(places) == 1:
            return self._items[places[0]]
        if places:
            return self._some(places)
        near = difflib.get_close_matches(name, set(self._names), 3, 0.5)
        raise AttributeError(f"no result {name!r}; " + (f"near: {', '.join(near)}" if near else
                                                        f"there are: {', '.join(dict.fromkeys(self._names))}"))

    def __dir__(self):
        return sorted({*super().__dir__(), *filter(str.isidentifier, self._names)})

    def _some(self, places):
        return Results(self._book, [self._items[place]._output for place in places],
                       [self._names[place] for place in places])

    def _of(self, kind):
        return self._some([place for place, item in enumerate(self._items) if isinstance(item, kind)])

    @property
    def tables(self):
        """The tables among them."""
        return self._of(Table)

    @property
    def charts(self):
        """The charts among them."""
        return self._of(Chart)

    @property
    def reports(self):
        """The reports among them."""
        return self._of(Report)

    @property
    def analysis(self):
        """The name of the analysis."""
        return self._book.analysis

    @property
    def source(self):
        """The name of the data file."""
        return self._book.source

    @property
    def notes(self):
        """What a reader should know about the data and the run."""
        return [python_text(note) for note in self._book.notes]

    @property
    def messages(self):
        """What the analysis said: number, severity, text, detail."""
        return [Message(number, severity, python_text(text), python_text(detail))
                for number, severity, text, detail in self._book.messages]

    @property
    def iterations(self):
        """The protocol of an estimation, line by line."""
        return self._book.iterations

    @property
    def table(self):
        """The largest table among them, which is that of the estimates; None without a table."""
        return max((each for each in self._items if isinstance(each, Table)), default=None,
                   key=lambda each: each.shape[0] * each.shape[1])

    @property
    def columns(self):
        """The names of the columns of the largest table."""
        return self._one_table().columns

    @property
    def cells(self):
        """The cells of the largest table, as a list of rows."""
        return self._one_table().cells

    def to_pandas(self, ids=False):
        """The largest table as a pandas DataFrame (see Table.to_pandas); .tables has all."""
        return self._one_table().to_pandas(ids)

    def _one_table(self):
        table = self.table
        if table is None:
            raise UsageError("there is no table among these results")
        return table

    def save(self, path, format=None, *, replace=False):
        """Writes them into one file, or into a directory.

        A path that ends with .xlsx, .html, .json, .txt or .py (a script that makes them again) is a file for all of
        them. Any other is a directory: in it come one file per table and chart, and one for all (results.json,
        report.txt, report.html, results.xlsx, script.py), as far as the formats ask for them. All files of a directory
        appear together, in place of those of an earlier run; those of others are replaced only with replace=True.
        Returns the paths.

        format: for a directory, any of json, txt, csv, html, xlsx, svg, png, pdf and py, with commas between them.
        """
        path = os.fspath(path)
        book = self._as_book()
        ending = os.path.splitext(os.fsdecode(path))[1].lower().lstrip(".")
        if format is None and ending in ("xlsx", "html", "json", "txt", "csv", "svg", "png", "pdf", "py") and \
                not os.path.isdir(path):
            book.save_in_one(ending, path_bytes(path))
            return [path]
        if format is not None and not isinstance(format, str):
            format = ",".join(format)
        files, problems = book.save(path_bytes(path), format or _FORMATS, replace)
        for problem in problems:
            warnings.warn(problem, RuntimeWarning, stacklevel=2)
        return [os.fsdecode(file) for file in files]

    def _as_book(self):
        """A book of these results alone."""
        places = [each._output.place for each in self._items]
        return self._book if places == list(range(len(self._book.outputs()))) else self._book.part(places)

    def __repr__(self):
        return "<Results: " + (", ".join(map(repr, self._items)) or "none") + ">"

    def __str__(self):
        remarks = "\n".join(self._remarks())
        return "\n\n".join([*filter(None, [remarks]), *map(str, self._items)])

    def _repr_html_(self):
        remarks = "".join(f"<p>{html.escape(remark)}</p>\n" for remark in self._remarks())
        return remarks + "\n".join(each._repr_html_() for each in self._items)

    def _remarks(self):
        """What a reader of all of them must know."""
        warned = [f"{message.text} {message.detail}".rstrip() for message in self.messages
                  if message.severity != "note"]
        return [*warned, *self.notes]


def joined_results(runs):
    """One Results of several runs: [("exponential", results), ("lognormal", others)]. Titles get the name of their run; an
    empty name is for what is about all of them."""
    return Results(_korvana.joined([(str(name), results._as_book()) for name, results in runs]))
