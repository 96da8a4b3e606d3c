#!/usr/bin/env python3
"""Types the commands that markdown pages show and compares what comes out with what they say.

    console.py [--write] BIN PAGE...

The lines "$ COMMAND" of a page's code blocks are typed into one bash per page, in an empty folder;
the lines below each are its output. A block "```sh FILE" is a file of that folder. UUIDs may be
others than on the page, each for the same one throughout, also in commands; times may be any.
--write puts what came out into the page instead.
"""
import os
import re
import subprocess
import sys
import tempfile

BLOCK = re.compile(r"^```(.*)\n((?:.*\n)*?)```$", re.M)
COMMAND = re.compile(r"^\$ ((?:.*\\\n)*.*)\n((?:(?!\$ ).*\n)*)", re.M)
UUID = re.compile(r"([0-9a-f]{8}(?:-[0-9a-f]{4}){3}-[0-9a-f]{12})")
TIME = re.compile(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(?:Z|[+-]\d\d:\d\d)")
END = "\036\n"


class Page:
    def __init__(self, text, programs, folder):
        names = {key: value for key, value in os.environ.items() if key.startswith("ASAN_")}
        names |= {"PATH": programs + ":/usr/bin:/bin", "HOME": folder, "LC_ALL": "C.UTF-8"}
        self.bash = subprocess.Popen(
            ["bash", "--noprofile", "--norc"], cwd=folder, env=names, text=True,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.folder, self.uuids, self.faults, self.commands = folder, {}, [], 0
        self.text = BLOCK.sub(self.walk, text)
        self.bash.communicate()

    def walk(self, block):
        if block[1].startswith("sh "):
            with open(os.path.join(self.folder, block[1][3:]), "w", encoding="utf-8") as file:
                file.write(block[2])
        return f"```{block[1]}\n{COMMAND.sub(self.check, block[2])}```"

    def check(self, found):
        self.commands += 1
        came = self.type(UUID.sub(lambda uuid: self.uuids.get(uuid[0], uuid[0]), found[1]))
        if self.is_same(found[2], came):
            return found[0]
        shown = {real: ours for ours, real in self.uuids.items()}
        came = UUID.sub(lambda uuid: shown.get(uuid[0], uuid[0]), came)
        self.faults.append(f"$ {found[1]}\n--- the page says\n{found[2]}--- but this came\n{came}")
        return f"$ {found[1]}\n{came}"

    def type(self, command):
        # The mark of the end leaves the command's status as it is.
        self.bash.stdin.write(command + "\ns=$?; printf '\\036\\n'; (exit $s)\n")
        self.bash.stdin.flush()
        output = ""
        while not output.endswith(END):
            output += self.bash.stdout.readline() or sys.exit("no shell any more: " + command)
        return output[:-len(END)]

    def is_same(self, said, came):
        said, came = (UUID.split(TIME.sub("TIME", text)) for text in (said, came))
        if said[::2] != came[::2]:
            return False
        pairs = zip(said[1::2], came[1::2])
        agrees = all(self.uuids.setdefault(ours, real) == real for ours, real in pairs)
        return agrees and len(set(self.uuids.values())) == len(self.uuids)


def main(arguments):
    write = arguments[0] == "--write"
    programs, *paths = arguments[write:]
    failed = False
    for path in paths:
        with open(path, encoding="utf-8") as file, tempfile.TemporaryDirectory() as folder:
            page = Page(file.read(), os.path.abspath(programs), folder)
        print("\n".join(page.faults + [f"{path}: {page.commands} commands"]))
        failed |= bool(page.faults) or page.commands == 0
        if page.faults and not write:
            print("brought up to date by: ./dev docs")
        if write:
            with open(path, "w", encoding="utf-8") as file:
                file.write(page.text)
    return failed and not write


sys.exit(main(sys.argv[1:]))
