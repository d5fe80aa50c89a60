"""A switch that is not there, comes, goes, and comes back."""

import socket
import threading
import time

from harness import IMPATIENT, ProgramTest
from third_party_switch import ThirdPartySwitch, cleared, delivered, established, log_entry


class SwitchComesAndGoesTest(ProgramTest):
    def test_every_outage_is_reported_once_and_calls_are_filed_after_each(self):
        place = socket.socket()  # its port refuses connections, and no other process can take it
        self.addCleanup(place.close)
        place.bind(("127.0.0.1", 0))
        address = "127.0.0.1:%d" % place.getsockname()[1]
        server = self.serve(address, config=IMPATIENT)
        server.logs("the switch at %s is not there: .*; trying again" % address)
        self.assertEqual(self.list("missed")["total"], 0)
        watcher = self.watch()
        # Refused attempts leave no trace; with intervals of a second at most, there are two in this time.
        threading.Event().wait(2.5)
        place.close()
        for number in ("4711", "4712", "4713"):
            simulator, _ = self.simulate('call c from %s "Caller" ; ring c ; giveup c\n' % number, listen=address)
            server.logs("connected to the switch at %s again" % address)
            self.assertEqual(self.change(watcher, "missedCallsUpdate", 0)["number"], number)
            self.assertEqual(simulator.stop(), 0)
            server.logs("the switch at %s is lost: .*; trying again" % address)
        self.assertEqual(self.list("missed")["total"], 3)
        self.assertEqual(server.count("trying again"), 4)

    def test_a_call_that_outlasts_an_outage_is_one_entry(self):
        switch = ThirdPartySwitch(self)
        self.serve(switch.address, config=IMPATIENT)
        watcher = self.watch()
        switch.accept_monitor()
        switch.peer.sendall(delivered("17", "N<4711>Ann") + established("17", "N<4711>Ann"))
        switch.accept_monitor()
        # The switch repeats an event and then continues.
        switch.peer.sendall(established("17", "N<4711>Ann") + cleared("17"))
        switch.misses("18", "N<4712>Bob")
        self.assertEqual(self.change(watcher, "missedCallsUpdate", 0)["number"], "4712")
        self.assertEqual([len(item["occurrences"]) for item in self.list("received")["items"]], [1])
        self.assertEqual(self.list("missed")["total"], 1)

    def test_the_end_waits_neither_for_responses_nor_for_the_events_of_the_switch(self):
        switch = ThirdPartySwitch(self)
        server = self.serve(switch.address, "--set", "system-identifier=2", "--set", "software-type=Norlith SIP")
        server.logs("every call is listed twice")
        switch.accept_monitor()
        switch.peer.sendall(b"".join(log_entry(0, number) for number in range(5)))
        server.logs("received call from 4")
        clients = [self.start("delete", "received", item["entryId"], "--data", self.data)
                   for item in self.list("received")["items"]]
        server.logs("sendCSTAEscapeRequest")
        switch.peer.sendall(b"".join(log_entry(1, number) for number in range(10000)))
        begin = time.monotonic()
        self.assertEqual(server.stop(), 0)
        self.assertLess(time.monotonic() - begin, 5)
        for client in clients:
            self.assertLess(client.ends(), 2)
