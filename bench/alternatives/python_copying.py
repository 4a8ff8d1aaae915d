#!/usr/bin/env python3
"""The seven upgrades on the lines that may concern one; the others are copied: python_copying.py DOCUMENT RESULT"""
import json
import sys

from python_json import Upgrades, encode, late_type_of, upgraded_header

CONCERNED = {"HVXJobLT", "HVXJobContainerLT", "HVXMatOrientationLT", "HVXARSurfLT", "MSHMeshPart"}

upgrades = Upgrades(sys.argv[1])
with open(sys.argv[1], encoding="utf-8") as document, open(sys.argv[2], "w", encoding="utf-8") as result:
    result.write(upgraded_header(next(document)))
    for line in document:
        if late_type_of(line) in CONCERNED or "Halvex" in line or "HALVEX" in line:  # the words stand in names
            feature = json.loads(line)
            upgrades.upgrade(feature)
            line = encode(feature) + "\n"
        result.write(line)
