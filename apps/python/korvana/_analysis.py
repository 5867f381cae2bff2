"""Analyses, and their dialogs as a script sees them."""
import difflib
import os
from collections.abc import Mapping
from typing import TYPE_CHECKING

from korvana import _korvana
from korvana._errors import AnalysisError, AutomationError, UsageError
from korvana._library import library
from korvana._paths import path_bytes
from korvana._results import Message, Results, wrap

if TYPE_CHECKING:
    from korvana._dialogs import OpenDialog  # a stub that is made from the type library


class Dialog:
    """An open dialog. Its members are those of the type library: properties are the twins of its controls, actions the
    twins of its buttons."""
    __slots__ = ("_analysis", "_handle")
    _interface = library.base

    def __init__(self, analysis, handle):
        object.__setattr__(self, "_analysis", analysis)
        object.__setattr__(self, "_handle", handle)

    def __getattr__(self, name):
        raise AttributeError(self._unknown(name), name=name, obj=self)

    def __setattr__(self, name, value):
        if name not in self._interface.members:
            raise AttributeError(self._unknown(name), name=name, obj=self)
        self._analysis._put(self._handle, name, value)

    def __delattr__(self, name):
        raise AttributeError("a dialog keeps its members")

    def _unknown(self, name):
        members = self._interface.members
        near = difflib.get_close_matches(name, members, 3, 0.5)
        folded = [member for member in members if member.lower() == name.lower()]
        near = folded or near
        return f"the dialog {self._interface.name} has no member {name!r}; " + (
            f"near: {', '.join(near)}" if near else f"it has {', '.join(self._interface.own_names())}")

    def __dir__(self):
        return sorted(self._interface.members)

    def __eq__(self, other):
        return isinstance(other, Dialog) and self._handle.identity == other._handle.identity

    def __hash__(self):
        return hash(self._handle.identity)

    def __repr__(self):
        return f"<{self._interface.name}: {'open' if self._handle.open else 'closed'} dialog of {self._interface.help!r}>"


_TYPES = {"boolean": "True or False", "integer": "A whole number", "real": "A number", "text": "A text",
          "code": "A number, or the text of a value label",
          "variables": "A list of lists, one per box, of variables' names or numbers",
          "codes": "A list of codes", "texts": "A list of texts", "numbers": "A list of numbers, None for none"}


def describe(member):
    """What help() says of a member."""
    help = member.help.strip()
    if not help and member.kind == "action":
        return f"Presses {member.name}."
    kind = ("One of " + ", ".join(library.enumerations.get(member.enumeration, ())) if member.type == "enumeration"
            else _TYPES.get(member.type, ""))
    return "\n\n".join(filter(None, [help and help + ".", kind and kind + "."]))


def _property(member):
    def get(self):
        return self._analysis._get(self._handle, member.name)

    def put(self, value):
        self._analysis._put(self._handle, member.name, value)
    return property(get, put, doc=describe(member))


def _action(member):
    def act(self):
        return self._analysis._call(self._handle, member.name)
    act.__name__ = act.__qualname__ = member.name
    act.__doc__ = describe(member) or None
    return act


def _class_of(interface):
    """The class of one kind of dialog, made from its row of the table."""
    members = {name: (_action if member.kind == "action" else _property)(member)
               for name, member in interface.members.items()}
    return type(interface.name, (Dialog,), {"__doc__": interface.help.strip() + ".", "__slots__": (),
                                            "__module__": "korvana", "_interface": interface, **members})


dialogs = {name: _class_of(interface) for name, interface in library.interfaces.items()}


class Analysis:
    """A run of the analysis, from its first dialog on.

    run = app.analysis()
    run.dialog.TypeOfAnalysis = ...
    run.dialog.OK()

    modal: members to be set in a modal dialog that opens on the way, before its OK: a dict, or a function that is called
    with the dialog. answer: the answer to the analysis's yes/no questions: True, False, or a function that is called
    with the question. file: the path for the file dialog that the next action opens.

    There is one analysis at a time in a process; close() ends it, as does the end of a with statement. Results stay.
    """
    __slots__ = ("_application", "_run", "_denied", "_modal", "_answer", "_file", "__weakref__")

    def __init__(self, application, data):
        if not isinstance(data, _korvana.Data):
            raise TypeError("an analysis is started by its application: app.analysis()")
        self._application = application
        self._denied = None
        self.modal = {}
        self.answer = False
        self.file = None
        self._run = _korvana.Run(data)
        self._run.start(self)
        if not self._run.active:
            self._refuse(self._run.book().messages)

    @property
    def modal(self):
        """Members to be set in a modal dialog that opens on the way: a dict, or a function of the dialog."""
        return self._modal

    @modal.setter
    def modal(self, members):
        if members is None:
            members = {}
        if not callable(members) and not isinstance(members, Mapping):
            raise UsageError(f"modal is a dict of members and values, or a function of the dialog, not {members!r}")
        self._modal = members

    @property
    def answer(self):
        """The answer to yes/no questions: True, False, or a function of the question."""
        return self._answer

    @answer.setter
    def answer(self, answer):
        if not callable(answer) and answer not in (True, False):
            raise UsageError(f"answer is True, False or a function of the question, not {answer!r}")
        self._answer = answer

    @property
    def file(self):
        """The path for the file dialog that the next action opens; None without one."""
        return self._file

    @file.setter
    def file(self, path):
        self._file = None if path is None else os.fsdecode(path_bytes(path))

    @property
    def application(self):
        """The application whose data are analysed."""
        return self._application

    @property
    def active(self):
        """Whether a dialog is open; False when the analysis has ended."""
        return self._run.active

    @property
    def dialog(self) -> "OpenDialog":
        """The dialog that is open."""
        handle = self._run.dialog()
        if handle is None:
            raise UsageError("the analysis has ended and has no dialog; start another one: app.analysis()")
        return self._dialog(handle)

    @property
    def messages(self) -> list[Message]:
        """What the analysis said about its latest run: number, severity, text, detail."""
        return [Message(*each) for each in self._run.book().messages]

    @property
    def results(self) -> Results:
        """The results of its latest run, so far."""
        return Results(self._run.book())

    def record(self, path):
        """Writes a Python script that makes the results again: its data, its dialogs, its actions. It
        replaces an earlier recorded script, and no other file."""
        _korvana.record(self._run, path_bytes(path))

    def close(self):
        """Ends the analysis. Its results stay."""
        self._run.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def __repr__(self):
        return f"<Analysis of {self._application!r}: {'active' if self.active else 'ended'}>"

    def _dialog(self, handle):
        return dialogs.get(handle.interface, Dialog)(self, handle)

    def _follow_data(self):
        """Goes on with the data that the application has opened."""
        self._run.data_replaced(self)

    # What dialogs do.

    def _get(self, handle, name):
        done, value, error, detail = self._run.get(handle, name)
        if not done:
            raise AutomationError(error, detail)
        if name == "Application":
            return self._application
        return self if name == "Parent" else value

    def _put(self, handle, name, value):
        done, _, error, detail = self._run.put(handle, name, value, self)
        if not done:
            raise AutomationError(error, detail)

    def _call(self, handle, name):
        file, self.file = self.file, None
        path = None if file is None else path_bytes(file)
        self._denied = None
        if name == "OK" and self.modal:
            self._ask_for_modal(handle)
        done, value, error, detail, *rest = self._run.call(handle, name, self, path)
        if not done:
            raise AutomationError(error, detail)
        said, outputs = rest
        back = name == "OK" and self._is_back(handle)
        value = value and not back
        if not value or not self.active:
            self._refuse(said, self._denied)
        if not outputs or name == "OK":  # a dialog on the way may have made some
            return value
        return wrap(outputs[0]) if len(outputs) == 1 else Results(self._run.book(), outputs)

    def _ask_for_modal(self, handle):
        """What is to be set in a dialog on the way asks for that dialog, unless it is switched off."""
        interface = dialogs.get(handle.interface, Dialog)._interface
        for member in library.asking & interface.members.keys():
            done, value, *_ = self._run.get(handle, member)
            if done and value:
                self._run.put(handle, member, True, self)

    def _is_back(self, handle):
        """Whether the analysis left a dialog and has opened it again, as it does when an estimation fails that begins
        only then."""
        if handle.open or handle.modal:
            return False
        now = self._run.dialog()
        return now is not None and now.interface == handle.interface

    @staticmethod
    def _refuse(messages, denied=None):
        errors = [message for message in messages if message[1] == "error"]
        if errors:
            number, _, text, detail = errors[-1]
            question = f'The question "{denied[1]}" was answered with no.' if denied else ""
            raise AnalysisError(number, text, "\n".join(filter(None, [detail, question])))
        if denied:
            raise AnalysisError(denied[0], denied[1], "The answer was no.")

    # What the analysis asks on the way.

    def ask(self, number, text, detail):
        """Called by the analysis: the answer to its question."""
        question = f"{text.strip()} {detail.strip()}".strip()
        answer = self.answer(question) if callable(self.answer) else self.answer
        self._denied = None if answer else (number, question)
        return answer

    def set_modal(self, handle):
        """Called by the analysis when a modal dialog is open."""
        dialog = self._dialog(handle)
        if callable(self.modal):
            self.modal(dialog)
        else:
            for name, value in self.modal.items():
                setattr(dialog, name, value)
