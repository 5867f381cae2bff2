"""Two samples: 6-MP against placebo, five tests side by side."""
import os

import korvana as kv

data = os.path.join(os.path.dirname(os.path.abspath(__file__)), "data", "leukaemia-6mp.csv")

app = kv.Application()
app.open(data)
run = app.analysis()
run.dialog.TypeOfAnalysis = kv.scSurComparingTwoSamples
run.dialog.OK()
run.dialog.Variables = [["weeks"], ["relapse"], ["group"]]
run.dialog.CodeForCompleteResponses = 1
run.dialog.CodeForCensoredResponses = 0
run.dialog.CodeForGroup1 = "6-MP"
run.dialog.CodeForGroup2 = "placebo"
run.dialog.OK()
print(run.dialog.Summary())
run.close()
