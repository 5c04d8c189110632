"""The interfaces of velmora/ as interfaces.txt writes them, and the compilers that the tests ask about the headers."""

import functools
import json
import os
import pathlib
import re
import subprocess

SOURCE = pathlib.Path(os.environ["KELVANE_SOURCE"])
HEADERS = sorted((SOURCE / "velmora").glob("*.h"))

# No C++ standard library is installed for the first target: the headers stand on the freestanding ones alone.
MICROSOFT = ["clang++", "--target=x86_64-pc-windows-msvc", "-ffreestanding", "-nostdinc++"]
ITANIUM = ["clang++", "--target=x86_64-linux-gnu"]
COMPILERS = {
    "clang, Microsoft's tables": MICROSOFT,
    "clang": ITANIUM,
    "g++": ["g++"],
    "g++ for Windows": ["x86_64-w64-mingw32-g++-posix"],
}


def compile_text(command, text):
    """The compiler's output for a program that stands in no file; its complaints fail the test."""
    done = subprocess.run([*command, f"-I{SOURCE}", "-x", "c++", "-"], input=text, capture_output=True, text=True)
    assert done.returncode == 0, f"{' '.join(command)}\n{text}\n{done.stderr}"
    return done.stdout


def include_all_headers():
    return "".join(f'#include "velmora/{header.name}"\n' for header in HEADERS)


class Function:
    """One line of the table."""

    def __init__(self, slot, signature):
        self.slot = int(slot)
        self.signature = signature
        self.name = re.search(r"(\w+)\(", signature).group(1)
        self.result = signature[: signature.index(self.name)].strip()
        inside = re.search(r"\((.*)\)", signature).group(1)
        self.parameters = inside.split(", ") if inside else []


class Interface:
    def __init__(self, base):
        self.base = base
        self.own = []


@functools.cache
def table():
    """Interface name -> Interface, in the order of the file."""
    interfaces = {}
    current = None
    for line in (pathlib.Path(__file__).parent / "interfaces.txt").read_text().splitlines():
        if row := re.fullmatch(r"\s+(\d+)\s+(.*)", line):
            current.own.append(Function(*row.groups()))
        elif head := re.fullmatch(r"(\w+)(?: : (\w+))?", line):
            current = interfaces[head[1]] = Interface(head[2])
        else:
            assert not line or line.startswith("#"), line
    return interfaces


def functions_of(name):
    """The functions of an interface, those of its bases first."""
    interface = table()[name]
    inherited = functions_of(interface.base) if interface.base else []
    return inherited + interface.own


def _nodes(tree):
    yield tree
    for child in tree.get("inner", []):
        yield from _nodes(child)


@functools.cache
def declared_classes():
    """Class name -> syntax tree of its definition, for every class with virtual functions in the headers."""
    command = [*ITANIUM, "-std=c++20", "-fsyntax-only", "-Xclang", "-ast-dump=json"]
    tree = json.loads(compile_text(command, include_all_headers()))
    definitions = (node for node in _nodes(tree) if node.get("kind") == "CXXRecordDecl" and "definitionData" in node)
    return {node["name"]: node for node in definitions if node["definitionData"].get("isPolymorphic")}


def methods_of(definition):
    return [node for node in definition["inner"] if node["kind"] == "CXXMethodDecl" and not node.get("isImplicit")]
