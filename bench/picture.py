"""Draws where the time of `korel datastore list` goes, as medians of many runs.

  picture.py BIN SVG [RUNS]

The kernel notes when each system call begins; some of them mark where one phase ends and the next
begins. Noting takes time as well, and how the kernel takes the process down is not seen."""

import os
import pathlib
import re
import statistics
import subprocess
import sys
import tempfile

BIN, SVG = sys.argv[1:3]
RUNS = int((sys.argv[3:] or [200])[0])

LINE = re.compile(r" ([\d.]+): +(\S+): (?:NR (\d+) \((.*)\))?")
FCNTL, MUNMAP, MKDIR, WRITE, EXIT, OPENAT, NEWFSTATAT = 72, 11, 83, 1, 231, 257, 262
F_SETLK, O_CLOEXEC, AT_SYMLINK_NOFOLLOW = 6, 0x80000, 0x100

# What begins a phase: a system call, an argument's place and value, and how many of them there are
# until then, from the phase before on.
PHASES = [
    ("the kernel and ld.so start the program", None),
    ("the plug-in folder and korel.so are checked", (FCNTL, 1, 1, 1)),
    ("korel.so and libkorelctl.so are loaded", (OPENAT, 2, O_CLOEXEC, 1)),
    ("commands are registered", (MUNMAP, 0, None, 1)),
    ("lab.so is checked, loaded and registered", (NEWFSTATAT, 3, AT_SYMLINK_NOFOLLOW, 1)),
    ("the lab is opened and its schema read", (MKDIR, 0, None, 1)),
    ("seven transactions", (FCNTL, 1, F_SETLK, 5)),
    ("the result is written", (WRITE, 0, None, 1)),
    ("the process says that it is done", (EXIT, 0, None, 1)),
]
COLORS = ["#8c96a8", "#b7a16b", "#5b7fb4", "#3f9d8f", "#7ba7d9", "#c2723d", "#d99a5b", "#6aa84f",
          "#999999"]


def run(lab):
    """Milliseconds of each phase of one run."""
    events = lab.with_name("events")
    environment = {**os.environ, "KOREL_LAB": str(lab)}
    subprocess.run(["perf", "record", "-q", "-o", events, "-e", "raw_syscalls:sys_enter", "-e",
                    "sched:sched_process_exec", "-e", "sched:sched_process_exit",
                    f"{BIN}/korel", "datastore", "list"],
                   env=environment, check=True, stdout=subprocess.DEVNULL)
    text = subprocess.run(["perf", "script", "-i", events], check=True, capture_output=True,
                          text=True).stdout
    starts, met = [], 0
    for line in text.splitlines():
        time, event, number, arguments = LINE.search(line).groups()
        time = float(time) * 1e3
        if event == "sched:sched_process_exec":
            starts = [time]
        elif event == "sched:sched_process_exit":
            starts.append(time)
        elif starts and len(starts) < len(PHASES):
            call, place, value, count = PHASES[len(starts)][1]
            given = int(arguments.split(", ")[place], 16)
            met += int(number) == call and value in (None, given)
            if met == count:
                starts.append(time)
                met = 0
    assert len(starts) == len(PHASES) + 1, f"{len(starts)} marks"
    return [end - start for start, end in zip(starts, starts[1:])]


def picture(phases):
    """A bar of all phases, and a line for each."""
    whole, width = sum(phases), 860
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width + 40} '
           f'{90 + 22 * len(phases)}" font-family="sans-serif" font-size="13">',
           '<rect width="100%" height="100%" fill="white"/>',
           f'<text x="20" y="24" font-weight="bold">korel datastore list: {whole:.2f} ms</text>']
    left = 20.0
    for i, (time, (name, _), color) in enumerate(zip(phases, PHASES, COLORS)):
        share = time / whole * width
        y = 92 + 22 * i
        out += [f'<rect x="{left:.1f}" y="36" width="{share:.1f}" height="34" fill="{color}"/>',
                f'<rect x="20" y="{y - 11}" width="12" height="12" fill="{color}"/>',
                f'<text x="40" y="{y}">{name}</text>',
                f'<text x="420" y="{y}" text-anchor="end">{time:.3f} ms</text>',
                f'<text x="480" y="{y}" text-anchor="end">{time / whole:.0%}</text>']
        left += share
    return "\n".join(out + ["</svg>", ""])


with tempfile.TemporaryDirectory() as name:
    database = pathlib.Path(name, "lab.db")
    subprocess.run([f"{BIN}/korel", "cluster", "new"], check=True, stdout=subprocess.DEVNULL,
                   env={**os.environ, "KOREL_LAB": str(database)})
    runs = [run(database) for _ in range(RUNS)]
    medians = [statistics.median(phase) for phase in zip(*runs)]
    pathlib.Path(SVG).write_text(picture(medians))
    for time, (name, _) in zip(medians, PHASES):
        print(f"{time:7.3f} ms  {name}")
