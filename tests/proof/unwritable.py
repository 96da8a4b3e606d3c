"""What cannot be written is an error: a full standard output, a lab that is for reading only."""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

PROGRAM = sys.argv[1] + "/autocli"
LINES = ["--help", "help korel", "--version", "--describe", "--plugins", "batch -",
         "korel datastore add -n ds1"]
LINES += ["lab show --formatter " + name for name in ("simple", "table", "json", "csv")]


def fails(status, line, **keywords):
    done = subprocess.run([PROGRAM, *line.split()], input="lab show", text=True, check=False,
                          stderr=subprocess.PIPE, **keywords)
    assert done.returncode == status and re.fullmatch("error: .*\n", done.stderr), done


with tempfile.TemporaryDirectory() as name:
    os.environ["KOREL_LAB"] = name + "/lab.db"
    subprocess.run([PROGRAM, "korel", "cluster", "new"], check=True)
    for line in LINES:
        fails(4, line, stdout=os.open("/dev/full", os.O_WRONLY))
    folder, lab = pathlib.Path(name), pathlib.Path(name, "lab.db")
    content = lab.read_bytes()
    lab.chmod(0o444)
    folder.chmod(0o555)
    for line in ("korel faultdomain set -n fd1", "korel trace set -s 7", "lab init --force"):
        # Root could write all the same.
        fails(1, line, stdout=subprocess.DEVNULL, user=None if os.geteuid() else 65534)
    folder.chmod(0o755)
    assert (lab.read_bytes(), len(os.listdir(folder))) == (content, 1)
