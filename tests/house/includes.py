#!/usr/bin/env python3
"""Checks every #include against the allowed arrows between folders.

    includes.py ROOT

apps -> host -> support <- module; inside the module frame -> the analyses -> survdata -> resources. The comparisons
twosample and ksample may also include groups, which may include the numbers of kaplan and lifetable; regression may
include those of kaplan. Beyond that, module and support include only the C++ standard library. Prints each offending
line and exits 1.
"""
import re
import sys
from pathlib import Path

ANALYSES = {"module/kaplan", "module/twosample", "module/ksample", "module/lifetable", "module/regression"}
COMPARISONS = {"module/twosample", "module/ksample"}
GROUND = {"module/resources", "support"}
MAY_INCLUDE = {  # besides itself
    "support": set(),
    "module/resources": {"support"},
    "module/survdata": GROUND,
    "module/groups": GROUND | {"module/survdata"},
    **{analysis: GROUND | {"module/survdata"} | ({"module/groups"} if analysis in COMPARISONS else set())
       for analysis in ANALYSES},
    "module/frame": GROUND | {"module/survdata"} | ANALYSES,
    "host": {"support"},
    "apps": {"host", "support"},
}
# An analysis's numbers are the headers that know no host: nothing of support, however indirectly.
NUMBERS_OF = {"module/groups": {"module/kaplan", "module/lifetable"}, "module/regression": {"module/kaplan"}}
STANDARD_ONLY = ("support", "module")
STANDARD = re.compile(r"[a-z_]+")  # only the standard library's headers are plain words

INCLUDE = re.compile(r'^\s*#\s*include(?:_next)?\s*(.*?)\s*$')
NAMED = re.compile(r'^(?:"([^"]+)"|<([^>]+)>)')
SOURCES = {".h", ".hpp", ".hh", ".cpp", ".cc", ".cxx", ".c", ".inc", ".ipp"}


def layer(path):
    """The layer of a file given by its parts below the root; None outside the four folders."""
    parts = path.split("/")
    if parts[0] == "module":
        return "/".join(parts[:2]) if len(parts) > 2 else "module"
    return parts[0] if parts[0] in ("support", "host", "apps") else None


def includes(root, file):
    """(line number, text between the marks, file below the root or None) of each include of a file."""
    for number, line in enumerate((root / file).read_text(encoding="utf-8").splitlines(), 1):
        found = INCLUDE.match(line)
        if not found:
            continue
        named = NAMED.match(found.group(1))
        if not named:
            yield number, found.group(1), None
            continue
        text = named.group(1) or named.group(2)
        target = None
        for base in ([(root / file).parent] if named.group(1) else []) + [root]:
            candidate = (base / text).resolve()
            if candidate.is_file() and candidate.is_relative_to(root):
                target = candidate.relative_to(root).as_posix()
                break
        yield number, text, target


def knows_host(root, file, seen=None):
    seen = set() if seen is None else seen
    if layer(file) == "support":
        return True
    seen.add(file)
    return any(target and target not in seen and knows_host(root, target, seen)
               for _, _, target in includes(root, file))


def fault(root, file, text, target):
    """What is wrong with `file` including `text`, or None."""
    own = layer(file)
    if own not in MAY_INCLUDE:
        return f"{own}/ is no layer of the house"
    if target is None:
        top = text.split("/")[0]
        if top in ("support", "module", "host", "apps"):
            return "no such file"
        if own.split("/")[0] in STANDARD_ONLY and not STANDARD.fullmatch(text):
            return f"{own}/ takes nothing but the C++ standard library"
        return None
    other = layer(target)
    if other == own or other in MAY_INCLUDE[own]:
        return None
    if other in NUMBERS_OF.get(own, ()):
        return f"{target} knows a host, so it is none of the numbers" if knows_host(root, target) else None
    return f"no arrow runs from {own}/ to {other or target.split('/')[0]}/"


def main(root):
    root = Path(root).resolve()
    checked, faults = 0, []
    for folder in ("support", "module", "host", "apps"):
        for path in sorted((root / folder).rglob("*")):
            if path.suffix not in SOURCES or not path.is_file():
                continue
            file = path.relative_to(root).as_posix()
            for number, text, target in includes(root, file):
                checked += 1
                wrong = fault(root, file, text, target)
                if wrong:
                    faults.append(f"{file}:{number}: #include {text}: {wrong}")
    print("\n".join(faults + [f"{checked} includes checked, {len(faults)} against the house's arrows"]))
    return 1 if faults or not checked else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
