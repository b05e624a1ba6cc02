"""cimd-passwd as an operator uses it: at a terminal, from scripts, and with mistakes."""

import os
import pathlib
import pty
import signal
import stat
import subprocess
import threading

import pytest


@pytest.fixture
def program(build_dir):
    return str(pathlib.Path(build_dir) / "bin" / "cimd-passwd")


def run(program, *words, password=None):
    done = subprocess.run([program, *map(str, words)], input=password, text=True, capture_output=True, timeout=60)
    return done.returncode, done.stdout + done.stderr


def users(file):
    return [line.split(":")[0] for line in file.read_text().splitlines()]


def test_sets_changes_and_removes_users(program, tmp_path):
    file = tmp_path / "users"
    assert run(program, "--stdin", file, "joe", password="first\n") == (0, "")
    assert stat.S_IMODE(file.stat().st_mode) == 0o600
    before = file.read_text()
    assert before.startswith("joe:$2b$")
    assert run(program, "--stdin", file, "ann", password="without a line's end") == (0, "")
    assert run(program, file, "joe", "--stdin", password="second\r\n") == (0, "")
    assert users(file) == ["joe", "ann"]
    assert before.strip() not in file.read_text()
    assert run(program, "-D", file, "joe") == (0, "")
    assert users(file) == ["ann"]
    assert os.listdir(tmp_path) == ["users"]


def test_says_what_is_wrong_and_changes_nothing(program, tmp_path):
    file = tmp_path / "users"
    assert run(program, "--stdin", file, "joe", password="secret\n")[0] == 0
    broken = tmp_path / "broken"
    broken.write_text("joe\n")
    broken.chmod(0o600)
    public = tmp_path / "public"
    public.write_text("")
    public.chmod(0o644)
    rows = [
        (["--stdin", file, "joe"], "\n", 1, "a password must not be empty"),
        (["--stdin", file, "joe"], "", 1, "no password was given"),
        (["--stdin", file, "joe"], "x" * 73, 1, "a password may have 72 bytes at most"),
        ([file, "joe"], "secret\n", 1, "standard input is not a terminal to ask for a password; use --stdin"),
        (["--stdin", file, "jo:e"], "secret\n", 1, "a user's name cannot have a colon"),
        (["--stdin", file, ""], "secret\n", 1, "the user's name is missing"),
        (["-D", file, "ann"], "", 1, f"{file}: there is no user ann"),
        (["-D", tmp_path / "none", "ann"], "", 1, f"{tmp_path}/none: there is no user ann"),
        (["--stdin", broken, "ann"], "secret\n", 1, f"{broken}:1: name:hash expected"),
        (["--stdin", public, "ann"], "secret\n", 1, f"{public}: others may read it (mode 0644)"),
        (["--stdin", "/proc/self/nowhere", "ann"], "secret\n", 1, "/proc/self"),
        ([file], "", 2, "a FILE and a USER are needed; see cimd-passwd --help"),
        (["-D", "--stdin", file, "joe"], "", 2, "--delete needs no password"),
        (["--sudo", file, "joe"], "", 2, "--sudo: there is no such option"),
    ]
    before = file.read_text()
    for words, password, status, complaint in rows:
        got, output = run(program, *words, password=password)
        assert (got, output.startswith("cimd-passwd: " + complaint)) == (status, True), (words, output)
    assert file.read_text() == before
    assert sorted(os.listdir(tmp_path)) == ["broken", "public", "users"]
    assert run(program, "--help")[0] == 0


def at_terminal(program, file, answers):
    """Types the answers when asked, and gives everything the terminal showed and the exit status."""
    child, terminal = pty.fork()
    if child == 0:
        os.execv(program, [program, str(file), "joe"])
    watchdog = threading.Timer(60, os.kill, (child, signal.SIGKILL))
    watchdog.start()
    shown = b""
    try:
        for prompt, answer in answers:
            while prompt not in shown:
                shown += os.read(terminal, 1000)
            os.write(terminal, answer)
        while piece := os.read(terminal, 1000):
            shown += piece
    except OSError:  # Linux's way to say that the other side has closed
        pass
    status = os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
    watchdog.cancel()
    os.close(terminal)
    return shown.decode(), status


def test_asks_twice_without_showing_what_is_typed(program, tmp_path):
    file = tmp_path / "users"
    first, second = b"New password of joe: ", b"The same again: "
    shown, status = at_terminal(program, file, [(first, b"quiet\n"), (second, b"quite\n")])
    assert status == 1 and "the two passwords are not the same" in shown and not file.exists()
    shown, status = at_terminal(program, file, [(first, b"\x03")])
    assert status == 1 and "no password was read: Interrupt" in shown and not file.exists()
    shown, status = at_terminal(program, file, [(first, b"quiet\n"), (second, b"quiet\n")])
    assert status == 0 and "quiet" not in shown and users(file) == ["joe"]
