"""The switch simulator and the journal, each in its own process."""

import json
import os

from harness import ProgramTest

CALLS = """
call ann from 4711 "Ann Müller" ; ring ann ; giveup ann
call zoe from +4915550100123 "Zoë Økland" ; ring zoe ; answer zoe ; wait 100ms ; hangup zoe by caller
dial bob to 4712 "Bob Fischer" ; ring bob ; connect bob ; wait 100ms ; hangup bob
"""


class CallsTest(ProgramTest):
    def test_a_subscriber_gets_the_counts_and_the_newest_entries(self):
        self.simulate_and_serve(CALLS, "dialled Bob Fischer")
        watcher = self.start("watch", "--json", "--data", self.data)
        self.assertEqual(json.loads(watcher.prints("").string), {"event": "missedCallsCountUpdate", "data": {"count": 1}})
        data = json.loads(watcher.prints("dialledCallsUpdate").string)["data"]
        self.assertEqual((data["action"], data["item"]["number"]), (3, "4712"))

    def test_a_watcher_prints_each_change_as_it_comes(self):
        _, address = self.simulate(CALLS, "--loop")
        self.serve(address)
        people = self.start("watch", "--data", self.data)
        people.prints("new missed call")
        watcher = self.watch()
        first = self.change(watcher, "missedCallsUpdate", 1)
        self.assertEqual(self.change(watcher, "receivedCallsUpdate", 1)["surname"], "Zoë Økland")
        self.assertEqual(self.change(watcher, "dialledCallsUpdate", 1)["number"], "4712")
        again = self.change(watcher, "missedCallsUpdate", 1)
        self.assertEqual(again["uniqueId"], first["uniqueId"])
        self.assertGreater(again["entryId"], first["entryId"])
        people.prints(r"^\d\d:\d\d:\d\d  missed call from Ann Müller \(4711\)$")
        people.prints(r"^\d\d:\d\d:\d\d  received call from Zoë Økland \(\+4915550100123\), 00:0\d$")

    def test_the_demo_shows_calls_and_ends_with_its_switch(self):
        demo = self.start("demo", "--data", self.data, "--listen", "127.0.0.1:0")
        switch = int(demo.prints(r"of a simulated switch at \S+ \(process (\d+)\)").group(1))
        demo.prints("list missed --data " + self.data)
        demo.prints(r"missed call from Ann Müller \(4711\)")
        self.assertGreaterEqual(self.list("missed")["total"], 1)
        self.assertEqual(demo.stop(), 0)
        with self.assertRaises(ProcessLookupError):
            os.kill(switch, 0)
