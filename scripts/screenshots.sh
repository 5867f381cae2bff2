#!/usr/bin/env bash
# Regenerates the pictures in docs/images: charts by the command line, the window and its dialogs.
set -euo pipefail
cd -- "$(dirname -- "$(readlink -f -- "$0")")/.."
scripts/build.sh release korvana OZMSurvival korvana-drawing desktop-screenshots

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# chart COMMAND FILE OPTION...: runs an analysis and keeps the chart FILE as docs/images/COMMAND.png.
chart() {
  build/release/bin/korvana "$1" "${@:3}" --format png --quiet --output "$work/$1"
  cp -- "$work/$1/$2" "docs/images/$1.png"
}
leukaemia=(examples/data/leukaemia-6mp.csv --time weeks --censor relapse --complete 1 --censored 0)
veteran=(examples/data/veteran.csv --time time --censor status --complete 1 --censored 0)
chart life-table fitted-survival-functions-weight-3.png examples/data/angina.csv --table lower,withdrawn,dying \
  --entering 2418 --weighting 3 --outputs plot-models
chart kaplan-meier survival-function.png "${leukaemia[@]}" --select "group = '6-MP'" --outputs plot-1
chart two-sample survivorship-cumulative-proportion-surviving.png "${leukaemia[@]}" \
  --group group --group1 6-MP --group2 placebo --outputs plots
chart cox hazard-ratios-with-95-limits.png "${veteran[@]}" --covariates karno,age,prior,trt:cat,celltype:cat=large \
  --outputs forest
chart regression survival-function-at-the-means-of-the-covariates.png "${leukaemia[@]}" --model lognormal \
  --covariates group:cat=placebo --outputs plot-survival
chart k-sample cumulative-proportion-surviving-kaplan-meier.png "${veteran[@]}" --group celltype --outputs curves

build/release/bin/desktop-screenshots docs/images
