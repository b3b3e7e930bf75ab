#!/usr/bin/env python3
"""Adds up the results of test runs and prints "N passed, N failed" as the last line.

Takes the JSON results of GoogleTest runs. --status is the exit status of the command that ran them: if it is not 0
although no test failed, the step that failed counts as one failure.
"""
import argparse
import json
import sys
from pathlib import Path


def count(path):
    """Passed, failed and skipped tests of one run."""
    passed = failed = skipped = 0
    for suite in json.loads(path.read_text(encoding="utf-8"))["testsuites"]:
        for test in suite["testsuite"]:
            if test.get("failures"):
                failed += 1
            elif test.get("result") == "SKIPPED" or test.get("status") != "RUN":
                skipped += 1
            else:
                passed += 1
    return passed, failed, skipped


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--status", type=int, default=0, help="exit status of the command that ran the tests")
    parser.add_argument("results", nargs="*", type=Path)
    arguments = parser.parse_args()
    passed = failed = 0
    for path in arguments.results:
        if not path.is_file():
            continue
        try:
            run = count(path)
        except (ValueError, KeyError) as error:
            print(f"{path}: damaged results ({error})")
            failed += 1
            continue
        print(f"{path}: {run[0]} passed, {run[1]} failed, {run[2]} skipped")
        passed += run[0]
        failed += run[1]
    if failed == 0 and arguments.status != 0:
        print(f"no test failed, but a step did (exit status {arguments.status}); it counts as one failure")
        failed = 1
    if failed == 0 and passed == 0:
        print("no test ran; this counts as one failure")
        failed = 1
    print(f"{passed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
