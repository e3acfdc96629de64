#!/usr/bin/env python3
"""The static checks behind `./cairn lint`: layout, includes, headers that stand alone, and tidiness.

The first three read the whole tree. Tidiness is slow, so it reads the sources that have changed:
against the main branch on a branch, in the working copy where something is not committed, and in
the last few commits otherwise. What passed is remembered by content in build/lint/.
"""

import argparse
import hashlib
import json
import os
import shlex
import subprocess
import sys
import time
from collections import defaultdict
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import include_directions

ROOT = Path(__file__).resolve().parent.parent
PASSED = ROOT / "build/lint"
COMPILE_COMMANDS = ROOT / "build/release/compile_commands.json"
JOBS = os.cpu_count() or 2
# Commits that count as "what has changed" where nothing else tells.
LAST_COMMITS = 10


def run(command, **options):
    """Exit status and all output of a command that runs in the root folder."""
    done = subprocess.run(command, cwd=ROOT, text=True, errors="replace", check=False,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options)
    return done.returncode, done.stdout


def git(*arguments):
    """The lines that git prints, without repetitions; none when it fails or is not there."""
    try:
        done = subprocess.run(["git", "-c", f"safe.directory={ROOT}", *arguments], cwd=ROOT,
                              text=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                              check=False)
    except FileNotFoundError:
        return []
    return list(dict.fromkeys(done.stdout.split("\n")[:-1])) if done.returncode == 0 else []


class Tree:
    """The headers and sources of the project, what they include, and how they are compiled."""

    def __init__(self):
        known = git("ls-files", "--cached", "--others", "--exclude-standard")
        self.files = [file for file in include_directions.project_files(ROOT)
                      if not known or str(file) in known]
        self.includes = {
            file: {target for _, _, name in include_directions.includes_of(ROOT / file)
                   if (target := include_directions.resolve(ROOT, file, name))}
            for file in self.files}
        self.commands = {}
        for entry in json.loads(COMPILE_COMMANDS.read_text()):
            path = Path(entry["directory"], entry["file"])
            if path.is_relative_to(ROOT):
                self.commands[path.relative_to(ROOT)] = shlex.split(entry["command"])

    def closure(self, file):
        """The file and every project header that it reaches."""
        reached, waiting = set(), [file]
        while waiting:
            file = waiting.pop()
            if file not in reached:
                reached.add(file)
                waiting += self.includes.get(file, ())
        return reached

    def key(self, file, *context):
        """A hash of all that the result of a check of the file depends on."""
        digest = hashlib.sha256("\0".join(context).encode())
        for each in sorted(self.closure(file)):
            digest.update(str(each).encode() + b"\0" + (ROOT / each).read_bytes())
        return digest.hexdigest()

    def flags(self, file):
        """Compiler and flags of the source that lies nearest to the file."""
        def nearness(source):
            common = os.path.commonpath([source.parent, file.parent])
            return len(Path(common).parts), source.stem == file.stem
        command = self.commands[max(sorted(self.commands), key=nearness)]
        skip = {index + step for index, word in enumerate(command) if word in ("-o", "-c")
                for step in (0, 1)}
        return [word for index, word in enumerate(command) if index not in skip]


class Stamps:
    """Remembers, by content, what a check has passed."""

    def __init__(self, name):
        self.folder = PASSED / name
        self.folder.mkdir(parents=True, exist_ok=True)

    def has(self, key):
        return (self.folder / key).exists()

    def add(self, key):
        (self.folder / key).touch()


def side_by_side(check, items):
    """Runs the check on all items at once as far as there are processors; returns the results."""
    with ThreadPoolExecutor(JOBS) as pool:
        return list(pool.map(check, items))


# Each check takes the tree and the options, prints the faults that it finds, and returns whether
# all is well, and a word on what it read.

def check_layout(tree, _options):
    parts = [part for start in range(JOBS) if (part := tree.files[start::JOBS])]
    results = side_by_side(
        lambda part: run(["clang-format", "--dry-run", "-Werror", *map(str, part)]), parts)
    print("".join(output for _, output in results), end="")
    return not any(status for status, _ in results), f"{len(tree.files)} files"


def check_includes(_tree, _options):
    faults, count = include_directions.check(ROOT)
    print("".join(fault + "\n" for fault in faults), end="")
    return count > 0 and not faults, f"{count} files"


def check_headers(tree, _options):
    stamps = Stamps("headers")
    headers = [file for file in tree.files if file.suffix == ".h"]

    def compile_alone(header):
        if "#pragma once" not in (ROOT / header).read_text(errors="replace").splitlines():
            return f"{header}:1: has no #pragma once\n"
        flags = tree.flags(header)
        key = tree.key(header, *flags)
        if stamps.has(key):
            return ""
        status, output = run([*flags, "-fsyntax-only", "-x", "c++", "-"],
                             input=f'#include "{ROOT / header}"\n')
        if status == 0:
            stamps.add(key)
            return ""
        return output or f"{header}:1: does not compile alone\n"

    faults = side_by_side(compile_alone, headers)
    print("".join(faults), end="")
    return not any(faults), f"{len(headers)} headers"


def changed_files(base):
    """The files that have changed, latest first, and since when."""
    def since(*arguments):
        return git("log", "--first-parent", "-m", "--name-only", "--format=", *arguments)

    uncommitted = git("diff", "--name-only", "HEAD") + git("ls-files", "--others",
                                                            "--exclude-standard")
    if base:
        if not git("rev-parse", "--verify", f"{base}^{{commit}}"):
            sys.exit(f"lint: no revision '{base}'")
        return uncommitted + since(f"{base}..HEAD"), f"since {base}"
    for main in ("origin/main", "main"):
        fork = git("merge-base", main, "HEAD")
        if fork and fork != git("rev-parse", "HEAD"):
            return uncommitted + since(f"{fork[0]}..HEAD"), f"since {main}"
    if uncommitted:
        return uncommitted, "not committed"
    return since(f"-{LAST_COMMITS}"), f"in the last {LAST_COMMITS} commits"


def sources_to_tidy(tree, options):
    """The sources whose own text has changed, then those that include a changed header."""
    sources = [file for file in tree.files if file in tree.commands]
    if options.all:
        return sources, "all"
    names, what = changed_files(options.base)
    changed = {Path(name): place for place, name in reversed(list(enumerate(names)))}
    if Path(".clang-tidy") in changed:
        return sources, "all, since the list of checks has changed"
    places = defaultdict(list)
    for source in sources:
        if source in changed:
            places[source] = [0, changed[source]]
        elif touched := tree.closure(source) & changed.keys():
            places[source] = [1, min(changed[file] for file in touched)]
    return sorted(places, key=places.get), what


def check_tidiness(tree, options):
    stamps = Stamps("tidiness")
    sources, what = sources_to_tidy(tree, options)
    deadline = time.monotonic() + options.seconds if options.seconds else float("inf")
    settings = (ROOT / ".clang-tidy").read_text() + run(["clang-tidy", "--version"])[1]

    def tidy(source):
        key = tree.key(source, settings, *tree.commands[source])
        if stamps.has(key):
            return True, ""
        if time.monotonic() > deadline:
            return None, ""
        # The build's compiler has flags of its own.
        status, output = run(["clang-tidy", "--quiet", "--extra-arg=-Wno-unknown-warning-option",
                              "-p", str(COMPILE_COMMANDS.parent), str(source)])
        if status == 0:
            stamps.add(key)
        return status == 0, output if status else ""

    results = side_by_side(tidy, sources)
    print("".join(output for _, output in results), end="")
    verdicts = [verdict for verdict, _ in results]
    left = verdicts.count(None)
    said = f"{len(sources) - left} sources ({what})"
    if left:
        said += f", {left} left out after {options.seconds} s"
    return False not in verdicts, said


CHECKS = [
    ("layout", check_layout),
    ("include directions", check_includes),
    ("headers stand alone", check_headers),
    ("tidiness", check_tidiness),
]


def main():
    parser = argparse.ArgumentParser(prog="cairn lint", description=__doc__.split("\n")[0])
    parser.add_argument("--all", action="store_true", help="tidiness of all sources, however long")
    parser.add_argument("--base", metavar="REVISION", help="tidiness of what changed since then")
    parser.add_argument("--seconds", type=int, metavar="N",
                        help="start no source's tidiness after that (300; without end with --all)")
    options = parser.parse_args()
    if options.seconds is None:
        options.seconds = 0 if options.all else 300

    tree = Tree()
    if not tree.files or not tree.commands:
        sys.exit("lint: no sources found")
    summary = []
    for name, check in CHECKS:
        begin = time.monotonic()
        good, said = check(tree, options)
        summary.append((good, f"lint: {name:<20} {'passed' if good else 'FAILED'}  "
                              f"{time.monotonic() - begin:4.0f} s  {said}"))
    print("\n".join(line for _, line in summary))
    return 0 if all(good for good, _ in summary) else 1


if __name__ == "__main__":
    sys.exit(main())
