"""From a ROS bag or MCAP file to a table: bag_to_table.py SITE RECORDING TABLE.csv. No ROS is needed."""
import sys

import orvantis_zones as oz


def main(document: str, recording: str, table: str) -> None:
    run = oz.evaluate(oz.load(document), oz.Recording([recording]), progress=sys.stderr.isatty())
    run.events.to_csv(table)
    for warning in run.warnings:
        print("warning:", warning, file=sys.stderr)
    occupied = run.zones["occupied"]
    for name, seconds in zip(run.zones["zone_name"], occupied):
        print(f"{name}: occupied {seconds:.3f} s")


if __name__ == "__main__":
    main(*sys.argv[1:])
