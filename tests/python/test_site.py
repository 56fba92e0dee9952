"""Zones, fields and lines: the same objects each time, changes that write through, copies that are exact."""
import copy
import math
import pickle
import uuid

import numpy as np
import pytest
from conftest import square
from hypothesis import given, strategies as st

import orvantis_zones as oz


def test_a_zone_is_the_same_object_each_time(site):
    zone = site.zone(0, 1)
    assert site.zone(0, 1) is zone
    assert site.fields[0][1] is zone
    assert zone.shape is zone.shape
    assert site.fields[0] is site.fields[0]
    assert [z for f, s, z in site.zones() if (f, s) == (0, 1)][0] is zone
    assert site.find(zone.name)[0] is zone


def test_changes_write_through(site):
    site.zone(0, 1).z_max = 7.5
    assert site.zone(0, 1).z_max == 7.5
    site.fields[0].name = "renamed"
    assert site.fields[0].name == "renamed"
    site.zone(0, 1).name = "other"
    assert site.find("other") == [site.zone(0, 1)]
    site.zone(0, 1).shape = square(name="new")
    assert site.zone(0, 1).name == "new"
    site.fields[0][1] = None
    assert site.zone(0, 1) is None


def test_a_site_is_made_of_these_types(site):
    assert type(site.fields) is oz.FieldSlots and len(site.fields) == oz.MAX_FIELDS == 8
    assert type(site.fields[0]) is oz.Field and len(site.fields[0]) == oz.ZONES_PER_FIELD == 3
    assert type(site.exclusion_zones) is oz.ExclusionZones and type(site.sensor_zones) is oz.SensorZones
    assert type(site.counter_lines) is oz.CounterLines and type(site.classifier()) is oz.Classifier
    sector = oz.Sector(-0.5, 1.0, 3.0, origin=(1, 2), name="s")
    assert (sector.min_angle, sector.max_angle, sector.radius, sector.origin) == (-0.5, 1.0, 3.0, (1.0, 2.0))


def test_assigning_to_a_slot_shares_the_zone():
    site, zone = oz.Site(), oz.Zone(square())
    site.fields[3] = [zone, None, zone]
    assert site.zone(3, 0) is zone and site.zone(3, 2) is zone and site.zone(3, 1) is None
    other = oz.Site()
    other.fields[0] = site.fields[3]
    assert other.fields[0] is site.fields[3]
    site.fields[-1] = oz.Field([zone], name="last")
    assert site.fields[7].name == "last"
    site.fields[3] = None
    assert site.fields[3] is None


def test_slots_are_counted_from_the_end_too():
    first, last = oz.Zone(square()), oz.Zone(square(3.0))
    field = oz.Field([first, None, last])
    assert field[-1] is last and field[-2] is None and field[-3] is first
    field[-2] = first
    assert field[1] is first
    for wrong in (-4, 3):
        with pytest.raises(IndexError, match=f"zone {wrong} is not in a field; it has 0 to 2"):
            field[wrong]


def test_indices_outside_are_refused(site):
    for wrong in (lambda: site.zone(8, 0), lambda: site.zone(0, 3), lambda: site.zone(-1, 0), lambda: site.fields[8],
                  lambda: site.fields[-9], lambda: site.fields[0][3]):
        with pytest.raises(IndexError):
            wrong()
    with pytest.raises(IndexError):
        site.fields[0][3] = None
    with pytest.raises(IndexError):
        site.fields[8] = None
    with pytest.raises(ValueError, match="a field has 3 zones; 4 were given"):
        site.fields[0] = [None] * 4
    with pytest.raises(ValueError, match="a site has 8 fields; 9 were given"):
        site.fields = [None] * 9


def test_exclusion_zones_are_a_list(site):
    site.exclusion_zones = []
    zones = [oz.Zone(square(name=f"e{i}")) for i in range(4)]
    site.exclusion_zones.extend(zones)
    assert site.exclusion_zones == zones and site.exclusion_zones[2] is zones[2]
    site.exclusion_zones.insert(1, oz.Zone(square(name="in")))
    assert [zone.name for zone in site.exclusion_zones] == ["e0", "in", "e1", "e2", "e3"]
    site.exclusion_zones[-1] = oz.Zone(square(name="last"))
    del site.exclusion_zones[0:2]
    assert [zone.name for zone in site.exclusion_zones] == ["e1", "e2", "last"]
    # A zone keeps its place when it takes its own name again, or that of a number.
    site.exclusion_zones[0] = oz.Zone(square(name="e1"))
    site.exclusion_zones[1] = oz.Zone(square(name="0"))
    site.exclusion_zones[0] = oz.Zone(square(name="2"))
    assert [zone.name for zone in site.exclusion_zones] == ["2", "0", "last"]
    assert site.exclusion_zones.pop().name == "last"


@pytest.mark.parametrize("name, text", [("", "0 bytes"), ("x" * 19, "19 bytes"), ("ü" * 10, "20 bytes"),
                                        ("e0", "of that name already")])
def test_an_exclusion_zone_that_the_library_would_ignore_is_refused(name, text):
    site = oz.Site()
    site.exclusion_zones.append(oz.Zone(square(name="e0")))
    with pytest.raises(ValueError, match=text):
        site.exclusion_zones.append(oz.Zone(square(name=name)))
    with pytest.raises(ValueError, match=text):
        site.exclusion_zones = [oz.Zone(square(name="e0")), oz.Zone(square(name=name))]
    assert [zone.name for zone in site.exclusion_zones] == ["e0"]
    site.exclusion_zones.append(oz.Zone(square(name="e1")))
    with pytest.raises(ValueError, match=text):
        site.exclusion_zones[1] = oz.Zone(square(name=name))
    with pytest.raises(TypeError, match="a NoneType was given"):
        site.exclusion_zones.append(None)


def test_the_33rd_exclusion_zone_is_refused():
    site = oz.Site()
    site.exclusion_zones = [oz.Zone(square(name=str(i))) for i in range(32)]
    with pytest.raises(ValueError, match="33 exclusion zones; at most 32 are allowed"):
        site.exclusion_zones.append(oz.Zone(square(name="more")))
    assert len(site.exclusion_zones) == oz.MAX_EXCLUSION_ZONES


def test_a_renamed_exclusion_zone_does_not_disturb_the_others():
    site = oz.Site()
    site.exclusion_zones = [oz.Zone(square(name=name)) for name in "abc"]
    site.exclusion_zones[1].name = ""
    site.exclusion_zones[2].name = "a"
    del site.exclusion_zones[0]
    assert [zone.name for zone in site.exclusion_zones] == ["", "a"]
    assert [zone.name for zone in pickle.loads(pickle.dumps(site)).exclusion_zones] == ["", "a"]
    assert [int(mask) for mask in site.classify([[1.0, 1.0, 1.0]])] == [3 << 24]


def test_counter_lines_are_a_mapping():
    site = oz.Site()
    site.counter_lines["door"] = oz.CounterLine((0, 0), (0, 2), "another name")
    assert site.counter_lines["door"] == oz.CounterLine((0, 0), (0, 2), "door")
    assert list(site.counter_lines) == ["door"] and len(site.counter_lines) == 1
    with pytest.raises(KeyError):
        site.counter_lines["gate"]
    with pytest.raises(KeyError):
        del site.counter_lines["gate"]
    with pytest.raises(TypeError, match="a counter line is a CounterLine"):
        site.counter_lines["gate"] = ((0, 0), (1, 1))
    site.counter_lines = {"a": oz.CounterLine((0, 0), (1, 1))}
    del site.counter_lines["a"]
    assert not site.counter_lines


def test_options():
    site = oz.Site()
    assert (site.debounce_ms, site.min_points, site.sensitivity, site.trigger_level) == (0, 1, 10, "high")
    assert (site.software_command, site.active_field) == (False, 0)
    site.sensitivity = 4
    assert site.min_points == 7
    for name, wrong, text in [("sensitivity", 0, "1 to 10"), ("sensitivity", 11, "1 to 10"),
                              ("trigger_level", "medium", '"low" or "high"'), ("active_field", 8, "0 to 7"),
                              ("active_field", -1, "0 to 7")]:
        before = getattr(site, name)
        with pytest.raises(ValueError, match=text):
            setattr(site, name, wrong)
        assert getattr(site, name) == before
    for name in ("debounce_ms", "min_points"):
        with pytest.raises(TypeError):
            setattr(site, name, "many")


def test_shapes_say_what_they_are():
    triangle = oz.Polygon([(0, 0), (4, 0), (0, 3)], "t")
    assert (triangle.area, oz.Polygon([(0, 0), (0, 3), (4, 0)]).area) == (6.0, 6.0)
    assert triangle.bounds == (0.0, 0.0, 4.0, 3.0) and triangle.name == "t"
    assert triangle.vertices.tolist() == [[0, 0], [4, 0], [0, 3]]
    box = oz.Rectangle((0, 0), (4, 2), 90.0)
    assert box.rotation_deg == 90.0 and box.corners.tolist() == [[0, 0], [4, 2]] and box.area == pytest.approx(8)
    assert box.bounds == pytest.approx((1, -1, 3, 3))
    disc = oz.Sector(0, 0, 2)
    assert disc.area == pytest.approx(4 * math.pi) and disc.origin == (0.0, 0.0)
    assert oz.Sector(2, -2, 2).area == pytest.approx((math.pi - 2) * 4)
    assert eval(repr(triangle), vars(oz)) == triangle and eval(repr(box), vars(oz)) == box


def test_footprints():
    shape = square(4.0)
    inner, across, outer = [[1, 1], [2, 1], [2, 2]], [[3, 1], [5, 1], [5, 2]], [[6, 6], [7, 6], [7, 7]]
    assert [shape.contains(f) for f in (inner, across, outer)] == [True, False, False]
    assert [shape.intersects(f) for f in (inner, across, outer)] == [True, True, False]
    assert [shape.overlaps(f) for f in (inner, across, outer)] == [False, True, False]
    zone = oz.Zone(shape, 0.0, 2.0)
    assert zone.intersects(inner, 2.0, 3.0) and not zone.intersects(inner, 2.5, 3.0)
    with pytest.raises(ValueError, match=r"footprint: an array of shape \(3,\) and dtype int64 was given; v"):
        shape.contains([1, 2, 3])


def test_a_polygon_comes_from_shapely_and_goes_there():
    shapely = pytest.importorskip("shapely.geometry")
    ring = [(0, 0), (4, 0), (4, 3)]
    polygon = oz.Polygon.from_geo(shapely.Polygon(ring), "p")
    assert polygon == oz.Polygon(ring, "p")
    assert shapely.shape(polygon).equals(shapely.Polygon(ring))
    with pytest.raises(ValueError, match="1 holes"):
        oz.Polygon.from_geo(shapely.Polygon([(0, 0), (9, 0), (9, 9)], [[(5, 1), (6, 1), (6, 2)]]))
    with pytest.raises(ValueError, match="Point was given; it must be a Polygon"):
        oz.Polygon.from_geo(shapely.Point(0, 0))


def test_lines():
    line = oz.CounterLine((0, 0), (2, 0), "l")
    assert (line.first, line.second, line.name) == ((0.0, 0.0), (2.0, 0.0), "l")
    assert line.side([[1, 1], [1, -1], [5, 0]]).tolist() == [0, 1, 2]
    assert line.side((1, 1)).shape == () and line.side(np.zeros((2, 3, 2))).shape == (2, 3)
    assert oz.CounterLine.with_left((0, 0), (2, 0), (1, -1)).first == (2.0, 0.0)
    assert line.intersects([(1, -1), (2, -1), (1, 1)]) and not line.intersects([(5, 5), (6, 5), (6, 6)])
    with pytest.raises(AttributeError):
        line.first = (1, 1)
    with pytest.raises(ValueError, match=r"first: an array of shape \(3,\)"):
        oz.CounterLine((0, 0, 0), (1, 1))


def test_a_zone_needs_a_shape():
    with pytest.raises(TypeError):
        oz.Zone(None)
    zone = oz.Zone(square())
    with pytest.raises(TypeError):
        zone.shape = None


def test_sensor_zones():
    zone = oz.SensorZone(square(), sensors=["b", "a", "a"], name="n")
    assert zone.sensors == frozenset("ab") and zone.enabled and uuid.UUID(zone.id).int != 0 and zone.name == "n"
    zone.sensors, zone.enabled = {"c"}, False
    again = pickle.loads(pickle.dumps(zone))
    assert again == zone and (again.id, again.sensors, again.enabled) == (zone.id, {"c"}, False)
    with pytest.raises(ValueError, match="it must be a UUID"):
        oz.SensorZone(square(), id="seven")


def test_a_site_keeps_its_sensor_zones_in_documents():
    site = oz.Site()
    site.fields[0] = [oz.Zone(square())]
    site.sensor_zones = [oz.SensorZone(square(name="a"), 0.5, 1.5, sensors=["roof"], enabled=False)]
    site.sensor_zones.append(oz.SensorZone(square(name="b")))
    again = oz.loads(site.dumps())
    assert again == site and again.sensor_zones[0].sensors == {"roof"} and not again.sensor_zones[0].enabled
    assert site.copy() == site and site.copy().sensor_zones[0] is not site.sensor_zones[0]
    del site.sensor_zones[0]
    assert again != site and [zone.name for zone in site.sensor_zones] == ["b"]
    with pytest.raises(TypeError, match="a sensor zone is a SensorZone"):
        site.sensor_zones.append(oz.Zone(square()))


def test_nothing_mutable_is_hashable(site):
    for thing in (site, site.zone(0, 0), site.zone(0, 0).shape, site.fields[0]):
        with pytest.raises(TypeError):
            hash(thing)
    assert site != 5 and site.zone(0, 0) != None  # noqa: E711


def test_copies_share_and_clone(site):
    zone = site.zone(0, 0)
    assert copy.copy(site).zone(0, 0) is zone and copy.copy(zone).shape is zone.shape
    for deep in (site.copy(), copy.deepcopy(site)):
        assert deep == site and deep.zone(0, 0) is not zone and type(deep) is oz.Site
        deep.zone(0, 0).shape.name = "changed"
        assert zone.name != "changed" and deep != site
    assert copy.deepcopy(zone).shape is not zone.shape and copy.deepcopy(zone) == zone


UUID = "5f0c9a3e-8e0b-4f0a-9b61-1d2f3a4b5c6d"
DIFFERENT = [
    oz.Polygon([(0, 0), (1, 0), (1, 1)]), oz.Polygon([(0, 0), (1, 0), (1, 1)], "n"), oz.Polygon([(0, 0), (1, 0), (1, 2)]),
    oz.Polygon([(0, 0), (1, 0), (2, 1)]), oz.Polygon([(0, 0), (1, 0), (1, 1), (0, 1)]), oz.Polygon([]), oz.Rectangle((0, 0), (1, 1)),
    oz.Rectangle((0, 0), (1, 1), 5.0), oz.Rectangle((0, 0), (1, 2)), oz.Sector(0, 1, 2), oz.Sector(0.5, 1, 2),
    oz.Sector(0, 1.5, 2), oz.Sector(0, 1, 3), oz.Sector(0, 1, 2, (1, 0)), oz.Sector(0, 1, 2, (0, 1)), oz.Zone(square()),
    oz.Zone(square(), 1), oz.Zone(square(), 0, 3), oz.Zone(square(), name="n"), oz.Zone(square(3.0)),
    oz.SensorZone(square(), id=UUID), oz.SensorZone(square(), id=UUID, enabled=False),
    oz.SensorZone(square(), id=UUID, sensors=["a"]), oz.SensorZone(square(), id=UUID[::-1].replace("-", "")),
    oz.CounterLine((0, 0), (1, 1)), oz.CounterLine((0, 0), (1, 1), "n"), oz.CounterLine((0, 0), (1, 2)),
    oz.CounterLine((1, 0), (1, 1)), oz.CounterLine((0, 0), (2, 1)), oz.Field(), oz.Field(name="n"), oz.Field([oz.Zone(square())]),
    oz.Field([None, oz.Zone(square())]), oz.Field([None, None, oz.Zone(square())])]


def test_what_differs_in_one_thing_is_not_equal():
    for i, one in enumerate(DIFFERENT):
        assert [one == other for other in DIFFERENT] == [i == k for k in range(len(DIFFERENT))], repr(one)
        assert copy.deepcopy(one) == one


CHANGES = {
    "debounce_ms": 7, "min_points": 7, "trigger_level": "low", "software_command": True, "active_field": 3,
    "fields": [[oz.Zone(square())]], "exclusion_zones": [oz.Zone(square(name="e"))], "counter_lines": {"l": oz.CounterLine((0, 0), (1, 1))},
    "sensor_zones": [oz.SensorZone(square())],
}


def test_sites_that_differ_in_one_thing_are_not_equal():
    made = [oz.Site()]
    for name, value in CHANGES.items():
        made.append(oz.Site())
        assert made[-1] == made[0]
        setattr(made[-1], name, value)
    for i, one in enumerate(made):
        assert [one == other for other in made] == [i == k for k in range(len(made))]
        assert one == one.copy() == pickle.loads(pickle.dumps(one))


def test_what_is_shared_is_shared_after_a_copy():
    site, zone = oz.Site(), oz.Zone(square())
    site.fields[0] = [zone, zone, oz.Zone(zone.shape, 1, 2)]
    site.fields[1] = site.fields[0]
    for made in (copy.deepcopy(site), pickle.loads(pickle.dumps(site))):
        assert made == site
        assert made.zone(0, 0) is made.zone(0, 1) and made.zone(0, 2).shape is made.zone(0, 0).shape
        assert made.fields[1] is made.fields[0]


ANY = st.one_of(st.floats(allow_nan=True), st.sampled_from([0.0, -0.0, math.inf, -math.pi, math.pi, 1e308]))
NAMES = st.text(max_size=20).map(lambda text: text.encode("utf-8", "replace").decode())
PAIRS = st.tuples(ANY, ANY)
SHAPES = st.one_of(st.builds(oz.Polygon, st.lists(PAIRS, max_size=20), NAMES),
                   st.builds(oz.Rectangle, PAIRS, PAIRS, ANY, NAMES),
                   st.builds(oz.Sector, ANY, ANY, ANY, PAIRS, NAMES))
ZONES = st.one_of(st.builds(oz.Zone, SHAPES, ANY, ANY),
                  st.builds(oz.SensorZone, SHAPES, ANY, ANY, sensors=st.lists(NAMES), enabled=st.booleans()))


@st.composite
def sites(draw):
    site, pool = oz.Site(), draw(st.lists(ZONES, max_size=5))
    some = st.one_of(st.none(), st.sampled_from(pool)) if pool else st.none()
    for index in draw(st.lists(st.integers(0, 7), max_size=4)):
        site.fields[index] = oz.Field(draw(st.lists(some, max_size=3)), draw(NAMES))
    for zone in pool:
        try:
            site.exclusion_zones.append(zone)
        except ValueError:
            pass
    site.counter_lines = draw(st.dictionaries(NAMES, st.builds(oz.CounterLine, PAIRS, PAIRS), max_size=3))
    site.sensor_zones = [zone for zone in pool if isinstance(zone, oz.SensorZone)]
    site.debounce_ms, site.min_points = draw(st.integers(-5, 2**31 - 1)), draw(st.integers(-(2**31), 2**31 - 1))
    site.trigger_level, site.software_command = draw(st.sampled_from(["low", "high"])), draw(st.booleans())
    site.active_field = draw(st.integers(0, 7))
    return site


@given(st.one_of(SHAPES, ZONES, sites(), st.builds(oz.CounterLine, PAIRS, PAIRS, NAMES)), st.integers(0, 5))
def test_a_pickle_is_exact(thing, protocol):
    for made in (pickle.loads(pickle.dumps(thing, max(protocol, 2))), copy.deepcopy(thing), copy.copy(thing)):
        assert made == thing and type(made) is type(thing)
        assert repr(made) == repr(thing)


EDITS = {
    "z_max": lambda site, draw: setattr(site.zone(0, 0), "z_max", draw(st.floats(-1, 3))),
    "z_min": lambda site, draw: setattr(site.zone(0, 0), "z_min", draw(st.floats(-1, 3))),
    "shape": lambda site, draw: setattr(site.zone(0, 0), "shape", square(draw(st.floats(0.5, 4)))),
    "slot": lambda site, draw: site.fields[0].__setitem__(1, oz.Zone(square(draw(st.floats(0.5, 4)), x=1.0))),
    "empty": lambda site, draw: site.fields[0].__setitem__(draw(st.integers(1, 2)), None),
    "swap": lambda site, draw: setattr(site, "fields", [list(reversed(site.fields[0]))[::-1], site.fields[0]]),
    "exclude": lambda site, draw: setattr(site, "exclusion_zones", [oz.Zone(square(draw(st.floats(0.5, 2))))]),
    "include": lambda site, draw: setattr(site, "exclusion_zones", []),
    "shared": lambda site, draw: site.fields.__setitem__(2, [site.zone(0, 0)]),
    "name": lambda site, draw: setattr(site.zone(0, 0), "name", "other"),
}
GRID = np.stack(np.meshgrid(np.linspace(-0.5, 5, 12), np.linspace(-0.5, 5, 12), [-0.5, 0.5, 2.5]), -1).reshape(-1, 3)


@given(st.data(), st.lists(st.sampled_from(sorted(EDITS)), min_size=1, max_size=8))
def test_no_answer_is_stale(data, edits):
    site = oz.Site()
    site.fields[0] = [oz.Zone(square(), 0.0, 2.0), None, None]
    site.classify(GRID)
    for edit in edits:
        EDITS[edit](site, data.draw)
        masks = np.zeros(len(GRID), np.uint64)
        for field, slot, zone in site.zones():
            masks |= np.where([zone.contains_xyz(*p) for p in GRID], oz.zone_bit(field, slot), np.uint64(0))
        for k, zone in enumerate(site.exclusion_zones):
            masks |= np.where([zone.contains_xyz(*p) for p in GRID], oz.exclusion_bit(k), np.uint64(0))
        assert np.array_equal(site.classify(GRID), masks)


def test_a_classifier_is_frozen(site, points):
    classifier = site.classifier()
    before = classifier.classify(points)
    site.fields[0] = None
    site.exclusion_zones.clear()
    assert np.array_equal(classifier.classify(points), before)
    assert not np.array_equal(site.classify(points), before)
    assert np.array_equal(oz.Classifier(site).classify(points), site.classify(points))
