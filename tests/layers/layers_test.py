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
# Every include of the files named Bad.h.
EXPECTED = sorted(
    [f"{name}:{number}: {name.rpartition('/')[0]}/ may not include {line.split()[1][1:-1]}"
     for name, text in FILES.items() if name.endswith("Bad.h")
     for number, line in enumerate(text.splitlines(), 1) if line.startswith("#include")]
    + ["autocli/base/Bad.h:3: the framework knows no product word",
       "lab/model/Bad.h: longer than 500 lines",
       "lab/nowhere/Bad.h: lab/nowhere/ is no room of docs/architecture.md"])

with tempfile.TemporaryDirectory() as folder:
    root = pathlib.Path(folder)
    (root / "docs").mkdir()
    shutil.copy(pathlib.Path(sys.argv[1]) / "docs/architecture.md", root / "docs")
    for name, text in FILES.items():
        (root / name).parent.mkdir(parents=True, exist_ok=True)
        (root / name).write_text(text)
    found = sorted(layers.findings(root))
if found != EXPECTED:
    sys.exit("\n".join(["found:", *found, "expected:", *EXPECTED]))
