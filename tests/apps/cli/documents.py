"""Checks the calls that README.md and the pages in docs show: what follows "$ korvana" comes out as it stands there (a
line "..." stands for any lines), and a call of the example data without output succeeds.

usage: documents.py KORVANA SOURCE_FOLDER"""
import glob
import os
import re
import subprocess
import sys
import tempfile

korvana, source = map(os.path.abspath, sys.argv[1:3])


def blocks(text):
    """The fenced blocks of a page, with their first lines' numbers."""
    for found in re.finditer(r"^```[a-z]*\n(.*?)^```$", text, re.M | re.S):
        yield text.count("\n", 0, found.start()) + 2, found.group(1).splitlines()


def calls(lines):
    """The calls of a block and what it shows of their output: None where it shows calls alone."""
    shown = any(line.startswith("$ ") for line in lines)
    found = []
    goes_on = False
    for line in lines:
        if goes_on:
            found[-1][0] += "\n" + line
        elif line.startswith("$ ") or (not shown and line.startswith("korvana ")):
            found.append([line.removeprefix("$ "), [] if shown else None])
        elif shown and found:
            found[-1][1].append(line)
        goes_on = bool(found) and not (found[-1][1]) and line.endswith(("\\", "|"))
    return found


def matches(shown, lines):
    """Whether the lines are those shown, with any lines for a "..."."""
    parts = [[]]
    for line in shown:
        if line == "...":
            parts.append([])
        else:
            parts[-1].append(line)
    at = 0
    for place, part in enumerate(parts):
        if place == len(parts) - 1 and part:
            places = [len(lines) - len(part)]
        else:
            places = [at] if place == 0 else range(at, len(lines) - len(part) + 1)
        at = next((p + len(part) for p in places if p >= at and lines[p:p + len(part)] == part), None)
        if at is None:
            return False
    return len(parts) > 1 or at == len(lines)


def run(call, folder):
    return subprocess.run(["bash", "-c", call], cwd=folder, capture_output=True, text=True, timeout=100,
                          env=dict(os.environ, PATH=os.path.dirname(korvana) + ":" + os.environ["PATH"]))


assert matches(["a", "...", "d"], ["a", "b", "d"]) and matches(["...", "b", "..."], ["a", "b", "c"])
assert not matches(["a", "..."], ["b", "a"]) and not matches(["a"], ["a", "b"]) and not matches(["...", "a"], ["a", "b"])

tried = []
failures = []
with tempfile.TemporaryDirectory() as folder:
    os.symlink(os.path.join(source, "examples"), os.path.join(folder, "examples"))
    for page in [os.path.join(source, "README.md"), *sorted(glob.glob(os.path.join(source, "docs", "*.md")))]:
        with open(page, encoding="utf-8") as file:
            text = file.read()
        for line, block in blocks(text):
            for call, shown in calls(block):
                if shown is None and "examples/data/" not in call:
                    continue
                place = f"{os.path.relpath(page, source)}:{line}: {call}"
                tried.append(place)
                outcome = run(call, folder)
                came = (outcome.stdout or outcome.stderr).splitlines()
                if shown is None and outcome.returncode != 0:
                    failures.append(f"{place}\nended with {outcome.returncode}\n{outcome.stderr}")
                elif shown is not None and not matches(shown, came):
                    failures.append(f"{place}\ndoes not show what comes out:\n" + "\n".join(came[:60]))

print(f"{len(tried)} calls tried")
assert len(tried) > 15, tried
sys.exit("\n\n".join(failures) or 0)
