"""Signals at random moments of a run, to the program, to its worker, to both."""
import signal

from torture.process import Blow
from torture.setting import WRITING
from torture.trial import Trial

SIGNALS = (signal.SIGKILL, signal.SIGTERM, signal.SIGINT, signal.SIGHUP, signal.SIGSEGV, signal.SIGABRT,
           signal.SIGXCPU, signal.SIGSTOP)
PAUSE = 0.01  # seconds that a stopped process stands


def signals_at_random(references, count, rng):
    trials = []
    for number in range(count):
        variant = rng.choice(WRITING)
        reference = references[variant.name]
        moment = rng.uniform(0, reference.seconds)
        kind = SIGNALS[number % len(SIGNALS)]
        to = ("program", "worker", "both")[number // len(SIGNALS) % 3]
        blows = [Blow(moment, kind, to)]
        if kind == signal.SIGSTOP:
            blows.append(Blow(moment + PAUSE, signal.SIGCONT, to))
        trials.append(Trial(f"{kind.name} at random", variant, blows=tuple(blows), struck=kind != signal.SIGSTOP))
    return trials
