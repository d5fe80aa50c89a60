"""What a client was told of is stored."""

import os

from harness import ProgramTest


class DurabilityTest(ProgramTest):
    def serve_and_miss(self, call, caller, action):
        """A server that has announced this missed call, the watcher that it has told, and what."""
        server = self.serve(self.switch.address)
        watcher = self.watch()
        self.switch.accept_monitor()
        self.switch.misses(call, caller)
        return server, watcher, self.change(watcher, "missedCallsUpdate", action)

    def test_an_entry_survives_a_kill_right_after_it_was_announced(self):
        self.switch = self.third_party_switch()
        told = []
        for call, caller in (("1", "N<4711>Ann"), ("2", "N<4712>Bob"), ("3", "N<4711>Ann")):
            server, watcher, item = self.serve_and_miss(call, caller, 1 if call == "3" else 0)
            server.kill()
            self.assertEqual(watcher.ends(), 1, "a watcher whose server died has failed")
            told = [item] + [each for each in told if each["uniqueId"] != item["uniqueId"]]

            server = self.serve(self.switch.address)
            self.switch.accept_monitor()
            self.assertEqual(self.list("missed")["items"], told)
            server.stop()
            self.await_second_after(item)
        self.assertEqual(sorted(row[2] for row in self.rows()), [1, 2])

    def test_a_clean_end_keeps_everything_and_leaves_no_socket(self):
        self.switch = self.third_party_switch()
        server, watcher, item = self.serve_and_miss("1", "N<4711>Ann", 0)
        self.assertEqual(server.stop(), 0)
        self.assertEqual(watcher.ends(), 1, "a watcher whose server ends has nothing more to say")
        self.assertNotIn("calljournal.sock", os.listdir(self.data))
        self.assertIn("start it with `calljournal serve`", self.refused("list", "missed"))
        self.serve(self.switch.address)
        self.assertEqual(self.list("missed")["items"], [item])
