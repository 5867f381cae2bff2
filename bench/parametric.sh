#!/usr/bin/env bash
# Times exponential, lognormal and normal regressions of 32000 cases, half of them events, with 5 and 20 covariates
# against R's survreg(): whole processes from a CSV file (the summary alone, as R fits alone; and every output), and in
# memory from the cases to the estimates with the null model. Runs alternate; printed are medians.
#   bench/parametric.sh [RUNS]          default: 7 runs
. "$(dirname -- "$(readlink -f -- "$0")")/regressions.bash"

for p in 5 20; do
  data=$work/$p.csv
  build/bench/bin/korvana-make-data "cox-$p" 32000 "$data"
  for ((run = 1; run <= ${1:-7}; run++)); do
    for model in exponential lognormal normal; do
      compare "$p covariates, $model"
      command=(build/bench/bin/korvana regression "$data" --model "$model" --time time --censor status --complete 1
        --censored 0 --covariates "$(covariates_of "$data")" --format json -o "$work/out" --quiet)
      clock summary "${command[@]}" --outputs summary
      clock all-outputs "${command[@]}"
      clock R Rscript bench/parametric.R "$data" "$model"
      in_memory "fitParametric/$model/$p"
      r_in_memory bench/parametric.R "$data" "$model" 5
    done
  done
done
report
