"""The HTTP API of a running server, compared with its own description."""

import contextlib
import gzip
import http.client
import json
import os
import resource
import signal
import socket
import sqlite3
import struct
import subprocess
import time

import jsonschema
from harness import ENVIRONMENT, LIMIT, ProgramTest

MAKE_HISTORY = os.path.join(os.path.dirname(__file__), "../../../tools/make-history")
EVIL = "<img src=x onerror=alert(1)>"
CALLS = """
call ann from 4711 "%s" ; ring ann ; giveup ann
call eve from 4713 "Eve" ; ring eve ; giveup eve
call zoe from 4712 "Zoë" ; ring zoe ; answer zoe ; hangup zoe by caller
""" % EVIL
# An entry in every list; the last call stays.
EVERYTHING = """
dial dan to 4715 "Dan" ; connect dan ; hangup dan by called
call fay from 4716 "Fay" ; divert fay to 205 "Desk" reason immediate ; answer fay ; hangup fay by caller
callback 4717 "Cal" because busy
""" + CALLS + 'call max from 4714 "Max" ; ring max'
IDS = '{"entryIds": ["none"]}'
CARD = "BEGIN:VCARD\nVERSION:4.0\n%s\nEND:VCARD\n"
IMPORT = "POST /api/v1/contacts/import"
GOOD = {"PUT /api/v1/settings": "{}", "PUT /api/v1/management/{key}": '{"value": "7"}', "DELETE /api/v1/lists/{list}": IDS,
        "POST /api/v1/lists/missed/viewed": IDS, "POST /api/v1/lists/missed/unviewed": IDS, "POST /api/v1/contacts": '{"surname": "New", "office": "55"}',
        "PUT /api/v1/contacts/{id}": '{"surname": "Newer"}', "PUT /api/v1/parties/{number}": '{"note": "late"}', IMPORT: CARD % "N:New;Ned"}
TOKENS = "POST /api/v1/tokens"
LINES = "POST /api/v1/lines"
GOOD[LINES] = '{"device": "2006", "name": "Zoë"}'
GOOD[TOKENS] = '{"name": "phone", "scope": "read", "line": "2001", "expires": "2099-01-01T00:00:00Z"}'
QUERIES = {"DELETE /api/v1/calls": "?all=true"}
LOGIN = "POST /api/v1/session"
UPLOAD = "POST /api/v1/calls/import"
# Calls are placed, answered and ended in test_call_control.py.
PLACE, CONTROL = "POST /api/v1/calls", ("POST /api/v1/live-calls/{liveCallId}/answer", "DELETE /api/v1/live-calls/{liveCallId}")
GOOD[PLACE] = '{"number": "4718"}'
GOOD[UPLOAD] = '{"calls": [{"start": "2026-11-21T05:22:05Z", "number": "1"}, {"start": "2026-11-21"}]}'
RENAMED = {413: "Content Too Large", 422: "Unprocessable Content"}  # younger names than this Python knows
# Requests beyond those that every operation gets: operation, status, path values, body.
ROWS = [("GET /api/v1/lists/{list}", 400, {"query": "?limit=x"}, None), ("DELETE /api/v1/lists/{list}", 400, {}, None),
        ("DELETE /api/v1/lists/{list}", 400, {}, '{"ids": []}'), ("DELETE /api/v1/lists/{list}", 400, {}, '{"entryIds": ['),
        ("DELETE /api/v1/lists/{list}", 404, {"list": "lost"}, IDS), *(("POST /api/v1/lists/missed/" + each, 422, {}, '{"entryIds": [1]}') for each in ("viewed", "unviewed")),
        ("PUT /api/v1/parties/{number}", 422, {}, '{"note": 1}'),
        ("PUT /api/v1/settings", 200, {}, '{"missed-logging": "1"}'), ("PUT /api/v1/settings", 200, {}, '{"missed-logging": "1"}'),
        ("PUT /api/v1/settings", 422, {}, "[]"), ("PUT /api/v1/management/{key}", 422, {}, '{"value": "%s"}' % ("x" * 5000)),
        ("GET /api/v1/management/{key}", 404, {"key": "none"}, None), ("POST /api/v1/contacts", 422, {}, '{"nose": "long"}'),
        ("POST /api/v1/contacts", 422, {}, '{"mobile": "%s"}' % ("0" * 300)), ("PUT /api/v1/parties/{number}", 422, {}, '{"note": "%s"}' % ("x" * 5000)),
        ("POST /api/v1/contacts", 422, {}, '{"surname": " "}'), ("PUT /api/v1/contacts/{id}", 422, {}, '{"defaultNumber": "fax"}'),
        ("GET /api/v1/times", 400, {"query": "?from=yesterday"}, None), ("GET /api/v1/times", 200, {"query": "?from=1970-01-01T00:00:00Z"}, None),
        ("GET /api/v1/calls", 400, {"query": "?since=soon"}, None), ("GET /api/v1/calls/{callId}", 404, {"callId": "77"}, None),
        ("GET /api/v1/calls", 200, {"query": "?search=zoe&direction=incoming&since=1h&limit=1"}, None),
        *(("GET /api/v1/statistics", 200, {"query": "?by=" + by}, None) for by in ("day", "hour", "weekday", "party", "list&language=de")),
        ("GET /api/v1/contacts/{id}", 404, {"id": "77"}, None), ("DELETE /api/v1/contacts/{id}", 404, {"id": "77"}, None)]
ROWS += [(PLACE, 409, {}, '{"number": "2001"}'), (PLACE, 422, {}, '{"number": "112"}'), (PLACE, 422, {}, '{"number": "4711", "urgent": true}'),
         *((each, 404, {"liveCallId": "none"}, None) for each in CONTROL)]
ROWS += [(LOGIN, 401, {}, '{"token": "%s"}' % ("0" * 64)), (LOGIN, 422, {}, '{"token": 1}')]
ROWS += [(UPLOAD, 422, {}, body) for body in ('{"calls": 1}', '{"calls": [], "more": 1}')]
ROWS += [(TOKENS, 422, {}, '{"name": "%s", "scope": "%s"%s}' % each) for each in (
    ("", "read", ""), ("a", "all", ""), ("a", "read", ', "line": "2002"'), ("a", "read", ', "expires": "2020-01-01T00:00:00Z"'))]
ROWS += [(LINES, 422, {}, body) for body in ("{}", '{"device": "2001/1"}', '{"device": "2007", "switch": "none"}', '{"device": "2007", "nose": 1}')]
ROWS += [("GET /api/v1/lines", 400, {"query": "?all=1"}, None), ("GET /api/v1/lines", 200, {"query": "?all=true&search=zoe&limit=1"}, None),
         *((each + " /api/v1/lines/{device}", 404, {"device": "77"}, None) for each in ("GET", "DELETE"))]
ROWS += [("DELETE /api/v1/tokens/{tokenId}", 404, {"tokenId": "999"}, None)]
# Files of contacts: type, body, status, a part of the response.
FILES = [("text/vcard", CARD % "N:Byron;Ada" + CARD % "TEL:1", 200, '"read":2,"added":1,"changed":0,"unchanged":0,"skipped":[{"line":5,'),
         ("Text/CSV; charset=utf-8", "shoe,surname,firstName\n,Byron,Ada\n1,%s," % EVIL, 200,
          '"added":1,"changed":0,"unchanged":1,"skipped":[],"remarks":[{"line":2,'),
         ("text/csv", "surname\n" + "\"\"\n" * 20000, 200, '"read":20000,"added":0'),
         ("text/csv", "a,b\n1,2\n", 422, "its first row has no known column name"), ("text/vcard", "surname\nMiller\n", 422, "no card begins in it"),
         ("text/vcard", "", 422, "no card"), ("text/vcard", "\ufeffBEGIN:VCARD\nN:Cut;Off\n", 200, "it has no END:VCARD"),
         ("application/json", "{}", 415, "text/vcard or text/csv"), (None, CARD % "N:Untyped", 415, "text/vcard or text/csv")]


class HttpTest(ProgramTest):
    def ask(self, method, target, body=None, **headers):
        """Status and body; a header that is None is left out."""
        connection = http.client.HTTPConnection(self.server.http, timeout=LIMIT)
        self.addCleanup(connection.close)
        connection.putrequest(method, target, skip_host=True)
        for name, value in {"Host": self.server.http, "Authorization": "Bearer " + self.server.token, **headers}.items():
            if value is not None:
                connection.putheader(name.replace("_", "-"), value)
        content = (body or "").encode()
        if content:
            connection.putheader("Content-Length", str(len(content)))
        connection.endheaders(content)
        self.response = connection.getresponse()
        self.assertEqual(self.response.reason, RENAMED.get(self.response.status, http.HTTPStatus(self.response.status).phrase))
        self.addCleanup(self.response.close)
        stream = self.response.getheader("Content-Type") == "text/event-stream"
        return self.response.status, self.response if stream else self.response.read()

    @staticmethod
    def next_event(stream):
        """Id, name and data of the next event about a list."""
        fields = {"event": "liveCallsUpdate"}
        while fields["event"] == "liveCallsUpdate" or "data" not in fields:
            name, _, value = stream.readline().decode().rstrip("\n").partition(": ")
            fields[name] = value
            if name == "event":
                fields.pop("data", None)
        return fields["id"], fields["event"], fields["data"]

    def described(self, operation, status, values=None, body=None, **headers):
        """Makes the request and checks that its response is as the document describes it."""
        method, path = operation.split()
        target = (path + "{query}").format(**{**self.values, "query": QUERIES.get(operation, ""), **(values or {})})
        got, content = self.ask(method, target, body, **{"Content_Type": "text/vcard" if operation == IMPORT else None, **headers})
        self.assertEqual(got, status, (operation, values, content))
        response = self.document["paths"][path][method.lower()]["responses"][str(status)]
        if "$ref" in response:
            response = self.document["components"]["responses"][response["$ref"].split("/")[-1]]
        for kind, described in response.get("content", {}).items():
            self.assertEqual(self.response.getheader("Content-Type").split(";")[0], kind, operation)
            if kind == "application/json":
                self.assertEqual([each.message for each in jsonschema.Draft202012Validator(
                    described["schema"], resolver=jsonschema.RefResolver("", self.document)).iter_errors(json.loads(content))], [], operation)
        self.seen.add((operation, str(status)))
        return content

    def test_every_operation_responds_as_it_is_described(self):
        address = self.simulate(EVERYTHING)[1]
        self.server = self.serve(address, "--set", "server-based-features=true")
        self.server.logs("received call from Zoë")
        self.assertIn(1, (json.loads(self.ask("GET", "/api/v1/status")[1])["calls"] for _ in range(1000)))
        self.document = json.loads(self.ask("GET", "/api/v1/openapi.json")[1])
        self.assertEqual(self.ask("POST", "/api/v1/lines", '{"device": "2005"}')[0], 201)
        self.values = {"list": "missed", "key": "mac-addr", "number": "4711", "device": "2005",
                       "liveCallId": "none", "callId": json.loads(self.ask("GET", "/api/v1/calls?sort=start")[1])["items"][0]["id"],
                       "entryId": json.loads(self.ask("GET", "/api/v1/lists/missed")[1])["items"][0]["entryId"],
                       "tokenId": json.loads(self.ask("POST", "/api/v1/tokens", '{"name": "old", "scope": "metrics"}')[1])["id"],
                       "id": json.loads(self.ask("POST", "/api/v1/contacts", '{"surname": "Old"}')[1])["id"]}
        operations = {method.upper() + " " + path: each for path, methods in self.document["paths"].items()
                      for method, each in methods.items() if method != "parameters"}
        GOOD[LOGIN] = '{"token": "%s"}' % self.server.token
        self.seen = set()
        for operation, each in operations.items():
            self.described(operation, 400, body=GOOD.get(operation), Host=None)
            self.described(operation, 403, body=GOOD.get(operation), Host="evil.example:80")
            self.described(operation, 403, body=GOOD.get(operation), Origin="http://evil.example")
            if "/api/v1/" in operation:
                self.described(operation, 400, {"query": "?lines=2001"}, GOOD.get(operation))
                self.described(operation, 400, {"query": "?line=2001&line=2001"}, GOOD.get(operation))
            if each.get("security") != []:
                self.described(operation, 401, body=GOOD.get(operation), Authorization="Bearer " + "0" * 64)
            if "404" in each["responses"]:
                self.described(operation, 404, {"query": "?line=none"}, GOOD.get(operation))
            if "413" in each["responses"]:
                self.described(operation, 413, body=" " * {UPLOAD: 256001, IMPORT: 2 ** 24 + 1}.get(operation, 65537))
        for path, methods in self.document["paths"].items():
            served = {each.upper() for each in methods} - {"PARAMETERS"}
            self.assertEqual(self.ask("PATCH", path.format(**self.values))[0], 405, path)
            self.assertEqual(set(self.response.getheader("Allow").split(", ")), served, path)
            if "GET" in served and not path.endswith("/events"):
                self.assertEqual(self.ask("HEAD", path.format(**self.values)), (200, b""), path)
        for name in ("missed", "dialled", "received", "forwarded", "callbacks"):
            page = json.loads(self.described("GET /api/v1/lists/{list}", 200, {"list": name}))
            self.described("GET /api/v1/lists/{list}/{entryId}", 200, {"list": name, "entryId": page["items"][0]["entryId"]})
        for row in ROWS:
            self.described(*row[:3], body=row[3])
        for kind, body, status, found in FILES:
            content = self.described(IMPORT, status, body=body, Content_Type=kind).decode()
            self.assertIn(found, content)
            self.assertLess(len(content), 65536)
        packed = self.ask("GET", "/api/v1/openapi.json", Accept_Encoding="gzip")[1]
        self.assertEqual((json.loads(gzip.decompress(packed)), self.response.getheader("Vary"), self.response.getheader("Content-Length")),
                         (self.document, "Accept-Encoding", str(len(packed))))
        self.assertEqual(self.ask("GET", "/", If_None_Match="*"), (304, b""))
        people = [each["surname"] + " " + each["source"] for each in json.loads(self.ask("GET", "/api/v1/contacts")[1])["contacts"]]
        self.assertEqual(people, [EVIL + " personal", "Byron personal", "Old personal"])
        self.values["liveCallId"] = json.loads(self.described(PLACE, 202, body=GOOD[PLACE]))["callId"]
        self.described("GET /api/v1/live-calls", 200)
        self.described(CONTROL[0], 409)
        self.described(CONTROL[1], 204)
        # Reading before deleting, and one entry before all of them.
        for operation in sorted({*operations} - {PLACE, *CONTROL}, key=lambda each: (each.startswith("DELETE"), -len(each))):
            good = {"POST /api/v1/contacts": 201, TOKENS: 201, LINES: 201, "POST /api/v1/tickets": 201, "POST /api/v1/lists/missed/viewed": 204, "POST /api/v1/lists/missed/unviewed": 204, LOGIN: 204}.get(
                operation, 204 if operation.startswith("DELETE") and operation not in QUERIES else 200)
            self.described(operation, good, body=GOOD.get(operation))
        self.described(TOKENS, 409, body=GOOD[TOKENS])
        self.described(LINES, 409, body=GOOD[LINES])
        self.described("DELETE /api/v1/lines/{device}", 409, {"device": "2001"})
        run = json.loads(self.described(UPLOAD, 200, body='{"calls": [], "more": true}'))["import"]
        self.described(UPLOAD, 409, body=GOOD[UPLOAD])
        self.described(UPLOAD, 200, body='{"calls": [], "import": "%s"}' % run)
        streams = [self.ask("GET", "/api/v1/events")[0] for _ in range(129)]
        self.assertEqual(set(streams), {200, 503})
        self.described("GET /api/v1/events", 503)
        database = sqlite3.connect(os.path.join(self.data, "journal.db"), timeout=LIMIT)
        self.addCleanup(database.close)
        for table in ("contact", "call", "call_item", "party_note", "setting", "management_value", "access_token"):
            database.execute("ALTER TABLE %s RENAME TO hidden_%s" % (table, table))
        for operation, each in operations.items():
            if "503" in each["responses"] and operation not in (
                    "GET /api/v1/events", "GET /api/v1/settings", PLACE, *CONTROL):
                self.described(operation, 503, body={"PUT /api/v1/settings": '{"missed-logging": "0"}',
                                                     "PUT /api/v1/management/{key}": '{"value": "8"}'}.get(operation, GOOD.get(operation)))
        self.assertEqual(self.ask("GET", "/api/v1/contacts?number=1")[0], 503)
        # The journal responds as long as the API is served.
        self.assertEqual(self.seen, {(name, status) for name, each in operations.items() for status in each["responses"]
                                     if status != "default"} - {("GET /api/v1/settings", "503"), (CONTROL[0], "204"), (CONTROL[1], "409"),
                                                                    *((each, status) for each in (PLACE, *CONTROL) for status in ("501", "503"))})

    def test_a_stream_reports_every_change_and_goes_on_where_it_was_cut(self):
        simulator, address = self.simulate(CALLS, "--loop")
        self.server = self.serve(address)
        self.assertEqual(self.ask("GET", "/?token=" + self.server.token, Authorization=None)[0], 303)
        cookie = self.response.getheader("Set-Cookie").split(";")[0]
        stream = self.ask("GET", "/api/v1/events", Authorization=None, Cookie=cookie)[1]
        events = [self.next_event(stream) for _ in range(6)]
        names = {json.loads(data)["item"]["surname"] for _, event, data in events if event == "missedCallsUpdate"}
        self.assertTrue(names and names <= {EVIL, "Eve"}, names)
        again = self.ask("GET", "/api/v1/events", Last_Event_ID=events[2][0])[1]
        self.assertEqual([self.next_event(again) for _ in range(3)], events[3:])
        # It reports changes that the journal does not notify of, too.
        self.assertEqual(simulator.stop(), 0)
        for change in (lambda: self.ask("DELETE", "/api/v1/lists/received?all=true"), lambda: self.ask("PUT", "/api/v1/settings", '{"call-log-enabled": "false"}'),
                       self.watch, lambda: self.done("settings", "missed-logging", "1")):
            change()
            while self.next_event(stream)[1] != "resync":
                pass
        self.assertIn('calljournal_unviewed_missed_calls{line="2001"} 0\n', self.ask("GET", "/metrics")[1].decode())

    def test_a_named_token_ends_with_its_streams(self):
        self.server = self.serve("127.0.0.1:1")
        run = lambda *words: subprocess.run([os.environ["CALLJOURNAL"], "tokens", *words, "--data", self.data], capture_output=True,
                                            text=True, env=ENVIRONMENT, timeout=LIMIT)
        token = run("create", "phone", "--days", "1").stdout.strip()
        use = {"Authorization": "Bearer " + token}
        self.assertEqual(json.loads(self.ask("GET", "/api/v1/status", **use)[1])["scope"], "read")
        self.assertEqual(self.ask("DELETE", "/api/v1/calls?all=true", **use)[0], 403)
        stream = http.client.HTTPConnection(self.server.http, timeout=LIMIT)
        self.addCleanup(stream.close)
        stream.request("GET", "/api/v1/events", headers=use)
        response = stream.getresponse()
        self.assertEqual(response.readline(), b"retry: 2000\n")
        self.assertIn("phone  read", run("list").stdout)
        self.assertEqual(run("revoke", "phone").returncode, 0)
        begin = time.monotonic()
        response.read()
        self.assertLess(time.monotonic() - begin, 1.0)
        self.assertEqual(self.ask("GET", "/api/v1/status", **use)[0], 401)
        self.assertRegex(self.ask("GET", "/metrics")[1].decode(), r"calljournal_refused_tokens_total\S* 1\n")
        self.assertEqual(run("revoke", "phone").returncode, 1)
        # SIGHUP reads the tokens of the database again.
        use = {"Authorization": "Bearer " + run("create", "restored").stdout.strip()}
        with contextlib.closing(sqlite3.connect(self.data + "/journal.db")) as database, database:
            database.execute("DELETE FROM access_token WHERE name = 'restored'")
        self.assertEqual(self.ask("GET", "/api/v1/status", **use)[0], 200)
        self.server.process.send_signal(signal.SIGHUP)
        self.await_value(401, lambda: self.ask("GET", "/api/v1/status", **use)[0])

    def test_a_made_history_is_served_and_deleted_as_a_filed_one(self):
        subprocess.run([MAKE_HISTORY, self.data, "--calls", "2500", "--parties", "1500"], check=True, capture_output=True)
        server = self.serve("127.0.0.1:9")
        calls, page = [], {"next": ""}
        while page["next"] is not None:
            page = self.get(server, "calls?limit=700" + ("&cursor=" + page["next"] if page["next"] else ""))
            calls += page["items"]
        self.assertEqual([call["id"] for call in calls], list(range(2500, 0, -1)))
        self.assertEqual(self.get(server, "statistics")["totals"]["calls"], 2500)
        for name in ("missed", "dialled", "received", "forwarded"):
            entries = {call["uniqueId"] for call in calls if call["list"] == name} - {None}
            shown = self.get(server, "lists/" + name)
            self.assertEqual((shown["total"], {item["uniqueId"] for item in shown["items"]}), (len(entries), entries))
            for item in shown["items"][:3]:
                self.assertEqual(item["calls"], sum(call["uniqueId"] == item["uniqueId"] for call in calls))
        with self.open(server, "calls?all=true", "DELETE") as response:
            self.assertEqual(json.load(response), {"deleted": 2500})
        self.assertEqual(self.get(server, "lists/received")["total"], 0)

    def test_hostile_clients_do_not_hold_up_the_journal(self):
        simulator, address = self.simulate(CALLS, "--loop")
        self.server = self.serve(address)
        host, port = self.server.http.split(":")
        for target, status, headers in (
                ("/../../etc/passwd", 400, {}), ("/..%5capi-token", 400, {}), ("/%252e%252e/api-token", 404, {}), ("/a%00b", 400, {}),
                ("/api-token", 401, {"Authorization": None}), ("/api/v1/status", 400, {"HOST": "evil.example"})):
            self.assertEqual(self.ask("GET", target, **headers)[0], status, target)
        with self.assertRaises((ConnectionError, http.client.HTTPException)):
            self.ask("PUT", "/api/v1/settings", "x" * 10_000_000)
        soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
        resource.setrlimit(resource.RLIMIT_NOFILE, (min(max(soft, 2048), hard), hard))
        idle = [socket.create_connection((host, int(port)), LIMIT) for _ in range(1000)]
        for each in idle[::3]:
            each.sendall(b"GET /metrics HTTP/1.1\r\nHost: local")
        watcher = self.watch()
        self.assertEqual({self.change(watcher, "missedCallsUpdate", 1)["surname"] for _ in range(2)}, {EVIL, "Eve"})
        self.assertLess(len(os.listdir("/proc/%d/fd" % self.server.process.pid)), 300)
        # Clients that were never accepted disconnect with a reset.
        for each in reversed(idle):
            each.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
            each.close()
        self.assertRegex(self.ask("GET", "/metrics")[1].decode(), r'calljournal_calls_filed_total{line="2001",list="missed"} [1-9]')
