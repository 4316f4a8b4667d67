"""Validates what `zon check --format sarif` prints: sarif.py ZON SCHEMA, in the folder of the examples."""

import json
import subprocess
import sys

try:
    import jsonschema
except ImportError:
    print("SKIPPED: the Python package jsonschema is not installed")
    sys.exit()

zon, schema_name = sys.argv[1:]
with open(schema_name, encoding="utf-8") as file:
    schema = json.load(file)
BYTES = b"[A] {\xe4}\n k = 1 k = 2 l = 3 \n[B\n"
for files in (["harbour-plain.zon"], ["harbour.zon", "harbour-faulty.zon", "nowhere.zon", "-"]):
    run = subprocess.run([zon, "check", "--format", "sarif", *files], input=BYTES,
                         stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
    jsonschema.validate(json.loads(run.stdout), schema)
