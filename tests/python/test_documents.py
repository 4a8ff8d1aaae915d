"""Documents and features: walked over, queried, changed, and kept alive."""
import gc
import weakref

import numpy
import pytest

import hvxupgrade


def test_a_document_is_a_collection_of_features(bracket):
    document = hvxupgrade.read(bracket)
    features = list(document)
    assert len(features) == len(document) == 631
    assert [each.id for each in features[:3]] == [1, 2, 3]
    assert document[247] in document and 247 in document and 100000 not in document
    assert numpy.int64(247) in document and document[numpy.int64(247)] == document[247]
    for no_id in (100000, 0, -1, 2 ** 70, -2 ** 70):
        assert no_id not in document and document.get(no_id) is None and document.get(no_id, "none") == "none"
        with pytest.raises(KeyError) as caught:
            document[no_id]
        assert caught.value.args == (no_id,)
    for no_number in ("247", 247.0, None, [247]):
        assert no_number not in document
        for call in (document.__getitem__, document.get):
            with pytest.raises(TypeError, match="the id of a feature is an int, not " + type(no_number).__name__):
                call(no_number)
    assert document.display_name == "bolted_bracket.hvxdoc"
    assert document.file == str(bracket) and hvxupgrade.Document("Draft").file is None
    assert document.upgrades == []


def test_features_tell_what_they_are(bracket):
    document = hvxupgrade.read(bracket)
    pressure = document[247]
    assert (pressure.late_type, pressure.alias, pressure.name) == ("HVXPressure", "Pressure.1", "")
    assert pressure.father.id == 180 and pressure.container.id == 1
    assert [each.id for each in pressure.sons] == [248, 249]
    assert pressure.keys() == list(pressure) == ["Supports", "pressure_param"]
    assert pressure["pressure_param"] == document[249]
    assert dict(pressure.items()) == {"Supports": [document[248]], "pressure_param": document[249]}
    assert pressure.document is document
    assert document[1].father is None
    assert {pressure, document[247]} == {pressure}
    assert repr(pressure) == "<Feature 247 HVXPressure 'Pressure.1'>"
    assert repr(document) == "<Document 'bolted_bracket.hvxdoc' of 631 features>"
    assert pressure != 247 and pressure != hvxupgrade.read(bracket)[247]


def test_queries_find_what_fits_in_document_order(bracket):
    document = hvxupgrade.read(bracket)
    assert [each.id for each in document.of_type("HVXPressure")] == [247, 250, 571]
    assert [each.id for each in document.where(lambda each: each.alias.startswith("Pressure."))] == [247, 250, 571]
    assert [each.id for each in document.find_all("Parameter", Magnitude="PRESSURE", Value=3000000)] == [573]
    assert [each.id for each in document.find_all(father=document[247], name="Pressure")] == [249]
    assert [each.id for each in document.find_all(attributes={"Supports": [document[248]]})] == [247]
    assert list(document.find_all("HVXPressure", alias="Pressure.4")) == []
    assert document.of_type("NoSuchType") == list(document.find_all(NoSuchKey=None)) == []
    with pytest.raises(ZeroDivisionError):
        list(document.where(lambda each: 1 / 0))


@pytest.mark.parametrize("value", [
    True, False, 1, 1.0, -0.0, 2 ** 63 - 1, -2 ** 63, 1e-320, "", "Öl \"x\"\n\u2028", None, [],
    [1, 1.0, True, None, "a", [[0.3, 0]]]], ids=repr)
def test_values_keep_their_kind_through_a_file(tmp_path, value):
    document = hvxupgrade.Document()
    feature = document.create("Anything", alias="It")
    feature["Value"] = value
    document.write(tmp_path / "it.hvxdoc")
    read = hvxupgrade.read(tmp_path / "it.hvxdoc")[feature.id]
    with hvxupgrade.read_lines(tmp_path / "it.hvxdoc") as lines:
        line = next(lines)
    for found in (feature["Value"], read["Value"], line["Value"]):
        assert found == value and repr(found) == repr(value)  # 1, 1.0 and True are equal


def test_what_no_document_holds_is_refused(bracket):
    document = hvxupgrade.read(bracket)
    feature = document[247]
    before = feature.items()
    endless = []
    endless.append(endless)
    for value, error in ((2 ** 63, OverflowError), (float("nan"), hvxupgrade.UsageError), (object(), TypeError),
                         ({}, TypeError), (endless, ValueError), ("\ud800", UnicodeEncodeError),
                         (hvxupgrade.read(bracket)[249], hvxupgrade.UsageError)):
        with pytest.raises(error):
            feature["Value"] = value
    with pytest.raises(hvxupgrade.UsageError):
        feature[""] = 1
    with pytest.raises(hvxupgrade.UsageError):
        document.create("")
    assert feature.items() == before


def test_attributes_are_changed_as_in_a_dict(bracket):
    document = hvxupgrade.read(bracket)
    feature = document[249]
    feature["Value"] = 2.5e6
    feature["Added"] = (document[247], hvxupgrade.Link(1))
    assert feature.keys()[-1] == "Added" and feature["Added"] == [document[247], document[1]]
    del feature["Magnitude"]
    assert 1 not in feature
    assert "Magnitude" not in feature and feature.get("Magnitude", 7) == 7 and feature.mode("Magnitude") == 0
    for access in (lambda: feature["Magnitude"], lambda: feature.__delitem__("Magnitude")):
        with pytest.raises(KeyError, match="Magnitude"):
            access()
    feature.alias, feature.up_to_date = "Mine", False
    changes = document.changes()
    assert [each.id for each in changes.changed] == [249]
    assert {(each.field, each.key) for each in changes.changed[0].fields} >= {
        ("attributes", "Value"), ("attributes", "Magnitude"), ("alias", None)}


def test_created_and_removed_features(bracket):
    document = hvxupgrade.read(bracket)
    son = document.create("Parameter", "New", father=document[247])
    assert son.father == document[247] and document[247].sons[-1] == son
    linking = document[251]
    linking["Mine"] = son
    document.remove(document[247])
    assert len(document) == 631 + 1 - 4 and son.removed and son not in document
    assert linking.get("Mine") is None
    assert son.id and repr(son) == f"<Feature {son.id}, removed>"
    for use in (lambda: son.late_type, lambda: son["Value"], lambda: son.father, lambda: document.remove(son),
                lambda: document.create("Parameter", father=son), lambda: linking.__setitem__("Mine", son)):
        with pytest.raises(hvxupgrade.UsageError):
            use()
    assert [each.id for each in document.changes().removed] == [247, 248, 249]


def test_iteration_bears_changes(document_file):
    document = hvxupgrade.read(document_file(*[{"type": "Parameter"}] * 5))
    met = []
    for feature in document:
        met.append(feature.id)
        if feature.id == 2:
            document.remove(feature)
            document.create("Parameter")
    assert met == [1, 2, 3, 4, 5, 6]


def test_features_keep_their_document_alive(bracket):
    feature = hvxupgrade.read(bracket)[247]
    gc.collect()
    assert [each.alias for each in feature.document.of_type("HVXPressure")] == ["Pressure.1", "Pressure.2", "Pressure.3"]
    iterator = iter(hvxupgrade.read(bracket))
    gc.collect()
    assert len(list(iterator)) == 631


def test_documents_outlive_their_upgraders_and_are_freed(bracket):
    upgrader = hvxupgrade.Upgrader()
    document = hvxupgrade.read(bracket)
    upgrader.upgrade(document)
    gone = weakref.ref(upgrader), weakref.ref(document)
    del upgrader
    gc.collect()
    assert gone[0]() is None
    assert all(each.late_type and each.sons is not None for each in document)  # of late types that the library extends
    assert hvxupgrade.Upgrader().pending(document) == []
    del document
    gc.collect()
    assert gone[1]() is None


def test_written_whole_or_not_at_all(bracket, tmp_path):
    document = hvxupgrade.read(bracket)
    target = tmp_path / "result.hvxdoc"
    document.write(target)
    assert target.read_bytes() == bracket.read_bytes()
    with pytest.raises(hvxupgrade.WriteError) as caught:
        document.write(target)
    assert caught.value.file == str(target) and caught.value.advice
    document[249]["Value"] = 1.0
    document.write(target, overwrite=True, backup_suffix=".old")
    assert (tmp_path / "result.hvxdoc.old").read_bytes() == bracket.read_bytes()
    assert hvxupgrade.read(target)[249]["Value"] == 1.0
    for name, compression, magic in (("a.hvxdoc.gz", None, b"\x1f\x8b"), ("b.hvxdoc", "zstd", b"\x28\xb5\x2f\xfd"),
                                     ("c.hvxdoc.gz", "none", b'{"')):
        document.write(tmp_path / name, compression=compression)
        assert (tmp_path / name).read_bytes().startswith(magic)
        assert len(hvxupgrade.read(tmp_path / name)) == 631
    with pytest.raises(ValueError):
        document.write(tmp_path / "d.hvxdoc", compression="zip")


def test_a_document_that_was_made_has_the_file_that_it_was_written_to(tmp_path):
    document = hvxupgrade.Document("Draft")
    for name in ("a.hvxdoc", "b.hvxdoc"):
        document.write(tmp_path / name)
        assert document.file == str(tmp_path / name)
    odd = tmp_path / "\udce4.hvxdoc"
    document.write(odd)
    read = hvxupgrade.read(odd)
    assert read.file == str(odd) and read.display_name == odd.name and repr(odd.name) in repr(read)
