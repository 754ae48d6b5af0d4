#!/usr/bin/env python3
"""Tells what came of a build tree's tests, from ctest's report and from the counts of the tests themselves.

usage: count_results.py TREE    (the cases that passed on the first line, then a line for each test that failed)
"""
import pathlib
import sys
import xml.etree.ElementTree as ET


def cases_of(tree, test):
    """How many cases of a test that passed were run; 1 when it does not say."""
    try:
        suites = ET.parse(tree / "cases" / f"{test}.xml").getroot()
    except (OSError, ET.ParseError):
        return 1
    left_out = sum(int(suite.get("skipped", "0")) for suite in suites)
    return int(suites.get("tests", "1")) - left_out


def main():
    tree = pathlib.Path(sys.argv[1])
    status = {case.get("name"): case.get("status") for case in ET.parse(tree / "junit.xml").iter("testcase")}
    print(sum(cases_of(tree, test) for test, came in status.items() if came == "run"))
    print("".join(f"{test}\n" for test, came in status.items() if came in ("fail", "notrun")), end="")


if __name__ == "__main__":
    main()
