#!/usr/bin/env python3
"""The seven upgrades on every line as JSON: python_json.py DOCUMENT RESULT

For documents of the oldest release without damage, where a container of jobs stands directly beneath its case.
"""
import json
import math
import pathlib
import sys

NAMES = json.loads(pathlib.Path(__file__).with_name("names.json").read_text(encoding="utf-8"))
DEGREES_OF_RADIAN = 180 / math.pi

encode = json.JSONEncoder(ensure_ascii=False, separators=(",", ":")).encode


def late_type_of(line):
    """The type without parsing the line: in every feature it stands second. Of the header, something else."""
    return line.split('"', 6)[5]


def upgraded_header(line):
    header = json.loads(line)
    header["upgrades"] = NAMES["identifiers"]
    return encode(header) + "\n"


def target(feature, key):
    link = feature.get("attributes", {}).get(key)
    return link and link["ref"]


def rename(feature, place):
    if "alias" in feature:
        for old, new in NAMES[place]:
            feature["alias"] = feature["alias"].replace(old, new)


def mark_out_of_date(feature):
    later = [(key, feature.pop(key)) for key in ("physicalType", "attributes", "modes") if key in feature]
    feature["upToDate"] = False
    feature.update(later)


class Upgrades:
    """The upgrades, and what they must know of other features, wherever those stand."""

    def __init__(self, source):
        self.cases, self.explicit_cases = set(), set()
        self.orientations, self.mesh_parts = set(), set()
        with open(source, encoding="utf-8") as document:
            for line in document:
                if late_type_of(line) in ("AnalysisCase", "HVXShellSectionEnhLT", "HVXARSurfLT"):
                    self.note(json.loads(line))

    def note(self, feature):
        if feature["type"] == "AnalysisCase":
            self.cases.add(feature["id"])
            attributes = feature.get("attributes", {})
            if attributes.get("Solver") == "Halvex" and attributes.get("AnalysisType") == 3:
                self.explicit_cases.add(feature["id"])
        elif feature["type"] == "HVXShellSectionEnhLT":
            self.orientations.add(target(feature, "MaterialOrientation"))
        else:
            self.mesh_parts.add(target(feature, "MeshPart"))

    def upgrade(self, feature):
        late_type = feature["type"]
        father = feature["father"]["ref"] if "father" in feature else None
        if late_type == "HVXJobLT" or late_type == "HVXJobContainerLT":
            self.upgrade_job(feature, father)
        elif late_type in NAMES:
            rename(feature, late_type)
        elif late_type == "HVXMatOrientationLT" and feature["id"] in self.orientations:
            feature["attributes"]["Angle"] /= DEGREES_OF_RADIAN
        elif late_type == "HVXARSurfLT" or (late_type == "MSHMeshPart" and feature["id"] in self.mesh_parts):
            mark_out_of_date(feature)
        if father in self.cases:
            rename(feature, "beneath AnalysisCase")

    def upgrade_job(self, job, father):
        case = target(job, "AnalysisCase")
        if case is None and job["type"] == "HVXJobContainerLT":
            case = father
        attributes = job.setdefault("attributes", {})
        frequency = attributes.get("RestartFrequency", 0)
        if frequency > 1:
            attributes |= {"RestartInterval": frequency, "RestartMode": 4}
        elif frequency == 0 and case in self.explicit_cases:
            attributes |= {"RestartFlag": 1, "RestartMode": 3}
        if attributes.get("RunType") == "From InputFile":
            attributes |= {"InputFileFlag": 0, "RunType": "Full Analysis"}
        attributes["MemoryUnit"] = 1


def main():
    upgrades = Upgrades(sys.argv[1])
    with open(sys.argv[1], encoding="utf-8") as document, open(sys.argv[2], "w", encoding="utf-8") as result:
        result.write(upgraded_header(next(document)))
        for line in document:
            feature = json.loads(line)
            upgrades.upgrade(feature)
            result.write(encode(feature) + "\n")


if __name__ == "__main__":
    main()
