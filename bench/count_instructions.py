#!/usr/bin/env python3
"""Instructions per call of the mixture driver and of the flashes, counted by callgrind.

A flash is counted without (level 0) and with (level 1) the check behind it; its calls of the mixture driver stand in
brackets. The columns are headed by the number of components.

Usage: count_instructions.py BUILD_DIRECTORY
"""
import os
import re
import subprocess
import sys
import tempfile

SIZES = (2, 5, 10, 20, 50)
DRIVER_CASES = (("fugacities", "SHMIX0, fugacities only", 200), ("thermal", "SHMIX0, thermal", 200))
TRANSPORT_CASES = (("viscosity", "DCST and TRPVIS"), ("conductivity", "DCST and THERMC"),
                   ("transport", "both, one search"))
TRANSPORT_SIZES = (2, 10, 20)
TRANSPORT_ROWS = ("*vapour_transport*", "*liquid_transport*")
REGIONS = ("two phases", "gas", "dense gas", "liquid")
CODE_SIZES = (2, 10)
CODES = (1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 33)
LEVELS = (0, 1)


def counted(program, case, size, calls, inside=("*counted_calls*",)):
    """Instructions spent inside the counted calls or other functions, per call, and the driver calls of a flash."""
    with tempfile.TemporaryDirectory() as scratch:
        out = os.path.join(scratch, "callgrind.out")
        result = subprocess.run(
            ["valgrind", "--tool=callgrind", f"--callgrind-out-file={out}", "--collect-atstart=no",
             *(f"--toggle-collect={name}" for name in inside), program, case, str(size), str(calls)],
            capture_output=True, text=True, check=False)
        if result.returncode == 1 and case.startswith("flash"):
            return None, None
        if result.returncode != 0:
            sys.exit(f"{program} {case} {size} failed:\n{result.stderr}")
    found = re.search(r"Collected\s*:\s*(\d+)", result.stderr)
    if not found:
        sys.exit(f"no count in the output of callgrind:\n{result.stderr}")
    engine = re.search(r"engine_calls (\d+)", result.stdout)
    return int(found.group(1)) / calls, int(engine.group(1)) if engine else None


def cell(count, engine):
    if count is None:
        return f"{'failed':>20}"
    return f"{count:>14,.0f} ({engine:>3})"


def table(program, title, cases, sizes):
    print(f"\n{title:<28}" + "".join(f"{f'{n}, level {level}':>20}" for n in sizes for level in LEVELS))
    for name, case in cases:
        print(f"{name:<28}" + "".join(cell(*counted(program, case.format(level=level), n, 20))
                                      for n in sizes for level in LEVELS), flush=True)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    program = os.path.join(sys.argv[1], "bin", "instruction_count")
    print(f"{'Instructions per call':<28}" + "".join(f"{n:>12}" for n in SIZES) + "   components")
    for case, title, calls in DRIVER_CASES:
        counts = [counted(program, case, n, calls)[0] for n in SIZES]
        print(f"{title:<28}" + "".join(f"{c:>12,.0f}" for c in counts), flush=True)
    print(f"\n{'Dense-fluid transport':<28}" + "".join(f"{n:>12}" for n in TRANSPORT_SIZES) + "   components")
    for case, title in TRANSPORT_CASES:
        counts = [counted(program, case, n, 200)[0] for n in TRANSPORT_SIZES]
        print(f"{title:<28}" + "".join(f"{c:>12,.0f}" for c in counts), flush=True)
    table(program, "TALIX, code 5", [("two phases", "flash:5:{level}")], SIZES)
    # The warm-up is one call more.
    rows = [counted(program, "flash:5:0", n, 20, TRANSPORT_ROWS)[0] * 20 / 21 for n in SIZES]
    print(f"{'of it transport rows':<28}" + "".join(f"{count:>14,.0f}{'':26}" for count in rows), flush=True)
    table(program, "TALIX, code 5 by region",
          [(name, f"flash:5:{{level}}:{i}") for i, name in enumerate(REGIONS)], CODE_SIZES)
    table(program, "TALIX by code", [(f"code {code}", f"flash:{code}:{{level}}") for code in CODES], CODE_SIZES)


if __name__ == "__main__":
    main()
