#!/usr/bin/env bash
# Regenerates the pictures in docs/images: two charts by the command line, the window and its dialogs.
set -euo pipefail
cd -- "$(dirname -- "$(readlink -f -- "$0")")/.."
scripts/build.sh release korvana OZMSurvival korvana-drawing desktop-screenshots

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# chart COMMAND FILE OPTION...: runs an analysis of the 6-MP data and keeps the chart FILE as docs/images/COMMAND.png.
chart() {
  build/release/bin/korvana "$1" examples/data/leukaemia-6mp.csv --time weeks --censor relapse \
    --complete 1 --censored 0 "${@:3}" --format png --quiet --output "$work/$1"
  cp -- "$work/$1/$2" "docs/images/$1.png"
}
chart kaplan-meier survival-function.png --select "group = '6-MP'" --outputs plot-1
chart two-sample survivorship-cumulative-proportion-surviving.png \
  --group group --group1 6-MP --group2 placebo --outputs plots

build/release/bin/desktop-screenshots docs/images
