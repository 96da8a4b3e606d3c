"""Draws where the time of `korel datastore list` goes: docs/performance.svg.

  picture.py BIN SVG [RUNS]

The kernel notes when each system call begins; some of them mark where one phase ends and the next
begins. Noting costs time as well, so that the sum is above what an undisturbed run takes."""

import collections
import os
import pathlib
import re
import statistics
import subprocess
import sys
import tempfile

BIN, SVG = sys.argv[1:3]
RUNS = int((sys.argv[3:] or [200])[0])

EVENT = re.compile(r"\s(?P<time>[\d.]+): +(?P<event>[\w:]+):(?P<rest>.*)")
CALL = re.compile(r"NR (\d+) \(([^)]*)\)")
# System calls by number: which of them begins a phase, given its arguments.
PHASES = [
    ("kernel and dynamic linker start the program", None),
    ("main: the plug-in folder is checked", lambda nr, args: nr == 72),
    ("korel.so and libkorelctl.so are loaded", lambda nr, args: nr == 257 and args[2] == 0x80000),
    ("58 commands are registered", lambda nr, args: nr == 262 and args[3] == 0x100),
    ("lab.so is loaded and registered", lambda nr, args: nr == 257 and args[2] == 0x80000),
    ("the lab is opened, its schema read", lambda nr, args: nr == 83),
    ("seven transactions", lambda nr, args: nr == 72 and args[1] == 6),
    ("the result is written", lambda nr, args: nr == 1),
    ("the process ends", lambda nr, args: nr == 231),
]


def phases_of(lines):
    """Milliseconds of each phase of one run."""
    starts = []
    for line in lines:
        found = EVENT.search(line)
        if not found:
            continue
        time = float(found["time"]) * 1e3
        if found["event"].endswith("exec"):
            starts = [time]
        elif found["event"].endswith("exit"):
            return [end - start for start, end in zip(starts, starts[1:] + [time])]
        elif starts and len(starts) < len(PHASES):
            number, arguments = CALL.search(found["rest"]).groups()
            arguments = [int(argument, 16) for argument in arguments.split(", ")]
            if PHASES[len(starts)][1](int(number), arguments):
                starts.append(time)
    return []
