#!/usr/bin/env bash
# Builds the fuzzers and runs them on unexpected input, two at a time.
#   scripts/fuzz.sh [SECONDS] [TARGET]     120 seconds and all of data, expressions, initfile, expressionfile, automation and
#                                        command when left out
# FUZZ_SEED=N repeats a run's choices. The corpus is kept in build/fuzz/corpus, an input that breaks something in
# build/fuzz/found; `build/asan+ubsan/bin/fuzz-TARGET FILE` repeats it. Exits 1 when something broke.
set -uo pipefail
cd -- "$(dirname -- "$(readlink -f -- "$0")")/.."

seconds=${1:-120}
targets=(data expressions initfile expressionfile automation command)
[[ $# -ge 2 ]] && targets=("$2")
if ! [[ $seconds =~ ^[0-9]+$ ]] || ! [[ " data expressions initfile expressionfile automation command " == *" ${targets[0]} "* ]]; then
  echo "usage: scripts/fuzz.sh [SECONDS] [data|expressions|initfile|expressionfile|automation|command]" >&2
  exit 2
fi
seed=${FUZZ_SEED:-$((RANDOM * 32768 + RANDOM + 1))}

scripts/build.sh asan+ubsan "${targets[@]/#/fuzz-}" || exit 1
programs=$PWD/build/asan+ubsan/bin
work=$PWD/build/fuzz
mkdir -p "$work/found"

seed_corpus() { # seed_corpus TARGET FOLDER: inputs to begin with, from the examples and the seeds beside the fuzzers
  local file
  case $1 in
  data) for file in examples/data/*.csv tests/golden/*.csv; do { printf '\0'; head -c 3000 "$file"; } >"$2/$(basename "$file")"; done ;;
  command)
    while IFS= read -r call; do
      for file in examples/data/*.csv; do
        { printf '%s\n' "$call"; head -n 40 "$file"; } >"$2/$(cksum <<<"$call" | cut -d' ' -f1)-$(basename "$file")"
      done
    done <tests/fuzz/seeds/command.txt ;;
  *) local n=0
    while IFS= read -r line; do printf '%b' "$line" >"$2/$((n += 1))"; done <"tests/fuzz/seeds/$1.txt" ;;
  esac
}

run() { # run TARGET SECONDS
  local target=$1 corpus=$work/corpus/$1 seeds=$work/seeds/$1 log=$work/fuzz-$1.log status=0 dictionary=()
  mkdir -p "$corpus" "$seeds"
  seed_corpus "$target" "$seeds"
  [[ -f tests/fuzz/$target.dict ]] && dictionary=("-dict=$PWD/tests/fuzz/$target.dict")
  "$programs/fuzz-$target" -seed="$seed" -max_total_time="$2" -timeout=30 -rss_limit_mb=3000 -max_len=4096 \
    -print_final_stats=1 -artifact_prefix="$work/found/$target-" "${dictionary[@]}" "$corpus" "$seeds" \
    >"$log" 2>&1 || status=$?
  if [[ $status -eq 0 ]]; then
    echo "fuzz-$target: $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") inputs in $2 s, nothing broke"
  else
    sed -n '/DOES NOT HOLD\|ERROR: \|runtime error/,$p' "$log" | head -n 40
    echo "fuzz-$target: BROKE something (seed $seed); the whole log: $log"
    sed -n "s|.*Test unit written to \(.*\)|repeat it: $programs/fuzz-$target \1|p" "$log"
  fi
  return "$status"
}

echo "fuzzing (${targets[*]}) for $seconds s, seed $seed ..."
failed=0
each=$seconds
[[ ${#targets[@]} -gt 2 ]] && each=$((seconds * 2 / (${#targets[@]} + 1)))
for ((first = 0; first < ${#targets[@]}; first += 2)); do
  jobs=()
  for target in "${targets[@]:first:2}"; do
    run "$target" "$each" &
    jobs+=($!)
  done
  for job in "${jobs[@]}"; do wait "$job" || failed=1; done
done
exit "$failed"
