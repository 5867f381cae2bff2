#!/usr/bin/env bash
# Times the product-limit estimate of large CSV files, whole processes from file to results, against R's packages
# survival and data.table. Runs alternate; compared are medians of wall time and peak memory.
#   bench/side-by-side.sh [RUNS [ROWS...]]          default: 3 runs of 1000000 and 10000000 rows
# Data files are made in $TMPDIR (/tmp), up to 20 bytes per row, and removed afterwards.
set -euo pipefail
cd -- "$(dirname -- "$(readlink -f -- "$0")")/.."

runs=${1:-3}
shift $(($# > 0))
rows=("$@")
[[ ${#rows[@]} -gt 0 ]] || rows=(1000000 10000000)

leave() { echo "side-by-side: $1; nothing was compared"; exit 0; }
command -v Rscript >/dev/null || leave "R is missing (apt-get install r-base-core)"
for package in survival data.table; do
  Rscript -e "quit(status = !requireNamespace('$package', quietly = TRUE))" >/dev/null 2>&1 ||
    leave "R's package $package is missing (apt-get install r-cran-$package)"
done
[[ -x /usr/bin/time ]] || leave "GNU time is missing (apt-get install time)"
command -v python3 >/dev/null || leave "Python 3 is missing (apt-get install python3)"

scripts/build.sh bench korvana OZMSurvival korvana-make-data
work=$(mktemp -d "${TMPDIR:-/tmp}/korvana-side-by-side.XXXXXX")
trap 'rm -rf "$work"' EXIT

measure() { # measure WHO FILE COMMAND...: one line "WHO FILE seconds kilobytes" in $work/times
  local who=$1 file=$2
  shift 2
  if ! /usr/bin/time -f '%e %M' -o "$work/time" "$@" >"$work/$who-$file.out" 2>"$work/$who-$file.err"; then
    cat "$work/$who-$file.err" >&2
    echo "side-by-side: failed: $*" >&2
    exit 1
  fi
  echo "$who $file $(tail -n 1 "$work/time")" >>"$work/times"
}

for count in "${rows[@]}"; do
  for kind in continuous ties; do
    name=$kind-$count
    data=$work/$name.csv
    build/bench/bin/korvana-make-data "$kind" "$count" "$data"
    for ((run = 1; run <= runs; run++)); do
      cat "$data" >/dev/null # in the page cache for both
      measure korvana "$name" build/bench/bin/korvana kaplan-meier "$data" --time time --censor status \
        --complete 1 --censored 0 --outputs percentiles,plot-1 -o "$work/out-$name" --format json --quiet --timing
      measure R "$name" Rscript bench/survfit.R "$data"
    done
    rm "$data"
  done
done
python3 bench/compare.py "$work"
