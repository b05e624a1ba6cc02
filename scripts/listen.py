#!/usr/bin/env python3
"""Subscribes to a switch's indications and prints each as a line, until Ctrl-C.

Time, class, and what it tells: an alert's MessageID and Message, or the element with its OperationalStatus.
What was made for it on the switch is deleted at the end.
"""

import argparse
import os
import signal
import socket
import sys
import threading

import pywbem

from agent_process import NAMESPACE

FILTER, LISTENER, SUBSCRIPTION = "CIM_IndicationFilter", "CIM_ListenerDestinationCIMXML", "CIM_IndicationSubscription"
DEFAULT_FILTERS = ["CQL:Alert:All", *(f"CQL:{what}:{element}" for what in ("Create", "Delete", "Modify")
                                      for element in ("ComputerSystem", "FCPort"))]


def line_of(indication):
    if indication.classname == "CIM_AlertIndication":
        told = f'{indication["MessageID"]}: {indication["Message"]}'
    else:
        element = indication["SourceInstance"]
        told = element.get("DeviceID") or element["Name"]
        if element.get("OperationalStatus"):
            told += " OperationalStatus " + ", ".join(str(int(value)) for value in element["OperationalStatus"])
    return f'{indication["IndicationTime"].datetime:%H:%M:%S.%f} {indication.classname} {told}'


def subscribe(connection, url, filters, made):
    """Appends to `made` the paths of what it makes, as soon as it is there."""
    known = {path["Name"]: path for path in connection.EnumerateInstanceNames(FILTER)}
    unknown = [name for name in filters if name not in known]
    if unknown:
        raise ValueError(f"there is no filter {unknown[0]}; the switch has {', '.join(known)}")
    # Transient: should this program be killed, the switch forgets it once it does not answer.
    made.append(connection.CreateInstance(pywbem.CIMInstance(LISTENER, {
        "CreationClassName": LISTENER, "Name": f"listen.py:{socket.gethostname()}:{os.getpid()}",
        "Destination": url, "PersistenceType": pywbem.Uint16(3)})))
    for name in filters:
        made.append(connection.CreateInstance(
            pywbem.CIMInstance(SUBSCRIPTION, {"Filter": known[name], "Handler": made[0]})))


def unsubscribe(connection, made):
    for path in reversed(made):
        connection.DeleteInstance(path)


def free_port(host):
    with socket.create_server((host, 0)) as found:
        return found.getsockname()[1]


def main():
    usage = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    usage.add_argument("agent", nargs="?", default="http://127.0.0.1:5988", help="default: %(default)s")
    usage.add_argument("--filter", action="append", metavar="NAME",
                       help="instead of all alerts, and what comes, goes and changes; may be repeated")
    usage.add_argument("--host", default="127.0.0.1",
                       help="where to listen, a name or address at which the agent reaches this machine; default: %(default)s")
    usage.add_argument("--port", type=int, default=0, help="default: a free one")
    usage.add_argument("--user", metavar="NAME:PASSWORD", help="to log in to the agent")
    wanted = usage.parse_args()

    connection = pywbem.WBEMConnection(wanted.agent, wanted.user and tuple(wanted.user.split(":", 1)),
                                       default_namespace=NAMESPACE, timeout=60)
    interrupted = threading.Event()
    for number in (signal.SIGINT, signal.SIGTERM):
        signal.signal(number, lambda *_: interrupted.set())
    made = []
    try:
        port = wanted.port or free_port(wanted.host)
        listener = pywbem.WBEMListener(wanted.host, http_port=port)
        listener.add_callback(lambda indication, host: print(line_of(indication), flush=True))
        listener.start()
        try:
            subscribe(connection, f"http://{wanted.host}:{port}", wanted.filter or DEFAULT_FILTERS, made)
            print(f"Listening at http://{wanted.host}:{port}; Ctrl-C ends it", flush=True)
            interrupted.wait()
        finally:
            unsubscribe(connection, made)
            listener.stop()
    except (pywbem.Error, pywbem.ListenerError, OSError, ValueError) as error:
        sys.exit(f"listen.py: {wanted.agent}: {error}")


if __name__ == "__main__":
    main()
