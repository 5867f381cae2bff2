#!/usr/bin/env python3
"""Checks that the module exports only its factory and its analysis object.

    exports.py NM LIBRARY

Nothing may be exported but Lum6NewAnalysis (under its C name) and the members, vtable and typeinfo of
ozm::survival::CSurvival, and both must be there. Absolute symbols (versions) do not count.
"""
import re
import subprocess
import sys

FACTORY = "Lum6NewAnalysis"
OBJECT = re.compile(r"^(?:(?:non-virtual |virtual )?thunk to |(?:vtable|VTT|typeinfo|typeinfo name) for )?"
                    r"ozm::survival::CSurvival(?:::|$)")


def main(nm, library):
    listing = subprocess.run([nm, "-D", "--defined-only", "-C", library], check=True, capture_output=True, text=True)
    names = []
    for line in listing.stdout.splitlines():
        kind, name = re.match(r"^[0-9a-fA-F]*\s+(\S)\s+(.*)$", line).groups()
        if kind != "A":
            names.append(re.sub(r"@@?[\w.]+$", "", name))
    faults = [f"exported besides the factory and CSurvival: {name}"
              for name in names if name != FACTORY and not OBJECT.match(name)]
    if FACTORY not in names:
        faults.append(f"{FACTORY} is not exported")
    if not any(OBJECT.match(name) for name in names):
        faults.append("CSurvival is not exported")
    print("\n".join(faults + [f"{len(names)} exported symbols, {len(faults)} faults"]))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
