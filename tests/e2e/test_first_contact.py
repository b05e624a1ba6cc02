"""What a management client does first: find the namespace, the object manager, and learn from well-chosen errors."""

import socket
from urllib.parse import urlsplit

import pywbem
import pytest


def status_of(call, *args, **kwargs):
    with pytest.raises(pywbem.CIMError) as error:
        call(*args, **kwargs)
    assert error.value.status_description, "an error must say what was wrong"
    return error.value.status_code


@pytest.mark.parametrize("namespace", ["interop", "root/PG_Interop", "root/cimv2", ""])
def test_namespace_that_is_not_there_answers_3(agent, namespace):
    elsewhere = pywbem.WBEMConnection(agent.url, default_namespace=namespace or "root/nowhere")
    assert status_of(elsewhere.EnumerateInstanceNames, "CIM_Namespace") == pywbem.CIM_ERR_INVALID_NAMESPACE


def test_interop_namespace_names_itself(connection):
    assert [ns["Name"] for ns in connection.EnumerateInstances("CIM_Namespace")] == ["root/interop"]
    server = pywbem.WBEMServer(connection)
    assert server.interop_ns == "root/interop"
    assert server.namespaces == ["root/interop"]


@pytest.mark.parametrize("class_name", ["CIM_WBEMServerNamespace", "__Namespace", "CIM_RegisteredProfileX"])
def test_unknown_class_answers_5(connection, class_name):
    assert status_of(connection.EnumerateInstances, class_name) == pywbem.CIM_ERR_INVALID_CLASS
    assert status_of(connection.GetClass, class_name) == pywbem.CIM_ERR_INVALID_CLASS


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


def manager_path(connection):
    [path] = connection.EnumerateInstanceNames("VRAX_ObjectManager")
    return path


def elsewhere(path):
    """An association's path whose ends are in a namespace that is not there."""
    path.keybindings["Dependent"].namespace = "root/elsewhere"
    return path


def changed_key(path, name, value):
    other = path.copy()
    other.keybindings[name] = value
    return other


@pytest.mark.parametrize("mistake, expected", [
    (lambda c: c.GetInstance(changed_key(manager_path(c), "Name", "0000000000000000")), pywbem.CIM_ERR_NOT_FOUND),
    (lambda c: c.GetInstance(changed_key(manager_path(c), "Wrong", "x")), pywbem.CIM_ERR_INVALID_PARAMETER),
    (lambda c: c.GetInstance(pywbem.CIMInstanceName("VRAX_ObjectManager", {"Name": "x"}, namespace="root/interop")),
     pywbem.CIM_ERR_INVALID_PARAMETER),
    (lambda c: c.GetInstance(elsewhere(c.EnumerateInstanceNames("VRAX_NamespaceInManager")[0])),
     pywbem.CIM_ERR_NOT_FOUND),
    (lambda c: c.CreateInstance(pywbem.CIMInstance("VRAX_Namespace", {"Name": "root/other"})),
     pywbem.CIM_ERR_NOT_SUPPORTED),
    (lambda c: c.DeleteInstance(manager_path(c)), pywbem.CIM_ERR_NOT_SUPPORTED),
    (lambda c: c.ModifyInstance(c.GetInstance(manager_path(c))), pywbem.CIM_ERR_NOT_SUPPORTED),
    (lambda c: c.InvokeMethod("StartService", manager_path(c)), pywbem.CIM_ERR_NOT_SUPPORTED),
    (lambda c: c.InvokeMethod("startservice", manager_path(c)), pywbem.CIM_ERR_NOT_SUPPORTED),
    (lambda c: c.InvokeMethod("GetCentralInstances", manager_path(c)), pywbem.CIM_ERR_METHOD_NOT_FOUND),
    (lambda c: c.ExecQuery("WQL", "select * from VRAX_ObjectManager"), pywbem.CIM_ERR_NOT_SUPPORTED),
    (lambda c: c.OpenQueryInstances("WQL", "select * from VRAX_ObjectManager"), pywbem.CIM_ERR_NOT_SUPPORTED),
])
def test_mistakes_have_their_status(connection, mistake, expected):
    assert status_of(mistake, connection) == expected
    assert connection.last_server_response_time > 0


def test_classes_are_described(connection):
    statistics = connection.GetClass("VRAX_FCPortStatistics", LocalOnly=False, IncludeQualifiers=True)
    assert statistics.superclass == "CIM_FCPortStatistics"
    assert statistics.properties["InstanceID"].qualifiers["Key"].value is True
    assert "ResetSelectedStats" in statistics.methods
    names = connection.EnumerateClassNames(DeepInheritance=True)
    assert {"CIM_ManagedElement", "VRAX_NamespaceInManager", "VRAX_FCPortStatistics"} <= set(names)
    derived = connection.EnumerateClasses(ClassName="CIM_StatisticalData", DeepInheritance=True)
    assert {c.classname for c in derived} >= {"VRAX_FCPortStatistics", "VRAX_FCPortRateStatistics"}


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
