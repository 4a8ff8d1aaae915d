"""One trial: a command that runs under a fault, what is to be seen afterwards, and the same command again."""
import dataclasses
import pathlib
import shlex
import shutil
import tempfile

from torture import promises
from torture.process import run_program
from torture.reports import steady
from torture.setting import FAILING_CALLS, Variant, attributes, content, fill


@dataclasses.dataclass(frozen=True)
class Trial:
    kind: str                # the line of the counts that it belongs to
    variant: Variant
    fault: str = ""          # what the failing calls are told
    error: int = 0           # the error number that should be told, where it is a lack of something
    limits: tuple = ()       # pairs of a limit and its value
    blows: tuple = ()
    user: int | None = None
    output: str | None = None
    may_end: bool = False    # dying may be the only honest thing
    struck: bool = False     # some process is ended from outside
    cannot_remove: bool = False
    note: str = ""           # for people

    def environment(self):
        return {"LD_PRELOAD": str(FAILING_CALLS), "HVX_TORTURE": self.fault} if self.fault else {}

    def text(self):
        """How to repeat it, in a folder with the documents."""
        words = [f"{key}={shlex.quote(value)}" for key, value in self.environment().items()]
        words += map(str, self.variant.words())
        if self.output:
            words.append(f">{self.output}")
        notes = [self.variant.name, *self.notes()]
        return f"{' '.join(words)}    # {', '.join(notes)}"

    def notes(self):
        notes = [f"setrlimit {limit}={value}" for limit, value in self.limits]
        notes += [f"signal {blow.number} to {blow.to} after {blow.moment:.6f} s" for blow in self.blows]
        notes += [f"as user {self.user}"] if self.user is not None else []
        return notes + ([self.note] if self.note else [])


@dataclasses.dataclass
class Outcome:
    trial: Trial
    verdict: str
    broken: list
    run: object


class Bench:
    """Carries trials out, one after the other, in folders of its own."""

    def __init__(self, references):
        self.references = references
        self.finished = set()  # states of a folder that the command was seen to complete

    def judge(self, trial):
        base = pathlib.Path(tempfile.mkdtemp(prefix="hvx-torture-"))
        try:
            return self.judge_in(trial, base / "documents")
        finally:
            shutil.rmtree(base, ignore_errors=True)

    def judge_in(self, trial, folder):
        folder.mkdir(exist_ok=True)
        reference = self.references[trial.variant.name]
        fill(folder, reference.start)
        if trial.user is not None:
            for path in (folder, *folder.rglob("*")):
                shutil.chown(path, trial.user, trial.user)
            folder.parent.chmod(0o711)
        before = {name: attributes(folder / name) for name in reference.start}
        run = run_program(trial.variant.words(), folder, trial.environment(), trial.limits, trial.blows,
                          trial.user, trial.output)
        after = content(folder)
        verdict, broken = promises.judge(trial, run, reference, after)
        broken += [f"{name} has other rights or attributes" for name, kept in before.items()
                   if name in after and attributes(folder / name) != kept]
        broken += self.again(trial, folder, reference, after)
        return Outcome(trial, verdict, broken, run)

    def again(self, trial, folder, reference, after):
        """What the same command makes of it, without the fault."""
        if not trial.variant.targets or after == reference.start:
            return []  # an undisturbed run was seen already
        files = {name: steady(data) if name == trial.variant.report else data for name, data in after.items()}
        state = hash(repr((trial.variant.name, files)))
        if state in self.finished:
            return []
        run = run_program(trial.variant.words_again(), folder, user=trial.user)
        broken = promises.judge_again(trial, run, reference, content(folder))
        if not broken:
            self.finished.add(state)
        return broken
