"""Every class of the module, read by two clients that know nothing of each other."""

import pathlib
import re
import subprocess

import pytest

from agent_process import CHASSIS_SCENARIO, AgentProcess

PROVIDERS = pathlib.Path(__file__).resolve().parents[2] / "common" / "providers.def"
CLASSES = re.findall(r"VRAX_PROVIDER\((?:INSTANCE|ASSOCIATION), \w+, (\w+)\)", PROVIDERS.read_text())


@pytest.fixture(scope="module")
def agent(build_dir):
    """A switch that has an instance of nearly everything."""
    with AgentProcess(build_dir, CHASSIS_SCENARIO) as running:
        yield running


def wbemcli(agent, operation, target):
    done = subprocess.run(["wbemcli", operation, f"{agent.url}/root/interop:{target}"],
                          capture_output=True, text=True, timeout=120)
    assert done.returncode == 0, done.stdout + done.stderr
    return done.stdout


@pytest.mark.parametrize("class_name", CLASSES)
def test_two_clients_agree(agent, connection, class_name):
    instances = connection.EnumerateInstances(class_name)
    paths = connection.EnumerateInstanceNames(class_name)
    assert [instance.path for instance in instances] == paths
    assert len(set(paths)) == len(paths)

    lines = wbemcli(agent, "ein", class_name).splitlines()
    assert len(lines) == len(paths)
    for path in paths[:1] + paths[-1:]:
        found = connection.GetInstance(path)
        assert found.classname == class_name
        assert all(found[key] == value for key, value in path.keybindings.items() if not hasattr(value, "keybindings"))
    if lines and not re.search(r'="[^"]*:[^"]*\.\w+=', lines[0]):  # wbemcli does not read references back
        target = lines[0].split("root/interop:", 1)[1]
        text = wbemcli(agent, "gi", target)
        assert text.startswith(lines[0].split(":", 1)[0]) and f":{class_name}." in text
