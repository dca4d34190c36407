"""Runs the sides of a group, turn by turn."""
import os
import subprocess
import sys
import tempfile
from contextlib import nullcontext
from dataclasses import dataclass, field
from pathlib import Path

DATA = Path("build/bench-data")
LOG = DATA / "log"
RUNNER = Path("build/bench/apps/opnimp/opnimp")


class Failed(Exception):
    pass


@dataclass(frozen=True)
class Group:
    """Sides that take turns, and the rows that come of them."""

    name: str
    title: str
    rounds: int
    sides: dict  # by name: a command that prints a sample, or a function that answers one
    figures: list
    needs: dict = field(default_factory=dict)  # of a side: the peer (peers.py) that it cannot do without
    prepare: object = lambda: None  # makes input
    around: object = nullcontext  # what has to be there meanwhile; False where it cannot be


def program(name, *arguments):
    return [f"build/bench/bench/bench_{name}", *map(str, arguments)]


def whole(*command):
    """A command that is measured as a whole, with the processes that it starts."""
    return program("whole", *command)


def run(command, **options):
    """What the command prints. Its errors are shown only if it fails."""
    command = [str(part) for part in command]
    # Files: what a command leaves running may keep a pipe open.
    with tempfile.TemporaryFile("w+") as out, tempfile.TemporaryFile("w+") as errors:
        status = subprocess.run(command, stdout=out, stderr=errors, text=True, **options).returncode
        out.seek(0)
        errors.seek(0)
        if status != 0:
            raise Failed(f"{' '.join(command)}: exit status {status}\n{(out.read() + errors.read())[-4000:]}")
        return out.read()


def sample(command):
    numbers = run(command).split()
    if len(numbers) != 4:
        raise Failed(f"{' '.join(map(str, command))}: no measurement: {numbers}")
    return [float(number) for number in numbers]


def alternate(sides, rounds):
    """Every other round goes in the opposite order."""
    samples = {name: [] for name in sides}
    for number in range(rounds):
        for name in list(sides) if number % 2 == 0 else reversed(sides):
            side = sides[name]
            samples[name].append(side() if callable(side) else sample(side))
    return samples


def skip(why):
    print(f"bench/run: SKIPPED: {why}", file=sys.stderr)


def build(preset, *targets):
    run(["cmake", "--preset", preset])
    run(["cmake", "--build", "--preset", preset, "--target", *targets, "-j", str(os.cpu_count())])


def beginning(source, target, lines):
    """The first lines of a file, with its titles."""
    with open(source, "rb") as whole_file, open(target, "wb") as part:
        for _ in range(lines + 1):
            part.write(whole_file.readline())


def make_input():
    LOG.mkdir(parents=True, exist_ok=True)
    for old in [*DATA.glob("company.db*"), *LOG.iterdir()]:
        old.unlink()
    run(program("make_files", DATA))
    run(program("make_company", DATA / "company.db"))
