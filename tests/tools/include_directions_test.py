"""Proves that the check of include directions finds each kind of fault, and nothing else.

Each case is a small tree with one include in one file.
"""

import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parents[2] / "tools"))
import include_directions  # noqa: E402

TREE = ["src/core/Text.h", "src/core/threads/Timer.h", "src/math/Curve.h", "src/dsp/Filter.h",
        "src/dsp/PluginsFilters/Dual.h", "src/plugin/Instance.h", "src/plugin/interfaces/Model.h",
        "src/SkinEngine/Skin.h", "src/platform/Folders.h", "apps/host/Reader.h",
        "tests/support/Noise.h", "tests/Main.h"]

GOOD = [
    ("src/core/a.cpp", '"core/Text.h"'),
    ("src/math/a.cpp", '"core/Text.h"'),
    ("src/dsp/PluginsFilters/a.cpp", '"dsp/Filter.h"'),
    ("src/SkinEngine/a.cpp", '"plugin/interfaces/Model.h"'),
    ("src/core/a.cpp", "<vector>"),
    ("apps/host/a.cpp", '"host/Reader.h"'),
    ("apps/host/a.cpp", '"dsp/PluginsFilters/Dual.h"'),
    ("tests/apps/a.cpp", '"host/Reader.h"'),
    ("tests/math/a.cpp", '"support/Noise.h"'),
    ("tests/math/a.cpp", '"math/Curve.h"'),
    ("tests/core/a.cpp", '"Main.h"'),
]

BAD = [
    ("src/core/a.cpp", '"math/Curve.h"', "core may not include math"),
    ("src/core/a.cpp", '"core/threads/Timer.h"', "core may not include core/threads"),
    ("src/dsp/a.cpp", '"core/threads/Timer.h"', "dsp may not include core/threads"),
    ("src/dsp/a.cpp", '"dsp/PluginsFilters/Dual.h"', "dsp may not include dsp/PluginsFilters"),
    ("src/SkinEngine/a.cpp", '"plugin/Instance.h"', "SkinEngine may not include plugin"),
    ("apps/host/a.cpp", '"plugin/Instance.h"', "apps may not include plugin"),
    ("tests/core/a.cpp", '"math/Curve.h"', "core may not include math"),
    ("tests/dsp/a.cpp", '"host/Reader.h"', "may not include apps/"),
    ("benchmarks/math/a.cpp", '"dsp/Filter.h"', "math may not include dsp"),
    ("src/core/a.cpp", '"Text.h"', "not named by its folder"),
    ("apps/host/a.cpp", '"Reader.h"', "not named by its folder"),
    ("src/math/a.cpp", '"../core/Text.h"', "not named by its folder"),
    ("src/math/a.cpp", "<core/Text.h>", "stands in quotes"),
    ("src/math/a.cpp", '"vector"', "no file of the project"),
    ("src/attic/a.cpp", '"core/Text.h"', "no row in the table"),
]


def faults_of(file, include):
    """Those of a tree with the file, whose third line is the include."""
    with tempfile.TemporaryDirectory() as folder:
        root = Path(folder)
        for name in [*TREE, file]:
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            (root / name).touch()
        (root / file).write_text(f"// A file.\n\n#include {include}\n")
        return include_directions.check(root)[0]


class IncludeDirections(unittest.TestCase):
    def test_includes_that_go_down_pass(self):
        for file, include in GOOD:
            with self.subTest(file=file, include=include):
                self.assertEqual(faults_of(file, include), [])

    def test_each_fault_is_reported_once_and_where_it_stands(self):
        for file, include, fault in BAD:
            with self.subTest(file=file, include=include):
                faults = faults_of(file, include)
                self.assertEqual(len(faults), 1, faults)
                self.assertRegex(faults[0], f"^{file}:[13]: .*{fault}")


if __name__ == "__main__":
    unittest.main()
