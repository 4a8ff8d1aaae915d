"""What the program does to the examples, one upgrade after the other."""
import json
import pathlib
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
PROGRAM = ROOT / "build/bin/hvxupgrade"


def identifiers():
    told = subprocess.run([PROGRAM, "identifiers", "--json"], check=True, capture_output=True)
    return json.loads(told.stdout)["upgrades"]


def upgrade(*arguments):
    """Runs the program and gives its records by document. Some states between two upgrades need a person (1)."""
    with tempfile.TemporaryDirectory() as folder:
        report = pathlib.Path(folder) / "report.jsonl"
        run = subprocess.run([PROGRAM, "upgrade", "--quiet", *arguments, "--report", report], check=False,
                             capture_output=True, text=True)
        if run.returncode not in (0, 1):
            sys.exit(f"upgrade-pages: {run.stderr}")
        records = map(json.loads, report.read_text(encoding="utf-8").splitlines())
        return {pathlib.Path(each["file"]).name: each for each in records if each["record"] == "document"}


class State:
    """The examples at one point in the order of the upgrades."""

    def __init__(self, folder):
        self.folder = folder
        self.features = {}
        for file in sorted(folder.glob("*.hvxdoc")):
            lines = file.read_text(encoding="utf-8").splitlines()[1:]
            self.features[file.name] = {each["id"]: each for each in map(json.loads, lines)}


class Walk:
    """The examples, upgraded one identifier after the other."""

    def __init__(self, folder):
        self.folder = folder
        start = folder / "examples"
        start.mkdir()
        for file in ROOT.glob("examples/*.hvxdoc"):
            shutil.copy(file, start)
        self.state = State(start)
        self.steps = {}  # by identifier: the state before it, the one after it, its records

    def run(self, identifier):
        """Runs it, after those that it would bring along: each page is to show one upgrade alone."""
        if identifier in self.steps:
            return
        result = self.folder / identifier
        records = upgrade("--only", identifier, "--output-dir", result, "--report-detail", "full", self.state.folder)
        along = [each["upgrade"] for record in records.values() for each in record["broughtAlong"]]
        if along:
            shutil.rmtree(result)
            self.run(along[0])
            self.run(identifier)
            return
        after = State(result)
        self.steps[identifier] = (self.state, after, records)
        self.state = after


def brought_along(identifier):
    """What the upgrade brings along when it alone is asked for, with the reasons."""
    records = upgrade("--only", identifier, "--dry-run", "--no-sheet", "--report-detail", "summary",
                      *sorted(ROOT.glob("examples/*.hvxdoc")))
    found = {each["upgrade"]: each["reason"] for record in records.values()
             for each in record.get("broughtAlong", [])}
    return dict(sorted(found.items()))
