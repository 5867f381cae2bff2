"""What the tests of the package share."""
import pathlib

import korvana as kv

ROOT = pathlib.Path(__file__).resolve().parents[3]
DATA = ROOT / "examples" / "data"


def started(method, file="aml.csv"):
    """An application and its analysis with the specification of a method open."""
    app = kv.Application()
    app.open(DATA / file)
    run = app.analysis()
    run.dialog.TypeOfAnalysis = method
    run.dialog.OK()
    return app, run


def specified(run):
    """Takes the specification of times and codes, of aml.csv, to the results."""
    run.dialog.Variables = [["time"], ["status"]]
    run.dialog.CodeForCompleteResponses = 1
    run.dialog.CodeForCensoredResponses = 0
    run.dialog.OK()
    return run.dialog


def results_of_aml(*actions):
    """The results of these actions of the results dialog, of an analysis that is closed."""
    app, run = started(kv.scSurKaplanMeierProductLimit)
    with app:
        dialog = specified(run)
        for action in actions:
            getattr(dialog, action)()
        return run.results
