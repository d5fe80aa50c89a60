"""One server with many lines, the simulator that plays random calls on them, and a reader of the events of all lines."""

import collections
import contextlib
import csv
import http.client
import os
import re
import shutil
import sqlite3
import tempfile
import threading
import time
from datetime import datetime

from harness import LIMIT, Program

FIRST = 20_000
LATE = 10  # seconds that the observer may need for its last events
KINDS = ("missed", "dialled", "received", "forwarded")
EVENT = re.compile(rb'event: (missed|dialled|received)CallsUpdate\ndata: \{"line":"(\w+)","action":[01],.*?"number":"([^"]*)"')


class Observer(threading.Thread):
    """Reads the events of all lines; `filed` has (time, line, list, number) of each entry that was added or changed."""

    def __init__(self, address, token):
        super().__init__(daemon=True)
        self.connection = http.client.HTTPConnection(address, timeout=LIMIT)
        self.connection.request("GET", "/api/v1/events?lines=all", headers={"Authorization": "Bearer " + token})
        self.response = self.connection.getresponse()
        self.filed, self.missed = [], False
        self.start()

    def run(self):
        rest = b""
        with contextlib.suppress(OSError, http.client.HTTPException, ValueError, AttributeError):  # the server or the owner has closed it
            while read := self.response.read1(1 << 20):
                now = time.time()
                rest += read
                whole, _, rest = rest.rpartition(b"\n\n")
                for kind, line, number in EVENT.findall(whole):
                    self.filed.append((now, line.decode(), kind.decode(), number.decode()))
                self.missed = self.missed or b"event: resync" in whole


class Run(contextlib.ExitStack):
    """Ends with all that it has started. `options` are those of `calljournal switch`."""

    def __init__(self, lines, *options, data=None):
        super().__init__()
        self.data = data or tempfile.mkdtemp(prefix="cj")
        if not data:
            self.callback(shutil.rmtree, self.data, ignore_errors=True)
        self.lines = [str(number) for number in range(FIRST, FIRST + lines)]
        self.calls_file = os.path.join(self.data, "calls.csv")
        self.switch = self.program("switch", "--listen", "127.0.0.1:0", "--lines", "%s..%s" % (self.lines[0], self.lines[-1]),
                                   "--calls-file", self.calls_file, *options)
        self.switch_address = self.switch.prints(r"switch listens on (\S+)").group(1)

    def program(self, *arguments):
        process = Program(*arguments)
        self.callback(process.stop)
        return process

    def serve(self, switch=None, *, monitored=True):
        """Starts the server; returns the seconds until it has monitored all lines (the traffic begins then) and until it was ready."""
        config = os.path.join(self.data, "calljournal.toml")
        with open(os.path.join(self.data, "lines.csv"), "w", encoding="ascii") as file:
            file.write("device\n" + "\n".join(self.lines) + "\n")
        with open(config, "w", encoding="ascii") as file:
            file.write('lines-file = "lines.csv"\n[log]\nlevel = "warning"\n')
        begin = time.monotonic()
        self.server = self.program("serve", "--data", self.data, "--config", config, "--switch", switch or self.switch_address,
                                   "--listen", "127.0.0.1:0")
        self.address = self.server.prints(r"page and API http://([^/]+)/").group(1)
        ready = time.monotonic() - begin
        with open(os.path.join(self.data, "api-token"), encoding="ascii") as file:
            self.token = file.read().strip()
        self.observer = Observer(self.address, self.token)
        while monitored and self.metric("calljournal_lines_monitored") < len(self.lines):
            time.sleep(0.02)
        return time.monotonic() - begin, ready

    def get(self, path):
        connection = http.client.HTTPConnection(self.address, timeout=LIMIT)
        with contextlib.closing(connection):
            connection.request("GET", path, headers={"Authorization": "Bearer " + self.token})
            return connection.getresponse().read().decode()

    def metric(self, name):
        """The sum of its values."""
        found = re.findall(r"(?m)^%s(?:\{[^}]*\})? (\S+)" % name, self.get("/metrics"))
        return sum(float(value) for value in found)

    def memory(self):
        """The resident memory of the server, MiB."""
        with open("/proc/%d/status" % self.server.process.pid, encoding="ascii") as file:
            return int(re.search(r"VmRSS:\s+(\d+)", file.read()).group(1)) / 1024

    def finish(self, limit):
        """Waits for the end of the traffic, and until all of it is filed and has arrived at the observer."""
        end = time.monotonic() + limit
        while not self.switch.count("traffic is over"):
            if time.monotonic() > end:
                raise AssertionError("the traffic is not over after %d s" % limit)
            time.sleep(0.05)
        played = len(self.played())
        while self.metric("calljournal_calls_filed_total") < played and time.monotonic() < end:
            time.sleep(0.05)
        end = time.monotonic() + LATE
        while len(self.observer.filed) < played and not self.observer.missed and time.monotonic() < end:
            time.sleep(0.05)

    def played(self):
        with open(self.calls_file, encoding="ascii", newline="") as file:
            return list(csv.DictReader(file))

    def faults(self, without=()):
        """What differs between the calls of the switch and the history, which is read when the server has ended; without some lines."""
        played = collections.Counter((row["device"], row["call_id"], row["result"], row["number"]) for row in self.played()
                                     if row["device"] not in without)
        self.server.stop()
        with contextlib.closing(sqlite3.connect("file:%s/journal.db?mode=ro" % self.data, uri=True)) as database:
            stored = collections.Counter(
                (line, call, "elsewhere" if elsewhere else KINDS[kind], number) for line, kind, call, number, elsewhere in database.execute(
                    "SELECT call.line, list, call_id, number, completed_elsewhere FROM call JOIN party ON party.id = party")
                if line not in without)
        for calls, word in ((played - stored, "is not in the history"), (stored - played, "is in the history and was not played so")):
            for call in list(calls)[:5]:
                yield "the call %s %s" % (call, word)
            if len(calls) > 5:
                yield "and %d more" % (len(calls) - 5)

    def latencies(self, without=()):
        """The sorted milliseconds from the end of each call to its entry at the observer, without those of some lines."""
        arrived = collections.defaultdict(collections.deque)
        for when, line, kind, number in list(self.observer.filed):
            arrived[line, kind, number].append(when)
        found = []
        for row in self.played():
            kind = "missed" if row["result"] == "elsewhere" else row["result"]
            times = arrived[row["device"], kind, row["number"]]
            if times and row["device"] not in without:
                found.append(1000 * (times.popleft() - datetime.fromisoformat(row["ended"]).timestamp()))
        return sorted(found)


def quantile(values, share):
    """In ascending order."""
    return values[min(len(values) - 1, int(share * len(values)))] if values else float("nan")
