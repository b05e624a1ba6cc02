"""Cost of requests over HTTP: warm enumerations and single reads against a running agent. Usage: bench_http.py <build>.

Requests are made once and sent over one kept connection; the answers are counted, not parsed, so that the figures are
the agent's and not the client's.
"""

import http.client
import pathlib
import subprocess
import sys
import tempfile
import time

import pywbem

from agent_process import NAMESPACE, AgentProcess

PORT_COUNTS = (15, 153, 1536)
ROUNDS = 5
ROUND_SECONDS = 0.5


def message(operation, *parameters):
    namespace = "".join(f'<NAMESPACE NAME="{part}"/>' for part in NAMESPACE.split("/"))
    return ('<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0">'
            f'<MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEREQ><IMETHODCALL NAME="{operation}">'
            f'<LOCALNAMESPACEPATH>{namespace}</LOCALNAMESPACEPATH>{"".join(parameters)}'
            '</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>').encode()


class Client:
    def __init__(self, port):
        self._connection = http.client.HTTPConnection("127.0.0.1", port)

    def post(self, operation, body):
        self._connection.request("POST", "/cimom", body, {
            "Content-Type": 'application/xml; charset="utf-8"', "CIMOperation": "MethodCall",
            "CIMMethod": operation, "CIMObject": NAMESPACE})
        answer = self._connection.getresponse().read()
        if b"<ERROR" in answer:
            raise SystemExit(f"bench: {operation} failed: {answer.decode()}")
        return answer


def seconds_per_call(call):
    best = float("inf")
    for _ in range(ROUNDS):
        calls = 0
        start = time.perf_counter()
        while time.perf_counter() - start < ROUND_SECONDS:
            call()
            calls += 1
        best = min(best, (time.perf_counter() - start) / calls)
    return best


def class_parameter(name):
    return f'<IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="{name}"/></IPARAMVALUE>'


def bench_enumeration(client, ports, previous):
    body = message("EnumerateInstances", class_parameter("VRAX_FCPortStatistics"))
    answer = client.post("EnumerateInstances", body)
    instances = answer.count(b"<VALUE.NAMEDINSTANCE>")
    each = seconds_per_call(lambda: client.post("EnumerateInstances", body)) / ports * 1e6
    ratio = f"{each / previous:7.2f}" if previous else " " * 7
    remark = f"{len(answer) / ports:.0f} bytes each" if instances == ports else f"INCOMPLETE: {instances}"
    print(f"  {ports:>10}  {each:>14.3f}  {ratio}  {remark}", flush=True)
    return each


def bench_get_instance(agent, client):
    connection = pywbem.WBEMConnection(agent.url, default_namespace=NAMESPACE)
    path = connection.EnumerateInstanceNames("VRAX_FCPortStatistics")[-1]
    path.namespace = path.host = None
    body = message("GetInstance", f'<IPARAMVALUE NAME="InstanceName">{path.tocimxmlstr()}</IPARAMVALUE>')
    return 1 / seconds_per_call(lambda: client.post("GetInstance", body))


def main():
    build = pathlib.Path(sys.argv[1])
    print("\nWarm enumeration over HTTP: VRAX_FCPortStatistics\n       ports         us each    ratio")
    rates = []
    each = None
    with tempfile.TemporaryDirectory() as directory:
        for ports in PORT_COUNTS:
            scenario = pathlib.Path(directory) / f"{ports}.json"
            subprocess.run([build / "bin" / "simgen", "--domains", "1", "--local-ports", str(ports), "--nodes", "0", scenario],
                           check=True, stdout=subprocess.DEVNULL)
            with AgentProcess(build, scenario=scenario) as agent:
                client = Client(agent.port)
                each = bench_enumeration(client, ports, each)
                rates.append((ports, bench_get_instance(agent, client)))
    print("\nGetInstance over HTTP, one client on a kept connection\n       ports      per second")
    for ports, rate in rates:
        print(f"  {ports:>10}  {rate:>14.0f}")


if __name__ == "__main__":
    main()
