"""Survival analysis: from data to tables, reports and charts.

    import korvana as kv
    app = kv.Application()
    app.open("trial.csv")
"""
from korvana import _korvana
from korvana._application import Application, Variable
from korvana._errors import AnalysisError, AutomationError, Busy, DataError, Error, UsageError
from korvana._library import library as _library

__version__ = _korvana.version
globals().update(_library.constants)
__all__ = ["AnalysisError", "Application", "AutomationError", "Busy", "DataError", "Error", "UsageError", "Variable",
           *_library.constants]
