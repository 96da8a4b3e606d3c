"""Runs every command in one batch and holds each result against a JSON Schema that is made from
what the command declares. Takes the folder of the programs."""

import json
import os
import pathlib
import subprocess
import sys
import tempfile

import jsonschema

PROGRAM = os.path.join(sys.argv[1], "autocli")
LINES = (pathlib.Path(__file__).parent / "every-command.batch").read_text()
NAMES = {"string": "string", "int": "integer", "bool": "boolean"}


def run(*words, host="host1", text=None):
    environment = os.environ | {"KOREL_LAB_HOST": host}
    return subprocess.run([PROGRAM, *words], input=text, env=environment, text=True,
                          capture_output=True, check=False)


def answer(*words, **keywords):
    return json.loads(run("--formatter", "json", *words, **keywords).stdout)["result"]


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
        yield path, schema(node["output"])
    for child in node.get("children", []):
        yield from commands(child, f"{path} {child['name']}".strip())


with tempfile.TemporaryDirectory() as folder:
    os.environ["KOREL_LAB"] = folder + "/lab.db"
    for host in ("host2", "host3"):
        run("lab", "host", "add", "--name", host)
    run("korel", "cluster", "new", host="host2")
    cluster = answer("lab", "cluster", "list")[0]["UUID"]
    run("korel", "cluster", "join", "-u", cluster, host="host3")
    batch = run("batch", "-", "--keep-going", text=LINES.replace("CLUSTER", cluster))

    schemas = dict(commands(json.loads(run("--describe").stdout), ""))
    unmet = set(schemas)
    faults = [batch.stderr] if batch.stderr else []
    for document in map(json.loads, batch.stdout.splitlines()):
        if not document["ok"]:
            faults.append(f"line {document['line']}: {document['errors']}")
            continue
        unmet.discard(document["command"])
        validator = jsonschema.Draft7Validator(schemas[document["command"]])
        for error in validator.iter_errors(document["result"]):
            faults.append(f"line {document['line']}, {document['command']}: {error.message}")
    faults += [f"never ran: {path}" for path in sorted(unmet)]
    print("\n".join(faults) or f"{len(schemas)} commands answered as declared")
    sys.exit(1 if faults else 0)
