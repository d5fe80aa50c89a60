"""A third-party switch that follows the wire format and responds to MonitorStart only."""

from harness import ProgramTest
from third_party_switch import cleared, delivered

ANN = "N<4711>Ann Müller"
HARD_NAME = "Zoë \"<&>\" 山田 太郎 O'Neill"


class ThirdPartyTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.switch = self.third_party_switch()
        self.server = self.serve(self.switch.address)
        self.watcher = self.watch()
        self.switch.accept_monitor()

    def test_a_call_split_at_odd_places_is_one_missed_entry_with_a_name_of_any_characters(self):
        caller = "N<4711>" + HARD_NAME
        self.switch.send(delivered("17", caller) + cleared("17"), 1, 3, 5, 7, 2, 11, 1, 1, 97)
        item = self.change(self.watcher, "missedCallsUpdate", 0)
        self.assertEqual(item["number"], "4711")
        self.assertEqual((item["firstName"] + " " + item["surname"]).strip(), HARD_NAME)
        found = self.list("missed", "--search", "山田")
        self.assertEqual((found["items"], found["total"], found["unviewed"]), ([item], 1, 1))
        self.assertEqual(len(item["occurrences"]), 1)
        self.assertEqual(self.list("received")["total"], 0)

    def test_the_same_caller_twice_is_one_entry_with_two_calls_and_other_devices_do_not_disturb(self):
        self.switch.send(delivered("16", "N<4712>Bob").replace(b">2001<", b">2002<"))
        self.switch.misses("17", ANN)
        first = self.change(self.watcher, "missedCallsUpdate", 0)
        self.await_second_after(first)
        self.switch.misses("18", ANN)
        second = self.change(self.watcher, "missedCallsUpdate", 1)

        self.assertEqual(self.list("missed")["items"], [second])
        self.assertEqual((second["number"], second["uniqueId"]), ("4711", first["uniqueId"]))
        self.assertNotEqual(second["entryId"], first["entryId"])
        times = [occurrence["time"] for occurrence in second["occurrences"]]
        self.assertEqual(len(times), 2)
        self.assertEqual(times, sorted(times, reverse=True))
        self.assertEqual(second["occurrences"][1], first["occurrences"][0])
        self.assertEqual(self.rows(), [(second["uniqueId"], second["entryId"], 2)])
