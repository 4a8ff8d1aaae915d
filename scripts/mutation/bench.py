"""Builds changed copies of the library and runs the tests on them."""
import collections
import concurrent.futures
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import threading
import time

from mutation.paths import LIBRARY, ROOT, TREE, WORK

TOO_SLOW = "-*FaultSweepTest*:*RandomDocumentTest*:DocumentFileTest*:DocumentRandomTest*:MeshNumbersTest*"
ACCOUNT = "*.DISABLED_Account"  # tests that write down what documents and failing calls come to
TEST_TARGETS = ["bin/hvx_tests", "lib/libHVXTestUpgradeLibrary.so"]  # what is built of the library's sources


class Stopped(Exception):
    """Ctrl-C was pressed."""


class Runner:
    """Runs commands that end with this program."""

    def __init__(self):
        self.stopping = threading.Event()
        self.running = set()
        self.lock = threading.Lock()

    def run(self, command, cwd, timeout=None, env=None):
        """The exit code (None when the time was over) and the output."""
        with self.lock:
            if self.stopping.is_set():
                raise Stopped
            process = subprocess.Popen(command, cwd=cwd, env=env, stdout=subprocess.PIPE,
                                       stderr=subprocess.STDOUT, text=True, errors="replace",
                                       start_new_session=True)
            self.running.add(process)
        try:
            output, _ = process.communicate(timeout=timeout)
            code = process.returncode
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            output, _ = process.communicate()
            code = None
        finally:
            with self.lock:
                self.running.discard(process)
        if self.stopping.is_set():
            raise Stopped
        return code, output

    def stop(self):
        with self.lock:
            self.stopping.set()
            for process in self.running:
                try:
                    os.killpg(process.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass


class Bench:
    """The original, built once, and what mutants are compared and tested with."""

    def __init__(self, runner, jobs):
        self.runner = runner
        self.base = WORK / "base"
        self.configure()
        entries = json.loads((self.base / "compile_commands.json").read_text(encoding="utf-8"))
        self.compile = self.compile_command(entries)
        self.links = {target: self.link_command(target) for target in TEST_TARGETS}
        self.precompile()
        self.original = Workshop(self, "original")
        with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
            sources = self.original.sources
            for source, problem in zip(sources, pool.map(self.original.build, sources)):
                if problem is not None:
                    sys.exit(f"{source} does not build: {problem}")
        self.original.link()
        self.last_noticed = collections.defaultdict(list)  # by file, the tests that noticed mutants lately
        started = time.monotonic()
        noticed = self.original.test([TOO_SLOW], 600)
        if noticed is not None:
            sys.exit(f"The tests fail on the library as it is: {noticed}")
        self.test_seconds = time.monotonic() - started
        self.accounts = {}  # of the original, by section of the table of failing calls
        self.accounts_lock = threading.Lock()
        table = (TREE / "tests/golden/failing_calls.txt").read_text(encoding="utf-8")
        self.sections = set(re.findall(r"^== (\S+)$", table, re.MULTILINE))

    def account(self, section):
        with self.accounts_lock:
            if section not in self.accounts:
                self.accounts[section] = self.original.account(section, 600)
                if self.accounts[section] is None:
                    sys.exit("The tests' account of the library as it is cannot be made")
            return self.accounts[section]

    @staticmethod
    def copy_tree():
        """The project in a folder of its own, so that it may be worked on meanwhile."""
        command = ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"]
        listed = subprocess.run(command, cwd=ROOT, check=True, capture_output=True, text=True).stdout
        names = {name for name in listed.split("\0") if name and (ROOT / name).is_file()}
        for name in names:
            source, target = ROOT / name, TREE / name
            if not target.exists() or source.read_bytes() != target.read_bytes():
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copyfile(source, target)
        for target in [path for path in TREE.glob("**/*") if path.is_file()]:
            if str(target.relative_to(TREE)) not in names:
                target.unlink()

    def configure(self):
        print("Building the tests ...", file=sys.stderr)
        self.copy_tree()
        options = ["-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O1 -g0", "-DHVX_BENCHMARKS=OFF"]
        if shutil.which("ccache"):
            options += ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache", "-DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON"]
        self.must(["cmake", "-S", str(TREE), "-B", str(self.base), "-G", "Ninja", *options])
        self.must(["cmake", "--build", str(self.base), "--target", "hvx_tests"])

    def must(self, command, cwd=ROOT):
        code, output = self.runner.run(command, cwd)
        if code != 0:
            sys.exit(f"{' '.join(command)} failed:\n{output}")
        return output

    def compile_command(self, entries):
        """The compiler and the flags of a library source, without what names the files."""
        command = next(e["command"] for e in entries if "/HVXUpgradeComponents.dir/" in e["command"]).split()
        command = command[[part.endswith("++") for part in command].index(True):command.index("-o")]
        kept = [part for part in command if not part.startswith((f"-I{TREE}/HVX", "-W"))]
        return [*kept, '-DHVX_LIBRARY_VERSION="0"', "-Iheaders", "-O0", "-w"]  # which one source is given

    def precompile(self):
        """The host's declarations, compiled once: no mutant changes them."""
        header = WORK / "host.h"
        headers = sorted(str(path.relative_to(TREE / "host")) for path in TREE.glob("host/*/*.h"))
        header.write_text("".join(f'#include "{name}"\n' for name in headers), encoding="utf-8")
        self.must([*self.compile, "-x", "c++-header", str(header), "-o", f"{header}.gch"])
        self.compile += ["-include", str(header)]

    def link_command(self, target):
        name = target.split("/")[-1]
        lines = self.must(["ninja", "-C", str(self.base), "-t", "commands", name]).splitlines()
        line = next(line for line in reversed(lines) if f" -o {target}" in line)
        return line[re.search(r"\S+\+\+ ", line).start():].split(" && ")[0].split()


class Workshop:
    """A copy of the library in a folder of its own, in which one mutant after another is built and tested."""

    def __init__(self, bench, name):
        self.bench = bench
        self.folder = WORK / name
        shutil.rmtree(self.folder, ignore_errors=True)
        shutil.copytree(TREE / LIBRARY.name, self.folder, copy_function=shutil.copyfile)
        (self.folder / "objects").mkdir()
        self.sources = sorted(path.stem for path in (self.folder / "src").glob("*.cpp"))
        self.linked = {target: bench.base / target for target in TEST_TARGETS}

    def object(self, source, suffix=""):
        return self.folder / f"objects/{source}{suffix}.o"

    def build(self, source, suffix="", options=()):
        made = str(self.object(source, suffix))
        command = [*self.bench.compile, *options, "-c", f"src/{source}.cpp", "-o", made]
        code, output = self.bench.runner.run(command, self.folder)
        return None if code == 0 else output

    def link(self, mutated=()):
        original = self.bench.original
        objects = [str((self if name in mutated else original).object(name)) for name in self.sources]
        return self.try_link([self.bench.compile[0], "-shared", "-o", "library.so", *objects], self.folder)

    def try_link(self, command, folder):
        code, output = self.bench.runner.run(command, folder)
        return None if code == 0 else output

    def relink_tests(self, mutated):
        """Some sources are linked into the tests as well; the tests must run on the mutated ones."""
        for target in TEST_TARGETS:
            command = list(self.bench.links[target])
            self.linked[target] = self.bench.base / target
            for index, part in enumerate(command):
                source = pathlib.Path(part).name.removesuffix(".cpp.o")
                if "/HVXUpgradeComponents.m/src/" in part and source in mutated:
                    command[index] = str(self.object(source))
                    self.linked[target] = self.folder / target.split("/")[-1]
            if self.linked[target].parent == self.folder:
                command[command.index("-o") + 1] = str(self.linked[target])
                if (problem := self.try_link(command, self.bench.base)) is not None:
                    return problem
        return None

    def test(self, filters, seconds):
        """The test that failed, or how the run ended otherwise; None when all passed."""
        tests, plug_in = (str(self.linked[target]) for target in TEST_TARGETS)
        env = {**os.environ, "HVX_LIBRARY": str(self.folder / "library.so"), "HVX_TEST_LIBRARY": plug_in,
               "TEST_TMPDIR": str(self.folder)}
        for names in filters:
            command = [tests, "--gtest_fail_fast", "--gtest_brief=1", f"--gtest_filter={names}"]
            code, output = self.bench.runner.run(command, self.folder, seconds, env)
            if code == 0:
                continue
            failed = re.findall(r"\[  FAILED  \] ([^\s,]+)", output)
            if code is None:
                return "took too long"
            return failed[0] if failed else f"crashed ({code})"
        return None

    def account(self, section, seconds):
        """What random documents and failing calls come to; None when that cannot be told."""
        tests, plug_in = (str(self.linked[target]) for target in TEST_TARGETS)
        file = self.folder / "account"
        file.unlink(missing_ok=True)
        env = {**os.environ, "HVX_LIBRARY": str(self.folder / "library.so"), "HVX_TEST_LIBRARY": plug_in,
               "TEST_TMPDIR": str(self.folder), "HVX_ACCOUNT": str(file)}
        if section is not None:
            env["HVX_ACCOUNT_OF"] = section
        command = [tests, "--gtest_also_run_disabled_tests", f"--gtest_filter={ACCOUNT}"]
        code, _ = self.bench.runner.run(command, self.folder, seconds, env)
        return file.read_bytes() if code == 0 and file.exists() else None

    def dependents(self, file):
        """The sources that a changed file is compiled into."""
        if file.startswith("src/"):
            return [pathlib.Path(file).stem]
        users = {pathlib.Path(file).name}
        grown = True
        while grown:
            grown = False
            for header in (self.folder / "headers").glob("*.h"):
                includes = set(re.findall(r'#include "([^"]+)"', header.read_text(encoding="utf-8")))
                if header.name not in users and includes & users:
                    users.add(header.name)
                    grown = True
        return [source for source in self.sources if users & set(re.findall(
            r'#include "([^"]+)"', (self.folder / f"src/{source}.cpp").read_text(encoding="utf-8")))]

    def judge(self, mutant):
        """(verdict, the test that noticed or why there was none)"""
        file = self.folder / mutant.file
        original = (TREE / LIBRARY.name / mutant.file).read_text(encoding="utf-8")
        file.write_text(original[:mutant.start] + mutant.new + original[mutant.end:], encoding="utf-8")
        try:
            mutated = self.dependents(mutant.file)
            for source in mutated:
                if (problem := self.build(source)) is not None:
                    return "does not build", problem.split("error:")[-1].split("\n")[0].strip()
            if self.is_same(mutated):
                return "equivalent", ""
            if (problem := self.link(mutated) or self.relink_tests(mutated)) is not None:
                return "does not build", problem.split("\n")[0]
            likely = [f"*{pathlib.Path(mutant.file).stem}*", *self.bench.last_noticed[mutant.file][:6]]
            filters = [":".join(likely), TOO_SLOW]
            noticed = self.test(filters, 5 * self.bench.test_seconds + 5)
            if noticed is None:
                if self.is_same_optimised(mutated):
                    return "equivalent", ""
                stem = pathlib.Path(mutant.file).stem  # of a class, or of what several share
                section = stem if stem in self.bench.sections else None
                same = self.account(section, 10 * self.bench.test_seconds + 60) == self.bench.account(section)
                return ("without effect" if same else "survived"), ""
            if "." in noticed:
                known = self.bench.last_noticed[mutant.file]
                self.bench.last_noticed[mutant.file] = [noticed, *[name for name in known if name != noticed]]
            return "caught", noticed
        finally:
            file.write_text(original, encoding="utf-8")

    def is_same_optimised(self, mutated):
        for source in mutated:
            self.build(source, "-optimised", ["-O2"])
            if not self.bench.original.object(source, "-optimised").exists():
                self.bench.original.build(source, "-optimised", ["-O2"])
        return self.is_same(mutated, "-optimised")

    def is_same(self, mutated, suffix=""):
        original = self.bench.original
        return all(self.object(source, suffix).read_bytes() == original.object(source, suffix).read_bytes()
                   for source in mutated)
