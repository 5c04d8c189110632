#!/usr/bin/env python3
"""Adds up the cases of a test run and tells the sum in the last line.

A build folder holds ctest.xml, ctest's own verdict on each test, and reports/NAME.xml, the cases of the test NAME. A
test whose report does not account for its verdict - it crashed, hung, could not start, failed behind its last case, or
left before it wrote any - is one more failed case. So is a build folder without any result.
"""

import argparse
import sys
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass, field
from pathlib import Path


@dataclass
class Counts:
    """Passed cases by number, the others by what to tell about them."""

    passed: int = 0
    failed: list = field(default_factory=list)
    skipped: list = field(default_factory=list)

    def add(self, verdict, label):
        if verdict == "passed":
            self.passed += 1
        else:
            getattr(self, verdict).append(label)

    def add_all(self, other):
        self.passed += other.passed
        self.failed += other.failed
        self.skipped += other.skipped

    def is_empty(self):
        return self.passed == 0 and not self.failed and not self.skipped


def labelled(text, element):
    """The text, with the reason that the element gives, if it gives one."""
    lines = (element.get("message") or "").strip().splitlines() if element is not None else []
    return f"{text}: {lines[0]}" if lines else text


def case_verdict(case):
    """The verdict on one case of a report, and the element that tells the reason."""
    for tag in ("failure", "error"):
        if case.find(tag) is not None:
            return "failed", case.find(tag)
    skipped = case.find("skipped")
    # A disabled case has no element of its own.
    if skipped is not None or case.get("status") == "notrun":
        return "skipped", skipped
    return "passed", None


def count_report(path, test):
    """The cases in a report; none when there is no report."""
    counts = Counts()
    try:
        cases = list(ElementTree.parse(path).iter("testcase"))
    except FileNotFoundError:
        return counts
    except ElementTree.ParseError:
        counts.add("failed", f"{test}: the report breaks off")
        return counts
    for case in cases:
        verdict, reason = case_verdict(case)
        name = ".".join(part for part in (case.get("classname"), case.get("name")) if part)
        counts.add(verdict, labelled(f"{test}: {name}", reason))
    return counts


def test_verdict(test):
    """ctest's verdict on one test, and the element that tells the reason."""
    status = test.get("status")
    skipped = test.find("skipped")
    if status == "run":
        return "passed", None
    if status == "disabled":
        return "skipped", None
    # Also a test that could not start counts as "notrun"; a wanted skip names the property that asked for it.
    if status == "notrun" and skipped is not None and skipped.get("message", "").startswith("SKIP_"):
        return "skipped", skipped
    return "failed", skipped if skipped is not None else test.find("failure")


def count_test(test, reports):
    """The cases of one test, by its report and by ctest's verdict."""
    name = test.get("name")
    counts = count_report(reports / f"{name}.xml", name)
    verdict, reason = test_verdict(test)
    if verdict == "failed" and not counts.failed:
        counts.add("failed", labelled(f"{name}: failed without a failed case", reason))
    elif verdict == "passed" and counts.is_empty():
        counts.add("failed", f"{name}: passed without a case")
    elif counts.is_empty():
        counts.add(verdict, labelled(name, reason))
    return counts


def count_build(folder):
    """The cases of all tests of one build."""
    counts = Counts()
    try:
        tests = list(ElementTree.parse(folder / "ctest.xml").iter("testcase"))
    except (OSError, ElementTree.ParseError):
        tests = []
    for test in tests:
        counts.add_all(count_test(test, folder / "reports"))
    if not tests:
        counts.add("failed", "no tests were run")
    return counts


def count_checks(texts):
    """One case from each NAME=passed or NAME=failed."""
    counts = Counts()
    for text in texts:
        name, _, verdict = text.rpartition("=")
        counts.add("passed" if verdict == "passed" else "failed", name)
    return counts


def describe(name, counts):
    lines = [f"{name}: {counts.passed} passed, {len(counts.failed)} failed, {len(counts.skipped)} skipped"]
    lines += [f"    skipped: {label}" for label in counts.skipped]
    lines += [f"    FAILED: {label}" for label in counts.failed]
    return "\n".join(lines)


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", action="append", default=[], type=Path, help="a build folder with results")
    parser.add_argument("--check", action="append", default=[], help="NAME=passed or NAME=failed: one more case")
    options = parser.parse_args(arguments)

    parts = [(folder.name, count_build(folder)) for folder in options.build]
    if options.check:
        parts.append(("checks", count_checks(options.check)))
    total = Counts()
    print()
    for name, counts in parts:
        print(describe(name, counts))
        total.add_all(counts)
    print(f"{total.passed} passed, {len(total.failed)} failed")
    return 1 if total.failed or total.passed == 0 else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
