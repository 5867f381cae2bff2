"""Parametric regression: three distributions of the survival time over the same cases, and which is the nearest."""
import os

import korvana as kv

data = os.path.join(os.path.dirname(os.path.abspath(__file__)), "data", "veteran.csv")

fits = kv.regression(data, model="all", time="time", censor="status", complete=1, censored=0,
                     covariates=["karno", "age"], outputs="all")
for result in fits:
    if "Comparison" in result.title:
        print(result)
