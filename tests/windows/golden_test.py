#!/usr/bin/env python3
"""Runs KV_Akum.exe on every golden variant and holds what it leaves behind against the expected bytes.

The layout of a variant's folder is told in tests/golden.h. Of the expected bytes only the line ends of written
files and of standard error are the platform's own (CR LF), and so are the paths in what standard error tells.
"""

import concurrent.futures
import os
import pathlib
import re
import shutil
import sys
import tempfile

import wine

VARIANTS = wine.PROJECT / "tests" / "variants"


def platform_lines(expected):
    return expected.replace(b"\n", b"\r\n")


def platform_paths(expected):
    """Standard error names the path that the system was given, in quotes."""
    return re.sub(rb'"[^"]*"', lambda path: path.group().replace(b"/", b"\\"), expected)


def files_of(folder):
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def bytes_if_there(path):
    return path.read_bytes() if path.exists() else b""


def expected_files(variant):
    files = files_of(variant / "in")
    for name in bytes_if_there(variant / "out" / "removed.txt").decode().splitlines():
        del files[name]
    for name, expected in files_of(variant / "out" / "files").items():
        files[name] = platform_lines(expected)
    return files


def difference(what, expected, found):
    if expected == found:
        return []
    return [f"{what}: expected {expected!r}\n    found {found!r}"]


def differences(variant, outcome, folder):
    out = variant / "out"
    faults = difference("exit status", 0, outcome.returncode)
    faults += difference("standard output", bytes_if_there(out / "stdout"), outcome.stdout)
    if (out / "stderr.any").exists():
        if not outcome.stderr:
            faults.append("standard error holds nothing")
    else:
        expected = platform_paths(platform_lines(bytes_if_there(out / "stderr")))
        faults += difference("standard error", expected, outcome.stderr)
    expected = expected_files(variant)
    found = files_of(folder)
    for name in sorted(expected.keys() | found.keys()):
        faults += difference(name, expected.get(name), found.get(name))
    return faults


def try_variant(variant):
    arguments = (variant / "command.txt").read_bytes().decode("cp1252").splitlines()
    with tempfile.TemporaryDirectory(prefix="kv_golden.") as place:
        folder = pathlib.Path(place) / "work"
        if (variant / "in").exists():
            shutil.copytree(variant / "in", folder)
        else:
            folder.mkdir()
        return differences(variant, wine.run("KV_Akum", arguments, folder), folder)


def main():
    wanted = sys.argv[1:]
    variants = sorted(path for path in VARIANTS.iterdir() if path.is_dir() and (not wanted or path.name in wanted))
    failed = 0
    with wine.awake(), concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for variant, faults in zip(variants, pool.map(try_variant, variants)):
            failed += bool(faults)
            for fault in faults:
                print(f"{variant.name}: {fault}")
    print(f"{len(variants) - failed} of {len(variants)} golden variants leave the expected bytes")
    return 1 if failed or not variants else 0


if __name__ == "__main__":
    sys.exit(main())
