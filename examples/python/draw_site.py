"""Draws a site over a scan: draw_site.py SITE SCAN PICTURE (.svg, or .png with matplotlib)."""
import pathlib
import sys

import orvantis_zones as oz


def main(document: str, scan: str, picture: str) -> None:
    site = oz.load(document)
    points = oz.read_points(scan)
    if picture.endswith(".svg"):
        pathlib.Path(picture).write_text(site.to_svg(points, title=pathlib.Path(document).name))
    else:
        axes = oz.plot(site, points=points)
        axes.figure.savefig(picture, dpi=150)
    counts = site.count(points)
    for field, slot, zone in site.zones():
        print(f"{zone.name}: {counts.inside[field, slot]} points")


if __name__ == "__main__":
    main(*sys.argv[1:])
