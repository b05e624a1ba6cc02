"""cimd on the test providers, as a process that a test starts and asks."""

import contextlib
import http.client
import os
import signal
import socket
import subprocess
import threading

from test_wire import STORE

TIMEOUT_SECONDS = 300
START = ["--config", "", "--port", "0", *STORE]
MESSAGE = ("<CIM CIMVERSION='2.0' DTDVERSION='2.0'><MESSAGE ID='1' PROTOCOLVERSION='1.0'><SIMPLEREQ>"
           "<IMETHODCALL NAME='{0}'><LOCALNAMESPACEPATH><NAMESPACE NAME='root'/><NAMESPACE NAME='test'/>"
           "</LOCALNAMESPACEPATH>{1}</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>")
PARAMETER = "<IPARAMVALUE NAME='{}'>{}</IPARAMVALUE>"
NAME = ("<INSTANCENAME CLASSNAME='{}'><KEYBINDING NAME='Mode'><KEYVALUE>{}</KEYVALUE></KEYBINDING>"
        "</INSTANCENAME>")
COUNT = ("<VALUE.NAMEDINSTANCE>" + NAME.format("Test_Wild", "good") + "<INSTANCE CLASSNAME='Test_Wild'>"
         "<PROPERTY NAME='Count' TYPE='uint32'><VALUE>{}</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>")
PEER = r"127\.0\.0\.1:\d+"


class Cimd:
    """A started cimd whose output and error come through one pipe; killed at the end of the scope."""

    def __init__(self, build_dir, *options):
        words = [build_dir / "bin" / "cimd", *options]
        # Crashes are part of the tests: a sanitizer must let them happen.
        names = ["ASAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"]
        bare = {name: os.environ.get(name, "") + ":handle_segv=0:handle_abort=0" for name in names}
        self.process = subprocess.Popen(
            [str(word) for word in words], env={**os.environ, **bare}, text=True, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT)
        self.watchdog = threading.Timer(TIMEOUT_SECONDS, self.process.kill)
        self.watchdog.start()

    def __enter__(self):
        with contextlib.ExitStack() as undone:
            undone.push(self)
            self.skipped = []  # what was said before
            self.port = int(self.read_until("listening on http://127.0.0.1:", self.skipped).rsplit(":", 1)[1])
            undone.pop_all()
        return self

    def __exit__(self, *exception):
        self.watchdog.cancel()
        self.process.kill()
        self.process.wait()
        self.process.stdout.close()

    def read_line(self):
        return self.process.stdout.readline().rstrip("\n")

    def read_until(self, text, skipped=None):
        """The next line that holds the text."""
        skipped = [] if skipped is None else skipped
        for line in self.process.stdout:
            if text in line:
                return line.rstrip("\n")
            skipped.append(line)
        raise AssertionError(f"cimd did not say {text!r} but: {''.join(skipped)}")

    def stop(self, *signals):
        for number in signals or [signal.SIGTERM]:
            self.process.send_signal(number)
        return self.process.wait()

    def send(self, method, parameters, headers=()):
        """A connection on which a request was sent."""
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=TIMEOUT_SECONDS)
        named = {"Content-Type": "application/xml", "CIMOperation": "MethodCall", "CIMMethod": method,
                 "CIMObject": "root%2Ftest", **dict(headers)}
        connection.request("POST", "/cimom", MESSAGE.format(method, parameters), named)
        return connection

    def send_get(self, mode, class_name="Test_Wild"):
        return self.send("GetInstance", PARAMETER.format("InstanceName", NAME.format(class_name, mode)))

    def ask(self, mode, class_name="Test_Wild"):
        return answer(self.send_get(mode, class_name))

    def leave_waiting(self):
        """A request that is still being answered when this returns."""
        connection = self.send_get("waits")
        assert is_instance(self.ask("sees one wait"))
        return connection

    def is_listening(self):
        with contextlib.suppress(OSError), socket.create_connection(("127.0.0.1", self.port), TIMEOUT_SECONDS):
            return True
        return False


def answer(connection):
    """The body of the answer; empty when the connection ends without one."""
    with contextlib.closing(connection), contextlib.suppress(ConnectionError):
        return connection.getresponse().read().decode()
    return ""


def is_instance(text):
    return "<INSTANCE CLASSNAME=" in text
