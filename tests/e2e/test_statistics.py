"""Port statistics as a client reads them: complete, consistent with each other, served from the map once loaded."""

import json

import pytest

from agent_process import DEFAULT_SCENARIO, AgentProcess
from freshness import agree


@pytest.fixture(scope="module")
def scenario():
    return json.loads(DEFAULT_SCENARIO.read_text())


def test_second_request_is_answered_from_the_map(connection):
    def enumerate_statistics():
        return connection.EnumerateInstances("VRAX_FCPortStatistics")
    assert agree(enumerate_statistics, enumerate_statistics)


def test_get_equals_enumerate_and_honours_the_property_list(connection):
    def first_three():
        return connection.EnumerateInstances("VRAX_FCPortRateStatistics")[:3]

    def rates_of(instances):
        return [(i["RxRate"], i["TxRate"]) for i in instances]
    paths = [rate.path for rate in first_three()]
    assert agree(first_three, lambda: [connection.GetInstance(path) for path in paths])
    listed = ["rxrate", "TxRate", "NoSuchProperty"]
    some = [connection.GetInstance(path, PropertyList=listed) for path in paths]
    for rate in some:
        assert {"RxRate", "TxRate"} <= set(rate.properties)
        assert "RxFrameRate" not in rate.properties
    assert agree(lambda: rates_of(first_three()),
                 lambda: rates_of(connection.GetInstance(path, PropertyList=listed) for path in paths))


def test_local_only_hides_nothing(connection):
    def everything(local_only):
        return connection.EnumerateInstances("CIM_FCPortStatistics", DeepInheritance=True, LocalOnly=local_only)
    assert agree(lambda: everything(False), lambda: everything(True))


def test_shallow_inheritance_answers_the_properties_of_the_named_class(connection):
    for instance in connection.EnumerateInstances("CIM_StatisticalData", DeepInheritance=False):
        assert instance.classname.startswith("VRAX_FCPort")
        assert "BytesReceived" not in instance.properties
        assert instance["InstanceID"] == instance.path["InstanceID"]


def test_a_scenario_with_a_mistake_stops_the_start(build_dir, tmp_path, scenario):
    broken = tmp_path / "broken.json"
    broken.write_text(json.dumps({**scenario, "colour": "green"}))
    with pytest.raises(RuntimeError) as error:
        AgentProcess(build_dir, scenario=broken).__enter__()
    assert "broken.json" in str(error.value) and "colour" in str(error.value)
