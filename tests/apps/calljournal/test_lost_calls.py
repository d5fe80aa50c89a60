"""Calls that begin or end while the link is down, or while the program is not running."""

import signal
import threading

from harness import IMPATIENT, ProgramTest
from third_party_switch import ThirdPartySwitch, cleared, conferenced, delivered, dialled, established, marked_missed, transferred

ANN, BOB = "N<4711>Ann", "N<4712>Bob"
LINK, PROGRAM, STATUS = "link", "program", "status"
RINGS, TALKS = ("alerting", "connected"), ("connected", "connected")

# What happens before the gap, the gap, the calls of the switch after it (None: it has no such service), what happens then, and the
# entries; "~" marks an end that is only approximate; the setting of the case, if any.
CASES = [
    (delivered("17", ANN) + established("17", ANN), LINK, {}, b"", ["received 4711~"]),
    (delivered("17", ANN) + established("17", ANN), PROGRAM, {}, b"", ["received 4711~"]),
    (delivered("17", ANN) + established("17", ANN), PROGRAM, {"17": (*TALKS, ANN)}, cleared("17"), ["received 4711"]),
    (delivered("17", ANN) + established("17", ANN), PROGRAM, None, cleared("17"), ["received 4711"]),
    (delivered("17", ANN), LINK, {"17": (*TALKS, ANN)}, cleared("17"), ["received 4711"]),
    (delivered("25", ANN), LINK, None, delivered("25", BOB) + cleared("25"), ["missed 4712", "missed 4711~"]),
    # A switch that uses the id of a call again whose end was lost, and one that has no call ids.
    (delivered("25", ANN) + established("25", ANN), LINK, None, delivered("25", ANN) + cleared("25"), ["missed 4711", "received 4711~"]),
    (dialled("25", ANN), LINK, None, delivered("25", BOB) + cleared("25"), ["missed 4712", "dialled 4711~"]),
    (delivered("", ANN) + established("", ANN), LINK, None, delivered("", BOB) + cleared(""), ["missed 4712", "received 4711~"]),
    (delivered("25", ANN), PROGRAM, {"25": (*RINGS, BOB)}, cleared("25"), ["missed 4712", "missed 4711~"]),
    (delivered("17", ANN) + established("17", ANN), STATUS, {"17": (*TALKS, ANN)}, cleared("17"), ["received 4711"]),
    (delivered("17", ANN), STATUS, {}, b"", ["missed 4711~"]),
    (dialled("17", ANN), PROGRAM, None, cleared("17"), ["dialled 4711"]),
    (delivered("17", ANN) + established("17", ANN) + transferred("17", ANN, "18", BOB), PROGRAM, None, cleared("18"),
     ["received 4712", "received 4711"]),
    (dialled("17", ANN) + transferred("17", ANN, "18", BOB), PROGRAM, {"18": (*TALKS, BOB)}, cleared("18"),
     ["dialled 4712", "dialled 4711"]),
    (delivered("17", ANN) + marked_missed("17"), PROGRAM, None, cleared("17"), ["missed 4711"], "system-identifier=1"),
    (delivered("17", ANN) + established("17", ANN) + dialled("18", BOB) + conferenced("19", ("17", "4711"), ("18", "4712")),
     PROGRAM, {"19": (*TALKS, ANN)}, cleared("19"), ["received 4711", "dialled 4712"]),
    (delivered("17", ANN) + established("17", ANN) + dialled("18", BOB) + conferenced("19", ("17", "4711"), ("18", "4712")),
     STATUS, {}, b"", ["received 4711~", "dialled 4712~"]),
    (b"", LINK, {"30": (*RINGS, ANN), "31": (*TALKS, BOB)}, cleared("30") + cleared("31"), ["missed 4711", "received 4712"]),
]


class LostCallsTest(ProgramTest):
    def check(self, software_type):
        for before, gap, calls, after, expected, *settings in CASES:
            with self.subTest(gap=gap, expected=expected):
                switch = ThirdPartySwitch(self)
                options = [word for setting in ["software-type=" + software_type, *settings] for word in ("--set", setting)]
                server = self.serve(switch.address, *options, config=IMPATIENT)
                switch.synchronise({})
                switch.peer.sendall(before)
                if before:
                    self.await_value(1, lambda: self.get(server, "status")["calls"])
                if gap == PROGRAM:
                    threading.Event().wait(0.5)  # the time after which a call is noted
                    server.stop(signal.SIGKILL)
                    server = self.serve(switch.address, *options, config=IMPATIENT)
                elif gap == STATUS:  # on which the journal drops its calls
                    switch.report_status("initializing")
                    switch.report_status("normal")
                switch.synchronise(calls, accept=gap != STATUS)
                switch.peer.sendall(after)
                self.await_value(expected, lambda: self.entries(server))
                self.await_value(0, lambda: self.get(server, "status")["calls"])
                self.done("delete", "missed", "--all")
                self.done("delete", "received", "--all")
                self.done("delete", "dialled", "--all")
                self.assertEqual(server.stop(), 0)

    def entries(self, server):
        texts = []
        for name in ("missed", "received", "dialled"):
            for item in self.get(server, "lists/" + name)["items"]:
                for call in item["occurrences"]:
                    texts.append("%s %s%s" % (name, call["number"], "~" if call.get("endApproximate") else ""))
        return texts

    def test_no_call_of_a_qorvex_phone_is_lost(self):
        self.check("Norlith Qorvex")

    def test_no_call_of_a_sip_phone_is_lost(self):
        self.check("Norlith SIP")
