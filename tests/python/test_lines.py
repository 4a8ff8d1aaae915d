"""Documents read line by line, in memory that does not depend on their size."""
import pathlib
import subprocess
import sys

import pytest

import hvxupgrade


def test_lines_say_what_the_document_says(bracket):
    document = hvxupgrade.read(bracket)
    with hvxupgrade.read_lines(bracket) as lines:
        assert lines.header == hvxupgrade.read_header(bracket) == hvxupgrade.Header(1, (), 631)
        for count, (line, feature) in enumerate(zip(lines, document), start=2):
            assert line.line == count
            assert (line.id, line.late_type, line.name, line.alias, line.up_to_date, line.physical_type) == (
                feature.id, feature.late_type, feature.name, feature.alias, feature.up_to_date, feature.physical_type)
            assert line.father == (feature.father.id if feature.father else None)
            assert line.container == (feature.container.id if feature.container else None)
            assert line.keys() == list(line) == feature.keys()
            assert dict(line.items()) == {key: as_links(value) for key, value in feature.items()}
            assert [line.mode(key) for key in line] == [feature.mode(key) for key in feature]
        assert count == 632
        assert next(lines, None) is None


def as_links(value):
    if isinstance(value, hvxupgrade.Feature):
        return hvxupgrade.Link(value.id)
    return [as_links(each) for each in value] if isinstance(value, list) else value


def test_a_fault_is_met_behind_the_lines_before_it(document_file):
    path = document_file({"type": "A"}, {"type": "B"}, {"kind": "C"}, {"type": "D"})
    lines = hvxupgrade.read_lines(path)
    assert [next(lines).late_type, next(lines).late_type] == ["A", "B"]
    with pytest.raises(hvxupgrade.InvalidDocumentError) as caught:
        next(lines)
    assert caught.value.line == 4
    assert list(lines) == []
    with pytest.raises(hvxupgrade.InvalidDocumentError):  # fewer than are announced
        list(hvxupgrade.read_lines(document_file({"type": "A"}, announced=2)))


def test_closed_lines_are_at_their_end(bracket):
    lines = hvxupgrade.read_lines(bracket)
    first = next(lines)
    with pytest.raises(KeyError), lines:
        first["NoSuchKey"]
    assert list(lines) == [] and first.id == 1


def test_memory_does_not_depend_on_the_size(large_file):
    peaks = [peak_of_reading(large_file(count)) for count in (1_000, 400_000)]  # of 0.1 and 50 MB
    assert peaks[1] - peaks[0] < 4_000, peaks


def peak_of_reading(path):
    """The most memory of a process that goes through the document, in KB."""
    script = ("import sys, hvxupgrade, resource\n"
              "total = sum(line['Value'] for line in hvxupgrade.read_lines(sys.argv[1]))\n"
              "print(total, resource.getrusage(resource.RUSAGE_SELF).ru_maxrss)\n")
    output = subprocess.run([sys.executable, "-c", script, path], check=True, stdout=subprocess.PIPE, text=True).stdout
    count = int(pathlib.Path(path).stem.removeprefix("large"))
    total, peak = output.split()
    assert float(total) == count * (count + 1) / 2 + count / 2
    return int(peak)
