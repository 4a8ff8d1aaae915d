"""Callbacks: they are told how far it is, and what they raise comes out."""
import os
import signal
import threading

import numpy
import pytest

import hvxupgrade


class Interruption(Exception):
    pass


def raising(done, total):
    raise Interruption(done)


def calls_on(path, tmp_path):
    """Each call that takes a callback, as a function of it."""
    def upgrade(progress):
        return hvxupgrade.Upgrader().upgrade(hvxupgrade.read(path), progress=progress)

    def write(progress):
        return hvxupgrade.read(path).write(tmp_path / "written.hvxdoc", progress=progress)

    def lines(progress):
        return list(hvxupgrade.read_lines(path, progress=progress))
    return [lambda progress: hvxupgrade.read(path, progress=progress), lines, upgrade, write]


def test_progress_grows_to_its_total(bracket, tmp_path):
    for call in calls_on(bracket, tmp_path):
        told = []
        call(lambda done, total: told.append((done, total)))
        assert told and told == sorted(told)
        assert all(done <= total or total == 0 for done, total in told)


def test_what_a_callback_raises_comes_out_as_itself(bracket, tmp_path):
    for call in calls_on(bracket, tmp_path):
        with pytest.raises(Interruption):
            call(raising)
        for stop in (False, numpy.bool_(False)):
            with pytest.raises(hvxupgrade.StoppedError):
                call(lambda done, total, stop=stop: stop)
        assert call(lambda done, total: 0) is not NotImplemented  # only False stops
        (tmp_path / "written.hvxdoc").unlink(missing_ok=True)
    assert list(tmp_path.iterdir()) == []


def test_a_document_whose_upgrade_was_stopped_is_only_looked_at(bracket, tmp_path):
    document = hvxupgrade.read(bracket)
    upgrader = hvxupgrade.Upgrader()
    with pytest.raises(hvxupgrade.UsageError):
        upgrader.upgrade(document, ["NoSuchUpgrade"])
    document.write(tmp_path / "unchanged.hvxdoc")  # nothing had begun

    def stop_at_the_end(done, total):
        return done < total
    with pytest.raises(hvxupgrade.StoppedError):
        upgrader.upgrade(document, progress=stop_at_the_end)
    assert document[247].alias == "Pressure.1"
    for use in (lambda: document.write(tmp_path / "half.hvxdoc"), lambda: upgrader.upgrade(document)):
        with pytest.raises(hvxupgrade.UsageError):
            use()
    assert [each.name for each in tmp_path.iterdir()] == ["unchanged.hvxdoc"]


def test_a_document_that_is_worked_on_is_for_nobody_else(bracket):
    document = hvxupgrade.read(bracket)
    feature = document[247]
    refused = []

    def use(done, total):
        for call in (lambda: len(document), lambda: document[247], document.check):
            with pytest.raises(hvxupgrade.UsageError) as caught:
                call()
            assert caught.value.file == str(bracket)
            refused.append(caught.value)
        assert "being worked on" in repr(document) and "being worked on" in repr(feature)
    hvxupgrade.Upgrader().upgrade(document, progress=use)
    assert refused and len(document) > 631


def test_ctrl_c_stops_what_runs_without_a_callback(large_file):
    path = large_file(200_000)
    ring = threading.Timer(0.01, os.kill, [os.getpid(), signal.SIGINT])
    with pytest.raises(KeyboardInterrupt):
        ring.start()
        for _ in range(100):
            hvxupgrade.read(path)


def test_other_threads_run_meanwhile(large_file):
    path = large_file(200_000)
    reading = threading.Event()
    reading.set()
    counted = []

    def count():
        while reading.is_set():
            counted.append(None)
    thread = threading.Thread(target=count)
    thread.start()
    counted.clear()
    document = hvxupgrade.read(path)
    reading.clear()
    thread.join()
    assert len(document) == 200_000 and len(counted) > 1000


def test_two_threads_upgrade_two_documents(source, tmp_path):
    upgrader = hvxupgrade.Upgrader()
    results = {}

    def upgrade_often(name):
        made = set()
        for number in range(10):
            document = hvxupgrade.read(source / f"examples/{name}.hvxdoc")
            upgrader.upgrade(document)
            target = tmp_path / f"{name}{number}.hvxdoc"
            document.write(target)
            made.add(target.read_bytes())
        results[name] = made
    names = ("bolted_bracket", "heated_pipe")
    threads = [threading.Thread(target=upgrade_often, args=[name]) for name in names]
    for each in threads:
        each.start()
    for each in threads:
        each.join()
    assert results == {name: {(source / f"tests/golden/{name}.hvxdoc").read_bytes()} for name in names}
