"""The exceptions of the package."""


class Error(Exception):
    """Whatever this package refuses; its text says what is wrong and what to do."""


class UsageError(Error):
    """A call that makes no sense, such as the use of an application that was closed.

    option: the keyword that is wrong, None where it is not one alone.
    """

    def __init__(self, text, option=None):
        super().__init__(text)
        self.option = option

    def __reduce__(self):
        return type(self), (self.args[0], self.option)


class DataError(Error):
    """Data that cannot be read or used.

    file, line, column: where, as far as it is known (line and column count from 1).
    """

    def __init__(self, text, file="", line=0, column=0):
        super().__init__(text)
        self.file = file or None
        self.line = line or None
        self.column = column or None

    def __reduce__(self):
        return type(self), (self.args[0], self.file, self.line, self.column)


class AutomationError(Error):
    """A member of a dialog that cannot be read, set or called so.

    text: names the accessor, such as "Exception in analysis method: CDefineTask::put_TypeOfAnalysis";
    detail: what was wrong.
    """

    def __init__(self, text, detail=""):
        super().__init__(f"{text}: {detail}" if detail else text)
        self.text = text
        self.detail = detail

    def __reduce__(self):
        return type(self), (self.text, self.detail)


class AnalysisError(Error):
    """The analysis has refused its data or settings; run.dialog is the dialog again, with the values that it had.

    number: of the message in the module, 0 for one of the program; text: the message; detail: what is particular to
    these data, may be empty.
    """

    def __init__(self, number, text, detail=""):
        super().__init__((f"{number}: " if number else "") + text + (f" {detail}" if detail else ""))
        self.number = number
        self.text = text
        self.detail = detail

    def __reduce__(self):
        return type(self), (self.number, self.text, self.detail)


class AnalysisWarning(UserWarning):
    """Something that may not be meant so, such as a code that no case has: the call has done what it says."""


class Busy(Error):
    """Another analysis, or another thread, is at work: there is one analysis at a time in a process."""
