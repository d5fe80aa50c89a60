"""A client that sends any bytes to the HTTP API, and the server that it attacks."""

import json
import socket
import subprocess
import time
import urllib.parse

from journal import Api, Round

CLOSED = 0  # in place of a status: the connection was closed without a response
ERRORS = (CLOSED, 400, 401, 403, 404, 405, 413, 415, 422, 503)
PATIENCE = 5.0
QUIET = 0.1  # no further response comes after so long
HONEST_LIMIT = 1.0
STATE = ("status", "calls?limit=100", "contacts")


class Response:
    def __init__(self, status, headers, body):
        self.status, self.headers, self.body = status, headers, body

    def faults(self):
        """What the response has that no response may have, and how an error departs from its documented form."""
        if self.status >= 400:
            try:
                error = json.loads(self.body)["error"]
                if not (isinstance(error["code"], str) and error["code"] and isinstance(error["message"], str) and error["message"]):
                    yield "the error lacks its code or message: %r" % self.body[:100]
            except (ValueError, KeyError, TypeError):
                yield "%d without the JSON of an error: %r" % (self.status, self.body[:100])
            if self.headers.get("content-type", "").split(";")[0] != "application/json":
                yield "%d has the type %s" % (self.status, self.headers.get("content-type"))
        for mark in (b"root:x:", b"SQLite format", b"PRIVATE KEY"):
            if mark in self.body:
                yield "the response contains a file of the machine: %r" % mark
        if self.headers.get("x-content-type-options") != "nosniff":
            yield "%d lacks the common headers" % self.status


def request(method, target, *headers, body=b"", host="localhost", close=True):
    """The bytes of a request with these header lines; `host` None leaves Host out."""
    body = body.encode() if isinstance(body, str) else body
    lines = ["%s %s HTTP/1.1" % (method, target), *(["Host: " + host] if host is not None else []), *headers,
             *(["Content-Length: %d" % len(body)] if body or method in ("POST", "PUT") else []), *(["Connection: close"] if close else [])]
    return "\r\n".join(lines).encode("utf-8", "surrogateescape") + b"\r\n\r\n" + body


def read_responses(data, head=False):
    """The complete responses that the bytes consist of; raises ValueError if they do not."""
    found = []
    while data:
        top, separator, data = data.partition(b"\r\n\r\n")
        lines = top.decode("latin-1").split("\r\n")
        if not separator or not lines[0].startswith("HTTP/1.1 "):
            raise ValueError("no response: %r" % top[:100])
        headers = {name.lower(): value for name, _, value in (line.partition(": ") for line in lines[1:])}
        size = 0 if head else int(headers.get("content-length", 0))
        if len(data) < size:
            raise ValueError("a response was cut short")
        found.append(Response(int(lines[0].split()[1]), headers, data[:size]))
        data = data[size:]
    return found


def is_complete(data):
    try:
        return bool(read_responses(data))
    except ValueError:
        return False


class Target(Round):
    """A running server with calls and contacts, which no attack may change."""

    def __init__(self):
        super().__init__()
        subprocess.run(["chmod", "755", self.data], check=True)  # so that the modes of the files alone must hold others off
        self.switch.close()  # no calls come while it is attacked
        self.server = self.start(wrapper=("sh", "-c", 'umask 0; exec "$@"', "sh"))
        self.host, port = self.server.http.split(":")
        self.port = int(port)
        self.bearer = "Authorization: Bearer " + self.server.token
        self.log_read = 0
        api = Api(self.server)
        lists = ("missed", "dialled", "received", "forwarded")
        calls = [{"start": "2026-01-05T10:%02d:00Z" % each, "list": lists[each % 4], "number": "70%02d" % each, "callId": "c%d" % each}
                 for each in range(12)]
        api("POST", "calls/import", {"calls": calls})
        self.contact = str(api("POST", "contacts", {"surname": "Miller", "office": "7000"})["id"])
        api("PUT", "parties/7001", {"note": "kept"})
        self.call_id = str(api("GET", "calls?limit=1")["items"][0]["id"])
        self.entry = api("GET", "lists/missed?limit=1")["items"][0]["entryId"]
        self.document = api("GET", "openapi.json")
        api.connection.close()
        self.state = None
        self.state = self.read_state()[0]

    def connect(self, patience=PATIENCE):
        return socket.create_connection((self.host, self.port), patience)

    def exchange(self, data, patience=PATIENCE, pieces=0.0):
        """The bytes that come until the server closes, or for `patience` s, and True if it has closed."""
        with self.connect(patience) as client:
            try:
                if pieces:
                    for each in data:
                        client.sendall(bytes([each]))
                        time.sleep(pieces)
                else:
                    client.sendall(data)
            except OSError:
                pass  # the server has closed before it read everything; a response may be there all the same
            return self.receive(client, patience)

    @staticmethod
    def receive(client, patience):
        received, end = b"", time.monotonic() + patience
        try:
            while (left := end - time.monotonic()) > 0:
                client.settimeout(left)
                part = client.recv(65536)
                if not part:
                    return received, True
                received += part
                if received.endswith((b"\n", b"}")) and is_complete(received):
                    end = min(end, time.monotonic() + QUIET)
        except TimeoutError:
            pass
        except OSError:
            return received, True
        return received, False

    def answers(self, data, statuses, patience=PATIENCE, head=False, most=1):
        """The faults of what the server makes of the bytes: at most so many responses, all with one of the statuses, then the end."""
        received, closed = self.exchange(data, patience)
        try:
            responses = read_responses(received, head)
        except ValueError as error:
            yield str(error)
            return
        found = [each.status for each in responses] or ([CLOSED] if closed else ["no response"])
        if len(responses) > most:
            yield "%d responses: %s" % (len(responses), found)
        if not set(found) <= set(statuses):
            yield "%s instead of %s; %r" % (found, sorted(statuses), received[-200:])
        for each in responses:
            yield from each.faults()

    def read_state(self):
        """What an attack may not change, and the time that an honest client has waited for all of it."""
        begin = time.monotonic()
        received, closed = self.exchange(b"".join(
            request("GET", "/api/v1/" + each, self.bearer, close=each == STATE[-1]) for each in STATE))
        responses = read_responses(received)
        if not closed or [each.status for each in responses] != [200] * len(STATE):
            raise ValueError("an honest client got %r" % received[-200:])
        return [each.body for each in responses], time.monotonic() - begin

    def faults(self):
        """What the server has lost or given away; the check after each attack."""
        if self.server.process.poll() is not None:
            yield "the server has ended: %d" % self.server.process.returncode
            return
        state, slowest = self.read_state()
        if state != self.state:
            yield "the attack has changed the journal: %s" % next(
                "%s instead of %s" % (str(new)[:150], str(old)[:150]) for new, old in zip(state, self.state) if new != old)
            self.state = state
        if slowest > HONEST_LIMIT:
            yield "an honest client waits %.1f s" % slowest
        lines, self.log_read = self.server.log[self.log_read:], len(self.server.log)
        for line in lines:
            if self.server.token in urllib.parse.unquote(line):
                yield "the token is in the log: " + line.replace(self.server.token, "TOKEN")[:150]
            if "\x1b" in line:
                yield "the log has a control character: %r" % line[:150]
