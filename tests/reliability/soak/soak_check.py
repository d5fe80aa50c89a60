"""Plays office traffic in accelerated time, and measures whether memory, descriptors, threads or the database grow without a reason.

A round is one hour of the traffic of a busy line: 120 calls of all kinds from 2,000 parties, and the clients of that hour: pages
and terminals that come and go, searches, exports, deletions, marks, contacts, a link to the switch that is cut. Nothing waits for the
clock, so an hour takes some seconds: "an hour" below is 120 calls with their clients, not an hour of the wall clock. All rounds play
against one server, whose lists are full and which has played four hours before.

After each hour: exactly the descriptors and threads of the settled start, and rows of the database that fit the lists. After every
third hour, the allocated memory grows by less than 0.5 % of the resident one an hour: without the caches of the database, which have a fixed size, and
measured when the link was cut and the lists were loaded anew, since loaded lists grow up to 1,000 entries. The resident memory is
judged by 1 % after 24 hours or more: it changes in steps, and hides a leak smaller than the free blocks.
"""

import atexit
import contextlib
import os
import random
import re
import sqlite3
import subprocess
import time

import rounds
import traffic
from harness import ENVIRONMENT, LIMIT
from journal import LISTS, Api, Refused, Round

CALLS, PARTS, PARTIES = 120, 6, 2000
WARM_UP, JUDGED, RESIDENT_JUDGED = 4, 3, 24  # hours
ALLOWED_SLOPE, ALLOWED_SLOPE_OF_USED = 0.01, 0.005
BYTES_PER_CALL = 1500


class Office(Round):
    """The server, its switch, and what was measured of it."""

    def __init__(self):
        super().__init__()
        self.server = self.start("--set", "server-based-features=true")
        self.switch.accept_monitor()
        self.pid = self.server.process.pid
        self.resident, self.used, self.count = [], [], 0
        api = Api(self.server)
        for page in range(16):
            calls = [{"start": "2026-01-%02dT%02d:%02d:00Z" % (1 + page, each % 24, each % 60), "list": LISTS[each % 4],
                      "number": "30%02d%03d" % (page, each), "callId": "i%d-%d" % (page, each)} for each in range(250)]
            api("POST", "calls/import", {"calls": calls})
        api.connection.close()
        dice = random.Random(-1)
        for _ in range(24):
            self.calls(dice)
        for client in CLIENTS * 3:
            client(self, dice)
        with contextlib.ExitStack() as clients:  # as many connections at once as the hours have: each worker has its own of the database
            for _ in range(8):
                api = Api(self.server)
                clients.callback(api.connection.close)
                api.connection.request("GET", "/api/v1/statistics?by=party", headers={"Authorization": "Bearer " + api.token})
        for _ in range(WARM_UP):
            self.hour(dice)
            self.cut_link(dice)
        del self.resident[:], self.used[:-1]
        self.start_counts = self.settled_counts(None)
        self.start_bytes, self.start_calls = self.database()[:2]

    def hour(self, dice):
        """The traffic of one hour; raises Refused or AssertionError if a client is not served."""
        del self.server.log[:]
        for _ in range(PARTS):
            self.calls(dice)
            for client in dice.sample(CLIENTS, 2):
                client(self, dice)
            with open("/proc/%d/status" % self.pid, encoding="ascii") as file:
                self.resident.append(int(re.search(r"VmRSS:\s+(\d+)", file.read()).group(1)))

    def calls(self, dice):
        for _ in range(CALLS // PARTS):
            self.count += 1
            number = "%d" % (5000 + dice.randrange(PARTIES))
            self.switch.peer.sendall(dice.choice(list(traffic.KINDS.values()))("c%d" % self.count, "N<%s>Party %s" % (number, number)))
        self.count += 1
        last = "4%07d" % self.count
        self.switch.peer.sendall(traffic.KINDS["missed"]("c%d" % self.count, last))
        api, end = Api(self.server), time.monotonic() + LIMIT
        while not (found := api("GET", "calls?limit=1&number=" + last)["items"]) and time.monotonic() < end:
            time.sleep(0.01)
        api.connection.close()
        if not found:
            raise AssertionError("a call is not filed")

    def cut_link(self, dice):
        """Cuts the link, which loads the lists anew, plays some calls, and notes the KiB that are allocated without those of the database."""
        self.switch.accept_monitor()
        self.calls(dice)
        api = Api(self.server)
        with api.response("GET", "/metrics") as response:
            text = response.read().decode("ascii")
        api.connection.close()
        self.used.append(float(re.search(r'^calljournal_memory_bytes{.*use="other".*} (\S+)$', text, re.MULTILINE).group(1)) / 1024)

    def counts(self):
        return len(os.listdir("/proc/%d/fd" % self.pid)), len(os.listdir("/proc/%d/task" % self.pid))

    def settled_counts(self, expected):
        """Descriptors and threads when the clients have gone; waits up to 3 s until they are as expected."""
        end = time.monotonic() + 3
        found = self.counts()
        while time.monotonic() < end and found != expected:
            time.sleep(0.1)
            found = self.counts()
            if expected is None and time.monotonic() > end - 2:
                break
        return found

    def database(self):
        """Bytes in use, calls, and the faults of its rows."""
        with sqlite3.connect(os.path.join(self.data, "journal.db"), timeout=10) as rows:
            def value(sql):
                return rows.execute(sql).fetchone()[0]
            used = (value("PRAGMA page_count") - value("PRAGMA freelist_count")) * value("PRAGMA page_size")
            calls = value("SELECT count(*) FROM call")
            faults = [text for text, sql, most in (
                ("parties without a call", "SELECT count(*) FROM party WHERE id NOT IN (SELECT party FROM call WHERE party NOTNULL UNION "
                 "SELECT connected FROM call WHERE connected NOTNULL UNION SELECT redirecting FROM call WHERE redirecting NOTNULL)", 0),
                ("live calls", "SELECT count(*) FROM live_call", 10), ("entries without a call", "SELECT count(*) FROM call_item WHERE calls = 0", 0),
                ("a list of more than 1000 entries", "SELECT max(n) FROM (SELECT count(*) AS n FROM call_item GROUP BY list)", 1000),
            ) if (value(sql) or 0) > most]
        rows.close()
        return used, calls, faults

    def page(self, dice):
        """A browser that opens the page, follows the events, reads all lists, and is closed."""
        stream, api = Api(self.server), Api(self.server)
        response = stream.response("GET", "/api/v1/events")
        if response.status != 200:
            raise AssertionError("an event stream is refused: %d" % response.status)
        for name in LISTS:
            with api.response("GET", "/api/v1/lists/%s?limit=%d" % (name, dice.choice((50,) * 9 + (1000,)))) as shown:
                shown.read()
        if dice.random() < 0.5:
            self.switch.peer.sendall(traffic.KINDS["missed"]("s%d" % dice.getrandbits(40), "N<5999>Party"))
            response.readline()
        response.close()
        stream.connection.close()
        api.connection.close()

    def terminal(self, dice):
        command = dice.choice((["list", "missed", "--limit", "50"], ["calls", "--json", "--limit", "100"], ["stats"], ["export", "--since", "1m", "--format", "csv"]))
        done = subprocess.run([os.environ["CALLJOURNAL"], *command, "--data", self.data], stdin=subprocess.DEVNULL, capture_output=True,
                              timeout=LIMIT, env=ENVIRONMENT)
        if done.returncode:
            raise AssertionError("%s: %r" % (command, done.stderr[-200:]))

    def watch(self, _):
        with subprocess.Popen([os.environ["CALLJOURNAL"], "watch", "--json", "--data", self.data], stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, env=ENVIRONMENT) as process:
            process.stdout.readline()
            process.terminate()

    def ask(self, *requests):
        api = Api(self.server)
        found = [api(*each) for each in requests]
        api.connection.close()
        return found

    def search(self, dice):
        self.ask(("GET", "calls?limit=100&search=party%%20%d" % (5000 + dice.randrange(PARTIES))), ("GET", "lists/received?search=%d" % dice.randrange(100)),
                 ("GET", "statistics?by=party"), ("GET", "statistics?by=hour&since=24h"), ("GET", "times"), ("GET", "/metrics"))

    def delete(self, dice):
        name = dice.choice(LISTS)
        items = self.ask(("GET", "lists/%s?limit=20&offset=%d" % (name, dice.randrange(500))))[0]["items"]
        for item in items[:3]:
            try:
                self.ask(("DELETE", "lists/%s/%s" % (name, item["uniqueId"])))
            except Refused as refusal:
                if refusal.status != 404:  # a call that came meanwhile may have pushed it out
                    raise
        self.ask(("DELETE", "calls?number=%d" % (5000 + dice.randrange(PARTIES))))

    def mark(self, dice):
        items = self.ask(("GET", "lists/missed?limit=50"))[0]["items"]
        self.ask(("POST", "lists/missed/viewed", {"entryIds": [each["uniqueId"] for each in dice.sample(items, min(20, len(items)))]}))

    def contact(self, dice):
        number = "%d" % (5000 + dice.randrange(PARTIES))
        made = self.ask(("POST", "contacts", {"surname": "Contact " + number, "office": number}))[0]["id"]
        self.ask(("PUT", "contacts/%s" % made, {"company": "Company"}), ("GET", "contacts?number=" + number), ("PUT", "parties/" + number, {"note": "n"}),
                 ("PUT", "parties/" + number, {"note": ""}), ("DELETE", "contacts/%s" % made))

    def export(self, _):
        page = ""
        for _ in range(3):
            part = self.ask(("GET", "calls?limit=300" + page))[0]
            page = "&cursor=" + part["next"]

    def refused(self, dice):
        for request in (("GET", "calls?since=soon"), ("DELETE", "lists/missed/none"), ("POST", "contacts", {"surname": ""}), ("GET", "nowhere")):
            try:
                self.ask(request)
                raise AssertionError("%s is not refused" % (request,))
            except Refused:
                pass


CLIENTS = [Office.page, Office.page, Office.page, Office.terminal, Office.watch, Office.search, Office.delete, Office.mark, Office.contact,
           Office.export, Office.refused]


def growth_per_hour(samples, per_hour):
    """Growth of the regression line through the second half of the samples, and four at least."""
    half = samples[-max(len(samples) // 2, 4):]
    mean_x, mean_y = (len(half) - 1) / 2, sum(half) / len(half)
    grown = sum((x - mean_x) * (y - mean_y) for x, y in enumerate(half)) / sum((x - mean_x) ** 2 for x in range(len(half)))
    return grown * per_hour


class Soak:
    def __init__(self):
        self.office, self.hours = None, 0

    def play_round(self, seed):
        if self.office is None or self.office.server.process.poll() is not None:
            self.office, self.hours = Office(), 0
            atexit.register(self.office.close)
        office = self.office
        office.hour(random.Random(seed))
        self.hours += 1
        counts = office.settled_counts(office.start_counts)
        if counts != office.start_counts:
            yield "%d descriptors and %d threads, at the start %d and %d" % (*counts, *office.start_counts)
        office.cut_link(random.Random(seed))  # its calls come last: those of the hour are filed
        used, calls, faults = office.database()
        yield from faults
        total = office.ask(("GET", "statistics"))[0]["totals"]["calls"]
        if total != calls:
            yield "%d calls in the database, %d in the statistics" % (calls, total)
        if used - office.start_bytes > max(0, calls - office.start_calls) * BYTES_PER_CALL + 256 * 1024:
            yield "the database has grown by %d bytes for %d calls" % (used - office.start_bytes, calls - office.start_calls)
        log = os.path.getsize(os.path.join(office.data, "journal.db-wal"))
        if log > 16 << 20:
            yield "the write-ahead log has %d bytes" % log
        if self.hours % JUDGED == 0:
            yield from self.judged_memory(calls, counts)

    def judged_memory(self, calls, counts):
        office = self.office
        total = sum(office.resident) / len(office.resident)
        resident, used = growth_per_hour(office.resident, PARTS) / total, growth_per_hour(office.used, 1) / total
        print("soak: %d hours, %d calls, %.1f MiB resident (%+.2f %% an hour), %.2f MiB allocated (%+.2f %% an hour), %d descriptors, "
              "%d threads" % (self.hours, calls, office.resident[-1] / 1024, resident * 100, office.used[-1] / 1024, used * 100, *counts),
              flush=True)
        if used > ALLOWED_SLOPE_OF_USED or (self.hours >= RESIDENT_JUDGED and resident > ALLOWED_SLOPE):
            yield "the memory grows after %d hours: %.2f %% an hour allocated, %.2f %% resident: %s" % (
                self.hours, used * 100, resident * 100, [int(each) for each in office.used[-60:]])


rounds.play("soak", Soak().play_round, 24)
