"""A document as NumPy arrays."""
import gc

import numpy
import pytest

import hvxupgrade
from hvxupgrade import Kind


def test_columns_say_what_the_features_say(bracket):
    document = hvxupgrade.read(bracket)
    columns = document.columns("Value", "Supports", "NonlinearGeometry", "FirstObject")
    features = list(document)
    assert columns.ids.dtype == numpy.int64 and columns["Value"].dtype == numpy.float64
    assert columns.ids.tolist() == [each.id for each in features]
    assert columns.fathers.tolist() == [each.father.id if each.father else 0 for each in features]
    names = numpy.array(columns.late_type_names)[columns.late_types].tolist()
    assert names == [each.late_type for each in features]
    assert columns.ids[columns.is_of_type("HVXPressure")].tolist() == [247, 250, 571]
    assert not columns.is_of_type("NoSuchType").any()
    for key in columns.values:
        for number, kind, feature in zip(columns[key], columns.kinds[key], features):
            value = feature.get(key)
            if isinstance(value, (float, int)):
                assert number == value
            elif isinstance(value, hvxupgrade.Feature):
                assert number == value.id
            else:
                assert numpy.isnan(number)
            assert (kind == Kind.NONE) == (key not in feature)


def test_kinds_and_numbers(document_file):
    path = document_file(*[{"type": "A", "attributes": {"V": value}} for value in
                           (1.5, 3, True, "7", {"ref": 2}, [1.0])], {"type": "A"})
    columns = hvxupgrade.read(path).columns("V", "Absent")
    assert [Kind(each) for each in columns.kinds["V"]] == [
        Kind.REAL, Kind.INTEGER, Kind.BOOLEAN, Kind.STRING, Kind.LINK, Kind.LIST, Kind.NONE]
    numpy.testing.assert_array_equal(columns["V"], [1.5, 3, 1, numpy.nan, 2, numpy.nan, numpy.nan])
    assert not columns.kinds["Absent"].any() and len(columns) == 7
    assert list(columns) == ["V", "Absent"] and "V" in columns and 0 not in columns
    assert repr(columns) == "<Columns of 7 features: 'V', 'Absent'>"
    with pytest.raises(KeyError):
        columns["NotAskedFor"]


def test_arrays_outlive_their_document(large_file):
    values = hvxupgrade.read(large_file(10_000)).columns("Value")["Value"]
    gc.collect()
    assert values.sum() == 10_000 * 10_001 / 2 + 5_000
    assert len(hvxupgrade.Document().columns("Value")) == 0
