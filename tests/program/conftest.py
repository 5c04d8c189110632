"""Which tests run where, and the program in an empty folder."""

import pytest

pytest.register_assert_rewrite("program")

import program  # noqa: E402 - its assertions shall tell what they compared


def pytest_configure(config):
    config.addinivalue_line("markers", "native: not for Windows, where the program knows WAV and RF64 alone")


def pytest_collection_modifyitems(config, items):
    if not program.IS_WINDOWS:
        return
    left_out = [item for item in items if item.get_closest_marker("native")]
    config.hook.pytest_deselected(items=left_out)
    items[:] = [item for item in items if item not in left_out]


@pytest.fixture
def host(tmp_path):
    return program.Host(tmp_path)
