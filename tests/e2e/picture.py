"""Draws a lab with dot and finds every host, site, disk and arrow in the image.

picture.py BIN
"""

import os
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

SITES = {"host1": "east", "host2": 'a<b>&amp;"c\\N\\', "host3": "witness", "host4": "east"}
CACHE, DISK, SICK, LOOSE, FLASH = ("mpx.dkhba0:C0:T1:L0", "mpx.dkhba2:C0:T1:L0", "mpx.dkhba2:C0:T2:L0",
                                   "mpx.dkhba0:C0:T2:L0", "mpx.dkhba1:C0:T1:L0")
AGENT = "5291022a-ad03-df90-dd0f-b9f980cc005e"


class Lab:
    def __init__(self, bin_folder, folder):
        self.program = str(Path(bin_folder, "autocli").resolve())
        self.environment = {"KOREL_LAB": f"{folder}/lab.db", "AUTOCLI_SHELL_START": "no"}
        self.environment |= {key: value for key, value in os.environ.items() if key.startswith("ASAN_")}

    def run(self, *words, host="host1"):
        done = subprocess.run([self.program, *words], env=self.environment | {"KOREL_LAB_HOST": host},
                              capture_output=True, text=True, check=False)
        assert done.returncode == 0, (words, done.stderr)
        return done.stdout

    def clusters(self):
        return self.run("lab", "cluster", "list", "--formatter", "csv", "--fields", "UUID", "--no-header").split()


def make(lab):
    """A stretched cluster of host1 to host3, whose datastore the client cluster of host4 mounts."""
    for host in list(SITES)[1:]:
        lab.run("lab", "host", "add", "--name", host)
    for host, site in SITES.items():
        lab.run("lab", "host", "set", "--name", host, "--fault-domain", site)
    lab.run("korel", "cluster", "new")
    (own,) = lab.clusters()
    lab.run("korel", "cluster", "join", "-u", own, host="host2")
    lab.run("korel", "cluster", "join", "-u", own, "-t", "-p", "east", host="host3")
    lab.run("korel", "cluster", "new", "--client-mode", host="host4")
    (client,) = set(lab.clusters()) - {own}
    lab.run("korel", "datastore", "add", "-n", "ds1", "-u", AGENT)
    lab.run("korel", "datastore", "add", "-n", "far", "-u", AGENT, "-c", own, host="host4")
    nodes = lab.run("lab", "host", "list", "--formatter", "csv", "--fields", "Node UUID", "--no-header").split()
    lab.run("korel", "cluster", "unicastagent", "add", "-t", "node", "-U", "true", "-a", "10.0.0.2", "-u", nodes[1])
    lab.run("korel", "cluster", "unicastagent", "add", "-a", "10.0.0.9")
    lab.run("korel", "storage", "add", "-s", CACHE, "-d", DISK, "-d", SICK)
    lab.run("korel", "storage", "add", "-s", LOOSE, "-d", "mpx.dkhba2:C0:T3:L0", host="host2")
    lab.run("korel", "storagepool", "add", "-d", FLASH)
    lab.run("lab", "disk", "set", "--device", SICK, "--healthy", "false")
    lab.run("korel", "storage", "diskgroup", "unmount", "-s", LOOSE, host="host2")
    lab.run("lab", "maintenance", "start")
    lab.run("lab", "host", "reboot", "--name", "host2")
    return own, client


def drawn(dot):
    """The texts of the image, and what its arrows join."""
    svg = subprocess.run(["dot", "-Tsvg"], input=dot, capture_output=True, text=True, check=True)
    assert svg.stderr == "", svg.stderr
    name = "{http://www.w3.org/2000/svg}"
    groups = ElementTree.fromstring(svg.stdout).iter(name + "g")
    texts, arrows = [], {}
    for group in groups:
        title = group.findtext(name + "title")
        own = [text.text.replace("\u00a0", " ") for text in group.findall(f".//{name}text")]
        if group.get("class") == "edge":
            arrows[title] = " ".join(own)
        elif group.get("class") in ("node", "cluster"):
            texts += own
    return texts, arrows


def main():
    with tempfile.TemporaryDirectory() as folder:
        lab = Lab(sys.argv[1], folder)
        own, client = make(lab)
        texts, arrows = drawn(lab.run("lab", "picture"))
    expected = set(SITES) | {f"fault domain {site}" for site in SITES.values()} | {own, client}
    expected |= {"stretched", "prefers fault domain east", "datastore ds1", "normal, in maintenance", "witness",
                 f"disk group {CACHE}", "storage pool", f"disk group {LOOSE}, not mounted", "10.0.0.9"}
    missing = [text for text in expected if text not in texts]
    for disk, state in ((DISK, ""), (SICK, ", unhealthy"), (FLASH, "")):
        if not any(text.startswith(f"{disk}: ") and text.endswith("%" + state) for text in texts):
            missing.append(disk + state)
    wanted = {
        f"host host1->cluster {own}": "MASTER",
        f"host host2->cluster {own}": "not restored",
        f"host host3->cluster {own}": "WITNESS",
        f"host host4->cluster {client}": "AGENT",
        f"cluster {client}->cluster {own}": "mounts far",
        "host host1->host host2": "node agent 10.0.0.2",
        "host host1->address 10.0.0.9": "witness agent 10.0.0.9",
    }
    for problem in missing:
        print("the image lacks", problem)
    if arrows != wanted:
        print("the arrows are", arrows, "and not", wanted)
    sys.exit(1 if missing or arrows != wanted else 0)


if __name__ == "__main__":
    main()
