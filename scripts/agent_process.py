"""Starts cimd on a free port for the demo and the end-to-end tests, and stops it again."""

import os
import pathlib
import re
import signal
import subprocess
import threading

ROOT = pathlib.Path(__file__).resolve().parent.parent
DEFAULT_SCENARIO = ROOT / "simulator" / "scenarios" / "default.json"
CHASSIS_SCENARIO = ROOT / "simulator" / "scenarios" / "chassis.json"
TRANSPARENT_SCENARIO = ROOT / "simulator" / "scenarios" / "transparent.json"
NAMESPACE = "root/interop"
START_TIMEOUT_SECONDS = 60
STOP_TIMEOUT_SECONDS = 60


class AgentProcess:
    """A running cimd. `url` is where it listens, `tls_url` its HTTPS port, `metrics_url` what --metrics-port serves; use
    it as a context manager.

    Raises RuntimeError with the agent's own output when it does not come up or does not end cleanly.
    """

    def __init__(self, build_dir, scenario=DEFAULT_SCENARIO, extra_args=(), environment=None):
        self.command = [str(pathlib.Path(build_dir) / "bin" / "cimd"), "--config", "", "--port", "0"]
        if scenario is not None:
            self.command += ["--scenario", str(scenario)]
        self.command += list(extra_args)
        self.environment = {**os.environ, **(environment or {})}
        self.log_lines = []
        self.url = None
        self.tls_url = None
        self.metrics_url = None
        self.process = None

    def __enter__(self):
        self.process = subprocess.Popen(
            self.command, env=self.environment, text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self._log_reader = threading.Thread(target=self._collect_log, daemon=True)
        self._log_reader.start()
        watchdog = threading.Timer(START_TIMEOUT_SECONDS, self.process.kill)
        watchdog.start()
        line = self.process.stdout.readline()
        watchdog.cancel()
        threading.Thread(target=self.process.stdout.read, daemon=True).start()  # what providers print
        urls = re.findall(r"https?://[^\s,]+", line)
        if not urls:
            self.process.kill()
            self.process.wait()
            self._log_reader.join(STOP_TIMEOUT_SECONDS)
            raise RuntimeError(f"{' '.join(self.command)} did not start: {line}{self.log()}")
        if urls[-1].endswith("/metrics"):
            self.metrics_url = urls.pop()
        self.url = urls[0]
        self.tls_url = urls[-1] if urls[-1].startswith("https:") else None
        return self

    def __exit__(self, *exception):
        self.stop()

    def stop(self):
        """Asks the agent to end and waits for it; a second call does nothing."""
        if self.process is None or self.process.returncode is not None:
            return
        self.process.send_signal(signal.SIGTERM)
        try:
            status = self.process.wait(STOP_TIMEOUT_SECONDS)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
            raise RuntimeError(f"the agent did not end within {STOP_TIMEOUT_SECONDS} s of SIGTERM: {self.log()}")
        self._log_reader.join(STOP_TIMEOUT_SECONDS)
        self.process.stdout.close()
        self.process.stderr.close()
        if status != 0:
            raise RuntimeError(f"the agent ended with status {status}: {self.log()}")

    @property
    def port(self):
        return int(self.url.rsplit(":", 1)[1])

    @property
    def serving_pid(self):
        """The process that answers clients: the one that was started only watches it, unless told otherwise."""
        pid = self.process.pid
        children = pathlib.Path(f"/proc/{pid}/task/{pid}/children").read_text().split()
        return int(children[0]) if children else pid

    @property
    def tls_port(self):
        return int(self.tls_url.rsplit(":", 1)[1])

    def log(self):
        return "".join(self.log_lines)

    def _collect_log(self):
        for line in self.process.stderr:
            self.log_lines.append(line)
