# What the comparisons of large files with R have in common; side-by-side.sh and reading.sh source it, with the packages
# of R that they need as its arguments.
set -euo pipefail
cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."

script=$(basename -- "$0" .sh)
leave() { echo "$script: $1; nothing was compared"; exit 0; }
command -v Rscript >/dev/null || leave "R is missing (apt-get install r-base-core)"
for package; do
  Rscript -e "quit(status = !requireNamespace('$package', quietly = TRUE))" >/dev/null 2>&1 ||
    leave "R's package $package is missing (apt-get install r-cran-${package,,})"
done
[[ -x /usr/bin/time ]] || leave "GNU time is missing (apt-get install time)"
command -v python3 >/dev/null || leave "Python 3 is missing (apt-get install python3)"

scripts/build.sh bench korvana OZMSurvival korvana-make-data
work=$(mktemp -d "${TMPDIR:-/tmp}/korvana-$script.XXXXXX")
trap 'rm -rf "$work"' EXIT

measure() { # measure WHO FILE COMMAND...: one line "WHO FILE seconds kilobytes" in $work/times
  local who=$1 file=$2
  shift 2
  if ! /usr/bin/time -f '%e %M' -o "$work/time" "$@" >"$work/$who-$file.out" 2>"$work/$who-$file.err"; then
    cat "$work/$who-$file.err" >&2
    echo "$script: failed: $*" >&2
    exit 1
  fi
  echo "$who $file $(tail -n 1 "$work/time")" >>"$work/times"
}

# The options of an estimate from such a file, with the times of its phases on standard error.
estimate=(--time time --censor status --complete 1 --censored 0 --quiet --timing)
