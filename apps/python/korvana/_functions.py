"""One function per analysis: kaplan_meier, cox and so on.

They are made from the program's own table of commands, whose options are their keywords.
"""
import datetime
import difflib
import inspect
import os
import re
import textwrap
import warnings

from korvana import _korvana
from korvana._application import _reading
from korvana._errors import AnalysisWarning, DataError, UsageError
from korvana._frames import is_frame, make_frame, no_data
from korvana._paths import path_bytes
from korvana._results import Results
from korvana._words import keyword_of, python_help, python_text

_WIDTH = 100


def _word(value):
    """A single value as the command line has it."""
    if isinstance(value, str):
        return value
    if hasattr(value, "item") and getattr(value, "ndim", 0) == 0:  # of numpy
        value = value.item()
    if isinstance(value, float) and value.is_integer() and abs(value) < 1e15:
        return str(int(value))
    if isinstance(value, datetime.datetime):
        return value.date().isoformat()
    return os.fspath(value) if hasattr(value, "__fspath__") else str(value)


def _is_list(value):
    return isinstance(value, (list, tuple, set, frozenset, range)) or getattr(value, "ndim", 0) == 1


def _letters(text):
    """What is left of a name however it is quoted, spaced and written."""
    return re.sub(r"[\W_]", "", text.casefold())


class _Option:
    def __init__(self, name, value, help, group, choices, is_flag, is_list):
        self.name = name
        self.keyword = keyword_of(name)
        self.value = value
        self.help = python_help(help)
        self.group = group
        self.choices = choices
        self.is_flag = is_flag
        self.is_list = is_list

    def words(self, value):
        """The values to give to the command, None to leave the option out."""
        if value is None:
            return None
        if self.is_flag:
            if not isinstance(value, bool) and type(value).__name__ not in ("bool_", "bool"):
                raise UsageError(f"{self.keyword} is True or False, not {value!r}", self.keyword)
            return [] if value else None
        if isinstance(value, dict):
            pairs = [f"{_word(name)}={_word(each)}" for name, each in value.items()]
            return [",".join(pairs)] if self.value.startswith("V=X") else pairs
        if _is_list(value):
            words = []
            for each in value:
                words += self.words(each) if isinstance(each, dict) else [_word(each)]
            return words
        return [_word(value)]


class _Command:
    """An analysis of the command line as a function."""

    def __init__(self, name, summary, options, outputs):
        self.name = name
        self.summary = summary
        self.options = {option.keyword: option for option in (_Option(*each) for each in options)}
        self.outputs = [output.replace("-", "_") for output, _, _ in outputs]
        self.names = {action: output.replace("-", "_") for output, actions, _ in outputs for action in actions}
        self.function = self._make()

    def call(self, data, given):
        reading = {name: given.pop(name, None) for name in ("decimal", "dates")} if is_frame(data) else {}
        options = []
        for name, value in given.items():
            words = self.options[name].words(value)
            if words is not None:
                options.append((self.options[name].name, [word.encode("utf-8", "surrogateescape") for word in words],
                                _is_list(value)))
        frame, path = None, b""
        if is_frame(data):
            _, decimal, dates, _ = _reading(**reading)
            frame = make_frame(data, decimal, dates, self._wanted(options))
        elif isinstance(data, (str, bytes, os.PathLike)):
            path = path_bytes(data)
        else:
            raise no_data(data)
        try:
            book, actions = _korvana.call(self.name, path, frame, options)
        except UsageError as error:
            text = python_text(str(error))
            named = [name for name in re.findall(r"\w+", text) if name in self.options]
            raise UsageError(text, named[0] if named else None) from None
        except DataError as error:
            error.args = (python_text(str(error)),)
            raise
        results = Results(book, names=[self.names.get(action, action) for action in actions])
        for message in results.messages:
            if message.severity == "warning":
                warnings.warn(f"{message.text} {message.detail}".rstrip(), AnalysisWarning, stacklevel=3)
        return results

    def _wanted(self, options):
        """Which columns the options may mean: those whose name or number they have somewhere."""
        texts = b"\n".join(word for _, words, _ in options for word in words).decode("utf-8", "replace")
        numbers = set(map(int, re.findall(r"[0-9]+", texts)))
        texts = _letters(texts)
        return lambda name, number: _letters(name) in texts or number in numbers

    def _check(self, given):
        for name in given:
            if name not in self.options:
                near = difflib.get_close_matches(name, self.options, 3, 0.5)
                raise TypeError(f"{self.function.__name__}() has no keyword '{name}'" +
                                (f"; did you mean {' or '.join(map(repr, near))}?" if near else ""))

    def _make(self):
        def function(data, **options):
            self._check(options)
            return self.call(data, options)
        function.__name__ = function.__qualname__ = self.name.replace("-", "_")
        function.__module__ = "korvana"
        function.__doc__ = self._doc()
        function.__signature__ = inspect.Signature(
            [inspect.Parameter("data", inspect.Parameter.POSITIONAL_OR_KEYWORD)] +
            [inspect.Parameter(name, inspect.Parameter.KEYWORD_ONLY, default=False if option.is_flag else None)
             for name, option in self.options.items()], return_annotation=Results)
        return function

    def _doc(self):
        lines = [self.summary + ".", "",
                 "data: the path of a file, a pandas DataFrame, or a dict of columns.",
                 "Returns the Results; each output that was made is an attribute of theirs:",
                 *textwrap.wrap(", ".join(self.outputs) + ".", _WIDTH, initial_indent="    ",
                                subsequent_indent="    "),
                 "Only what `outputs` names is made, by default what the command shows on a screen.",
                 "Several values are given as a list, NAME=... as a dict too, a flag as True."]
        group = None
        for option in self.options.values():
            if option.group != group:
                group = option.group
                lines += ["", group + ":"]
            value = "True" if option.is_flag else option.value
            lines += textwrap.wrap(f"{option.keyword} ({value}): {option.help}", _WIDTH, initial_indent="    ",
                                   subsequent_indent="        ")
        return "\n".join(lines)


functions = {command.function.__name__: command.function for command in (_Command(*each) for each in
                                                                          _korvana.commands())}
