"""Documents: what is wrong with them, as the command says it, and what they hold."""
import copy
import json
import pickle

import pytest
from conftest import CROSSING, SOURCE, square

import orvantis_zones as oz

DOCUMENTS = sorted((SOURCE / "tests" / "cases").glob("document_*/*.json"))
DOCUMENTS = [path for path in DOCUMENTS if path.name != "case.json"]


@pytest.mark.parametrize("path", DOCUMENTS, ids=lambda path: path.parent.name)
def test_findings_are_those_of_the_command(path, command):
    _, out, _ = command("validate", "--json", path)
    said = json.loads(out)
    report = oz.validate(path)
    found = [{"kind": f.kind, "severity": f.severity, "line": f.line, "column": f.column, "path": f.place,
              "text": f.text} for f in report.findings]
    assert found == said["findings"]
    assert report.ok == said["ok"]
    assert oz.validates(path.read_bytes()).findings == report.findings


@pytest.mark.parametrize("path", DOCUMENTS, ids=lambda path: path.parent.name)
def test_what_is_refused_raises_with_the_findings(path, command):
    report = oz.validate(path)
    if report.ok:
        report.raise_for_error()
        site = oz.load(path)
        assert oz.loads(path.read_bytes()) == site
        assert oz.loads(site.dumps()) == site
        return
    with pytest.raises(oz.DocumentError) as told:
        oz.load(path)
    assert told.value.findings == report.findings
    assert isinstance(told.value, ValueError)
    # The lines are those of the command.
    _, out, _ = command("validate", path)
    for finding in report.findings:
        assert f"{path}:{finding}" in out
    errors = [str(path) + ":" + str(f) for f in report.findings if f.severity == "error"][:20]
    assert str(told.value).split("\n", 1)[1].startswith("\n".join(errors))
    again = pickle.loads(pickle.dumps(told.value))
    assert str(again) == str(told.value) and again.findings == told.value.findings


def test_the_first_line_of_the_error_counts():
    with pytest.raises(oz.DocumentError, match=r"\A1 error\n1:1: error: no zone") as told:
        oz.loads("{}")
    assert told.value.path == "" and [type(finding) for finding in told.value.findings] == [oz.Finding]


def test_a_file_that_is_not_there_is_an_os_error(tmp_path):
    with pytest.raises(FileNotFoundError):
        oz.load(tmp_path / "no.json")
    with pytest.raises(OSError):
        oz.validate(tmp_path)


def test_save_writes_what_load_reads(site, tmp_path):
    site.save(tmp_path / "site.json")
    assert oz.load(tmp_path / "site.json") == site
    assert sorted(path.name for path in tmp_path.iterdir()) == ["site.json"]
    assert (tmp_path / "site.json").read_text() == site.dumps()


def test_save_says_why_it_cannot(site, tmp_path):
    with pytest.raises(OSError, match="No such file or directory"):
        site.save(tmp_path / "no" / "site.json")


def a_site(zone):
    site = oz.Site()
    site.fields[0] = [zone]
    return site


@pytest.mark.parametrize("zone, text", [
    (oz.Zone(oz.Sector(0, 1, 5, origin=(1, 0), name="s")), "field 0 has something that a document does not hold"),
    (oz.SensorZone(square()), "field 0 has something that a document does not hold"),
    (oz.Zone(square(), 0, float("inf")), "zMax"),
    (oz.Zone(oz.Polygon([(i, i * i) for i in range(17)], "many")), "17"),
], ids=["origin", "sensors", "infinite", "seventeen"])
def test_what_a_document_cannot_hold_is_refused(zone, text, tmp_path):
    site = a_site(zone)
    with pytest.raises(ValueError, match=text):
        site.dumps()
    with pytest.raises(ValueError):
        site.save(tmp_path / "site.json")
    assert not list(tmp_path.iterdir())


def test_what_a_document_lost_is_named():
    def full():
        site = a_site(oz.Zone(square(name="gate")))
        site.exclusion_zones.append(oz.Zone(square(name="pillar")))
        site.sensor_zones.append(oz.SensorZone(square(name="mat")))
        site.counter_lines["door"] = oz.CounterLine((0, 0), (0, 2))
        return site

    site = full()
    site.sensor_zones[0] = oz.SensorZone(square(name="mat"), id="5f0c9a3e-8e0b-4f0a-9b61-1d2f3a4b5c6d")
    checked = oz._core.check(site.dumps().encode())
    changes = {
        "": lambda s: None,
        "field 0": lambda s: setattr(s.zone(0, 0), "z_max", 3),
        "field 5": lambda s: setattr(s, "fields", [s.fields[0], *[None] * 4, [None]]),
        "exclusion zone 0": lambda s: setattr(s.exclusion_zones[0], "z_max", 3),
        "exclusion zone 1": lambda s: s.exclusion_zones.append(oz.Zone(square(name="other"))),
        "sensor zone 0": lambda s: setattr(s.sensor_zones[0], "enabled", False),
        "sensor zone 1": lambda s: s.sensor_zones.append(s.sensor_zones[0]),
        'counter line "door"': lambda s: s.counter_lines.update(door=oz.CounterLine((0, 0), (0, 3))),
        'counter line "gate"': lambda s: s.counter_lines.update(gate=oz.CounterLine((0, 0), (0, 3))),
        "an option": lambda s: setattr(s, "debounce_ms", 7),
    }
    for lost, change in changes.items():
        other = copy.deepcopy(site)
        change(other)
        assert checked.lost(other) == lost


def test_the_active_field_is_not_in_documents():
    site = a_site(oz.Zone(square()))
    site.active_field = 5
    assert oz.loads(site.dumps()).active_field == 0


def test_the_example_is_what_it_says():
    site = oz.load(CROSSING)
    assert [zone.name for _, _, zone in site.zones()][:1] == ["Walkway"]
    assert repr(site) == "<Site: 8 zones, 3 exclusion zones, 4 lines>"
    for name in list(site.counter_lines)[1:]:
        del site.counter_lines[name]
    assert repr(site) == "<Site: 8 zones, 3 exclusion zones, 1 line>"
    assert oz.validate(CROSSING) == oz.Report(True, None, [], str(CROSSING))
