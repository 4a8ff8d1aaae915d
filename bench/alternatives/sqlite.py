#!/usr/bin/env python3
"""The seven upgrades by SQL on a table of lines: sqlite.py DOCUMENT RESULT"""
import json
import sqlite3
import sys

from python_json import DEGREES_OF_RADIAN, NAMES, upgraded_header

LOAD = "INSERT INTO feature SELECT NULL, ?1 ->> '$.id', ?1 ->> '$.type', ?1 ->> '$.father.ref', ?1"
JOBS = "type IN ('HVXJobLT', 'HVXJobContainerLT')"
FREQUENCY = "line ->> '$.attributes.RestartFrequency'"


def rename(place, which):
    name = "line ->> '$.alias'"
    for old, new in NAMES[place]:
        name = f"replace({name}, '{old}', '{new}')"
    return f"UPDATE feature SET line = json_set(line, '$.alias', {name}) WHERE {which} AND line ->> '$.alias' IS NOT NULL;"


UPGRADES = f"""
CREATE INDEX types ON feature (type);

UPDATE feature SET line = json_set(line, '$.attributes.RestartInterval', {FREQUENCY}, '$.attributes.RestartMode', 4)
WHERE {JOBS} AND {FREQUENCY} > 1;
UPDATE feature SET line = json_set(line, '$.attributes.RestartFlag', 1, '$.attributes.RestartMode', 3)
WHERE {JOBS} AND coalesce({FREQUENCY}, 0) = 0
AND coalesce(line ->> '$.attributes.AnalysisCase.ref', iif(type = 'HVXJobContainerLT', father, NULL)) IN
    (SELECT id FROM feature WHERE type = 'AnalysisCase'
     AND line ->> '$.attributes.Solver' = 'Halvex' AND line ->> '$.attributes.AnalysisType' = 3);

UPDATE feature SET line = json_set(line, '$.attributes.Angle', json(in_radians(line -> '$.attributes.Angle')))
WHERE type = 'HVXMatOrientationLT' AND id IN
    (SELECT line ->> '$.attributes.MaterialOrientation.ref' FROM feature WHERE type = 'HVXShellSectionEnhLT');

{rename("AnalysisCase", "type = 'AnalysisCase'")}
{rename("HVXHalvexPropertySetLT", "type = 'HVXHalvexPropertySetLT'")}
{rename("beneath AnalysisCase", "father IN (SELECT id FROM feature WHERE type = 'AnalysisCase')")}

UPDATE feature SET line = json_set(line, '$.upToDate', json('false')) WHERE type = 'HVXARSurfLT'
OR type = 'MSHMeshPart' AND id IN (SELECT line ->> '$.attributes.MeshPart.ref' FROM feature WHERE type = 'HVXARSurfLT');

UPDATE feature SET line = json_set(line, '$.attributes.InputFileFlag', 0, '$.attributes.RunType', 'Full Analysis')
WHERE {JOBS} AND line ->> '$.attributes.RunType' = 'From InputFile';
UPDATE feature SET line = json_set(line, '$.attributes.MemoryUnit', 1) WHERE {JOBS};
"""


def in_radians(angle):
    """In Python, because SQLite writes reals with 15 digits."""
    return json.dumps(json.loads(angle) / DEGREES_OF_RADIAN)


database = sqlite3.connect(":memory:")
database.create_function("in_radians", 1, in_radians, deterministic=True)
database.execute("CREATE TABLE feature (place INTEGER PRIMARY KEY, id INTEGER, type TEXT, father INTEGER, line TEXT)")
with open(sys.argv[1], encoding="utf-8") as document, open(sys.argv[2], "w", encoding="utf-8") as result:
    result.write(upgraded_header(next(document)))
    database.executemany(LOAD, ((line.rstrip("\n"),) for line in document))
    database.commit()
    database.executescript(UPGRADES)
    result.writelines(line + "\n" for line, in database.execute("SELECT line FROM feature ORDER BY place"))
