"""Applications: the data that analyses work on."""
import os
from typing import NamedTuple

from korvana import _korvana
from korvana._errors import UsageError

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
    return separator, _DECIMALS[decimal] if decimal else "", dates or "", -1 if header is None else int(bool(header))


class Application:
    """Data, and the analyses of them.

        app = korvana.Application()
        app.open("trial.csv")
    """

    def __init__(self):
        self._data = _korvana.Data()

    def open(self, source, *, separator=None, decimal=None, dates=None, header=None):
        """Opens data in place of those that were open.

        source: the path of a data file (CSV, or text separated by tabs, semicolons or |; also packed by gzip);
        separator, decimal, dates, header: how to read it; what is not given is detected.
        """
        self._open_data().read(os.fsencode(source), *_reading(separator, decimal, dates, header))

    @property
    def name(self):
        """The name of the data file."""
        return os.path.basename(self._open_data().path)

    @property
    def variables(self):
        """The variables of the data, in their order."""
        return [Variable(name, kind, label, labels, None if missing != missing else missing, expression)
                for name, kind, label, labels, missing, expression in self._open_data().variables()]

    def close(self):
        """Closes the application: its data are released, and it cannot be used any more. Results stay."""
        self._data = None

    def _open_data(self):
        if self._data is None:
            raise UsageError("this application was closed; make another one: korvana.Application()")
        return self._data

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()
