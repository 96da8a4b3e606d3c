"""Processor time of each command in labs of 10 to 10,000 hosts, and how it grows.

  scale.py BIN [SIZE...]

A lab of N hosts has N clusters, N datastores in the largest of them, which half of the hosts are
in, N agents of host1 and three claimed disks a host. A command that shows or changes something of
all of these may grow with them, any other may not."""

import json
import math
import os
import pathlib
import shlex
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import uuid

BIN = sys.argv[1]
SIZES = [int(size) for size in sys.argv[2:]] or [10, 100, 1000, 10000]
BATCH = pathlib.Path(__file__).parent.parent / "tests" / "e2e" / "every-command.batch"
RUNS = 7
ENOUGH_SECONDS = 2  # of runs of one line
FLOOR_MS = 1  # less counts as this: runs of one command differ by as much
AIM_LINEAR, AIM_FLAT = 1.15, 0.2
IDLE = "lab fault list"

# Lines that show or change something of all hosts, clusters, datastores or agents. A preferred fault
# domain is one of those in which all data hosts of the cluster lie.
GROWING = (
    "lab show", "lab try", "lab undo", "lab save", "lab load", "lab diff", "lab check",
    "lab host list", "lab cluster list", "lab cluster show", "lab init",
    "korel cluster get", "korel cluster list", "korel cluster leave", "korel datastore list",
    "korel datastore clear", "korel cluster unicastagent list", "korel cluster unicastagent clear",
    "korel cluster join -u CLUSTER --witness", "korel cluster preferredfaultdomain")
# Lines to measure before a line of the batch, which comes to the lab as it was before them.
MORE = {
    "korel cluster unicastagent list": [
        "korel cluster unicastagent add -t witness -a 10.0.0.9",
        "korel cluster unicastagent add -t remote -u 5291022a-ad03-df90-dd0f-b9f980cc005f "
        "-a 10.0.0.8 --cluster-uuid OTHER"],
    "korel storage list": ["korel storage remove -s mpx.dkhba0:C0:T1:L0 -m EvacuateAllData"],
    "korel datastore list": [
        "korel datastore add -n far -u FAR --cluster-uuid OTHER",
        "korel datastore name get -u 5291022a-ad03-df90-dd0f-b9f980cc0002",
        "korel datastore name set -n ds2 -u 5291022a-ad03-df90-dd0f-b9f980cc0002"],
    "lab init --force": ["lab cluster show --uuid OTHER", "lab init --force --inventory INVENTORY"],
}


def name_of(number):
    return f"host{number}" if number <= 3 else f"node{number}"


def uuid_of(kind, number):
    return str(uuid.uuid5(uuid.NAMESPACE_OID, f"{kind} {number}"))


def fill(database, size):
    """Clusters of all hosts but host1, datastores, mounts, agents and claims."""
    clusters = range(1, size + 1)
    database.executemany("INSERT INTO clusters (id, uuid, isClient) VALUES (?, ?, 0)",
                         ((i, uuid_of("cluster", i)) for i in clusters))
    hosts = [host for host, in database.execute("SELECT id FROM hosts WHERE name <> 'host1'")]
    insert = ("INSERT INTO memberships (host, cluster, nodeType, isActive, isPersisted) "
              "VALUES (?, ?, ?, 1, 1)")
    half = len(hosts) // 2 + 1
    witness, data = hosts[-1], hosts[half:-1]
    database.executemany(insert, ((host, 1, 0) for host in hosts[:half]))
    database.executemany(insert, ((host, i, 0) for host, i in zip(data, clusters[1:])))
    # No cluster is without a host.
    database.executemany(insert, ((witness, i, 1) for i in clusters[1 + len(data):]))
    # Two fault domains: with a witness, the large cluster is a stretched one.
    database.executemany("UPDATE hosts SET faultDomain = 'host3' WHERE id = ?",
                         ((host,) for host in hosts[1:half]))
    datastore = "INSERT INTO datastores (uuid, cluster, name, isDefault) VALUES (?, ?, ?, ?)"
    database.executemany(datastore, ((uuid_of("default", i), i, "default", 1) for i in clusters))
    database.executemany(datastore,
                         ((uuid_of("datastore", i), 1, f"store{i}", 0) for i in clusters))
    database.executemany(
        "INSERT INTO mounts (cluster, datastore, name) SELECT ?, id, 'mount' || id FROM datastores "
        "WHERE cluster = ?", ((1, i) for i in clusters[size // 2:-1]))
    database.executemany(
        "INSERT INTO agents (host, uuid, type, supportsUnicast, address, port, interface, "
        "thumbprint, cluster) SELECT id, ?, 3, 1, ?, 12321, '', '', ? FROM hosts "
        "WHERE name = 'host1'",
        ((uuid_of("agent", i), f"10.1.{i // 250}.{i % 250 + 1}", uuid_of("remote", i))
         for i in clusters))
    claim = ("INSERT INTO claims (device, cachingDevice, formatVersion, claimedAt, usedGb) "
             "SELECT d.id, c.id, 20, '', {} FROM devices d JOIN devices c ON c.host = d.host AND "
             "c.name = 'mpx.dkhba0:C0:T1:L0' WHERE d.host <> 1 AND d.name {}")
    database.execute(claim.format(0, "= c.name"))
    database.execute(claim.format(1000, "IN ('mpx.dkhba2:C0:T1:L0', 'mpx.dkhba2:C0:T2:L0')"))


class Lab:
    """A lab of that many hosts, which goes back to how it was kept last."""

    def __init__(self, folder, size):
        self.size = size
        self.folder = folder / str(size)
        self.folder.mkdir()
        self.file, self.kept = folder / f"{size}.db", folder / f"{size}.kept"
        self.inventory = folder / f"{size}.json"
        self.environment = {**os.environ, "KOREL_LAB": str(self.file), "KOREL_LAB_HOST": "host1"}
        hosts = [{"name": name_of(i + 1)} for i in range(size)]
        self.inventory.write_text(json.dumps({"hosts": hosts}))
        self.run(f"lab init --inventory {self.inventory}")
        with sqlite3.connect(self.file) as database:
            database.execute("PRAGMA foreign_keys = ON")
            fill(database, size)
        self.keep()

    def keep(self):
        shutil.copyfile(self.file, self.kept)

    def run(self, line):
        """Runs the line; answers the processor time, of what it starts too, in ms."""
        words = {"CLUSTER": uuid_of("cluster", 1), "OTHER": uuid_of("cluster", self.size),
                 "FAR": uuid_of("default", self.size), "INVENTORY": str(self.inventory)}
        arguments = [words.get(word, word) for word in shlex.split(line)]
        process = subprocess.Popen([f"{BIN}/autocli", *arguments], env=self.environment,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                                   cwd=self.folder)
        error = process.stderr.read()
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        process.stderr.close()
        if process.returncode:
            sys.exit(f"{line}: {error.decode()}")
        return (usage.ru_utime + usage.ru_stime) * 1000

    def measure(self, line):
        """The shortest of some runs, each from the same state."""
        times = []
        while len(times) < 3 or (len(times) < RUNS and sum(times) < ENOUGH_SECONDS * 1000):
            shutil.copyfile(self.kept, self.file)
            times.append(self.run(line))
        return min(times)


def lines():
    for line in BATCH.read_text().splitlines():
        if line[0] != "#":
            yield from ((more, False) for more in MORE.get(line, ()))
            yield line, True


def main(folder):
    labs = [Lab(folder, size) for size in SIZES]
    print(f"  ms at {', '.join(f'{size:,}' for size in SIZES)} hosts beyond those of \"{IDLE}\" in "
          "the smallest lab; exponent of the last step (aim)")
    above = []
    for line, stays in lines():
        idle = labs[0].measure(IDLE)  # each time, as the machine is faster now and slower then
        times = [lab.measure(line) - idle for lab in labs]
        if stays:
            for lab in labs:
                lab.keep()
        last = [max(time, FLOOR_MS) for time in times[-2:]]
        exponent = math.log(last[1] / last[0]) / math.log(SIZES[-1] / SIZES[-2])
        aim = AIM_LINEAR if line.startswith(GROWING) else AIM_FLAT
        if exponent > aim:
            above.append(line)
        print("  " + "".join(f"{time:10.2f}" for time in times),
              f"{exponent:6.2f} ({aim:.2f})  {line}", flush=True)
    print(f"aim: an exponent of {AIM_LINEAR} where all is shown or changed, else {AIM_FLAT}; above:",
          ", ".join(above) or "none")


with tempfile.TemporaryDirectory() as name:
    main(pathlib.Path(name))
