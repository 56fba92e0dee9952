"""Compares the schema with the findings, over good and bad documents.

Usage: schema_test.py COMMAND SCHEMA FOLDER...

A good document has no finding and agrees with the schema. A bad one is named by a kind of finding, which it has. What
the schema refuses has a finding; and it refuses every document with a finding of a kind that a schema can say.
"""

import json
import pathlib
import subprocess
import sys

import jsonschema

# Beyond a schema are what takes two places to see, or the text of the document itself.
BEYOND = {
    "json-fault", "empty-document", "repeated-key", "repeated-index", "repeated-name", "repeated-line", "crossing-edges",
    "empty-region", "empty-heights", "empty-line", "empty-name", "newer-version", "no-fields",
}


def findings_of(command, path):
    output = subprocess.run([command, "validate", "--json", str(path)], capture_output=True, text=True).stdout
    return json.loads(output)["findings"]


def agrees(validator, path):
    try:
        return validator.is_valid(json.loads(path.read_text(encoding="utf-8")))
    except json.JSONDecodeError:
        return False


def main(command, schema_path, folders):
    schema = json.loads(pathlib.Path(schema_path).read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    faults = []
    paths = [path for folder in folders for path in sorted(pathlib.Path(folder).glob("*.json"))]
    for path in paths:
        findings = findings_of(command, path)
        kinds = {finding["kind"] for finding in findings}
        is_valid = agrees(validator, path)
        if path.parent.name == "good" and (kinds or not is_valid):
            faults.append(f"{path}: is good, but: {kinds}, agrees with the schema: {is_valid}")
        if path.parent.name == "bad" and path.name.split(".")[0] not in kinds:
            faults.append(f"{path}: has another finding than its name says: {kinds}")
        if not is_valid and not findings:
            faults.append(f"{path}: the schema refuses what has no finding")
        if is_valid and kinds - BEYOND:
            faults.append(f"{path}: the schema accepts {kinds - BEYOND}")
    print("\n".join(faults))
    print(f"{len(paths)} documents, {len(faults)} faults")
    return 1 if faults or not paths else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2], sys.argv[3:]))
