"""Two sites over the same recording: compare_sites.py BEFORE AFTER FOLDER. Says which events are new, and which gone."""
import sys
from collections import Counter

import orvantis_zones as oz


def events(document: str, recording: oz.Recording) -> Counter[str]:
    site = oz.load(document)
    session = oz.Session(site)
    lines: Counter[str] = Counter()
    for stamp, points, objects in recording:
        lines.update(str(event) for event in session.take(stamp, points, objects).events)
    return lines


def main(before: str, after: str, folder: str) -> None:
    recording = oz.Recording.from_folder(folder)
    old, new = events(before, recording), events(after, recording)
    for mark, changes in (("-", old - new), ("+", new - old)):
        for line in sorted(changes):
            print(mark, line.strip())
    print(f"{sum(old.values())} events before, {sum(new.values())} after")


if __name__ == "__main__":
    main(*sys.argv[1:])
