"""Every association class of the repository, walked from both ends in all the ways the protocol has."""

import itertools

import pywbem
import pytest


def association_classes(connection):
    classes = connection.EnumerateClasses(DeepInheritance=True, LocalOnly=False, IncludeQualifiers=True)
    served = {c.classname for c in classes if c.classname.startswith("VRAX_") and "Association" in c.qualifiers}
    assert served, "no association class is served"
    return sorted(served)


def references_of(connection, association):
    declared = connection.GetClass(association, LocalOnly=False)
    return [p.name for p in declared.properties.values() if p.type == "reference"]


def sample(sources, most=6):
    """Some of many, spread evenly, so that large associations do not take minutes to walk."""
    ordered = sorted(sources)
    step = max(1, len(ordered) // most)
    return ordered[::step]


def test_six_ways_of_walking_agree(connection):
    for association in association_classes(connection):
        instances = connection.EnumerateInstances(association)
        paths = connection.EnumerateInstanceNames(association)
        assert [i.path for i in instances] == paths
        near, far = references_of(connection, association)
        for (source_role, result_role), source in itertools.product(
                [(near, far), (far, near)],
                sample({str(i[near]) for i in instances}) + sample({str(i[far]) for i in instances})):
            source_path = pywbem.CIMInstanceName.from_wbem_uri(source)
            matching = [i for i in instances if str(i[source_role]) == source]
            expected = sorted(str(i[result_role]) for i in matching)
            expected_refs = sorted(str(i.path) for i in matching)

            def without_host(path):
                plain = path.copy()
                plain.host = None
                return str(plain)

            names = connection.AssociatorNames(source_path, AssocClass=association, Role=source_role)
            assert sorted(map(without_host, names)) == expected
            full = connection.Associators(source_path, AssocClass=association, ResultRole=result_role)
            assert sorted(without_host(i.path) for i in full) == expected
            reference_names = connection.ReferenceNames(source_path, ResultClass=association, Role=source_role)
            assert sorted(map(without_host, reference_names)) == expected_refs
            references = connection.References(source_path, ResultClass=association, Role=source_role)
            assert sorted(without_host(i.path) for i in references) == expected_refs


@pytest.mark.parametrize("filters, expected", [
    ({}, {"VRAX_FCSwitch", "VRAX_Namespace", "VRAX_CIMXMLCommunicationMechanism"}),
    ({"AssocClass": "CIM_Dependency"}, {"VRAX_FCSwitch", "VRAX_Namespace", "VRAX_CIMXMLCommunicationMechanism"}),
    ({"AssocClass": "CIM_HostedService"}, {"VRAX_FCSwitch"}),
    ({"AssocClass": "cim_namespaceinmanager"}, {"VRAX_Namespace"}),
    ({"ResultClass": "CIM_ServiceAccessPoint"}, {"VRAX_CIMXMLCommunicationMechanism"}),
    ({"ResultClass": "CIM_StatisticalData"}, set()),
    ({"Role": "Dependent"}, {"VRAX_FCSwitch"}),
    ({"Role": "antecedent", "ResultRole": "DEPENDENT"}, {"VRAX_Namespace", "VRAX_CIMXMLCommunicationMechanism"}),
    ({"ResultRole": "Antecedent"}, {"VRAX_FCSwitch"}),
    ({"Role": "Dependent", "ResultRole": "Dependent"}, set()),
])
def test_filters_narrow_what_belongs_to_the_manager(connection, filters, expected):
    [manager] = connection.EnumerateInstanceNames("VRAX_ObjectManager")
    assert {i.classname for i in connection.Associators(manager, **filters)} == expected
    assert {p.classname for p in connection.AssociatorNames(manager, **filters)} == expected


def test_associated_instance_equals_the_fetched_one(connection):
    [manager] = connection.EnumerateInstances("VRAX_ObjectManager")
    for associated in connection.Associators(manager.path):
        assert connection.GetInstance(associated.path).properties == associated.properties
        [back] = connection.Associators(associated.path, ResultClass="CIM_ObjectManager")
        assert back.properties == manager.properties
    [namespace] = connection.Associators(manager.path, ResultClass="CIM_Namespace", PropertyList=["Name"])
    assert namespace["Name"] == "root/interop" and "ClassType" not in namespace.properties


def test_unknown_filter_class_is_an_error_and_unknown_source_is_empty(connection):
    [manager] = connection.EnumerateInstanceNames("VRAX_ObjectManager")
    with pytest.raises(pywbem.CIMError) as error:
        connection.AssociatorNames(manager, AssocClass="CIM_NoSuchClass")
    assert error.value.status_code in (pywbem.CIM_ERR_INVALID_PARAMETER, pywbem.CIM_ERR_INVALID_CLASS)
    stranger = manager.copy()
    stranger.keybindings["Name"] = "FFFFFFFFFFFFFFFF"
    assert connection.AssociatorNames(stranger) == []
