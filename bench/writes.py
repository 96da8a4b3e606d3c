"""Times each line of every-command.batch that changes the lab beside the bare library, which makes
the same changes to the same rows in as many transactions.

  writes.py BIN BENCH_BIN RUNS"""

import os
import pathlib
import shlex
import shutil
import sqlite3
import statistics
import subprocess
import sys
import tempfile

BIN, BENCH, RUNS = sys.argv[1:4]
BATCH = pathlib.Path(__file__).parent.parent / "tests" / "e2e" / "every-command.batch"
AIM = 1.3


def rows(lab):
    """The rows of each table, by their primary key: {(table, key): row}."""
    found = {}
    with sqlite3.connect(lab) as database:
        for table, in database.execute("SELECT name FROM sqlite_schema WHERE type = 'table' "
                                       "AND name <> 'history'"):
            columns = database.execute(f"PRAGMA table_info({table})").fetchall()
            keys = [column[0] for column in columns if column[5]]
            rowid = "" if keys else "rowid, "
            names = rowid + ", ".join(column[1] for column in columns)
            for row in database.execute(f"SELECT {names} FROM {table}"):
                key = tuple(row[i] for i in keys) if keys else row[:1]
                condition = " AND ".join(f"{columns[i][1]} = {literal(row[i])}" for i in keys)
                found[table, key] = (names, row, condition or f"rowid = {row[0]}")
    return found


def literal(value):
    if value is None:
        return "NULL"
    if isinstance(value, bytes):
        return f"x'{value.hex()}'"
    return str(value) if isinstance(value, int) else "'" + value.replace("'", "''") + "'"


def commits(lab):
    """How many transactions have changed the file; it counts them in its header."""
    return int.from_bytes(lab.read_bytes()[24:28], "big")


def script(before, after, count):
    """SQL that takes the rows from one to the other in that many transactions."""
    changes = [f"DELETE FROM {table} WHERE {condition};"
               for (table, key), (_, _, condition) in before.items() if (table, key) not in after]
    changes += [f"REPLACE INTO {table} ({names}) VALUES ({', '.join(map(literal, row))});"
                for (table, key), (names, row, _) in after.items()
                if before.get((table, key), (0, 0))[1] != row]
    # Rows that were changed and changed back are gone from sight: a transaction that they were in
    # writes what the last one wrote.
    parts = [changes[i::count] or changes[-1:] for i in range(count)]
    return "PRAGMA synchronous = EXTRA;\n" + "".join(
        "BEGIN IMMEDIATE;\n" + "\n".join(part) + "\nCOMMIT;\n" for part in parts)


def main(folder):
    lab, start, changes = folder / "lab.db", folder / "start.db", folder / "changes.sql"
    environment = {**os.environ, "KOREL_LAB": str(lab)}

    def run(text, host="host1"):
        subprocess.run([f"{BIN}/autocli", *shlex.split(text)], check=True, capture_output=True,
                       env={**environment, "KOREL_LAB_HOST": host}, cwd=folder)

    for host in ("host2", "host3"):
        run(f"lab host add --name {host}")
    run("korel cluster new", "host2")
    with sqlite3.connect(lab) as database:
        (cluster,), = database.execute("SELECT uuid FROM clusters")
    run(f"korel cluster join -u {cluster}", "host3")
    ratios = {}
    for line in BATCH.read_text().splitlines():
        if line[0] == "#" or line.startswith("lab try"):
            continue
        text = line.replace("CLUSTER", cluster)
        shutil.copyfile(lab, start)
        before, count = rows(lab), commits(lab)
        run(text)
        after, count = rows(lab), commits(lab) - count
        if before == after:
            continue
        changes.write_text(script(before, after, count))
        done = subprocess.run(
            [f"{BENCH}/bench_pair", RUNS, "--restore", start, lab, f"{BIN}/autocli",
             *shlex.split(text), "--", f"{BENCH}/bench_bare_writer", lab, changes],
            env=environment, capture_output=True, text=True, check=False, cwd=folder)
        if done.returncode:
            print(f"  {line}: not measured: {done.stderr.strip()}")
        else:
            ours, bare, ratio = map(float, done.stdout.split())
            ratios[line] = ratio
            print(f"  {ratio:5.2f}  {ours:7.2f} ms {bare:7.2f} ms  {count} transactions  {line}", flush=True)
        shutil.copyfile(start, lab)
        run(text)
    print(f"{len(ratios)} lines that change the lab / bare library: median "
          f"{statistics.median(ratios.values()):.2f} (aim: each at most {AIM}); above:",
          ", ".join(line for line, ratio in ratios.items() if ratio > AIM) or "none")


with tempfile.TemporaryDirectory() as name:
    main(pathlib.Path(name))
