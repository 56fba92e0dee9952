"""A host loop with live plotting: host_loop.py SITE [FRAMES]. The scan is made up; take yours from a driver."""
import sys

import matplotlib.pyplot as plt
import numpy as np
import numpy.typing as npt

import orvantis_zones as oz


def scan(number: int) -> npt.NDArray[np.float64]:
    """Somebody who walks from (8, 3) to (14, 12), as 200 points."""
    at = np.array([8.0, 3.0, 0.0]) + np.array([6.0, 9.0, 0.0]) * (number % 50) / 50
    body: npt.NDArray[np.float64] = np.random.default_rng(number).uniform((-0.3, -0.3, 0), (0.3, 0.3, 1.8), (200, 3))
    body += at
    return body


def main(document: str, frames: str = "200") -> None:
    site = oz.load(document)
    session = oz.Session(site)
    plt.ion()
    axes = oz.plot(site, labels=False)
    [dots] = axes.plot([], [], ".", markersize=2)
    for number in range(int(frames)):
        points = scan(number)
        frame = session.take(number / 10, points)
        for event in frame.events:
            print(event)
        dots.set_data(points[:, 0], points[:, 1])
        axes.set_title(f"{frame.stamp:.1f} s: {' '.join(frame.outputs or ())}")
        plt.pause(0.001)


if __name__ == "__main__":
    main(*sys.argv[1:])
