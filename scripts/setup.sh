#!/usr/bin/env bash
# Installs what the project is built with, as far as it is missing (Debian 12 or later). Asks nothing, and uses no
# network if nothing is missing.
set -euo pipefail

packages=(
  g++ clang libclang-rt-dev clang-tidy clang-format cmake ninja-build pkg-config binutils python3 python3-jsonschema
  qt6-base-dev qt6-svg-dev libqcustomplot-dev libharfbuzz-dev fonts-dejavu-core
  libxlsxwriter-dev nlohmann-json3-dev libcli11-dev zlib1g-dev
  python3-dev pybind11-dev python3-numpy python3-pandas python3-venv python3-pip
  libgtest-dev libgmock-dev xvfb openbox icewm mingw-w64-tools)

if ! { command -v dpkg-query && command -v apt-get; } >/dev/null; then
  echo "setup: this is no Debian; see to it that these are installed: ${packages[*]}" >&2
  exit 0
fi

missing=()
for package in "${packages[@]}"; do
  [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || missing+=("$package")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

as_root=()
if [[ $(id -u) -ne 0 ]]; then
  if ! command -v sudo >/dev/null; then
    echo "setup: missing packages: ${missing[*]}" >&2
    echo "setup: neither root nor sudo; install them with: apt-get install ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
fi
install() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -q --no-install-recommends "${missing[@]}" </dev/null
}
echo "setup: installing ${missing[*]}"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
# The package lists may be too old, or never fetched.
if ! install >"$log" 2>&1; then
  if ! { "${as_root[@]}" apt-get update -q </dev/null && install; } >"$log" 2>&1; then
    tail -n 30 "$log" >&2
    echo "setup: could not install ${missing[*]}" >&2
    exit 1
  fi
fi
