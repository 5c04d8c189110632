"""Lets the tests import what runs the program and reads its files, and the project's tools."""

import sys
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(PROJECT / "tests/program"), str(PROJECT / "tools")]
