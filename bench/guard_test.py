#!/usr/bin/env python3
"""What the guard lets pass and what not, with counts that no program had to make."""

import contextlib
import importlib.machinery
import importlib.util
import io
import json
import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
import translator_program
loader = importlib.machinery.SourceFileLoader("guard", str(pathlib.Path(__file__).with_name("guard")))
guard = importlib.util.module_from_spec(importlib.util.spec_from_loader("guard", loader))
loader.exec_module(guard)


class Counter:
    """Stands in for the program."""

    def __init__(self, compiler, **counts):
        self.compiler_ = compiler
        self.counts = counts

    def compiler(self):
        return self.compiler_

    def change_instructions(self, name, _size):
        return self.counts[name]

    def benchmarks(self):
        return [(name, 16) for name in self.counts]


class GuardTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.table = pathlib.Path(directory.name) / "table.json"

    def store(self, program):
        with contextlib.redirect_stdout(io.StringIO()):
            guard.store(self.table, program.compiler(), guard.counted(program, program.benchmarks()))

    def check(self, program):
        out = io.StringIO()
        with contextlib.redirect_stdout(out):
            status = guard.check(self.table, program, program.benchmarks())
        return status, out.getvalue()

    def test_what_is_within_the_tolerance_passes_without_a_word(self):
        self.store(Counter("GCC 12", type_change=1000, teardown=1000))
        status, out = self.check(Counter("GCC 12", type_change=1029, teardown=971))
        self.assertEqual(0, status)
        self.assertNotIn("dearer", out)
        self.assertNotIn("cheaper", out)

    def test_a_dearer_row_fails_and_is_named(self):
        self.store(Counter("GCC 12", type_change=1000, teardown=1000))
        status, out = self.check(Counter("GCC 12", type_change=1031, teardown=1000))
        self.assertEqual(1, status)
        self.assertIn("dearer: type_change/16: 1000.0 instructions before, 1031.0 now, +3.1%\n", out)
        self.assertNotIn("dearer: teardown", out)

    def test_a_cheaper_row_passes_with_a_hint(self):
        self.store(Counter("GCC 12", type_change=1000))
        status, out = self.check(Counter("GCC 12", type_change=900))
        self.assertEqual(0, status)
        self.assertIn("cheaper: type_change/16: 1000.0 instructions before, 900.0 now, -10.0%\n", out)
        self.assertIn("--store", out)

    def test_counts_by_another_compiler_are_not_compared(self):
        self.store(Counter("GCC 12", type_change=1000))
        status, out = self.check(Counter("GCC 13", type_change=5000))
        self.assertEqual(0, status)
        self.assertIn("not comparable", out)

    def test_a_missing_table_says_how_to_get_one(self):
        with self.assertRaisesRegex(guard.Failure, "there is no table.json.*--store"):
            self.check(Counter("GCC 12", type_change=1000))

    def test_a_missing_row_says_how_to_get_it(self):
        self.store(Counter("GCC 12", type_change=1000))
        with self.assertRaisesRegex(guard.Failure, "no teardown/16.*--store"):
            self.check(Counter("GCC 12", teardown=1000))

    def test_storing_keeps_other_rows_of_the_same_compiler_alone(self):
        self.store(Counter("GCC 12", type_change=1000))
        self.store(Counter("GCC 12", teardown=2000))
        self.assertEqual({"type_change/16": 1000, "teardown/16": 2000}, self.stored())
        self.store(Counter("GCC 13", teardown=3000))
        self.assertEqual({"teardown/16": 3000}, self.stored())

    def stored(self):
        return json.loads(self.table.read_text())["instructions"]

    def test_every_benchmark_makes_whole_steps(self):
        for size in (16, 256, 4096):
            self.assertEqual(0, translator_program.iterations_for(size) % (size * translator_program.PORTS))


if __name__ == "__main__":
    unittest.main()
