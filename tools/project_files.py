#!/usr/bin/env python3
"""Lists the project's own files: those that git has or would add; without git, all outside the build folder."""

import argparse
import os
import subprocess
import sys
from pathlib import Path

SKIPPED_FOLDERS = {".git", "build", "__pycache__"}


def files_of_git(root):
    """Of the root's own repository: one around it would know nothing of these files."""
    # In a container the files often belong to another user than the one who works there.
    command = ["git", "-c", "safe.directory=*", "-C", str(root)]
    command += ["ls-files", "-z", "--cached", "--others", "--exclude-standard"]
    answer = subprocess.run(command, capture_output=True, check=True)
    return answer.stdout.decode().split("\0")[:-1]


def files_below(root):
    for folder, folders, names in os.walk(root):
        folders[:] = [name for name in folders if name not in SKIPPED_FOLDERS]
        for name in names:
            yield (Path(folder) / name).relative_to(root).as_posix()


def project_files(root):
    """Paths from the root, sorted. Files that git still has, but that are deleted, are left out."""
    has_repository = (Path(root) / ".git").exists()
    listed = files_of_git(root) if has_repository else files_below(root)
    return sorted(path for path in set(listed) if (Path(root) / path).is_file())


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--null", action="store_true", help="end each path with a zero byte, not with a line end")
    parser.add_argument("suffixes", nargs="*", help="only files that end so")
    arguments = parser.parse_args()
    end = "\0" if arguments.null else "\n"
    for path in project_files(Path(__file__).parent.parent):
        if not arguments.suffixes or path.endswith(tuple(arguments.suffixes)):
            sys.stdout.write(path + end)


if __name__ == "__main__":
    main()
