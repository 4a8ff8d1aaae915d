"""Files upgraded in a process of their own: what crashes or hangs there leaves everything as it was."""
import math
import os
import signal
import subprocess
import sys
import tempfile
import threading
import time

import pytest

import hvxupgrade


def listing(folder):
    return {path.name: path.read_bytes() for path in folder.iterdir()}


def test_a_worker_gives_what_this_process_gives(bracket, tmp_path):
    told = []
    here = hvxupgrade.upgrade_file(bracket, tmp_path / "here.hvxdoc", worker=False)
    there = hvxupgrade.upgrade_file(bracket, str(tmp_path / "there.hvxdoc"), timeout=60,
                                    progress=lambda done, total: told.append((done, total)))
    assert here == there and len(there.identifiers) == 66
    assert (tmp_path / "here.hvxdoc").read_bytes() == (tmp_path / "there.hvxdoc").read_bytes()
    assert told and told == sorted(told)
    for timeout in (math.inf, 1e300, 10 ** 8):  # all longer than the system waits at a time
        (tmp_path / "there.hvxdoc").unlink()
        assert hvxupgrade.upgrade_file(bracket, tmp_path / "there.hvxdoc", timeout=timeout) == here


def test_options_reach_the_worker(bracket, tmp_path):
    source = tmp_path / "document.hvxdoc"
    source.write_bytes(bracket.read_bytes())
    with pytest.raises(hvxupgrade.WriteError):
        hvxupgrade.upgrade_file(source, source)
    result = hvxupgrade.upgrade_file(source, source, overwrite=True, backup_suffix=".old",
                                     identifiers=["UpgradePressureBasicComponents"])
    assert "UpgradePressureBasicComponents" in result.identifiers
    assert (tmp_path / "document.hvxdoc.old").read_bytes() == bracket.read_bytes()
    with pytest.raises(hvxupgrade.UsageError):
        hvxupgrade.upgrade_file(source, source, overwrite=True, identifiers=["UpgradePressureBasicComponents"])
    with pytest.raises(hvxupgrade.UnreadableError) as caught:
        hvxupgrade.upgrade_file(tmp_path / "none.hvxdoc", source)
    assert caught.value.file == str(tmp_path / "none.hvxdoc") and caught.value.advice


def test_a_crash_is_an_error_with_advice(bracket, tmp_path, trouble):
    before = listing(tmp_path)
    with pytest.raises(hvxupgrade.WorkerError) as caught:
        hvxupgrade.upgrade_file(bracket, tmp_path / "result.hvxdoc", identifiers=["Crash"], libraries=[trouble])
    error = caught.value
    assert error.exit_code == -signal.SIGABRT and "SIGABRT" in error.problem
    assert error.file == str(bracket) and error.advice and error.kind == "worker"
    assert listing(tmp_path) == before


@pytest.mark.parametrize("does, told", [("abort()", "signal 6 (SIGABRT)"), ("_exit(0)", "code 0"),
                                        ("for (;;) pause()", "longer than 3 seconds")])
def test_a_library_that_ends_its_process_when_it_is_loaded_is_named(bracket, tmp_path, does, told):
    source, bad, good = tmp_path / "bad.c", tmp_path / "bad.so", tmp_path / "good.so"
    source.write_text("#include <stdlib.h>\n#include <unistd.h>\n"
                      f"__attribute__((constructor)) static void begin(void) {{ {does}; }}\n")
    subprocess.run(["g++", "-x", "c", "-shared", "-fPIC", source, "-o", bad], check=True)
    for libraries, advice in ((bad, f"Leave out {bad}, "), ([bad, good], "Give these libraries one at a time")):
        with pytest.raises(hvxupgrade.WorkerError) as caught:
            hvxupgrade.upgrade_file(bracket, tmp_path / "result.hvxdoc", libraries=libraries, timeout=3)
        assert told in caught.value.problem and f"while it loaded {bad}" in caught.value.problem
        assert caught.value.advice.startswith(advice)


def test_an_upgrade_that_never_ends_is_ended(bracket, tmp_path, trouble):
    begun = time.monotonic()
    with pytest.raises(hvxupgrade.WorkerError) as caught:
        hvxupgrade.upgrade_file(bracket, tmp_path / "result.hvxdoc", identifiers=["LoopForEver"], libraries=[trouble],
                                timeout=1.5)
    assert time.monotonic() - begun < 20
    assert caught.value.exit_code is None and "1.5 seconds" in caught.value.problem
    assert "looping" in caught.value.output
    assert listing(tmp_path) == {}
    with pytest.raises(ValueError):
        hvxupgrade.upgrade_file(bracket, tmp_path / "result.hvxdoc", worker=False, timeout=1)


def test_what_a_callback_raises_ends_the_worker(bracket, tmp_path):
    class Enough(Exception):
        pass

    def enough(done, total):
        raise Enough
    with pytest.raises(Enough):
        hvxupgrade.upgrade_file(bracket, tmp_path / "result.hvxdoc", progress=enough)
    with pytest.raises(hvxupgrade.StoppedError):
        hvxupgrade.upgrade_file(bracket, tmp_path / "result.hvxdoc", progress=lambda done, total: False)
    assert listing(tmp_path) == {}


def test_ctrl_c_ends_the_worker(bracket, tmp_path, trouble):
    threading.Timer(1.0, os.kill, [os.getpid(), signal.SIGINT]).start()
    with pytest.raises(KeyboardInterrupt):
        hvxupgrade.upgrade_file(bracket, tmp_path / "result.hvxdoc", identifiers=["LoopForEver"], libraries=[trouble])
    assert listing(tmp_path) == {}


def test_a_killed_worker_leaves_nothing(large_file, tmp_path):
    """Killed again and again, a little later each time, until it is done first."""
    source, target = large_file(200_000), tmp_path / "result.hvxdoc"
    kills = 0
    for delay in [0.02 * 1.25 ** step for step in range(30)]:
        before = children()
        killer = threading.Timer(delay, lambda: [os.kill(each, signal.SIGKILL) for each in children() - before])
        killer.start()
        try:
            hvxupgrade.upgrade_file(source, target)
            assert len(hvxupgrade.read(target)) == 200_000
            break
        except hvxupgrade.WorkerError as error:
            assert error.exit_code == -signal.SIGKILL
            assert sorted(each.name for each in tmp_path.iterdir()) == [source.name]
            kills += 1
        finally:
            killer.cancel()
    assert kills > 0 and target.exists()


def workers(*options):
    found = subprocess.run(["ps", "-o", "pid=,args=", *(options or ["-e"])], stdout=subprocess.PIPE, text=True,
                           check=False).stdout
    return {int(line.split()[0]) for line in found.splitlines() if "hvxupgrade._worker" in line}


def children():
    return workers("--ppid", str(os.getpid()))


def test_a_worker_ends_with_its_master(bracket, large_file, tmp_path, trouble):
    """Whether it works on, asks whether to write, or hangs."""
    source, target = large_file(100_000), tmp_path / "result.hvxdoc"
    script = ("import os, sys, threading, hvxupgrade\n"
              "if len(sys.argv) > 3:\n"
              "    threading.Timer(2, os.kill, [os.getpid(), 9]).start()\n"
              "    hvxupgrade.upgrade_file(*sys.argv[1:3], identifiers=['LoopForEver'], libraries=sys.argv[3:])\n"
              "hvxupgrade.upgrade_file(*sys.argv[1:3], progress=lambda done, total: os.kill(os.getpid(), 9))\n")
    for arguments in ([source, target], [bracket, target, trouble]):
        before = workers()
        run = subprocess.run([sys.executable, "-c", script, *arguments], check=False, timeout=60)
        assert run.returncode == -signal.SIGKILL
        deadline = time.monotonic() + 30
        while workers() - before and time.monotonic() < deadline:
            time.sleep(0.1)
        assert workers() <= before and [each.name for each in tmp_path.iterdir()] == [source.name]


@pytest.fixture
def forked():
    """Forks a child that holds all files that are open here, as those of a pool do; they end with the test."""
    pids = []

    def fork():
        pid = os.fork()
        if pid == 0:
            time.sleep(60)
            os._exit(0)
        pids.append(pid)
    yield fork
    for each in pids:
        os.kill(each, signal.SIGKILL)
        os.waitpid(each, 0)


def test_a_crash_is_noticed_beside_forked_children(bracket, tmp_path, trouble, forked, monkeypatch):
    start = subprocess.Popen

    def start_and_fork(*arguments, **keywords):
        started = start(*arguments, **keywords)
        forked()  # when both ends of the connection are open here
        return started
    monkeypatch.setattr(subprocess, "Popen", start_and_fork)
    begun = time.monotonic()
    with pytest.raises(hvxupgrade.WorkerError) as caught:
        hvxupgrade.upgrade_file(bracket, tmp_path / "result.hvxdoc", identifiers=["Crash"], libraries=[trouble])
    assert caught.value.exit_code == -signal.SIGABRT and time.monotonic() - begun < 20
    # Where one alone is chosen, there is nothing left to be found by choosing.
    assert caught.value.advice.startswith("Choose others than Crash, ")


def test_a_worker_ends_with_its_master_beside_forked_children(bracket, tmp_path, trouble):
    script = ("import os, sys, threading, time, hvxupgrade\n"
              "def end():\n"
              "    pid = os.fork()\n"
              "    if pid == 0:\n"
              "        time.sleep(20)\n"
              "        os._exit(0)\n"
              "    os.kill(os.getpid(), 9)\n"
              "threading.Timer(2, end).start()\n"
              "hvxupgrade.upgrade_file(*sys.argv[1:3], identifiers=['LoopForEver'], libraries=sys.argv[3:])\n")
    before = workers()
    subprocess.run([sys.executable, "-c", script, bracket, tmp_path / "result.hvxdoc", trouble], check=False, timeout=60,
                   stdin=subprocess.DEVNULL)
    deadline = time.monotonic() + 10
    while workers() - before and time.monotonic() < deadline:
        time.sleep(0.1)
    assert workers() <= before


def test_a_slow_callback_neither_outlasts_the_timeout_nor_is_told_what_is_overtaken(bracket, tmp_path):
    told = []

    def slow(done, total):
        told.append(done)
        time.sleep(2 if len(told) == 1 else 0)  # until the worker waits to write
    with pytest.raises(hvxupgrade.WorkerError, match="longer than 1.5 seconds"):
        hvxupgrade.upgrade_file(bracket, tmp_path / "result.hvxdoc", progress=slow, timeout=1.5)
    assert len(told) <= 1 and listing(tmp_path) == {}
    told.clear()
    result = hvxupgrade.upgrade_file(bracket, tmp_path / "result.hvxdoc", progress=slow)
    assert len(result.identifiers) == 66 and len(told) == 2 and told[0] < told[1]


@pytest.mark.parametrize("worker", [True, False])
def test_who_stops_an_upgrade_of_a_file_is_told_about_files(bracket, tmp_path, worker):
    with pytest.raises(hvxupgrade.StoppedError) as caught:
        hvxupgrade.upgrade_file(bracket, tmp_path / "result.hvxdoc", progress=lambda done, total: False, worker=worker)
    assert str(caught.value) == f"{bracket}: the upgrade was stopped. Start it again; nothing was written"


def test_a_worker_that_cannot_be_started_is_told(bracket, tmp_path, monkeypatch):
    for module, name, bad in ((tempfile, "tempdir", str(tmp_path / "none")), (sys, "executable", None),
                              (sys, "executable", ""), (sys, "executable", str(tmp_path / "python"))):
        with monkeypatch.context() as patch, pytest.raises(hvxupgrade.WorkerError) as caught:
            patch.setattr(module, name, bad)
            hvxupgrade.upgrade_file(bracket, tmp_path / "result.hvxdoc")
        assert "no worker can be started" in caught.value.problem and "worker=False" in caught.value.advice
