"""Attacks by hand: on the framing of requests, on paths, hosts, tokens and limits. Each is a name, bytes and the allowed statuses."""

from attacker import CLOSED, request

REFUSED = (400, CLOSED)


def framing(target):
    """Requests that two readers could take for different ones. What is smuggled would delete the history."""
    inner = request("DELETE", "/api/v1/calls?all=true", target.bearer, close=False)
    chunk = b"%x\r\n%s\r\n0\r\n\r\n" % (len(inner), inner)

    def post(*headers, body, line="POST /api/v1/lists/missed/viewed HTTP/1.1", end="\r\n"):
        return end.join([line, "Host: localhost", target.bearer, *headers, "", ""]).encode("latin-1") + body

    size = "Content-Length: %d" % len(inner)
    rows = [
        ("two lengths, the first short", post("Content-Length: 2", size, body=b"{}" + inner), REFUSED),
        ("two lengths, the second short", post(size, "Content-Length: 2", body=inner), REFUSED),
        ("lengths in a list", post("Content-Length: 2, %d" % len(inner), body=b"{}" + inner), REFUSED),
        ("length and chunks", post(size, "Transfer-Encoding: chunked", body=b"0\r\n\r\n" + inner), REFUSED),
        ("chunks and length", post("Transfer-Encoding: chunked", "Content-Length: 4", body=chunk), REFUSED),
    ]
    for value in ("+2", "-1", "0x2", "2 2", "2;2", "2\x0b", " ", "99999999999999999999", "18446744073709551618", "2,2", "\u0662", "1e1"):
        rows.append(("length %r" % value, "".join(["POST /api/v1/lists/missed/viewed HTTP/1.1\r\nHost: localhost\r\n", target.bearer,
                     "\r\nContent-Length: ", value, "\r\n\r\n"]).encode() + b"{}" + inner, REFUSED))
    for value in ("xchunked", "chunked, identity", "identity", "gzip", "chunked, chunked", '"chunked"', "\x0bchunked", "chunked\x00", "chunke d"):
        rows.append(("encoding %r" % value, post("Transfer-Encoding: " + value, body=b"0\r\n\r\n" + inner), (400, 422, CLOSED)))
    for name in ("Transfer-Encoding ", "Transfer Encoding", "\x01Transfer-Encoding", "Transfer-Encoding\x00", "Transfer\r-Encoding",
                 " Transfer-Encoding"):
        rows.append(("header name %r" % name, post(size, name + ": chunked", body=inner), REFUSED))
    for name in ("f oo", "f\too", "", "f(oo)", "f\xfcoo", "foo ", "f\x00oo"):
        rows.append(("header name %r" % name, post("Content-Length: 2", name + ": b", body=b"{}"), REFUSED))
    for value in ("a\x00b", "a\rb", "a\x01b", "a\x7fb"):
        rows.append(("header value %r" % value, post("X: " + value, "Content-Length: 2", body=b"{}"), REFUSED))
    rows += [
        ("folded header", post("X: a\r\n Content-Length: %d" % len(inner), "Content-Length: 2", body=b"{}"), (400, 422, CLOSED)),
        ("folded length", post("Content-Length:\r\n 2", "Connection: close", body=b"{}"), (400, 422, CLOSED)),
        ("folded first header", b"GET / HTTP/1.1\r\n X: y\r\nHost: localhost\r\n\r\n", REFUSED),
        ("bare LF in the header", post("Content-Length: 2", "Connection: close", body=b"{}", end="\n"), (400, 422, CLOSED)),
        ("bare CR in the header", post("Content-Length: 2", body=b"{}", end="\r"), REFUSED),
        ("LF hides a header", post("X: a\nContent-Length: %d" % len(inner), "Content-Length: 2", body=b"{}" + inner), REFUSED),
    ]
    for name, body in (("negative", b"-1\r\n\r\n"), ("letters", b"xyz\r\n\r\n"), ("huge", b"ffffffffffffffffff\r\n"), ("blank", b" 5\r\n12345\r\n"),
                       ("signed", b"+5\r\n12345\r\n"), ("prefixed", b"0x5\r\n12345\r\n"), ("longer than said", b"5\r\n12345678\r\n0\r\n\r\n"),
                       ("empty", b"\r\n12345\r\n0\r\n\r\n"), ("overflow", b"100000000000000005\r\n12345\r\n0\r\n\r\n"),
                       ("LF", b"5\n12345\n0\n\n"), ("NUL", b"5\0\r\n12345\r\n0\r\n\r\n")):
        rows.append(("chunk size " + name, post("Transfer-Encoding: chunked", body=body + inner), REFUSED))
    rows += [
        ("trailer with a host", post("Transfer-Encoding: chunked", "Connection: close", body=b"2\r\n{}\r\n0\r\nHost: evil\r\n\r\n"), (400, 422, CLOSED)),
        ("chunk extension of 100 KB", post("Transfer-Encoding: chunked", body=b"2;" + b"x" * 100_000 + b"\r\n{}\r\n0\r\n\r\n"), (400, 422, CLOSED)),
    ]
    return rows


def lines(target):
    """First lines that are none, and other protocols."""
    good = b"\r\nHost: localhost\r\n%s\r\nConnection: close\r\n\r\n" % target.bearer.encode()
    rows = [("line %r" % line, line + good, REFUSED) for line in (
        b"GET /api/v1/status HTTP/1.1 x", b"GET\t/api/v1/status\tHTTP/1.1", b"GET /api/v1/status http/1.1",
        b"GET /api/v1/status HTTP/1.", b"GET /api/v1/status HTTP/-1.1", b"GET /api/v1/status HTTP/11.11", 
        b"GET /a b HTTP/1.1", b"GE\0T / HTTP/1.1", b"G\xc3\x8bT / HTTP/1.1", b"get /api/v1/status HTTP/1.1", 
        b"GET http://evil.example/api/v1/status HTTP/1.1", b"GET //evil.example/%2e%2e HTTP/1.1", b"CONNECT evil.example:443 HTTP/1.1",
        b"GET evil HTTP/1.1", b"OPTIONS * HTTP/1.1", b"GET ?a HTTP/1.1", b"PRI * HTTP/2.0")]
    # These may be read as the request that they resemble.
    rows += [("line %r" % line, line + good, (200, 400, 404, CLOSED)) for line in (
        b"GET  /api/v1/status HTTP/1.1", b"GET /api/v1/status HTTP 1.1", b"GET /\x80 HTTP/1.1", b"GET /api/v1/status HTTP/1.7")]
    rows += [("bytes %r" % name, data, REFUSED) for name, data in (
        ("TLS", b"\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03" + bytes(500)), ("NULs", bytes(10_000)), ("line ends", b"\r\n" * 5000 + b"x"),
        ("HTTP/0.9", b"GET /api/v1/status\r\n\r\n"), ("SSH", b"SSH-2.0-x\r\n\r\n"), ("no host", b"GET / HTTP/1.0\r\n\r\n"),
        ("XML", b'<?xml version="1.0"?><a/>\r\n\r\n'), ("HTTP/2", b"PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n" + bytes(9)))]
    rows += [("method " + method, request(method, "/api/v1/status", target.bearer), (400, 405, CLOSED)) for method in (
        "TRACE", "TRACK", "PROPFIND", "PURGE", "OPTIONS", "LOCK", "SUBSCRIBE", "M-SEARCH", "PATCH", "A" * 3000)]
    rows += [("upgrade to %s" % kind, request("GET", "/api/v1/status", target.bearer, "Upgrade: " + kind, "HTTP2-Settings: AAMAAABkAAQ", close=False)
              .replace(b"Host", b"Connection: Upgrade, HTTP2-Settings\r\nHost"), (200, 400)) for kind in ("h2c", "websocket", "TLS/1.0")]
    rows += [("expectation", request("PUT", "/api/v1/settings", target.bearer, "Expect: 200-maybe", body="[]"), (400, 417, 422, CLOSED)),
             ("two hosts", request("GET", "/api/v1/status", target.bearer, "Host: evil.example"), REFUSED),
             ("method in a header", request("POST", "/api/v1/calls/1", target.bearer, "X-HTTP-Method-Override: DELETE"), (405,)),
             ("method in the query", request("POST", "/api/v1/calls/1?_method=DELETE", target.bearer), (405,))]
    return rows


PATHS = ("/../api-token", "/..", "/.", "/./api-token", "/../../../../../../etc/passwd", "/%2e%2e/api-token", "/.%2e/%2e./etc/passwd",
         "/..%2fapi-token", "/..%5capi-token", "/..\\api-token", "/%252e%252e/api-token", "/%2e%2e%2f%2e%2e%2fetc%2fpasswd", "//etc/passwd",
         "/%00", "/index.html%00.js", "/assets/%00/../api-token", "/%c0%ae%c0%ae/api-token", "/%c0%af..%c0%afetc/passwd",
         "/%e0%80%ae%e0%80%ae/api-token", "/%f0%80%80%ae/x", "/%uff0e%uff0e/api-token", "/C:%5cwindows%5cwin.ini", "/C:/windows/win.ini",
         "/%5c%5chost%5cshare", "//host/share/x", "/file:///etc/passwd", "/..;/api-token", "/api-token", "/journal.db", "/calljournal.sock",
         "/assets/../../api-token", "/assets/..%2f..%2fjournal.db", "/.git/config", "/proc/self/environ", "/index.html/../api-token", "/%",
         "/%2", "/%zz", "/api/v1/../../journal.db", "/api/v1/lists/..%2f..%2fjournal.db", "/api/v1/lists/missed/%2e%2e",
         "/api/v1/contacts/..%2f1", "/%0d%0aX-Injected:%20y", "/?a=%0d%0aSet-Cookie:%20x", "/api/v1//status", "/API/V1/STATUS",
         "/api/v1/status/", "/api/v1/status;x=y", "/api/v1/status%20", "/api/v1/status%00", "/api/v1/status#x")


def paths(target):
    rows = [("path %s with the token" % path, request("GET", path, target.bearer), (400, 404, CLOSED)) for path in PATHS]
    rows += [("path %s without it" % path, request("GET", path), (400, 401, 404, CLOSED)) for path in PATHS]
    rows += [("list %s" % value, request("DELETE", "/api/v1/lists/%s?all=true" % value, target.bearer), (400, 404)) for value in (
        "missed'--", "missed%27%20OR%201=1--", "*", "%25", "missed,received", "MISSED", "0", "__proto__", "%D0%BCissed")]
    rows += [("call id %s" % value, request("DELETE", "/api/v1/calls/%s" % value, target.bearer), (400, 404)) for value in (
        "0", "-1", "1%20OR%201=1", "1e0", "0x1", "99999999999999999999", "1.0", "+1", "%201", "1;2", "all")]
    rows += [("filter " + value, request("DELETE", "/api/v1/calls?" + value, target.bearer), (400,)) for value in (
        "", "all=false", "all=1", "all=TRUE", "all=", "all=true&all=true", "all=true&list=missed", "since=", "number=", "list=missed&list=received",
        "limit=1", "List=missed", "since=2026-13-01", "until=%27", "tz=../../etc/passwd", "min-duration=-1", "viewed=maybe", "a%00=b")]
    return rows


def hosts(target):
    """Rebinding: a page of another name whose name resolves to this machine."""
    port = target.port
    rows = [("host %s" % host, request("GET", "/api/v1/status", target.bearer, host=host), (400, 403)) for host in (
        "evil.example", "evil.example:%d" % port, "localhost.evil.example", "127.0.0.1.evil.example", "127.0.0.2", "0.0.0.0", "[::1]", "127.1",
        "2130706433", "0x7f.0.0.1", "017700000001", "localhost@evil.example", "evil.example@localhost", "localhost, evil.example", "localhost evil",
        "localhost.", "", " ", "[::ffff:127.0.0.1]", "localhost/evil", "localhost\\evil", "l\u00f6calhost", "evil#localhost", "*", "[localhost]",
        "localhost%00.evil", ":%d" % port, "[::1", "a" * 8000)]
    origins = ("http://evil.example", "null", "https://localhost", "http://localhost.evil.example", "http://localhost:1", "http://localhost@evil.example",
               "http://localhost http://evil.example", "http://127.0.0.1:%d" % port, "file://", "chrome-extension://x", "http:localhost", "http://localhost/")
    for origin in origins:
        rows.append(("origin %s" % origin, request("DELETE", "/api/v1/calls?all=true", target.bearer, "Origin: " + origin), (403,)))
        rows.append(("origin %s, with the cookie" % origin, request("DELETE", "/api/v1/calls?all=true", cookie(target), "Origin: " + origin), (403,)))
    for site in ("cross-site", "same-site"):
        for mode in ("navigate", "no-cors", "cors", "websocket"):
            rows.append(("site %s, mode %s" % (site, mode), request("GET", "/api/v1/lists/missed", cookie(target), "Sec-Fetch-Site: " + site,
                                                                    "Sec-Fetch-Mode: " + mode), (403,)))
    return rows


def cookie(target, name=None):
    return "Cookie: %s=%s" % (name or "calljournal-%d" % target.port, target.server.token)


def tokens(target):
    token, name = target.server.token, "calljournal-%d" % target.port
    rows = [("authorization %s" % kind, request("GET", "/api/v1/status", "Authorization: " + value), (400, 401)) for kind, value in (
        ("none", ""), ("Bearer", "Bearer"), ("Bearer and a blank", "Bearer "), ("Basic", "Basic " + token), ("bare", token),
        ("twice", "Bearer %s %s" % (token, token)), ("list", "Bearer x, Bearer " + token), ("first half", "Bearer " + token[:32]),
        ("second half", "Bearer " + token[32:]), ("upper case", "Bearer " + token.upper().replace("0", "O")), ("quoted", 'Bearer "%s"' % token),
        ("with NULs", "Bearer " + token[:-1] + "\0"), ("zeros", "Bearer " + "0" * len(token)), ("7,000 letters", "Bearer " + token * 109),
        ("percent", "Bearer %25" + token[1:]), ("Token", "Token " + token), ("Digest", 'Digest username="x", response="%s"' % token))
        if "\0" not in value]
    rows += [("cookie " + kind, request("GET", "/api/v1/status", "Cookie: " + value), (401,)) for kind, value in (
        ("of another port", "calljournal-1=" + token), ("without a port", "calljournal=" + token), ("prefix", name + "=" + token[:-1]),
        ("empty", name + "="), ("quoted", '%s="%s"' % (name, token)), ("in a longer name", "x%s=%s" % (name, token)), ("no value", name),
        ("in upper case", name.upper() + "=" + token), ("of a longer name", "%s0=%s" % (name, token)), ("longer", name + "=" + token + "0"))]
    rows += [("both, the header wrong", request("GET", "/api/v1/status", "Authorization: Bearer " + "0" * len(token), cookie(target)), (401,)),
             ("two headers", request("GET", "/api/v1/status", "Authorization: Bearer x", target.bearer), (400, 401)),
             ("token in the query", request("GET", "/api/v1/lists/missed?token=" + token), (401,)),
             ("token in the path", request("GET", "/api/v1/%s/status" % token), (401, 404)),
             ("token in the body", request("POST", "/api/v1/contacts", body='{"token": "%s"}' % token), (401,)),
             ("token in a header", request("GET", "/api/v1/status", "X-Api-Token: " + token), (401,)),
             ("right token to sign in from another site", request("GET", "/?token=" + token, "Origin: http://evil.example"), (403,)),
             ("wrong token to sign in", request("GET", "/?token=" + "0" * 64), (303,)),
             ("right token to sign in", request("GET", "/?token=" + token), (303,)),
             ("header injection while signing in", request("GET", "/?token=x%0d%0aSet-Cookie:%20a=b"), REFUSED)]
    return rows


def limits(target):
    big = "a" * 9000
    return [("header of 9 KB", request("GET", "/api/v1/status", target.bearer, "X: " + big), REFUSED),
            ("header name of 9 KB", request("GET", "/api/v1/status", target.bearer, big + ": x"), REFUSED),
            ("65 headers", request("GET", "/api/v1/status", target.bearer, *["X%d: y" % each for each in range(65)]), REFUSED),
            ("10,000 headers", request("GET", "/api/v1/status", *["X%d: y" % each for each in range(10_000)]), REFUSED),
            ("header of 5 MB", request("GET", "/api/v1/status", "X: " + "a" * 5_000_000), REFUSED),
            ("address of 5 KB", request("GET", "/api/v1/lists/missed?search=" + "a" * 5000, target.bearer), REFUSED),
            ("address of 1 MB", request("GET", "/" + "a" * 1_000_000, target.bearer), REFUSED),
            ("body of 1 MB", request("PUT", "/api/v1/settings", target.bearer, body="x" * 1_000_000), REFUSED),
            ("body of 10 MB without the token", request("PUT", "/api/v1/settings", body="x" * 10_000_000), REFUSED),
            ("length of 1 TB", request("PUT", "/api/v1/settings", target.bearer).replace(b"Length: 0", b"Length: 1000000000000"), REFUSED),
            ("chunks of 10 MB", request("POST", "/api/v1/contacts", target.bearer, "Transfer-Encoding: chunked").replace(
                b"Content-Length: 0\r\n", b"") + b"8000\r\n" * 0 + (b"8000\r\n" + b"x" * 0x8000 + b"\r\n") * 320, REFUSED),
            ("body of a GET", request("GET", "/api/v1/status", target.bearer, body="x" * 300_000), REFUSED),
            ("20,000 segments", request("GET", "/a" * 20_000, target.bearer), REFUSED),
            ("1,000 parameters", request("GET", "/api/v1/calls?" + "&".join("a%d=1" % each for each in range(700)), target.bearer), (400, CLOSED)),
            ("2,000 cookies", request("GET", "/api/v1/status", "Cookie: " + "a=b;" * 2000), (401, CLOSED)),
            ("deep JSON of 250 KB", request("POST", "/api/v1/calls/import", target.bearer, body='{"calls":' + "[" * 250_000), (400, 413, 422)),
            ("number of 60,000 digits", request("POST", "/api/v1/contacts", target.bearer, body='{"office": "%s"}' % ("1" * 60_000)), (422,)),
            ("name of 60,000 letters", request("POST", "/api/v1/contacts", target.bearer, body='{"surname": "%s"}' % ("x" * 60_000)), (422,)),
            ("note of 60,000 letters", request("PUT", "/api/v1/parties/7001", target.bearer, body='{"note": "%s"}' % ("x" * 60_000)), (422,)),
            ("a path of 3,000 digits", request("GET", "/api/v1/parties/" + "1" * 3000, target.bearer), (200, 400, 404, 422)),
            ("10,000 ids", request("DELETE", "/api/v1/lists/missed", target.bearer, body='{"entryIds": [%s]}' % ",".join(['"x"'] * 10_000)), (204,)),
            ("number of 1,000 digits in JSON", request("POST", "/api/v1/calls/import", target.bearer, body='{"calls": %s}' % ("9" * 1000)), (400, 422))]


def attacks(target):
    for make in (framing, lines, paths, hosts, tokens, limits):
        for name, data, statuses in make(target):
            yield "%s: %s" % (make.__name__, name), data, statuses
