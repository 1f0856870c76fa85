#!/usr/bin/env python3
"""Lists what object files come to, for production/making/object_files.h, as a source with one string.

Usage: list_object_files.py NM OUT OBJECT...    (in the build folder)

A line for each object file: its source, the hash of its bytes, the sources of the object files that define what it
refers to, and the files of the system that it names.
"""

import hashlib
import os
import re
import subprocess
import sys

ENDS_THE_PROGRAM = "_ZN3vex10fatalErrorEPKcz"  # what it leads to is in no product
SYSTEM_FILE = re.compile(rb"/usr/share/[\w./+-]+")


def source_of(path):
    return re.sub(r"CMakeFiles/[^/]+\.dir/", "", os.path.relpath(path)).removesuffix(".o")


def main():
    nm, out, *objects = sys.argv[1:]
    listing = subprocess.run([nm, "-A", "-P", "-g", *objects], check=True, capture_output=True, text=True).stdout
    definers, wanted = {}, {path: set() for path in objects}
    for line in listing.splitlines():
        path, entry = line.split(": ", 1)
        name, kind = entry.split()[:2]
        if kind not in "Uw":
            definers.setdefault(name, set()).add(path)
        elif name != ENDS_THE_PROGRAM:
            wanted[path].add(name)
    lines = []
    for path in objects:
        with open(path, "rb") as file:
            code = file.read()
        uses = {source_of(definer) for name in wanted[path] for definer in definers.get(name, ())}
        uses |= {name.decode() for name in SYSTEM_FILE.findall(code)}
        lines.append(" ".join([source_of(path), hashlib.sha256(code).hexdigest(), *sorted(uses)]))
    name, text = "const char* const objectFileList", "\n".join(lines)
    with open(out, "w", encoding="utf-8") as file:
        file.write(f'namespace vex {{\nextern {name};\n{name} = R"({text}\n)";\n}}  // namespace vex\n')


if __name__ == "__main__":
    main()
