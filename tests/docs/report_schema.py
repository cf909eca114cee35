#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Whether docs/report.schema.json accepts what report prints, and refuses what it does not.

  report_schema.py SOURCE-FOLDER SCRATCH-FOLDER COMMAND...

Ends with 77 where the module jsonschema is not installed.
"""
import copy
import json
import pathlib
import subprocess
import sys

try:
    from jsonschema import Draft202012Validator
except ImportError:
    print("the module jsonschema is not installed")
    sys.exit(77)


def changed(document, path, value):
    """A copy with another value; without the member for None."""
    copied = copy.deepcopy(document)
    at = copied
    for key in path[:-1]:
        at = at[key]
    if value is None:
        del at[path[-1]]
    else:
        at[path[-1]] = value
    return copied


# Where the schema says more than the type of a value.
WRONG = [
    (["version"], 2),
    (["format"], "report"),
    (["more"], 1),
    (["title"], None),
    (["verdict", "level"], "bad"),
    (["verdict", "reasons", 0, "kind"], "odd"),
    (["verdict", "reasons", 0, "severity"], "monitor"),
    (["inputs", 0, "problems"], ""),
    (["logs", 0, "severities"], []),
    (["asserted", 0, "row"], None),
    (["sensor_failures", 0, "severities"], {"monitor": 1}),
    (["events", "columns", "time", "type"], "u64"),
    (["events", "columns", "time", "data"], "not base64"),
    (["events", "columns", "record", "type"], "u8"),
    (["events", "columns", "slot"], None),
    (["events", "directions"], ["asserted", "deasserted"]),
    (["events", "blocks", 0, "image"], None),
    (["events", "fields", 0, "fields", 0, "bits"], [7]),
    (["events", "traces", 0, "kind"], "other"),
    (["sensors", 0, "readings"], None),
    (["fru", 0, "image"], "?"),
    (["memory", 0, "root"], 1),
]


def main():
    source = pathlib.Path(sys.argv[1])
    scratch = pathlib.Path(sys.argv[2])
    command = sys.argv[3:]
    schema = json.loads((source / "docs/report.schema.json").read_text())
    Draft202012Validator.check_schema(schema)
    validator = Draft202012Validator(schema)
    failures = []

    def document_of(*arguments):
        outcome = subprocess.run(
            command + ["report", *map(str, arguments), "--json"], capture_output=True, text=True
        )
        return json.loads(outcome.stdout)

    odd = scratch / "report-schema.odd"
    odd.write_bytes(bytes([1, 0xFF, 0]))
    board = source / "examples/board"
    documents = {
        "board": document_of(board),
        "part": document_of(board, "--since", "2026-11-20"),
        "files": document_of(source / "examples/data", odd, scratch / "missing"),
        "nothing": document_of(odd),
    }
    for name, document in documents.items():
        for error in validator.iter_errors(document):
            failures.append(f"{name}: {error.json_path}: {error.message[:200]}")
    for path, value in WRONG:
        if validator.is_valid(changed(documents["board"], path, value)):
            failures.append(f"accepted: {path} {value}")
    print("\n".join(failures + [f"{len(documents)} documents, {len(WRONG)} wrong ones"]))
    return 1 if failures else 0


sys.exit(main())
