"""TLS as clients of different ages, and plain mistakes, meet it."""

import os
import re
import signal
import socket
import ssl
import subprocess
import time

import pytest
import pywbem

from agent_process import DEFAULT_SCENARIO, NAMESPACE, AgentProcess

NO_LIMIT = "DEFAULT:@SECLEVEL=0"


def make_certificate(directory, name, *more):
    certificate, key = directory / f"{name}.pem", directory / f"{name}.key"
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj", "/CN=switch",
                    "-addext", "subjectAltName=IP:127.0.0.1", "-keyout", str(key), "-out", str(certificate), *more],
                   check=True, capture_output=True)
    key.chmod(0o600)
    return certificate, key


@pytest.fixture(scope="module")
def files(tmp_path_factory):
    directory = tmp_path_factory.mktemp("tls")
    make_certificate(directory, "switch")
    make_certificate(directory, "other")
    return directory


class TlsAgent(AgentProcess):
    def __init__(self, build_dir, files, *more):
        super().__init__(build_dir, extra_args=[
            "--certificate", str(files / "switch.pem"), "--private-key", str(files / "switch.key"),
            "--tls-port", "0", "--log-level", "debug", *more])


@pytest.fixture(scope="module")
def agent(build_dir, files):
    with TlsAgent(build_dir, files) as running:
        yield running


def context(files, version=None, authority="switch"):
    made = ssl.create_default_context(cafile=str(files / f"{authority}.pem"))
    if version is not None:
        made.set_ciphers(NO_LIMIT)
        made.minimum_version = made.maximum_version = version
    return made


def rsa_key_exchange(files):
    """A client without forward secrecy."""
    made = context(files, ssl.TLSVersion.TLSv1_2)
    made.set_ciphers("AES128-SHA256:@SECLEVEL=0")
    return made


def say_hello(agent, made):
    """The TLS version that was agreed on, what the server answers to OPTIONS, and whether a client that comes back is
    spared the whole handshake."""
    session = None
    for _ in range(2):
        with socket.create_connection(("127.0.0.1", agent.tls_port), timeout=60) as plain:
            with made.wrap_socket(plain, server_hostname="127.0.0.1", session=session) as connection:
                connection.sendall(b"OPTIONS /cimom HTTP/1.1\r\nHost: switch\r\nConnection: close\r\n\r\n")
                answer = connection.version(), connection.recv(100).split(b"\r\n")[0], connection.session_reused
                session = connection.session
    return answer


def test_serves_clients_on_both_ports(agent, files, monkeypatch):
    for variable in ("REQUESTS_CA_BUNDLE", "CURL_CA_BUNDLE"):  # they would win over ca_certs
        monkeypatch.delenv(variable, raising=False)
    for url, verification in ((agent.url, None), (agent.tls_url, str(files / "switch.pem"))):
        connection = pywbem.WBEMConnection(url, default_namespace=NAMESPACE, ca_certs=verification, timeout=60)
        assert len(connection.EnumerateInstances("CIM_ObjectManager")) == 1
        assert len(connection.EnumerateInstances("VRAX_FCPort")) > 10


@pytest.mark.filterwarnings("ignore::DeprecationWarning")
def test_speaks_tls_1_2_and_up(agent, files):
    for version, name in ((ssl.TLSVersion.TLSv1_2, "TLSv1.2"), (ssl.TLSVersion.TLSv1_3, "TLSv1.3")):
        assert say_hello(agent, context(files, version)) == (name, b"HTTP/1.1 200 OK", True)
    for version in (ssl.TLSVersion.TLSv1, ssl.TLSVersion.TLSv1_1):
        with pytest.raises((ssl.SSLError, ConnectionError)):
            say_hello(agent, context(files, version))
    with pytest.raises((ssl.SSLError, ConnectionError)):
        say_hello(agent, rsa_key_exchange(files))


@pytest.mark.filterwarnings("ignore::DeprecationWarning")
def test_sends_head_and_first_chunk_in_one_record(agent, files):
    made = context(files, ssl.TLSVersion.TLSv1_2)  # which has nothing of its own to send after the handshake
    received, to_send = ssl.MemoryBIO(), ssl.MemoryBIO()
    session = made.wrap_bio(received, to_send, server_hostname="127.0.0.1")
    with socket.create_connection(("127.0.0.1", agent.tls_port), timeout=60) as connection:
        def reads(step, *words):
            while True:
                try:
                    return step(*words)
                except ssl.SSLWantReadError:
                    connection.sendall(to_send.read())
                    received.write(connection.recv(100_000))
        reads(session.do_handshake)
        connection.sendall(to_send.read())
        body = (b'<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEREQ>'
                b'<IMETHODCALL NAME="EnumerateInstances"><LOCALNAMESPACEPATH>'
                + b"".join(b'<NAMESPACE NAME="%s"/>' % part.encode() for part in NAMESPACE.split("/")) +
                b'</LOCALNAMESPACEPATH><IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="VRAX_FCPort"/></IPARAMVALUE>'
                b'</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>')
        session.write(b"POST /cimom HTTP/1.1\r\nHost: switch\r\nContent-Type: application/xml\r\n"
                      b"CIMOperation: MethodCall\r\nCIMMethod: EnumerateInstances\r\nCIMObject: %s\r\nContent-Length: %d\r\n\r\n%s"
                      % (NAMESPACE.replace("/", "%2F").encode(), len(body), body))
        head, body = reads(session.read, 100_000).split(b"\r\n\r\n", 1)
        assert head.startswith(b"HTTP/1.1 200") and b"Transfer-Encoding: chunked" in head
        assert body, "nothing came with the head"


@pytest.mark.filterwarnings("ignore::DeprecationWarning")
def test_logs_why_there_is_no_connection(build_dir, files):
    with TlsAgent(build_dir, files, "--no-http", "--log-level", "info") as agent:
        assert agent.url.startswith("https://")
        with pytest.raises((ssl.SSLError, ConnectionError)):
            say_hello(agent, context(files, ssl.TLSVersion.TLSv1_1))
        with pytest.raises((ssl.SSLError, ConnectionError)):
            say_hello(agent, rsa_key_exchange(files))
        for version in (ssl.TLSVersion.TLSv1_2, ssl.TLSVersion.TLSv1_3):
            with pytest.raises(ssl.SSLCertVerificationError):
                say_hello(agent, context(files, version, authority="other"))
        with socket.create_connection(("127.0.0.1", agent.tls_port), timeout=60) as plain:
            plain.sendall(b"POST /cimom HTTP/1.1\r\nHost: switch\r\n\r\n")
            while plain.recv(1000):  # an alert, then the end
                pass
        with socket.create_connection(("127.0.0.1", agent.tls_port), timeout=60):
            pass
        assert say_hello(agent, context(files))[1] == b"HTTP/1.1 200 OK"
        agent.stop()
        log = agent.log()
    for reason in ("the client knows nothing newer than TLS 1.1, TLS 1.2 is needed",
                   "there is no cipher that suits both sides",
                   "the client refused: CA is unknown",
                   "the client left, perhaps because it does not trust the certificate",
                   "what the client sent is not TLS"):
        assert re.search(rf"warning tls: 127\.0\.0\.1:\d+: no TLS connection: {reason}", log), log
    assert "info tls: " in log and "no TLS connection: the client sent nothing" in log
    assert log.count("warning") == 5, log


def test_a_client_may_take_its_time_after_the_handshake(build_dir, files):
    options = b"OPTIONS /cimom HTTP/1.1\r\nHost: switch\r\n\r\n"
    with TlsAgent(build_dir, files, "--max-request-seconds", "1") as agent:
        with socket.create_connection(("127.0.0.1", agent.tls_port), timeout=60) as below, \
                context(files).wrap_socket(below, server_hostname="127.0.0.1") as waiting:
            # Time is up for a request that was begun after the handshake, so it would be for that, too.
            with socket.create_connection(("127.0.0.1", agent.port), timeout=60) as other:
                other.sendall(options[:10])
                assert other.recv(100).startswith(b"HTTP/1.1 408")
            waiting.sendall(options)
            assert waiting.recv(10_000).startswith(b"HTTP/1.1 200")
            waiting.sendall(options[:10])
            assert waiting.recv(100).startswith(b"HTTP/1.1 408")


def test_an_idle_connection_ends_in_order(build_dir, files):
    with TlsAgent(build_dir, files, "--max-idle-seconds", "1") as agent:
        with socket.create_connection(("127.0.0.1", agent.tls_port), timeout=60) as below, \
                context(files).wrap_socket(below, server_hostname="127.0.0.1", suppress_ragged_eofs=False) as idle:
            idle.sendall(b"OPTIONS /cimom HTTP/1.1\r\nHost: switch\r\n\r\n")
            assert idle.recv(10_000).startswith(b"HTTP/1.1 200")
            assert idle.recv(100) == b"", "an SSLEOFError says that the end may be somebody else's"


def test_a_handshake_has_its_time(build_dir, files):
    with TlsAgent(build_dir, files, "--max-handshake-seconds", "1") as agent:
        with socket.create_connection(("127.0.0.1", agent.tls_port), timeout=60) as held:
            held.sendall(b"\x16\x03\x01\x01\x00")
            assert held.recv(100) == b""
        agent.stop()
        assert re.search(r"warning tls: 127\.0\.0\.1:\d+: no TLS connection: the client took too long", agent.log())


def start(build_dir, *words):
    program = [f"{build_dir}/bin/cimd", "--config", "", "--port", "0", "--scenario", str(DEFAULT_SCENARIO),
               *map(str, words)]
    return subprocess.run(program, capture_output=True, text=True, timeout=60)


def test_says_why_it_does_not_start(build_dir, files, tmp_path):
    certificate, key, other = files / "switch.pem", files / "switch.key", files / "other.key"
    public = tmp_path / "public.key"
    public.write_text(key.read_text())
    public.chmod(0o644)
    locked = tmp_path / "locked.key"
    subprocess.run(["openssl", "rsa", "-aes256", "-passout", "pass:x", "-in", str(key), "-out", str(locked)],
                   check=True, capture_output=True)
    none = tmp_path / "none"
    rows = [
        (["--certificate", none, "--private-key", key], f"--certificate: {none}: cannot open: No such file"),
        (["--certificate", key, "--private-key", key], f"--certificate: {key}: holds no certificate in PEM form"),
        (["--certificate", certificate, "--private-key", none], f"--private-key: {none}: cannot open: No such file"),
        (["--certificate", certificate, "--private-key", tmp_path], f"--private-key: {tmp_path}: is not a file"),
        (["--certificate", certificate, "--private-key", certificate], "--private-key: .*: others may read it"),
        (["--certificate", certificate, "--private-key", public], f"--private-key: {public}: others may read it"),
        (["--certificate", certificate, "--private-key", locked], "--private-key: .*: holds no unencrypted private key"),
        (["--certificate", certificate, "--private-key", other], f"--private-key: {other}: is not the key of the cert"),
        (["--certificate", certificate], "--certificate: --private-key is needed, too"),
        (["--private-key", key], "--private-key: --certificate is needed, too"),
        (["--no-http"], "--no-http: --certificate and --private-key are needed"),
        (["--tls-port", "5989"], "--tls-port: --certificate and --private-key are needed, too"),
        (["--tls-port", "x"], '--tls-port: "x" is not a port number'),
    ]
    for words, complaint in rows:
        done = start(build_dir, *words)
        assert done.returncode == 2 and re.match("cimd: " + complaint, done.stderr), (words, done.stderr)


def test_a_renewed_certificate_counts_after_sighup(build_dir, files, tmp_path):
    def put(name):
        for suffix in ("pem", "key"):
            (tmp_path / f"switch.{suffix}").write_text((files / f"{name}.{suffix}").read_text() if name else "")
        (tmp_path / "switch.key").chmod(0o600)

    def reload(agent, said):
        before = agent.log().count(said)
        agent.process.send_signal(signal.SIGHUP)
        deadline = time.monotonic() + 60
        while agent.log().count(said) == before:
            assert time.monotonic() < deadline, agent.log()
            time.sleep(0.01)

    put("switch")
    with TlsAgent(build_dir, tmp_path) as agent:
        with socket.create_connection(("127.0.0.1", agent.tls_port), timeout=60) as below, \
                context(files).wrap_socket(below, server_hostname="127.0.0.1") as kept:
            put(None)
            reload(agent, "certificate and key stay as they were")
            assert say_hello(agent, context(files))[1] == b"HTTP/1.1 200 OK"
            put("other")
            reload(agent, "certificate and key were read again")
            assert say_hello(agent, context(files, authority="other"))[1] == b"HTTP/1.1 200 OK"
            with pytest.raises(ssl.SSLCertVerificationError):
                say_hello(agent, context(files))
            kept.sendall(b"OPTIONS /cimom HTTP/1.1\r\nHost: switch\r\n\r\n")
            assert kept.recv(100).startswith(b"HTTP/1.1 200 OK"), "who was there before is not disturbed"
        put(None)
        os.kill(agent.serving_pid, signal.SIGKILL)
        assert say_hello(agent, context(files, authority="other"))[1] == b"HTTP/1.1 200 OK"


def test_warns_of_an_expired_certificate(build_dir, files, tmp_path):
    expired = tmp_path / "expired.pem"
    request = subprocess.run(["openssl", "req", "-new", "-key", str(files / "switch.key"), "-subj", "/CN=switch"],
                             check=True, capture_output=True).stdout
    subprocess.run(["openssl", "x509", "-req", "-signkey", str(files / "switch.key"), "-days", "-1",
                    "-out", str(expired)], input=request, check=True, capture_output=True)
    with AgentProcess(build_dir, extra_args=["--certificate", str(expired), "--tls-port", "0",
                                             "--private-key", str(files / "switch.key")]) as agent:
        agent.stop()
        assert f"warning tls: {expired}: the certificate expired on " in agent.log()
