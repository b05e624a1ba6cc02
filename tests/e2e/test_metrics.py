"""The metrics, as the reference parser of the format reads them, beside what a CIM client reads."""

import concurrent.futures
import contextlib
import json
import os
import pathlib
import re
import signal

import pywbem
import pytest
import requests
from prometheus_client.openmetrics.parser import text_string_to_metric_families

from agent_process import CHASSIS_SCENARIO, DEFAULT_SCENARIO, NAMESPACE, ROOT, AgentProcess
from indications import Hand, Listeners, Subscriber, wait_until
from test_log_in import JOE, set_user
from test_tls import make_certificate

METRICS = ["--metrics-port", "0"]
SUFFIXES = {"counter": "_total", "info": "_info"}
CONTENT_TYPE = "application/openmetrics-text; version=1.0.0; charset=utf-8"
ODD_NAME = 'a "quoted\\name" \u00e9 \u20ac, port{x="1"} 2'


def scrape(agent, patience=None):
    headers = {"X-Prometheus-Scrape-Timeout-Seconds": str(patience)} if patience else {}
    answer = requests.get(agent.metrics_url, headers=headers, timeout=60)
    assert (answer.status_code, answer.headers["Content-Type"]) == (200, CONTENT_TYPE)
    families = {family.name: family for family in text_string_to_metric_families(answer.content.decode("utf-8"))}
    for family in families.values():
        assert family.documentation
        identities = [(sample.name, *sorted(sample.labels.items())) for sample in family.samples]
        assert len(identities) == len(set(identities)), family.name
    return families


def connect(agent):
    return pywbem.WBEMConnection(agent.url, default_namespace=NAMESPACE, timeout=60)


def documented():
    """(metric, type, what it is read from) of each row of the tables."""
    text = (ROOT / "docs" / "metrics.md").read_text()
    return re.findall(r"^\| `(\w+)` \| (\w+) \| [^|]+ \|(?: ([^|]+) \|)?$", text, re.M)


def last(text):
    return text.rsplit(":", 1)[-1]


def identity(instance):
    """What tells an instance from others of its class: a World Wide Name, or the number of a part."""
    for key in ("DeviceID", "InstanceID", "Name"):
        if key in instance.path.keybindings:
            return last(instance.path[key]).upper()
    raise AssertionError(instance.path)


def expected(instances, prop, unit):
    """The values of a property by identity, in the unit of the metric."""
    values = {}
    for instance in instances:
        value = instance.get(prop)
        value = value[0] if isinstance(value, list) else value
        if value is None or instance.path.get("SystemCreationClassName") == "VRAX_Fabric":
            continue
        if "UnitModifier" in instance and unit in ("celsius", "volts"):
            value *= 10.0 ** instance["UnitModifier"]
        values[identity(instance)] = value / 1000 if unit == "watts" else value
    return values


def told(family):
    """The same of a family's samples; of a set of states the one that is."""
    values = {}
    for sample in family.samples:
        labels = sample.labels
        who = next(labels[name] for name in ("wwn", "sensor", "supply", "blade") if name in labels)
        if family.type != "stateset":
            values[who.upper()] = sample.value
        elif sample.value:
            values[who.upper()] = labels[family.name]
    return values


@pytest.mark.parametrize("scenario", [DEFAULT_SCENARIO, CHASSIS_SCENARIO])
def test_every_row_of_the_table_is_what_clients_read(build_dir, scenario):
    with AgentProcess(build_dir, scenario, extra_args=[*METRICS, "--log-level", "debug"]) as agent:
        client = connect(agent)
        ports = [port for port in client.EnumerateInstances("VRAX_FCPort") if port["PortNumber"] is not None]
        ports[3]["ElementName"] = ODD_NAME
        client.ModifyInstance(ports[3], PropertyList=["ElementName"])
        switches = {switch["Name"].upper(): switch["ElementName"]
                    for switch in client.EnumerateInstances("VRAX_FCSwitch")}

        def compare():
            families, classes = scrape(agent), {}
            rows = documented()
            assert {(name, kind) for name, kind, _ in rows} == {
                (family.name + SUFFIXES.get(family.type, ""), family.type) for family in families.values()}
            different, empty = [], set()
            for name, kind, origin in rows:
                source = re.match(r"`(VRAX_\w+)\.(\w+)`", origin)
                if not source:
                    continue
                class_name, prop = source.groups()
                if class_name not in classes:
                    classes[class_name] = client.EnumerateInstances(class_name)
                family = families[name.removesuffix(SUFFIXES.get(kind, " "))]
                wanted = expected(classes[class_name], prop, family.unit)
                if told(family) != pytest.approx(wanted):
                    different.append((name, told(family), wanted))
                if not wanted:
                    empty.add(class_name)
            assert empty <= {"VRAX_LogicalIOBlade"}
            return families, different

        different = True
        for _ in range(3):  # a map may be read anew between the two
            families, different = different and compare()
            if not different:
                break
        assert not different, different

        labels = {sample.labels["wwn"]: sample.labels for sample in families["vrax_port"].samples}
        assert set(labels) == {port["PermanentAddress"] for port in ports}
        for port in ports:
            own = labels[port["PermanentAddress"]]
            assert (own["switch"], own["port"], own["port_name"]) == (
                switches[port["SystemName"].upper()], str(port["PortNumber"]),
                ODD_NAME if port is ports[3] else port["ElementName"])
        links = [(link["Antecedent"]["Name"].upper(), link["Dependent"]["Name"].upper())
                 for link in client.EnumerateInstances("VRAX_ActiveConnection")
                 if link["Dependent"]["SystemCreationClassName"] == "VRAX_Fabric"]
        log_ins = families["vrax_port_login"].samples
        assert sorted((s.labels["wwn"], s.labels["device_wwn"]) for s in log_ins) == sorted(links) != []
        counts = {s.labels["wwn"]: s.value for s in families["vrax_port_logins"].samples}
        assert counts == {wwn: sum(port == wwn for port, _ in links) for wwn in labels}


def test_a_scrape_loads_each_class_once_at_most(build_dir):
    with AgentProcess(build_dir, extra_args=[*METRICS, "--log-level", "debug"]) as agent:
        families = scrape(agent)
        read = [sample.labels["class"] for sample in families["cimd_scrape_class_success"].samples if sample.value == 1]
        with concurrent.futures.ThreadPoolExecutor(4) as pool:  # and one after the other, on maps that are fresh
            numbers = pool.map(lambda _: scrape(agent)["cimd_scrapes"].samples[0].value, range(4))
            assert sorted(numbers) == [1, 2, 3, 4]
        agent.stop()
        served = agent.log().split("SIGTERM: stopping")[0]
        loads = re.findall(r"(VRAX_\w+)_Provider:unload\[", served)  # a load begins with it; the end of the agent, too
        assert len(loads) == len(set(loads)) and set(loads) == {*read, "VRAX_ProtocolEndpoint"}


def value(families, sample_name, **labels):
    return sum(sample.value for family in families.values() for sample in family.samples
               if sample.name == sample_name and labels.items() <= sample.labels.items())


def test_counts_what_clients_do_and_never_back(build_dir):
    with AgentProcess(build_dir, extra_args=METRICS) as agent:
        client = connect(agent)
        first = scrape(agent)
        names = client.EnumerateInstanceNames("VRAX_FCPortStatistics")
        for name in names[:5]:
            client.GetInstance(name)
        with pytest.raises(pywbem.CIMError):
            client.DeleteInstance(names[0])
        pulled = client.OpenEnumerateInstances("VRAX_FCPort", MaxObjectCount=1)
        requests.post(agent.url + "/nowhere", timeout=60)
        second = scrape(agent)
        client.CloseEnumeration(pulled.context)
        client.OpenEnumerateInstances("VRAX_FCPort", MaxObjectCount=1, OperationTimeout=1)
        wait_until(lambda: value(scrape(agent), "cimd_enumerations_open") == 0)  # without any other client

        def grown(sample_name, **labels):
            return value(second, sample_name, **labels) - value(first, sample_name, **labels)

        of_get = {"operation": "GetInstance", "class": "VRAX_FCPortStatistics"}
        assert grown("cimd_operation_seconds_count", **of_get) == 5
        assert grown("cimd_operation_seconds_bucket", le="10.0", **of_get) == 5
        assert 0 < grown("cimd_operation_seconds_sum", **of_get) < 5 * 10
        assert grown("cimd_operation_results_total") == len(names) + 5 + 1
        assert grown("cimd_operation_errors_total", operation="DeleteInstance") == grown("cimd_operation_errors_total") == 1
        assert grown("cimd_http_answers_total", code="200") == 1 + 5 + 1 + 1
        assert grown("cimd_http_answers_total", code="404") == 1
        assert (grown("cimd_enumerations_open"), grown("cimd_connections") > 0) == (1, True)
        for family in first.values():
            if family.type in ("counter", "histogram"):
                for sample in family.samples:
                    assert value(second, sample.name, **sample.labels) >= sample.value, sample
        pages = int(pathlib.Path(f"/proc/{agent.serving_pid}/statm").read_text().split()[1])
        assert value(second, "process_resident_memory_bytes") == pytest.approx(pages * os.sysconf("SC_PAGESIZE"), rel=0.5)


def test_counts_indications_and_crashes(build_dir, tmp_path):
    switch = tmp_path / "switch"
    with AgentProcess(build_dir, extra_args=[*METRICS, "--switch-socket", str(switch)]) as agent, Listeners() as listeners:
        subscribe = Subscriber(connect(agent))
        subscribe(listeners.url("keep"), "CQL:Alert:All")
        subscribe(listeners.url("error"), "CQL:Alert:All")
        Hand(switch)("port 3 down")
        listeners.next("keep")
        wait_until(lambda: value(scrape(agent), "cimd_indications_delivered_total") == 1)
        wait_until(lambda: value(scrape(agent), "cimd_indications_lost_total", reason="refused") == 1)
        assert value(scrape(agent), "cimd_indications_queued") == 0

        crashed = agent.serving_pid  # the next process serves metrics on the same port
        os.kill(crashed, signal.SIGSEGV)
        wait_until(lambda: agent.serving_pid not in (crashed, agent.process.pid))
        families = scrape(agent)
        assert (value(families, "cimd_restarts_total"), value(families, "cimd_indications_delivered_total")) == (1, 0)


def test_a_class_that_cannot_be_read_costs_its_own_samples(build_dir, tmp_path):
    registration = tmp_path / "providers.reg"
    entries = (build_dir / "share" / "cimd" / "providers.reg").read_text()
    registration.write_text(re.sub(r"\[VRAX_VoltageSensor\][^\[]*", "", entries))
    with AgentProcess(build_dir, extra_args=[*METRICS, "--registration", str(registration)]) as agent:
        for _ in range(2):
            families = scrape(agent)
            unread = [s.labels["class"] for s in families["cimd_scrape_class_success"].samples if s.value == 0]
            assert unread == ["VRAX_VoltageSensor"]
            assert not families["vrax_voltage_volts"].samples and families["vrax_temperature_celsius"].samples
        agent.stop()
        assert agent.log().count("VRAX_VoltageSensor has no metrics until it can be read: CIM_ERR_NOT_SUPPORTED") == 1


@contextlib.contextmanager
def agent_that_hangs(build_dir, tmp_path, *more):
    """The provider of VRAX_VoltageSensor does not come back as long as the file is there."""
    registration, hangs = tmp_path / "providers.reg", tmp_path / "hangs"
    entries = (build_dir / "share" / "cimd" / "providers.reg").read_text()
    registration.write_text(re.sub(r"(\[VRAX_VoltageSensor\]\s+provider: )\S+(\s+location: )\S+",
                                   r"\1Hanging\2cimd_test_providers", entries))
    hangs.touch()
    with AgentProcess(build_dir, extra_args=[*METRICS, "--registration", str(registration), *more],
                      environment={"CIMD_TEST_HANGS": str(hangs)}) as agent:
        yield agent, hangs


def test_counts_threads_that_hang(build_dir, tmp_path):
    with agent_that_hangs(build_dir, tmp_path, "--max-operation-seconds", "1") as (agent, hangs):
        for count in (1, 2):
            with pytest.raises(pywbem.CIMError):
                connect(agent).EnumerateInstances("VRAX_VoltageSensor")
            assert value(scrape(agent), "cimd_workers_hung") == count
        hangs.unlink()
        wait_until(lambda: value(scrape(agent), "cimd_workers_hung") == 0)


def test_a_class_that_hangs_costs_its_own_samples_until_its_provider_is_back(build_dir, tmp_path):

    def unread(families):
        assert value(families, "cimd_build_info") == 1 and families["vrax_temperature_celsius"].samples
        return [s.labels["class"] for s in families["cimd_scrape_class_success"].samples if s.value == 0]
    with agent_that_hangs(build_dir, tmp_path, "--max-stop-seconds", "1") as (agent, hangs):
        for _ in range(3):
            assert unread(scrape(agent, 3)) == ["VRAX_VoltageSensor"]
        hangs.unlink()
        wait_until(lambda: not unread(scrape(agent)))
        assert agent.log().count("VRAX_VoltageSensor has no metrics until it can be read: "
                                 "CIM_ERR_FAILED: its provider did not come back in time") == 1
        assert agent.log().count("VRAX_VoltageSensor can be read again") == 1

        hangs.touch()
        with concurrent.futures.ThreadPoolExecutor(1) as pool:
            patient = pool.submit(scrape, agent, 60)

            def is_reading():
                agent.process.send_signal(signal.SIGUSR1)
                return "Scrape VRAX_VoltageSensor: 127.0.0.1:" in agent.log()
            wait_until(is_reading)
            answer = requests.get(agent.metrics_url, headers={"X-Prometheus-Scrape-Timeout-Seconds": "1"}, timeout=60)
            assert (answer.status_code, answer.headers["Retry-After"]) == (503, "10")
            hangs.unlink()
            assert not unread(patient.result())

        hangs.touch()
        assert unread(scrape(agent, 1)) == ["VRAX_VoltageSensor"]
        with pytest.raises(RuntimeError, match="(?s)ended with status 1: .*a request did not finish in time.*Scrape VRAX_Volt"):
            agent.stop()


def test_who_may_scrape(build_dir, tmp_path):
    users = tmp_path / "users"
    set_user(build_dir, users, *JOE)
    guarded = ["--password-file", str(users)]
    certificate, key = make_certificate(tmp_path, "switch")
    tls = ["--certificate", str(certificate), "--private-key", str(key), "--tls-port", "0"]

    def status(agent, path="/metrics", method="GET", **more):
        url = agent.metrics_url.replace("0.0.0.0", "127.0.0.1").replace("/metrics", path)
        return requests.request(method, url, timeout=60, **more).status_code

    for arguments, fault in ((["--metrics-listen", "::1"], "--metrics-listen: --metrics-port is needed"),
                             ([*METRICS, "--metrics-listen", "0.0.0.0"], "--metrics-listen: 0.0.0.0 is not for this"),
                             (["--metrics-port", "x"], '--metrics-port: "x" is not a port number')):
        with pytest.raises(RuntimeError, match=fault):
            AgentProcess(build_dir, extra_args=arguments).__enter__()
    with AgentProcess(build_dir, extra_args=[*METRICS, *guarded]) as agent:
        assert status(agent) == 200
        assert [status(agent, path) for path in ("/", "/metrics/", "/cimom", "/metrics?x=1")] == [404, 404, 404, 200]
        assert [status(agent, method=method) for method in ("POST", "HEAD", "PUT", "OPTIONS")] == 4 * [405]
        assert not requests.get(agent.url + "/metrics", timeout=60).ok
    with AgentProcess(build_dir, extra_args=[*METRICS, *guarded, *tls, "--metrics-listen", "0.0.0.0"]) as agent:
        assert agent.metrics_url.startswith("https://")
        credentials = JOE[0], JOE[1].encode()
        assert status(agent, verify=str(certificate)) == 401
        assert status(agent, verify=str(certificate), auth=(JOE[0], "wrong")) == 401
        assert status(agent, verify=str(certificate), auth=credentials) == 200


def test_the_dashboard_asks_for_what_there_is(build_dir):
    dashboard = json.loads((ROOT / "docs" / "grafana-dashboard.json").read_text())
    variables = {variable["name"]: variable for variable in dashboard["templating"]["list"]}
    assert dashboard["uid"] and {"datasource", "agent", "switch", "port"} == set(variables)
    panels = dashboard["panels"]
    assert len({panel["id"] for panel in panels}) == len(panels)
    expressions = [target["expr"] for panel in panels for target in panel.get("targets", ())]
    expressions += [variable["definition"] for variable in variables.values() if variable["type"] == "query"]
    assert {name for expr in expressions for name in re.findall(r"\$\{?(\w+)", expr)} <= {*variables, "__rate_interval"}
    labels = {}  # by the name of a sample
    with AgentProcess(build_dir, extra_args=METRICS) as agent:
        client = connect(agent)
        with pytest.raises(pywbem.CIMError):
            client.GetClass("VRAX_Nope")
        requests.post(agent.url + "/nowhere", timeout=60)
        families = scrape(agent)
    for family in families.values():
        labels[family.name + SUFFIXES.get(family.type, "")] = {"instance"}
        for sample in family.samples:
            labels.setdefault(sample.name, set()).update(sample.labels, {"instance"})
    for expr in expressions:
        assert expr.count("(") == expr.count(")")
        asked = re.findall(r"((?:cimd|vrax|process)_\w+)(?:\{([^}]*)\})?(?![\w=!])", expr)
        assert asked, expr
        for name, filters in asked:
            if name not in variables and not name.startswith("vrax_blade"):
                assert set(re.findall(r"(\w+)[=!]~?", filters)) <= labels[name], expr
