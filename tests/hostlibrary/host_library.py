"""Runs the commands against a host control library that has just what every one has: it must be
enough to load the plug-in, and what it lacks is an error or done without.

  host_library.py BUILD LIBRARY REDIRECT"""

import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

BUILD, LIBRARY, REDIRECT = map(pathlib.Path, sys.argv[1:])
LINES = (pathlib.Path(__file__).parents[1] / "e2e/every-command.batch").read_text().splitlines()
OUR_OWN = {"policy cleardefault": "clear default policy: {} clear the default policy of one class",
           "policy setdefault": "set default policy: {} set default policies",
           "storagepool add": "add storage pool disk: {} add storage pool disks",
           "storagepool remove": "remove storage pool disk: {} remove storage pool disks"}


def lay_out(prefix):
    plugins = prefix / "lib/autocli/plugins"
    for folder in (prefix / "bin", plugins):
        folder.mkdir(parents=True)
    plugins.chmod(0o755)
    for path in (LIBRARY, *(BUILD / "lib").glob("libautocli.so*")):
        shutil.copy(path, prefix / "lib")
    shutil.copy(BUILD / "bin/autocli", prefix / "bin")
    shutil.copy(BUILD / "lib/autocli/plugins/korel.so", plugins)


def commands(node, path=""):
    if node["kind"] == "command":
        yield path
    for child in node.get("children", []):
        yield from commands(child, f"{path} {child['name']}".strip())


with tempfile.TemporaryDirectory() as name:
    folder = pathlib.Path(name)
    lay_out(folder)

    def run(line, **settings):
        done = subprocess.run([folder / "bin/autocli", *line.split()], text=True, check=False,
                              capture_output=True, env=os.environ | settings)
        return done.returncode, done.stdout, done.stderr

    def expect(status, out, err, line, **settings):
        got = run(line, **settings)
        assert got == (status, out, err), (line, settings, got)

    # Help and descriptions need no host: not one of its operations has to work.
    pages = folder / "pages"
    pages.mkdir()
    expect(0, "", "", f"--reference markdown {pages}", KORELCTL_FAILS="*")
    assert (pages / "commands.md").stat().st_size > 30_000
    status, tree, errors = run("--describe", KORELCTL_FAILS="*")
    assert (status, errors) == (0, ""), errors
    paths = list(commands(json.loads(tree)))
    assert len(paths) == 58, paths
    for path in paths:
        status, text, errors = run(f"{path} --help", KORELCTL_FAILS="*")
        assert (status, errors) == (0, "") and f"usage: autocli {path}" in text, (path, errors)

    # Each command does its work or says why not. None of them breaks.
    typed = [line.replace("CLUSTER", "5291022a-ad03-df90-dd0f-b9f980cc0001")
             for line in LINES if line.startswith("korel ")]
    assert {path for path in paths if any(line.startswith(path) for line in typed)} == set(paths)
    cannot = "the host control library of this host cannot"
    for line in typed:
        own = next((path for path in OUR_OWN if line.startswith(f"korel {path} ")), None)
        if own:
            expect(1, "", f"error: Unable to {OUR_OWN[own].format(cannot)}\n", line)
        else:
            status, _, errors = run(line)
            assert status in (0, 1) and "cannot" not in errors, (line, status, errors)
        needs_host = not line.startswith("korel storage automode")
        status, _, errors = run(line, KORELCTL_FAILS="*")
        assert status == int(needs_host), (line, status, errors)
    expect(1, "", f"error: Unable to remove storage pool disk: {cannot} remove storage pool disks\n",
           "korel storagepool remove -u x")

    # The trace daemon's file lies where it always does.
    get, put = "korel trace get", "korel trace set -s 7"
    expect(1, "", "error: Error opening Korel trace config file for reading.\n", get)
    expect(1, "", "error: Error opening Korel Trace Config File for reading.\n", put)
    file = folder / "conf"
    file.write_text("KORELTRACED_ROTATE_FILE_SIZE=45\n# a comment\n")
    host = {"LD_PRELOAD": str(REDIRECT), "KORELTRACED_CONF": str(file)}
    expect(0, "true\n", "", put, **host)
    assert re.search("^KORELTRACED_ROTATE_FILE_SIZE=7$", file.read_text(), re.M), file.read_text()
    status, out, errors = run(get, **host)
    assert (status, errors) == (0, "") and "Maximum Trace File Size: 7 MB\n" in out, out + errors
