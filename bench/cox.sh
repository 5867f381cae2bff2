#!/usr/bin/env bash
# Times Cox regressions of 32000 cases, half of them events, with 5, 20 and 40 covariates against R's coxph() with the
# same ties: whole processes from a CSV file (the summary alone, as R fits alone; and every output), and in memory from
# the cases to the estimates. Runs alternate; printed are medians.
#   bench/cox.sh [RUNS]          default: 7 runs
. "$(dirname -- "$(readlink -f -- "$0")")/regressions.bash"

for p in 5 20 40; do
  data=$work/$p.csv
  build/bench/bin/korvana-make-data "cox-$p" 32000 "$data"
  command=(build/bench/bin/korvana cox "$data" --time time --censor status --complete 1 --censored 0
    --covariates "$(covariates_of "$data")" --format json -o "$work/out" --quiet)
  for ((run = 1; run <= ${1:-7}; run++)); do
    compare "$p covariates"
    clock summary "${command[@]}" --outputs summary
    clock all-outputs "${command[@]}"
    clock R Rscript bench/cox.R "$data"
    in_memory "fitCox/$p"
    r_in_memory bench/cox.R "$data" 5
  done
done
report
