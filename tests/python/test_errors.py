"""What goes wrong is told with its file, line and advice."""
import pickle

import pytest

import hvxupgrade


def test_an_error_names_file_line_and_advice(document_file):
    path = document_file({"type": "A"}, {"type": "B", "father": {"ref": 9}})
    with pytest.raises(hvxupgrade.InvalidDocumentError) as caught:
        hvxupgrade.read(path)
    error = caught.value
    assert isinstance(error, hvxupgrade.Error) and error.kind == "invalid"
    assert (error.file, error.line) == (str(path), 3)
    assert error.problem and error.advice
    assert str(path) in str(error) and error.problem in str(error) and error.advice in str(error)
    again = pickle.loads(pickle.dumps(error))
    assert type(again) is type(error) and vars(again) == vars(error) and str(again) == str(error)


def test_each_kind_has_its_class(tmp_path, document_file, bracket):
    newer = tmp_path / "newer.hvxdoc"
    newer.write_text('{"format":"hvxdoc","version":3,"upgrades":[],"features":0}\n')
    taken = document_file({"type": "A"})
    changing = hvxupgrade.read(taken)
    taken.write_text(taken.read_text().replace("A", "B"))
    for call, kind in ((lambda: hvxupgrade.read(tmp_path / "none.hvxdoc"), hvxupgrade.UnreadableError),
                       (lambda: hvxupgrade.read_header(tmp_path), hvxupgrade.UnreadableError),
                       (lambda: hvxupgrade.read_lines(newer), hvxupgrade.NewerDocumentError),
                       (lambda: hvxupgrade.read(newer), hvxupgrade.NewerDocumentError),
                       (lambda: changing.write(taken, overwrite=True), hvxupgrade.ChangedError),
                       (lambda: hvxupgrade.read(bracket).write(tmp_path / "no/folder.hvxdoc"), hvxupgrade.WriteError),
                       (lambda: hvxupgrade.Upgrader(["none.so"]), hvxupgrade.InstallationError),
                       (lambda: hvxupgrade.Upgrader(data=tmp_path), hvxupgrade.InstallationError)):
        with pytest.raises(kind) as caught:
            call()
        assert type(caught.value) is kind and caught.value.advice, kind


def test_file_names_need_not_be_utf_8(tmp_path):
    with pytest.raises(hvxupgrade.UnreadableError) as caught:
        hvxupgrade.read(tmp_path / "\udce4.hvxdoc")
    assert caught.value.file.endswith("\udce4.hvxdoc")


def test_wrong_arguments_are_type_errors(bracket):
    document = hvxupgrade.read(bracket)
    for call in (lambda: hvxupgrade.read(7), lambda: document["247"], lambda: document.of_type(7),
                 lambda: document.where("x"), lambda: document.remove(247), lambda: document.columns(1),
                 lambda: hvxupgrade.read(bracket, progress=7), lambda: hvxupgrade.Upgrader().upgrade(document, "One")):
        with pytest.raises(TypeError):
            call()
