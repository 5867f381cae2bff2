#!/usr/bin/env bash
# Times the product-limit estimate of large CSV files, whole processes from file to results, against R's packages
# survival and data.table. Runs alternate; compared are medians of wall time and peak memory.
#   bench/side-by-side.sh [RUNS [ROWS...]]          default: 3 runs of 1000000 and 10000000 rows
# Data files are made in $TMPDIR (/tmp), up to 20 bytes per row, and removed afterwards.
runs=${1:-3}
rows=("${@:2}")
[[ ${#rows[@]} -gt 0 ]] || rows=(1000000 10000000)
. "$(dirname -- "$(readlink -f -- "$0")")/large-files.bash" survival data.table

for count in "${rows[@]}"; do
  for kind in continuous ties; do
    name=$kind-$count
    data=$work/$name.csv
    build/bench/bin/korvana-make-data "$kind" "$count" "$data"
    for ((run = 1; run <= runs; run++)); do
      cat "$data" >/dev/null # in the page cache for both
      measure korvana "$name" build/bench/bin/korvana kaplan-meier "$data" "${estimate[@]}" \
        --outputs percentiles,plot-1 -o "$work/out-$name" --format json
      measure R "$name" Rscript bench/survfit.R "$data"
    done
    rm "$data"
  done
done
python3 bench/compare.py "$work"
