#!/usr/bin/env bash
# Times the comparison of 32767 cases in 10 groups, whole processes from a CSV file to the tests, against R's packages
# survival and data.table. Runs alternate; printed are medians of wall time and peak memory.
#   bench/k-sample.sh [RUNS]          default: 7 runs
set -euo pipefail
cd -- "$(dirname -- "$(readlink -f -- "$0")")/.."

runs=${1:-7}
command -v Rscript >/dev/null || { echo "k-sample: R is missing; nothing was compared"; exit 0; }
scripts/build.sh bench korvana OZMSurvival korvana-make-data
work=$(mktemp -d "${TMPDIR:-/tmp}/korvana-k-sample.XXXXXX")
trap 'rm -rf "$work"' EXIT

build/bench/bin/korvana-make-data continuous 32767 "$work/cases.csv"
awk -F, 'NR == 1 { print $0 ",arm"; next } { print $0 "," 1 + (NR * 7919) % 10 }' "$work/cases.csv" >"$work/arms.csv"
for ((run = 1; run <= runs; run++)); do
  /usr/bin/time -a -o "$work/korvana.times" -f '%e %M' build/bench/bin/korvana k-sample "$work/arms.csv" --time time \
    --censor status --complete 1 --censored 0 --group arm --outputs summary,log-rank --format json >"$work/korvana.json"
  /usr/bin/time -a -o "$work/R.times" -f '%e %M' Rscript bench/survdiff.R "$work/arms.csv" >>"$work/R.out"
done
python3 - "$work" <<'PYTHON'
import json, statistics, sys
folder = sys.argv[1]
rows = {who: [tuple(map(float, line.split())) for line in open(f"{folder}/{who}.times")] for who in ("korvana", "R")}
for who, times in rows.items():
    seconds, kilobytes = (statistics.median(column) for column in zip(*times))
    print(f"{who:8} {seconds:.3f} s  {kilobytes / 1024:.0f} MB")
theirs = [tuple(map(float, line.split())) for line in open(f"{folder}/R.out")]
print(f"survdiff alone {1000 * statistics.median(s for _, s in theirs):.1f} ms")
sheets = json.load(open(f"{folder}/korvana.json"))["spreadsheets"]
ours = next(s for s in sheets if s["title"].startswith("Log-Rank"))["rows"][0]["cells"][0]
# survdiff takes times as tied that differ by less than 1.5e-8 of their size: a few of these are.
agree = abs(ours - theirs[0][0]) <= 1e-5 * ours
print(f"chi-square {ours:.12g} and {theirs[0][0]:.12g}: {'agree' if agree else 'DIFFER'}")
sys.exit(0 if agree else 1)
PYTHON
