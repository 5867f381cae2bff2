"""Applications: the data that analyses work on."""
import os
import weakref
from typing import NamedTuple

from korvana import _korvana
from korvana._analysis import Analysis
from korvana._errors import DataError, UsageError
from korvana._frames import is_frame, make_frame, no_data
from korvana._library import library
from korvana._paths import path_bytes
from korvana._words import python_text

_SEPARATORS = {"comma": ",", "semicolon": ";", "tab": "\t", "\\t": "\t", "pipe": "|", "bar": "|"}
_DECIMALS = {"point": ".", "comma": ",", ".": ".", ",": ","}
_DATES = ("dmy", "mdy", "ymd")


class Variable(NamedTuple):
    """A variable of the data.

    kind: number, text or date; labels: the texts of its codes; missing: the code that stands for a missing value,
    None without one; expression: of a variable that was computed, else empty.
    """
    name: str
    kind: str
    label: str
    labels: dict
    missing: float
    expression: str


def _reading(separator=None, decimal=None, dates=None, header=None):
    """The options of reading as the reader takes them."""
    if separator is None:
        separator = ""
    elif separator in _SEPARATORS:
        separator = _SEPARATORS[separator]
    elif not (isinstance(separator, str) and len(separator) == 1 and separator.isascii() and
              (separator == "\t" or separator.isprintable() and not separator.isalnum() and separator != " ")):
        raise UsageError("separator is comma, semicolon, tab, pipe or another sign (no letter or digit), not "
                         f"{separator!r}")
    if decimal is not None and decimal not in _DECIMALS:
        raise UsageError(f"decimal is point or comma, not {decimal!r}")
    if dates is not None and dates not in _DATES:
        raise UsageError(f"dates is dmy (day, month, year), mdy or ymd, not {dates!r}")
    if header not in (None, True, False):
        raise UsageError(f"header is True or False, not {header!r}")
    return separator, _DECIMALS[decimal] if decimal else "", dates or "", -1 if header is None else int(bool(header))


class Application:
    """Data, and the analyses of them.

        app = korvana.Application()
        app.open("trial.csv")
        run = app.analysis()

    The analysis keeps the data while it runs. Several applications have their own data; analyses run one at a time.
    """
    __slots__ = ("_data", "_run", "__weakref__")

    def __reduce__(self):
        raise TypeError("an application cannot be copied or pickled; open its data in another one")

    def __init__(self):
        self._data = _korvana.Data()
        self._run = None

    def open(self, source, *, separator=None, decimal=None, dates=None, header=None):
        """Opens data in place of those that were open. An analysis goes on with them, where it can.

        source: the path of a data file (CSV, or text separated by tabs, semicolons or |; also packed by gzip), a pandas
        DataFrame, or a dict of columns (lists, arrays), which become what a file with the same values becomes. Columns
        of 8-byte floats are not copied: do not change them while an analysis of them runs.

        separator, decimal, dates, header: how to read it; what is not given is detected. Data in memory take decimal
        and dates, for their texts.
        """
        data = self._open_data()
        reading = _reading(separator, decimal, dates, header)
        if is_frame(source):
            if separator is not None or header is not None:
                raise UsageError(("separator" if header is None else "header") + " is for files: data in memory have "
                                 "their columns and names")
            make_frame(source, *reading[1:3]).open(data)
        elif isinstance(source, (str, bytes, os.PathLike)):
            try:
                data.read(path_bytes(source), *reading)
            except DataError as error:
                error.args = (python_text(str(error)),)
                raise
        else:
            raise no_data(source)
        self._replaced()

    def define(self, name, expression):
        """Adds a variable that is computed from others: app.define("months", "days / 30.4375")."""
        self._open_data().define(str(name), str(expression))

    def select(self, condition=None):
        """Takes only the cases for which the condition holds: app.select("age >= 60"). None takes all."""
        if condition is not None and not isinstance(condition, str):
            raise UsageError(f'a condition is a text, such as "age >= 60", not {condition!r}')
        self._open_data().select(condition or "")

    def weight(self, variable=None):
        """Weights the cases: one of weight w >= 2 counts ceil(w) times, any other once. None ends the weighting."""
        self._open_data().weight("" if variable is None else str(variable))

    def missing(self, variable, *codes):
        """Sets the code that stands for a missing value of a variable: a number, or the text of a value label. A
        variable has one such code; without one, none of its values is missing."""
        if len(codes) > 1:
            raise UsageError(f"{variable!r} can have one code for missing values, not {len(codes)}; make them one in a "
                             "new variable with define(), and take that instead")
        if codes and codes[0] != codes[0]:
            raise UsageError("values that are no number are missing without a code")
        self._open_data().missing(str(variable), codes[0] if codes else None)

    def describe(self, variable, *, label=None, labels=None):
        """Changes the label of a variable, and the texts of its codes, a dict: {0: "alive", 1: "dead"}, in place of all
        that were there. What is not given stays."""
        if labels is not None:
            try:
                labels = {float(code): str(text) for code, text in dict(labels).items()}
            except (TypeError, ValueError):
                raise UsageError('labels are a dict of codes and their texts, such as {0: "alive", 1: "dead"}, not '
                                 f"{labels!r}") from None
        _korvana.describe(self._open_data(), str(variable), None if label is None else str(label), labels)

    def analysis(self, name=None) -> Analysis:
        """Starts the analysis and returns it with its first dialog open. Raises Busy while another one is not closed.

        name: of the analysis; there is one, "Survival Analysis".
        """
        if name is not None and name != library.analysis:
            raise UsageError(f"there is no analysis {name!r}; there is: {library.analysis!r}")
        run = Analysis(self, self._open_data())
        self._run = weakref.ref(run)
        return run

    @property
    def run(self):
        """The analysis that is not closed yet, or None."""
        run = self._run() if self._run is not None else None
        return run if run is not None and run.active else None

    @property
    def name(self):
        """The name of the data file."""
        return os.path.basename(self._open_data().path)

    @property
    def variables(self) -> list[Variable]:
        """The variables of the data, in their order."""
        return [Variable(name, kind, label, labels, None if missing != missing else missing, expression)
                for name, kind, label, labels, missing, expression in self._open_data().variables()]

    @property
    def cases(self):
        """The number of cases in the data."""
        return self._open_data().cases

    @property
    def notes(self):
        """What a reader of results should know about the data: how they were read, selected and weighted."""
        return self._open_data().notes

    def close(self):
        """Closes the application and its analysis: the data are released, and neither can be used any more. Results
        stay."""
        if self._data is None:
            return
        run = self._run() if self._run is not None else None
        if run is not None:
            run.close()
        self._data.clear()
        self._data = None

    def _open_data(self):
        if self._data is None:
            raise UsageError("this application was closed; make another one: korvana.Application()")
        return self._data

    def _replaced(self):
        """Other data were opened."""
        run = self.run
        if run is not None:
            run._follow_data()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def __repr__(self):
        if self._data is None:
            return "<Application: closed>"
        return f"<Application: {self.name or 'no data'}, {self.cases} cases>"
