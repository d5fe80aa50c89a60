"""Every change that a client was notified of is stored."""

import collections
import http.client
import json
import os
import random
import signal
import sqlite3
import threading

from harness import IMPATIENT, ProgramTest
from third_party_switch import ThirdPartySwitch

HARD_NAME = "Zoë \"<&>\" 山田 太郎 O'Neill"
LISTS = ("missed", "dialled", "received", "forwarded")
# The ways into the lists; a conference files two calls.
KINDS = ['call c from {0} "N{0}" ; ring c ; wait 30ms ; giveup c', 'dial c to {0} "N{0}" ; connect c ; wait 30ms ; hangup c by called',
         'call c from {0} "N{0}" ; ring c ; wait 9ms ; answer c ; wait 30ms ; hangup c by caller',
         'call c from {0} "N{0}" ; ring c ; divert c to 205 reason noanswer ; answer c ; wait 30ms ; hangup c by caller',
         'call c from {0} "N{0}" ; ring c ; answer c ; consult d from c to 9{0} ; connect d ; join c d ; wait 30ms ; leave c ; hangup c']
PARTIES = 37  # as many that no party has two calls in one second, and no divisor of the number of kinds
KILLS = int(os.environ.get("KILLS", "20"))
SEED = int(os.environ.get("KILLS_SEED", "1"))


class DurabilityTest(ProgramTest):
    def test_an_entry_survives_a_kill_right_after_it_was_announced_and_a_clean_end(self):
        switch = ThirdPartySwitch(self)
        stored = []
        for call, caller, action in (("1", "N<4711>" + HARD_NAME, 0), ("2", "N<4712>Bob", 0), ("3", "N<4711>" + HARD_NAME, 1)):
            server = self.serve(switch.address)
            watcher = self.watch()
            switch.accept_monitor()
            switch.misses(call, caller)
            item = self.change(watcher, "missedCallsUpdate", action)
            server.stop(signal.SIGKILL)  # as a power cut would
            self.assertEqual(watcher.ends(), 1, "a watcher whose server was killed fails")
            stored = [item] + [each for each in stored if each["uniqueId"] != item["uniqueId"]]

            server = self.serve(switch.address)
            switch.accept_monitor()
            self.assertEqual(self.list("missed")["items"], stored)
            self.assertEqual(server.stop(), 0)
            self.await_second_after(item)
        self.assertEqual([(each["number"], len(each["occurrences"])) for each in stored], [("4711", 2), ("4712", 1)])
        self.assertEqual((item["firstName"] + " " + item["surname"]).strip(), HARD_NAME)
        self.assertNotIn("calljournal.sock", os.listdir(self.data))

    def test_no_call_that_was_announced_is_lost_or_doubled_by_kills_at_any_moment(self):
        dice = random.Random(SEED)
        calls = [KINDS[number % len(KINDS)].format(1000 + number % PARTIES) for number in range(PARTIES * len(KINDS))]
        switch, address = self.simulate("\n".join(calls), "--loop", "--rate", "30")
        announced = collections.Counter()
        for _ in range(KILLS):
            server = self.serve(address, "--set", "server-based-features=true", config=IMPATIENT)
            seen = [set() for _ in range(3)]
            followers = [threading.Thread(target=self.follow, args=(server, each)) for each in seen]
            for follower in followers:
                follower.start()
            threading.Event().wait(dice.uniform(0.0, 0.8))
            server.stop(signal.SIGKILL)
            for follower in followers:
                follower.join()
            announced.update(set().union(*seen))
        switch.stop()
        server = self.serve(address, config=IMPATIENT)
        entries = {name: self.get(server, "lists/%s?limit=1000" % name)["items"] for name in LISTS}
        self.assertEqual(server.stop(), 0)
        database = sqlite3.connect(os.path.join(self.data, "journal.db"))
        self.addCleanup(database.close)
        stored = database.execute("SELECT list, number, strftime('%Y-%m-%dT%H:%M:%SZ', start, 'unixepoch'), item, listed FROM call"
                                  " JOIN party ON party.id = party ORDER BY item_order DESC").fetchall()
        history = collections.Counter((LISTS[each[0]], *each[1:3]) for each in stored)
        self.assertEqual({call: history[call] for call in announced if history[call] != 1}, {}, "seed %d" % SEED)
        self.assertEqual(database.execute("SELECT call_id, party, count(*) FROM call GROUP BY 1, 2 HAVING count(*) > 1").fetchall(), [])
        for name, items in entries.items():
            for entry in items:
                rows = [each for each in stored if str(each[3]) == entry["uniqueId"]]
                shown = [(LISTS.index(name), each["number"], each["time"]) for each in entry["occurrences"]]
                self.assertEqual((shown, entry["calls"]), ([each[:3] for each in rows[:10]], len(rows)), entry)
                self.assertEqual([each[4] for each in rows], ([1] * 10 + [0] * len(rows))[:len(rows)], entry)
        self.assertGreater(len(announced), 3 * KILLS, "the clients were notified of calls")
        self.assertEqual({name for name, *_ in announced}, set(LISTS))

    def follow(self, server, calls):
        """Adds every call that the event stream reports: list, number and time."""
        try:
            with self.open(server, "events") as stream:
                for line in stream:
                    item = json.loads(line[6:]).get("item") if line.startswith(b"data: {") else None
                    if item and line.endswith(b"}\n"):
                        calls.add((item["list"], item["number"], item["time"]))
        except (OSError, http.client.HTTPException):
            pass  # the server was killed
