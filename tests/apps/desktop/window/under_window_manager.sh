#!/usr/bin/env bash
# usage: under_window_manager.sh MANAGER PROGRAM [ARGUMENT ...]
# Runs a test program on a small virtual screen with a window manager. Exits 77 (skipped) where one is not installed.
set -u
manager=$1
shift
for needed in Xvfb "$manager"; do
  if ! command -v "$needed" >/dev/null; then
    echo "skipped: $needed is not installed"
    exit 77
  fi
done
work=$(mktemp -d)
children=()
trap 'kill "${children[@]}" 2>/dev/null; wait; rm -rf "$work"' EXIT
mkfifo "$work/number"
Xvfb -displayfd 3 -screen 0 1024x600x24 3>"$work/number" 2>"$work/xvfb.log" &
children+=($!)
read -r -t 20 display <"$work/number" || {
  echo "Xvfb does not start:"
  cat "$work/xvfb.log"
  exit 1
}
export DISPLAY=:$display HOME=$work KORVANA_TEST_PLATFORM=xcb
"$manager" >"$work/manager.log" 2>&1 &
children+=($!)
sleep 2
"$@"
