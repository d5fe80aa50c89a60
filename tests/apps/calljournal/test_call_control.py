"""Calls that the journal places, answers and ends at a simulated switch, over HTTP and on the command line."""

import http
import json
import urllib.error
import urllib.request

from harness import IMPATIENT, LIMIT, ProgramTest

SILENCE = "call idle from 4799 ; ring idle ; giveup idle\n"


class CallControlTest(ProgramTest):
    def begin(self, *arguments, scenario=SILENCE, config=None):
        self.simulator, address = self.simulate(scenario, *arguments)
        self.server = self.serve(address, config=config)
        self.await_value(True, lambda: self.get(self.server, "status")["switch"]["monitoring"])

    def ask(self, method, path, body=None):
        """Status and JSON of the response."""
        request = urllib.request.Request("http://%s/api/v1/%s" % (self.server.http, path), method=method,
                                         data=None if body is None else json.dumps(body).encode(),
                                         headers={"Authorization": "Bearer " + self.server.token,
                                                  "Content-Type": "application/json"})
        try:
            with urllib.request.urlopen(request, timeout=LIMIT) as response:
                text = response.read()
                return response.status, json.loads(text) if text else None
        except urllib.error.HTTPError as error:
            self.assertEqual(error.reason, http.HTTPStatus(error.code).phrase.replace("Entity", "Content"))
            return error.code, json.load(error)["error"]

    def live(self):
        return self.get(self.server, "live-calls")["calls"]

    def states(self):
        return [(call["number"], call["direction"], call["state"]) for call in self.live()]

    def dialled(self):
        return [(item["number"], item["calls"]) for item in self.list("dialled")["items"]]

    def test_a_call_is_placed_taken_and_ended_and_is_one_dialled_entry(self):
        self.begin("--answer", "MakeCall=late", config='[digits]\noutside-line = "0"\n')
        stream = self.open(self.server, "events")
        status, placed = self.ask("POST", "calls", {"number": "+49 (0)30 / 123456"})
        self.assertEqual(status, 202)
        self.await_value([("0030123456", "outgoing", "connected")], self.states)
        self.assertEqual([call["callId"] for call in self.live()], [placed["callId"]])
        self.assertEqual(self.ask("POST", "live-calls/%s/answer" % placed["callId"])[0], 409)
        self.assertEqual(self.ask("DELETE", "live-calls/" + placed["callId"]), (204, None))
        self.await_value([("0030123456", 1)], self.dialled)
        self.assertEqual(self.live(), [])
        self.assertEqual(self.ask("DELETE", "live-calls/" + placed["callId"])[0], 404)
        seen = []
        while seen[-1:] != [[]]:
            if stream.readline() == b"event: liveCallsUpdate\n":
                calls = json.loads(stream.readline().decode().removeprefix("data: "))["calls"]
                seen.append([(call["callId"], call["state"]) for call in calls])
        self.assertIn([(placed["callId"], "calling")], seen)
        self.assertIn([(placed["callId"], "connected")], seen)
        self.simulator.stop()

    def test_a_call_that_rings_is_answered_and_one_is_rejected(self):
        self.begin(scenario='call c from 4711 "Ann" ; ring c ; call d from 4712 ; ring d ; wait 60s\n')
        self.await_value(2, lambda: len(self.live()))
        self.assertIn("name one of them: ", self.refused("answer"))
        first, second = (call["callId"] for call in self.live())
        self.assertEqual(self.done("answer", first), "connected with Ann (4711)\n")
        self.assertEqual(self.states(), [("4711", "incoming", "connected"), ("4712", "incoming", "ringing")])
        self.assertEqual(self.done("hangup", second), "ended the call with 4712\n")
        self.assertEqual(self.done("hangup"), "ended the call with Ann (4711)\n")
        self.assertIn("no call rings", self.refused("answer"))
        self.await_value(1, lambda: self.list("received")["total"])
        self.await_value(1, lambda: self.list("missed")["total"])

    def test_a_refusal_a_missing_service_and_silence_are_told_apart(self):
        for how, status, code, available in (("refuse", 409, "refused", True), ("wrong", 409, "refused", True),
                                             ("lack", 501, "not-supported", False), ("never", 501, "not-supported", False)):
            with self.subTest(how):
                self.begin("--answer", "MakeCall=" + how)
                self.assertTrue(self.get(self.server, "status")["callControl"])
                response = self.ask("POST", "calls", {"number": "4711"})
                self.assertEqual((response[0], response[1]["code"]), (status, code))
                self.assertEqual(self.get(self.server, "status")["callControl"], available)
                self.assertEqual(self.ask("POST", "calls", {"number": "4711"})[0], status)
                self.assertEqual((self.live(), self.dialled()), ([], []))
                self.assertEqual((self.server.stop(), self.simulator.stop()), (0, 0))

    def test_without_a_link_no_call_is_placed(self):
        self.begin(config=IMPATIENT)
        self.simulator.stop()
        self.await_value(False, lambda: self.get(self.server, "status")["callControl"])
        status, error = self.ask("POST", "calls", {"number": "4711"})
        self.assertEqual((status, error["code"]), (503, "no-link"))
        self.assertEqual((self.live(), self.dialled()), ([], []))

    def test_an_emergency_number_wants_a_confirmation_and_is_dialled_as_it_is(self):
        self.begin("--callee", "busy", config='[digits]\noutside-line = "0"\n')
        status, error = self.ask("POST", "calls", {"number": "11 2"})
        self.assertEqual((status, error["code"]), (422, "emergency-number"))
        self.assertIn("--emergency calls it", self.refused("call", "112"))
        self.assertEqual(self.live(), [])
        self.assertIn("calling 112", self.done("call", "112", "--emergency"))
        self.await_value([("112", 1)], self.dialled)
        for body in ({"number": ""}, {"number": "ann"}, {"number": 4711}, {}, {"number": "4711", "emergncy": True}):
            self.assertEqual(self.ask("POST", "calls", body)[0], 422, body)

    def test_an_entry_is_called_back(self):
        self.begin("--callee", "rings", scenario="call c from 4711 ; ring c ; giveup c\n")
        self.await_value(1, lambda: self.list("missed")["total"])
        entry = self.list("missed")["items"][0]
        for arguments in ((entry["entryId"],), ("--entry", entry["uniqueId"])):
            placed = json.loads(self.done("call", *arguments, "--json"))
            self.await_value([("4711", "outgoing", "calling")], self.states)
            self.done("hangup", placed["callId"])
        self.await_value([("4711", 2)], self.dialled)
        self.assertIn("no entry", self.refused("call", "--entry", "999"))
        self.refused("call", status=2)
