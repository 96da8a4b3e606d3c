"""Eight processes at once on one lab: nothing lost, nothing twice, nobody turned away.

  crowd.py BIN CROWD OPERATIONS

Each runs that many commands. Then CROWD counts up a number of the lab as often. Without a
transaction it must lose count, or a loss could not be seen here."""

import collections
import json
import os
import pathlib
import sqlite3
import subprocess
import sys
import tempfile

BIN, CROWD, OPERATIONS = sys.argv[1], sys.argv[2], int(sys.argv[3])
TAKEN = "Unable to add datastore: datastore name 'wanted-"
ADD = "korel datastore add -n"
LINES = (ADD + " own-{0}-{1}", ADD + " wanted-{1}", "korel resync throttle get")
OWN, WANTED = (len(range(first, OPERATIONS, 3)) for first in (0, 1))


def autocli(line):
    words = [f"{BIN}/autocli", "--formatter", "json", *line.split()]
    return json.loads(subprocess.run(words, capture_output=True, check=True).stdout)["result"]


def crowd(*words):
    """Runs the program eight times at once, LINES to read; returns the lines that were written."""
    running = []
    for number in range(8):
        lines = [LINES[i % 3].format(number, i) for i in range(OPERATIONS)]
        pathlib.Path(f"{place}/in{number}").write_text("\n".join(lines))
        with open(f"{place}/in{number}") as source, open(f"{place}/out{number}", "w") as out:
            running.append(subprocess.Popen(words, stdin=source, stdout=out))
    assert {process.wait() for process in running} <= {0, 1}
    return [line for i in range(8) for line in open(f"{place}/out{i}").read().splitlines()]


def count(how):
    with sqlite3.connect(os.environ["KOREL_LAB"]) as database:
        database.execute("UPDATE hosts SET resyncRate = 0")
    crowd(CROWD, how, str(OPERATIONS))
    return database.execute("SELECT resyncRate FROM hosts").fetchone()[0]


with tempfile.TemporaryDirectory() as place:
    os.environ["KOREL_LAB"] = place + "/lab.db"
    # Nobody is turned away, however slow the machine is.
    os.environ["KOREL_LAB_WAIT"] = "86400"
    autocli("korel cluster new")
    autocli(f"lab fault add --operation GetResyncThrottle --message struck --count {OPERATIONS}")
    answers = [json.loads(line) for line in crowd(f"{BIN}/autocli", "batch", "-", "--keep-going")]
    errors = [error["message"][:len(TAKEN)] for answer in answers for error in answer["errors"]]
    names = [record["User Friendly Name"] for record in autocli("korel datastore list")]
    counted = count("with"), count("without")
    print(len(answers), "answers,", collections.Counter(errors), len(names), "datastores,", counted)
    assert sorted(errors) == [TAKEN] * 7 * WANTED + ["struck"] * OPERATIONS
    assert len(names) == len(set(names)) == 1 + 8 * OWN + WANTED
    assert len(answers) == counted[0] == 8 * OPERATIONS > counted[1]
