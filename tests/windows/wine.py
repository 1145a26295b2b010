"""Starts the programs for Windows under Wine, each in a folder of its own. As a program it only makes Wine ready."""

import contextlib
import fcntl
import os
import pathlib
import pty
import subprocess

PROJECT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get("KV_WINDOWS_BUILD", PROJECT / "build" / "windows"))
WINE = os.environ.get("KV_WINE", "/usr/lib/wine/wine64")
PREFIX = BUILD / "wine"

# Arguments and names of files come to the programs through the locale's encoding; its language decides on the
# code page, which is Windows-1252 for this one.
ENVIRONMENT = {**os.environ, "WINEPREFIX": str(PREFIX), "WINEDEBUG": "-all", "LC_ALL": "C.UTF-8"}


def program(name):
    return BUILD / "bin" / f"{name}.exe"


def prepare():
    """Makes Wine's own folders, once."""
    if not PREFIX.exists():
        subprocess.run([WINE, "wineboot", "--init"], env=ENVIRONMENT, check=True, capture_output=True)


@contextlib.contextmanager
def awake():
    """Wine with its services running. Otherwise the first of a row of programs brings them up, and its output is
    held open until two seconds after its end; two that bring them up at the same time can wait for ever."""
    with open(BUILD / "wine.lock", "w", encoding="ascii") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        prepare()
        interpreter = subprocess.Popen(
            [WINE, "cmd"], env=ENVIRONMENT, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        assert interpreter.stdout.readline(), "Wine does not start"
    # The interpreter ends with its input, and the services hold its output until they have ended: who wakes Wine
    # next must not meet them on their way out.
    try:
        yield
    finally:
        interpreter.communicate()


def run(name, arguments, folder, trace="-all"):
    """Runs a program to its end; standard output and standard error are the bytes that came. With a trace, standard
    error tells the calls of the system too."""
    return run_file(program(name), arguments, folder, trace)


def run_file(path, arguments, folder, trace="-all"):
    """The same with a program that lies anywhere."""
    return subprocess.run(
        [WINE, path, *arguments], cwd=folder, env={**ENVIRONMENT, "WINEDEBUG": trace}, stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=120, check=False)


def run_in_console(name, arguments, folder):
    """Runs a program in a terminal and returns the text that this is given to show."""
    process, terminal = pty.fork()
    if process == 0:
        os.chdir(folder)
        os.execve(WINE, [WINE, str(program(name)), *arguments], ENVIRONMENT)
    shown = b""
    with open(terminal, "rb", buffering=0) as screen:
        # The end of the last program at a terminal is an error of the reading.
        with contextlib.suppress(OSError):
            while piece := screen.read(4096):
                shown += piece
    os.waitpid(process, 0)
    return shown.decode("utf-8")


def start(name, arguments, folder):
    """Starts a program and leaves it running; its input and output are pipes."""
    return subprocess.Popen(
        [WINE, program(name), *arguments], cwd=folder, env=ENVIRONMENT, stdin=subprocess.PIPE,
        stdout=subprocess.PIPE, stderr=subprocess.PIPE)


def drive_path(path):
    """The path as a program for Windows sees it: Wine shows the root folder as drive Z."""
    return "Z:" + str(path).replace("/", "\\")


if __name__ == "__main__":
    prepare()
