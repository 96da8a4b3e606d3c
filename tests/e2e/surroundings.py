"""What comes to a lab from around it: signals, limits, variables that name odd files.

  surroundings.py BIN"""

import os
import pathlib
import re
import resource
import select
import signal
import sqlite3
import subprocess
import sys
import tempfile

PROGRAM = sys.argv[1] + "/autocli"


def expect(status, message, line, limit=None, **settings):
    done = subprocess.run([PROGRAM, *line.split()], env={**os.environ, **settings}, text=True,
                          capture_output=True, check=False, preexec_fn=limit)
    assert done.returncode == status and re.fullmatch(message, done.stderr), (line, settings, done)


def interrupted(folder, number):
    """A command that is tried waits for what comes through a pipe; the signal comes."""
    pipe, temporary = folder / f"pipe{number}", folder / "temporary"
    os.mkfifo(pipe)
    temporary.mkdir(exist_ok=True)
    words = [PROGRAM, "lab", "try", "lab", "init", "--force", "--inventory", pipe]
    trying = subprocess.Popen(words, env={**os.environ, "TMPDIR": str(temporary)})
    with open(pipe, "w", encoding="utf-8") as writer:  # waits for somebody who reads
        trying.send_signal(number)
        assert trying.wait() == -number
        gone = select.poll()
        gone.register(writer, 0)
        gone.poll()  # until nobody reads any more
    assert not list(temporary.iterdir())


with tempfile.TemporaryDirectory() as name:
    folder = pathlib.Path(name)
    lab = folder / "lab.db"
    os.environ |= {"KOREL_LAB": str(lab), "HOME": name}
    os.chdir(folder)
    expect(0, "", "korel cluster new")
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        interrupted(folder, number)
    (folder / "relative").mkdir()
    for temporary in ("", "relative"):
        expect(0, "", "lab try korel trace get", TMPDIR=temporary)
    expect(1, "error: cannot make a directory .*/none/autocli-try-.*': No such file or "
              "directory\n", "lab try korel trace get", TMPDIR="none")

    expect(1, "error: Unable to add datastore: .*\n", "korel datastore add -n ds1",
           limit=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (4096, 4096)))
    expect(0, "", "lab check")

    # A program that knows nothing of turns has the file.
    with sqlite3.connect(lab, isolation_level=None) as other:
        other.execute("BEGIN EXCLUSIVE")
        for line in ("korel faultdomain get", "lab resync set --rate 7"):
            expect(1, "error: .* is in use by another process; waited 0 s in all; .*\n", line,
                   KOREL_LAB_WAIT="0")
        other.execute("ROLLBACK")

    # All come first: the lab is made once. Then all replace the same file that is no lab, and
    # nothing is lost.
    odd = folder / "odd"
    odd.mkdir()
    for line, there in (("korel storage list", ["lab.db"]),
                        ("lab init --force", ["lab.db", "lab.db.old"])):
        crowd = [subprocess.Popen([PROGRAM, *line.split()], stdout=subprocess.DEVNULL,
                                  env={**os.environ, "KOREL_LAB": str(odd / "lab.db")})
                 for _ in range(8)]
        assert [process.wait() for process in crowd] == [0] * 8
        assert sorted(os.listdir(odd)) == there
        expect(0, "", "lab check", KOREL_LAB=str(odd / "lab.db"))
        (odd / "lab.db").write_text("precious")
    assert (odd / "lab.db.old").read_text() == "precious"

    pipe = folder / "calls"
    os.mkfifo(pipe)
    for calls, reason in ((pipe, "nobody reads this pipe"), (folder, "Is a directory"),
                          (lab, "it is the lab itself"), (f"{lab}-journal", "it is the lab itself"),
                          ("relative/../lab.db", "it is the lab itself")):
        message = f"error: .*KOREL_LAB_CALLS names a file that cannot be written, .*: {reason}\n"
        expect(1, message, "korel datastore list", KOREL_LAB_CALLS=str(calls))
    expect(0, "", "lab check")

    # Exported by mistake it is another process's.
    expect(0, "", "korel faultdomain set -n fd1", AUTOCLI_COMPLETING="1")
    assert sorted(os.listdir(folder)) == sorted(
        ["calls", "lab.db", "odd", "relative", "temporary", *(f"pipe{n}" for n in (1, 2, 15))])
