#!/usr/bin/env bash
# Makes the pictures of the window and its dialogs in docs/images anew.
set -euo pipefail
cd -- "$(dirname -- "$(readlink -f -- "$0")")/.."
scripts/build.sh release desktop-screenshots
build/release/bin/desktop-screenshots docs/images
