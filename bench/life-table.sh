#!/usr/bin/env bash
# Times life tables with their twelve fits, whole processes from a CSV file to the tables of all fits, against R reading
# the same file by data.table and computing the table alone. Runs alternate; printed are medians of wall time and peak
# memory.
#   bench/life-table.sh [RUNS]          default: 7 runs
set -euo pipefail
cd -- "$(dirname -- "$(readlink -f -- "$0")")/.."

runs=${1:-7}
command -v Rscript >/dev/null || { echo "life-table: R is missing; nothing was compared"; exit 0; }
scripts/build.sh bench korvana OZMSurvival korvana-make-data
work=$(mktemp -d "${TMPDIR:-/tmp}/korvana-life-table.XXXXXX")
trap 'rm -rf "$work"' EXIT

build/bench/bin/korvana-make-data continuous 1000000 "$work/cases.csv"
# 250000 entries: weights 1 to 4 in turn.
build/bench/bin/korvana-make-data continuous 100000 "$work/plain.csv"
awk -F, 'NR == 1 { print $0 ",weight"; next } { print $0 "," 1 + NR % 4 }' "$work/plain.csv" >"$work/weighted.csv"
for ((run = 1; run <= runs; run++)); do
  for data in cases weighted; do
    weight=()
    [[ $data == cases ]] || weight=(--weight weight)
    cat "$work/$data.csv" >/dev/null # in the page cache for both
    /usr/bin/time -a -o "$work/korvana-$data.times" -f '%e %M' build/bench/bin/korvana life-table "$work/$data.csv" \
      --time time --censor status --complete 1 --censored 0 "${weight[@]}" --format json -o "$work/out-$data" --quiet
    /usr/bin/time -a -o "$work/R-$data.times" -f '%e %M' Rscript bench/life-table.R "$work/$data.csv" \
      >>"$work/R-$data.out"
  done
done
python3 - "$work" <<'PYTHON'
import json, statistics, sys
folder = sys.argv[1]
differ = False
for data, what in (("cases", "1000000 cases"), ("weighted", "250000 weighted entries")):
    print(what)
    medians = {}
    for who in ("korvana", "R"):
        times = [tuple(map(float, line.split())) for line in open(f"{folder}/{who}-{data}.times")]
        seconds, kilobytes = medians[who] = [statistics.median(column) for column in zip(*times)]
        print(f"  {who:8} {seconds:.3f} s  {kilobytes / 1024:.0f} MB")
    print(f"  korvana / R {medians['korvana'][0] / medians['R'][0]:.2f}")
    theirs = [tuple(map(float, line.split())) for line in open(f"{folder}/R-{data}.out")]
    print(f"  R's counting and table alone {1000 * statistics.median(row[2] for row in theirs):.1f} ms")
    sheets = json.load(open(f"{folder}/out-{data}/results.json"))["spreadsheets"]
    table = next(sheet for sheet in sheets if sheet["id"] == "Summary")
    last = dict(zip(table["columnIds"], table["rows"][-1]["cells"]))
    ours = last["cumulativeSurviving"], last["survivingError"]
    agree = all(abs(a - b) <= 1e-10 * b for a, b in zip(ours, theirs[0]))
    print(f"  at the last limit {ours[0]:.12g} and {theirs[0][0]:.12g} surviving: {'agree' if agree else 'DIFFER'}")
    differ = differ or not agree
sys.exit(differ)
PYTHON
