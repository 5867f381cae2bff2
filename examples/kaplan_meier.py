"""Kaplan-Meier: remission of leukaemia patients who were given 6-MP, step by step through the dialogs. The
one-line form of the same is kv.kaplan_meier(...), at the end."""
import os

import korvana as kv

data = os.path.join(os.path.dirname(os.path.abspath(__file__)), "data", "leukaemia-6mp.csv")

app = kv.Application()
app.open(data)
app.select("group = '6-MP'")
run = app.analysis()
run.dialog.TypeOfAnalysis = kv.scSurKaplanMeierProductLimit
run.dialog.OK()
run.dialog.Variables = [["weeks"], ["relapse"]]
run.dialog.CodeForCompleteResponses = 1
run.dialog.CodeForCensoredResponses = 0
run.dialog.OK()
percentiles = run.dialog.PercentilesOfSurvivalFunction()
print(percentiles)
run.close()

same = kv.kaplan_meier(data, time="weeks", censor="relapse", complete=1, censored=0, select="group = '6-MP'",
                       outputs="percentiles")
assert same.percentiles.cells == percentiles.cells
