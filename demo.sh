#!/usr/bin/env bash
# The shortest way to a result: builds the command line and the survival module, and estimates the survival function of
# a published data set, on the screen and into files.
set -euo pipefail
cd -- "$(dirname -- "$(readlink -f -- "$0")")"

scripts/setup.sh
scripts/build.sh release korvana OZMSurvival

korvana=(build/release/bin/korvana kaplan-meier examples/data/leukaemia-6mp.csv
  --time weeks --censor relapse --complete 1 --censored 0 --select "group = '6-MP'")
shown='$'
for word in "${korvana[@]}"; do
  if [[ $word == *[[:space:]]* ]]; then shown+=" \"$word\""; else shown+=" $word"; fi
done
printf '\n%s\n\n' "$shown"
"${korvana[@]}"

rm -rf demo-results
"${korvana[@]}" -o demo-results --quiet
printf '\nThe same with -o demo-results: report, spreadsheets and charts as files in\n%s\n' "$PWD/demo-results"
ls demo-results | sed 's/^/  /'
