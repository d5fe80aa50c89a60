"""Attacks on every route, made from the OpenAPI document of the server."""

import json

from attacker import request

METHODS = ("GET", "POST", "PUT", "DELETE", "PATCH", "OPTIONS", "TRACE")
TOO_LARGE = {"/api/v1/calls/import": 256001, "/api/v1/contacts/import": 2 ** 24 + 100000}
WRONG_TYPES = {"string": 7, "boolean": "yes", "array": "none", "integer": "one", "object": [], "number": "one"}


class Operation:
    """One method of one route; `document` is the whole description."""

    def __init__(self, target, path, method, described, shared):
        self.method, self.path, self.described = method.upper(), path, described
        self.document = target.document
        self.parameters = [self.resolve(each) for each in (*shared, *described.get("parameters", []))]
        self.values = {"list": "missed", "entryId": target.entry, "key": "mac-addr", "id": target.contact, "callId": target.call_id, "liveCallId": "none", "tokenId": "999999",
                       "number": "7001", "device": "2001"}
        self.bearer = target.bearer
        self.token = target.server.token
        content = described.get("requestBody", {}).get("content", {})
        self.kind = next(iter(content), None)
        self.schema = self.resolve(content[self.kind]["schema"]) if content else {}

    def resolve(self, part):
        while "$ref" in part:
            found = self.document
            for name in part["$ref"].split("/")[1:]:
                found = found[name]
            part = found
        return part

    def raw(self, *headers, query="", body=b"", token=True, host="localhost", method=None, **values):
        kind = ["Content-Type: " + self.kind] if self.kind and not any(each.startswith("Content-Type") for each in headers) else []
        return request(method or self.method, self.path.format(**{**self.values, **values}) + query,
                       *([self.bearer] if token else []), *kind, *headers, body=body, host=host)


def operations(target):
    for path, methods in target.document["paths"].items():
        for method, described in methods.items():
            if method != "parameters":
                yield Operation(target, path, method, described, methods.get("parameters", []))


def attacks_without_rights(each):
    """Requests without the token, with a wrong one, of another origin, for another host."""
    if each.described.get("security") != []:
        yield "no token", each.raw(token=False), (401,)
        for name, wrong in (("wrong", "0" * len(each.token)), ("prefix of the", each.token[:-1]), ("one letter as", each.token[:1]),
                            ("longer", each.token + "0"), ("changed", each.token[:-1] + ("0" if each.token[-1] != "0" else "1"))):
            yield name + " token", each.raw("Authorization: Bearer " + wrong, token=False), (401,)
        yield "token in the query", each.raw(token=False, query="?token=" + each.token), (401,)
    yield "foreign origin", each.raw("Origin: http://evil.example"), (403,)
    yield "foreign site", each.raw("Sec-Fetch-Site: cross-site"), (403,)
    yield "foreign host", each.raw(host="evil.example"), (403,)
    yield "no host", each.raw(host=None), (400,)


def attacks_by_query(each):
    if not each.path.startswith("/api/v1/"):
        return
    yield "unknown parameter", each.raw(query="?lines=2001"), (400,)
    yield "repeated parameter", each.raw(query="?line=2001&line=2001"), (400,)
    if "404" in each.described["responses"]:
        yield "unknown line", each.raw(query="?line=none"), (404,)
    for parameter in each.parameters:
        schema = each.resolve(parameter.get("schema", {}))
        if parameter["in"] == "path":
            for value in ("none-such", "%FF%FE"):
                if parameter["name"] != "number" and "404" in each.described["responses"]:
                    yield "unknown %s %s" % (parameter["name"], value), each.raw(**{parameter["name"]: value}), (400, 404)
        elif parameter["in"] == "query" and "enum" in schema:
            yield "%s of no kind" % parameter["name"], each.raw(query="?%s=none" % parameter["name"]), (400,)
        elif parameter["in"] == "query" and schema.get("type") == "integer":
            for value in ("x", "-1", "1e3", "99999999999999999999", "1.5"):
                yield "%s=%s" % (parameter["name"], value), each.raw(query="?%s=%s" % (parameter["name"], value)), (400,)
        elif parameter["in"] == "query" and schema.get("minLength"):
            yield "empty " + parameter["name"], each.raw(query="?%s=" % parameter["name"]), (400,)


def attacks_by_body(each):
    if not each.kind:
        return
    refused = (400,) if each.method == "DELETE" else (422,)
    if "413" in each.described["responses"]:
        yield "large body", each.raw(body=" " * TOO_LARGE.get(each.path, 65537)), (413,)
    if each.kind != "application/json":
        for kind in ("application/json", "text/html", "multipart/form-data; boundary=x", "application/x-www-form-urlencoded", "text/csvx"):
            yield "type " + kind, each.raw("Content-Type: " + kind, body="a,b\n1,2\n"), (415,)
        return
    for name, body in (("no JSON", "surname=x"), ("half JSON", '{"a": ['), ("two JSON", "{}{}"), ("deep JSON", "[" * 60000), ("NUL", b"{\0}"),
                       ("no UTF-8", b'{"\xff": "\xfe"}'), ("UTF-16", '{"a": 1}'.encode("utf-16")), ("empty body", b"")):
        yield name, each.raw(body=body), (400, 422)
    for name, body in (("array", "[1]"), ("number", "7"), ("null", "null"), ("text", '"x"')):
        yield "JSON " + name, each.raw(body=body), refused
    members = each.schema.get("properties", {})
    for name, schema in members.items():
        described = each.resolve(schema)
        if isinstance(described.get("type"), str) and name not in ("id", "numberTexts"):  # which the route ignores
            body = {**{other: [] for other in each.schema.get("required", []) if other == "calls"}, name: WRONG_TYPES[described["type"]]}
            yield "member %s of a wrong type" % name, each.raw(body=json.dumps(body)), refused
    if each.schema.get("additionalProperties") is False:
        yield "unknown member", each.raw(body='{"none-such": "x"}'), refused


def attacks_by_method(target):
    for path, methods in target.document["paths"].items():
        served = {method.upper() for method in methods} - {"PARAMETERS"}
        any_operation = next(each for each in operations(target) if each.path == path)
        for method in METHODS:
            if method not in served:
                yield "%s %s: wrong method" % (method, path), any_operation.raw(method=method, body=b""), (405,)


def attacks(target):
    """Name, bytes, allowed statuses."""
    for each in operations(target):
        for make in (attacks_without_rights, attacks_by_query, attacks_by_body):
            for name, raw, statuses in make(each):
                yield "%s %s: %s" % (each.method, each.path, name), raw, statuses
    yield from attacks_by_method(target)
