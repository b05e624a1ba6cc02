"""What a management client does first: find the namespace, the object manager and what is behind it."""

import http.client
import re
import socket
from urllib.parse import urlsplit

import pytest
import pywbem


def test_interop_namespace_names_itself(connection):
    assert [ns["Name"] for ns in connection.EnumerateInstances("CIM_Namespace")] == ["root/interop"]
    server = pywbem.WBEMServer(connection)
    assert server.interop_ns == "root/interop"
    assert server.namespaces == ["root/interop"]


def test_one_object_manager_equal_however_read(connection):
    [enumerated] = connection.EnumerateInstances("CIM_ObjectManager")
    fetched = connection.GetInstance(enumerated.path)
    assert fetched == enumerated
    assert connection.EnumerateInstanceNames("CIM_ObjectManager") == [enumerated.path]
    assert enumerated["SystemName"] == enumerated["Name"]
    assert enumerated.classname == "VRAX_ObjectManager"


def test_superclasses_reach_every_subclass(connection):
    statistics = connection.EnumerateInstanceNames("CIM_StatisticalData")
    assert {path.classname for path in statistics} == {"VRAX_FCPortStatistics", "VRAX_FCPortRateStatistics"}
    elements = {path.classname for path in connection.EnumerateInstanceNames("CIM_ManagedElement")}
    assert elements >= {"VRAX_ObjectManager", "VRAX_Namespace", "VRAX_CIMXMLCommunicationMechanism",
                        "VRAX_StatisticsCollection", "VRAX_FCPortStatistics", "VRAX_FCPortRateStatistics"}


def test_a_key_in_a_namespace_that_is_not_there_answers_6(connection):
    path = connection.EnumerateInstanceNames("VRAX_NamespaceInManager")[0]
    path.keybindings["Dependent"].namespace = "root/elsewhere"
    with pytest.raises(pywbem.CIMError) as error:
        connection.GetInstance(path)
    assert error.value.status_code == pywbem.CIM_ERR_NOT_FOUND
    assert connection.last_server_response_time > 0


def test_answers_say_who_made_them(agent):
    address = urlsplit(agent.url)
    client = http.client.HTTPConnection(address.hostname, address.port, timeout=60)
    client.request("OPTIONS", "/cimom")
    assert re.fullmatch(r"cimd/\d+\.\d+(\.\d+)?", client.getresponse().getheader("Server"))
    client.close()


def test_client_that_names_no_host_is_answered_with_paths_of_localhost(agent):
    body = (b'<?xml version="1.0"?><CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" PROTOCOLVERSION="1.0">'
            b'<SIMPLEREQ><IMETHODCALL NAME="OpenEnumerateInstancePaths"><LOCALNAMESPACEPATH><NAMESPACE NAME="root"/>'
            b'<NAMESPACE NAME="interop"/></LOCALNAMESPACEPATH><IPARAMVALUE NAME="ClassName"><CLASSNAME '
            b'NAME="CIM_ObjectManager"/></IPARAMVALUE><IPARAMVALUE NAME="MaxObjectCount"><VALUE>9</VALUE>'
            b'</IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>')
    head = ("POST /cimom HTTP/1.0\r\nContent-Type: application/xml\r\nCIMOperation: MethodCall\r\n"
            "CIMMethod: OpenEnumerateInstancePaths\r\nCIMObject: root/interop\r\n"
            f"Content-Length: {len(body)}\r\n\r\n").encode()
    address = urlsplit(agent.url)
    with socket.create_connection((address.hostname, address.port), timeout=60) as client:
        client.sendall(head + body)
        with client.makefile("rb") as answer:
            text = answer.read().decode()
    assert "<HOST>localhost</HOST>" in text
