#!/usr/bin/env python3
"""Runs the console blocks of markdown pages and compares what comes out with what stands there.

    console.py [--write] BIN PAGE...

A block with lines "$ COMMAND" is a console block: each command is typed into one bash per page, in
an empty folder, and the lines below it are its output. A block "```sh FILE" is a file of that
folder. UUIDs may be others than on the page, each for the same one throughout, and stand for
each other in commands; times may be any. --write puts what came out into the page instead.
"""
import os
import re
import subprocess
import sys
import tempfile

TOKEN = re.compile(r"([0-9a-f]{8}(?:-[0-9a-f]{4}){3}-[0-9a-f]{12}|"
                   r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(?:Z|[+-]\d\d:\d\d))")


class Shell:
    """A bash that is given one command after the other."""

    def __init__(self, folder, programs):
        names = {"PATH": programs + ":/usr/bin:/bin", "HOME": folder, "LC_ALL": "C.UTF-8"}
        names.update({k: v for k, v in os.environ.items() if k.startswith("ASAN_")})
        self.bash = subprocess.Popen(
            ["bash", "--noprofile", "--norc"], cwd=folder, env=names, text=True,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)

    def run(self, command):
        # The mark of the end leaves the command's status as it is.
        self.bash.stdin.write(command + "\ns=$?; printf '\\036\\n'; (exit $s)\n")
        self.bash.stdin.flush()
        output = []
        for line in self.bash.stdout:
            if line.endswith("\036\n"):
                return output + ([line[:-2]] if line != "\036\n" else [])
            output.append(line.rstrip("\n"))
        raise SystemExit("the shell ended behind: " + command)


class Page:
    def __init__(self, path, programs, folder):
        self.path, self.folder, self.shell = path, folder, Shell(folder, programs)
        self.real, self.faults, self.commands = {}, [], 0

    def matches(self, said, came):
        said, came = TOKEN.split(said), TOKEN.split(came)
        if said[::2] != came[::2]:
            return False
        for ours, theirs in zip(said[1::2], came[1::2]):
            if "T" not in ours and self.real.setdefault(ours, theirs) != theirs:
                return False
        return len(set(self.real.values())) == len(self.real)

    def on_page(self, text):
        shown = {theirs: ours for ours, theirs in self.real.items()}
        return TOKEN.sub(lambda found: shown.get(found[0], found[0]), text)

    def run(self, number, command, said):
        """Answers the lines that belong below the command."""
        self.commands += 1
        came = self.shell.run(TOKEN.sub(lambda found: self.real.get(found[0], found[0]), command))
        if self.matches("\n".join(said), "\n".join(came)):
            return said
        came = self.on_page("\n".join(came)).split("\n") if came else []
        self.faults.append(f"{self.path}:{number}: $ {command}\n" + "\n".join(
            ["--- the page says"] + said + ["--- but this came"] + came))
        self.matches("\n".join(came), "\n".join(came))
        return came

    def block(self, number, info, lines):
        words = info.split()
        if len(words) == 2 and words[0] == "sh":
            with open(os.path.join(self.folder, words[1]), "w", encoding="utf-8") as file:
                file.write("\n".join(lines) + "\n")
        if not any(line.startswith("$ ") for line in lines):
            return lines
        out = []
        while lines:
            size = 1
            while lines[size - 1].endswith("\\"):
                size += 1
            end = next((i for i in range(size, len(lines)) if lines[i].startswith("$ ")),
                       len(lines))
            out += lines[:size] + self.run(number + len(out), "\n".join(lines[:size])[2:],
                                           lines[size:end])
            lines = lines[end:]
        return out

    def walk(self):
        with open(self.path, encoding="utf-8") as file:
            rest, out = file.read().split("\n"), []
        while rest:
            line = rest.pop(0)
            out.append(line)
            if line.startswith("```"):
                end = rest.index("```")
                out += self.block(len(out) + 1, line[3:], rest[:end]) + ["```"]
                rest = rest[end + 1:]
        return "\n".join(out)


def main(arguments):
    write = arguments[0] == "--write"
    programs, *paths = arguments[write:]
    failed = False
    for path in paths:
        with tempfile.TemporaryDirectory() as folder:
            page = Page(path, os.path.abspath(programs), folder)
            text = page.walk()
        failed |= bool(page.faults) or page.commands == 0
        print("\n".join(page.faults + [f"{path}: {page.commands} commands"]))
        if write:
            with open(path, "w", encoding="utf-8") as file:
                file.write(text)
    return failed and not write


sys.exit(main(sys.argv[1:]))
