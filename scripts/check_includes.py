#!/usr/bin/env python3
"""Checks that includes point one way.

The graph of includes between the files of src/ has no cycle, and folders keep to these rules:
  base        includes nothing else of the project
  numerics    base, and of engine the error ring and the codes
  the engine  (every folder but the three below) never includes fastprops, flash or api
  fastprops   never includes flash or api
  flash       never includes api
  api         anything in src
src never includes tools or tests; include/ includes nothing of the project; the command line sees the library only
through its public headers.
"""
import re
import sys
from pathlib import Path

ROOT = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)
HOST_LAYERS = ["fastprops", "flash", "api"]
NUMERICS_MAY_SEE = {"engine/error_ring.h", "engine/codes.h", "engine/codes_tables.h"}
SUFFIXES = {".h", ".cpp", ".c"}


def files(folder):
    return sorted(path for path in (ROOT / folder).rglob("*") if path.suffix in SUFFIXES)


def includes(path):
    return INCLUDE.findall(path.read_text(encoding="utf-8", errors="replace"))


def refusal(source, target):
    """Why a file of src must not include another, or nothing. Both are relative to src."""
    own, other = source.split("/")[0], target.split("/")[0]
    if own == other:
        return None
    if own == "base":
        return "base includes nothing else of the project"
    if own == "numerics" and other != "base" and target not in NUMERICS_MAY_SEE:
        return "numerics sees only base, the error ring and the codes"
    if other in HOST_LAYERS:
        if own not in HOST_LAYERS:
            return f"the engine never sees {other}"
        if HOST_LAYERS.index(own) < HOST_LAYERS.index(other):
            return f"{own} never sees {other}"
    return None


def first_cycle(graph):
    """A list of nodes that leads back to its first, or nothing."""
    done = set()
    for start in sorted(graph):
        stack, path, on_path = [(start, iter(graph[start]))], [start], {start}
        if start in done:
            continue
        while stack:
            node, targets = stack[-1]
            target = next((t for t in targets if t in graph and t not in done), None)
            if target is None:
                stack.pop()
                path.pop()
                on_path.discard(node)
                done.add(node)
            elif target in on_path:
                return path[path.index(target):] + [target]
            else:
                stack.append((target, iter(graph[target])))
                path.append(target)
                on_path.add(target)
    return None


def main():
    faults, graph = [], {}
    for path in files("src"):
        name = path.relative_to(ROOT / "src").as_posix()
        graph[name] = []
        for target in includes(path):
            if (ROOT / "src" / target).is_file():
                graph[name].append(target)
                why = refusal(name, target)
                if why:
                    faults.append(f"src/{name} includes {target}: {why}")
            elif (ROOT / "include" / target).is_file():
                pass
            elif (ROOT / "tools" / target).is_file() or (ROOT / "tests" / target).is_file():
                faults.append(f"src/{name} includes {target}: src never sees tools or tests")
            else:
                faults.append(f"src/{name} includes {target}: no such file below src; write it from src/")
    for path in files("include"):
        faults += [f"{path.relative_to(ROOT)} includes {target}: public headers stand alone"
                   for target in includes(path) if not (ROOT / "include" / target).is_file()]
    for path in files("tools/cli"):
        faults += [f"{path.relative_to(ROOT)} includes {target}: the command line sees the public headers only"
                   for target in includes(path) if (ROOT / "src" / target).is_file()]
    cycle = first_cycle(graph)
    if cycle:
        faults.append("cycle: " + " -> ".join(cycle))
    if faults:
        print("\n".join(faults), file=sys.stderr)
        print(f"check_includes: {len(faults)} faults", file=sys.stderr)
        return 1
    if not graph:
        print("check_includes: no files below src", file=sys.stderr)
        return 1
    print(f"{len(graph)} files, {sum(map(len, graph.values()))} includes, no cycle")
    return 0


if __name__ == "__main__":
    sys.exit(main())
