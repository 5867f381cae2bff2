#!/usr/bin/env bash
# Configures and builds one preset quietly; the log is shown only when something fails.
#   scripts/build.sh PRESET [TARGET...]
set -euo pipefail
cd -- "$(dirname -- "$(readlink -f -- "$0")")/.."

preset=$1
shift
compiler=g++
[[ $preset == clang || $preset == asan+ubsan ]] && compiler=clang++
launcher=
# A compiler cache is used if there is a writable one.
if command -v ccache >/dev/null; then
  cache=$(ccache --get-config cache_dir 2>/dev/null || true)
  if [[ -n $cache ]] && mkdir -p "$cache" 2>/dev/null && [[ -w $cache ]]; then launcher=ccache; fi
fi
options=(-DCMAKE_CXX_COMPILER_LAUNCHER="$launcher")
# Naming the compiler again, even the same one, makes CMake forget the variables of the preset.
[[ -f build/$preset/CMakeCache.txt ]] || options+=(-DCMAKE_CXX_COMPILER="$compiler")
targets=()
[[ $# -gt 0 ]] && targets=(--target "$@")

mkdir -p build
log=build/$preset.log
started=$SECONDS
echo "building ($preset) ..."
if ! { cmake --preset "$preset" "${options[@]}" &&
       cmake --build --preset "$preset" -j "$(nproc)" "${targets[@]}"; } >"$log" 2>&1; then
  # Shows the first failure; the reason of a failed configuration is at the end.
  if grep -q '^FAILED:' "$log"; then sed -n '/^FAILED:/,$p' "$log" | head -n 60; else tail -n 40 "$log"; fi >&2
  echo "the build ($preset) failed; all of its output: $PWD/$log" >&2
  exit 1
fi
echo "built ($preset) in $((SECONDS - started)) s"
