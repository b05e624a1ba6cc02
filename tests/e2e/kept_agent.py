"""An agent whose simulated switch keeps its state in a file, where a test sees what the switch itself has."""

import json
import os
import pathlib
import signal
import time

import pywbem

from agent_process import DEFAULT_SCENARIO, NAMESPACE, AgentProcess


class KeptAgent:
    """A context manager. `connection` is a client's; another one after restart()."""

    def __init__(self, build_dir, directory, scenario=DEFAULT_SCENARIO, extra_args=()):
        self._file = pathlib.Path(directory) / "state.json"
        self._start = lambda: AgentProcess(build_dir, scenario, ["--state", str(self._file), *extra_args])

    def __enter__(self):
        self.process = self._start().__enter__()
        self.connection = pywbem.WBEMConnection(self.process.url, default_namespace=NAMESPACE, timeout=60)
        return self

    def __exit__(self, *exception):
        self.process.stop()

    def restart(self):
        """What is asked for afterwards is read from the switch: the module that had asked before is gone."""
        self.process.stop()
        self.__enter__()

    def crash(self):
        """Kills the serving process and waits for the one that takes its place."""
        killed = self.process.serving_pid
        os.kill(killed, signal.SIGKILL)
        while self.process.serving_pid in (killed, self.process.process.pid):
            time.sleep(0.01)
        self.connection = pywbem.WBEMConnection(self.process.url, default_namespace=NAMESPACE, timeout=60)

    def state(self):
        """The durable part of the switch, as docs/simulator.md describes a scenario. The file follows each change
        before whoever made it gets an answer."""
        return json.loads(self._file.read_text())

    def local_switch(self):
        return next(one for one in self.state()["switches"] if one.get("local"))


def six_ways(connection, association, near, far):
    """Where the pair is not found, of: all names and instances of the class, and what associators() and references()
    give from both of its ends, as names and as instances."""

    def is_end(path, end):
        return path.classname == end.classname and path.keybindings == end.keybindings

    def ties(path):
        return all(any(is_end(found, end) for found in path.keybindings.values()) for end in (near, far))

    calls = {"EnumerateInstanceNames": lambda: map(ties, connection.EnumerateInstanceNames(association)),
             "EnumerateInstances": lambda: (ties(one.path) for one in connection.EnumerateInstances(association))}
    for source, other in ((near, far), (far, near)):
        def add(call, found, source=source):
            calls[f"{call} from {source.classname}"] = lambda: found(getattr(connection, call)(source, association))

        add("AssociatorNames", lambda paths, other=other: (is_end(path, other) for path in paths))
        add("Associators", lambda found, other=other: (is_end(one.path, other) for one in found))
        add("ReferenceNames", lambda paths: map(ties, paths))
        add("References", lambda found: (ties(one.path) for one in found))
    return [name for name, found in calls.items() if not any(found())]
