"""Upgrades in this process, and what check and diff say about them."""
import pytest

import hvxupgrade
from hvxupgrade import FindingKind


def test_an_upgrade_gives_what_the_program_gives(bracket, source, tmp_path):
    upgrader = hvxupgrade.Upgrader()
    document = hvxupgrade.read(bracket)
    pending = upgrader.pending(document)
    result = upgrader.upgrade(document)
    assert len(pending) == 66 and sorted(result.identifiers) == sorted(pending) and result.failures == ()
    assert document.upgrades == list(dict.fromkeys(document.upgrades)) and set(document.upgrades) == set(pending)
    assert upgrader.pending(document) == upgrader.unknown(document) == []
    assert min(result.features_changed, result.features_created, result.features_removed) > 0
    document.write(tmp_path / "result.hvxdoc")
    golden = source / "tests/golden/bolted_bracket.hvxdoc"
    assert not hvxupgrade.diff(tmp_path / "result.hvxdoc", golden)


def test_chosen_upgrades(bracket):
    upgrader = hvxupgrade.Upgrader()
    document = hvxupgrade.read(bracket)
    result = upgrader.upgrade(document, ["UpgradePressureBasicComponents"])
    assert "UpgradePressureBasicComponents" in result.identifiers and len(result.identifiers) < 66
    with pytest.raises(hvxupgrade.UsageError, match="UpgradePressureBasicComponents"):
        upgrader.upgrade(document, ["UpgradePressureBasicComponents"])
    assert len(upgrader.pending(document)) == 66 - len(result.identifiers)
    known = {each.identifier: each for each in upgrader.known}
    assert len(known) == 66 and known["UpgradePressureBasicComponents"].late_types == ("HVXPressure",)
    assert known["UpgradePressureBasicComponents"].purposes[0]


def test_documents_of_a_later_release_are_not_upgraded(bracket, tmp_path):
    newer = tmp_path / "newer.hvxdoc"
    newer.write_text(bracket.read_text(encoding="utf-8").replace('"upgrades":[]', '"upgrades":["Tomorrow"]'))
    document = hvxupgrade.read(newer)
    upgrader = hvxupgrade.Upgrader()
    assert upgrader.unknown(document) == ["Tomorrow"]
    assert hvxupgrade.read_header(newer).upgrades[0].identifier == "Tomorrow"
    with pytest.raises(hvxupgrade.NewerDocumentError):
        upgrader.upgrade(document)
    assert len(document) == 631


def test_failures_and_what_is_left_behind(damaged):
    document = hvxupgrade.read(damaged)
    assert {each.kind for each in document.check()} >= {FindingKind.PENDING}
    upgrader = hvxupgrade.Upgrader()
    failures = upgrader.upgrade(document).failures
    assert ("UpgFromSpecToComp", 201, "HVXGeneralStaticStepLT") in [
        (each.identifier, each.feature_id, each.late_type) for each in failures]
    assert all(each.code < 0 for each in failures)
    finding, = (each for each in document.check() if each.feature_id == 201)
    assert finding.kind is FindingKind.LEFT_BEHIND and finding.needs_person
    assert finding.keys == ("StepStabilizationFactor_param",)
    assert "StepStabilizationFactor_param" in finding.explanation and "StepStabilizationFactor_param" in finding.remedy
    assert finding.next_step.startswith(finding.remedy)
    document[201]["StepStabilizationFactor_param"] = document[215]
    upgrader.upgrade(document, retry=True)
    assert not [each for each in document.check() if each.feature_id == 201]


def test_check_and_diff_take_files_and_documents(bracket, damaged):
    document = hvxupgrade.read(bracket)
    assert hvxupgrade.check(bracket) == hvxupgrade.check(document)
    assert not hvxupgrade.diff(bracket, document) and not hvxupgrade.diff(document, document)
    document[249]["Value"] = 1.0
    document.remove(document[250])
    difference = hvxupgrade.diff(bracket, document)
    assert difference and [each.id for each in difference.changed if each.late_type == "Parameter"] == [249]
    field, = (field for each in difference.changed if each.id == 249 for field in each.fields)
    assert field == hvxupgrade.results.ChangedField("attributes", "Value", "12500000.0", "1.0")
    assert [each.id for each in difference.removed] == [250, 251, 252, 253]
    assert {each.kind for each in hvxupgrade.check(damaged)} >= {FindingKind.PENDING}
