"""The cases that every face answers alike. What this face lacks is skipped, with the reason."""
import json

import pytest
from conftest import SOURCE

import orvantis_zones as oz

CASES = sorted((SOURCE / "tests" / "cases").glob("*/case.json"))
ARGUMENTS = {"--rate": ("rate", float), "--tracks-format": ("tracks_format", str)}
OPTIONS = {"--forget-after": "forget_after", "--clearance": "clearance", "--max-speed": "max_speed"}


def findings(case):
    name = case.get("document", "site.json")
    found = oz.validate(name).findings
    told = [{"kind": f.kind, "severity": f.severity, "line": f.line, "column": f.column, "path": f.place, "text": f.text}
            for f in found]
    return {"findings": [{"file": name, "ok": oz.validate(name).ok, "findings": told}]}


def counts(case):
    if case.get("options"):
        pytest.skip(f"this face has no {case['options'][0]}: leave points out and move them with numpy")
    site, frames, told = oz.load(case.get("document", "site.json")), [], []
    try:
        for number, name in enumerate(case["frames"]):
            found = site.count(oz.read_points(name))
            zones = [{"field": f, "fieldName": site.fields[f].name, "zone": z, "name": zone.name,
                      "points": int(found.inside[f, z]), "reached": bool(found.inside[f, z] >= site.min_points)}
                     for f, z, zone in site.zones()]
            frames.append({"frame": number, "file": name, "points": found.total, "noReturns": found.no_returns,
                           "excluded": found.excluded, "minPoints": site.min_points, "zones": zones})
    except oz.RecordingError as error:
        told = [f"zone-detector: {error}"]
    return {"counts": frames, "error": told}


def events(case):
    words = case.get("options", [])
    given = dict(zip(words[::2], words[1::2]))
    if "--sensors" in given:
        pytest.skip("this face takes the frames of several sensors in evaluate() only, which tells tables")
    site, options = oz.load("site.json"), {OPTIONS[key]: float(given[key]) for key in given if key in OPTIONS}
    session = oz.Session(site, **options)
    session.active_field = int(given.get("--field", session.active_field))
    seen, told = [], []
    try:
        recording = oz.Recording(case.get("frames", []), tracks=case.get("tracks"),
                                 **{ARGUMENTS[key][0]: ARGUMENTS[key][1](given[key]) for key in given if key in ARGUMENTS})
        for moment in recording:
            seen += [event.to_dict() for event in session.take(*moment).events]
        told = [f"zone-detector: warning: {text}" for text in oz.evaluate(site, recording, **options).warnings]
    except oz.RecordingError as error:
        told = [f"zone-detector: {error}"]
    return {"events": seen, "error": told}


ANSWERS = {"findings": findings, "counts": counts, "events": events}


@pytest.mark.parametrize("path", CASES, ids=lambda path: path.parent.name)
def test_case(path, monkeypatch):
    case = json.loads(path.read_text(encoding="utf-8"))
    if case["ask"] not in ANSWERS:
        pytest.skip(f"this face has no answer to {case['ask']!r}")
    monkeypatch.chdir(path.parent)
    found = ANSWERS[case["ask"]](case)
    expected = {key: case["expect"].get(key, []) for key in found}
    assert found == expected, case["about"]


def test_most_cases_are_answered():
    asked = [json.loads(path.read_text(encoding="utf-8"))["ask"] for path in CASES]
    assert sum(ask in ANSWERS for ask in asked) > 0.95 * len(asked) > 300
