#!/usr/bin/env bash
# Times how long large files take to be opened, against R's data.table::fread alone: numbers, 100 columns, quoted cells,
# texts, and numbers packed by gzip. Runs alternate; compared are medians.
#   bench/reading.sh [RUNS [PERCENT]]          default: 5 runs of 100 % of the rows
# Data files are made in $TMPDIR (/tmp), up to 400 MB at a time, and removed afterwards.
runs=${1:-5}
percent=${2:-100}
. "$(dirname -- "$(readlink -f -- "$0")")/large-files.bash" data.table R.utils # which fread needs for gzip

while read -r name kind rows; do
  data=$work/data.csv
  build/bench/bin/korvana-make-data "$kind" $((rows * percent / 100)) "$data"
  if [[ $name == gzip ]]; then
    gzip -f "$data"
    data+=.gz
  fi
  echo "$name $((rows * percent / 100)) $(stat -c %s "$data")" >>"$work/files"
  for ((run = 1; run <= runs; run++)); do
    cat "$data" >/dev/null # in the page cache for both
    measure korvana "$name" build/bench/bin/korvana kaplan-meier "$data" "${estimate[@]}" --outputs percentiles
    sed -n 's/^Opening the file *\([0-9.]*\) s$/\1/p' "$work/korvana-$name.err" >>"$work/korvana-$name.opening"
    measure fread "$name" Rscript bench/fread.R "$data"
    cat "$work/fread-$name.out" >>"$work/fread-$name.opening"
  done
  rm "$data"
done <<'FILES'
continuous continuous 10000000
ties ties 10000000
wide cox-98 200000
quoted quoted 5000000
texts texts 2000000
gzip continuous 5000000
FILES
python3 bench/reading.py "$work"
