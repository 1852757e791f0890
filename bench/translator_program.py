"""translator_bench, as the scripts of this folder run it."""

import argparse
import json
import pathlib
import re
import subprocess

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILT = ROOT / "build/release/bench/translator_bench"
PEER = "idiomatic/"
PORTS = 64
# A small fabric is gone through several times, so that what happens once weighs little.
LEAST_ITERATIONS = 16384


class Failure(Exception):
    """Ends a script, with a message for its user."""


def numbers(text):
    """An argument type: numbers with commas between them."""
    try:
        return [int(word) for word in text.split(",")]
    except ValueError:
        raise argparse.ArgumentTypeError(f"{text!r}: expected numbers with commas between them") from None


def words(text):
    """An argument type: words with commas between them."""
    return text.split(",")


def add_arguments(parser, sizes):
    """The arguments that the scripts share; `sizes` is what they measure when not told."""
    parser.add_argument("--sizes", type=numbers, default=sizes, metavar="H,...", help="numbers of hosts")
    parser.add_argument("--benchmarks", type=words, metavar="NAME,...", help="these alone, for example type_change")
    parser.add_argument("--program", type=pathlib.Path, default=BUILT, help="translator_bench, where it was built")


def iterations_for(size):
    """A multiple of the ports, which is what one step of some benchmarks makes at once."""
    ports = size * PORTS
    return ports * max(1, LEAST_ITERATIONS // ports)


def output_of(command):
    """Standard output and standard error of a command that must succeed."""
    try:
        done = subprocess.run(command, capture_output=True, text=True, check=False)
    except OSError as error:
        raise Failure(f"{command[0]}: {error.strerror}") from None
    if done.returncode != 0:
        raise Failure(f"{' '.join(map(str, command))}\n{done.stdout}{done.stderr}")
    return done.stdout, done.stderr


class Program:
    def __init__(self, path):
        self.path = path

    def compiler(self):
        return output_of([self.path, "--compiler"])[0].strip()

    def benchmarks(self, sizes, wanted):
        """Name and size of each benchmark, in the program's order; `wanted` None stands for all names."""
        listed = [line.split("/") for line in output_of([self.path, "--benchmark_list_tests"])[0].splitlines()]
        own = [(words[0], int(words[1])) for words in listed if len(words) == 2]
        for size in sizes:
            if size not in {has for _, has in own}:
                raise Failure(f"no benchmark has {size} hosts")
        for name in wanted or []:
            if name not in {has for has, _ in own}:
                raise Failure(f"no benchmark is called {name}")
        return [(name, size) for size in sizes for name, has in own if has == size and (not wanted or name in wanted)]

    @staticmethod
    def selecting(name, size):
        return f"--benchmark_filter=^{name}/{size}(/|$)"

    def nanoseconds(self, name, size):
        """Processor time of one iteration, in a process of its own."""
        out, _ = output_of([self.path, self.selecting(name, size), "--benchmark_format=json"])
        return json.loads(out)["benchmarks"][0]["cpu_time"]

    def change_instructions(self, name, size):
        """Instructions of one iteration, as callgrind counts them."""
        iterations = iterations_for(size)
        _, error = output_of([
            "valgrind", "--tool=callgrind", "--instr-atstart=no", "--callgrind-out-file=/dev/null",
            self.path, self.selecting(name, size), f"--iterations={iterations}",
        ])
        collected = re.search(r"Collected : (\d+)", error)
        total = int(collected.group(1)) if collected else 0
        if total == 0:
            raise Failure(f"callgrind counted nothing for {name}/{size}; without valgrind/callgrind.h when it was "
                          f"built, the program does not say what to count\n{error}")
        return total / iterations
