#!/usr/bin/env bash
# Times the writing of the product-limit table of a large file in each format, against runs of the same file without it.
#   bench/writing.sh [RUNS [ROWS]]                  default: 5 runs of 1000000 rows
# Data and results are made in $TMPDIR (/tmp), up to 120 bytes per row, and removed afterwards.
set -euo pipefail
cd -- "$(dirname -- "$(readlink -f -- "$0")")/.."

runs=${1:-5}
rows=${2:-1000000}
command -v python3 >/dev/null || { echo "writing: Python 3 is missing (apt-get install python3)"; exit 0; }

scripts/build.sh bench korvana OZMSurvival korvana-make-data korvana-bench
work=$(mktemp -d "${TMPDIR:-/tmp}/korvana-writing.XXXXXX")
trap 'rm -rf "$work"' EXIT
build/bench/bin/korvana-make-data continuous "$rows" "$work/data.csv"
python3 bench/writing.py build/bench/bin/korvana "$work" "$runs"
build/bench/bin/korvana-bench --benchmark_filter=writeTable 2>/dev/null
