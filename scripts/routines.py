#!/usr/bin/env python3
"""Writes docs/routines.md: every routine with its file and its purpose.

The purpose comes from the comment above the definition, "// NAME: purpose." up to the end of its paragraph, or else from
the comment above the definition or its prototype as it stands. A routine without a purpose is a fault. With --check
nothing is written; the exit status tells whether the index is up to date.
"""
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
INDEX = ROOT / "docs" / "routines.md"
HEADER = re.compile(r"^// ([A-Z][A-Z0-9]{2,}(?:, [A-Z][A-Z0-9]{2,})*): (.+)$")
SECTION = re.compile(r"^(In|Out|In/Out|Shared|Status|Reports|Oddity|Source)\b\s{2,}")
DEFINITION = re.compile(r"^(?!static\b|extern\b|return\b|//|#|\s|\})[\w:<>*& ]+?\b([A-Z][A-Z0-9]{2,})\(")
EXPORTS = {"exports.cpp", "morve_exports.cpp"}  # hand the public calls on to the routines of the same names
FOLDERS = ["api", "flash", "fastprops", "engine", "database", "characterisation", "eos", "association", "liquid",
           "solids", "steam", "transport", "numerics", "base"]


def purpose_of(lines, index, first):
    """The paragraph that starts at a header line, as one text."""
    parts = [first]
    for line in lines[index + 1:]:
        text = line[2:].strip() if line.startswith("//") else ""
        if not text or SECTION.match(line[3:]) or HEADER.match(line):
            break
        parts.append(text)
    return " ".join(parts)


def defined_after(lines, index, name):
    """Whether the code right behind the comment defines the routine."""
    code = []
    for line in lines[index:]:
        if line.startswith("//") and not code:
            continue
        code.append(line)
        if "{" in line or ";" in line or not line.strip():
            break
    return re.search(rf"\b{name}\(", " ".join(code)) is not None


def routines(path):
    lines = path.read_text(encoding="utf-8").splitlines()
    for index, line in enumerate(lines):
        match = HEADER.match(line)
        if not match:
            continue
        purpose = purpose_of(lines, index, match.group(2))
        for name in match.group(1).split(", "):
            if defined_after(lines, index, name):
                yield name, purpose


def comment_above(lines, index):
    """The comment right above a line, as one text; empty if there is none."""
    parts = []
    while index > 0 and lines[index - 1].startswith("//"):
        index -= 1
        parts.insert(0, lines[index][2:].strip())
    return " ".join(parts).split("  ")[0]


def plain_purpose(name, path, lines, index):
    """Purpose of a routine whose comment does not begin with its name; empty if there is none."""
    text = comment_above(lines, index)
    header = path.with_suffix(".h")
    if not text and header.is_file():
        declared = header.read_text(encoding="utf-8").splitlines()
        for at, line in enumerate(declared):
            if re.search(rf"\b{name}\(", line) and not line.startswith("//"):
                # One comment may stand above a group of prototypes.
                while at > 0 and declared[at - 1].strip() and not declared[at - 1].startswith("//"):
                    at -= 1
                text = comment_above(declared, at)
                break
    return text


def index_text():
    found, faults = {}, []
    for path in sorted((ROOT / "src").rglob("*.cpp")):
        if path.name in EXPORTS:
            continue
        folder = path.relative_to(ROOT / "src").parts[0]
        file = path.relative_to(ROOT).as_posix()
        table = found.setdefault(folder, {})
        for name, purpose in routines(path):
            table[(name, file)] = purpose
        lines = path.read_text(encoding="utf-8").splitlines()
        for index, line in enumerate(lines):
            match = DEFINITION.match(line)
            if not match or (match.group(1), file) in table:
                continue
            purpose = plain_purpose(match.group(1), path, lines, index)
            if purpose:
                table[(match.group(1), file)] = purpose
            else:
                faults.append(f"{file}:{index + 1}: {match.group(1)} has no comment that tells its purpose")
    found = {folder: table for folder, table in found.items() if table}
    order = [folder for folder in FOLDERS if folder in found] + sorted(set(found) - set(FOLDERS))
    text = ["# Routines", "",
            "Written by `scripts/routines.py` from the comments above the definitions; do not edit.", ""]
    for folder in order:
        text += [f"## {folder}", "", "| Routine | File | Purpose |", "|---|---|---|"]
        for (name, file), purpose in sorted(found[folder].items()):
            escaped = (purpose[:1].upper() + purpose[1:]).replace("|", "\\|")
            text.append(f"| `{name}` | [{file}](../{file}) | {escaped} |")
        text.append("")
    return "\n".join(text), sum(map(len, found.values())), faults


def main():
    text, count, faults = index_text()
    if count == 0:
        print("routines: no routine found below src", file=sys.stderr)
        return 1
    if faults:
        print("\n".join(faults), file=sys.stderr)
        return 1
    if "--check" in sys.argv[1:]:
        if not INDEX.is_file() or INDEX.read_text(encoding="utf-8") != text:
            print("docs/routines.md is not up to date; write it anew with: python3 scripts/routines.py",
                  file=sys.stderr)
            return 1
        print(f"{count} routines")
        return 0
    INDEX.parent.mkdir(exist_ok=True)
    INDEX.write_text(text, encoding="utf-8")
    print(f"docs/routines.md: {count} routines")
    return 0


if __name__ == "__main__":
    sys.exit(main())
