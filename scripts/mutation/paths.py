"""Where scripts/mutate finds things."""
import pathlib

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
LIBRARY = ROOT / "HVXUpgradeComponents.m"
WORK = ROOT / "build/mutate"
TREE = WORK / "tree"  # a copy of the project, which the tests are built of
RESULTS = WORK / "results.tsv"
