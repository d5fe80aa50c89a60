"""What a client was told of is stored."""

from harness import LIMIT, ProgramTest
from stranger_switch import StrangerSwitch, cleared, delivered


class DurabilityTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.switch = StrangerSwitch(LIMIT)
        self.addCleanup(self.switch.close)

    def test_an_entry_survives_a_kill_right_after_it_was_announced(self):
        told = []
        for call, caller in (("1", "N<4711>Ann"), ("2", "N<4712>Bob"), ("3", "N<4711>Ann")):
            server = self.serve(self.switch.address)
            watcher = self.watch()
            self.switch.accept_monitor()
            self.switch.send(delivered(call, caller) + cleared(call))
            item = self.change(watcher, "missedCallsUpdate", 1 if call == "3" else 0)
            server.kill()
            self.assertEqual(watcher.ends(), 1, "a watcher whose server died has failed")
            told = [item] + [each for each in told if each["uniqueId"] != item["uniqueId"]]

            server = self.serve(self.switch.address)
            self.switch.accept_monitor()
            self.assertEqual(self.list("missed")["items"], told)
            server.kill()
            self.await_second_after(item)
        self.assertEqual(sorted(row[2] for row in self.rows()), [1, 2])

    def test_a_clean_end_keeps_everything_and_leaves_no_socket(self):
        server = self.serve(self.switch.address)
        watcher = self.watch()
        self.switch.accept_monitor()
        self.switch.send(delivered("1", "N<4711>Ann") + cleared("1"))
        item = self.change(watcher, "missedCallsUpdate", 0)
        self.assertEqual(server.stop(), 0)
        self.assertEqual(watcher.ends(), 1, "a watcher whose server ends has nothing more to say")
        status, _, errors = self.run_program("list", "missed", "--data", self.data)
        self.assertEqual(status, 1)
        self.assertIn("start it with `calljournal serve`", errors)
        self.serve(self.switch.address)
        self.assertEqual(self.list("missed")["items"], [item])
