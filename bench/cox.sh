#!/usr/bin/env bash
# Times Cox regressions of 32000 cases, half of them events, with 5, 20 and 40 covariates against R's coxph() with the
# same ties: whole processes from a CSV file (the summary alone, as R fits alone; and every output), and in memory from
# the cases to the estimates. Runs alternate; printed are medians of wall time and peak memory, and in memory of the
# fastest CPU time in each run.
#   bench/cox.sh [RUNS]          default: 7 runs
set -euo pipefail
cd -- "$(dirname -- "$(readlink -f -- "$0")")/.."

runs=${1:-7}
command -v Rscript >/dev/null || { echo "cox: R is missing; nothing was compared"; exit 0; }
scripts/build.sh bench korvana OZMSurvival korvana-bench korvana-make-data
work=$(mktemp -d "${TMPDIR:-/tmp}/korvana-cox.XXXXXX")
trap 'rm -rf "$work"' EXIT

for p in 5 20 40; do
  data=$work/$p.csv
  build/bench/bin/korvana-make-data "cox-$p" 32000 "$data"
  covariates=$(head -n 1 "$data" | cut -d , -f 3-)
  for ((run = 1; run <= runs; run++)); do
    cat "$data" >/dev/null # in the page cache for both
    for outputs in summary all; do
      command=(build/bench/bin/korvana cox "$data" --time time --censor status --complete 1 --censored 0
        --covariates "$covariates" --format json -o "$work/out-$p" --quiet)
      [[ $outputs == all ]] || command+=(--outputs "$outputs")
      /usr/bin/time -a -o "$work/korvana-$outputs-$p.times" -f '%e %M' "${command[@]}"
    done
    /usr/bin/time -a -o "$work/R-$p.times" -f '%e %M' Rscript bench/cox.R "$data" >"$work/R-$p.out"
    build/bench/bin/korvana-bench --benchmark_filter="fitCox/$p\$" --benchmark_format=json --benchmark_repetitions=5 \
      >"$work/memory-$p-$run.json" 2>/dev/null
    Rscript bench/cox.R "$data" 5 >>"$work/memory-R-$p.out"
  done
done
python3 - "$work" "$runs" <<'PYTHON'
import json, statistics, sys
folder, runs = sys.argv[1], int(sys.argv[2])
differ = False
for p in (5, 20, 40):
    print(f"{p} covariates")
    whole = {}
    for who in ("korvana-summary", "korvana-all", "R"):
        times = [tuple(map(float, line.split())) for line in open(f"{folder}/{who}-{p}.times")]
        seconds, kilobytes = whole[who] = [statistics.median(column) for column in zip(*times)]
        print(f"  {who:16} {seconds:.3f} s  {kilobytes / 1024:.0f} MB")
    print(f"  korvana-summary / R {whole['korvana-summary'][0] / whole['R'][0]:.2f}")
    ours = []
    for run in range(1, runs + 1):
        found = [b for b in json.load(open(f"{folder}/memory-{p}-{run}.json"))["benchmarks"]
                 if b["run_type"] == "iteration"]
        ours.append(min(b["cpu_time"] for b in found))
    theirs = [tuple(map(float, line.split())) for line in open(f"{folder}/memory-R-{p}.out")]
    ours, coxph, bare = (statistics.median(column) for column in
                         (ours, [row[2] for row in theirs], [row[3] for row in theirs]))
    print(f"  in memory: korvana {ours:.1f} ms, coxph() {coxph:.0f} ms, its fitting routine {bare:.0f} ms; "
          f"coxph() / korvana {coxph / ours:.1f}")
    # The default criterion leaves off at a part of 1e-4 of the coefficients, where the log-likelihood is flat.
    likelihood, r = found[0]["logLikelihood"], theirs[0][0]
    agree = abs(likelihood - r) <= 1e-6 * abs(r)
    print(f"  log-likelihood {likelihood:.10g} and {r:.10g}: {'agree' if agree else 'DIFFER'}")
    differ = differ or not agree
sys.exit(differ)
PYTHON
