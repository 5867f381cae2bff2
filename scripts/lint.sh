#!/usr/bin/env bash
# Checks the sources with clang-format (which changes nothing here) and clang-tidy (with the checks of .clang-tidy).
# The format of all sources is checked; clang-tidy looks at
#   scripts/lint.sh              what differs from the main branch; on the main branch the last ten commits
#   scripts/lint.sh FILE...      these
#   scripts/lint.sh --all        everything
#   scripts/lint.sh --most N     at most N files with clang-tidy, which is slow
# Needs a build: clang-tidy compiles with the options of the latest one. Exits 1 when something is found.
set -uo pipefail
cd -- "$(dirname -- "$(readlink -f -- "$0")")/.."

most=
all=
files=()
while [[ $# -gt 0 ]]; do
  case $1 in
    --all) all=yes ;;
    --most) most=${2:?--most needs a number}; shift ;;
    -*) sed -n '2,8s/^# \?//p' "$0" >&2; exit 2 ;;
    *) files+=("$1") ;;
  esac
  shift
done

sources() { grep -E '\.(cpp|h)$' | sort -u | while read -r file; do [[ -f $file ]] && echo "$file"; done; }

# What was changed since the main branch was left, and what is not committed yet. A shallow clone may have no older
# commit: then files are picked by the commit's hash, others each time.
changed() {
  local base='' other
  for other in origin/main main; do
    base=$(git merge-base "$other" HEAD 2>/dev/null) && break
  done
  if [[ -z $base || $base == "$(git rev-parse HEAD)" ]]; then
    base=
    for other in HEAD~10 HEAD~5 HEAD~2 HEAD~1; do
      base=$(git rev-parse -q --verify "$other^{commit}") && break
    done
  fi
  if [[ -n $base ]]; then
    git diff --name-only "$base" --
    git ls-files --others --exclude-standard
  else
    echo "lint: no older commit is here to compare with; some files are picked" >&2
    git ls-files '*.cpp' | shuf -n 20 --random-source=<(yes "$(git rev-parse HEAD)")
  fi
}

if [[ -n $all ]]; then mapfile -t files < <(git ls-files | sources)
elif [[ ${#files[@]} -eq 0 ]]; then mapfile -t files < <(changed | sources)
else
  for file in "${files[@]}"; do
    [[ -f $file ]] || { echo "lint: there is no file $file" >&2; exit 2; }
  done
  mapfile -t files < <(printf '%s\n' "${files[@]}" | sed "s#^$PWD/##" | sources)
fi
if [[ ${#files[@]} -eq 0 ]]; then
  echo "lint: no sources to look at"
  exit 0
fi

for tool in clang-format clang-tidy; do
  command -v "$tool" >/dev/null && continue
  echo "lint: $tool is missing; scripts/setup.sh installs it" >&2
  exit 2
done

# All sources are formatted, whatever was changed: that takes a second or two.
failed=0
mapfile -t formatted < <(printf '%s\n' "${files[@]}" "$(git ls-files)" | sources)
echo "format: ${#formatted[@]} files"
printf '%s\0' "${formatted[@]}" | xargs -0 -P "$(nproc)" -n 20 clang-format --dry-run --Werror || failed=1

database=$(find build -maxdepth 2 -name compile_commands.json ! -path 'build/lint/*' -printf '%T@ %p\n' 2>/dev/null |
  sort -rn | head -n 1 | cut -d' ' -f2-)
if [[ -z $database ]]; then
  echo "lint: there is no build to compile as; scripts/build.sh release makes one" >&2
  exit 2
fi

# Without the precompiled headers: another compiler's cannot be read.
mkdir -p build/lint
sed -E 's/ (-Winvalid-pch )?(-Xclang )?-include(-pch)? (-Xclang )?[^ ]*cmake_pch[^ ]*//g' \
  "$database" >build/lint/compile_commands.json

# A header is checked through a source: its own, or one that includes it.
units=()
unit() { [[ -n ${1:-} ]] && grep -qF "\"$PWD/$1\"" build/lint/compile_commands.json && units+=("$1"); }
for file in "${files[@]}"; do
  if [[ $file == *.cpp ]]; then
    unit "$file" || echo "lint: $file is not compiled in ${database%/*} and left out" >&2
  else
    unit "${file%.h}.cpp" || unit "$(git grep -lF "#include \"$file\"" -- '*.cpp' | head -n 1)" || true
  fi
done
mapfile -t units < <(printf '%s\n' "${units[@]}" | sort -u)
[[ -n ${units[0]:-} ]] || exit "$failed"
if [[ -n $most && ${#units[@]} -gt $most ]]; then
  echo "tidy: $most of ${#units[@]} files; scripts/lint.sh looks at all of them"
  mapfile -t units < <(printf '%s\n' "${units[@]}" | shuf -n "$most" --random-source=<(yes "$(git rev-parse HEAD)"))
else
  echo "tidy: ${#units[@]} files"
fi
# The build may be g++'s, with warnings that clang does not know.
tidy() {
  local out
  if ! out=$(clang-tidy -p build/lint --quiet --extra-arg=-Wno-unknown-warning-option "$1" 2>&1); then
    grep -vE '^[0-9]+ warnings? (and [0-9]+ errors? )?(generated|treated)' <<<"$out"
    return 1
  fi
}
export -f tidy
printf '%s\0' "${units[@]}" | xargs -0 -P "$(nproc)" -I{} bash -c 'tidy "$0"' {} || failed=1
exit "$failed"
