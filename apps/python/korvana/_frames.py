"""Data in memory: pandas DataFrames, numpy records and dicts of columns.

What a column becomes is what a file with the same values would hold. Columns of 8-byte floats are borrowed, not copied;
others are converted in one pass.
"""
import collections.abc
import datetime
import decimal
import math
import numbers
import sys

from korvana import _korvana
from korvana._errors import DataError

_PER_DAY = {"h": 24, "m": 1440, "s": 86400, "ms": 86400 * 10**3, "us": 86400 * 10**6, "ns": 86400 * 10**9, "D": 1}
_NO_CELLS = (bytes, bytearray, memoryview, list, tuple, dict, set, frozenset, complex)


def _library(name):
    """A library that the caller uses, or None: what was not imported cannot have made the data."""
    return sys.modules.get(name)


def _missing():
    pandas = _library("pandas")
    return (pandas.NaT, pandas.NA) if pandas else ()


def _plain(value):
    """A value of some type as a number, truth value or text; None where it is missing."""
    numpy = _library("numpy")
    if numpy and isinstance(value, numpy.generic):
        if isinstance(value, (numpy.datetime64, numpy.timedelta64)) and numpy.isnat(value):
            return None
        if isinstance(value, numpy.datetime64):
            return str(value.astype("datetime64[s]")).replace("T", " ")
        if isinstance(value, numpy.timedelta64):
            return float(value / numpy.timedelta64(1, "D"))
        if isinstance(value, numpy.str_):
            return str(value)
        value = value.item()
    if value is None or isinstance(value, bool):
        return value
    if isinstance(value, int):
        return int(value)
    if isinstance(value, str):
        return str.__str__(value)
    if isinstance(value, datetime.datetime):
        return value.replace(tzinfo=None).isoformat(" ") if value == value else None
    if isinstance(value, datetime.date):
        return value.isoformat()
    if isinstance(value, datetime.timedelta):
        return value / datetime.timedelta(days=1)
    if isinstance(value, decimal.Decimal):
        return None if value.is_nan() else str(value)
    if isinstance(value, _NO_CELLS) or hasattr(value, "__array__") or hasattr(value, "__len__"):
        raise TypeError(f"a {type(value).__name__} is no value of a variable: it takes numbers, texts, dates and truth "
                        "values")
    if isinstance(value, numbers.Real):
        value = float(value)
        return None if math.isnan(value) else value
    return str(value)


def _text(value):
    """A category as the cell of a file."""
    value = _plain(value)
    return None if value is None or value != value else str(value)


def _add_times(frame, name, values, numpy):
    unit, count = numpy.datetime_data(values.dtype)
    dates = values.dtype.kind == "M"
    if unit not in _PER_DAY or count != 1:
        if not dates and unit in ("Y", "M", "generic"):
            raise TypeError("lengths of time are counted in days; years and months have none")
        values = values.astype("datetime64[D]" if dates else "timedelta64[s]")
        unit = "D" if dates else "s"
    values = values.astype(values.dtype.newbyteorder("="), copy=False)
    (frame.dates if dates else frame.durations)(name, values.view("i8"), _PER_DAY[unit])


def _add_array(frame, name, values, numpy):
    if isinstance(values, numpy.ma.MaskedArray):
        if values.dtype.kind in "fiu":
            values = values.astype("f8").filled(math.nan)
        elif values.dtype.kind in "mM":
            values = values.filled(numpy.array("NaT", values.dtype))
        else:
            objects = values.data.astype(object)
            objects[numpy.ma.getmaskarray(values)] = None  # filled() has another value for None
            values = objects
    kind = values.dtype.kind
    if kind in "fiu":
        if kind == "f" and values.dtype.itemsize not in (4, 8):
            with numpy.errstate(over="ignore"):  # what is too large is found as infinity
                values = values.astype("f8")
        frame.numbers(name, values.astype(values.dtype.newbyteorder("="), copy=False))
    elif kind == "b":
        frame.truths(name, values.view("u1"))
    elif kind in "mM":
        _add_times(frame, name, values, numpy)
    elif kind == "O":
        frame.objects(name, values, _missing(), _plain)
    elif kind == "U":
        frame.objects(name, values.astype(object), _missing(), _plain)
    elif kind == "S":
        frame.objects(name, numpy.char.decode(values, "utf-8").astype(object), _missing(), _plain)
    else:
        raise TypeError(f"an array of {values.dtype} is no variable: it takes numbers, texts, dates and truth values")


def _add_series(frame, name, values, numpy):
    """A column of pandas whose type is one of pandas' own."""
    dtype = values.dtype
    if hasattr(dtype, "categories") and hasattr(dtype, "ordered"):
        codes = values.cat.codes if hasattr(values, "cat") else values.codes
        texts = [_text(category) for category in dtype.categories]
        frame.codes(name, numpy.asarray(codes), texts)
    elif hasattr(dtype, "tz"):
        local = values.dt.tz_localize(None) if hasattr(values, "dt") else values.tz_localize(None)
        _add_array(frame, name, local.to_numpy(), numpy)
    elif hasattr(dtype, "fill_value"):  # sparse
        _add_array(frame, name, numpy.asarray(values), numpy)
    elif getattr(dtype, "kind", "O") in "iuf":
        frame.numbers(name, values.to_numpy(dtype="f8", na_value=math.nan))
    elif getattr(dtype, "kind", "O") == "b":
        frame.truths(name, values.to_numpy(dtype="f8", na_value=math.nan))
    else:
        _add_array(frame, name, numpy.asarray(values.astype(object)), numpy)


def _add(frame, name, values):
    numpy = _library("numpy")
    if isinstance(values, list):
        frame.objects(name, values, _missing(), _plain)
        return
    dtype = getattr(values, "dtype", None)
    if dtype is None or numpy is None:
        frame.objects(name, list(values), _missing(), _plain)
    elif isinstance(dtype, numpy.dtype):
        _add_array(frame, name, values if isinstance(values, numpy.ndarray) else values.to_numpy(), numpy)
    else:
        _add_series(frame, name, values, numpy)


def _name(name):
    """The text of a column's name; a name of several levels has points between them."""
    text = ".".join(str(part) for part in name if str(part) != "") if isinstance(name, tuple) else str(name)
    try:
        text.encode()
    except UnicodeEncodeError:
        raise DataError(f"the name of a column, {name!r}, has characters that are none (surrogates)") from None
    return text


def is_frame(source):
    """Whether a source of data is in memory, and not the path of a file."""
    return isinstance(source, collections.abc.Mapping) or hasattr(source, "columns") and hasattr(source, "iloc") or \
        getattr(getattr(source, "dtype", None), "names", None)


def _table(source):
    """The names of the columns, a function that returns a column by its place, what to call the table."""
    if hasattr(source, "columns") and hasattr(source, "iloc"):
        return list(source.columns), lambda i: source.iloc[:, i], "DataFrame"
    if isinstance(source, collections.abc.Mapping):
        names = list(source.keys())
        return names, lambda i: source[names[i]], type(source).__name__
    names = list(getattr(getattr(source, "dtype", None), "names", None) or ())
    if names:
        return names, lambda i: source[names[i]], "array"
    raise no_data(source)


def no_data(source):
    """What to raise where something is neither a file nor a table."""
    return TypeError(f"data are a path, a pandas DataFrame or a dict of columns, not a {type(source).__name__}")


def _column(values, name):
    """A column that has a length, and one value per case."""
    if isinstance(values, (str, bytes, collections.abc.Mapping, collections.abc.Set)) or \
            not hasattr(values, "__iter__"):
        raise DataError(f"variable '{name}': a column is a list or an array, not a {type(values).__name__}")
    shape = getattr(values, "shape", None)
    if shape is not None and len(shape) != 1:
        raise DataError(f"variable '{name}': a column has one value per case, and this array has {len(shape)} "
                        "dimensions")
    return values if hasattr(values, "__len__") else list(values)


def _check_indexes(columns, kind):
    """Columns of pandas that were put together by hand are of the same cases if they have the same index."""
    pandas = _library("pandas")
    series = [(name, values) for name, values in columns if pandas and isinstance(values, pandas.Series)]
    for name, values in series[1:] if kind != "DataFrame" else ():
        if not values.index.equals(series[0][1].index):
            raise DataError(f"variable '{name}': its index is not that of '{series[0][0]}', so its values may be of other "
                            "cases; make a DataFrame of them, which puts together what belongs together, or give their "
                            "to_numpy()", kind)


def make_frame(source, decimal_mark="", dates="", wanted=None):
    """The columns of a table as a frame of the extension.

    wanted: a function of a column's name and number that tells whether it may be used; others are not looked at.
    """
    names, get, kind = _table(source)
    shape = getattr(source, "shape", None)
    cases = shape[0] if shape else None
    columns = []
    for number, given in enumerate(names, 1):
        name = _name(given)
        if shape and wanted and not wanted(name, number):
            columns.append((name, None))
            continue
        values = _column(get(number - 1), name)
        if cases is None:
            cases = len(values)
        if len(values) != cases:
            raise DataError(f"variable '{name}' has {len(values)} values, and '{columns[0][0]}' has {cases}; give each "
                            "column the same number of values", kind)
        columns.append((name, values if not wanted or wanted(name, number) else None))
    _check_indexes(columns, kind)
    frame = _korvana.Frame(kind, cases or 0, decimal_mark, dates)
    for number, (name, values) in enumerate(columns, 1):
        if values is None:
            frame.unread(name)
            continue
        try:
            _add(frame, name, values)
        except (TypeError, ValueError, OverflowError) as error:
            raise DataError(f"{kind}: variable '{name}': {error}", kind, 0, number) from error
    return frame
