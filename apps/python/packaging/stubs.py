"""Writes the package's type stubs from the module's type library: stubs.py PACKAGE_FOLDER

korvana/__init__.pyi names what the package has, constants included; korvana/_dialogs.pyi has the dialogs with the types
and help texts of their members. Editors complete by them, and type checkers check by them.
"""
import inspect
import pathlib
import sys

import korvana
from korvana._analysis import describe
from korvana._library import library

# Of each type of member: what it is read as, and what may be assigned where that is more (arrays, names for numbers).
TYPES = {"boolean": ("bool", ""), "integer": ("int", ""), "real": ("float", ""), "text": ("str", ""),
         "enumeration": ("int", ""), "code": ("float", "float | str"), "variables": ("list[list[int]]", "Any"),
         "codes": ("list[float]", "Any"), "texts": ("list[str]", "Any"), "numbers": ("list[float | None]", "Any"),
         "object": ("Any", "")}


def documented(text):
    """The line of a docstring and the body."""
    lines = text.replace("\\", "\\\\").replace('"""', "'''").split("\n")
    return '        """' + "\n        ".join(lines).replace("\n        \n", "\n\n") + '"""\n        ...'


def member(one):
    """The declaration of a member."""
    if one.kind == "action":
        back = "bool" if one.name in ("OK", "Cancel") else "Any"
        return [f"    def {one.name}(self) -> {back}:\n{documented(describe(one))}"]
    read, assigned = TYPES[one.type]
    lines = [f"    @property\n    def {one.name}(self) -> {read}:\n{documented(describe(one))}"]
    if not one.read_only:
        lines.append(f"    @{one.name}.setter\n    def {one.name}(self, value: {assigned or read}) -> None: ...")
    return lines


def dialog(interface, base, members):
    """The class of a dialog."""
    body = [line for each in members for line in member(each)]
    return "\n".join([f"class {interface.name}({base}):", f'    """{interface.help.strip()}."""', *body]) + "\n"


def dialogs():
    """The stub of all dialogs."""
    names = [interface.name for interface in library.interfaces.values()]
    base = library.base
    return "\n".join([
        "from typing import Any\n\nfrom korvana._analysis import Dialog\n",
        dialog(base, "Dialog", base.own),
        *(dialog(each, base.name, each.own) for each in library.interfaces.values()),
        "# Which dialog is open is known only when the script runs.",
        f"class OpenDialog({', '.join(names)}): ...  # type: ignore[misc]\n"])


def function(name):
    """The declaration of a function that the package makes of a command."""
    own = getattr(korvana, name)
    keywords = [f"{each.name}: {'bool' if each.default is False else 'typing.Any'} = ..."
                for each in list(inspect.signature(own).parameters.values())[1:]]
    return f"def {name}(data: typing.Any, *, {', '.join(keywords)}) -> Results:\n{documented(own.__doc__)}"


def package():
    """The stub of the package itself."""
    lines = ["import typing\n"]
    for name in korvana.__all__:
        if name in library.constants:
            lines.append(f"{name}: int")
        elif inspect.isfunction(getattr(korvana, name)) and getattr(korvana, name).__module__ != "korvana._results":
            lines.append(function(name))
        else:
            lines.append(f"from {getattr(korvana, name).__module__} import {name} as {name}")
    return "\n".join([*lines, "__version__: str", f"__all__ = {korvana.__all__!r}", ""])


folder = pathlib.Path(sys.argv[1])
(folder / "_dialogs.pyi").write_text(dialogs(), encoding="utf-8")
(folder / "__init__.pyi").write_text(package(), encoding="utf-8")
