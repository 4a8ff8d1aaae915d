"""What goes wrong is told with its file, line and advice, in the words of Python."""
import copy
import gc
import math
import os
import pickle

import numpy
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
                 lambda: hvxupgrade.read(bracket, progress=7), lambda: hvxupgrade.read_lines(bracket, progress=7),
                 lambda: document.write("x", progress="x"), lambda: document.find_all(attributes={1: 1}),
                 lambda: document.find_all(attributes=["a"]), lambda: hvxupgrade.check(7), lambda: hvxupgrade.diff(7, 7),
                 lambda: setattr(document[1], "alias", None), lambda: setattr(document[1], "up_to_date", None)):
        with pytest.raises(TypeError) as caught:
            call()
        assert "C++" not in str(caught.value)


def test_wrong_flags_and_texts_are_refused_at_once(bracket, tmp_path):
    document, target = hvxupgrade.read(bracket), tmp_path / "new.hvxdoc"

    def write(**keywords):
        document.write(target, **keywords)

    def upgrade_file(**keywords):
        hvxupgrade.upgrade_file(tmp_path / "none.hvxdoc", target, **keywords)  # which is found out later

    def upgrade(**keywords):
        hvxupgrade.Upgrader().upgrade(document, **keywords)
    for call, flags, texts in ((write, ["overwrite"], ["backup_suffix", "compression"]), (upgrade, ["retry"], []),
                               (hvxupgrade.Upgrader, ["use_installed"], ["language"]),
                               (upgrade_file, ["worker", "overwrite", "retry", "use_installed"],
                                ["backup_suffix", "language"])):
        for names, wanted, given in ((flags, "a bool", "yes"), (texts, "a str", b"yes")):
            for name in names:
                with pytest.raises(TypeError, match=f"^{name} is {wanted}, not {type(given).__name__}$"):
                    call(**{name: given})
    for call in (write, upgrade_file):
        for suffix in ("\0.old", "/old"):
            with pytest.raises(hvxupgrade.UsageError) as caught:
                call(backup_suffix=suffix)
            assert caught.value.file == str(target) and caught.value.advice in str(caught.value)
    write(overwrite=numpy.bool_(False))
    assert [each.name for each in tmp_path.iterdir()] == [target.name]


@pytest.mark.parametrize("language", ["zz", "", "../messages/en", "en\0"])
def test_an_unknown_language_is_answered_with_those_there_are(bracket, tmp_path, language):
    for call in (lambda: hvxupgrade.Upgrader(language=language),
                 lambda: hvxupgrade.upgrade_file(bracket, tmp_path / "new.hvxdoc", language=language)):
        with pytest.raises(hvxupgrade.InstallationError) as caught:
            call()
        assert caught.value.problem == f'there are no messages in language "{language}"'
        assert caught.value.advice == "Choose one of: de, en"


def test_paths_of_bytes_are_paths_everywhere(bracket):
    path = os.fsencode(bracket)
    assert hvxupgrade.check(path) == hvxupgrade.check(bracket)
    assert hvxupgrade.diff(path, path) == hvxupgrade.diff(bracket, bracket)


def calls_with_several(bracket, tmp_path):
    """Each parameter that takes several texts or paths, as a function of what it is given."""
    upgrader = hvxupgrade.Upgrader()

    def upgrade(given):
        upgrader.upgrade(hvxupgrade.read(bracket), given)

    def upgrade_file(given):
        hvxupgrade.upgrade_file(bracket, tmp_path / "new.hvxdoc", worker=False, identifiers=given)

    def load_for_file(given):
        hvxupgrade.upgrade_file(bracket, tmp_path / "new.hvxdoc", worker=False, libraries=given)
    return [upgrade, upgrade_file], [hvxupgrade.Upgrader, load_for_file]


def test_one_text_or_path_is_never_taken_by_its_letters(bracket, tmp_path):
    with_identifiers, with_libraries = calls_with_several(bracket, tmp_path)
    for call in with_identifiers:
        for given in ("NoSuch", ["NoSuch"], {"NoSuch"}, (each for each in ["NoSuch"])):
            with pytest.raises(hvxupgrade.UsageError, match='there is no upgrade "NoSuch"'):
                call(given)
        for given in (7, [7], [None]):
            with pytest.raises(TypeError, match="identifiers is a str"):
                call(given)
    library = tmp_path / "none.so"
    for call in with_libraries:
        for given in (library, str(library), os.fsencode(library), [library], (str(each) for each in [library])):
            with pytest.raises(hvxupgrade.InstallationError) as caught:
                call(given)
            assert caught.value.file == str(library)
        for given in (7, [7]):
            with pytest.raises(TypeError, match="libraries is a "):
                call(given)


def test_numbers_that_make_no_sense_are_refused(bracket, tmp_path):
    document = hvxupgrade.read(bracket)
    target = tmp_path / "new.hvxdoc"
    for call in (lambda: hvxupgrade.upgrade_file(bracket, target, timeout=-1),
                 lambda: hvxupgrade.upgrade_file(bracket, target, timeout=0),
                 lambda: hvxupgrade.upgrade_file(bracket, target, timeout=math.nan),
                 lambda: hvxupgrade.upgrade_file(bracket, target, timeout=1, worker=False),
                 lambda: hvxupgrade.upgrade_file(bracket, target, max_features_created=-1),
                 lambda: hvxupgrade.Upgrader().upgrade(document, max_features_created=-1),
                 lambda: hvxupgrade.read(bracket, max_unpacked_bytes=-1), lambda: hvxupgrade.read("a\0b")):
        with pytest.raises(ValueError):
            call()
    for call in (lambda: hvxupgrade.upgrade_file(bracket, target, timeout="10m"),
                 lambda: hvxupgrade.read(bracket, max_unpacked_bytes=1.5)):
        with pytest.raises(TypeError, match="timeout is|max_unpacked_bytes is"):
            call()
    assert len(hvxupgrade.read(bracket, max_unpacked_bytes=2 ** 70)) == 631
    assert not target.exists()


def test_an_empty_name_is_told(bracket, tmp_path):
    document = hvxupgrade.read(bracket)
    for call, kind in ((lambda: hvxupgrade.read(""), hvxupgrade.UnreadableError),
                       (lambda: hvxupgrade.read_lines(""), hvxupgrade.UnreadableError),
                       (lambda: hvxupgrade.read_header(""), hvxupgrade.UnreadableError),
                       (lambda: document.write(""), hvxupgrade.WriteError),
                       (lambda: hvxupgrade.Upgrader([""]), hvxupgrade.InstallationError)):
        with pytest.raises(kind, match="the name of the file is empty") as caught:
            call()
        assert caught.value.advice


def test_errors_name_no_option_of_the_program_and_no_name_of_another_language(bracket, damaged, tmp_path, trouble):
    texts = []

    def tell(call):
        with pytest.raises(hvxupgrade.Error) as caught:
            call()
        assert caught.value.file and caught.value.advice and not caught.value.advice.endswith(".")
        texts.append(str(caught.value))
    gc.collect()  # upgraders of other tests, whose data is another one
    tell(lambda: hvxupgrade.Upgrader(tmp_path))
    tell(lambda: hvxupgrade.Upgrader(data=tmp_path))
    tell(lambda: hvxupgrade.Upgrader(language="xx"))
    upgrader = hvxupgrade.Upgrader([trouble])
    for keywords in ({"identifiers": "No"}, {"max_features_created": 1}, {"progress": lambda done, total: False}):
        tell(lambda keywords=keywords: upgrader.upgrade(hvxupgrade.read(bracket), **keywords))
    tell(lambda: hvxupgrade.read(bracket, progress=lambda done, total: False))
    tell(lambda: hvxupgrade.read(bracket).write(tmp_path / "new.hvxdoc", progress=lambda done, total: False))
    document = hvxupgrade.read(damaged)
    texts += [finding.next_step for finding in document.check()]
    upgrader.upgrade(document, ["UpgFromSpecToComp"])
    texts += [finding.next_step for finding in document.check()]
    assert any("with retry" in text for text in texts)
    for text in texts:
        assert "--" not in text and "hvxupgrade upgrade" not in text and "maxFeatures" not in text


def test_what_is_bound_to_its_process_says_what_to_pass_instead(bracket):
    document = hvxupgrade.read(bracket)
    lines = hvxupgrade.read_lines(bracket)
    for bound in (document, document[1], iter(document), lines, next(lines), hvxupgrade.Upgrader()):
        assert type(bound).__module__ == "hvxupgrade"
        for call in (pickle.dumps, copy.copy, copy.deepcopy):
            with pytest.raises(TypeError, match="cannot be copied or passed to another process: "):
                call(bound)
    for passed in (hvxupgrade.read, hvxupgrade.read_header, hvxupgrade.check, document.check(), document.changes(),
                   document.columns("Value")):
        assert pickle.loads(pickle.dumps(passed)) is not None
