"""What tests of indications share: subscribing, listeners that behave or do not, and a quick hand on the switch."""

import collections
import contextlib
import http.server
import queue
import re
import socket
import threading
import time

import pywbem
from pywbem import _listener

FILTER, LISTENER, SUBSCRIPTION = "CIM_IndicationFilter", "CIM_ListenerDestinationCIMXML", "CIM_IndicationSubscription"
WATCHDOG_SECONDS = 120  # how long something may take that is sure to happen
ANSWER = ('<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="{}" '
          'PROTOCOLVERSION="1.0"><SIMPLEEXPRSP><EXPMETHODRESPONSE NAME="ExportIndication"/></SIMPLEEXPRSP></MESSAGE></CIM>')


def listener(name, url, **properties):
    return pywbem.CIMInstance(LISTENER, {"CreationClassName": LISTENER, "Name": name, "Destination": url, **properties})


def subscription(named_filter, handler, **properties):
    return pywbem.CIMInstance(SUBSCRIPTION, {"Filter": named_filter, "Handler": handler, **properties})


def filter_named(connection, name):
    return next(path for path in connection.EnumerateInstanceNames(FILTER) if path["Name"] == name)


def wait_until(condition):
    """Asks ten times a second."""
    for _ in range(10 * WATCHDOG_SECONDS):
        if condition():
            return
        time.sleep(0.1)
    raise AssertionError("what is waited for did not happen")


class Subscriber:
    """Makes the subscriptions of a test. A listener is made with its first one, named by the path of its URL."""

    def __init__(self, connection):
        self._connection = connection
        self._filters = {path["Name"]: path for path in connection.EnumerateInstanceNames(FILTER)}
        self._listeners = {}

    def __call__(self, url, *filter_names, **properties):
        if url not in self._listeners:
            self._listeners[url] = self._connection.CreateInstance(listener(re.sub(r"\W+", "-", url), url))
        return [self._connection.CreateInstance(subscription(self._filters[name], self._listeners[url], **properties))
                for name in filter_names]


class Hand:
    """Does things to the switch as switchctl does, without a process for each."""

    def __init__(self, path):
        self._path = str(path)

    def __call__(self, command):
        with socket.socket(socket.AF_UNIX) as switch:
            switch.settimeout(WATCHDOG_SECONDS)
            switch.connect(self._path)
            switch.sendall(b"".join(word.encode() + b"\0" for word in command.split()))
            switch.shutdown(socket.SHUT_WR)
            answer = b"".join(iter(lambda: switch.recv(65536), b"")).decode()
        assert answer[:1] == "0", f"{command}: {answer[1:]}"
        return answer[1:]


class Listeners:
    """Any number of listeners at one port; the path of a URL is a listener's name, its first word what it does:
    `keep` takes indications over one connection, `close` takes them and closes the connection after each without
    a word, `error` answers HTTP status 500, `hang` does not answer before the end."""

    def __init__(self):
        self._arrived = collections.defaultdict(queue.Queue)
        self._lock = threading.Lock()
        self._ended = threading.Event()
        listeners = self

        class Handler(http.server.BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"
            disable_nagle_algorithm = True

            def do_POST(self):
                listeners._take(self)

            def log_message(self, *_):
                pass

        self._handler = Handler

    def __enter__(self):
        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), self._handler)
        self._server.daemon_threads = True
        threading.Thread(target=self._server.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *exception):
        self._ended.set()
        self._server.shutdown()
        self._server.server_close()

    def url(self, name):
        return f"http://127.0.0.1:{self._server.server_port}/{name}"

    def next(self, name):
        """What comes next at a listener, which is waited for."""
        try:
            return self._queue(name).get(timeout=WATCHDOG_SECONDS)
        except queue.Empty:
            raise AssertionError(f"nothing came to {name}") from None

    def has(self, name):
        """Whether something waits to be taken by next()."""
        return not self._queue(name).empty()

    def next_ones(self, name, count):
        return [self.next(name) for _ in range(count)]

    def _take(self, request):
        name = request.path.lstrip("/")
        what = name.split("-")[0]
        body = request.rfile.read(int(request.headers["Content-Length"]))
        message_id, method, parameters = _listener.ListenerRequestHandler.parse_export_request(body)
        assert (method, list(parameters)) == ("ExportIndication", ["NewIndication"])
        self._queue(name).put(parameters["NewIndication"])
        if what == "hang":
            self._ended.wait()
        if what in ("error", "hang"):
            request.send_error(500)
            return
        answer = ANSWER.format(message_id).encode()
        request.send_response(200)
        request.send_header("Content-Type", "text/xml")
        request.send_header("Content-Length", str(len(answer)))
        request.end_headers()
        request.wfile.write(answer)
        request.close_connection = what == "close"

    def _queue(self, name):
        with self._lock:
            return self._arrived[name]


@contextlib.contextmanager
def dead_url():
    """Somebody has the port, and listens to nobody."""
    with socket.socket() as taken:
        taken.bind(("127.0.0.1", 0))
        yield f"http://127.0.0.1:{taken.getsockname()[1]}"
