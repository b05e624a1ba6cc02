"""Requests and answers as pairs of files, and how one is replayed against a running agent.

A .request file holds one or more exchanges of one connection, separated by a line of "=====". An exchange is an
optional request line (POST /cimom HTTP/1.1 when left out), header lines, an empty line and the body. A header
line "# encoding: utf-16-le" has the body sent in that encoding, its byte order mark first. Host, Content-Type and
CIMOperation are added unless they are there; a header with the value "none" is left out.

The .answer file holds for each exchange the HTTP status, the headers that matter and the body; where two tags
meet in the answer, the file has a line break for people. {{Name}} in it stands for any text without "<" or quotes,
and in the requests after it for that text.
"""

import codecs
import http.client
import re

CONTEXT = re.compile('(NAME="EnumerationContext" PARAMTYPE="string">\n<VALUE>)([^<]+)')
SEPARATOR = "\n=====\n"
REQUEST_LINE = re.compile(r"([A-Z-]+) (\S+) HTTP/1\.1")
USUAL_HEADERS = {"Host": "switch:5988", "Content-Type": "application/xml", "CIMOperation": "MethodCall"}
SERVERS_OWN = {"date", "content-length", "transfer-encoding", "connection", "server", "wbemserverresponsetime"}
MARKS = {"utf-8": codecs.BOM_UTF8, "utf-16-le": codecs.BOM_UTF16_LE, "utf-16-be": codecs.BOM_UTF16_BE}
TIMEOUT_SECONDS = 60


class Request:
    def __init__(self, text, known):
        text = re.sub(r"\{\{(\w+)\}\}", lambda name: known[name[1]], text)
        head, _, body = text.partition("\n\n")
        lines = head.split("\n") if head else []
        line = REQUEST_LINE.fullmatch(lines[0]) if lines else None
        self.method, self.target = line.groups() if line else ("POST", "/cimom")
        given = [line.split(": ", 1) for line in (lines[1:] if line else lines)]
        names = {name.lower() for name, _ in given}
        self.headers = [(name, value) for name, value in USUAL_HEADERS.items() if name.lower() not in names]
        self.headers += [(name, value) for name, value in given if name[0] != "#" and value != "none"]
        encoding = dict(given).get("# encoding")
        self.body = MARKS[encoding] + body.encode(encoding) if encoding else body.encode()


class Answer:
    def __init__(self, response):
        self.body = response.read()
        self.is_cim = response.headers.get_content_type() == "application/xml"
        head = "".join(f"{name}: {value}\n" for name, value in response.getheaders()
                       if name.lower() not in SERVERS_OWN)
        self.text = f"HTTP {response.status}\n{head}\n" + self.body.decode().replace("><", ">\n<")


def exchange(connection, request):
    connection.putrequest(request.method, request.target, skip_host=True, skip_accept_encoding=True)
    for name, value in request.headers:
        connection.putheader(name, value)
    connection.putheader("Content-Length", str(len(request.body)))
    connection.endheaders(request.body)
    return Answer(connection.getresponse())


def pattern_of(recorded):
    """The recorded answer as a regular expression, its {{Names}} as groups."""
    parts = re.split(r"\{\{(\w+)\}\}", recorded)
    names, text = parts[1::2], re.escape(parts[0])
    for name, rest in zip(names, parts[2::2]):
        text += (f"(?P={name})" if f"(?P<{name}>" in text else f'(?P<{name}>[^<"]*)') + re.escape(rest)
    return re.compile(text)


def replay(port, request_text, recorded):
    """Yields (answer, recorded answer or None, whether they agree) for each exchange of a pair."""
    known = {}
    connection = http.client.HTTPConnection("127.0.0.1", port, timeout=TIMEOUT_SECONDS)
    try:
        texts = request_text.split(SEPARATOR)
        expected = recorded.split(SEPARATOR) if recorded is not None else []
        expected += [None] * (len(texts) - len(expected))
        assert len(expected) == len(texts), "more answers are recorded than there are requests"
        for text, answer_text in zip(texts, expected):
            answer = exchange(connection, Request(text, known))
            match = answer_text is not None and pattern_of(answer_text).fullmatch(answer.text)
            if match:
                known.update(match.groupdict())
            elif context := CONTEXT.search(answer.text):  # so that new pairs can be recorded
                known["EnumerationContext"] = context[2]
                answer.text = CONTEXT.sub(r"\1{{EnumerationContext}}", answer.text)
            yield answer, answer_text, bool(match)
    finally:
        connection.close()
