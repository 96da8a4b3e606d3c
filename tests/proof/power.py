"""Takes the power from the machine at each point of every command that changes the lab, and of one
that makes it. docs/testing.md says what has to hold with the files that may be left.

  power.py BIN SHIM [states=COUNT] [seed=SEED]

COUNT is how many states to try. Some more come from a machine on which syncs do nothing: labs have
to break there, for otherwise this shows nothing."""

import itertools
import pathlib
import random
import sys
import tempfile

from lines import CHANCE, SEED, WANTED, Line, judge, prepare, rows, run

STATES = int(WANTED.get("states", 5000))
SECTOR = 512
CHECKS = ["lab show", "lab check"]
JOURNAL = "lab.db-journal"


class File:
    """What was synced of a file, and what was written since: places and bytes, None for a cut."""

    def __init__(self, synced=b""):
        self.synced, self.since = synced, []

    def content(self, writes):
        data = bytearray(self.synced)
        for place, written in writes:
            end = len(data) if written is None else place + len(written)
            data = data.ljust(place, b"\0")
            data[place:end] = written or b""
        return bytes(data)

    def left(self, chance, share):
        kept = [write for write in self.since if chance.random() < share]
        chance.shuffle(kept)
        if kept and kept[-1][1] and chance.random() < 0.5:
            place, written = kept.pop()
            edges = [0, *range(-place % SECTOR or SECTOR, len(written), SECTOR), len(written)]
            kept += [(place + edge, written[edge:end]) for edge, end in zip(edges, edges[1:])
                     if chance.random() < 0.5]
        data = self.content(kept)
        # A file may have grown before it gets what belongs there.
        grown = len(self.content(self.since)) if chance.random() < share else 0
        return data + chance.randbytes(max(0, grown - len(data)))


class Disk:
    """The files of a folder by their names, which names were synced, and how they changed since."""

    def __init__(self, files):
        self.synced = self.names = {name: File(data) for name, data in files.items()}
        self.since = []

    def apply(self, what, name, place, data):
        file = self.names.get(name)
        if what == "sync" and name == "":
            self.synced, self.since = self.names, []
        elif what == "sync" and file:
            file.synced, file.since = file.content(file.since), []
        elif what in ("write", "cut", "empty") and file:
            file.since.append((place, data if what == "write" else None))
        elif what in ("create", "empty") and not file:
            self.enter({name: File()})
        elif what == "remove":
            self.enter({name: None})
        elif what in ("rename", "link"):
            old = pathlib.Path(data.decode()).name
            self.enter({name: self.names[old]} | ({old: None} if what == "rename" else {}))

    def enter(self, names):
        self.since.append(names)
        self.names = {name: file for name, file in (self.names | names).items() if file}

    def now(self):
        return {name: file.content(file.since) for name, file in self.names.items()}

    def left(self, chance):
        """The files as they may be without power from now on."""
        share, names = chance.choice((0, 0.5, 1)), dict(self.synced)
        for change in self.since:
            names |= change if chance.random() < share else {}
        return {name: file.left(chance, share) for name, file in names.items() if file}


def content(lab):
    return {path.name: path.read_bytes() for path in lab.iterdir() if path.is_file()}


def records(trace, lab):
    """The calls that changed the folder or a file in it, not those in folders below."""
    with trace.open("rb") as file:
        while head := file.readline():
            what, path, place, size = head.decode().split()
            data, path = file.read(int(size)), pathlib.Path(path)
            if lab in (path, path.parent):
                yield what, path.name if path != lab else "", int(place), data


def lost(files, record, chance, forgets=False):
    """The files as they may be without power from the end of the record on."""
    disk = Disk(files)
    for what, *rest in record:
        if what != "sync" or not forgets:
            disk.apply(what, *rest)
    return disk.left(chance)


class Recorded(Line):
    """A line on record, and the rows that are there before and after its transactions."""

    def __init__(self, folder, text, number):
        (trace := folder / "trace").write_bytes(b"")
        super().__init__(folder, text, number, trace=trace)
        self.files, self.record = content(self.lab), list(records(trace, folder / "lab"))
        disk, kept = Disk(self.files), [self.files]
        # For each point, how many transactions are there: at least those before the one under way.
        self.allowed = [(first := 0, last := 0)]
        for what, name, *rest in self.record:
            disk.apply(what, name, *rest)
            if (what, name) == ("create", JOURNAL):
                first = last
            elif (what, name) == ("remove", JOURNAL):
                last += 1
                kept.append(disk.now())
            self.allowed.append((first, last))
        self.allowed[-1] = (last, last)
        assert disk.now() == content(folder / "lab"), f"{text}: not all is on record"
        self.steps = []
        for files in kept if len(kept) > 1 else []:
            with self.fresh(folder) as place:
                self.steps.append(self.met(place, files))

    def left(self, point, turn, forgets=False):
        chance = random.Random(f"{SEED} {self.number} {point} {turn}")
        return lost(self.files, self.record[:point], chance, forgets)

    def met(self, place, files):
        """The rows of a lab that has these files; what the program does with them is on record."""
        for name in content(place / "lab"):
            (place / "lab" / name).unlink()
        for name, data in files.items():
            (place / "lab" / name).write_bytes(data)
        (place / "trace").write_bytes(b"")
        for text in CHECKS:
            done, _ = run(place, text, trace=place / "trace")
            assert (done.returncode, done.stderr) == (0, ""), done
            assert text != "lab check" or done.stdout == "true\n", done
        return rows(place / "lab")

    def check(self, place, point, **case):
        """Starts the program with what is left, and again with what is left when it loses power.
        Returns which state was met."""
        first, last = self.allowed[point]
        files, chance = self.left(point, **case), random.Random(f"{SEED} {point} {case}")
        for _ in range(2):
            met = self.met(place, files)
            assert met in self.steps, "half a state"
            assert met in self.steps[first:last + 1], f"not after {first} to {last} transactions"
            record = list(records(place / "trace", place / "lab"))
            again = lost(files, record[:chance.randrange(len(record) + 1)], chance)
            if again == files:
                break
            files = again
        before, *_, after = self.steps
        return "before" if met == before else "after" if met == after else "between"


def states(lines, count, **how):
    """Cases with as many different states as are wanted."""
    points = [(line, point) for line in lines for point in range(len(line.record) + 1)]
    CHANCE.shuffle(points)
    seen, cases = set(), {}
    for turn in itertools.count():
        for line, point in points:
            if len(seen) == count:
                return list(cases.values())
            case = {"point": point, "turn": turn, **how}
            files = hash(frozenset(line.left(**case).items()))
            seen.add(files)
            # At another point the same files may have to be another state.
            cases.setdefault((line, line.allowed[point], files), (line, case))


with tempfile.TemporaryDirectory() as folder:
    top = pathlib.Path(folder)
    (top / "new" / "lab").mkdir(parents=True)
    every = [Recorded(top / "new", "lab host add --name host2", 0), *prepare(top, Recorded)]
    every = [line for line in every if line.steps]
    calls = sum(len(line.record) for line in every)
    print(f"seed {SEED}: {len(every)} lines, {calls} calls", flush=True)
    wrong = judge(top, f"{STATES} states", states(every, STATES))
    forgotten = judge(top, "nothing synced", states(every, max(50, STATES // 20), forgets=True))
    sys.exit("\n".join(wrong[:20]) or (0 if forgotten else "a lab is sound without any sync"))
