"""Every scenario of examples/scenarios, played by the simulated switch on both kinds of phone: the lists are those of
docs/call-filing.md. The runs of one kind of phone are concurrent, because they spend nearly all of their time waiting."""

import concurrent.futures
import json
import os
import re
import unittest
import urllib.request

import harness

SCENARIOS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "..", "examples", "scenarios")
QORVEX, SIP = "Norlith Qorvex", "Norlith SIP"
LISTS = ("missed", "dialled", "received", "forwarded", "callbacks")

CONFIGURATION = """
[line]
device = "2001"
[[line.shared]]
device = "2050"
log-missed-calls = true
[[line.shared]]
device = "2051"
log-missed-calls = false
[management]
"server-based-features" = "true"
"""

# What the journal holds after a scenario: each occurrence "LIST NUMBER NAME [DURATION] [by REDIRECTING] [to CONNECTED]", newest first in
# its list, durations as T. A pair stands for the two kinds of phone; a single list for both.
ANN, BOB, CARL = "4711 Ann Müller", "4712 Bob Fischer", "4713 Carl Weiss"
EXPECTED = {
    "anonymous": ["missed Withheld"],
    "answered": ["received 4712 Zoë Økland T"],
    "callback": ["dialled " + CARL, "dialled " + BOB, "callback 4714 Dora Lind onRequest"],
    "conference": ["dialled %s T" % BOB, "received %s T" % ANN],
    "conference-left": ["dialled %s T" % BOB, "received %s T" % ANN],
    "dialled": ["dialled %s T" % BOB],
    "dialled-busy": ["dialled " + BOB],
    "dialled-forwarded": (["dialled %s T by 4712" % BOB], ["dialled %s T" % BOB]),
    "dialled-noanswer": ["dialled " + BOB],
    "elsewhere": ["missed 4730 Team line"],
    "forwarded-always": (["forwarded %s to 205" % ANN], []),
    "forwarded-busy": (["received 4712 Zoë Økland T", "forwarded %s to 205" % ANN], ["received 4712 Zoë Økland T"]),
    "forwarded-noreply": (["forwarded %s to 205" % ANN], []),
    "held": ["received %s T" % ANN],
    "late-name": ["missed " + ANN],
    "lost-link": ["missed " + BOB, "received %s T" % ANN],
    "missed": ["missed " + ANN],
    "missed-marked": ["missed " + BOB, "missed " + ANN],
    "pickup": (["received %s T by 2005" % ANN], ["received %s T by 2005 to 2005" % ANN]),
    "shared-line": ([], ["missed " + ANN]),
    "transfer-blind": ["received %s T" % ANN],
    # The own line's monitor of a Qorvex phone leaves Held events out, so its two calls are not connected.
    "transfer-consultation": (["dialled %s T" % BOB, "received %s T" % ANN],
                              ["dialled %s T by 4711" % BOB, "received %s T by 4712" % ANN]),
    "transferred": (["received %s T by 4711" % BOB, "received %s T" % ANN],
                    ["received %s T by 4711 to 4712" % ANN, "received %s T" % ANN]),
    "transferred-blind": ["dialled %s T by 4711" % BOB, "dialled %s T" % ANN],
    "transferred-here": ["received 2005 Colleague T"],
    "transferred-here-ringing": ["received %s T" % ANN],
}


def occurrences(lists):
    """The journal as the table above writes it."""
    texts = []
    for name in LISTS[:4]:
        for item in lists[name]:
            for call in item["occurrences"]:
                words = [name, call["number"], item["firstName"], item["surname"],
                         "T" if re.fullmatch(r"00:0[1-9]", call.get("duration", "")) else ""]
                words += ["by " + call["redirectingNumber"]] if call.get("redirectingNumber") else []
                other = call.get("connectedNumber") or call.get("forwardedToNumber") or call["number"]
                words += ["to " + other] if other != call["number"] else []
                texts.append(" ".join(word for word in words if word))
    texts += ["callback %s %s %s" % (item["number"], item["surname"], item["type"]) for item in lists["callbacks"]]
    return texts


# The last call of every run: once it is there, all before it are.
MARKER = '\nwait 100ms ; call marker from 999 "Marker" ; ring marker ; giveup marker\n'


class Run(harness.ProgramTest):
    """One scenario on one kind of phone, with processes and a directory of its own."""

    def play(self, name, software_type):
        with open(os.path.join(SCENARIOS, name + ".txt"), encoding="utf-8") as file:
            simulator, address = self.simulate(file.read() + MARKER)
        server = self.serve(address, "--set", "software-type=" + software_type, config=CONFIGURATION)
        server.logs("missed call from Marker")
        simulator.prints("scenario is over")
        request = urllib.request.Request("http://%s/api/v1/status" % server.http, headers={"Authorization": "Bearer " + server.token})
        with urllib.request.urlopen(request, timeout=harness.LIMIT) as response:
            self.assertEqual(json.load(response)["calls"], 0, name)
        texts = occurrences({name: self.list(name)["items"] for name in LISTS})
        return [text for text in texts if text != "missed 999 Marker"]


def run(name, software_type):
    case = Run()
    case.setUp()
    try:
        return case.play(name, software_type)
    finally:
        case.doCleanups()


class ScenariosTest(unittest.TestCase):
    maxDiff = None

    def play_all(self, software_type, column):
        names = sorted(name[:-len(".txt")] for name in os.listdir(SCENARIOS))
        self.assertEqual(names, sorted(EXPECTED), "a scenario without a row in the table, or a row without a scenario")
        with concurrent.futures.ThreadPoolExecutor(max_workers=6) as pool:
            results = dict(zip(names, pool.map(lambda name: run(name, software_type), names)))
        expected = {name: row[column] if isinstance(row, tuple) else row for name, row in EXPECTED.items()}
        self.assertEqual(results, expected)

    def test_a_qorvex_phone_files_each_call_where_it_belongs(self):
        self.play_all(QORVEX, 0)

    def test_a_sip_phone_files_each_call_where_it_belongs(self):
        self.play_all(SIP, 1)
