#!/usr/bin/env python3
"""Makes the lexer and the parser of an ANTLR 3 grammar, in C.

Usage: generate_parser.py GENERATOR GRAMMAR FOLDER
The generator says much about its own templates for C that means nothing; those lines are hidden.
Anything else that it says is shown and is an error, whatever its exit status.
"""

import os
import re
import subprocess
import sys
from pathlib import Path

# What the templates for C ask of rules that don't have it.
HARMLESS = re.compile(
    r"warning\(24\):\s+template error: context \[[^\]]*\] \d+:\d+ "
    r"(no such property or can't access: null\.\w+|"
    r"could not pass through undefined attribute \w+)\s*")

# Variables that make the Java machine speak.
TALKATIVE = ("JAVA_TOOL_OPTIONS", "JDK_JAVA_OPTIONS", "_JAVA_OPTIONS")


def main():
    generator, grammar, folder = sys.argv[1:]
    grammar = Path(grammar).resolve()
    # Named without its folder, the grammar is the same to every checkout.
    done = subprocess.run(
        [generator, "-lib", ".", "-fo", str(Path(folder).resolve()), grammar.name],
        cwd=grammar.parent, check=False, text=True, errors="replace",
        env={name: value for name, value in os.environ.items() if name not in TALKATIVE},
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    said = [line for line in done.stdout.splitlines()
            if line.strip() and not HARMLESS.fullmatch(line)]
    if said or done.returncode:
        print("\n".join(said + [f"{grammar.name}: the generator ended with status "
                                f"{done.returncode}"]), file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
