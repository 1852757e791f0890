#!/usr/bin/env python3
"""Holds tables of faults against a scratch tree, and sees that what no longer fits is told."""

import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
import seeded_faults
from faults import Fault


class SeededFaultsTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.root = pathlib.Path(directory.name)
        for file, text in {
            "translator/internal/Tracing.cpp": "trace();\n",
            "translator/V2Sm.cpp": "once();\ntwice();\ntwice();\n",
            "finder/PortBaseFinder.cpp": "find();\n",
        }.items():
            (self.root / file).parent.mkdir(parents=True, exist_ok=True)
            (self.root / file).write_text(text)

    def misfits(self, *table):
        return list(seeded_faults.misfits(table, self.root, len(table)))

    @staticmethod
    def fault(old, new="", file="translator/V2Sm.cpp", name=None):
        return Fault(name or file + old, file, old, new, "wrong")

    def found(self):
        return self.fault("find();", file="finder/PortBaseFinder.cpp")

    def test_a_table_that_fits_is_no_matter(self):
        self.assertEqual([], self.misfits(self.fault("once();"), self.found()))

    def test_an_old_text_has_to_occur_once(self):
        self.assertIn("n: the old text occurs 0 times in translator/V2Sm.cpp",
                      self.misfits(self.fault("never();", name="n"), self.found()))
        self.assertIn("n: the old text occurs 2 times in translator/V2Sm.cpp",
                      self.misfits(self.fault("twice();", name="n"), self.found()))

    def test_a_fault_changes_something(self):
        self.assertEqual(["n: changes nothing"], self.misfits(self.fault("once();", "once();", name="n"), self.found()))

    def test_every_source_has_a_fault_but_those_that_the_models_do_not_show(self):
        self.assertEqual(["finder/PortBaseFinder.cpp: no fault is planted there"], self.misfits(self.fault("once();")))

    def test_the_faults_are_counted(self):
        table = [self.fault("once();", name="n"), self.fault("find();", file="finder/PortBaseFinder.cpp", name="n")]
        complaint = ["there have to be 2 faults, each with a name of its own"]
        self.assertEqual(complaint, self.misfits(*table))
        self.assertEqual(1, len(list(seeded_faults.misfits([self.fault("once();"), self.found()], self.root, 3))))

    def test_a_difference_is_told_by_its_first_line(self):
        report = "seed 7\nt = x;\nafter call 1, version 3 differs\n--- a\n%s\n--- b\n%s\n\n[  FAILED  ]\n"
        self.assertEqual("required hostname: x; found hostname: y",
                         seeded_faults.first_difference(report % ("host\n  hostname: x\n", "host\n  hostname: y\n")))
        self.assertEqual("required nothing; found edge",
                         seeded_faults.first_difference(report % ("host\n", "host\nedge\n")))
        self.assertEqual("required edge; found nothing",
                         seeded_faults.first_difference(report % ("host\nedge\n", "host\n")))


if __name__ == "__main__":
    unittest.main()
