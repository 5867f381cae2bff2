"""Survival analysis: from data to tables, reports and charts.

    import korvana as kv
    app = kv.Application()
    app.open("trial.csv")
    run = app.analysis()
    run.dialog.TypeOfAnalysis = kv.scSurKaplanMeierProductLimit
    run.dialog.OK()
    run.dialog.Variables = [["time"], ["status"]]
    run.dialog.CodeForCompleteResponses = 1
    run.dialog.CodeForCensoredResponses = 0
    run.dialog.OK()
    table = run.dialog.Summary()

One analysis is one call, too: kv.kaplan_meier("trial.csv", time="time", censor="status", complete=1, censored=0).

Dialogs are those of the analysis: dir(run.dialog) names the members of the open one, help(run.dialog) explains them.
"""
import atexit as _atexit
import glob as _glob
import os as _os
import sys as _sys

try:
    from korvana import _korvana
except ImportError as error:
    if error.name not in ("korvana", "korvana._korvana"):
        raise
    _built = [_os.path.basename(name) for name in _glob.glob(_os.path.join(_os.path.dirname(__file__), "_korvana.*.so"))]
    raise ImportError(f"this korvana is for another Python than this one ({_sys.executable}, {_sys.version.split()[0]}): "
                      f"it has {', '.join(_built) or 'no extension'}; install it for this Python, or use the one that "
                      "it was built for", name="korvana") from None
from korvana._analysis import Analysis, Dialog
from korvana._application import Application, Variable
from korvana._errors import AnalysisError, AnalysisWarning, AutomationError, Busy, DataError, Error, UsageError
from korvana._functions import functions as _functions
from korvana._library import library as _library
from korvana._results import Chart, Message, Report, Results, Series, Table, joined_results

__version__ = _korvana.version
globals().update(_library.constants, **_functions)
__all__ = ["Analysis", "AnalysisError", "AnalysisWarning", "Application", "AutomationError", "Busy", "Chart", "DataError",
           "Dialog", "Error", "Message", "Report", "Results", "Series", "Table", "UsageError", "Variable",
           "joined_results", *_functions, *_library.constants]
_atexit.register(_korvana.end_work)
