#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Whether docs/fru.schema.json accepts what fru export prints, and refuses what fru create refuses.

  schema.py SOURCE-FOLDER SCRATCH-FOLDER IMAGE-FOLDER... -- COMMAND...

Ends with 77 where the module jsonschema is not installed.
"""
import json
import pathlib
import subprocess
import sys

try:
    from jsonschema import Draft202012Validator
except ImportError:
    print("the module jsonschema is not installed")
    sys.exit(77)

# Each is refused by fru create as well.
WRONG = [
    [],
    {"bord": {}},
    {"size": 7},
    {"size": "64"},
    {"fill": 1},
    {"order": ["bord"]},
    {"order": ["board", "board"]},
    {"internal": "0"},
    {"internal": "xy"},
    {"internal": ""},
    {"board": None},
    {"board": {"serail": "SN1"}},
    {"board": {"serial": 4711}},
    {"board": {"serial": {"value": "AB"}}},
    {"board": {"serial": {"value": "AB", "coding": "8-bit"}}},
    {"board": {"serial": {"value": "AB", "bytes": "4142", "coding": "text"}}},
    {"board": {"custom": "AB"}},
    {"board": {"custom": [None]}},
    {"board": {"date": 0}},
    {"board": {"size": 12}},
    {"chassis": {"type": 256}},
    {"chassis": {"name": "AB"}},
    {"product": {"language": -1}},
    {"multirecords": {}},
    {"multirecords": [{}]},
    {"multirecords": [{"type": 192}]},
    {"multirecords": [{"type": 256, "data": ""}]},
    {"multirecords": [{"record": "oem"}]},
    {"multirecords": [{"record": "dc-output", "ouput": 1}]},
    {"multirecords": [{"record": "dc-output", "standby": 1}]},
    {"multirecords": [{"record": "dc-output", "ripple": None}]},
    {"multirecords": [{"record": "dc-output", "output": [1]}]},
    {"multirecords": [{"record": "carrier", "site-count": 1, "site0": 1}]},
]

# Each is created as well.
RIGHT = [
    {},
    {"$schema": "fru.schema.json", "size": 256, "fill": 255, "order": ["board", "internal"]},
    {"internal": "0x01, 02 03", "board": {"serial": "SN1", "date": "now", "language": 25}},
    {"board": {"file-id": None, "part-number": {"bytes": "41 42", "coding": "text"}}},
    {"chassis": {"type": "Rack Mount Chassis", "unused": "01", "size": 40, "custom": ["AB"]}},
    {"multirecords": [{"record": "power-supply", "peak-va": None, "hot-swap": True}]},
    {"multirecords": [{"record": "dc-output", "nominal-voltage": 12.5, "max-current": "5 mA"}]},
    {"multirecords": [{"record": "carrier", "site-count": 1, "site1": 1}]},
]


def main():
    source = pathlib.Path(sys.argv[1])
    scratch = pathlib.Path(sys.argv[2])
    folders = sys.argv[3 : sys.argv.index("--")]
    command = sys.argv[sys.argv.index("--") + 1 :]
    schema = json.loads((source / "docs/fru.schema.json").read_text())
    Draft202012Validator.check_schema(schema)
    validator = Draft202012Validator(schema)
    failures = []

    def creates(document):
        arguments = ["fru", "create", "--from", "-", "-o", str(scratch / "schema.image")]
        text = json.dumps(document)
        return subprocess.run(command + arguments, input=text, text=True, capture_output=True)

    exported = 0
    for folder in folders:
        for image in sorted(pathlib.Path(folder).glob("*.bin")):
            printed = subprocess.run(
                command + ["fru", "export", str(image)], capture_output=True, text=True
            ).stdout
            if printed:
                exported += 1
                for error in validator.iter_errors(json.loads(printed)):
                    failures.append(f"{image}: {error.json_path}: {error.message}")
    if exported < 5:
        failures.append(f"{exported} images were exported")
    for document in WRONG:
        if validator.is_valid(document):
            failures.append(f"accepted: {document}")
        if creates(document).returncode != 1:
            failures.append(f"created: {document}")
    for document in RIGHT:
        failures += [f"{document}: {error.message}" for error in validator.iter_errors(document)]
        outcome = creates(document)
        if outcome.returncode != 0:
            failures.append(f"{document}: {outcome.stderr}")
    print("\n".join(failures + [f"{exported} exported images"]))
    return 1 if failures else 0


sys.exit(main())
