"""Every stored call is shown to every reader, until it is deleted; then no file has it."""

import contextlib
import importlib.machinery
import importlib.util
import itertools
import json
import os
import pathlib
import shutil
import sqlite3
import tempfile
import threading
import time

from harness import IMPATIENT, Program, ProgramTest
from third_party_switch import ThirdPartySwitch, cleared, delivered, dialled, log_entry

TOOL = importlib.machinery.SourceFileLoader("make_history", str(pathlib.Path(__file__).parents[3] / "tools/make-history"))
make_history = importlib.util.module_from_spec(importlib.util.spec_from_loader("make_history", TOOL))
TOOL.exec_module(make_history)

READS = int(os.environ.get("READS", "100"))
NOW = int(time.time())
DAY = 86400
ANN, BOB, CAL, DAN = ("3090187201", "Quillfeather"), ("3090187202", "Brambleworth"), ("3090187203", "Cranmerfield"), ("3090187204", "Dunwoodie")
# List, party, start of the oldest call, number of calls an hour apart, and if they are in an entry.
STORED = [(0, ANN, NOW - 3 * DAY, 12, True), (0, BOB, NOW - DAY // 2, 1, True), (0, CAL, NOW - DAY // 3, 1, False), (1, ANN, NOW - 3 * DAY, 1, True)]
FULL = [(0, ANN, NOW - 3 * DAY, 12, True)] + [(0, (str(5000 + each), "X"), NOW - DAY + each, 1, True) for each in range(999)]
ALL = "dialled A, missed (C), missed A*12, missed B"
BACK = dict(zip((number for number, _ in (ANN, BOB, CAL, DAN)), "ABCD"))


def setting(key, value):
    return lambda test: test.done("settings", key, value)


def sends(*events):
    return lambda test: test.switch.peer.sendall(b"".join(events))


def misses(caller, call="77"):
    return sends(delivered(call, "N<%s>%s" % caller), cleared(call))


def http(method, path):
    return lambda test: test.open(test.server, path, method).close()


# The way out, options of the server, the action, and the calls that stay: in an entry, (without one), and called back!
DELETIONS = [
    ("one", "", http("DELETE", "lists/missed/1"), "dialled A, missed (C), missed B"),
    ("several", "", http("DELETE", "lists/missed?entryIds=1,2"), "dialled A, missed (C)"),
    ("call without entry", "", http("DELETE", "calls/14"), "dialled A, missed A*12, missed B"),
    ("filtered", "", lambda test: test.done("delete", "--until", make_history.text_of(NOW - 3 * DAY + 5 * 3600), "--list", "missed"),
     "dialled A, missed (C), missed A*7, missed B"),
    ("all", "", lambda test: test.done("delete", "missed", "--all"), "dialled A"),
    ("number", "", lambda test: test.done("delete", "--number", ANN[0]), "missed (C), missed B"),
    ("clear-calllog", "", setting("clear-calllog", "true"), ""),
    ("call-log-enabled", "", setting("call-log-enabled", "false"), ""),
    ("switch", "system-identifier=2", sends(log_entry(1, int(BOB[0]), "delete", make_history.text_of(NOW - DAY // 2))), "dialled A, missed (C), missed A*12"),
    ("retention", "keep", lambda test: test.server.logs("13 calls are older than 1 days and are deleted"), "missed (C), missed B"),
    ("11th", "", misses(ANN), "dialled A, missed (C), missed A*13, missed B"),
    ("called back", "", lambda test: (setting("delete-missed-when-called", "1")(test), sends(dialled("78", ANN[0]), cleared("78"))(test)),
     "dialled A*2, missed (A*12!), missed (C), missed B"),
    ("load and log-off", "", lambda test: (test.watch().stop(), setting("mobility-user-data-update", "all")(test)), ALL),
]


class HistoryTest(ProgramTest):
    def fill(self, stored):
        """A new data directory with these calls."""
        self.data = tempfile.mkdtemp(prefix="cj")
        self.addCleanup(shutil.rmtree, self.data)
        database = make_history.open_database(pathlib.Path(self.data, "journal.db"))
        parties = {party: at for at, party in enumerate(dict.fromkeys(each[1] for each in stored), 1)}
        make_history.insert(database, "party", make_history.party_rows("2001", [(number, name, "") for number, name in parties]))
        ids = itertools.count(1)
        for item, (kind, party, start, count, listed) in enumerate(stored, 1):
            newest = make_history.text_of(start + (count - 1) * 3600)
            if listed:
                make_history.insert(database, "call_item", [{"id": item, "line": "2001", "list": kind, "sort_key": newest, "entry_id": "%s%08X" % (newest, item),
                                                             "surname": party[1], "group_by": party[0] if kind == 1 else ""}])
            make_history.insert(database, "call", [
                {"id": next(ids), "line": "2001", "list": kind, "item": item if listed else None, "item_order": at, "listed": int(listed and count - at <= 10),
                 "call_id": "s%d-%d" % (item, at), "start": start + at * 3600, "time_and_date": make_history.text_of(start + at * 3600), "duration_text": "00:00",
                 "party": parties[party], "established": None, "ended": None, "called_back_at": None, "connected": None, "redirecting": None} for at in range(count)])
        database.close()

    def calls(self):
        database = sqlite3.connect(os.path.join(self.data, "journal.db"))
        rows = database.execute("SELECT list, number, count(*), item IS NULL, called_back_at IS NOT NULL, sum(listed), (SELECT calls FROM call_item WHERE id = item)"
                                " FROM call JOIN party ON party.id = party GROUP BY list, party, item, called_back_at").fetchall()
        database.close()
        texts = []
        for kind, number, count, left, back, listed, stated in rows:
            text = BACK.get(number, number) + ("*%d" % count if count > 1 else "") + "!" * back
            texts.append(("missed", "dialled", "received", "forwarded")[kind] + " " + ("(%s)" % text if left else text))
            if not left:
                self.assertEqual((listed, stated), (min(count, 10), count), text)
        return ", ".join(sorted(texts))

    def find(self, texts):
        """Which of the texts are in files of the data directory."""
        found = []
        for name in os.listdir(self.data):
            path = os.path.join(self.data, name)
            content = pathlib.Path(path).read_bytes().lower() if os.path.isfile(path) else b""
            found += [name + " has " + text for text in texts if text.lower().encode() in content]
        return found

    def test_a_call_leaves_the_history_when_it_is_deleted_only_and_leaves_no_byte(self):
        for name, option, action, expected in DELETIONS:
            with self.subTest(name):
                self.fill(STORED)
                self.switch = ThirdPartySwitch(self)
                self.server = self.serve(self.switch.address, *(["--set", option] if "=" in option else []),
                                         config=IMPATIENT + ("[data]\nkeep-days = 1\n" if option == "keep" else ""))
                self.switch.accept_monitor()
                action(self)
                self.await_value(expected, self.calls)
                gone = [text for party in (ANN, BOB, CAL) if BACK[party[0]] not in expected for text in party]
                self.await_value([], lambda: self.find(gone))
                self.assertEqual(self.server.stop(), 0)
                self.assertEqual((self.calls(), self.find(gone)), (expected, []))

    def test_600_missed_callers_stay_600_for_every_reader_at_any_time(self):
        callers = "".join('call c from %d "N%d" ; ring c ; giveup c\n' % (10000 + each, each) for each in range(600))
        # Dialled and forwarded calls of one second are several calls.
        more = 'repeat 60\ndial d to 4711 "Ann" ; connect d ; hangup d by called\nend\n'
        more += 'repeat 15\ncall f from anonymous ; ring f ; divert f to 205 reason noanswer ; answer f ; hangup f by caller\nend\n'
        # Missed and then forwarded within five seconds: one call.
        more += 'call a from 4798 ; ring a ; giveup a\ncall b from 4798 ; ring b ; divert b to 205 reason noanswer ; answer b ; hangup b by caller\n'
        simulator, address = self.simulate(callers + more + 'call l from 4799 "Last" ; ring l ; answer l ; hangup l by caller', "--rate", "1000")
        self.server = self.serve(address, "--set", "server-based-features=true")
        self.server.logs("received call from Last")
        simulator.stop()
        for name, calls in (("dialled", [60]), ("forwarded", [1, 15])):
            self.assertEqual([each["calls"] for each in self.list(name)["items"]], calls)
        self.assertRegex(self.done("show", self.list("dialled")["items"][0]["uniqueId"]), r"Calls +60\n")
        self.check_600()
        self.counts = set()
        subscribing = threading.Event()
        subscribers = [threading.Thread(target=self.subscribe, args=(subscribing,)) for _ in range(20)]
        for subscriber in subscribers:
            subscriber.start()
        for _ in range(READS):
            page = self.get(self.server, "lists/missed?limit=5")
            self.assertEqual((page["total"], page["unviewed"], len(page["items"])), (600, 600, 5))
        self.check_600()
        subscribing.set()
        for subscriber in subscribers:
            subscriber.join()
        self.assertEqual(self.counts, {"600"})
        simulator, address = self.simulate(callers.replace("giveup c", "answer c ; hangup c by caller"), "--rate", "1000")
        self.assertEqual(self.server.stop(), 0)
        self.server = self.serve(address)
        self.server.logs("received call from N599")
        self.check_600()
        self.done("delete", "missed", "--all")
        self.assertNotIn("missed", self.calls())
        self.assertEqual(self.list("missed")["total"], 0)

    def check_600(self):
        whole = self.list("missed", "--limit", "1000")
        self.assertEqual((whole["total"], whole["unviewed"], len(whole["items"])), (600, 600, 600))
        self.assertEqual((self.calls().count("missed"), self.get(self.server, "lists/missed?offset=700")["total"]), (600, 600))
        self.assertEqual(self.list("missed", "--search", "n59")["total"], 11)
        self.assertEqual(len(json.loads(self.done("export", "missed", "--format", "json"))["items"]), 600)
        self.assertEqual(self.get(self.server, "status")["lists"]["missed"], {"total": 600, "unviewed": 600})

    def subscribe(self, ended):
        """Subscribes again and again, as an observer and to the event stream, and checks the count that it is told."""
        while not ended.is_set():
            with self.open(self.server, "events"):
                watcher = Program("watch", "--json", "--data", self.data)
                self.counts.add(watcher.prints('"missedCallsCountUpdate","data":{"count":([0-9]+)').group(1))
                watcher.stop()

    def test_the_calls_of_the_1001st_entry_stay(self):
        self.fill(FULL)
        self.switch = ThirdPartySwitch(self)
        self.server = self.serve(self.switch.address)
        self.switch.accept_monitor()
        misses(DAN)(self)
        self.await_value(["missed (A*12)", "missed D"], lambda: [each for each in self.calls().split(", ") if each[-1] in "AD)"])
        page = self.get(self.server, "lists/missed?limit=1")
        self.assertEqual(page["total"], 1000)
        # The page that was served is not served again after a change by another process.
        with contextlib.closing(sqlite3.connect(os.path.join(self.data, "journal.db"), timeout=30)) as other, other:
            other.execute("UPDATE call_item SET viewed = 1 WHERE list = 0")
        self.assertEqual((page["unviewed"] > 0, self.get(self.server, "lists/missed?limit=1")["unviewed"]), (True, 0))

    def test_changes_at_the_same_time_lose_and_double_no_call(self):
        self.fill([(0, ANN, NOW - 3 * DAY, 12, True), (2, ANN, NOW - 2 * DAY, 3, True)])
        self.switch = ThirdPartySwitch(self)
        self.server = self.serve(self.switch.address)
        self.switch.accept_monitor()
        misses(ANN)(self)
        self.await_value("missed A*13, received A*3", self.calls)
        # Between the calls of the entries, and newer than they are.
        exported = [json.loads(line) for line in self.done("export", "--format", "jsonl").splitlines()]
        added = [dict(call, id=0, callId="i%d" % at, start=make_history.text_of(NOW + at - 1800 - (at % 2) * 2 * DAY), answered=None, ended=None)
                 for at, call in enumerate(exported[:2] + exported[-4:-2])]
        path = os.path.join(self.data, "added.jsonl")
        pathlib.Path(path).write_text("".join(json.dumps(call) + "\n" for call in added))
        self.done("import", path)
        counts = {"missed": 13, "received": 3}
        for call in added:
            counts[call["list"]] += 1
        self.await_value("missed A*%(missed)d, received A*%(received)d" % counts, self.calls)
        deleted = [call["id"] for call in exported if call["list"] == "missed"][2:9]
        self.await_second_after(self.list("missed")["items"][0])
        threads = [threading.Thread(target=http("DELETE", "calls/%d" % each), args=(self,)) for each in deleted]
        for thread in threads:
            thread.start()
        misses(ANN, "78")(self)
        for thread in threads:
            thread.join()
        counts["missed"] -= len(deleted) - 1
        self.await_value("missed A*%(missed)d, received A*%(received)d" % counts, self.calls)
        self.assertEqual(self.server.stop(), 0)
        self.server = self.serve(self.switch.address)
        self.assertEqual({call["id"] for call in self.get(self.server, "calls?limit=1000")["items"]} & set(deleted), set())
