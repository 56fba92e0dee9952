"""Counts people over a line: count_people.py SITE TRACKS LINE."""
import sys

import orvantis_zones as oz


def main(document: str, tracks: str, line: str) -> None:
    session = oz.Session(oz.load(document))
    for stamp, objects in oz.read_tracks(tracks):
        people = objects[objects["class"] == "person"]
        for event in session.take(stamp, objects=people).events:
            if isinstance(event, oz.CrossingEvent) and event.line == line:
                print(f"{event.met:.2f} s: person {event.track} to the {event.to}")
    tallies = session.tallies()
    for name, kind, left, right in zip(*(tallies[key] for key in ("line", "class", "to_left", "to_right"))):
        if name == line and kind == "*":
            print(f"{line}: {left} to the left, {right} to the right")


if __name__ == "__main__":
    main(*sys.argv[1:])
