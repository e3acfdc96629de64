#!/usr/bin/env python3
"""Checks that every project include goes down the ladder of folders, and names its folder.

Usage: include_directions.py [ROOT]
Prints one line, file:line: fault, for each fault, and fails when there is any.
"""

import re
import sys
from pathlib import Path

# Room -> rooms that it may include besides itself. A room is a folder and all below it that has
# no row of its own; "src/" is left out of the names.
MAY_INCLUDE = {
    "core": [],
    "core/threads": ["core"],
    "serialization": ["core"],
    # The grammar of formulas stands with the languages of skins, and needs nothing of them.
    "SkinEngine/Formula": ["core"],
    "math": ["core", "serialization", "SkinEngine/Formula"],
    "datamodel": ["core", "core/threads", "serialization", "math"],
    "dsp": ["core", "serialization", "math", "datamodel"],
    "dsp/PluginsFilters": ["core", "serialization", "math", "datamodel", "dsp"],
    "gui": ["core", "core/threads", "datamodel", "math"],
    "platform": ["core"],
    "plugin/interfaces": ["core", "core/threads", "serialization", "math", "datamodel", "dsp",
                          "gui"],
    "SkinEngine": ["core", "core/threads", "serialization", "math", "datamodel", "dsp",
                   "dsp/PluginsFilters", "gui", "plugin/interfaces"],
    "plugin": ["core", "core/threads", "serialization", "math", "datamodel", "dsp",
               "dsp/PluginsFilters", "gui", "platform", "plugin/interfaces", "SkinEngine"],
    "hosts/rtas": ["core", "core/threads", "serialization", "math", "datamodel", "dsp",
                   "dsp/PluginsFilters", "platform", "plugin/interfaces", "plugin"],
    # The host program loads the plug-in; of the filter it asks parameters and responses itself.
    "apps": ["core", "serialization", "math", "datamodel", "dsp", "dsp/PluginsFilters",
             "platform"],
}

# Folders of the tree with the folders in which their includes are looked up, in order.
LOOKUP = {
    "src": ["src"],
    "apps": ["src", "apps"],
    "tests": ["src", "tests", "apps"],
    "benchmarks": ["src", "benchmarks", "apps"],
    "fuzz": ["src", "fuzz", "apps"],
}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def project_files(root):
    """All headers and sources of the project, relative to the root, sorted."""
    return sorted(path.relative_to(root) for top in LOOKUP for path in (root / top).rglob("*")
                  if path.suffix in (".h", ".cpp"))


def includes_of(path):
    """Yields line number, opening mark and name of each include of the file."""
    for number, line in enumerate(path.read_text(errors="replace").splitlines(), 1):
        if match := INCLUDE.match(line):
            yield number, match[1], match[2]


def resolve(root, file, name):
    """The project file, relative to the root, that an include in the file means, or None."""
    for folder in LOOKUP[file.parts[0]]:
        path = Path(folder, name)
        if ".." not in path.parts and (root / path).is_file():
            return path
    return None


def room_of(path):
    """The row of the table that a file belongs to; None for helpers that all tests share.

    Tests and benchmarks belong to the room whose folder they mirror.
    """
    folder = path.parent
    name = "apps" if folder.parts[0] == "apps" else "/".join(folder.parts[1:])
    while name and name not in MAY_INCLUDE:
        name = name.rpartition("/")[0]
    return name or None


def fault_of(root, file, mark, name):
    """What is wrong with the include, or None."""
    target = resolve(root, file, name)
    if target is None:
        if mark == "<":
            return None
        if (root / file.parent / name).is_file():
            return f'"{name}" is not named by its folder'
        return f'"{name}" is no file of the project; others stand in angle brackets'
    if mark == "<":
        return f"<{name}> is a file of the project and stands in quotes"
    source, room = room_of(file), room_of(target)
    if target.parts[0] not in ("src", file.parts[0]) and source not in ("apps", None):
        return f'"{name}": {file.parent} may not include {target.parts[0]}/'
    if source is None or room == source or room in MAY_INCLUDE[source]:
        return None
    if room is None:
        # A shared helper of the tests or benchmarks; in src/ every folder has a row.
        return None if target.parts[0] != "src" else f'"{name}": its folder has no row in the table'
    return f'"{name}": {source} may not include {room}'


def check(root):
    """All faults of the tree as texts, and the number of files read."""
    faults = []
    files = project_files(root)
    for file in files:
        if file.parts[0] == "src" and room_of(file) is None:
            faults.append(f"{file}:1: its folder has no row in the table")
            continue
        for number, mark, name in includes_of(root / file):
            if fault := fault_of(root, file, mark, name):
                faults.append(f"{file}:{number}: {fault}")
    return faults, len(files)


def main():
    root = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).parent.parent).resolve()
    faults, count = check(root)
    print("\n".join(faults + [f"{count} files read, {len(faults)} faults"]))
    return 1 if faults or not count else 0


if __name__ == "__main__":
    sys.exit(main())
