#!/usr/bin/env python3
"""Asks the command what a case asks, and compares the answer with what the case expects.

    run_command.py ZONE_DETECTOR CASE_FOLDER [--update]

Numbers are compared as they are written, so that no digit is lost. On a difference it prints a patch and ends with 1;
with --update it writes the answer into the case instead."""
import difflib
import json
import pathlib
import subprocess
import sys


def read(text):
    return json.loads(text, parse_float=Number)


class Number(str):
    """A number with the digits that it was written with."""


def answer(program, folder, case):
    words = {"findings": ["validate", "--json"], "content": ["show", "--json"], "counts": ["run", "--json"],
             "events": ["run", "--json"], "why": ["explain", "--json"]}[case["ask"]]
    words = [program, *words, "--quiet", case.get("document", "site.json"), *case.get("frames", [])]
    if "tracks" in case:
        words += ["--tracks", case["tracks"]]
    words += case.get("options", [])
    done = subprocess.run(words, cwd=folder, capture_output=True, text=True, timeout=60)
    result = {"code": done.returncode}
    lines = [read(line) for line in done.stdout.splitlines()]
    if done.stderr:
        kept = [line for line in done.stderr.splitlines() if "without reading the files" not in line]
        result["error"] = kept
    if case["ask"] == "events":
        result["events"] = [line for line in lines if "Summary" not in line["type"] and line["type"] != "summary"]
        result["summary"] = [line for line in lines if "Summary" in line["type"] or line["type"] == "summary"]
    else:
        result[case["ask"]] = lines
    return {key: value for key, value in result.items() if value != []}


def write(value, indent=0):
    """JSON with a line for each entry of the outer lists, and numbers as they were."""
    if isinstance(value, Number):
        return str(value)
    if isinstance(value, dict):
        inner = indent if indent else 0
        parts = [json.dumps(key, ensure_ascii=False) + ": " + write(entry, 2) for key, entry in value.items()]
        return "{" + ", ".join(parts) + "}" if inner else "{\n  " + ",\n  ".join(parts) + "\n}"
    if isinstance(value, list):
        return "[" + ", ".join(write(entry, 2) for entry in value) + "]"
    return json.dumps(value, ensure_ascii=False)


def lines_of(result):
    lines = []
    for key, value in result.items():
        entries = value if isinstance(value, list) else [value]
        lines += [key + " " + write(entry, 2) + "\n" for entry in entries]
    return lines


def main():
    program, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    path = folder / "case.json"
    case = read(path.read_text(encoding="utf-8"))
    found = answer(program, folder, case)
    if "--update" in sys.argv:
        case["expect"] = found
        path.write_text(write(case) + "\n", encoding="utf-8")
        return 0
    expected = case["expect"]
    if found == expected:
        return 0
    print(case["about"])
    sys.stdout.writelines(difflib.unified_diff(lines_of(expected), lines_of(found), "expected", "found", n=99))
    return 1


if __name__ == "__main__":
    sys.exit(main())
