#!/usr/bin/env bash
# Times the product-limit estimate of large CSV files, whole processes from file to results, against R's packages
# survival and data.table. Runs alternate; compared are medians of wall time and peak memory.
#   bench/side-by-side.sh [RUNS [ROWS...]]          default: 3 runs of 1000000 and 10000000 rows
#   KORVANA_BEFORE=PROGRAM bench/side-by-side.sh    also against another build of korvana, such as that of the version before
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
      outputs=(--outputs percentiles,plot-1 --format json)
      measure korvana "$name" build/bench/bin/korvana kaplan-meier "$data" "${estimate[@]}" "${outputs[@]}" -o "$work/out-$name"
      if [[ -n ${KORVANA_BEFORE:-} ]]; then
        measure before "$name" "$KORVANA_BEFORE" kaplan-meier "$data" "${estimate[@]}" "${outputs[@]}" -o "$work/before-$name"
        cmp "$work/out-$name/results.json" "$work/before-$name/results.json" # says where they differ, and ends the script
      fi
      measure R "$name" Rscript bench/survfit.R "$data"
    done
    rm "$data"
  done
done
python3 bench/compare.py "$work"
