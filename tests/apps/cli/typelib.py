"""Checks that an IDL compiler takes `korvana typelib --idl`, and that the type library that it makes has every name and
help text that `korvana typelib` shows. Skipped (77) where there is no compiler.

usage: typelib.py KORVANA"""
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile

korvana = sys.argv[1]


def call(*words):
    return subprocess.run([korvana, "typelib", *words], check=True, capture_output=True, text=True).stdout


shown = call()
idl = call("--idl")

names = {"OZMSurvival"}
helps = set()
added = set()
values = {}
for line in shown.splitlines():
    if found := re.match(r"interface (\w+)(?: : OzmAnalysisDialog)?(?:  (.*))?$", line):
        names.add(found[1])
        helps.add(found[2])
        interface = found[1]
    elif found := re.match(r"enumeration (\w+)$", line):
        names.add(found[1])
    elif found := re.match(r"  (\d)  (\w+)$", line):
        names.add(found[2])
        values[found[2]] = found[1]
    elif found := re.match(r"([ +]) (\w+)  +(\S.*?)(?:  +(.*))?$", line):
        names.add(found[2])
        helps.add(found[4])
        if found[1] == "+":
            added.add(found[2])
assert len(names) > 100 and len(values) == 16 and {"SurvivalCurve", "ForestPlot"} < added, (names, values, added)

# What programs were built with must stay as it is.
uuids = re.findall(r"uuid\(([0-9a-f-]{36})\)", idl)
assert len(uuids) == len(set(uuids)) == 20, uuids
assert uuids[0] == "287f8717-830b-854e-8d44-5029e080cb5d", uuids[0]
for name, value in values.items():
    assert re.search(rf"\b{name} = {value}\b", idl), name
for name in added:
    assert re.search(rf"// added by this program\n.*\n    HRESULT {name}\(", idl), name

widl = next(filter(None, map(shutil.which, ("x86_64-w64-mingw32-widl", "i686-w64-mingw32-widl", "widl"))), None)
if widl is None:
    print("no widl is installed: the interface definition was not compiled")
    sys.exit(77)
with tempfile.TemporaryDirectory() as folder:
    source = os.path.join(folder, "library.idl")
    with open(source, "w", encoding="utf-8") as file:
        file.write(idl)
    subprocess.run([widl, "-t", "-o", os.path.join(folder, "library.tlb"), source], check=True)
    subprocess.run([widl, "-h", "-o", os.path.join(folder, "library.h"), source], check=True)
    with open(os.path.join(folder, "library.tlb"), "rb") as file:
        library = file.read()
    with open(os.path.join(folder, "library.h"), encoding="utf-8") as file:
        header = file.read()

# The file's header says how many types there are; their offsets and the directory of the parts of the file follow it.
assert library[:4] == b"MSFT", library[:4]
types = struct.unpack_from("<i", library, 0x20)[0]
assert types == 4 + 15 + 2, types  # enumerations, interfaces, and those of the platform


def part(number):
    offset, length = struct.unpack_from("<ii", library, 0x54 + 4 * types + 16 * number)
    return library[offset:offset + length]


table = part(7)
compiled = set()
at = 0
while at < len(table):
    length = table[at + 8]
    compiled.add(table[at + 12:at + 12 + length].decode())
    at += 12 + (length + 3) // 4 * 4
assert names <= compiled, names - compiled
texts = part(8)
for text in filter(None, helps):
    assert text.encode() in texts, text
for accessor in ("get_TypeOfAnalysis", "put_TypeOfAnalysis", "put_ResultsSaveFileName", "get_DefaultPlot"):
    assert accessor in header, accessor
assert "put_DefaultPlot" not in header and "put_Application" not in header
print(f"{os.path.basename(widl)} took {len(names)} names")
