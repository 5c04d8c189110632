"""Which files count as the project's own."""

import subprocess

from project_files import project_files


def lay_out(root, *paths):
    for path in paths:
        (root / path).parent.mkdir(parents=True, exist_ok=True)
        (root / path).write_text("text\n")


def git(root, *arguments):
    subprocess.run(["git", "-C", str(root), *arguments], check=True, capture_output=True)


def test_without_git_all_but_the_build_folder(tmp_path):
    lay_out(tmp_path, "dev", "frame/blocks.h", "build/native/a.h", "tools/__pycache__/a.pyc")
    assert project_files(tmp_path) == ["dev", "frame/blocks.h"]


def test_with_git_what_it_has_or_would_add(tmp_path):
    lay_out(tmp_path, "kept.h", "deleted.h", "new file é.h", "ignored.h")
    (tmp_path / ".gitignore").write_text("/ignored.h\n")
    git(tmp_path, "init")
    git(tmp_path, "add", "kept.h", "deleted.h")
    (tmp_path / "deleted.h").unlink()
    assert project_files(tmp_path) == [".gitignore", "kept.h", "new file é.h"]


def test_a_repository_around_the_tree_does_not_count(tmp_path):
    git(tmp_path, "init")
    (tmp_path / ".gitignore").write_text("*\n")
    lay_out(tmp_path / "inner", "dev")
    assert project_files(tmp_path / "inner") == ["dev"]
