"""The files of the project that the checks read, and the report that they share."""

import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDERS = (".ci", "benchmarks", "cmake", "docs", "libs", "packaging", "resources", "src", "tests",
           "tools")


def files(*suffixes, folders=FOLDERS):
    """The files below the folders, and beside them for all folders, that have a suffix."""
    found = [path for folder in folders for path in (ROOT / folder).rglob("*") if path.is_file()]
    if folders is FOLDERS:
        found += [path for path in ROOT.iterdir() if path.is_file()]
    return sorted(path for path in found if path.suffix in suffixes)


def name(path):
    return str(path.relative_to(ROOT))


def report(errors, warnings=()):
    """Prints both and ends the script: with 1 where there are errors."""
    for warning in warnings:
        print(f"warning: {warning}")
    for error in errors:
        print(f"error: {error}", file=sys.stderr)
    sys.exit(1 if errors else 0)
