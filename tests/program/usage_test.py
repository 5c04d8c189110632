"""The command line: help, and what is wrong with one."""

import re

import pytest
from audio import noise, write

EXIT_CODES = "Exit codes: 0 done; 1 the work could not be done; 2 wrong command line; 130 interrupted."
OPTIONS = {
    (): ["list", "info", "process"],
    ("list",): ["--module", "--json"],
    ("info",): ["--module", "--json"],
    ("process",): ["IN", "--output", "--effect", "--preset", "@FILE", "`preset show`", "--bits",
                   "{16,24,32,f32,f64}", "--block", "--module"],
}


@pytest.mark.parametrize("command", OPTIONS, ids=lambda command: " ".join(command) or "program")
@pytest.mark.parametrize("option", ["--help", "-h"])
def test_help_tells_of_every_option_and_exit_code(host, command, option):
    text = host.output_of(*command, option)
    assert EXIT_CODES in text.splitlines()
    assert [word for word in OPTIONS[command] if word not in text] == []


PROCESS = ["process", "in.wav", "-o", "out.wav"]


@pytest.mark.parametrize("arguments, reason", [
    ([], "a command is missing"),
    (["play"], 'there is no command "play"'),
    (["--frobnicate"], 'there is no option "--frobnicate"'),
    (["preset"], "a command is missing"),
    (["preset", "print"], 'there is no command "print"'),
    (["list", "--module", ""], "--module: the file name is empty"),
    (["preset", "show", ""], "FILE: the file name is empty"),
    (["process", "", "-o", "out.wav"], "IN: the file name is empty"),
    (["process", "in.wav", "-o", ""], "--output: the file name is empty"),
    (["play", "more"], 'there is no command "play"'),
    (["list", "--frobnicate"], 'there is no option "--frobnicate"'),
    (["list", "more"], '"more" is a word too many'),
    (["list", "info"], '"info" is a word too many'),
    (["list", "more", "words"], '"more" is a word too many'),
    (["list", "--module"], "--module has nothing behind it"),
    (["process"], "IN is required"),
    (["process", "-o", "out.wav"], "IN is required"),
    (["process", "in.wav"], "--output is required"),
    ([*PROCESS, "-o", "out2.wav"], "--output is there more than once"),
    ([*PROCESS, "--json"], 'there is no option "--json"'),
    ([*PROCESS, "-e"], "--effect has nothing behind it"),
    ([*PROCESS, "--preset", "", "-e", "reverse"], "--preset: stands behind the -e"),
    ([*PROCESS, "--preset", ""], "--preset: stands behind the -e"),
    ([*PROCESS, "-e", "reverse", "--preset", "", "--preset", ""], "--preset: stands behind the -e"),
    ([*PROCESS, "--bits", "8"], "--bits"),
    ([*PROCESS, "--bits", ""], "--bits"),
    ([*PROCESS, "--bits", "F64"], "--bits"),
    ([*PROCESS, "--block", "0"], "--block"),
    ([*PROCESS, "--block", "-1"], "--block"),
    ([*PROCESS, "--block", "1048577"], "--block"),
    ([*PROCESS, "--block", "1" + 30 * "0"], "--block"),
    ([*PROCESS, "--block", "1.5"], "--block"),
    ([*PROCESS, "--block", "many"], "--block"),
    ([*PROCESS, "--block", ""], "--block"),
])
def test_a_wrong_command_line_does_nothing(host, arguments, reason):
    write(host.folder / "in.wav", noise(10, 2))
    (host.folder / "out.wav").write_bytes(b"of an earlier run")
    host.assert_misused(*arguments, reason=reason)


def test_the_version_is_told(host):
    assert re.fullmatch(r"kelvane-host \d+\.\d+\n", host.output_of("--version"))


def test_the_largest_block_is_allowed(host):
    write(host.folder / "in.wav", noise(10, 2))
    host.process("in.wav", "--block", 1048576)
