"""Proves that a sound grammar makes a parser without a word, and that any fault of one is shown.

The generator itself ends well after some of these faults.
"""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TOOL = Path(__file__).parents[2] / "tools/generate_parser.py"

GRAMMAR = """grammar Small;
options {{ language = C; output = AST; ASTLabelType = pANTLR3_BASE_TREE; }}
start : NUMBER {} EOF! ;
NUMBER : '0'..'9'+ ;
"""

BAD = [
    ("missing", "missing"),                 # a rule that is not there
    ("(NUMBER NUMBER | NUMBER NUMBER)", "alternative"),  # one that can never match
    ("(NUMBER", "syntax error"),
]


def generate(middle, generator="antlr3"):
    """Status, words, and whether there is a parser."""
    with tempfile.TemporaryDirectory() as folder:
        grammar, out = Path(folder, "Small.g"), Path(folder, "out")
        grammar.write_text(GRAMMAR.format(middle))
        done = subprocess.run([sys.executable, "-B", str(TOOL), generator, str(grammar), str(out)],
                              check=False, text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT)
        return done.returncode, done.stdout, (out / "SmallParser.c").is_file()


class GenerateParserTest(unittest.TestCase):
    def test_good(self):
        self.assertEqual(generate("NUMBER*"), (0, "", True))

    def test_bad(self):
        for middle, shown in BAD:
            with self.subTest(middle):
                status, said, _ = generate(middle)
                self.assertEqual((status, shown in said), (1, True), said)
        self.assertEqual(generate("", "false")[0], 1)


if __name__ == "__main__":
    unittest.main()
