"""An input is never overwritten, by whatever name the output goes."""

import os

import pytest
from audio import noise, write
from program import IS_WINDOWS

NAMES = ["in.wav", "./in.wav", "sub/../in.wav", "{folder}/in.wav"]
LINKED_NAMES = ["link.wav", "twin.wav", "linked/in.wav"]


@pytest.fixture
def folder(host):
    write(host.folder / "in.wav", noise(100, 2))
    write(host.folder / "other.wav", noise(100, 2))
    (host.folder / "sub").mkdir()
    return host.folder


def make_links(folder):
    os.symlink("in.wav", folder / "link.wav")
    os.link(folder / "in.wav", folder / "twin.wav")
    os.symlink(".", folder / "linked")


@pytest.mark.parametrize("output", [*NAMES, *(["IN.WAV"] if IS_WINDOWS else LINKED_NAMES)])
def test_an_input_is_not_overwritten(host, folder, output):
    if not IS_WINDOWS:
        make_links(folder)
    named = output.format(folder=folder)
    host.assert_fails("process", "other.wav", "in.wav", "-o", named, reason=f"{named} is an input")


@pytest.mark.native
@pytest.mark.parametrize("given", LINKED_NAMES)
def test_an_input_given_by_a_link_is_not_overwritten(host, folder, given):
    make_links(folder)
    host.assert_fails("process", given, "-o", "in.wav", reason="in.wav is an input")


@pytest.mark.native
@pytest.mark.parametrize("is_there", [True, False])
def test_a_link_stays_one_and_its_file_keeps_its_mode(host, folder, is_there):
    target = folder / "sub" / "out.wav"
    if is_there:
        target.write_bytes(b"of an earlier run")
        target.chmod(0o600)
    os.symlink("sub/out.wav", folder / "out.wav")
    host.process("in.wav")
    assert os.readlink(folder / "out.wav") == "sub/out.wav"
    assert [path.name for path in target.parent.iterdir()] == ["out.wav"]
    assert target.read_bytes().startswith(b"RIFF")
    assert not is_there or target.stat().st_mode & 0o777 == 0o600


@pytest.mark.usefixtures("folder")
def test_a_namesake_in_another_folder_is_another_file(host):
    host.process("in.wav", output="sub/in.wav")
