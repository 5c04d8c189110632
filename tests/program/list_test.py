"""What `list` and `info` tell of the module."""

import json
import shutil

import pytest
from effects import EFFECTS, SERVICES
from program import IS_WINDOWS, MODULE, MODULE_LIBRARY

ABOUT = """Standard effects for Velmora.
By the two authors of Brellix.
Advanced Limiter: thanks to its author.
RetroArch resampler: the RetroArch team, 2010-2018."""


def test_list_is_a_table_in_host_order(host):
    width = max(len(effect.name) for effect in EFFECTS)
    lines = [f"{'Effect':{width}}  {'GUID':38}  Dialog  Default preset"]
    for effect in EFFECTS:
        dialog = "yes" if effect.has_dialog else "no"
        lines.append(f"{effect.name:{width}}  {effect.guid}  {dialog:6}  {effect.payload or '(empty)'}")
    assert host.output_of("list").splitlines() == lines


def test_list_as_json_says_the_same(host):
    assert json.loads(host.output_of("list", "--json")) == [
        {"name": effect.name, "guid": effect.guid, "is_hidden": effect.is_hidden,
         "has_dialog": effect.has_dialog,
         "default_preset": {"owner": effect.guid, "payload": effect.payload}}
        for effect in EFFECTS
    ]


def test_info_as_json_tells_all_that_the_module_says(host):
    assert json.loads(host.output_of("info", "--json")) == {
        "name": "Brellix",
        "version": "2.0 beta 12",
        "about": ABOUT,
        "api_version": 81,
        "file_name": MODULE.name,
        "has_expected_file_name": IS_WINDOWS,
        "services": [{"kind": kind, "name": name} for kind, name in SERVICES],
    }


def test_info_is_a_text_for_people(host):
    verdict = "as expected" if IS_WINDOWS else "not the one expected"
    services = [f"{position:4}  {kind}  {name}".rstrip() for position, (kind, name) in enumerate(SERVICES, start=1)]
    assert host.output_of("info").splitlines() == [
        "Brellix 2.0 beta 12",
        *ABOUT.splitlines(),
        "",
        "API version  81",
        f"File name    {MODULE.name} ({verdict})",
        "",
        "Services, in the order in which the host meets them:",
        *services,
    ]


@pytest.mark.parametrize("name, is_expected", [("kelvane.dll", True), ("another.dll", False)])
def test_the_expected_file_name_is_one_on_every_system(host, name, is_expected):
    shutil.copy(MODULE, host.folder / name)
    shutil.copy(MODULE_LIBRARY, host.folder)
    told = json.loads(host.output_of("info", "--json", "--module", name))
    assert (told["file_name"], told["has_expected_file_name"]) == (name, is_expected)


@pytest.mark.parametrize("command", ["list", "info"])
def test_a_result_that_cannot_be_written_is_a_failure(host, command):
    with open("/dev/full", "w") as full:
        host.assert_fails(command, reason="No space left on device", stdout=full)
