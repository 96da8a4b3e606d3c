"""Runs every command in one batch and holds each result against a JSON Schema that is made from
what the command declares. Takes the folder of the programs."""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

import jsonschema

PROGRAM = os.path.join(sys.argv[1], "autocli")
LINES = (pathlib.Path(__file__).parent / "every-command.batch").read_text()
COMPANIONS = [json.loads(file.read_text()) for file in
              pathlib.Path(sys.argv[1], "../lib/autocli/plugins").glob("*.json")]
NAMES = {"string": "string", "int": "integer", "bool": "boolean"}


def run(*words, host="host1", text=None):
    environment = os.environ | {"KOREL_LAB_HOST": host}
    return subprocess.run([PROGRAM, *words], input=text, env=environment, text=True,
                          capture_output=True, check=False)


def schema(output):
    """A field may be unset, a result as a whole may not."""
    if output["kind"] == "list":
        return {"type": "array", "items": schema(output["of"]) if "of" in output else {}}
    if output["kind"] != "struct":
        return {"type": NAMES[output["kind"]]}
    fields = {f["name"]: {"anyOf": [schema(f), {"type": "null"}]} for f in output["fields"]}
    return {"type": "object", "properties": fields, "required": list(fields),
            "additionalProperties": False}


def commands(node, path):
    if node["kind"] == "command":
        yield path, node
    for child in node.get("children", []):
        yield from commands(child, f"{path} {child['name']}".strip())


with tempfile.TemporaryDirectory() as folder:
    os.environ["KOREL_LAB"] = folder + "/lab.db"
    os.chdir(folder)
    for host in ("host2", "host3"):
        run("lab", "host", "add", "--name", host)
    run("korel", "cluster", "new", host="host2")
    clusters = json.loads(run("--formatter", "json", "lab", "cluster", "list").stdout)["result"]
    cluster = clusters[0]["UUID"]
    run("korel", "cluster", "join", "-u", cluster, host="host3")

    tree = dict(commands(json.loads(run("--describe").stdout), ""))
    # Commands that no line runs and that take no words.
    alone = [path for path, node in tree.items()
             if not node["parameters"] and not re.search(f"^{path}$", LINES, re.M)]
    text = "\n".join([LINES.replace("CLUSTER", cluster), *alone, ""])
    batch = run("batch", "-", "--keep-going", text=text)

    options = {f"{path} --{option['long']}" for path, node in tree.items()
               for option in node["parameters"]}
    faults = [batch.stderr] if batch.stderr else []
    # The program says nothing of top-level namespaces that it does not have.
    notes = [(path, command) for companion in COMPANIONS for path, command in companion.items()]
    faults += [f"a companion names {path}" for path, _ in notes if path not in tree]
    completed = {f"{path} --{name}" for path, command in notes
                 for name, option in command.get("options", {}).items() if "values" in option}
    faults += [f"no command knows values of {option}" for option in sorted(options - completed)
               if option.endswith(("--cluster-uuid", "--device", "--disk", "--disks", "--ssd"))]
    unmet = set(tree)
    for document in map(json.loads, batch.stdout.splitlines()):
        if not document["ok"]:
            faults.append(f"line {document['line']}: {document['errors']}")
            continue
        unmet.discard(document["command"])
        validator = jsonschema.Draft7Validator(schema(tree[document["command"]]["output"]))
        for error in validator.iter_errors(document["result"]):
            faults.append(f"line {document['line']}, {document['command']}: {error.message}")
    faults += [f"no line of tests/e2e/every-command.batch runs it: {path}" for path in sorted(unmet)]
    print("\n".join(faults) or f"{len(tree)} commands answered as declared")
    sys.exit(1 if faults else 0)
