"""The type stubs say what the module has, and everything public is explained."""
import ast
import inspect
import shutil
import subprocess
import sys

import pytest

import hvxupgrade
from hvxupgrade import _native

# What pybind11 and object have; Python looks for them at the class.
OF_EVERY_CLASS = set(dir(object)) - {"__init__", "__eq__", "__hash__"} | {"__module__", "__init__", "__repr__"}


def stub(source):
    return ast.parse((source / "python/hvxupgrade/_native.pyi").read_text(encoding="utf-8"))


def test_the_stub_of_the_extension_is_complete(source):
    tree = stub(source)
    declared = {node.name: node for node in tree.body if isinstance(node, (ast.ClassDef, ast.FunctionDef))}
    assert set(declared) == {name for name in dir(_native) if not name.startswith("_")}
    for name, node in declared.items():
        if isinstance(node, ast.ClassDef):
            inside = {each.name for each in node.body if isinstance(each, ast.FunctionDef)}
            there = {name for name in vars(getattr(_native, name)) if not name.startswith("_pybind11")}
            assert inside - OF_EVERY_CLASS == there - OF_EVERY_CLASS, name


def test_help_shows_the_arguments_of_the_stub(source):
    """Of what was compiled; Python reads those of Python's functions itself."""
    shown = 0
    for node in stub(source).body:
        if not isinstance(node, ast.ClassDef):
            continue
        for method in node.body:
            if not isinstance(method, ast.FunctionDef) or is_property(method):
                continue
            if method.name.startswith("__") and method.name != "__init__":
                continue
            arguments = method.args
            names = [each.arg for each in arguments.args if each.arg != "self"] + [each.arg for each in arguments.kwonlyargs]
            names += [each.arg for each in (arguments.vararg, arguments.kwarg) if each]
            signature = inspect.signature(getattr(getattr(hvxupgrade, node.name), method.name))
            assert sorted(signature.parameters) == sorted(names), f"{node.name}.{method.name}"
            keyword_only = [each.name for each in signature.parameters.values() if each.kind is each.KEYWORD_ONLY]
            assert keyword_only == [each.arg for each in arguments.kwonlyargs], f"{node.name}.{method.name}"
            shown += 1
    assert shown > 20


def is_property(method):
    return any("property" in ast.unparse(each) or "setter" in ast.unparse(each) for each in method.decorator_list)


def test_the_version_is_that_of_the_program(source):
    project = (source / "CMakeLists.txt").read_text(encoding="utf-8")
    assert f"VERSION {hvxupgrade.__version__} " in project


def test_everything_public_is_listed_and_explained():
    public = {name for name in dir(hvxupgrade) if not name.startswith("_")}
    submodules = {name for name in public if inspect.ismodule(getattr(hvxupgrade, name))}
    assert public - submodules == set(hvxupgrade.__all__)
    for name in hvxupgrade.__all__:
        what = getattr(hvxupgrade, name)
        assert what.__doc__, name
        if inspect.isclass(what) and what.__module__ == "hvxupgrade":
            for member, value in vars(what).items():
                assert member.startswith("_") or value.__doc__, f"{name}.{member}"


@pytest.mark.skipif(shutil.which("mypy", path="/usr/bin") is None, reason="mypy is not installed")
def test_mypy_agrees(source, tmp_path):
    use = tmp_path / "use.py"
    use.write_text("import hvxupgrade\n"
                   "feature = hvxupgrade.read('a')[1]\n"
                   "feature['Value'] = 2.5e6\n"
                   "names: list[str] = [each.late_type for each in feature.sons]\n"
                   "wrong: int = feature.alias\n")
    run = subprocess.run([sys.executable, "-m", "mypy", "--strict", "--cache-dir", tmp_path / "cache", use],
                         env={"MYPYPATH": str(source / "python"), "PATH": ""}, stdout=subprocess.PIPE, text=True,
                         check=False)
    lines = [line for line in run.stdout.splitlines() if "error:" in line]
    assert len(lines) == 1 and "use.py:5: error: Incompatible types" in lines[0], run.stdout
