#!/usr/bin/env python3
"""Runs clang-tidy over the project's own sources of a build, as many at once as there are processors."""

import json
import os
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from project_files import project_files

ROOT = Path(__file__).resolve().parent.parent


def compiled_sources(build_folder):
    """The project's files in the build's compile database: not those of other makers, nor generated ones."""
    database = json.loads((build_folder / "compile_commands.json").read_text())
    compiled = {Path(entry["directory"], entry["file"]).resolve() for entry in database}
    return [path for path in project_files(ROOT) if ROOT / path in compiled]


def complaint_about(build_folder, path):
    """What clang-tidy finds in one file; empty when it finds nothing."""
    command = ["clang-tidy", "--quiet", "-p", str(build_folder), path]
    answer = subprocess.run(command, cwd=ROOT, capture_output=True, text=True)
    if answer.returncode == 0:
        return ""
    return answer.stdout or answer.stderr


def main():
    build_folder = Path(sys.argv[1]).resolve()
    sources = compiled_sources(build_folder)
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        complaints = [text for text in pool.map(lambda path: complaint_about(build_folder, path), sources) if text]
    for text in complaints:
        print(text)
    print(f"clang-tidy: {len(sources)} sources, {len(complaints)} with findings")
    return 1 if complaints or not sources else 0


if __name__ == "__main__":
    sys.exit(main())
