"""What people read of the programs, and what the shell completes, is what the programs take."""

import os
import pathlib
import re
import subprocess
import sys

import pytest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent


def help_of(*command, **environment):
    run = subprocess.run([str(word) for word in command] + ["--help"], capture_output=True, text=True, check=True,
                         env={**os.environ, **environment})
    return run.stdout


@pytest.mark.parametrize("program, page", [
    ("cimd", "share/man/man8/cimd.8"), ("cimd-passwd", "cimd-passwd.8"), ("switchctl", "switchctl.1"), ("simgen", "simgen.1"),
    ("genclass", "genclass.1")])
def test_the_manual_page_has_every_option_and_command(build_dir, program, page):
    if program == "genclass":
        text = help_of(sys.executable, "-m", "genclass", PYTHONPATH=str(ROOT / "toolkit" / "genclass"))
    else:
        text = help_of(build_dir / "bin" / program)
    manual = (build_dir if "/" in page else ROOT / "docs").joinpath(page).read_text()
    manual = re.sub(r"\\f.", "", manual.replace("\\-", "-"))
    options = set(re.findall(r"(?<![\w-])(?<!cimd )--[a-z-]+", text))
    entries = re.findall(r"^\.T[PQ]\n\.\w+ (.*)", manual, re.MULTILINE)
    missing = options - set(re.findall(r"(?<![\w-])--[a-z-]+", "\n".join(entries)))
    assert options and not missing
    if "\nCommands:\n" in text:
        commands = re.findall(r"^  (\S+(?: \S+)*)  ", text.split("\nCommands:\n")[1], re.MULTILINE)
        explained = [set(re.findall(r"\w+", entry)) for entry in entries]
        missing = [command for command in commands if not any(set(command.split()) <= entry for entry in explained)]
        assert len(commands) > 50 and not missing


@pytest.mark.parametrize("line, found, never", [
    ("cimd --list", ["--listen", "--list-providers"], ["--port"]), ("cimd --no-http --max-work", ["--max-workers"], []),
    ("cimd --log-level =", ["error", "warning", "info", "debug"], []), ("cimd --log-level w", ["warning"], ["error"]),
    ("cimd --scenario ./si", ["./simulator"], []), ("cimd --provider-dir s", ["simulator", "support"], ["README.md"]),
    ("cimd --port 5", [], ["5988"]), ("cimd-passwd --", ["--stdin", "--delete"], []), ("cimd-passwd READ", ["README.md"], []),
    ("simgen --no", ["--nodes"], ["--seed"]), ("simgen --seed 1", [], ["1"]), ("simgen READ", ["README.md"], []),
    ("share/vrax-host-files s", ["sfcb"], ["openpegasus"]), ("share/vrax-host-files --output s", ["share"], ["sfcb"])])
def test_the_shell_completes(build_dir, line, found, never):
    script = f"""source packaging/completion.bash
        COMP_WORDS=({line}); COMP_CWORD=$((${{#COMP_WORDS[@]}} - 1))
        _of_help; printf '%s\\n' "${{COMPREPLY[@]}}" """
    run = subprocess.run(["bash", "-c", script], capture_output=True, text=True, check=True, cwd=ROOT,
                         env={**os.environ, "PATH": f"{build_dir}/bin:{os.environ['PATH']}"})
    words = run.stdout.split()
    assert run.stderr == "" and set(found) <= set(words) and not set(never) & set(words), words
