"""Draws a lab with dot and finds every host, site, disk and arrow in the image.

picture.py BIN
"""

import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

from messages import Lab

SITES = {"host1": "east", "host2": 'a<b>&amp;"c\\N\\', "host3": "witness", "host4": "east"}
CACHE, DISK, SICK, LOOSE, FLASH = ("mpx.dkhba0:C0:T1:L0", "mpx.dkhba2:C0:T1:L0", "mpx.dkhba2:C0:T2:L0",
                                   "mpx.dkhba0:C0:T2:L0", "mpx.dkhba1:C0:T1:L0")
AGENT = "5291022a-ad03-df90-dd0f-b9f980cc005e"
# A stretched cluster of host1 to host3, whose datastore the client cluster of host4 mounts.
HOSTS = "".join(f"lab host add --name {host}\n" for host in list(SITES)[1:])
HOSTS += "".join(f"lab host set --name {host} --fault-domain '{site}'\n" for host, site in SITES.items())
LINES = f"""host2> korel cluster join -u OWN
host3> korel cluster join -u OWN -t -p east
host4> korel cluster new --client-mode
korel datastore add -n ds1 -u {AGENT}
host4> korel datastore add -n far -u {AGENT} -c OWN
korel cluster unicastagent add -t node -U true -a 10.0.0.2 -u NODE
korel cluster unicastagent add -a 10.0.0.9
korel storage add -s {CACHE} -d {DISK} -d {SICK}
host2> korel storage add -s {LOOSE} -d mpx.dkhba2:C0:T3:L0
korel storagepool add -d {FLASH}
lab disk set --device {SICK} --healthy false
host2> korel storage diskgroup unmount -s {LOOSE}
lab maintenance start
lab host reboot --name host2"""


def typed(lab, lines):
    for line in lines.splitlines():
        status, out = lab.type(line)
        assert status == 0, (line, out)
    return out


def drawn(dot):
    """The texts of the image, and what its arrows join."""
    svg = subprocess.run(["dot", "-Tsvg"], input=dot, capture_output=True, text=True, check=True)
    assert svg.stderr == "", svg.stderr
    name = "{http://www.w3.org/2000/svg}"
    texts, arrows = [], {}
    for group in ElementTree.fromstring(svg.stdout).iter(name + "g"):
        own = [text.text.replace("\u00a0", " ") for text in group.findall(f".//{name}text")]
        if group.get("class") == "edge":
            arrows[group.findtext(name + "title")] = " ".join(own)
        elif group.get("class") in ("node", "cluster"):
            texts += own
    return texts, arrows


with tempfile.TemporaryDirectory() as folder:
    lab = Lab(sys.argv[1], folder)
    bare = " --formatter csv --no-header --fields"
    typed(lab, HOSTS + "korel cluster new")
    own, = typed(lab, f"lab cluster list {bare} UUID").split()
    node = typed(lab, f"lab host list {bare} 'Node UUID'").split()[1]
    typed(lab, LINES.replace("OWN", own).replace("NODE", node))
    client, = set(typed(lab, f"lab cluster list {bare} UUID").split()) - {own}
    texts, arrows = drawn(typed(lab, "lab picture"))
expected = set(SITES) | {f"fault domain {site}" for site in SITES.values()} | {own, client}
expected |= {"stretched", "prefers fault domain east", "datastore ds1", "normal, in maintenance", "witness",
             f"disk group {CACHE}", "storage pool", f"disk group {LOOSE}, not mounted", "10.0.0.9"}
missing = expected - set(texts)
for disk, state in ((DISK, ""), (SICK, ", unhealthy"), (FLASH, "")):
    if not any(text.startswith(f"{disk}: ") and text.endswith("%" + state) for text in texts):
        missing.add(disk + state)
assert not missing, missing
assert arrows == {
    f"host host1->cluster {own}": "MASTER",
    f"host host2->cluster {own}": "not restored",
    f"host host3->cluster {own}": "WITNESS",
    f"host host4->cluster {client}": "AGENT",
    f"cluster {client}->cluster {own}": "mounts far",
    "host host1->host host2": "node agent 10.0.0.2",
    "host host1->address 10.0.0.9": "witness agent 10.0.0.9",
}, arrows
