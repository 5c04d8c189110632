"""Damaged files: whatever is in one, the program reads it or refuses it, and never crashes."""

import random

import pytest
from audio import noise, write
from program import contents_of

RUNS_OF_A_KIND = 25
DAMAGED_START_BYTES = 96  # the header, and a little of the samples


def random_bytes(_, chance):
    return chance.randbytes(chance.randrange(4096))


def cut_off(whole, chance):
    return whole[:chance.randrange(min(len(whole), 2 * DAMAGED_START_BYTES))]


def with_flipped_bits(whole, chance):
    damaged = bytearray(whole)
    for _ in range(chance.randint(1, 8)):
        damaged[chance.randrange(DAMAGED_START_BYTES)] ^= 1 << chance.randrange(8)
    return bytes(damaged)


def with_wild_numbers(whole, chance):
    damaged = bytearray(whole)
    at = chance.randrange(4, DAMAGED_START_BYTES - 4)
    damaged[at:at + 4] = chance.choice([bytes(4), b"\xff" * 4, b"\xff\xff\xff\x7f", b"\0\0\0\x80", chance.randbytes(4)])
    return bytes(damaged)


def assert_reads_or_refuses(host, content):
    """Answers whether the program read it."""
    (host.folder / "in.wav").write_bytes(content)
    answer = host.run("process", "in.wav", "-o", "out.wav", "-e", "Reverse stereo channels")
    told = f"{answer} for {content[:2 * DAMAGED_START_BYTES].hex()}"
    assert answer.exit_code in (0, 1), told
    left = contents_of(host.folder)
    if answer.exit_code == 0:
        assert sorted(left) == ["in.wav", "out.wav"], told
        (host.folder / "out.wav").unlink()
    else:
        assert sorted(left) == ["in.wav"], told
        assert len(answer.errors.splitlines()) == 1, told
    return answer.exit_code == 0


@pytest.mark.parametrize("kind, may_be_read", [
    (random_bytes, False), (cut_off, False), (with_flipped_bits, True), (with_wild_numbers, True),
])
@pytest.mark.parametrize("name", ["whole.wav", "whole.rf64"])
def test_a_damaged_file_is_read_or_refused(host, kind, may_be_read, name):
    write(host.folder / "made.wav", noise(2000, 2), coding="pcm_s16le")
    host.process("made.wav", output=name)
    whole = (host.folder / name).read_bytes()
    for path in host.folder.iterdir():
        path.unlink()
    chance = random.Random(1)
    read = sum(assert_reads_or_refuses(host, kind(whole, chance)) for _ in range(RUNS_OF_A_KIND))
    assert read < RUNS_OF_A_KIND
    assert (read > 0) == may_be_read
