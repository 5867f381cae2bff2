#!/usr/bin/env python3
"""Only the module names analyses, and the tables through which people reach one by name.

    mentions.py ROOT

Checks the names and the texts of all files under support/, host/ and apps/. Support and host do not mention survival at
all; a front end may speak of survival times, but names no analysis outside its tables. The project's own name is
allowed.
"""
import re
import sys
from pathlib import Path

ANALYSES = (r"kaplan|meier|gompertz|weibull|(?<![a-z])cox(?![a-z])|two.?samples?\b|\bk.?samples?\b|life.?tables?|"
            r"log.?rank|product.?limit|\bgehan")
WORDS = {"support": re.compile(ANALYSES + "|survival|hazard", re.IGNORECASE),
         "host": re.compile(ANALYSES + "|survival|hazard", re.IGNORECASE),
         "apps": re.compile(ANALYSES, re.IGNORECASE)}
PROJECT = re.compile(r"Korvana Survival|korvana-survival")
# The command line's table (and the list of its files), and Python's one-line functions.
TABLES = ("apps/cli/commands/", "apps/cli/CMakeLists.txt", "apps/python/")


def main(root):
    root = Path(root).resolve()
    looked, faults = 0, []
    for folder, words in WORDS.items():
        for path in sorted((root / folder).rglob("*")):
            file = path.relative_to(root).as_posix()
            if not path.is_file() or "__pycache__" in file or file.startswith(TABLES):
                continue
            looked += 1
            lines = path.read_text(encoding="utf-8", errors="replace").splitlines()
            for where, text in [(file, file)] + [(f"{file}:{n}", line) for n, line in enumerate(lines, 1)]:
                found = words.search(PROJECT.sub("", text))
                if found:
                    faults.append(f"{where}: \"{found.group(0)}\"")
    print("\n".join(faults + [f"{looked} files looked at, {len(faults)} mentions of an analysis"]))
    return 1 if faults or not looked else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
