#!/usr/bin/env python3
"""What the programs for Windows make of that system: paths, code pages, files of other programs, the console."""

import pathlib
import shutil
import tempfile
import time
import unittest

import wine

EXAMPLE = wine.PROJECT / "examples"
RESULT = (EXAMPLE / "expected" / "rausel.Akum").read_bytes()

TABLE = "id,nach,flaeche_km2,befestigung\nMühle,,1.5,0.4\na,Mühle,2,\n"


def result_of(name):
    """The expected result of the example under another name."""
    return RESULT.replace(b"rausel", name, 1).replace(b"\n", b"\r\n")


class HostTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        place = tempfile.TemporaryDirectory(prefix="kv_host.")
        self.addCleanup(place.cleanup)
        self.folder = pathlib.Path(place.name)

    def put_example(self, folder, name):
        folder.mkdir(parents=True, exist_ok=True)
        for file in EXAMPLE.glob("rausel.*"):
            shutil.copy(file, folder / (name + file.suffix))

    def hold(self, file, *how, program="hold_open"):
        """Lets another program hold a file until the end of the test, or until its input ends."""
        holder = wine.start(program, [wine.drive_path(file), *how], self.folder)
        self.addCleanup(holder.communicate)
        self.assertEqual(holder.stdout.readline().strip(), b"held")
        return holder


class AkumTest(HostTest):
    def run_akum(self, *arguments):
        return wine.run("KV_Akum", arguments, self.folder)

    def assert_result(self, outcome, file, shown):
        notice = b"Ergebnis: " + shown + b".Akum\x03"
        self.assertTrue(outcome.stdout.endswith(notice), outcome.stdout)
        self.assertEqual(outcome.stderr, b"")
        self.assertEqual(outcome.returncode, 0)
        self.assertEqual(file.read_bytes(), result_of(shown))

    def test_takes_a_path_with_drive_letter_and_backslashes(self):
        self.put_example(self.folder / "data", "var1")
        path = wine.drive_path(self.folder / "data" / "var1")
        self.assertRegex(path, r"^Z:\\")
        outcome = self.run_akum(path)
        self.assertTrue(outcome.stdout.endswith(path.encode() + b".Akum\x03"), outcome.stdout)
        self.assertEqual((self.folder / "data" / "var1.Akum").read_bytes(), result_of(path.encode()))
        self.assertTrue((self.folder / "code.pkl").exists())

    def test_takes_a_relative_path_with_backslashes(self):
        self.put_example(self.folder / "data" / "low", "var1")
        outcome = self.run_akum("data\\low\\var1")
        self.assert_result(outcome, self.folder / "data" / "low" / "var1.Akum", b"data\\low\\var1")

    def test_shows_a_name_with_umlauts_in_the_code_page(self):
        self.put_example(self.folder, "Größe")
        self.assert_result(self.run_akum("Größe"), self.folder / "Größe.Akum", "Größe".encode("cp1252"))

    def test_takes_names_beyond_the_code_page(self):
        for name in ("Łódź", "река", "川", "🌊"):
            self.put_example(self.folder / "Gewässer", name)
            outcome = self.run_akum("Gewässer\\" + name)
            self.assert_result(outcome, self.folder / "Gewässer" / (name + ".Akum"), f"Gewässer\\{name}".encode())

    def test_does_not_take_an_argument_for_a_pattern(self):
        self.put_example(self.folder, "var1")
        outcome = self.run_akum("va*")
        self.assertIn(b"Die Datei va*.sys liegt nicht vor!\r\nAbbruch!\x03", outcome.stdout)

    def test_takes_paths_longer_than_260_characters(self):
        # The name itself may have 200 characters, and the current folder fewer than 260.
        self.folder = self.folder / ("a" * 60) / ("b" * 60)
        names = ["c" * 60, "d" * 60, "var1"]
        self.put_example(self.folder.joinpath(*names[:2]), names[2])
        self.assertGreater(len(wine.drive_path(self.folder.joinpath(*names))), 260)
        shown = "\\".join(names)
        self.assert_result(self.run_akum(shown), self.folder.joinpath(*names[:2], "var1.Akum"), shown.encode())
        self.assertTrue((self.folder / "code.pkl").exists())
        # Wine has no such limit; the system has it for all forms of a path but one.
        calls = wine.run("KV_Akum", [shown], self.folder, trace="+file").stderr.decode("utf-8", "replace")
        folder = wine.drive_path(self.folder).replace("\\", r"\\")
        self.assertIn(r'CreateFileW L"\\\\?' + r"\\" + folder, calls)
        self.assertNotRegex(calls, r'CreateFileW L"c+\\\\d')

    def test_standard_output_is_binary(self):
        outcome = self.run_akum("missing")
        self.assertEqual(
            outcome.stdout,
            b"\x01messagebox_button_0_settitle\x02KV_Akum: Fehler\x03"
            b"\x01messagebox_button_0\x02Die Datei missing.sys liegt nicht vor!\r\nAbbruch!\x03")

    def test_tells_that_another_program_holds_the_result(self):
        self.put_example(self.folder, "var1")
        (self.folder / "var1.Akum").write_bytes(b"old")
        holder = self.hold(self.folder / "var1.Akum")
        outcome = self.run_akum("var1")
        self.assertRegex(outcome.stderr, rb'^E/A-Fehler beim .*"var1\.Akum": .+\r\n$')
        holder.communicate()
        self.assertEqual((self.folder / "var1.Akum").read_bytes(), b"old")
        self.assertEqual([file.name for file in self.folder.glob("*.neu")], [])

    def test_writes_in_its_place_a_result_that_another_program_has_open(self):
        self.put_example(self.folder, "var1")
        (self.folder / "var1.Akum").write_bytes(b"old" * 10000)
        self.hold(self.folder / "var1.Akum", "shared")
        self.assert_result(self.run_akum("var1"), self.folder / "var1.Akum", b"var1")

    def test_refuses_a_variant_that_another_run_holds(self):
        self.put_example(self.folder, "var1")
        holder = self.hold(self.folder / "var1.sys", program="locks")
        outcome = self.run_akum("var1")
        self.assertRegex(outcome.stderr, rb'^E/A-Fehler beim Sperren von "var1\.sys": .+\r\n$')
        self.assertFalse((self.folder / "var1.Akum").exists())
        holder.communicate()
        self.assert_result(self.run_akum("var1"), self.folder / "var1.Akum", b"var1")

    def test_runs_commands_of_the_interpreter(self):
        self.put_example(self.folder, "var1")
        outcome = wine.run("runs_command", ["dir /b *.nfl *.kfl>files.lis"], self.folder)
        self.assertEqual((outcome.returncode, outcome.stdout, outcome.stderr), (0, b"", b""))
        self.assertEqual(sorted((self.folder / "files.lis").read_bytes().split()), [b"var1.kfl", b"var1.nfl"])

    def test_tells_that_another_program_holds_an_input(self):
        self.put_example(self.folder, "var1")
        self.hold(self.folder / "var1.trs")
        outcome = self.run_akum("var1")
        self.assertIn(b"var1.trs", outcome.stdout + outcome.stderr)
        self.assertFalse((self.folder / "var1.Akum").exists())


class SchauTest(HostTest):
    def run_schau(self, *arguments):
        return wine.run("KV_Schau", arguments, self.folder)

    def test_tells_its_version(self):
        self.assertRegex(self.run_schau("--version").stdout, rb"^KV_Schau \d+\.\d+\.\d+\n$")

    def test_a_console_shows_its_letters(self):
        shown = wine.run_in_console("KV_Schau", ["--help"], self.folder)
        self.assertIn("KV_Schau prüft Varianten für KV_Akum", shown)

    def test_checks_and_runs_a_variant_with_umlauts(self):
        folder = self.folder / "Gewässer mit Leerzeichen"
        self.put_example(folder, "Größe")
        for path in ("Gewässer mit Leerzeichen\\Größe", wine.drive_path(folder / "Größe.sys")):
            outcome = self.run_schau("rechnen", path)
            shown = outcome.stdout.decode("utf-8")
            self.assertEqual(outcome.stderr, b"")
            self.assertEqual(outcome.returncode, 0, shown)
            self.assertIn("Größe: Ergebnis ohne Befund. ", shown)
            self.assertEqual((folder / "Größe.Akum").read_bytes(), result_of("Größe".encode("cp1252")))
            self.assertEqual([entry.name for entry in folder.iterdir() if entry.is_dir()], [])

    def test_runs_a_variant_beyond_the_code_page(self):
        self.put_example(self.folder, "река")
        outcome = self.run_schau("rechnen", "-q", "река")
        self.assertEqual((outcome.returncode, outcome.stdout, outcome.stderr), (0, b"", b""))
        self.assertEqual((self.folder / "река.Akum").read_bytes(), result_of("река".encode()))

    def test_hands_the_result_on(self):
        self.put_example(self.folder, "var1")
        self.run_schau("rechnen", "-q", "var1")
        outcome = self.run_schau("tabelle", "--csv", "-o", "Tabelle Größe.csv", "var1")
        self.assertEqual((outcome.returncode, outcome.stderr), (0, b""))
        table = (self.folder / "Tabelle Größe.csv").read_bytes()
        self.assertIn(b"\nT0010,", table.replace(b'"', b""))

    def test_writes_plan_and_report_under_any_name(self):
        self.put_example(self.folder, "Größe")
        self.run_schau("rechnen", "-q", "Größe")
        for command, file, beginning in (("plan", "Übersicht.svg", b"<"), ("bericht", "Übersicht.html", b"<!doctype html>")):
            outcome = self.run_schau(command, "-o", file, "Größe")
            self.assertLessEqual(outcome.returncode, 1, outcome.stderr)
            written = (self.folder / file).read_bytes()
            self.assertTrue(written.startswith(beginning), written[:100])
            self.assertIn(b"T0010", written)

    def test_compares_mends_and_imports_under_any_name(self):
        self.put_example(self.folder, "Größe")
        self.put_example(self.folder, "река")
        tables = self.folder / "река.nfl"
        tables.write_bytes(tables.read_bytes().replace(b"\n", b"\r\n", 3))
        self.assertEqual(self.run_schau("vergleichen", "Größe", "река").stderr, b"")
        outcome = self.run_schau("richten", "--schreiben", "река")
        self.assertEqual(outcome.stderr, b"")
        self.assertNotIn(b"\r", tables.read_bytes().replace(b"\r\n", b""))
        self.assertTrue((self.folder / "река.nfl~").exists(), outcome.stdout.decode("utf-8"))
        (self.folder / "Übersicht.csv").write_text(TABLE)
        outcome = self.run_schau("aus-tabelle", "-o", "Höhe", "Übersicht.csv")
        self.assertEqual((outcome.returncode, outcome.stderr), (0, b""), outcome.stdout.decode("utf-8"))
        self.assertTrue((self.folder / "Höhe.sys").exists())

    def test_runs_variants_side_by_side(self):
        names = [f"var{number}" for number in range(4)]
        for name in names:
            self.put_example(self.folder, name)
        outcome = self.run_schau("rechnen", "-j", "2", *names)
        self.assertEqual(outcome.returncode, 0, outcome.stdout.decode("utf-8"))
        for name in names:
            self.assertEqual((self.folder / (name + ".Akum")).read_bytes(), result_of(name.encode()))

    def test_stops_a_program_that_does_not_end(self):
        self.put_example(self.folder, "var1")
        begin = time.monotonic()
        outcome = self.run_schau("rechnen", "--frist", "1", "--programm", wine.drive_path(wine.program("waits")), "var1")
        self.assertEqual(outcome.returncode, 3, outcome.stdout.decode("utf-8"))
        self.assertLess(time.monotonic() - begin, 60)

    def test_tells_a_crash(self):
        self.put_example(self.folder, "var1")
        outcome = self.run_schau("rechnen", "--programm", wine.drive_path(wine.program("crashes")), "var1")
        text = (outcome.stdout + outcome.stderr).decode("utf-8")
        self.assertEqual(outcome.returncode, 3, text)
        self.assertIn("Ausnahme 0xC0000005: unzulässiger Speicherzugriff", text)

    def test_tells_that_another_program_holds_an_input(self):
        self.put_example(self.folder, "var1")
        self.hold(self.folder / "var1.trs")
        outcome = self.run_schau("pruefen", "var1")
        self.assertEqual(outcome.returncode, 3)
        self.assertIn("var1.trs", (outcome.stdout + outcome.stderr).decode("utf-8"))


if __name__ == "__main__":
    with wine.awake():
        unittest.main()
