"""Calls of numbers in line.never-log leave no trace in the files of the journal."""

import json
import os
import sqlite3
import unittest

from harness import ProgramTest
from webhook_receiver import Receiver

CONFIG = '[line]\nnever-log = ["030 5550199", "0900*"]\n[log]\nlevel = "trace"\nlibrary-level = "trace"\nprivate = true\n'

# The parts of 5550199 and 900777 that no other number has.
SCENARIO = """
device 2001
call a from +49305550199 "Dr Silent" to 2001
ring a ; answer a ; wait 10ms ; hangup a by caller
call b from 0305550199 "Dr Silent" to 2001
ring b ; giveup b
dial c to 0900777123 "Secret Line" ; ring c ; connect c ; hangup c by called
call d from 4712 to 2001 via 0305550199 "Dr Silent"
ring d ; giveup d
call e from 4713 "Ann" to 2001
ring e ; divert e to 0305550199 reason noanswer
hangup e by caller
call f from 4714 "Bob" to 2001
ring f ; answer f ; consult g from f to 0305550199 "Dr Silent" ; connect g ; transfer f to g
hangup f by caller
call h from 4715 "Eve" to 2001
ring h ; giveup h
"""

# The member of the conference that is not logged stays in it longest.
CONFERENCE = """
call i from 4711 "Jane" to 2001 ; ring i ; answer i
consult j from i to 0305550199 "Dr Silent" ; ring j ; connect j
join i j
wait 10ms ; leave i by 4711
wait 10ms ; leave i by 0305550199
call k from 4716 "Max" to 2001 ; ring k ; giveup k
"""


class NeverLogTest(ProgramTest):
    def traces(self, *texts):
        """The files of the data directory that contain one of the texts, without the configuration and the scenario."""
        found = []
        for name in sorted(os.listdir(self.data)):
            path = os.path.join(self.data, name)
            if name not in ("calljournal.toml", "calls.txt") and os.path.isfile(path):
                with open(path, "rb") as file:
                    content = file.read()
                found += [(name, text) for text in texts if text.encode() in content]
        return found

    def test_calls_of_such_numbers_leave_no_trace(self):
        _, address = self.simulate(SCENARIO)
        server = self.serve(address, config=CONFIG)
        server.logs("missed call from Eve")
        calls = self.get(server, "calls")["items"]
        # What other parties did with such a number ends for the journal where it comes in.
        self.assertEqual(sorted((call["number"], call["list"]) for call in calls),
                         [("4713", "missed"), ("4714", "received"), ("4715", "missed")])
        self.assertEqual([self.get(server, "live-calls"), self.traces("5550199", "900777", "Silent", "Secret")], [{"calls": []}, []])
        server.stop()
        self.assertEqual(self.traces("5550199", "900777", "Silent", "Secret"), [])
        self.assertEqual([line for line in server.seen if "5550199" in line or "900777" in line or "Silent" in line], [])

    def test_a_receiver_of_events_hears_of_no_such_call_and_a_conference_loses_such_a_member(self):
        receiver = Receiver(self, b"secret")
        receiver.comes_up()
        hook = ('[[webhook]]\nurl = "http://127.0.0.1:%d/"\nevents = ["call.filed", "call.ringing", "call.answered"]\nsecret-file = "%s"\n' %
                (receiver.port, self.file("secret", "secret")))
        _, address = self.simulate(SCENARIO + CONFERENCE)
        server = self.serve(address, config=CONFIG + hook)
        server.logs("missed call from Max")
        self.await_value(["call.filed 4716"], lambda: ["%s %s" % (each["event"], each["call"]["number"]) for each in receiver.accepted][-1:])
        told = json.dumps(receiver.accepted)
        self.assertEqual([text for text in ("5550199", "900777", "Silent", "Secret") if text in told], [])
        self.assertEqual({each["call"]["number"] for each in receiver.accepted}, {"4711", "4713", "4714", "4715", "4716"})
        filed = [call["number"] for call in self.get(server, "calls?limit=50")["items"]]
        self.assertEqual(sorted(filed), ["4711", "4713", "4714", "4715", "4716"])
        self.assertEqual(self.traces("5550199", "900777", "Silent", "Secret"), [])

    def test_a_call_is_shown_while_it_is_live(self):
        _, address = self.simulate('device 2001\ncall a from 0305550199 to 2001 ; ring a\n')
        server = self.serve(address, config=CONFIG)
        self.await_value(["0305550199"], lambda: [call["number"] for call in self.get(server, "live-calls")["calls"]])
        server.process.kill()
        server.ends()
        self.assertEqual(self.traces("5550199"), [])

    def test_a_live_call_of_a_run_without_the_number_is_not_filed(self):
        simulator, address = self.simulate('device 2001\ncall a from 0305550199 to 2001 ; ring a\n')
        server = self.serve(address, config="[line]\n")
        rows = "select count(*) from live_call"
        with sqlite3.connect(os.path.join(self.data, "journal.db")) as database:
            self.await_value(1, lambda: database.execute(rows).fetchone()[0])
            server.process.kill()
            server.ends()
            server = self.serve(address, config=CONFIG)
            self.await_value(0, lambda: database.execute(rows).fetchone()[0])
        self.assertEqual(self.get(server, "calls")["items"], [])

    def test_a_wrong_pattern_is_refused(self):
        for pattern in ("", "*", "anonymous", "+", "030x"):
            with self.subTest(pattern):
                config = self.file("wrong.toml", '[line]\nnever-log = ["%s"]\n' % pattern)
                self.assertIn("line.never-log: must be numbers", self.refused("serve", "--config", config))


if __name__ == "__main__":
    unittest.main()
