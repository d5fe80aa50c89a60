"""Every change that a client was notified of is stored."""

import os
import signal

from harness import ProgramTest
from third_party_switch import ThirdPartySwitch

HARD_NAME = "Zoë \"<&>\" 山田 太郎 O'Neill"


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
