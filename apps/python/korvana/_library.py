"""The module's type library: its dialogs' members with their help texts, and its constants.

Everything here is read from the table in the module itself; no dialog is described a second time.
"""
from typing import NamedTuple

from korvana import _korvana


class Member(NamedTuple):
    """A member of a dialog: kind is property or action."""
    name: str
    kind: str
    type: str
    help: str
    enumeration: str
    read_only: bool


class Interface:
    """The members of one kind of dialog, those of every dialog included."""

    def __init__(self, table, base=()):
        self.name = table["name"]
        self.dialog = table["dialog"]
        self.help = table["help"]
        self.asked_by = table["asked_by"]
        self.own = [Member(*member) for member in table["members"]]
        self.members = {member.name: member for member in [*base, *self.own]}

    def own_names(self):
        """The names of the members, without the settings that every dialog has."""
        return [member.name for member in self.own] + [name for name in ("OK", "Cancel") if name in self.members]


class Library:
    """The tables of a module: `interfaces` by name, `constants` by name, `enumerations` as lists of names."""

    def __init__(self, table):
        self.name = table["name"]
        self.help = table["help"]
        self.analysis = table["analysis"]
        self.base = Interface(table["base"])
        self.interfaces = {each["name"]: Interface(each, self.base.own) for each in table["interfaces"]}
        # Members that, once they are put, open a dialog within the OK of theirs.
        self.asking = {each.asked_by for each in self.interfaces.values()} - {""}
        self.enumerations = dict(table["enumerations"])
        self.constants = {name: number for members in self.enumerations.values()
                          for number, name in enumerate(members, 1)}


library = Library(_korvana.library())
