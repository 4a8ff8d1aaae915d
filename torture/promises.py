"""What must hold after a trial, whatever failed."""
import os
import re
import signal

from torture import reports

DOCUMENTED = {0, 1, 2, 3, 4, 5, 6, 130}
TEMPORARY = re.compile(r"\.hvxtmp-\w{6}$")
UNCHANGED = re.compile(r"nothing was changed|nothing was written|is as it was|not begun|as before", re.I)
# A sound document that is told to be damaged, or an installation that is to be mended.
BLAMED = re.compile(r"line \d+|\. Reinstall|hvxdoc format|not a document|damaged")
LACKS = {12: "memory", **{number: os.strerror(number) for number in (23, 24, 28, 122, 27, 30, 11)}}


def judge(trial, run, reference, after):
    """A word for the outcome, and the promises that were broken, in words."""
    if not run.started:
        return "not started", []
    if trial.variant.targets:
        verdict, broken = judge_results(trial, run, reference, after)
    else:
        verdict, broken = judge_view(run, reference, after)
    if run.hung:
        broken.append("it did not end")
    if run.left:
        broken.append("a process was left running")
    broken += judge_end(trial, run)
    if run.code < 0 and not trial.struck:
        verdict = "ended"
    if at_start(run):
        verdict = "not started"
    return verdict, broken


def at_start(run):
    return run.code == 127 and re.search("error while loading shared libraries|cannot allocate TLS", run.errors)


def judge_end(trial, run):
    broken = []
    told = [line for line in run.errors.splitlines() if line.startswith("hvxupgrade: ")]
    if run.code < 0:
        ended = trial.may_end and (run.code == -signal.SIGABRT or trial.limits)
        if not trial.struck and not ended:
            broken.append(f"it died of signal {-run.code}")
        return broken
    if at_start(run):
        return broken
    if run.code not in DOCUMENTED:
        broken.append(f"exit code {run.code} is none of the documented ones")
    silent = trial.fault.split(":")[1:2] in (["fwrite"], ["fflush"])  # how it would have told
    if not trial.variant.targets and run.code not in (0, 1, 6) and not told and not silent:
        broken.append(f"exit code {run.code}, and nothing is told")
    if told and BLAMED.search(run.errors):
        broken.append("something is blamed that is sound")
    loading = "library cannot be loaded" in run.errors  # the loader's own words
    if told and trial.error in LACKS and LACKS[trial.error] not in run.errors and not loading:
        broken.append(f"the cause ({LACKS[trial.error]}) is not told")
    return broken


def judge_view(run, reference, after):
    broken = []
    if after != reference.start:
        broken.append("a command that only looks changed something")
    whole = run.output == reference.output and run.code == reference.code
    if run.code == 0 and reference.code != 0:
        broken.append("exit code 0 is not true")
    if run.code == reference.code and not whole and "hvxupgrade: " not in run.errors:
        broken.append("the output is not whole, and nothing is told")
    return ("as undisturbed" if whole else "refused"), broken


def judge_results(trial, run, reference, after):
    targets = trial.variant.targets
    broken = []
    done = {}
    for target in targets:
        old, new = reference.start.get(target.file), reference.end[target.file]
        there = after.get(target.file)
        done[target.document] = there == new
        if there not in (old, new):
            broken.append(f"{target.file} is neither the old nor the new one")
        if target.document != target.file and after.get(target.document) != reference.start[target.document]:
            broken.append(f"{target.document} was changed")
        broken += judge_backup(trial, run, target, reference, after, there == new)
    broken += judge_words(run, done)
    whole = all(done.values()) and is_whole(trial, reference, after)
    if run.code == 0:
        if not whole:
            broken.append("exit code 0, but not all is there")
        if trial.output is None and run.output != reference.output and not is_done_again(trial):
            broken.append("exit code 0, but the output is not whole")
    elif run.code > 0 and not at_start(run) and not has_message(trial, run):
        broken.append(f"exit code {run.code}, and nothing is told")
    if trial.variant.report in after:
        broken += reports.judge(after[trial.variant.report], run, done, reference.start.get(trial.variant.report),
                                not is_done_again(trial))
    broken += judge_files(trial, run, reference, after)
    if all(done.values()):
        return ("upgraded" if whole else "upgraded, something else missing"), broken
    return ("in part" if any(done.values()) else "as before"), broken


def is_whole(trial, reference, after):
    """Whether all is there that an undisturbed run leaves."""
    report = trial.variant.report
    if any(after.get(name) != data for name, data in reference.end.items() if name != report):
        return False
    if not report or not after.get(report):
        return not report
    if is_done_again(trial):
        return bool(reports.read(after[report]).end)
    return reports.steady(after[report]) == reports.steady(reference.end[report])


def is_done_again(trial):
    """Whether a document may be, since the file that its record tells of could not be looked at."""
    return trial.fault.startswith("program:stat:")


def has_message(trial, run):
    silent = trial.fault.split(":")[1:2] in (["fwrite"], ["fflush"])
    return silent or any(line.startswith("hvxupgrade: ") for line in run.errors.splitlines())


def ended_early(trial, run):
    """Some process may not have removed what it made."""
    return run.code < 0 or trial.cannot_remove or (trial.struck and trial.blows)


def judge_backup(trial, run, target, reference, after, is_new):
    if not target.backup:
        return []
    backup = after.get(target.backup)
    old = reference.end[target.backup]
    if is_new and backup != old:
        return [f"{target.file} is new, and its backup is not the old one"]
    if backup not in (None, old):
        return [f"{target.backup} is not whole"]
    if backup is not None and not is_new and not (ended_early(trial, run) or "crashed" in run.errors):
        return [f"{target.backup} stayed, although nothing was replaced"]
    return []


def judge_words(run, done):
    broken = []
    for line in run.errors.splitlines():
        if not UNCHANGED.search(line):
            continue
        named = [document for document in done if line.startswith(f"hvxupgrade: {document}")]
        for document in named or done:
            if done[document] and (named or "no document" in line):
                broken.append(f"it says that nothing was changed, but {document} was: {line}")
    for document, is_new in done.items():
        if f"{document}: upgraded" in run.output.decode(errors="replace") and not is_new:
            broken.append(f"it says that {document} was upgraded, but it was not")
    return broken


def judge_files(trial, run, reference, after):
    expected = {*reference.start, *reference.end}
    broken = []
    for name in after:
        if name in expected:
            continue
        if not TEMPORARY.search(name):
            broken.append(f"{name} came up")
        elif not ended_early(trial, run):
            broken.append(f"{name} stayed")
    return broken


def judge_again(trial, run, reference, after):
    broken = []
    if run.hung or run.left or run.code != 0:
        broken.append(f"the same command fails afterwards ({run.code}): {run.errors.strip()}")
    for name, data in reference.end.items():
        if name in (trial.variant.report, trial.variant.trace):
            continue
        if after.get(name) != data:
            broken.append(f"the same command afterwards does not leave {name} as it should be")
    for name in after:
        if name not in reference.end and name not in reference.start:
            broken.append(f"the same command afterwards leaves {name}")
    if trial.variant.report:
        documents = [target.document for target in trial.variant.targets]
        broken += reports.judge_finished(after.get(trial.variant.report), documents, not is_done_again(trial))
    return broken
