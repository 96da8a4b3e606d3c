"""Kills every command before each call that changes a file, lets each of these calls fail, and each
allocation of the program's own tools and of a command for each noun. docs/testing.md says what has
to hold after that.

  crash.py BIN SHIM [kills=COUNT] [failures=COUNT] [allocations=COUNT] [seed=SEED]

COUNT is how many cases to try, or "all". Of fewer than there are the seed picks; kills beyond all
come again, and the next command is killed too."""

import errno
import pathlib
import re
import sys
import tempfile

from lines import CHANCE, SEED, WANTED, Line, judge, prepare, rows, run

KILLING = [{"torn": torn} for torn in (0, 1)]
FAILING = [{"error": error, "onward": onward, "torn": onward} for onward in (0, 1)
           for error in (errno.ENOSPC, errno.EIO, errno.EROFS)]
STARVING = [{"memory": 1, "error": errno.ENOMEM, "onward": onward} for onward in (0, 1)]
TOOLS = ["--version", "--help", "help korel storage", "--plugins", "--completion bash",
         "--complete korel datastore remove -u ''", "batch {0}/batch",
         "korel datastore list --formatter json"]


def content(lab):
    return {path.relative_to(lab): (path.stat().st_mode, path.is_file() and path.read_bytes())
            for path in lab.rglob("*")}


class Struck(Line):
    """What a line does when it is left alone, and when it is struck."""

    def __init__(self, folder, text, number):
        super().__init__(folder, text, number)
        self.calls, steps, *reached = self.counts
        self.output, self.content = self.done.stdout, content(self.lab)
        self.states = [rows(self.lab), rows(folder / "lab")]
        # What is there after a step is there when the next call is not made any more.
        for at in set(reached[:steps]) - {self.calls}:
            with self.fresh(folder) as place:
                run(place, text, number, at=at + 1)
                self.states.append(rows(place / "lab"))

    def check(self, place, again=0, **strike):
        """Strikes. Returns which state was met."""
        done, (made, *_) = run(place, self.text, self.number, **strike)
        errors = [line.split(" ")[0] for line in done.stderr.splitlines()]
        before, after, *_ = self.states
        if "memory" in strike:
            failed = "error:" in errors or '"ok":false' in done.stdout
            # A plug-in that could not be loaded is missing in what is said of all of them.
            output, missing = re.subn(r'(?<="errors":\[)\{"kind":"plugin".*(?=\]\}$)', "", done.stdout)
            missing += "warning: plug-in" in done.stderr
            varies = self.text.startswith(("--complete ", "-", "help") if missing else "--complete ")
            assert done.returncode in (range(1, 5) if failed else [0]), done
            assert failed or set(errors) <= {"warning:"} and (varies or output == self.output), done
        else:
            allowed = {0: [], 1: ["error:"]} if "error" in strike else {-9: []}
            assert allowed.get(done.returncode) == errors, done
        if not again and content(place / "lab") == self.content:
            assert done.returncode or before == after, ("nothing done", done)
            return "before"
        if again:
            run(place, "lab show", at=again)
        following, _ = run(place, "lab show")
        assert (following.returncode, following.stderr) == (0, ""), following
        met = rows(place / "lab")
        assert met in (self.states if done.returncode else [after]), ("half a state", done)
        repeated, _ = run(place, self.text, self.number)
        assert repeated.returncode in (0, 1), repeated
        assert met != before or rows(place / "lab") == after, ("repeated in vain", repeated)
        return "before" if met == before else "after" if met == after else "between"


def calls(folder, lines):
    return [(line, at) for line in lines if line.text not in TOOLS for at in range(line.calls)]


def allocations(folder, lines):
    """Those of the tools and of the first line for each noun, one that changes something if there
    is one; and one more of each, which is not reached."""
    lines = sorted(reversed(lines), key=lambda line: line.states[0] != line.states[1])
    chosen = {line.text if line.text in TOOLS else tuple(line.text.split()[:2]): line
              for line in lines}.values()
    for line in chosen:
        with line.fresh(folder) as place:
            _, (count, *_) = run(place, line.text, line.number, memory=1)
            yield from ((line, at) for at in range(count + 1))


def strike(folder, name, places, kinds):
    """Tries as many cases as are wanted; returns what went wrong."""
    cases = [(line, {"at": at + 1, **kind}) for line, at in places for kind in kinds]
    count = len(cases) if WANTED[name] == "all" else int(WANTED[name])
    CHANCE.shuffle(cases)
    more = [(line, {"again": CHANCE.randrange(1, 12), **case})
            for line, case in CHANCE.choices(cases, k=max(0, count - len(cases)))]
    tried = f"{count} {name} of {len(cases)} cases, {len({line for line, _ in cases})} lines"
    return judge(folder, tried, cases[:count] + more)


with tempfile.TemporaryDirectory() as name:
    top = pathlib.Path(name)
    (top / "batch").write_text("korel datastore list\nkorel faultdomain set -n fd8\n")
    TOOLS[:] = [tool.format(top) for tool in TOOLS] if "allocations" in WANTED else []
    every = prepare(top, Struck, TOOLS)
    print(f"seed {SEED}: {len(every)} lines, {sum(line.calls for line in every)} calls", flush=True)
    plans = {"kills": (calls, KILLING), "failures": (calls, FAILING),
             "allocations": (allocations, STARVING)}
    wrong = [fault for kind in WANTED
             for fault in strike(top, kind, plans[kind][0](top, every), plans[kind][1])]
    sys.exit("\n".join(wrong[:20]) or 0)
