"""In real windows: both sides are Windows programs under Wine, on one virtual display."""
import os
import shutil
import subprocess
from contextlib import contextmanager
from pathlib import Path

from figures.measure import DATA, LOG, Group, build, skip
from figures.rows import MEMORY, Compare

PROGRAMS = Path("build/bench-windows/bin")
FILE = DATA / "documents-32766x7.csv"
TOOLS = ("x86_64-w64-mingw32-g++-posix", "widl", "wine", "Xvfb")


def in_wine(name, *arguments):
    return ["wine", PROGRAMS / f"bench_{name}.exe", *arguments]


def screen(what):
    return in_wine("screen_window", what, FILE, LOG)


def lists(what):
    return in_wine("bare_lists", what, FILE)


def library(name):
    return PROGRAMS / f"{name}.dll"


def size(name):
    return lambda: [0, 0, library(name).stat().st_size / 1024, None]


@contextmanager
def display():
    """The display and Wine's configuration are those of scripts/wine, for as long as it runs."""
    missing = [tool for tool in TOOLS if not shutil.which(tool)]
    if missing:
        skip(f"no {missing[0]}: nothing is measured in windows")
        yield False
        return
    build("bench-windows", "bench/all")
    before = dict(os.environ)
    with subprocess.Popen(["scripts/wine", "--virtual", "--run", "sh", "-c", "env; echo; read _ || true"], text=True,
                          stdin=subprocess.PIPE, stdout=subprocess.PIPE) as keeper:
        for line in iter(keeper.stdout.readline, "\n"):
            name, _, value = line.rstrip("\n").partition("=")
            if name == "DISPLAY" or name.startswith("WINE"):
                os.environ[name] = value
        try:
            yield True
        finally:
            os.environ.clear()
            os.environ.update(before)
            keeper.stdin.close()


def times(what, against, ours, peer, goal=None, **options):
    """Wine's processor time is the clock's, and that of its server is not in it."""
    return Compare(what, against, ours, peer, goal, by_clock=True, **options)


GROUP = Group(
    "windows", "In real windows, under Wine", 7,
    {
        "view": screen("view-window"),
        "hidden": screen("view-headless"),
        "repaint": lists("repaint"),
        "show": lists("show"),
        "insert": lists("insert"),
        "memory": screen("memory"),
        "lists_memory": lists("memory"),
        "load": in_wine("load_dll", library("Velk_OpnImp")),
        "load_bare": in_wine("load_dll", library("bench_bare_dll")),
        "size": size("Velk_OpnImp"),
        "size_bare": size("bench_bare_dll"),
    },
    [
        times("View in a window", "without one", "view", "hidden", 1.5),
        times("... what the window adds", "bare lists' repaint", "view", "repaint", less="hidden"),
        times("... what the window adds", "bare lists, filled", "view", "show", less="hidden"),
        times("View in a window", "bare lists, by inserting", "view", "insert"),
        Compare("A screen's memory", "a bare window's", "memory", "lists_memory", column=MEMORY),
        times("... of it private", "a bare window's", "memory", "lists_memory", unit="KB"),
        times("Loading the DLL", "a bare one", "load", "load_bare"),
        Compare("Size of the DLL", "a bare one's", "size", "size_bare", column=MEMORY),
    ],
    around=display)
