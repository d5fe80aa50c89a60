"""Every change that a client was notified of is stored."""

import os

from harness import ProgramTest


class DurabilityTest(ProgramTest):
    def serve_and_miss(self, call, caller, action):
        """A server that has announced this missed call, the watcher that was notified, and the item."""
        server = self.serve(self.switch.address)
        watcher = self.watch()
        self.switch.accept_monitor()
        self.switch.misses(call, caller)
        return server, watcher, self.change(watcher, "missedCallsUpdate", action)

    def test_an_entry_survives_a_kill_right_after_it_was_announced(self):
        self.switch = self.third_party_switch()
        stored = []
        for call, caller in (("1", "N<4711>Ann"), ("2", "N<4712>Bob"), ("3", "N<4711>Ann")):
            server, watcher, item = self.serve_and_miss(call, caller, 1 if call == "3" else 0)
            server.kill()
            self.assertEqual(watcher.ends(), 1, "a watcher whose server was killed fails")
            stored = [item] + [each for each in stored if each["uniqueId"] != item["uniqueId"]]

            server = self.serve(self.switch.address)
            self.switch.accept_monitor()
            self.assertEqual(self.list("missed")["items"], stored)
            server.stop()
            self.await_second_after(item)
        self.assertEqual(sorted(row[2] for row in self.rows()), [1, 2])

    def test_a_clean_end_keeps_everything_and_leaves_no_socket(self):
        self.switch = self.third_party_switch()
        server, watcher, item = self.serve_and_miss("1", "N<4711>Ann", 0)
        self.assertEqual(server.stop(), 0)
        self.assertEqual(watcher.ends(), 1, "a watcher whose server has ended fails")
        self.assertNotIn("calljournal.sock", os.listdir(self.data))
        self.assertIn("start it with `calljournal serve`", self.refused("list", "missed"))
        self.serve(self.switch.address)
        self.assertEqual(self.list("missed")["items"], [item])
