#!/usr/bin/env python3
"""Unpacks the zip and runs both of its programs on the example in it, as its user would."""

import pathlib
import sys
import tempfile
import zipfile

import wine


def run(program, *arguments, folder):
    outcome = wine.run_file(program, arguments, folder)
    assert (outcome.returncode, outcome.stderr) == (0, b""), outcome
    return outcome.stdout


def main():
    expected = (wine.PROJECT / "examples" / "expected" / "rausel.Akum").read_bytes().replace(b"\n", b"\r\n")
    with wine.awake(), tempfile.TemporaryDirectory(prefix="kv_zip.") as place:
        zipfile.ZipFile(sys.argv[1]).extractall(place)
        (unpacked,) = pathlib.Path(place).iterdir()
        example = unpacked / "beispiel"
        result = example / "rausel.Akum"
        run(unpacked / "KV_Akum.exe", "rausel", folder=example)
        assert result.read_bytes() == expected
        result.unlink()
        # KV_Schau finds the KV_Akum beside it.
        shown = run(unpacked / "KV_Schau.exe", "rechnen", "rausel", folder=example).decode("utf-8")
        assert "Ergebnis ohne Befund" in shown, shown
        assert result.read_bytes() == expected
        for document in ("Handbuch.html", "Handbuch.pdf", "messages.html", "CHANGELOG.md", "Lizenzen.txt"):
            assert (unpacked / document).stat().st_size > 0
    print("the programs of the zip run its example")
    return 0


if __name__ == "__main__":
    sys.exit(main())
