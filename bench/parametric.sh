#!/usr/bin/env bash
# Times exponential, lognormal and normal regressions of 32000 cases, half of them events, with 5 and 20 covariates
# against R's survreg(): whole processes from a CSV file (the summary alone, as R fits alone; and every output), and in
# memory from the cases to the estimates with the null model. Runs alternate; printed are medians of wall time and peak
# memory, and in memory of the fastest CPU time in each run.
#   bench/parametric.sh [RUNS]          default: 7 runs
set -euo pipefail
cd -- "$(dirname -- "$(readlink -f -- "$0")")/.."

runs=${1:-7}
command -v Rscript >/dev/null || { echo "parametric: R is missing; nothing was compared"; exit 0; }
scripts/build.sh bench korvana OZMSurvival korvana-bench korvana-make-data
work=$(mktemp -d "${TMPDIR:-/tmp}/korvana-parametric.XXXXXX")
trap 'rm -rf "$work"' EXIT

for p in 5 20; do
  data=$work/$p.csv
  build/bench/bin/korvana-make-data "cox-$p" 32000 "$data"
  covariates=$(head -n 1 "$data" | cut -d , -f 3-)
  for ((run = 1; run <= runs; run++)); do
    for model in exponential lognormal normal; do
      cat "$data" >/dev/null # in the page cache for both
      for outputs in summary all; do
        command=(build/bench/bin/korvana regression "$data" --model "$model" --time time --censor status --complete 1
          --censored 0 --covariates "$covariates" --format json -o "$work/out-$p" --quiet)
        [[ $outputs == all ]] || command+=(--outputs "$outputs")
        /usr/bin/time -a -o "$work/$model-korvana-$outputs-$p.times" -f '%e %M' "${command[@]}"
      done
      /usr/bin/time -a -o "$work/$model-R-$p.times" -f '%e %M' Rscript bench/parametric.R "$data" "$model" >/dev/null
      build/bench/bin/korvana-bench --benchmark_filter="fitParametric/$model/$p\$" --benchmark_format=json \
        --benchmark_repetitions=5 >"$work/$model-memory-$p-$run.json" 2>/dev/null
      Rscript bench/parametric.R "$data" "$model" 5 >>"$work/$model-memory-R-$p.out"
    done
  done
done
python3 - "$work" "$runs" <<'PYTHON'
import json, statistics, sys
folder, runs = sys.argv[1], int(sys.argv[2])
differ = False
for p in (5, 20):
    for model in ("exponential", "lognormal", "normal"):
        print(f"{p} covariates, {model}")
        whole = {}
        for who in ("korvana-summary", "korvana-all", "R"):
            times = [tuple(map(float, line.split())) for line in open(f"{folder}/{model}-{who}-{p}.times")]
            seconds, kilobytes = whole[who] = [statistics.median(column) for column in zip(*times)]
            print(f"  {who:16} {seconds:.3f} s  {kilobytes / 1024:.0f} MB")
        print(f"  korvana-summary / R {whole['korvana-summary'][0] / whole['R'][0]:.2f}")
        ours = []
        for run in range(1, runs + 1):
            found = [b for b in json.load(open(f"{folder}/{model}-memory-{p}-{run}.json"))["benchmarks"]
                     if b["run_type"] == "iteration"]
            ours.append(min(b["cpu_time"] for b in found))
        theirs = [tuple(map(float, line.split())) for line in open(f"{folder}/{model}-memory-R-{p}.out")]
        ours, survreg, bare = (statistics.median(column) for column in
                               (ours, [row[2] for row in theirs], [row[3] for row in theirs]))
        print(f"  in memory: korvana {ours:.1f} ms, survreg() {survreg:.0f} ms, its fitting routine {bare:.0f} ms; "
              f"survreg() / korvana {survreg / ours:.1f}")
        for name, r in (("logLikelihood", theirs[0][0]), ("nullLogLikelihood", theirs[0][1])):
            agree = abs(found[0][name] - r) <= 1e-6 * abs(r)
            print(f"  {name} {found[0][name]:.10g} and {r:.10g}: {'agree' if agree else 'DIFFER'}")
            differ = differ or not agree
sys.exit(differ)
PYTHON
