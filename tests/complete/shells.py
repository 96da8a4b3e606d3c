#!/usr/bin/env python3
"""Completes words in a real shell with the keys that a person presses: shells.py BIN_FOLDER SHELL"""

import os
import pathlib
import subprocess
import sys
import tempfile

import pexpect

# How each begins, gets its prompt and its settings, and is taught to complete.
SHELLS = {
    "bash": (["bash", "--noprofile", "--norc", "-i"], "PS1='ready''> '",
             "bind 'set show-all-if-ambiguous on'; source <(autocli --completion bash)"),
    "zsh": (["zsh", "-f", "-i"], "PS1='ready''> '",
            "autoload -Uz compinit; compinit -u; source <(autocli --completion zsh)"),
    "fish": (["fish", "--no-config", "-i"], "function fish_prompt; echo -n 'ready''> '; end",
             "autocli --completion fish | source"),
}
TO_LINE_START = "\x01"

# What is typed, and what the last word of the line is to the program that gets it.
CASES = [
    ("autocli kor\t", "korel"),
    ("korel datas\tli\t", "list"),
    ("autocli lab try korel storage add --disks x --s\t", "--ssd"),
    ("autocli help korel datas\t", "datastore"),
    ("korel storage add --disks x --s\t", "--ssd"),
    ("korel datastore list --formatter js\t", "json"),
    ("korel datastore list --formatter=js\t", "--formatter=json"),
    ("korel storage add --ssd mpx.dkhba0:C0:T2\t", "mpx.dkhba0:C0:T2:L0"),
    ("korel storage add --ssd mpx.dkhba0:C0:T2:\t", "mpx.dkhba0:C0:T2:L0"),
    ("korel storage add --ssd=mpx.dkhba0:C0:T2\t", "--ssd=mpx.dkhba0:C0:T2:L0"),
    ("korel storage add --ssd 'mpx.dkhba0:C0:T2\t", "mpx.dkhba0:C0:T2:L0"),
    ("korel storage add -d mpx.dkhba1:C0:T1:L0 -d mpx.dkhba1:\t", "mpx.dkhba1:C0:T2:L0"),
    ("korel datastore list --fields User\t", "User Friendly Name"),
    ("korel datastore list --fields User\\ F\t", "User Friendly Name"),
    ("korel storage add -d 'mpx.dkhba1:C0:T2:L0' -d mpx.dkhba1:\t", "mpx.dkhba1:C0:T1:L0"),
    ('korel datastore list --fields "Default,User F\t', "Default,User Friendly Name"),
    ("korel datastore list --fields=Default,Clu\t", "--fields=Default,Cluster UUID"),
    # HOME is put in. No blank follows a folder, or the rest would be a word of its own.
    ("autocli lab init --inventory HOME/two\tho\t", "HOME/two words/hosts.json"),
    ("autocli lab init --inventory=HOME/two\\ wor\tho\t", "--inventory=HOME/two words/hosts.json"),
    ("korel policy setdefault --policy copies=2,stripes=1,reserved-percent=1\t",
     "copies=2,stripes=1,reserved-percent=100,checksum=on"),
    ("korel policy setdefault --policy=copies=2,stripes=1,reserved-percent=1\t",
     "--policy=copies=2,stripes=1,reserved-percent=100,checksum=on"),
]


def main(folder, name):
    with tempfile.TemporaryDirectory() as home:
        program, words = pathlib.Path(home, "last-word"), pathlib.Path(home, "two words")
        program.write_text('#!/bin/sh\nfor word; do :; done\nprintf "[[%s]]\\n" "$word"\n')
        program.chmod(0o700)
        words.mkdir()
        for file in ("hosts.json", "labs.json"):
            (words / file).touch()
        environment = {"PATH": f"{folder}:{home}:/usr/bin:/bin", "HOME": home, "TERM": "xterm",
                       "LC_ALL": "C.UTF-8", "KOREL_LAB": home + "/lab.db",
                       "AUTOCLI_COMPLETE_MS": "60000"}
        environment |= {key: value for key, value in os.environ.items() if "SAN_OPTIONS" in key}

        def korel(*words):
            return subprocess.run([folder + "/korel", *words], env=environment, check=True,
                                  capture_output=True, text=True).stdout

        korel("cluster", "new")
        first = korel("datastore", "list", "--formatter", "csv", "--fields", "Datastore UUID",
                      "--no-header")[0]
        # A shell inserts what all values begin with before it lists them.
        uuid = ("1" if first != "1" else "2") + "291022a-ad03-df90-dd0f-b9f980cc005e"
        korel("datastore", "add", "--name", "ds1", "--uuid", uuid)
        command, prompt, script = SHELLS[name]
        shell = pexpect.spawn(command[0], command[1:], env=environment, encoding="utf-8",
                              timeout=120, dimensions=(50, 200))
        shell.delaybeforesend = None
        for line in (prompt, script):
            shell.sendline(line)
            shell.expect_exact("ready> ")
        failed = 0
        cases = [tuple(text.replace("HOME", home) for text in case) for case in CASES]
        for keys, expected in cases + [(f"korel datastore remove -u {uuid[:8]}\t", uuid)]:
            # What stands on the line then becomes the words of a program that shows the last one.
            shell.send(keys + TO_LINE_START + "last-word \r")
            shell.expect(r"\[\[(.*?)\]\]")
            word = shell.match[1]
            shell.expect_exact("ready> ")
            if word != expected:
                failed += 1
                print(f"{name}: {keys!r} came to {word!r} instead of {expected!r}")
        shell.send("korel datastore name get -u \t")
        shell.expect_exact("ds1")
        return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
