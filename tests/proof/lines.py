"""What crash.py and power.py share: the lines that they try, each with the lab that it begins with,
and how a case of one is judged."""

import collections
import concurrent.futures
import contextlib
import os
import pathlib
import random
import shlex
import shutil
import sqlite3
import subprocess
import sys
import tempfile

BIN, SHIM = sys.argv[1:3]
WANTED = dict(word.split("=") for word in sys.argv[3:])
CHANCE = random.Random(SEED := int(WANTED.pop("seed", random.randrange(10**6))))
BATCH = pathlib.Path(__file__).parent.parent / "e2e" / "every-command.batch"


def run(folder, text, seed=0, host="host1", **strike):
    """Runs the line in the folder's lab. Returns what came of it, and what the shim counted."""
    (folder / "counts").write_bytes(bytes(4096))
    environment = {
        "PATH": os.environ["PATH"], "KOREL_LAB": f"{folder}/lab/lab.db", "KOREL_LAB_HOST": host,
        "KOREL_LAB_CALLS": f"{folder}/calls", "LD_PRELOAD": SHIM, "PROOF_FOLDER": f"{folder}/lab",
        "PROOF_COUNTS": f"{folder}/counts", "PROOF_SEED": str(seed),
        "AUTOCLI_COMPLETE_MS": "60000"}
    environment |= {f"PROOF_{name.upper()}": str(value) for name, value in strike.items()}
    done = subprocess.run([f"{BIN}/autocli", *shlex.split(text)], env=environment, text=True,
                          capture_output=True, check=False, start_new_session=True, cwd=folder)
    done.stdout = done.stdout.replace(str(folder), "FOLDER")
    return done, memoryview((folder / "counts").read_bytes()).cast("q").tolist()


def rows(lab):
    """The rows of all tables, or what is not sound."""
    database = sqlite3.connect(lab / "lab.db")
    names = database.execute("SELECT name FROM sqlite_schema WHERE type = 'table'").fetchall()
    questions = ["PRAGMA integrity_check", "PRAGMA foreign_key_check", "PRAGMA user_version"]
    questions += [f"SELECT * FROM {name}" for name, in names]
    found = {question: database.execute(question).fetchall() for question in questions}
    database.close()
    assert (found[questions[0]], found[questions[1]]) == ([("ok",)], []), found
    return found


class Line:
    """A line, and the lab that it begins with."""

    def __init__(self, folder, text, number, **recording):
        self.text, self.number, self.lab = text, number, folder / f"lab{number}"
        shutil.copytree(folder / "lab", self.lab)
        self.done, self.counts = run(folder, text, number, **recording)
        assert self.done.returncode == 0, self.done

    @contextlib.contextmanager
    def fresh(self, folder):
        """A folder with the lab that the line begins with."""
        with tempfile.TemporaryDirectory(dir=folder) as place:
            shutil.copytree(self.lab, place + "/lab")
            if self.text.endswith("--file saved.db"):
                shutil.copy(folder / "saved.db", place)
            yield pathlib.Path(place)


def prepare(folder, kind, tools=()):
    """The lines, each with the lab that those before it have made."""
    (folder / "lab").mkdir()
    for number, host in enumerate(("host2", "host3")):
        run(folder, f"lab host add --name {host}", number)
    run(folder, "korel cluster new", 2, "host2")
    database = sqlite3.connect(folder / "lab" / "lab.db")
    (cluster,), = database.execute("SELECT uuid FROM clusters")
    run(folder, f"korel cluster join -u {cluster}", 3, "host3")
    texts = BATCH.read_text().replace("CLUSTER", cluster).splitlines()
    texts[texts.index("korel datastore list"):0] = tools
    return [kind(folder, text, number) for number, text in enumerate(texts, 4) if text[0] != "#"]


def judge(folder, name, cases):
    """Checks each of the cases, a line and what it is given; returns what went wrong."""
    met, faults = [], []

    def attempt(line, case):
        try:
            with line.fresh(folder) as place:
                met.append(line.check(place, **case))
        except (AssertionError, sqlite3.Error) as fault:
            faults.append(f"{line.text} {case}: {fault}"[:1000])

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        list(pool.map(attempt, *zip(*cases)))
    counts = dict(collections.Counter(sorted(met)))
    print(f"{name}:", counts, f"wrong: {len(faults)}", flush=True)
    return sorted(faults)
