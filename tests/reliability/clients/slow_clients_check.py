"""Files calls while clients stand there that never read: 50 of the socket, 50 event streams, 2,000 idle connections, and the log.

A round sends calls at the same pace several times, without and with these clients. With them the calls are filed at 0.9 of the rate
without them at least, a client with the token is answered within two seconds, and the memory does not grow beyond a bound. Clients of
the socket that do not take their notifications are disconnected at 4 MiB (in each tenth round). When all are gone, their places and
descriptors are free at once.
"""

import contextlib
import os
import re
import resource
import signal
import socket
import struct
import threading
import time

import rounds
from harness import IMPATIENT, LIMIT
from journal import Api, Round
from third_party_switch import cleared, delivered

CALLS = 30              # of each measurement
PACE = 0.04             # seconds between two calls
PAIRS = 2               # measurements without and with the clients
CLIENTS = 50            # of the socket, and as many streams
FLOODED = 4             # clients of the socket that get more than they may leave
FLOOD_EVERY = 10        # rounds
MOST_CALLS = 5000       # until they are disconnected
IDLE = 2000
LEAST_RATE = 0.9
MOST_GROWTH = 256       # MiB: the clients of the socket have 4 MiB each
SUBSCRIBE = b"Q\0\0\0\1<JournalRequest><Method>25</Method></JournalRequest>"


class Follower:
    """A client of the event stream that reads, and counts the missed calls."""

    def __init__(self, server):
        self.filed, self.changed = 0, threading.Condition()
        self.stream = Api(server).response("GET", "/api/v1/events")
        threading.Thread(target=self.read, daemon=True).start()

    def read(self):
        with contextlib.suppress(OSError, ValueError):
            for line in self.stream:
                if line.startswith(b"event: missedCallsUpdate"):
                    with self.changed:
                        self.filed += 1
                        self.changed.notify_all()

    def await_calls(self, count):
        with self.changed:
            if not self.changed.wait_for(lambda: self.filed >= count, LIMIT):
                raise AssertionError("%d of %d calls are filed after %d s" % (self.filed, count, LIMIT))


class SlowClients(contextlib.ExitStack):
    """The clients that do not read. They disconnect at the end."""

    def __init__(self, server):
        super().__init__()
        host, port = server.http.split(":")
        request = "GET /api/v1/events HTTP/1.1\r\nHost: localhost\r\nAuthorization: Bearer %s\r\n\r\n" % server.token
        for _ in range(CLIENTS):
            self.enter_context(subscribe(server))
            stream = self.enter_context(socket.socket())
            stream.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)
            stream.connect((host, int(port)))
            stream.sendall(request.encode("ascii"))
        for _ in range(IDLE):
            self.enter_context(socket.create_connection((host, int(port))))


def subscribe(server):
    """A client of the socket that reads nothing after the response to its subscription."""
    client = socket.socket(socket.AF_UNIX)
    client.settimeout(LIMIT)
    client.connect(os.path.join(server.data, "calljournal.sock"))
    client.sendall(struct.pack(">I", len(SUBSCRIBE)) + SUBSCRIBE)
    while b"<Result>" not in (read := client.recv(65536)):
        if not read:
            raise AssertionError("a subscription is refused")
    return client


def observers(server):
    """The connected observers as the program counts them: {"http": streams, "remote": clients of the socket}."""
    with Api(server).response("GET", "/metrics") as response:
        text = response.read().decode("utf-8")
    return {face: int(count) for face, count in re.findall(r'^calljournal_observers{.*face="(\w+)".*} (\d+)', text, re.MULTILINE)}


def await_observers(server, expected):
    deadline = time.monotonic() + 5
    while (found := observers(server)) != expected:
        if time.monotonic() > deadline:
            raise AssertionError("observers %s instead of %s" % (found, expected))
        time.sleep(0.02)


def memory(server):
    """The resident memory in MiB."""
    with open("/proc/%d/status" % server.process.pid, encoding="ascii") as status:
        return int(re.search(r"VmRSS:\s+(\d+)", status.read()).group(1)) / 1024


def descriptors(server):
    return len(os.listdir("/proc/%d/fd" % server.process.pid))


def descriptors_left(server, expected):
    """The open descriptors, as soon as they are at most the expected ones: a connection is closed a moment after its client."""
    limit = time.monotonic() + 10
    while (left := descriptors(server)) > expected and time.monotonic() < limit:
        time.sleep(0.05)
    return left


def file_calls(play, follower, first):
    """Files the next calls; returns how many a second."""
    begin = time.monotonic()
    for number in range(first, first + CALLS):
        play.call("missed", "c%d" % number, "49%05d" % number)
        time.sleep(max(0.0, begin + (number - first + 1) * PACE - time.monotonic()))
    follower.await_calls(first + CALLS)
    return CALLS / (time.monotonic() - begin)


def flood(play, server, follower):
    """Files calls whose notifications are long, until the clients that do not read are disconnected; returns how many calls."""
    with contextlib.ExitStack() as stack:
        for _ in range(FLOODED):
            stack.enter_context(subscribe(server))
        filed = follower.filed
        for number in range(MOST_CALLS):
            name = "N<48%05d>%s" % (number, "n" * 1000)
            play.switch.peer.sendall(delivered("f%d" % number, name) + cleared("f%d" % number))
            if number % 20 == 19:
                follower.await_calls(filed + number + 1)
                if observers(server)["remote"] == 0:
                    return number + 1
    raise AssertionError("clients that do not read are connected after %d calls" % MOST_CALLS)


def discard(peer):
    with contextlib.suppress(OSError):
        while peer.recv(65536):
            pass


def unread_pipe(play):
    """The path of a pipe for the log, which takes 64 KiB and never more. The log has every detail, so that its queue overflows."""
    with open(os.path.join(play.data, "calljournal.toml"), "w", encoding="ascii") as file:
        file.write(IMPATIENT + '[log]\nlevel = "trace"\n')
    path = os.path.join(play.data, "log")
    os.mkfifo(path)
    play.callback(os.close, os.open(path, os.O_RDWR))
    return path


def play_round(seed):
    faults = []
    with Round() as play:
        server = play.start(wrapper=["sh", "-c", 'log=$1 && shift && exec "$@" 2> "$log"', "sh", unread_pipe(play)])
        play.switch.synchronise({})
        threading.Thread(target=discard, args=(play.switch.peer,), daemon=True).start()
        follower = Follower(server)
        await_observers(server, {"http": 1, "remote": 0})
        memory_before, descriptors_before = memory(server), descriptors(server)
        without, beside, slowest, filed = 0, 0, 0, 0
        for _ in range(PAIRS):
            without = max(without, file_calls(play, follower, filed))
            filed += CALLS
            with SlowClients(server):
                await_observers(server, {"http": 1 + CLIENTS, "remote": CLIENTS})
                beside = max(beside, file_calls(play, follower, filed))
                filed += CALLS
                begin = time.monotonic()
                Api(server)("GET", "status")
                slowest = max(slowest, time.monotonic() - begin)
                growth = memory(server) - memory_before
            await_observers(server, {"http": 1, "remote": 0})
            await_observers(server, {"http": 1, "remote": 0})
        if beside < LEAST_RATE * without:
            faults.append("%.0f calls a second beside slow clients, %.0f without" % (beside, without))
        if slowest > 2:
            faults.append("a client waits %.1f s" % slowest)
        if growth > MOST_GROWTH:
            faults.append("the memory grows by %.0f MiB" % growth)
        left = descriptors_left(server, descriptors_before + 4) - descriptors_before
        if left > 4:
            faults.append("%d descriptors more are open" % left)
        if seed % FLOOD_EVERY == 0:
            flood(play, server, follower)
        if server.end(signal.SIGTERM) != 0:
            faults.append("the program does not end cleanly")
    return faults


if __name__ == "__main__":
    resource.setrlimit(resource.RLIMIT_NOFILE, (8192, resource.getrlimit(resource.RLIMIT_NOFILE)[1]))
    rounds.play("slow-clients", play_round, 1)
