#!/usr/bin/python3
"""A tree with one wrong line for each rule: layers.py has to find all of them and nothing else."""

import pathlib
import shutil
import sys
import tempfile

import layers

FILES = {
    "korel/frame/Good.h": '#include <string>\n#include "korel/frame/Frame.h"\n#include "platform/hostctl/Misc.h"\n',
    "korel/cluster/Good.h": '#include "korel/frame/Frame.h"\n',
    "korel/Good.h": '#include "korel/cluster/Good.h"\n',
    "lab/store/Good.h": "#include <sqlite3.h>\n#include <sys/stat.h>\n",
    "korel/cluster/Bad.h": '#include <sqlite3.h>\n#include <unistd.h>\n#include "korel/network/Commands.h"\n'
    '#include "korel/Tree.h"\n#include "lab/store/Store.h"\n#include "autocli/base/Sink.h"\n#include "tests/X.h"\n',
    "korel/frame/Bad.h": '#include "korel/cluster/Commands.h"\n',
    "platform/base/Bad.h": '#include "platform/hostctl/Misc.h"\n',
    "autocli/base/Bad.h": '#include "autocli/line/Line.h"\n#include "platform/hostctl/Misc.h"\n// of Ostrel\n#include <zlib.h>\n',
    "lab/model/Bad.h": '#include <SQLiteCpp/Database.h>\n#include "lab/commands/Tree.h"\n' + "\n" * 500,
    "lab/nowhere/Bad.h": "",
}
EXPECTED = """autocli/base/Bad.h:1: autocli/base/ may not include autocli/line/Line.h
autocli/base/Bad.h:2: autocli/base/ may not include platform/hostctl/Misc.h
autocli/base/Bad.h:3: the framework knows no product word
autocli/base/Bad.h:4: autocli/base/ may not include zlib.h
korel/cluster/Bad.h:1: korel/cluster/ may not include sqlite3.h
korel/cluster/Bad.h:2: korel/cluster/ may not include unistd.h
korel/cluster/Bad.h:3: korel/cluster/ may not include korel/network/Commands.h
korel/cluster/Bad.h:4: korel/cluster/ may not include korel/Tree.h
korel/cluster/Bad.h:5: korel/cluster/ may not include lab/store/Store.h
korel/cluster/Bad.h:6: korel/cluster/ may not include autocli/base/Sink.h
korel/cluster/Bad.h:7: korel/cluster/ may not include tests/X.h
korel/frame/Bad.h:1: korel/frame/ may not include korel/cluster/Commands.h
lab/model/Bad.h:1: lab/model/ may not include SQLiteCpp/Database.h
lab/model/Bad.h:2: lab/model/ may not include lab/commands/Tree.h
lab/model/Bad.h: longer than 500 lines
lab/nowhere/Bad.h: lab/nowhere/ is no room of docs/architecture.md
platform/base/Bad.h:1: platform/base/ may not include platform/hostctl/Misc.h"""

with tempfile.TemporaryDirectory() as folder:
    root = pathlib.Path(folder)
    (root / "docs").mkdir()
    shutil.copy(pathlib.Path(sys.argv[1]) / "docs/architecture.md", root / "docs")
    for name, text in FILES.items():
        (root / name).parent.mkdir(parents=True, exist_ok=True)
        (root / name).write_text(text)
    found = "\n".join(layers.findings(root))
if found != EXPECTED:
    sys.exit(f"found:\n{found}\nexpected:\n{EXPECTED}")
