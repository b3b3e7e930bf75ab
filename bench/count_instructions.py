#!/usr/bin/env python3
"""Instructions per call of the mixture driver and of the isothermal flash, counted by callgrind.

Usage: count_instructions.py BUILD_DIRECTORY
"""
import os
import re
import subprocess
import sys
import tempfile

SIZES = (2, 5, 10, 20, 50)
CASES = (("fugacities", "SHMIX0, fugacities only", 200), ("thermal", "SHMIX0, thermal", 200),
         ("flash", "TALIX, code 5", 20))


def instructions(program, case, size, calls):
    """Instructions spent inside the counted calls, per call."""
    with tempfile.TemporaryDirectory() as scratch:
        out = os.path.join(scratch, "callgrind.out")
        result = subprocess.run(
            ["valgrind", "--tool=callgrind", f"--callgrind-out-file={out}", "--collect-atstart=no",
             "--toggle-collect=*counted_calls*", program, case, str(size), str(calls)],
            capture_output=True, text=True, check=False)
        if result.returncode != 0:
            sys.exit(f"{program} {case} {size} failed:\n{result.stderr}")
    found = re.search(r"Collected\s*:\s*(\d+)", result.stderr)
    if not found:
        sys.exit(f"no count in the output of callgrind:\n{result.stderr}")
    return int(found.group(1)) / calls


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    program = os.path.join(sys.argv[1], "bin", "instruction_count")
    print(f"{'Instructions per call':<28}" + "".join(f"{n:>12}" for n in SIZES) + "   components")
    for case, title, calls in CASES:
        counts = [instructions(program, case, n, calls) for n in SIZES]
        print(f"{title:<28}" + "".join(f"{c:>12,.0f}" for c in counts), flush=True)


if __name__ == "__main__":
    main()
