"""The examples, run as their users run them."""
import csv
import gzip
import shutil
import subprocess
import sys

import pytest

import hvxupgrade


@pytest.fixture
def run(source):
    def run(name, *arguments, errors="strict"):
        return subprocess.run([sys.executable, source / "examples/python" / name, *arguments], check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, encoding="utf-8", errors=errors)
    return run


def test_pressures_of_old_and_new_documents(run, source, bracket, tmp_path):
    archive = tmp_path / "archive"
    (archive / "inner").mkdir(parents=True)
    shutil.copy(bracket, archive / "a_old.hvxdoc")
    shutil.copy(source / "tests/golden/bolted_bracket.hvxdoc", archive / "inner/current.hvxdoc")
    (archive / "inner/packed.hvxdoc.gz").write_bytes(gzip.compress(bracket.read_bytes()))
    result = run("pressures.py", archive)
    assert result.returncode == 0, result.stderr
    rows = list(csv.reader(result.stdout.splitlines()))
    expected = [["247", "Pressure.1", "12500000.0"], ["250", "Pressure.2", "-101300.0"], ["571", "Pressure.3", "3000000.0"]]
    assert rows[0] == ["document", "id", "name", "pressure"]
    assert [row[1:] for row in rows[1:]] == expected * 3
    assert [row[0] for row in rows[1::3]] == [str(archive / name) for name in (
        "a_old.hvxdoc", "inner/current.hvxdoc", "inner/packed.hvxdoc.gz")]

    (archive / "b_broken.hvxdoc").write_bytes(bracket.read_bytes()[:-100])
    result = run("pressures.py", archive)
    assert result.returncode == 1 and "b_broken.hvxdoc" in result.stderr
    assert len(result.stdout.splitlines()) == 10


def test_no_name_keeps_the_other_pressures_back(run, bracket, tmp_path):
    shutil.copy(bracket, tmp_path / "a\udce4.hvxdoc")
    shutil.copy(bracket, tmp_path / "b.hvxdoc")
    result = run("pressures.py", tmp_path / "none", tmp_path, errors="surrogateescape")
    assert result.returncode == 1 and f"{tmp_path / 'none'}: the folder cannot be read" in result.stderr
    assert [row[0] for row in csv.reader(result.stdout.splitlines())][1::3] == [
        str(tmp_path / "a\udce4.hvxdoc"), str(tmp_path / "b.hvxdoc")]


def test_steps_are_repaired(run, damaged, tmp_path):
    target = tmp_path / "repaired.hvxdoc"
    result = run("repair_steps.py", damaged, target, "StabilizationFactor=0.001")
    assert result.returncode == 0, result.stderr
    assert "(id 201): StabilizationFactor = 0.001" in result.stdout
    document = hvxupgrade.read(target)
    component, = document.find_all("SAMBasicComponent", father=document[201], name="StabilizationFactor")
    assert component["Parameter"]["Value"] == 0.001
    assert not [each for each in document.check() if each.feature_id == 201]
    assert [each for each in document.check() if each.needs_person]  # what is not a step stays


@pytest.mark.parametrize("setting, told", [
    ("StabilizationFaktor=0.0005", 'no quantity "StabilizationFaktor"; choose from: Time'), ("=1", 'no quantity ""'),
    ("TimePeriod=1,5", 'TimePeriod is a number such as 1, not "1,5"'), ("TimePeriod", 'not ""'), ("TimePeriod=inf", "inf")])
def test_a_setting_that_makes_no_sense_is_refused(run, damaged, tmp_path, setting, told):
    result = run("repair_steps.py", damaged, tmp_path / "repaired.hvxdoc", setting)
    assert result.returncode == 1 and told in result.stderr and "Traceback" not in result.stderr
    assert list(tmp_path.iterdir()) == []
