"""Checks that the lists at the end of docs/automation.md are those of the type library; with --write it puts them there.

usage: automation_page.py KORVANA SOURCE_FOLDER [--write]"""
import os
import re
import subprocess
import sys

korvana, source = sys.argv[1:3]
page = os.path.join(source, "docs", "automation.md")
shown = subprocess.run([korvana, "typelib"], check=True, capture_output=True, text=True).stdout

interfaces = ["| Interface | Members |", "|---|---|"]
enumerations = ["| Enumeration | Members |", "|---|---|"]
for block in shown.split("\n\n"):
    head, *lines = block.splitlines()
    if found := re.match(r"interface (\w+) : OzmAnalysisDialog", head):
        members = [[], []]
        for line in lines:
            mark, name, rest = re.match(r"([ +]) (\w+)  +(.*)", line).groups()
            text = f"`{name}{'()' if rest.startswith('action') else ''}`" + (" (read only)" if ", read only" in rest else "")
            members[mark == "+"].append(text)
        added = " + " + ", ".join(members[1]) if members[1] else ""
        interfaces.append(f"| `{found[1]}` | {', '.join(members[0])}{added} |")
    elif found := re.match(r"enumeration (\w+)", head):
        names = (f"`{line.split()[1]}`" for line in lines)
        enumerations.append(f"| `{found[1]}` | {', '.join(names)} |")
assert len(interfaces) == 16 and len(enumerations) == 6, (interfaces, enumerations)

with open(page, encoding="utf-8") as file:
    text = file.read()
start = text.index("\n## Interfaces\n")
head = re.match(r"\n## Interfaces\n\n(?:[^|\n]+\n)+\n", text[start:])[0]
between = "\n\n## Enumerations\n\nTheir members count from 1.\n\n"
wanted = text[:start] + head + "\n".join(interfaces) + between + "\n".join(enumerations) + "\n"
if sys.argv[3:] == ["--write"]:
    with open(page, "w", encoding="utf-8") as file:
        file.write(wanted)
elif text != wanted:
    sys.exit("docs/automation.md does not have the members of the type library; write them with\n"
             f"  {sys.argv[0]} {korvana} {source} --write")
