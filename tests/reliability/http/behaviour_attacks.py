"""Attacks that take more than one request: slow and greedy clients, event streams, guessing, and other users of the machine."""

import contextlib
import glob
import os
import re
import socket
import stat
import subprocess
import time

from attacker import CLOSED, read_responses, request
from handmade_attacks import cookie

START = b"GET /api/v1/status HTTP/1.1\r\nHost: localhost\r\n"


@contextlib.contextmanager
def clients(target, count, data, receive_buffer=0):
    """Connections that have sent the bytes and go on no further."""
    with contextlib.ExitStack() as open_clients:
        found = []
        for _ in range(count):
            client = open_clients.enter_context(socket.socket())
            if receive_buffer:
                client.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, receive_buffer)
            client.settimeout(5)
            client.connect((target.host, target.port))
            with contextlib.suppress(OSError):
                client.sendall(data)
            found.append(client)
        yield found


def held(count, data, receive_buffer=0):
    """An honest client is served while so many connections are kept in this state."""
    def attack(target):
        with clients(target, count, data(target) if callable(data) else data, receive_buffer):
            for _ in range(3):
                yield from target.faults()
                time.sleep(0.02)
    return attack


def stalled(data):
    """The connection of a client that stops within a request is closed after 15 s, as documented."""
    def attack(target):
        begin = time.monotonic()
        received, closed = target.exchange(data(target) if callable(data) else data, 20)
        if not closed or time.monotonic() - begin < 10 or received:
            yield "closed: %s, after %.1f s, with %r" % (closed, time.monotonic() - begin, received[:100])
    return attack


def trickling(target):
    """One byte every second is no way to keep a connection."""
    begin = time.monotonic()
    with target.connect() as client:
        try:
            while time.monotonic() - begin < 20:
                client.sendall(START[:1] if time.monotonic() - begin < 0.5 else b"A")
                time.sleep(0.5)
            yield "a client that sends a byte every half second keeps its connection"
        except OSError:
            pass


def never_reading(target):
    """A client that asks for much and does not read is closed, and its responses do not fill the memory."""
    many = request("GET", "/api/v1/openapi.json", target.bearer, close=False) * 500
    before = resident(target)
    with clients(target, 20, b"", 4096) as greedy:
        for client in greedy:
            client.setblocking(False)
            with contextlib.suppress(OSError):
                client.send(many)
        time.sleep(0.5)
        yield from target.faults()
        grown = resident(target) - before
        if grown > 32 * 1024:
            yield "20 clients that do not read cost %d KiB" % grown


def resident(target):
    with open("/proc/%d/status" % target.server.process.pid, encoding="ascii") as file:
        return int(re.search(r"VmRSS:\s+(\d+)", file.read()).group(1))


def stream_head(client):
    received = b""
    while b"\r\n\r\n" not in received:
        part = client.recv(4096)
        if not part:
            break
        received += part
    return int(received.split()[1]) if received else CLOSED


def streams(target):
    """The number of open event streams by the server's own count."""
    received, _ = target.exchange(request("GET", "/metrics", target.bearer))
    return int(re.search(rb'calljournal_observers\{[^}]*face="http"[^}]*\} (\d+)', received).group(1))


def await_no_stream(target):
    end = time.monotonic() + 1.0
    while (left := streams(target)) and time.monotonic() < end:
        time.sleep(0.02)
    if left:
        yield "%d closed event streams keep their places" % left


def all_streams(target):
    """128 streams are served and the next are refused; closed ones give their places back at once."""
    wanted = request("GET", "/api/v1/events", target.bearer, close=False)
    with clients(target, 134, wanted) as open_streams:
        found = [stream_head(each) for each in open_streams]
        if found.count(200) != 128 or found.count(503) != 6:
            yield "134 event streams: %d are served, %d refused" % (found.count(200), found.count(503))
        yield from target.faults()
    yield from await_no_stream(target)


def streams_in_turn(target):
    """Streams that are opened and left one after the other are all served."""
    wanted = request("GET", "/api/v1/events", target.bearer, close=False)
    found = []
    for _ in range(150):
        with clients(target, 1, wanted) as opened:
            found.append(stream_head(opened[0]))
    if set(found) != {200}:
        yield "%d of 150 event streams were refused" % sum(each != 200 for each in found)
    yield from await_no_stream(target)


def streams_that_send(target):
    """What a client sends on a stream is no request, or a later one; it never ends the server or the other streams."""
    wanted = request("GET", "/api/v1/events", target.bearer, close=False)
    with clients(target, 8, wanted) as opened:
        for client in opened:
            stream_head(client)
            with contextlib.suppress(OSError):
                client.sendall(START * 2000 + b"\r\n" + bytes(20000))
        yield from target.faults()
    yield from await_no_stream(target)


def last_event_ids(target):
    for value in ("0", "-1", "x" * 8000, "1-1", "99999999999999999999-1", "1a1fe3d4730-", "%00", "0x7-4"):
        with clients(target, 1, request("GET", "/api/v1/events", target.bearer, "Last-Event-ID: " + value, close=False)) as opened:
            if (status := stream_head(opened[0])) != 200:
                yield "Last-Event-ID %.20s: %d" % (value, status)


def guessing(target):
    """Guessed tokens are refused each time, do not tell how near they are, and lock no honest client out."""
    token = target.server.token
    for part in range(1, len(token) + 1, 3):
        wrong = token[:-part] + "".join("1" if letter == "0" else "0" for letter in token[-part:])
        yield from target.answers(request("GET", "/api/v1/lists/missed", "Authorization: Bearer " + wrong), (401,))
    raw = request("GET", "/api/v1/status", "Authorization: Bearer " + "f" * len(token), close=False)
    with target.connect() as client:
        for _ in range(30):
            client.sendall(raw)
            if stream_head(client) != 401:
                yield "a guessed token is not refused"
                break
    yield from target.faults()


def sign_in(target):
    """The cookie that the page gets is kept from scripts, other sites and the log."""
    received, _ = target.exchange(request("GET", "/?token=" + target.server.token))
    response = read_responses(received)[0]
    given = response.headers.get("set-cookie", "")
    for needed in ("HttpOnly", "SameSite=Strict", "Path=/"):
        if needed not in given:
            yield "the cookie lacks " + needed
    if response.headers.get("location") != "./" or target.server.token in response.headers.get("location", ""):
        yield "signing in leads to %s" % response.headers.get("location")
    received, _ = target.exchange(request("GET", "/?token=" + target.server.token[:-1]))
    if b"Set-Cookie" in received or target.server.token.encode() in received:
        yield "a wrong token gets the cookie"
    yield from target.answers(request("GET", "/api/v1/status", cookie(target)), (200,))


def resets(target):
    """Clients that disconnect by a reset in the middle of a response or a request."""
    for data in (START, START + b"\r\n", request("GET", "/api/v1/openapi.json", target.bearer), request("GET", "/api/v1/events", target.bearer)):
        for _ in range(20):
            with target.connect() as client:
                client.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, b"\1\0\0\0\0\0\0\0")
                client.sendall(data)
        yield from target.faults()
    yield from await_no_stream(target)


def pipelined(target):
    """A thousand requests at once are answered in order, or the connection is closed."""
    received, _ = target.exchange(request("GET", "/api/v1/settings", target.bearer, close=False) * 1000)
    if {each.status for each in read_responses(received[:received.rfind(b"HTTP/1.1")])} - {200}:
        yield "pipelined requests are refused"


def files(target):
    """Only the owner may read the files and connect to the socket, under any umask."""
    found = {os.path.basename(path): stat.S_IMODE(os.stat(path).st_mode) for path in glob.glob(os.path.join(target.data, "*"))}
    for needed in ("api-token", "api-address", "journal.db", "calljournal.sock"):
        if needed not in found:
            yield "there is no file " + needed
    for name, mode in found.items():
        if mode & 0o077 and name != "calljournal.toml":
            yield "others may use %s: %o" % (name, mode)


def command_line(target):
    """The token is in no place of /proc that others can read, and the server listens on no address but its own."""
    process = target.server.process.pid
    with open("/proc/%d/cmdline" % process, "rb") as file:
        if target.server.token.encode() in file.read():
            yield "the token is in the command line"
    sockets = {os.readlink(each)[8:-1] for each in glob.glob("/proc/%d/fd/*" % process) if os.readlink(each).startswith("socket:")}
    with open("/proc/net/unix", encoding="latin-1") as file:
        for columns in map(str.split, file):
            if columns[6] in sockets and len(columns) > 7 and columns[7].startswith("@"):
                yield "the server has the abstract socket " + columns[7]
    for table in ("tcp", "tcp6", "udp", "udp6"):
        with open("/proc/net/" + table, encoding="ascii") as file:
            for columns in map(str.split, file):
                if columns[9] in sockets and columns[3] == "0A" and not columns[1].startswith("0100007F:"):
                    yield "the server listens on %s %s" % (table, columns[1])


OTHER_USER = """
import os, socket, sys
data, pid = sys.argv[1:]
for name in ("api-token", "api-address", "journal.db", "journal.db-wal", "calljournal.sock"):
    path = os.path.join(data, name)
    for action in (lambda: open(path, "rb"), lambda: open(path, "ab"), lambda: os.remove(path), lambda: os.rename(path, path + "x"),
                   lambda: os.chmod(path, 0o666), lambda: socket.socket(socket.AF_UNIX).connect(path)):
        try:
            action()
            print(name)
        except OSError:
            pass
for path in ("/proc/%s/environ" % pid, "/proc/%s/mem" % pid, "/proc/%s/fd/0" % pid, "/proc/%s/maps" % pid):
    try:
        open(path, "rb").read(1)
        print(path)
    except OSError:
        pass
"""


def other_user(target):
    """Another user of the machine gets at no file, socket or memory of the server. Only root can play another user."""
    if os.geteuid() != 0:
        print("http-attacks: skipped: only root can play another user")
        return
    done = subprocess.run(["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "/usr/bin/python3", "-c", OTHER_USER, target.data,
                           str(target.server.process.pid)], capture_output=True, text=True)
    if done.returncode or done.stdout:
        yield "another user gets at %s%s" % (done.stdout.split(), done.stderr[-200:])


def post(target):
    return request("POST", "/api/v1/contacts", target.bearer, close=False).replace(b"Length: 0", b"Length: 100") + b"{"


def chunks(target):
    return request("POST", "/api/v1/contacts", target.bearer, "Transfer-Encoding: chunked", close=False).replace(b"Content-Length: 0\r\n", b"") + b"5\r\n12"


QUICK = {
    "200 idle clients": held(200, b""), "200 clients with half a request": held(200, START), "200 clients with half a line": held(200, b"GE"),
    "100 clients with half a body": held(100, post), "100 clients with half a chunk": held(100, chunks),
    "100 clients that ask and do not read": held(100, lambda target: request("GET", "/api/v1/openapi.json", close=False), 2048),
    "clients that never read": never_reading, "all event streams": all_streams, "event streams in turn": streams_in_turn,
    "event streams that send": streams_that_send, "ids of events": last_event_ids, "guessed tokens": guessing, "signing in": sign_in,
    "resets": resets, "1,000 requests at once": pipelined, "files and socket": files, "command line and addresses": command_line,
    "another user": other_user}
# These take the 15 s after which the server closes a connection, and are in the long form only.
SLOW = {
    "a client that says nothing": stalled(b""), "half a request line": stalled(b"GET /"), "half a header": stalled(START),
    "half a body": stalled(post), "half a chunk": stalled(chunks), "a byte every half second": trickling}
