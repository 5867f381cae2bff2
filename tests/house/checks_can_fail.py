#!/usr/bin/env python3
"""Plants one fault at a time and tests that the checks of the architecture find it, and nothing without it.

    checks_can_fail.py CXX NM
"""
import subprocess
import sys
import tempfile
from contextlib import redirect_stdout
from io import StringIO
from pathlib import Path

import exports
import includes
import mentions

HOUSE = {  # a sound house in small, every layer using all it may
    "support/Service.h": "#include <vector>\n",
    "module/resources/Ids.h": '#include "support/Service.h"\n',
    "module/survdata/Sample.h": '#include "module/resources/Ids.h"\n#include "support/Service.h"\n',
    "module/survdata/Tails.h": "#include <cmath>\n",
    "module/kaplan/Numbers.h": '#include "module/survdata/Tails.h"\n',
    "module/kaplan/State.h": '#include "module/survdata/Sample.h"\n',
    "module/groups/Curves.h": '#include "module/kaplan/Numbers.h"\n',
    "module/twosample/Run.cpp": '#include "module/groups/Curves.h"\n',
    "module/frame/State.cpp": '#include "module/kaplan/State.h"\n#include "module/twosample/Run.h"\n',
    "module/twosample/Run.h": "",
    "host/Session.cpp": '#include "support/Service.h"\n#include <QString>\n',
    "host/Session.h": "// Korvana Survival\n",
    "apps/cli/main.cpp": '#include "host/Session.h"\n#include <CLI/CLI.hpp>\n// survival times\n',
    "apps/cli/commands/Table.cpp": 'const char* name = "kaplan-meier";\n',
}
PLANTED = [  # check, file, line added to it
    (includes, "support/Service.h", '#include "host/Session.h"'),
    (includes, "support/Service.h", "#include <QString>"),
    (includes, "support/Service.h", "#include <unistd.h>"),
    (includes, "host/Session.h", '#include "module/kaplan/Numbers.h"'),
    (includes, "host/Session.h", '#include "../apps/cli/main.cpp"'),
    (includes, "apps/cli/main.cpp", '#include "module/frame/State.cpp"'),
    (includes, "apps/cli/main.cpp", '  #  include <module/kaplan/Numbers.h>'),
    (includes, "module/resources/Ids.h", '#include "module/survdata/Tails.h"'),
    (includes, "module/survdata/Tails.h", '#include "module/kaplan/Numbers.h"'),
    (includes, "module/kaplan/State.h", '#include "module/frame/State.cpp"'),
    (includes, "module/kaplan/State.h", '#include "module/twosample/Run.h"'),
    (includes, "module/kaplan/State.h", '#include "../twosample/Run.h"'),
    (includes, "module/twosample/Run.h", '#include "module/kaplan/State.h"'),
    (includes, "module/kaplan/Numbers.h", '#include "module/survdata/Sample.h"'),  # no longer numbers alone
    (includes, "module/frame/State.cpp", '#include "host/Session.h"'),
    (includes, "module/frame/State.cpp", "#include HEADER"),
    (includes, "host/Session.h", '#include "support/Gone.h"'),
    (includes, "module/extra/New.h", "#include <vector>"),
    (mentions, "host/Session.cpp", "// opens the Kaplan-Meier dialog"),
    (mentions, "support/CMakeLists.txt", "SurvivalThing.cpp"),
    (mentions, "apps/cli/main.cpp", 'if (name == "cox") return 1;'),
    (mentions, "host/LogRank.h", ""),
]
MODULE = """
namespace ozm::survival {
struct __attribute__((visibility("default"))) CSurvival { virtual ~CSurvival(); void Init(); };
CSurvival::~CSurvival() {}
void CSurvival::Init() {}
}
extern "C" __attribute__((visibility("default"))) void* %s() { return new ozm::survival::CSurvival; }
%s
"""


def build(root, change=None):
    for file, text in HOUSE.items():
        (root / file).parent.mkdir(parents=True, exist_ok=True)
        (root / file).write_text(text)
    if change:
        path = root / change[0]
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text((path.read_text() if path.exists() else "") + change[1] + "\n")


def passes(check, *arguments):
    with redirect_stdout(StringIO()):
        return check.main(*arguments) == 0


def main(compiler, nm):
    wrong = []
    with tempfile.TemporaryDirectory() as folder:
        for number, (check, file, line) in enumerate(PLANTED):
            root = Path(folder) / str(number)
            build(root)
            if not passes(check, root):
                wrong.append(f"{check.__name__} refuses a sound house")
            build(root, (file, line))
            if passes(check, root):
                wrong.append(f"{check.__name__} overlooks in {file}: {line}")

        def exported(name, factory, more, sound):
            library = Path(folder) / f"{name}.so"
            subprocess.run([compiler, "-shared", "-fPIC", "-fvisibility=hidden", "-x", "c++", "-", "-o", library],
                           input=MODULE % (factory, more), text=True, check=True)
            if passes(exports, nm, library) != sound:
                wrong.append(f"exports misjudges the library {name}")

        exported("sound", "Lum6NewAnalysis", "int hidden() { return 1; }", True)
        exported("factory-missing", "NewAnalysis6", "", False)
        visible = '__attribute__((visibility("default"))) '
        exported("function-more", "Lum6NewAnalysis", visible + "int open() { return 1; }", False)
        exported("class-alike", "Lum6NewAnalysis",
                 "namespace ozm::survival { " + visible + "void CSurvivalHelper() {} }", False)
    print("\n".join(wrong + [f"{len(PLANTED) + 4} trials, {len(wrong)} misjudged"]))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
