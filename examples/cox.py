"""Cox regression: survival with lung cancer by performance score and age, with other start values than zeros."""
import os

import korvana as kv

data = os.path.join(os.path.dirname(os.path.abspath(__file__)), "data", "veteran.csv")

app = kv.Application()
app.open(data)
run = app.analysis()
run.dialog.TypeOfAnalysis = kv.scSurRegressionModels
run.dialog.OK()
run.dialog.TypeOfSurvivalRegressionModel = kv.scSurProportionalHazardRegression
run.dialog.Variables = [["time"], ["status"], ["karno", "age"], []]
run.dialog.CodeForCompleteResponses = 1
run.dialog.CodeForCensoredResponses = 0
run.modal = {"StartValues": [-0.03, 0.0], "ConvergenceCriterion": 0.00001}
run.dialog.NonDefaultStartValuesIterations = True
run.dialog.OK()
print(run.dialog.Summary())
run.close()
