"""Several lines in one process."""

import json
import os
import urllib.error

from harness import ProgramTest
from lines_switch import LinesSwitch

LINES = """
lines-file = "lines.csv"
[[line]]
device = "2001"
name = "Ann"
[[line]]
device = "2002"
[line.management]
"mac-addr" = "00:00:00:00:20:02"
"""
CONFIGURED = {"2001", "2002", "2003"}


class LinesTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.switch = LinesSwitch(self)
        self.file("lines.csv", "name,device\n\"Cem, home\",2003\n")

    def begin(self):
        self.server = self.serve(self.switch.address, config=LINES)
        return self.server

    def numbers(self, *line):
        return [each["number"] for each in self.list("missed", *line)["items"]]

    def lines(self, *options):
        return {each["device"]: each for each in json.loads(self.done("lines", "list", *options, "-o", "json"))["lines"]}

    def error(self, path, token, method="GET"):
        """Status and code of a request that is refused."""
        self.server.token = token
        with self.assertRaises(urllib.error.HTTPError) as refused:
            self.open(self.server, path, method)
        with refused.exception as error:
            return error.code, json.load(error)["error"]["code"]

    def test_each_line_has_its_own_calls_settings_and_contacts(self):
        self.begin()
        self.assertTrue(self.switch.monitored(*CONFIGURED), self.switch.monitors)
        self.assertEqual(self.switch.connections, 1)
        # The switch numbers the calls of each line for itself.
        for device, caller in (("2001", "4711"), ("2002", "4712"), ("2003", "4713"), ("2002", "4714")):
            self.switch.misses(device, "7" + caller[-1:] if device == "2002" else "7", "N<%s>" % caller)
            self.server.logs("missed call from %s" % caller)
        self.assertEqual((self.numbers(), self.numbers("--line", "2002"), self.numbers("--line", "2003")), (["4711"], ["4714", "4712"], ["4713"]))
        self.assertEqual({device: each["unviewed"] for device, each in self.lines().items()}, {"2001": 1, "2002": 2, "2003": 1})
        self.assertEqual([each["name"] for each in self.lines().values()], ["Ann", "", "Cem, home"])
        self.assertEqual(self.done("settings", "mac-addr", "--line", "2002"), "00:00:00:00:20:02\n")
        self.assertEqual(self.done("settings", "mac-addr"), "00:00:00:00:00:00\n")
        self.done("contacts", "add", "--surname", "Byron", "--office", "4712", "--line", "2001")
        self.assertEqual(self.list("missed", "--line", "2002")["items"][1]["displayName"], "")
        self.done("delete", "missed", "--all", "--line", "2002")
        self.assertEqual((self.numbers(), self.numbers("--line", "2002")), (["4711"], []))
        self.assertIn("no such line", self.refused("list", "missed", "--line", "2009"))
        self.assertIn("there is no line 2009", self.refused("watch", "--line", "2009"))
        watcher = self.start("watch", "--json", "--data", self.data, "--line", "2003")
        watcher.prints('"event":"dialledCallsUpdate"')
        self.switch.misses("2001", "8", "N<4715>")
        self.server.logs("missed call from 4715")
        self.switch.misses("2003", "8", "N<4716>")
        self.assertIn("4716", watcher.prints('"event":"missedCallsUpdate".*"number"').string)
        self.assertFalse(watcher.count("4715"))

    def test_lines_share_contacts_behind_their_own(self):
        self.begin()
        self.assertTrue(self.switch.monitored(*CONFIGURED), self.switch.monitors)
        for device in ("2001", "2002"):
            self.switch.misses(device, "7", "N<4712>")
            self.server.logs("%s: missed call from 4712" % device)
        self.done("contacts", "add", "--surname", "Company", "--office", "4712")
        names = lambda: [self.list("missed", "--line", each)["items"][0]["displayName"] for each in ("2001", "2002")]
        self.assertEqual(names(), ["Company", "Company"])
        self.done("contacts", "add", "--surname", "Byron", "--office", "4712", "--line", "2002")
        self.assertEqual(names(), ["Company", "Byron"])
        shared = self.get(self.server, "lines/2002/contacts")["contacts"]
        self.assertEqual([(each["surname"], each["shared"]) for each in shared], [("Byron", False), ("Company", True)])
        token, everyone = self.done("tokens", "create", "phone", "--line", "2002", "--scope", "write").split()[0], self.server.token
        company, own = (next(each["id"] for each in shared if each["shared"] == which) for which in (True, False))
        for path in ("contacts/" + company, "lines/2002/contacts/" + company):
            self.assertEqual(self.error(path, token, "DELETE"), (403, "shared-contact"))
        self.assertEqual(self.error("contacts/" + own, everyone, "DELETE"), (404, "unknown-contact"))
        self.server.token = everyone
        self.open(self.server, "contacts/" + company, "DELETE").close()
        self.assertEqual(names(), ["", "Byron"])

    def test_one_stream_has_the_events_of_all_lines_also_of_those_that_are_added(self):
        self.begin()
        self.assertTrue(self.switch.monitored(*CONFIGURED))
        with self.open(self.server, "events?lines=all") as stream:
            stream.readline()
            self.done("lines", "add", "2005")
            self.assertTrue(self.switch.monitored("2005", *CONFIGURED))
            for device in ("2002", "2005", "2001"):
                self.switch.misses(device, "7", "N<471%s>" % device[-1])
                event = None
                while event != b"event: missedCallsUpdate\n":
                    event = stream.readline()
                data = json.loads(stream.readline().decode().removeprefix("data: "))
                self.assertEqual((data["line"], data["item"]["number"]), (device, "471" + device[-1]))
        for scope, line in (("write", ()), ("admin", ("--line", "2001"))):
            token = self.done("tokens", "create", scope, "--scope", scope, *line).strip()
            self.assertEqual(self.error("events?lines=all", token), (403, "wrong-scope"))

    def test_lines_are_added_and_removed_while_it_runs(self):
        self.begin()
        self.assertEqual(self.done("lines", "add", "2005", "--name", "Eve"), "line 2005 is added\n")
        self.assertTrue(self.switch.monitored("2005", *CONFIGURED))
        self.assertIn("a line with this device already", self.refused("lines", "add", "2005"))
        self.assertIn("no switch of this name", self.refused("lines", "add", "2006", "--switch", "b"))
        self.assertIn("in the configuration", self.refused("lines", "remove", "2003"))
        self.switch.misses("2005", "9", "N<4711>")
        self.server.logs("2005: missed call from 4711")
        # It is there after a restart, too.
        self.assertEqual(self.server.stop(), 0)
        self.begin()
        self.assertTrue(self.switch.monitored("2005", *CONFIGURED))
        self.assertEqual((self.numbers("--line", "2005"), self.lines()["2005"]["configured"]), (["4711"], False))
        watcher = self.start("watch", "--json", "--data", self.data, "--line", "2005")
        watcher.prints('"event":"dialledCallsUpdate"')
        self.done("lines", "remove", "2005")
        self.assertEqual(watcher.ends(), 1)
        self.assertTrue(self.switch.monitored(*CONFIGURED))
        self.assertIn("no such line", self.refused("list", "missed", "--line", "2005"))
        self.assertEqual(({*self.lines()}, self.lines("--all")["2005"]["removed"]), (CONFIGURED, True))
        self.done("lines", "add", "2005")
        self.assertEqual(self.numbers("--line", "2005"), ["4711"])
        self.done("lines", "remove", "2005", "--purge", "--yes")
        self.assertEqual({*self.lines("--all")}, CONFIGURED)
        self.done("lines", "add", "2005")
        self.assertEqual(self.numbers("--line", "2005"), [])

    def test_a_token_of_a_line_shows_that_line_and_nothing_of_others(self):
        self.begin()
        self.switch.monitored(*CONFIGURED)
        for device in ("2001", "2002"):
            self.switch.misses(device, "7", "N<471%s>" % device[-1])
            self.server.logs("missed call from 471")
        token = self.done("tokens", "create", "two", "--line", "2002", "--scope", "admin").strip()
        self.server.token = token
        self.assertEqual([each["number"] for each in self.get(self.server, "lists/missed")["items"]], ["4712"])
        self.assertEqual([each["device"] for each in self.get(self.server, "lines")["lines"]], ["2002"])
        for path in ("lines/2001", "lines/2001/lists/missed", "lines/2009/lists/missed", "calls?line=2001", "lines/2003/events"):
            self.assertEqual(self.error(path, token), (404, "unknown-line"), path)
        for method, path in (("GET", "tokens"), ("POST", "lines"), ("DELETE", "lines/2002"), ("DELETE", "tokens/1")):
            self.assertEqual(self.error(path, token, method), (403, "wrong-line"), path)
        everything = json.dumps([self.get(self.server, each) for each in ("status", "calls", "lines", "statistics?by=party", "live-calls", "contacts")])
        self.assertNotIn("4711", everything)
        self.assertNotIn("2001", everything)

    def test_a_wrong_file_of_lines_is_refused_with_its_row(self):
        for text, message in (("device,nose\n1,2\n", "lines.csv:1: the columns are device, name and switch, not \"nose\""), ("device\n2005\n2005\n", "lines.csv:3: \"2005\" is another line"),
                              ("name,device\nAnn,\n", "lines.csv:2: has no device"), ("", "lines.csv is empty")):
            self.file("lines.csv", text)
            config = self.file("wrong.toml", LINES)
            self.assertIn(os.path.join(self.data, message), self.refused("serve", "--config", config, "--listen", "127.0.0.1:0"))
