# What the comparisons of regressions with R have in common; cox.sh, cox-time.sh and parametric.sh source it. They run
# what they time through the functions below, several rounds of it in turn, and end with `report`.
set -euo pipefail
cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."

script=$(basename -- "$0" .sh)
leave() { echo "$script: $1; nothing was compared"; exit 0; }
command -v Rscript >/dev/null || leave "R is missing (apt-get install r-base-core)"
[[ -x /usr/bin/time ]] || leave "GNU time is missing (apt-get install time)"
scripts/build.sh bench korvana OZMSurvival korvana-bench korvana-make-data
work=$(mktemp -d "${TMPDIR:-/tmp}/korvana-$script.XXXXXX")
trap 'rm -rf "$work"' EXIT

# The columns of a file beyond time and status, separated by commas.
covariates_of() { head -n 1 "$1" | cut -d , -f 3-; }

compare() { # compare WHAT: what is timed from here on, a heading of the report; again in each round
  folder=$work/$1
  [[ -d $folder ]] || echo "$1" >>"$work/order"
  mkdir -p "$folder"
}
clock() { # clock WHO COMMAND...: a whole process
  local TIMEFORMAT='%3R %3U %3S'
  if ! { time /usr/bin/time -f %M -o "$work/peak" "${@:2}" >>"$folder/$1.out" 2>"$work/err"; } 2>"$work/time"; then
    cat "$work/err" >&2
    echo "$script: failed: ${*:2}" >&2
    exit 1
  fi
  echo "$1 $(<"$work/time") $(<"$work/peak")" >>"$folder/times"
}
in_memory() { # in_memory BENCHMARK: one of korvana-bench
  build/bench/bin/korvana-bench --benchmark_filter="$1\$" --benchmark_repetitions=5 --benchmark_format=json \
    2>/dev/null | tr -d '\n' >>"$folder/memory"
  echo >>"$folder/memory"
}
r_in_memory() { Rscript "$@" >>"$folder/R.out"; } # r_in_memory SCRIPT ARGUMENT...

report() { python3 bench/regressions.py "$work"; }
