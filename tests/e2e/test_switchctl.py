"""switchctl: a person does things to the running switch, and clients see them."""

import os
import select
import stat
import subprocess

import pywbem
import pytest

from agent_process import NAMESPACE, AgentProcess

LOCAL = "100002a5c41d02e0"


class Switch:
    """The simulated switch of an agent, in the hands of a person."""

    def __init__(self, build_dir, socket):
        self.program = [str(build_dir / "bin" / "switchctl"), "--socket", str(socket)]

    def __call__(self, command, status=0):
        """What it prints, or, when it is to fail, what it complains of."""
        run = subprocess.run([*self.program, *command.split()], capture_output=True, text=True)
        assert run.returncode == status, run.stderr
        assert (run.stderr == "") == (status == 0)
        return run.stderr if status else run.stdout


@pytest.fixture(scope="module")
def socket(tmp_path_factory):
    return tmp_path_factory.mktemp("switchctl") / "switch.sock"


@pytest.fixture(scope="module")
def agent(build_dir, socket):
    with AgentProcess(build_dir, extra_args=["--switch-socket", str(socket)]) as running:
        yield running


@pytest.fixture
def switch(build_dir, agent, socket):
    return Switch(build_dir, socket)


def line_of(text, *beginning):
    return next(line for line in text.splitlines() if line.split()[:len(beginning)] == list(beginning))


def test_what_is_done_is_seen(switch):
    for command, view, beginning, seen in [
            ("port 3 down", "show ports", ["3"], "Offline"), ("port 3 up", "show ports", ["3"], "Online"),
            ("port 3 fail", "show ports", ["3"], "Downed"), ("port 3 repair", "show ports", ["3"], "Online"),
            ("port 3 offline", "show log", [], "port 3 Offline"), ("port 3 online", "show ports", ["3"], "Online"),
            ("supply 1 fail", "show hardware", ["supply", "1"], "Failed"), ("supply 1 repair", "show hardware", ["supply", "1"], "Normal"),
            ("sensor temperature 1 pin 91.5", "show hardware", ["sensor", "temperature", "1"], "91.50"),
            ("sensor voltage 2 break", "show hardware", ["sensor", "voltage", "2"], "Unknown"),
            ("node remove 2100026e1a40b7c1", "show ports", ["3"], "Offline"),
            ("node add 1 3 2100026e1a40b7c1 initiator", "show ports", ["3"], "2100026e1a40b7c1"),
            ("switch add 9 100002a5c0de0099 4", "show fabric", ["9"], "100002a5c0de0099"),
            ("link add 9 0 2 20", "show fabric", ["9"], "1"),
            ("zoning add zone lab2", "show zoning", ["zone", "lab2:"], "-"),
            ("zoning zone lab2 add 010d00", "show zoning", ["zone", "lab2:"], "010D00"),
            ("zoning set maintenance add lab2", "show zoning", [], "zone lab2"),
            ("zoning activate maintenance", "show zoning", ["in", "force:"], "maintenance")]:
        assert switch(command) == ""
        text = switch(view)
        assert seen in (line_of(text, *beginning) if beginning else text), command
    switch("switch remove 9")
    assert "100002a5c0de0099" not in switch("show fabric")


def test_a_person_watches(switch):
    with subprocess.Popen([*switch.program, "watch"], stdout=subprocess.PIPE, text=True) as watch:
        before = 0  # events until one is seen
        while not select.select([watch.stdout], [], [], 0.1)[0]:
            switch("user refuse eva")
            before += 1
        for user in ("one", "two"):
            switch(f"user refuse {user}")
        line = f"login failed switch={LOCAL} subject="
        seen = [text.strip() for text in iter(watch.stdout.readline, f"{line}two\n")]
        assert 1 < len(seen) <= before + 1
        assert seen == [f"{line}eva"] * (len(seen) - 1) + [f"{line}one"]
        watch.terminate()


def test_clients_see_it_too(agent, switch):
    """A client that comes for the first time reads what the person did."""
    switch("port 5 fail")
    connection = pywbem.WBEMConnection(agent.url, default_namespace=NAMESPACE, timeout=60)
    ports = [one for one in connection.EnumerateInstances("VRAX_FCPort") if one["PortNumber"] == 5]
    assert any(6 in one["OperationalStatus"] for one in ports)


def test_who_has_the_administrative_mode_keeps_others_out(switch):
    switch("zoning hold console")
    assert "administrative mode: console" in switch("show zoning")
    assert "(status 100): somebody has the administrative mode" in switch("zoning deactivate", status=1)
    assert "status 100" in switch("zoning hold another", status=1)
    switch("zoning release")
    assert "administrative mode: free" in switch("show zoning")


def test_mistakes_are_told_with_what_was_expected(switch, build_dir, tmp_path):
    for command, status, complaint in [
            ("port 99 down", 1, "no port 99 on the local switch"), ("supply 7 fail", 1, "supply"),
            ("zoning activate nowhere", 1, "there is no such zone set"),
            ("port x down", 2, 'port: expected a whole number, got "x"'),
            ("port 3", 2, 'after "port 3" expected down, up'), ("frob", 2, "frob: expected port, "),
            ("port 3 down now", 2, "port 3 down now"), ("node add 1 3 zz", 2, 'expected a WWN of 16 hexadecimal digits, got "zz"'),
            ("sensor voltage 1 pin much", 2, 'expected a reading such as 71.5, got "much"')]:
        assert complaint in switch(command, status)
    assert "cannot connect" in Switch(build_dir, tmp_path / "none")("show ports", 3)
    assert "port NUMBER down" in switch("port --help") and "supply" not in switch("port --help")
    assert switch("--complete supply 1").split() == ["fail", "warn", "repair", "pull", "insert"]


def test_the_socket_is_private_and_goes_with_the_switch(build_dir, tmp_path):
    path = tmp_path / "switch.sock"
    with AgentProcess(build_dir, extra_args=["--switch-socket", str(path)]) as agent:
        assert stat.S_IMODE(path.stat().st_mode) == 0o600
        with pytest.raises(RuntimeError, match="another process listens there"):
            AgentProcess(build_dir, extra_args=["--switch-socket", str(path)]).__enter__()
        # A crash leaves the socket, and the next serving process takes its place.
        os.kill(agent.serving_pid, 9)
        pywbem.WBEMConnection(agent.url, default_namespace=NAMESPACE, timeout=60).EnumerateInstanceNames("VRAX_Fabric")
        assert "core-a" in Switch(build_dir, path)("show fabric")
    assert not path.exists()
    path.write_text("a file")
    with pytest.raises(RuntimeError, match="something else in the socket's place"):
        AgentProcess(build_dir, extra_args=["--switch-socket", str(path)]).__enter__()
    assert path.read_text() == "a file"
