#!/usr/bin/env python3
"""Plants violations in a scratch tree and sees that each is found where it was planted."""

import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
import layering


class LayeringTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.root = pathlib.Path(directory.name)

    def found(self, path, text):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)
        return list(layering.check(self.root))

    def assert_found(self, where, found):
        self.assertEqual(1, len(found), found)
        self.assertTrue(found[0].startswith(where + ": "), found)

    def test_a_tree_that_keeps_to_the_table_is_clean(self):
        self.assertEqual([], self.found("platform/Vel/Ptr.h", "#pragma once\n#include <memory>\n#include <cxxabi.h>\n"))
        self.assertEqual([], self.found("platform/Keln/EthAddr.h", '#include "platform/Vel/String.h"\n'))
        self.assertEqual([], self.found("platform/NetworkTopology/HostV2.h", '#include "platform/Mlag/MlagState.h"\n'))
        self.assertEqual([], self.found("finder/F.h", '#include "platform/NetworkTopologyV3/Host.h"\n#include "finder/G.h"\n'))
        self.assertEqual([], self.found("translator/V2Sm.cpp", '#include "finder/F.h"\n'))
        self.assertEqual([], self.found("reflection/V2SmType.cpp", '#include "translator/V2Sm.h"\n'))
        self.assertEqual([], self.found("tools/main.cpp", '#include <CLI/CLI.hpp>\n#include "reflection/T.h"\n'))

    def test_a_floor_above_is_refused(self):
        found = self.found("platform/Vel/Ptr.h", '#pragma once\n\n#include "platform/NetworkTopology/HostV2.h"\n')
        self.assert_found("platform/Vel/Ptr.h:3", found)
        self.assertIn('#include "platform/NetworkTopology/HostV2.h"', found[0])

    def test_neither_model_includes_the_other(self):
        self.assert_found("platform/NetworkTopology/A.h:1",
                          self.found("platform/NetworkTopology/A.h", '#include "platform/NetworkTopologyV3/Host.h"\n'))
        (self.root / "platform/NetworkTopology/A.h").unlink()
        self.assert_found("platform/NetworkTopologyV3/A.h:1",
                          self.found("platform/NetworkTopologyV3/A.h", '#include "platform/NetworkTopology/HostV2.h"\n'))

    def test_the_value_types_do_not_know_each_other(self):
        self.assert_found("platform/Mlag/A.h:1", self.found("platform/Mlag/A.h", '#include "platform/Keln/EthAddr.h"\n'))

    def test_the_translator_does_not_include_reflection(self):
        self.assert_found("translator/A.cpp:1", self.found("translator/A.cpp", '#include "reflection/V2SmType.h"\n'))

    def test_a_library_below_tools_is_refused(self):
        self.assert_found("finder/A.cpp:2", self.found("finder/A.cpp", "\n#  include <nlohmann/json.hpp>\n"))
        (self.root / "finder/A.cpp").unlink()
        self.assert_found("platform/Vel/A.cpp:1", self.found("platform/Vel/A.cpp", "#include <unistd.h>\n"))

    def test_a_path_not_from_the_root_is_refused(self):
        self.assert_found("platform/Vel/A.cpp:1", self.found("platform/Vel/A.cpp", '#include "Ptr.h"\n'))
        (self.root / "platform/Vel/A.cpp").unlink()
        self.assert_found("tools/A.cpp:1", self.found("tools/A.cpp", '#include "../finder/F.h"\n'))

    def test_an_include_through_a_macro_is_refused(self):
        self.assert_found("platform/Vel/A.cpp:1", self.found("platform/Vel/A.cpp", "#include HEADER\n"))

    def test_a_source_outside_every_floor_is_found(self):
        self.assert_found("platform/stray.h:1", self.found("platform/stray.h", "#pragma once\n"))

    def test_what_goes_by_names_includes_no_class_above_the_models(self):
        self.found("translator/V2Sm.h", "#pragma once\n")
        self.found("tools/cli/Translation.h", '#include "translator/V2Sm.h"\n')
        self.found("tools/cli/Options.h", '#include <string>\n#include "tools/cli/Options.h"\n')
        for path in ("tools/call/A.cpp", "tools/cli/CallCommand.cpp", "tools/cli/InspectCommand.cpp"):
            self.assertEqual([], self.found(path, '#include "tools/cli/Options.h"\n'))
            self.assert_found(path + ":2", self.found(path, '\n#include "translator/V2Sm.h"\n'))
            through = self.found(path, '#include "tools/cli/Options.h"\n#include "tools/cli/Translation.h"\n')
            self.assert_found(path + ":2", through)
            self.assertIn("by way of tools/cli/Translation.h, translator/V2Sm.h", through[0])
            (self.root / path).unlink()
        self.assertEqual([], self.found("tools/cli/OtherCommand.cpp", '#include "tools/cli/Translation.h"\n'))

    def test_comments_are_no_includes(self):
        self.assertEqual([], self.found("platform/Vel/A.h", '// #include "finder/F.h"\n/*\n#include "finder/F.h"\n*/\n'))
        for before in ("/*\n*/", "// all of *.h /*\n", 'char const * all = "/*";\n'):
            self.assert_found("platform/Vel/A.h:3",
                              self.found("platform/Vel/A.h", before + '\n#include "finder/F.h" /* */\n'))

    def test_main_says_so_with_its_exit_status(self):
        self.assertEqual(0, layering.main([str(self.root)]))
        self.found("platform/Vel/A.h", '#include "finder/F.h"\n')
        self.assertEqual(1, layering.main([str(self.root)]))


if __name__ == "__main__":
    unittest.main()
