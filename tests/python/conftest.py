"""What the tests of the Python module share. ctest names the module and a library whose upgrades end badly; by hand:
PYTHONPATH=build/python HVX_TROUBLE_LIBRARY=build/lib/libTroubleUpgrades.so /usr/bin/python3 -m pytest tests/python
"""
import json
import os
import pathlib

import pytest

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent


@pytest.fixture
def bracket():
    """A document of the oldest release."""
    return SOURCE / "examples/bolted_bracket.hvxdoc"


@pytest.fixture
def damaged():
    """The same with features that upgrades leave behind."""
    return SOURCE / "tests/damaged/bolted_bracket.hvxdoc"


@pytest.fixture
def source():
    return SOURCE


@pytest.fixture
def trouble():
    """A library whose upgrades loop, crash and fail."""
    return os.environ["HVX_TROUBLE_LIBRARY"]


@pytest.fixture
def document_file(tmp_path):
    """Writes a document of these features, given as dicts without ids, and gives its path."""
    def write(*features, name="document.hvxdoc", announced=None):
        header = {"format": "hvxdoc", "version": 1, "upgrades": [],
                  "features": len(features) if announced is None else announced}
        lines = [header] + [{"id": number, **each} for number, each in enumerate(features, start=1)]
        path = tmp_path / name
        path.write_text("".join(json.dumps(line) + "\n" for line in lines), encoding="utf-8")
        return path
    return write


@pytest.fixture
def large_file(tmp_path):
    """Writes a document of that many features, 125 bytes each, and gives its path."""
    def write(count):
        path = tmp_path / f"large{count}.hvxdoc"
        with open(path, "w", encoding="utf-8") as file:
            file.write(f'{{"format":"hvxdoc","version":1,"upgrades":[],"features":{count}}}\n')
            for number in range(1, count + 1):
                file.write(f'{{"id":{number},"type":"Parameter","name":"Parameter.{number}","attributes":'
                           f'{{"Magnitude":"PRESSURE","Value":{number}.5,"Comment":"a text of some length"}}}}\n')
        return path
    return write
