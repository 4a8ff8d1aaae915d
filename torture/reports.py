"""The report of a run: a stream of JSON lines, of which a kill may cut off the last."""
import dataclasses
import json
import re

# What is another in each run: times, sizes of memory and of what depends on them.
PASSING = re.compile(rb'("modified":|"seconds":)[0-9.]+|,"peakMemory":[0-9]+|"(folder|time|user)":"[^"]*"')
DONE_BEFORE = {"upgraded", "current", "doneBefore"}


@dataclasses.dataclass
class Report:
    """What stands in the bytes of a report; `faults` tells why they are not one."""
    faults: list
    verdicts: dict  # of each document: those of its records, in their order
    end: dict | None = None
    is_cut_off: bool = False


def read(data):
    *lines, rest = data.split(b"\n")
    report = Report([], {}, is_cut_off=bool(rest) or not lines)
    for number, text in enumerate(lines, 1):
        try:
            line = json.loads(text)
            kind = line["record"]
        except (ValueError, KeyError, TypeError) as error:
            report.faults.append(f"line {number} of the report is not whole: {error}")
            continue
        if (number == 1) != (kind == "run"):
            report.faults.append(f"line {number} of the report is a {kind}")
        if report.end:
            report.faults.append("something stands behind the report's end")
        if kind == "document":
            report.verdicts.setdefault(line["file"], []).append(line["verdict"])
        if kind == "end":
            report.end = line
    return report


def steady(data):
    """The lines without what is another in each run, in an order of their own."""
    return sorted(PASSING.sub(b"", data).split(b"\n"))


def judge(data, run, done, before, once):
    """The broken promises of a report that a fault met. `done`: whether each document is new. `before`: the report
    that was there. `once`: no document may have two records."""
    report = read(data)
    broken = report.faults
    if before and steady(before) == steady(data):
        return broken
    if report.is_cut_off and run.code >= 0:
        broken.append("the report is cut off, although nothing was killed")
    for document, verdicts in report.verdicts.items():
        if document not in done:
            broken.append(f"the report tells of {document}")
        elif once and len(verdicts) > 1:
            broken.append(f"the report tells of {document} twice")
        elif (verdicts[0] == "upgraded") != done[document]:
            broken.append(f"the report says {verdicts[0]} of {document}, which is not true")
    if not_told := [document for document, is_new in done.items() if is_new and document not in report.verdicts]:
        if run.code >= 0 and not is_told(run):
            broken.append(f"the report does not tell that {not_told} was upgraded")
    if before and not set(read(before).verdicts) <= set(report.verdicts):
        broken.append("the report lost a record")
    if run.code == 0 and not report.end:
        broken.append("exit code 0, and the report has no end")
    return broken


def is_told(run):
    """Whether it said that records may lack."""
    return (run.code == 5 and "report" in run.errors) or (run.code == 3 and "not enough memory" in run.errors)


def judge_finished(data, documents, once):
    """The broken promises of a report that the same command went on with, until it was done. `once`: no document
    may have been upgraded twice."""
    if data is None:
        return ["the same command afterwards leaves no report"]
    report = read(data)
    broken = [f"afterwards, {fault}" for fault in report.faults]
    if report.is_cut_off:
        broken.append("the report is cut off afterwards")
    if not report.end or report.end["left"] != 0 or report.end["exitCode"] != 0:
        broken.append(f"the report's end is {report.end} afterwards")
    if set(report.verdicts) != set(documents):
        broken.append(f"the report tells of {sorted(report.verdicts)} afterwards")
    for document, verdicts in report.verdicts.items():
        if verdicts[-1] not in DONE_BEFORE or verdicts.count("upgraded") > (1 if once else 2):
            broken.append(f"the report says {verdicts} of {document} afterwards")
    return broken
