"""Several samples: survival by type of tumour cell, with every pair of types compared."""
import os

import korvana as kv

data = os.path.join(os.path.dirname(os.path.abspath(__file__)), "data", "veteran.csv")

app = kv.Application()
app.open(data)
run = app.analysis()
run.dialog.TypeOfAnalysis = kv.scSurComparingMultipleSamples
run.dialog.OK()
run.dialog.Variables = [["time"], ["status"], ["celltype"]]
run.dialog.CodeForCompleteResponses = 1
run.dialog.CodeForCensoredResponses = 0
run.dialog.OK()
print(run.dialog.LogRankTests())
print(run.dialog.PairwiseComparisons())
run.close()
