"""The whole schema compiles, also the classes that nothing registers yet, and holds what clients rely on."""

import pathlib

import pytest
from genclass import checks, model, mof

SCHEMA = pathlib.Path(__file__).resolve().parents[2] / "schema"


@pytest.fixture(scope="module")
def classes():
    reader = mof.MofReader([str(SCHEMA)])
    models = model.build_models(reader, reader.class_names(), checks.check_class, AssertionError)
    return {item.name: item for item in models}


def test_files_are_named_after_their_class(classes):
    for item in classes.values():
        assert item.name.startswith(("CIM_", "VRAX_"))
        assert pathlib.Path(item.compiled.path).stem == item.name


def test_vendor_classes_carry_version_and_description(classes):
    for item in classes.values():
        if item.name.startswith("VRAX_"):
            own = item.compiled.cim.qualifiers
            assert own["Version"].value and own["Description"].value, item.name


@pytest.mark.parametrize("name, default", [
    ("VRAX_CIMXMLCommunicationMechanism.EnabledState", 5),
    ("VRAX_CIMXMLCommunicationMechanism.RequestedState", 12),
    ("VRAX_CIMXMLCommunicationMechanism.EnabledDefault", 2),
    ("VRAX_CIMXMLCommunicationMechanism.CommunicationMechanism", 2),
    ("VRAX_ObjectManager.GatherStatisticalData", True),
    ("CIM_ProtocolEndpoint.EnabledState", None),
    ("CIM_ProtocolEndpoint.RequestedState", 12),
])
def test_defaults_that_instances_start_with(classes, name, default):
    class_name, feature = name.split(".")
    assert classes[class_name].find(feature).item.default == default
