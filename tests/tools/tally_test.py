"""What the tally makes of ctest's verdicts and the tests' reports."""

import pytest

import tally

# Verdicts as ctest words them.
PASSED = '<testcase name="{}" status="run"/>'
FAILED = '<testcase name="{}" status="fail"><failure message=""/></testcase>'
NOT_STARTED = '<testcase name="{}" status="notrun"><skipped message="Unable to find executable"/></testcase>'
FIXTURE_FAILED = '<testcase name="{}" status="notrun"><skipped message="Fixture dependency failed"/></testcase>'
SKIPPED = '<testcase name="{}" status="notrun"><skipped message="SKIP_RETURN_CODE=77"/></testcase>'
DISABLED = '<testcase name="{}" status="disabled"/>'

# Cases as GoogleTest and pytest word them.
GOOD_CASE = '<testcase classname="Buffer" name="Grows" status="run" result="completed"/>'
BAD_CASE = '<testcase classname="Buffer" name="Shrinks"><failure message="2 is not 1&#10;at line 7"/></testcase>'
BROKEN_CASE = '<testcase classname="host" name="test_starts"><error message="no fixture"/></testcase>'
SKIPPED_CASE = '<testcase classname="Window" name="Opens"><skipped message="no display"/></testcase>'
DISABLED_CASE = '<testcase classname="Window" name="Closes" status="notrun" result="suppressed"/>'


def lay_out(folder, verdicts, reports):
    """A build folder with ctest's verdicts and the reports by test name."""
    (folder / "reports").mkdir(parents=True)
    (folder / "ctest.xml").write_text(f"<testsuite>{''.join(verdicts)}</testsuite>")
    for name, cases in reports.items():
        text = f"<testsuites><testsuite>{''.join(cases)}</testsuite></testsuites>"
        (folder / "reports" / f"{name}.xml").write_text(text)
    return folder


def tally_of(capsys, *arguments):
    """Exit status and printed lines."""
    status = tally.main([str(argument) for argument in arguments])
    return status, capsys.readouterr().out.splitlines()


@pytest.mark.parametrize(
    "verdict, cases, last_line, status",
    [
        (PASSED, [GOOD_CASE, GOOD_CASE], "2 passed, 0 failed", 0),
        (FAILED, [GOOD_CASE, BAD_CASE], "1 passed, 1 failed", 1),
        (FAILED, [BAD_CASE, BROKEN_CASE], "0 passed, 2 failed", 1),
        # The failure came behind the last case: it must not get lost.
        (FAILED, [GOOD_CASE, GOOD_CASE], "2 passed, 1 failed", 1),
        # The report knows better than the exit code.
        (PASSED, [GOOD_CASE, BAD_CASE], "1 passed, 1 failed", 1),
        (PASSED, [GOOD_CASE, SKIPPED_CASE, DISABLED_CASE], "1 passed, 0 failed", 0),
        # All was skipped: nothing was tested.
        (PASSED, [SKIPPED_CASE], "0 passed, 0 failed", 1),
    ],
)
def test_counts_the_cases_of_a_report(tmp_path, capsys, verdict, cases, last_line, status):
    build = lay_out(tmp_path / "native", [verdict.format("unit_test")], {"unit_test": cases})
    answered, lines = tally_of(capsys, "--build", build)
    assert (lines[-1], answered) == (last_line, status)


@pytest.mark.parametrize(
    "verdict, last_line",
    [
        # A program that left in the middle, by an exit of what it tests: nobody knows of the other cases.
        (PASSED, "1 passed, 1 failed"),
        (FAILED, "1 passed, 1 failed"),
        (NOT_STARTED, "1 passed, 1 failed"),
        (FIXTURE_FAILED, "1 passed, 1 failed"),
        (SKIPPED, "1 passed, 0 failed"),
        (DISABLED, "1 passed, 0 failed"),
    ],
)
def test_a_test_without_a_report_is_one_case(tmp_path, capsys, verdict, last_line):
    verdicts = [PASSED.format("other_test"), verdict.format("unit_test")]
    build = lay_out(tmp_path / "native", verdicts, {"other_test": [GOOD_CASE]})
    assert tally_of(capsys, "--build", build)[1][-1] == last_line


@pytest.mark.parametrize("verdict", [PASSED, FAILED])
def test_a_report_that_breaks_off_is_one_failure(tmp_path, capsys, verdict):
    build = lay_out(tmp_path / "native", [verdict.format("unit_test")], {})
    (build / "reports" / "unit_test.xml").write_text("<testsuites><testsuite><testcase name=")
    assert tally_of(capsys, "--build", build)[1][-1] == "0 passed, 1 failed"


def test_reports_that_no_test_of_this_run_wrote_do_not_count(tmp_path, capsys):
    build = lay_out(tmp_path / "native", [PASSED.format("unit_test")], {"unit_test": [GOOD_CASE], "gone": [GOOD_CASE]})
    assert tally_of(capsys, "--build", build)[1][-1] == "1 passed, 0 failed"


@pytest.mark.parametrize("text", [None, "", "<testsuite></testsuite>", "<testsuite><testcase name="])
def test_a_build_without_results_is_one_failure(tmp_path, capsys, text):
    if text is not None:
        (tmp_path / "ctest.xml").write_text(text)
    status, lines = tally_of(capsys, "--build", tmp_path, "--check", "format=passed")
    assert (lines[-1], status) == ("1 passed, 1 failed", 1)


def test_adds_up_builds_and_checks(tmp_path, capsys):
    native = lay_out(tmp_path / "native", [PASSED.format("a")], {"a": [GOOD_CASE, GOOD_CASE, SKIPPED_CASE]})
    windows = lay_out(tmp_path / "windows", [FAILED.format("a")], {"a": [GOOD_CASE, BAD_CASE]})
    checks = ["--check", "format=passed", "--check", "style=failed"]
    status, lines = tally_of(capsys, "--build", native, "--build", windows, *checks)
    assert [line for line in lines if line] == [
        "native: 2 passed, 0 failed, 1 skipped",
        "    skipped: a: Window.Opens: no display",
        "windows: 1 passed, 1 failed, 0 skipped",
        "    FAILED: a: Buffer.Shrinks: 2 is not 1",
        "checks: 1 passed, 1 failed, 0 skipped",
        "    FAILED: style",
        "4 passed, 2 failed",
    ]
    assert status == 1


def test_nothing_at_all_is_no_success(capsys):
    status, lines = tally_of(capsys)
    assert (lines[-1], status) == ("0 passed, 0 failed", 1)
