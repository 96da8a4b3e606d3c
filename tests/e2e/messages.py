"""Brings each fixed text of the plug-in about once with the built program.

messages.py BIN SOURCES LINES: SOURCES is the folder of the plug-in, from which the texts are taken;
LINES says what to type for each of them, or why no run can bring it about (see there).
"""

import os
import re
import shlex
import subprocess
import sys
import tempfile
from pathlib import Path

# What help and results are made of: texts in these are no messages.
DECLARING = ("SetDescription", "Show", "SetDefaultOutputParameter", "Structure", "StringEnum", "TagInputs",
             "Inputs", "SetField", "SetDefaultOutputFormatter")
DESCRIBING = ("kUuidForm", "kDatastoreToName")
LITERAL = r'"(?:[^"\\]|\\.)*"'


def end_of(text, start, pair="()"):
    """The place after the bracket that closes the one at `start`."""
    depth = 0
    for token in re.compile(rf"{LITERAL}|[{re.escape(pair)}]").finditer(text, start):
        depth += {pair[0]: 1, pair[1]: -1}.get(token.group(), 0)
        if depth == 0:
            return token.end()
    raise ValueError(f"no end of {text[start:start + 60]}")


def texts_of(source):
    """The fixed texts of two words or more that a source has for its messages and answers."""
    source = re.sub(rf"({LITERAL})|//.*|'(?:[^'\\]|\\.)'", lambda found: found.group(1) or "", source)
    source = re.sub(r"#include.*", "", source)
    # Adjacent literals are one.
    source = re.sub(r'"\s*\n\s*"', "", source)
    while found := re.search(rf"\b({'|'.join(DECLARING)})\(", source):
        source = source[: found.start()] + source[end_of(source, found.end() - 1):]
    source = re.sub(rf"\.description\s*=\s*{LITERAL}", "", source)
    source = re.sub(rf"\b({'|'.join(DESCRIBING)})\s*=\s*{LITERAL}", "", source)
    for literal in re.findall(LITERAL, source):
        text = literal[1:-1].replace('\\"', '"').replace("\\\\", "\\")
        if re.search(r"[A-Za-z]{2,}[^A-Za-z]+[A-Za-z]{2,}", text) and " " in text:
            yield text.strip()


def all_texts(sources):
    texts = {}
    for path in sorted(Path(sources).rglob("*")):
        # The tree has names and descriptions alone.
        if path.suffix in (".cpp", ".h") and path.name != "Tree.cpp":
            for text in texts_of(path.read_text()):
                texts.setdefault(text, path.relative_to(sources))
    return texts


def entries_of(path):
    """By text: the lines to type, or the reason."""
    entries = {}
    for line in Path(path).read_text().splitlines():
        if line.startswith("= "):
            entries[line[2:]] = (lines := [])
        elif line.strip() and not line.startswith("#"):
            lines.append(line.strip())
    return entries


class Lab:
    def __init__(self, bin_folder, folder):
        self.program = str(Path(bin_folder, "autocli").resolve())
        self.folder = folder
        self.environment = {"KOREL_LAB": f"{folder}/lab.db", "HOME": folder, "AUTOCLI_SHELL_START": "no"}
        if "ASAN_OPTIONS" in os.environ:
            self.environment["ASAN_OPTIONS"] = os.environ["ASAN_OPTIONS"]

    def run(self, line, host=None):
        environment = dict(self.environment, **({"KOREL_LAB_HOST": host} if host else {}))
        done = subprocess.run([self.program, *shlex.split(line)], env=environment, cwd=self.folder,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
        return done.returncode, done.stdout + done.stderr

    def type(self, line):
        """Runs a line of LINES; see there."""
        host, line = re.fullmatch(r"(?:(\w+)> )?(.*)", line).groups()
        if re.search(r"\b(CLUSTER|OTHER)\b", line):
            _, out = self.run("lab cluster list --formatter csv --fields UUID --no-header")
            for name, uuid in zip(("CLUSTER", "OTHER"), out.split()):
                line = re.sub(rf"\b{name}\b", uuid, line)
        return self.run(re.sub(r"(\w)\*(\d+)", lambda found: found[1] * int(found[2]), line), host)


def check(bin_folder, text, lines):
    with tempfile.TemporaryDirectory() as folder:
        lab = Lab(bin_folder, folder)
        for line in lines[:-1]:
            status, out = lab.type(line)
            if status != 0:
                return f"{line}: {out}"
        _, out = lab.type(lines[-1])
        return None if text in out else f"{lines[-1]}: {out}"


def main():
    bin_folder, sources, path = sys.argv[1:]
    texts, entries = all_texts(sources), entries_of(path)
    problems = [f'{texts[text]}: "{text}" has no entry in {path}' for text in texts if text not in entries]
    problems += [f'{path}: no source says "{text}"' for text in entries if text not in texts]
    problems += [f'{path}: nothing is typed for "{text}"' for text, lines in entries.items() if not lines]
    tried = {text: lines for text, lines in entries.items() if lines and not lines[0].startswith("!")}
    problems += [f'"{text}" does not come out of {problem}' for text, lines in tried.items()
                 if (problem := check(bin_folder, text, lines))]
    print("\n".join(problems) or f"{len(tried)} of {len(texts)} texts came out")
    sys.exit(1 if problems or len(tried) < 90 else 0)


if __name__ == "__main__":
    main()
