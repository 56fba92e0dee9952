"""What a notebook shows, and what is drawn on matplotlib."""
import base64
import re
import xml.etree.ElementTree

import numpy as np
import pytest
from conftest import CROSSING, square

import orvantis_zones as oz


def image(html):
    [data] = re.findall(r'<img [^>]*src="data:image/svg\+xml;base64,([^"]+)"/>', html)
    svg = base64.b64decode(data).decode()
    xml.etree.ElementTree.fromstring(svg)
    return svg


def test_a_site_shows_its_plan(site):
    assert image(site._repr_html_()) == site.to_svg()
    far = oz.Site()
    far.fields[0] = [oz.Zone(square(1e308))]
    assert "cannot be drawn" in far._repr_html_()


def test_a_run_shows_its_picture_and_its_warnings():
    recording = oz.Recording.from_arrays([(0.0, np.full((5, 3), 50.0), None)], name="<b>")
    run = oz.evaluate(oz.load(CROSSING), recording)
    html = run._repr_html_()
    assert image(html) == run.to_svg() and "&lt;b&gt;" in html and "<b>" not in html
    assert run.warnings and "Warning: no point of any frame is between the heights" in html


def test_a_report_shows_its_findings():
    report = oz.validates('{"ZoneDetector": {"<script>": 5}}')
    html = report._repr_html_()
    assert "is refused" in html and "<script>" not in html and "&lt;script&gt;" in html
    assert "loads; nothing is doubtful" in oz.validate(CROSSING)._repr_html_()


def test_a_table_shows_its_first_rows():
    html = oz.Table(b'a,b\n1,"<x>, y"\n')._repr_html_()
    assert "<td>&lt;x&gt;, y</td>" in html and "<th>a</th>" in html
    assert "50 of 60 rows are shown" in oz.Table(b"points\n" + b"1\n" * 60)._repr_html_()


def test_plot(site, points):
    matplotlib = pytest.importorskip("matplotlib")
    matplotlib.use("Agg")
    axes = oz.plot(site, points=points.astype(np.float32), tracks={7: [(0, 0), (5, 5)]})
    assert axes.get_aspect() == 1.0
    texts = {text.get_text() for text in axes.texts}
    assert {zone.name for _, _, zone in site.zones()} | set(site.counter_lines) | {"7"} <= texts
    assert len(axes.patches) == 11
    assert oz.plot(site, ax=axes, labels=False) is axes
    assert axes.figure.canvas.print_figure is not None
    axes.figure.canvas.draw()
    matplotlib.pyplot.close(axes.figure)


def test_a_site_is_geojson(site):
    shapely = pytest.importorskip("shapely.geometry")
    features = site.__geo_interface__["features"]
    assert len(features) == 11
    assert features[0]["properties"] == {"name": "Walkway", "field": 0, "zone": 0, "z_min": 0.2, "z_max": 2.2}
    assert shapely.shape(features[0]["geometry"]).area == pytest.approx(site.zone(0, 0).shape.area)
    assert features[-1]["properties"]["field"] is None
