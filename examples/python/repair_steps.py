#!/usr/bin/python3
"""Repairs the steps that upgrades left behind, then retries: repair_steps.py DOCUMENT RESULT [QUANTITY=NUMBER]...

An upgrade leaves a step behind when one of its parameters is missing or holds no number. The quantity that is missing
gets the number that is given, such as StabilizationFactor=0.0002, or the one that the workbench gives to new steps. The
result is written when no step is left behind any more; what was set is printed, to be looked at.
"""
import math
import sys

import hvxupgrade

UPGRADE = "UpgFromSpecToComp"
# What the workbench gives to new steps, and the magnitudes.
NEW_STEPS = {
    "TimePeriod": (1.0, "Time"),
    "InitialIncrement": (1.0, "Time"),
    "MaximumIncrement": (1.0, "Time"),
    "MinimumIncrement": (1e-05, "Time"),
    "StabilizationFactor": (0.0002, "DIMENSIONLESS"),
    "MinimumTemperatureChange": (-1.0, "TEMPRTRE"),
    "MaximumTemperatureChange": (1.0, "TEMPRTRE"),
}


def steps_left_behind(document):
    return [finding for finding in document.check()
            if finding.kind is hvxupgrade.FindingKind.LEFT_BEHIND and finding.identifier == UPGRADE]


def give_number(step, key, number, magnitude):
    """What the finding advises: the attribute links to a parameter that has a number as its value."""
    parameter = step.get(key)
    if not isinstance(parameter, hvxupgrade.Feature) or parameter.late_type != "Parameter":
        parameter = step.document.create("Parameter", father=step)
        parameter["Magnitude"] = magnitude
        step[key] = parameter
    parameter["Value"] = number


def repair(document, finding, numbers):
    step = document[finding.feature_id]
    for key in finding.keys:
        if key == "CreatesParameters":
            for model in document.of_type("AnalysisModel"):
                model[key] = True
            continue
        quantity = key.removeprefix("Step").removesuffix("_param")
        number, magnitude = NEW_STEPS[quantity]
        number = numbers.get(quantity, number)
        give_number(step, key, number, magnitude)
        print(f"{step.alias} (id {step.id}): {quantity} = {number}")


def numbers_in(settings):
    """The numbers by their quantities. A mistyped one must not be left out: the step would get another number."""
    numbers = {}
    for setting in settings:
        quantity, _, number = setting.partition("=")
        if quantity not in NEW_STEPS:
            raise ValueError(f'there is no quantity "{quantity}"; choose from: {", ".join(NEW_STEPS)}')
        try:
            numbers[quantity] = float(number)
        except ValueError:
            numbers[quantity] = math.nan
        if not math.isfinite(numbers[quantity]):
            raise ValueError(f'{quantity} is a number such as {NEW_STEPS[quantity][0]:g}, not "{number}"')
    return numbers


def main(source, target, settings):
    numbers = numbers_in(settings)
    document = hvxupgrade.read(source)
    upgrader = hvxupgrade.Upgrader()
    upgrader.upgrade(document)
    for finding in steps_left_behind(document):
        repair(document, finding, numbers)
    upgrader.upgrade(document, retry=True)
    still = steps_left_behind(document)
    for finding in still:
        print(f"id {finding.feature_id}: {finding.explanation}. {finding.next_step}.", file=sys.stderr)
    if still:
        return 1
    document.write(target)
    return 0


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    try:
        sys.exit(main(sys.argv[1], sys.argv[2], sys.argv[3:]))
    except (hvxupgrade.Error, ValueError) as error:
        sys.exit(str(error))
