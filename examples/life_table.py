"""Life tables: a published table of men with angina pectoris, and the Weibull model fitted to it."""
import os

import korvana as kv

data = os.path.join(os.path.dirname(os.path.abspath(__file__)), "data", "angina.csv")

app = kv.Application()
app.open(data)
run = app.analysis()
run.dialog.TypeOfAnalysis = kv.scSurLifeTablesAndDistributions
run.dialog.OK()
run.dialog.TypeOfInputData = kv.scSurTableOfSurvivalTimes
run.dialog.Variables = [["lower"], ["withdrawn"], ["dying"]]
run.dialog.NumberEnteringFirstInterval = 2418
run.dialog.OK()
print(run.dialog.Summary())
run.dialog.Distribution = kv.scSurWeibull
print(run.dialog.ParameterEstimates())
run.close()
