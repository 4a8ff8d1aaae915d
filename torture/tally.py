"""Counts what became of trials, and prints the broken promises."""
import collections
import sys


class Tally:
    ORDER = ("as undisturbed", "upgraded", "upgraded, something else missing", "in part", "as before", "refused",
             "ended", "not started")

    def __init__(self):
        self.kinds = collections.defaultdict(collections.Counter)
        self.broken = collections.Counter()

    def add(self, outcome):
        kind = outcome.trial.kind
        self.kinds[kind][outcome.verdict] += 1
        if not outcome.broken:
            return
        self.broken[kind] += 1
        print(f"broken: {'; '.join(outcome.broken)}\n  {outcome.trial.text()}\n  exit {outcome.run.code}, "
              f"{outcome.run.errors.strip()[:600]}", flush=True)

    def show(self):
        for kind, verdicts in self.kinds.items():
            parts = [f"{verdicts[verdict]} {verdict}" for verdict in self.ORDER if verdicts[verdict]]
            print(f"{kind}: {verdicts.total()} trials: {', '.join(parts)}; {self.broken[kind]} broken promises")
        sys.stdout.flush()

    def failed(self):
        return self.broken.total() != 0
