"""Cox regression with a covariate that depends on the time: how the effect of the performance score fades."""
import os

import korvana as kv

data = os.path.join(os.path.dirname(os.path.abspath(__file__)), "data", "veteran.csv")

fit = kv.cox_time(data, time="time", censor="status", complete=1, censored=0,
                  covariate={"karno": "karno", "karnoT": "karno * log(T_ + 20)"})
print(fit)
