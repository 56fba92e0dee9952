"""Arrays in, arrays out: nothing is copied that need not be, and every answer is the scalar one."""
import gc
import threading
import tracemalloc

import numpy as np
import pytest
from conftest import square
from hypothesis import given, strategies as st

import orvantis_zones as oz

LAYOUTS = {
    "as it is": lambda p: p,
    "backwards": lambda p: p[::-1],
    "every third": lambda p: p[::3],
    "every third backwards": lambda p: p[::-3],
    "Fortran": np.asfortranarray,
    "columns of a wider array": lambda p: np.hstack([p, p])[:, 3:],
    "columns backwards": lambda p: p[:, ::-1],
    "four columns": lambda p: np.hstack([p, p[:, :1]]),
    "read only": lambda p: np.frombuffer(p.tobytes(), p.dtype).reshape(p.shape),
    "memoryview": lambda p: memoryview(np.ascontiguousarray(p)),
    "one row many times": lambda p: np.broadcast_to(p[7], (100, 3)),
    "not aligned": lambda p: np.frombuffer(b"." + p.tobytes(), np.uint8)[1:].view(p.dtype).reshape(p.shape),
    "other byte order": lambda p: p.astype(p.dtype.newbyteorder()),
    "structured": lambda p: structured(p),
    "structured, other order": lambda p: structured(p, "zyx"),
    "structured backwards": lambda p: structured(p)[::-1],
    "record array": lambda p: structured(p).view(np.recarray),
    "none": lambda p: p[:0],
    "one": lambda p: p[5:6],
    "a window that slides": lambda p: np.lib.stride_tricks.sliding_window_view(p.ravel(), 3),
}


def structured(points, order="xyz"):
    made = np.zeros(len(points), [*((name, points.dtype) for name in order), ("intensity", "u1")])
    for name, column in zip("xyz", points.T):
        made[name] = column
    return made


def rows(given):
    array = np.asarray(given)
    if array.dtype.names:
        array = np.stack([array[name] for name in "xyz"], axis=1)
    return array[:, :3].astype(np.float64)


def scalar_masks(site, points):
    masks = np.zeros(len(points), np.uint64)
    bits = [(zone, oz.zone_bit(field, slot)) for field, slot, zone in site.zones()]
    bits += [(zone, oz.exclusion_bit(k)) for k, zone in enumerate(site.exclusion_zones)]
    for zone, bit in bits:
        inside = [zone.contains_xyz(*point) for point in points.tolist()]
        masks[np.array(inside, bool)] |= bit
    return masks


@pytest.mark.parametrize("real", [np.float32, np.float64])
@pytest.mark.parametrize("layout", LAYOUTS)
def test_every_layout_gives_the_scalar_answer(site, points, layout, real):
    given = LAYOUTS[layout](points[:600].astype(real))
    masks = site.classify(given)
    assert masks.dtype == np.uint64 and masks.flags.c_contiguous
    assert np.array_equal(masks, scalar_masks(site, rows(given)))
    zone = site.zone(0, 0)
    assert np.array_equal(zone.contains_points(given), masks & oz.zone_bit(0, 0) != 0)
    assert zone.contains_points(given).dtype == np.bool_
    counts = site.count(given)
    assert counts.total == len(masks)
    assert int(counts.inside[0, 0]) == len(site.indices(given, 0, 0))


@pytest.mark.parametrize("dtype", ["i1", "u2", "i4", "i8", "f2", "g"])
def test_other_numbers_are_converted(site, dtype):
    points = np.random.default_rng(3).integers(0, 20, (500, 3)).astype(dtype)
    assert np.array_equal(site.classify(points), site.classify(points.astype(np.float64)))


def test_lists_and_data_frames_are_read(site, points):
    few = points[:50]
    assert np.array_equal(site.classify(few.tolist()), site.classify(few))
    pandas = pytest.importorskip("pandas")
    frame = pandas.DataFrame(few[:, ::-1], columns=list("zyx"))
    assert np.array_equal(site.classify(frame), site.classify(few))


@pytest.mark.parametrize("types", [("f4", "f8", "i2"), ("f4", "f8", "f8"), ("i4", "i4", "f4")])
def test_mixed_types_in_a_structure_are_converted_once(site, points, types):
    made = np.zeros(len(points), [*zip("xyz", types)])
    for name, column in zip("xyz", np.nan_to_num(points).T):
        made[name] = column
    assert np.array_equal(site.classify(made), site.classify(rows(made)))


def test_results_are_written_into_out(site, points):
    out = np.empty(len(points), np.uint64)
    assert site.classify(points, out) is out
    assert np.array_equal(out, site.classify(points))
    flags = np.empty(len(points), bool)
    assert site.zone(0, 0).contains_points(points, out=flags) is flags
    classifier = site.classifier()
    counts = classifier.count(points, masks=out)
    assert counts == classifier.count(points) == site.count(points)
    assert np.array_equal(out, classifier.classify(points))


def test_nothing_is_copied_that_need_not_be(site, points):
    # What is written into the points shows at once, so what was asked were these.
    before = site.classify(points)
    points[:] = np.nan
    assert before.any() and not site.classify(points).any()


def allocated(call):
    """The most memory that Python and numpy held for a call, in bytes."""
    call()
    gc.collect()
    tracemalloc.start()
    try:
        call()
        return tracemalloc.get_traced_memory()[1]
    finally:
        tracemalloc.stop()


@pytest.mark.parametrize("real", [np.float32, np.float64])
@pytest.mark.parametrize("layout", LAYOUTS)
def test_no_memory_is_taken_for_points_that_lie_ready(site, points, layout, real):
    given = LAYOUTS[layout](points.astype(real))
    size = len(np.asarray(given))
    out, flags = np.empty(size, np.uint64), np.empty(size, bool)
    classifier, zone = site.classifier(), site.zone(0, 0)
    most = 4_000 + (24 * size if layout == "other byte order" else 0)
    assert allocated(lambda: site.classify(given, out)) < most
    assert allocated(lambda: classifier.count(given, out)) < most
    assert allocated(lambda: zone.contains_points(given, flags)) < most
    assert allocated(lambda: site.count(given)) < most


@pytest.mark.parametrize("given", [np.int16, np.int64, np.float16, np.longdouble])
def test_what_is_converted_is_converted_once(site, points, given):
    whole = np.nan_to_num(points).astype(given)
    out = np.empty(len(whole), np.uint64)
    assert 24 * len(whole) <= allocated(lambda: site.classify(whole, out)) < 24 * len(whole) + 4_000


def test_points_that_are_not_finite_are_in_no_zone_whichever_way_they_run():
    site, infinite = oz.Site(), float("inf")
    site.fields[0] = [oz.Zone(square(), -infinite, infinite)]
    points = np.array([(1, 1, infinite), (1, 1, 1), (1, 1, 0), (9, 9, 0)])
    for given, masks, within in ((points, [1, 1, 1, 0], [1, 2]), (points[::-1], [0, 1, 1, 1], [1, 2]),
                                 (points[::2], [1, 1], [1]), (points[2::-2], [1, 1], [0])):
        assert site.classify(given).tolist() == masks and site.indices(given, 0, 0).tolist() == within
        assert int(site.count(given).inside[0, 0]) == len(within) and site.count(given).no_returns == 1


def test_counts_are_told_by_name():
    site, nan = oz.Site(), float("nan")
    site.fields[2] = [None, oz.Zone(square())]
    site.exclusion_zones.append(oz.Zone(square(0.5, name="pillar")))
    points = [(0.25, 0.25, 1), (1, 1, 1), (nan, 1, 1), (1, nan, 1), (9, 9, 9), (1, 1, 2), (1.5, 1, 2)]
    for counts in (site.count(points), site.classifier().count(points), oz.Session(site).take(0, points).counts):
        assert (counts.excluded, counts.no_returns, counts.total) == (1, 2, 7)
        assert [tuple(place) for place in np.argwhere(counts.inside)] == [(2, 1)] and counts.inside[2, 1] == 3


REFUSED = {
    "masked": (lambda p: np.ma.masked_array(p), ValueError, "a masked array was given"),
    "ragged": (lambda p: [[1.0, 2.0, 3.0], [4.0]], ValueError, "inhomogeneous"),
    "two columns": (lambda p: p[:9, :2], ValueError, r"shape \(9, 2\) and dtype float64"),
    "one dimension": (lambda p: p[:4, 0], ValueError, r"shape \(4,\)"),
    "three dimensions": (lambda p: p[:9].reshape(3, 3, 3), ValueError, r"shape \(3, 3, 3\)"),
    "texts": (lambda p: [["a", "b", "c"]], TypeError, "dtype <U1"),
    "objects": (lambda p: np.array([[1, None, 2]], object), TypeError, "dtype object"),
    "complex": (lambda p: p.astype(complex), TypeError, "dtype complex128"),
    "truths": (lambda p: p > 0, TypeError, "dtype bool"),
    "nothing": (lambda p: None, TypeError, "dtype object"),
    "no z": (lambda p: structured(p)[["x", "y"]], ValueError, "structured one with x, y and z"),
    "grid of records": (lambda p: structured(p[:4]).reshape(2, 2), ValueError, r"shape \(2, 2\)"),
    "field of texts": (lambda p: np.zeros(2, [("x", "f4"), ("y", "U2"), ("z", "f4")]), TypeError, "field y"),
}


@pytest.mark.parametrize("what", REFUSED)
def test_what_is_not_points_is_refused_with_shape_and_type(site, points, what):
    make, error, text = REFUSED[what]
    given = make(points)
    for ask in (site.classify, site.count, site.zone(0, 0).contains_points, site.classifier().classify):
        with pytest.raises(error, match=text) as told:
            ask(given)
        assert "points" in str(told.value)


def test_an_out_that_does_not_fit_is_refused(site, points):
    size = len(points)
    fixed = np.empty(size, np.uint64)
    fixed.flags.writeable = False
    wrong = {"list": ([0] * size, TypeError), "short": (np.empty(size - 1, np.uint64), ValueError),
             "signed": (np.empty(size, np.int64), ValueError), "read only": (fixed, ValueError),
             "strided": (np.empty(2 * size, np.uint64)[::2], ValueError),
             "other order": (np.empty(size, ">u8"), ValueError),
             "table": (np.empty((size, 1), np.uint64), ValueError),
             "not aligned": (np.empty(8 * size + 1, np.uint8)[1:].view(np.uint64), ValueError)}
    for out, error in wrong.values():
        with pytest.raises(error, match="out: .* out is a writable, contiguous array of shape .20000,. and d"):
            site.classify(points, out)


def test_an_out_that_shares_memory_with_the_points_is_refused(site):
    both = np.zeros(4 * 100)
    with pytest.raises(ValueError, match="shares memory with the points"):
        site.classify(both[:300].reshape(100, 3), both[299:399].view(np.uint64))
    site.classify(both[:300].reshape(100, 3), both[300:].view(np.uint64))


SHAPES = {
    "polygon": oz.Polygon([(0, 0), (4, 0), (4, 1), (1, 1), (1, 3), (0, 3)]),
    "rectangle": oz.Rectangle((0, 0), (4, 2)),
    "turned": oz.Rectangle((0, 0), (4, 2), 30.0),
    "sector": oz.Sector(-0.5, 1.0, 3.0),
    "sector through -x": oz.Sector(2.0, -2.0, 3.0, origin=(1.0, 1.0)),
    "disc": oz.Sector(0.0, 0.0, 2.0),
    "far away": oz.Rectangle((5e6, 5e6), (5e6 + 1, 5e6 + 1)),
    "nothing": oz.Polygon([(0, 0), (1, 1)]),
}
SPECIAL = st.sampled_from([0.0, -0.0, 1.0, 2.0, 3.0, 4.0, 0.5, np.nan, np.inf, -np.inf, 1e-300, 5e6, 1e308])
NUMBERS = st.one_of(SPECIAL, st.floats(-5, 5), st.floats(allow_nan=True))


@pytest.mark.parametrize("name", SHAPES)
@given(st.lists(st.tuples(NUMBERS, NUMBERS, NUMBERS), min_size=1, max_size=100))
def test_arrays_answer_as_scalars_do(name, points):
    zone = oz.Zone(SHAPES[name], 0.0, 2.0)
    array = np.array(points)
    one_by_one = [zone.contains_xyz(*point) for point in points]
    assert zone.contains_points(array).tolist() == one_by_one
    assert zone.contains_xyz(*array.T).tolist() == one_by_one
    on_plan = [zone.shape.contains_xy(x, y) for x, y, _ in points]
    assert zone.shape.contains_xy(array[:, 0], array[:, 1]).tolist() == on_plan
    # Long enough for the tables, which short arrays do without.
    many = np.tile(array, (70 // len(array) + 1, 1))
    assert zone.shape.contains_xy(many[:, 0], many[:, 1]).tolist() == (on_plan * len(many))[:len(many)]
    with np.errstate(over="ignore"):
        single = array.astype(np.float32)
    assert zone.contains_points(single).tolist() == [zone.contains_xyz(*row) for row in single.tolist()]


def test_coordinates_broadcast(site):
    shape = square(2.0)
    assert shape.contains_xy(1, 1) is True
    assert shape.contains_xy(3, 1) is False
    assert shape.contains_xy([[1], [3]], [1, 0.5, 7]).tolist() == [[True, True, False], [False] * 3]
    assert oz.Zone(shape, 0, 1).contains_xyz(np.ones((2, 1, 50)), 1.0, np.linspace(0, 2, 50)).shape == (2, 1, 50)
    with pytest.raises(ValueError, match="mismatch|broadcast"):
        shape.contains_xy([1, 2], [1, 2, 3])


def test_borders():
    polygon = oz.Polygon([(0, 0), (2, 0), (2, 2), (0, 2)])
    assert not polygon.contains_xy([0, 2, 1, 1], [1, 1, 0, 2]).any()
    assert oz.Sector(0, 0, 2.0).contains_xy([2.0, np.nextafter(2, 3)], 0.0).tolist() == [True, False]
    zone = oz.Zone(polygon, 0.5, 1.5)
    heights = [0.5, 1.5, np.nextafter(0.5, 0), np.nextafter(1.5, 2)]
    assert zone.contains_xyz(1.0, 1.0, heights).tolist() == [True, True, False, False]


def test_the_lock_is_released_while_points_are_classified(site, points):
    many = np.tile(points, (500, 1))
    out = np.empty(len(many), np.uint64)
    classifier = site.classifier()
    ticks, done = [], threading.Event()

    def ask():
        for _ in range(5):
            classifier.classify(many, out)
        done.set()

    thread = threading.Thread(target=ask)
    thread.start()
    while not done.is_set():
        ticks.append(1)
        done.wait(0.0001)
    thread.join()
    # Had the call held the lock, this loop would have run once a call.
    assert len(ticks) > 20


def test_eight_threads_get_the_answers_of_one(site, points):
    expected = site.classify(points)
    found = [None] * 8

    def ask(number):
        for _ in range(20):
            found[number] = site.classify(points[number:])

    threads = [threading.Thread(target=ask, args=[number]) for number in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    for number, masks in enumerate(found):
        assert np.array_equal(masks, expected[number:])


def test_bits():
    assert [int(oz.zone_bit(f, z)) for f, z in [(0, 0), (0, 2), (7, 2)]] == [1, 4, 1 << 23]
    assert int(oz.exclusion_bit(0)) == 1 << 24 and int(oz.exclusion_bit(31)) == 1 << 55
    for wrong in (lambda: oz.zone_bit(8, 0), lambda: oz.zone_bit(0, 3), lambda: oz.zone_bit(-1, 0),
                  lambda: oz.exclusion_bit(32), lambda: oz.exclusion_bit(-1)):
        with pytest.raises(IndexError):
            wrong()
