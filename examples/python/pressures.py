#!/usr/bin/python3
"""All pressures of an archive in one table: pressures.py FOLDER... > pressures.csv

A row per pressure: document, id, name and value (empty where the document has none). Documents of old releases and
current ones are read as they are, plain or compressed, line by line, so that their size does not matter.
"""
import csv
import os
import pathlib
import sys

import hvxupgrade

ENDINGS = (".hvxdoc", ".hvxdoc.gz", ".hvxdoc.zst")


def documents_in(folder):
    """Raises OSError where there is no such folder."""
    os.scandir(folder).close()
    return sorted(path for path in pathlib.Path(folder).rglob("*") if path.name.endswith(ENDINGS))


def pressures_of(path):
    """Pairs of a pressure's line and its value."""
    with hvxupgrade.read_lines(path) as lines:
        pressures = {line.id: line for line in lines if line.late_type == "HVXPressure"}
    if not pressures:
        return []
    # An old pressure links to its parameter. It may stand before the pressure, so the document is read again.
    linked = {}
    for pressure in pressures.values():
        parameter = pressure.get("pressure_param")
        if isinstance(parameter, hvxupgrade.Link):
            linked.setdefault(parameter.id, []).append(pressure.id)
    values = {}
    with hvxupgrade.read_lines(path) as lines:
        for line in lines:
            for pressure in linked.get(line.id, ()):
                values[pressure] = line.get("Value")
            # A current one has its value in a component beneath it.
            if line.father in pressures and line.late_type == "SAMBasicComponent" and line.name == "Pressure":
                values[line.father] = line.get("Values")
    return [(pressure, values.get(pressure.id)) for pressure in pressures.values()]


def main(folders):
    # Names of files need not be UTF-8: they come out as they are.
    for stream in (sys.stdout, sys.stderr):
        stream.reconfigure(encoding="utf-8", errors="surrogateescape")
    table = csv.writer(sys.stdout)
    table.writerow(["document", "id", "name", "pressure"])
    unread = 0
    for folder in folders:
        try:
            documents = documents_in(folder)
        except OSError as error:
            print(f"{folder}: the folder cannot be read ({error.strerror}). Check its name", file=sys.stderr)
            unread += 1
            continue
        for path in documents:
            try:
                table.writerows([path, pressure.id, pressure.alias, value] for pressure, value in pressures_of(path))
            except hvxupgrade.Error as error:
                print(error, file=sys.stderr)
                unread += 1
    return 1 if unread else 0


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1:]))
