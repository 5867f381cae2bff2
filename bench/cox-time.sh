#!/usr/bin/env bash
# Times Cox regressions with the covariates x and x log(t), of 500 to 5000 cases, half of them events, against R's
# coxph() with x and tt(x) and the same ties: whole processes from a CSV file to the estimates, and the fit in memory.
# Runs alternate; printed are medians. R needs 3 GB and most of a minute for 5000 cases, of which there are 2 runs at
# most.
#   bench/cox-time.sh [RUNS]          default: 7 runs
. "$(dirname -- "$(readlink -f -- "$0")")/regressions.bash"

runs=${1:-7}
for n in 500 1000 2000 5000; do
  data=$work/$n.csv
  build/bench/bin/korvana-make-data cox-1 "$n" "$data"
  for ((run = 1; run <= (n < 5000 || runs < 2 ? runs : 2); run++)); do
    compare "$n cases"
    # The strictest criterion there is: the default one leaves off some 1e-4 before the maximum.
    clock korvana build/bench/bin/korvana cox-time "$data" --time time --censor status --complete 1 \
      --censored 0 --covariate 'x = x1' --covariate 'xLogT = x1 * log(T_)' --criterion 0.00001 --max-iterations 200 \
      --outputs summary --format json -o "$work/out" --quiet
    clock R Rscript bench/cox-time.R "$data"
    in_memory "fitTimeDependentCox/cases:$n/kept:1"
  done
done
report
