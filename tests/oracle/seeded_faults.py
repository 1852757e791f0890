#!/usr/bin/env python3
"""Plants one fault after the other in a copy of the translator and sees whether the tapes find it.

usage: seeded_faults.py [--check] [--build FOLDER] [--tapes N] [-j N] [FAULT...]

Prints a line for each fault of faults.py, or for those named: how many tapes it took, how many seconds, and the first
line in which the translator differs from the oracle. The translator without a fault has to pass all the tapes.

Exits 0 if every fault is found, 1 if not, and 2 if the table no longer fits the sources. --check looks at that alone.
"""

import argparse
import concurrent.futures
import difflib
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import time

sys.dont_write_bytecode = True
import faults

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDERS = ["translator", "finder"]
# Whether a trace point traces is not to be seen in the models.
NOT_SEEDED = {"translator/internal/Tracing.cpp"}
# Beside the sources themselves these include their headers.
USERS = ["tests/oracle/TranslatorSubject.cpp", "tests/oracle/TapesTest.cpp"]
PATIENCE = 1800  # Seconds.


def sources(root):
    return sorted(path.relative_to(root).as_posix() for folder in FOLDERS for path in (root / folder).rglob("*.cpp"))


def misfits(table, root, expected=25):
    """Yields what is wrong with the table."""
    if len(table) != expected or len({fault.name for fault in table}) != expected:
        yield f"there have to be {expected} faults, each with a name of its own"
    for fault in table:
        count = (root / fault.file).read_text(encoding="utf-8").count(fault.old)
        if count != 1:
            yield f"{fault.name}: the old text occurs {count} times in {fault.file}"
        if fault.old == fault.new:
            yield f"{fault.name}: changes nothing"
    for source in sources(root):
        if source not in NOT_SEEDED and all(fault.file != source for fault in table):
            yield f"{source}: no fault is planted there"


def commands_of(folder):
    """The compiler commands of a build, by source."""
    entries = json.loads((folder / "compile_commands.json").read_text(encoding="utf-8"))
    return {os.path.relpath(entry["file"], ROOT): shlex.split(entry["command"]) for entry in entries}


def strays(commands):
    """Yields which of the sources that are compiled again cannot be."""
    for source in [*sources(ROOT), *USERS]:
        if source not in commands:
            yield f"{source}: has no compiler command of its own"


def after(words, flag):
    return words.index(flag) + 1


class Build:
    """A CMake build of the tapes, whose commands serve to build them with another translator."""

    def __init__(self, folder, jobs):
        self.folder = folder
        self.run("cmake", "--build", str(folder), "--parallel", str(jobs), "--target", "test-oracle")
        commands = commands_of(folder)
        self.compile = {source: commands[source] for source in [*sources(ROOT), *USERS]}
        self.rest = [words[after(words, "-o")] for source, words in commands.items() if source.startswith("reflection/")]
        link = self.run("ninja", "-t", "commands", "test-oracle").strip().splitlines()[-1]
        self.link = shlex.split(link.removeprefix(": && ").removesuffix(" && :"))

    def run(self, *words):
        return subprocess.run(words, cwd=self.folder, check=True, text=True, stdout=subprocess.PIPE).stdout

    def compiled(self, source, scratch):
        """Compiles the source, or the scratch folder's copy of it, with the scratch folder's headers."""
        words = list(self.compile[source])
        copy = scratch / source
        result = str(scratch / source.replace("/", ".")) + ".o"
        words[after(words, "-c")] = str(copy if copy.exists() else ROOT / source)
        words[after(words, "-o")] = result
        first = next(i for i, word in enumerate(words) if word.startswith("-I"))
        self.run(*words[:first], f"-I{scratch}", *words[first:])
        return result

    def linked(self, changed, scratch):
        """Links the tapes; `changed` gives the objects that take the place of those built before."""
        objects = {source: words[after(words, "-o")] for source, words in self.compile.items()}
        replaced = {objects[source]: changed[source] for source in USERS if source in changed}
        ours = [changed.get(source, objects[source]) for source in objects if source not in USERS]
        # In the place of their library, wherever it stands: what binds within it would stay as it is.
        words = [replaced.get(word, word) for word in self.link
                 if not os.path.basename(word).startswith("libnetwork-topology-aggregator.")]
        program = str(scratch / "tapes")
        output = after(words, "-o")
        self.run(*words[: output - 1], "-o", program, *ours, *self.rest, *words[output + 1 :])
        return program


def planted(fault, scratch):
    for folder in FOLDERS:
        shutil.copytree(ROOT / folder, scratch / folder)
    if fault:
        file = scratch / fault.file
        file.write_text(file.read_text(encoding="utf-8").replace(fault.old, fault.new), encoding="utf-8")


def first_difference(report):
    """Of two renderings the first lines that differ: what is required, and what there is."""
    halves = re.search(r"differs\n--- a\n(.*?)\n--- b\n(.*?)\n(?:\n|$|\[)", report, re.S)
    if not halves:
        return ""
    required, present = ([line.strip() for line in half.splitlines()] for half in halves.groups())
    for change, a, a_end, b, b_end in difflib.SequenceMatcher(None, required, present).get_opcodes():
        if change != "equal":
            return f"required {(required[a:a_end] or ['nothing'])[0]}; found {(present[b:b_end] or ['nothing'])[0]}"
    return ""


def attempt(build, fault, tapes):
    """Plants a fault, or none. Returns how many tapes it took to find it, or None, the seconds, and the difference."""
    start = time.monotonic()
    with tempfile.TemporaryDirectory(prefix="seeded-faults-") as folder:
        scratch = pathlib.Path(folder)
        planted(fault, scratch)
        changed = []
        if fault:
            changed = list(build.compile) if fault.file.endswith(".h") else [fault.file]
        program = build.linked({source: build.compiled(source, scratch) for source in changed}, scratch)
        environment = dict(os.environ, TAPES=str(tapes), TAPE_SEED="1", TAPE_SHRINK="0")
        run = subprocess.run(
            [program, "--gtest_brief=1", "--gtest_filter=Tapes.*"],
            env=environment,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            errors="replace",
            timeout=PATIENCE,
        )
    seconds = time.monotonic() - start
    if run.returncode == 0:
        return None, seconds, ""
    seed = re.search(r"^seed (\d+)$", run.stdout, re.M)
    if not seed:
        raise RuntimeError(f"{fault.name if fault else 'no fault'}: the tapes ended with {run.returncode}\n{run.stdout}")
    return int(seed.group(1)), seconds, first_difference(run.stdout)


def search(build, table, tapes, jobs):
    """Prints what became of each fault; returns the number of those that were found."""
    width = max(len(fault.name) for fault in table)
    print(f"{'fault':{width}}  found      tapes  seconds  first difference")
    found = 0
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        attempts = [pool.submit(attempt, build, fault, tapes) for fault in table]
        for fault, future in zip(table, attempts):
            needed, seconds, difference = future.result()
            found += needed is not None
            word = "NOT FOUND" if needed is None else "found"
            print(f"{fault.name:{width}}  {word:9}  {needed or tapes:5}  {seconds:7.1f}  {difference}".rstrip(), flush=True)
    return found


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", action="store_true", help="only see whether the table fits the sources and the build")
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build/dev", help="a build made with Ninja")
    parser.add_argument("--tapes", type=int, default=20000, help="how many a fault may take")
    parser.add_argument("-j", dest="jobs", type=int, default=2, help="how many faults at a time")
    parser.add_argument("faults", nargs="*", metavar="FAULT")
    options = parser.parse_args(arguments)

    wrong = list(misfits(faults.FAULTS, ROOT))
    names = {fault.name for fault in faults.FAULTS}
    wrong += [f"{name}: no such fault" for name in options.faults if name not in names]
    if options.check:
        wrong += strays(commands_of(options.build))
    for line in wrong:
        print(line)
    if wrong:
        return 2
    if options.check:
        return 0

    table = [fault for fault in faults.FAULTS if not options.faults or fault.name in options.faults]
    build = Build(options.build.resolve(), options.jobs)
    alarm, seconds, difference = attempt(build, None, options.tapes)
    if alarm is not None:
        print(f"without a fault tape {alarm} fails: {difference}")
        return 1
    print(f"without a fault all {options.tapes} tapes pass, {seconds:.1f} seconds")
    found = search(build, table, options.tapes, options.jobs)
    print(f"{found} of {len(table)} found")
    return 0 if found == len(table) else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
