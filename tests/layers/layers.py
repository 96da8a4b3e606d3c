#!/usr/bin/python3
"""Holds the includes of each folder against the table of rooms in docs/architecture.md.

    layers.py [ROOT]

A room includes itself, the rooms of its part that stand above it, and what its row names. Rooms that
one row describes by a star do not include one another. Exit status 1 when anything else is included.
"""

import fnmatch
import pathlib
import re
import sys

PARTS = ("platform", "korel", "autocli", "lab")
LIBRARIES = {
    "SQLiteCpp/*": "SQLite", "sqlite3.h": "SQLite", "fmt/*": "fmt", "nlohmann/*": "json", "utf8proc.h": "utf8proc",
}
SYSTEM = """arpa/inet.h dirent.h dlfcn.h elf.h fcntl.h link.h poll.h signal.h spawn.h sys/auxv.h sys/ioctl.h sys/mman.h
sys/random.h sys/sendfile.h sys/stat.h sys/time.h sys/types.h sys/wait.h unistd.h""".split()
MADE_BY_THE_BUILD = ("autocli/Version.h", "lab/OperationNames.h")
LONGEST = 500


def rooms(root):
    """The rows of the table: (room, its parts of platform/, its libraries), in their order."""
    text = (root / "docs/architecture.md").read_text()
    cells = [[cell.strip() for cell in line.strip("|").split("|")] for line in text.splitlines() if line.startswith("| `")]
    rows = [(row[0].strip("`"), row[2].split(), row[3].split(", ")) for row in cells if len(row) == 4]
    assert rows, "docs/architecture.md has no table of rooms"
    return rows


def row_of(room, rows):
    for index, (pattern, _, _) in enumerate(rows):
        if fnmatch.fnmatchcase(room, pattern) and room.count("/") == pattern.count("/"):
            return index
    return None


def library_of(header):
    """What a header in angle brackets belongs to; None for one that nobody may include."""
    for pattern, library in LIBRARIES.items():
        if fnmatch.fnmatchcase(header, pattern):
            return library
    if header in SYSTEM:
        return "system"
    return "C++" if re.fullmatch(r"[a-z_]+", header) else None


def may_include(room, header, is_quoted, rows):
    own = row_of(room, rows)
    pattern, platform, libraries = rows[own]
    if not is_quoted:
        library = library_of(header)
        return library == "C++" or library in libraries
    if header in MADE_BY_THE_BUILD:
        return header.partition("/")[0] == room.partition("/")[0]
    other = header.rpartition("/")[0]
    part, _, folder = other.partition("/")
    if part == "platform":
        return other == room or folder in platform
    index = row_of(other, rows)
    return other == room or (part == room.partition("/")[0] and index is not None and index < own)


def findings(root):
    rows = rooms(root)
    found = []
    for path in sorted(file for part in PARTS for file in (root / part).rglob("*") if file.suffix in (".h", ".cpp")):
        name = path.relative_to(root)
        room = str(name.parent)
        if row_of(room, rows) is None:
            found.append(f"{name}: {room}/ is no room of docs/architecture.md")
            continue
        lines = path.read_text().splitlines()
        for number, line in enumerate(lines, 1):
            include = re.match(r'\s*#\s*include\s+([<"])([^>"]+)', line)
            if include and not may_include(room, include[2], include[1] == '"', rows):
                found.append(f"{name}:{number}: {room}/ may not include {include[2]}")
            if re.search("korel|ostrel", line, re.IGNORECASE) and re.match("(platform/)?autocli/", str(name)):
                found.append(f"{name}:{number}: the framework knows no product word")
        if len(lines) > LONGEST:
            found.append(f"{name}: longer than {LONGEST} lines")
    return found


if __name__ == "__main__":
    problems = findings(pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "."))
    print("\n".join(problems))
    sys.exit(bool(problems))
