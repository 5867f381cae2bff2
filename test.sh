#!/usr/bin/env bash
# Everything that must hold: all tests optimised by g++, the linters over what was changed, all tests by clang++ under
# address and undefined-behaviour sanitizers (warnings are errors in both), those of the threads that share work under
# the sanitizer for data races, and a minute of fuzzing. Exits 0 only when all of it succeeded.
set -uo pipefail
cd -- "$(dirname -- "$(readlink -f -- "$0")")"

results=()
failed=0

note() { # note NAME OK TEXT
  results+=("$(printf '%-10s  %s' "$1" "$3")")
  [[ $2 -eq 0 ]] || failed=1
}

build_and_test() {
  local preset=$1 log=build/$1-tests.log status=0
  if ! scripts/build.sh "$preset"; then
    note "$preset" 1 "build failed"
    return
  fi
  echo "testing ($preset) ..."
  ctest --preset "$preset" -j "$(nproc)" --no-tests=error --timeout 300 >"$log" 2>&1 || status=$?
  # Leaves out the tests that passed: a clean run shows only the count and the time.
  grep -vE '^ +Start +[0-9]+:|^ *[0-9]+/[0-9]+ Test .* Passed |^Test project|^$' "$log"
  note "$preset" "$status" "$(grep -E 'tests passed' "$log" || echo "ctest ended with $status")"
}

# What shares work between threads: reading data, packing spreadsheets. Left out is what takes long and knows no threads.
test_threads() {
  local program log=build/tsan-tests.log status=0
  local one_thread='Characters.*:FormatNumber.*:NumberText.*'
  if ! scripts/build.sh tsan test-host-data results-tests; then
    note tsan 1 "build failed"
    return
  fi
  echo "testing (tsan) ..."
  for program in test-host-data results-tests; do
    TSAN_OPTIONS=halt_on_error=1 "build/tsan/bin/$program" --gtest_brief=1 --gtest_filter="-$one_thread" >"$log" 2>&1 && continue
    tail -n 60 "$log"
    status=1
  done
  note tsan "$status" "$([[ $status -eq 0 ]] && echo "no data races" || echo "found something")"
}

scripts/setup.sh || exit 1
build_and_test release
if scripts/lint.sh --most 12; then note lint 0 "nothing found in what was changed"; else note lint 1 "found something"; fi
build_and_test asan+ubsan
test_threads
if scripts/fuzz.sh 60; then note fuzz 0 "a minute, nothing broke"; else note fuzz 1 "broke something, or did not build"; fi

printf '\n%s\n' "----------"
printf '%s\n' "${results[@]}"
exit "$failed"
