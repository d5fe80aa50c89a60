"""Commands for single entries, the client in another language, and the documents of both."""

import csv
import io
import json
import os
import re
import sqlite3
import subprocess
import sys

from harness import LIMIT, ProgramTest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "..")
LONG = "=SUM(A1,A2) is a caller whose name is longer than a row of a terminal can be"
CALLS = """
call ann from 4711 "Ann Müller" ; ring ann ; giveup ann
call sum from +4915550100123 "%s" ; ring sum ; giveup sum
call zoe from 4712 "Zoë" via 4799 "@Desk" ; ring zoe ; giveup zoe
dial bob to 4713 "Bob" ; ring bob ; connect bob ; hangup bob
callback 4720 because busy
""" % LONG


class ClientCommandsTest(ProgramTest):
    def calls(self):
        self.simulate_and_serve(CALLS, "callback for 4720")

    def test_an_entry_is_shown_viewed_and_deleted_by_its_id(self):
        self.calls()
        ids = {item["surname"]: item["entryId"] for item in self.list("missed")["items"]}
        for name in ("missed", "dialled", "callbacks"):
            for item in self.list(name)["items"]:
                self.assertEqual(json.loads(self.done("show", item["entryId"], "--json")), item)
        self.assertRegex(self.done("show", ids["Zoë"]), r"^Zoë, missed call\n(.*\n)*  \d{4}-\d\d-\d\d \d\d:\d\d:\d\d  4712 .* 4799 +@Desk\n$")

        table = self.done("list", "missed", "--ids").splitlines()
        self.assertEqual({line.split()[-1] for line in table[1:]}, set(ids.values()))
        self.assertTrue(any("…" in line for line in table))
        self.assertLessEqual(max(map(len, table)), 80)

        self.assertEqual(self.done("viewed", ids["Zoë"], ids["Ann Müller"]), "2 missed entries viewed\n")
        self.assertEqual(re.findall(r"(?m)^\* .*  (\S+) ", self.done("list", "missed")), ["+4915550100123"])

        ended = self.run_program("delete", "missed", ids["Zoë"], "none", "--data", self.data)
        self.assertEqual(ended, (1, "1 missed entry deleted\n", "calljournal: there is no entry none in the list missed; `%s list missed --ids --data %s` prints "
                         "the ids of the entries\n" % (os.environ["CALLJOURNAL"], self.data)))
        for command in (["viewed", "none"], ["show", "none"], ["delete", "dialled", ids["Ann Müller"]]):
            self.assertIn("--ids", self.refused(*command, silent=False))
        self.assertEqual(self.done("delete", "missed", "--all"), "2 missed entries deleted\n")
        self.assertEqual([len(self.list(name)["items"]) for name in ("missed", "dialled", "callbacks")], [0, 1, 1])

    def test_entries_that_are_not_loaded_are_listed_and_deleted_and_a_failure_is_reported(self):
        self.simulate_and_serve("\n".join(["call c from %d ; ring c ; giveup c" % (5000 + index) for index in range(30)] +
                                          ["dial c to %d ; busy c" % (6000 + index) for index in range(210)]),
                                "dialled 6209")
        self.watch()  # a subscription loads the newest 200
        for command in (["list", "missed", "--json"], ["export", "missed", "--format", "json"]):
            found = json.loads(self.done(*command))
            self.assertEqual((found["total"], len(found["items"])), (30, 30))
        other = sqlite3.connect(os.path.join(self.data, "journal.db"), isolation_level=None)
        self.addCleanup(other.close)
        other.execute("BEGIN IMMEDIATE")
        self.assertIn("not stored yet", self.refused("delete", "missed", "--all"))
        other.execute("ROLLBACK")
        self.await_value((210,), lambda: other.execute("SELECT count(*) FROM call_item").fetchone())

    def test_csv_holds_what_json_holds_and_no_formula(self):
        self.calls()
        for name in ("missed", "dialled", "received", "callbacks"):
            text = self.done("list", name, "--csv")
            self.assertEqual(self.done("export", name, "--format", "json"), self.done("list", name, "--json"))
            rows = list(csv.DictReader(io.StringIO(text, newline=""), strict=True))
            calls = [{**item, **call} for item in self.list(name)["items"] for call in item.pop("occurrences", [{}])]
            self.assertEqual(len(rows), len(calls))
            for row, call in zip(rows, calls):
                self.assertFalse([cell for cell in row.values() if cell[:1] in list("=+-@")])
                self.assertEqual({key: cell[cell.startswith("'"):] for key, cell in row.items()},
                                 {key: value if isinstance(value, str) else json.dumps(value) for key, value in call.items()
                                  if key != "numberText"})

    def test_calls_are_selected_counted_exported_and_deleted(self):
        self.calls()
        found = json.loads(self.done("calls", "--list", "missed", "--sort", "start", "--json"))
        self.assertEqual(([call["number"] for call in found["items"]], found["next"]), (["4711", "+4915550100123", "4712"], None))
        self.assertRegex(self.done("calls", "--limit", "1"), r"^  TIME +LIST +NAME .*\n  [-0-9]+ [:0-9]+  dialled +Bob .*\n\(1 shown; there are more: --limit N\)\n$")
        self.assertEqual([json.loads(line) for line in self.done("export", "--format", "jsonl", "--sort", "start").splitlines()][:3], found["items"])
        self.assertEqual([row["number"] for row in csv.DictReader(io.StringIO(self.done("export", "missed", "--search", "zoe", "--format", "csv")))], ["4712"])
        self.assertEqual(self.done("export", "missed", "--format", "ical").count("BEGIN:VEVENT"), 3)
        self.assertRegex(self.done("stats", "--since", "1d"), r"^  Calls +4\n  Answered here +0\n  Missed +3\n(.*\n)+\n  NAME +NUMBER +CALLS .*\n")
        self.assertRegex(self.done("stats", "--by", "weekday"), r"\n  WEEKDAY +CALLS .*\n  [A-Z][a-z]+day +4 ")
        self.assertIn("since must be a date", self.refused("calls", "--since", "once"))
        self.assertIn("number must not be empty", self.refused("delete", "--since", "1d", "--number", ""))
        self.assertEqual(self.done("delete", "--number", "4711"), "1 call deleted\n")
        self.assertEqual((self.list("missed")["total"], len(json.loads(self.done("calls", "--json"))["items"])), (2, 3))

    def helped(self):
        """Each command with sub-commands and options, as --help names them: {"contacts list": ["--data", ...]}."""
        options, left = {}, [""]
        while left:
            command = left.pop()
            _, output, _ = self.run_program(*command.split(), "--help")
            _, _, subcommands = output.partition("\nSubcommands:\n")
            left += [(command + " " + each).strip() for each in re.findall(r"(?m)^  ([a-z]+) ", subcommands)]
            inherited = options.get(command.rpartition(" ")[0], []) if " " in command else []
            options[command] = sorted({*inherited, *re.findall(r"(?m)^  (?:-[a-z],)?(--[a-z0-9-]+)", output)})
        return options

    def test_completion_and_manual_contain_every_command_and_option(self):
        options = self.helped()
        self.assertGreater(len(options), 13)
        reference = os.path.join(os.path.dirname(os.environ["CALLJOURNAL"]), "../share/calljournal-reference")
        script = os.path.join(reference, "bash-completion/completions/calljournal")

        def complete(*words):
            done = subprocess.run(["bash", "-c", 'source "$0"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _calljournal; echo "${COMPREPLY[*]}"',
                                   script, "calljournal", *words], capture_output=True, text=True, timeout=LIMIT, check=True)
            return sorted(done.stdout.split())

        for command, known in options.items():
            inner = sorted(each[len(command):].strip() for each in options if each.startswith(command + " " * bool(command))
                           and each != command and " " not in each[len(command):].strip())
            self.assertEqual(complete(*command.split(), "-"), known)
            if inner:
                self.assertEqual(complete(*command.split(), ""), inner)
                continue
            name, _, below = command.partition(" ")
            with open(os.path.join(reference, "man/man1/calljournal-%s.1" % name), encoding="utf-8") as file:
                section = re.split(r"(?m)^\.S[sh] %s$" % (below or "DESCRIPTION"), file.read())[1].partition("\n.S")[0]
            self.assertEqual({"--" + each for each in re.findall(r"(?m)^\.It Fl Fl (\S+)", section)}, set(known), command)
        self.assertEqual(complete("export", "missed", "--format", "c"), ["csv"])
        self.assertEqual(complete("list", "--limit", "3", "d"), ["dialled"])
        self.assertEqual(complete("list", "missed", "d"), [])

    def test_the_python_client_lists_deletes_and_follows(self):
        client = [sys.executable, os.path.join(ROOT, "examples/journal_client.py"), "--data", self.data]

        def run(*arguments):
            done = subprocess.run([*client, *arguments], capture_output=True, text=True, timeout=LIMIT)
            return done.returncode, done.stdout.splitlines(), done.stderr

        self.assertRegex(run("list", "missed")[2], "^journal_client.py: no journal is reachable")
        self.calls()
        self.done("contacts", "import", self.file("book.csv", "surname;firstName;office\nMüller;Ann;4711\n"))
        follower = subprocess.Popen([*client, "follow"], stdout=subprocess.PIPE, text=True)
        for end in (follower.stdout.close, follower.wait, follower.kill):  # in the other order
            self.addCleanup(end)
        self.assertEqual(follower.stdout.readline(), "missedCallsCountUpdate: 3\n")
        self.assertEqual(run("contacts")[1], ["Ann Müller  4711"])
        lines = run("list", "missed")[1]
        self.assertRegex(lines[2], r"^\* \S+  \S+Z  Ann Müller  4711$")
        self.assertEqual(run("delete", "missed", lines[2].split()[1]), (0, [], ""))
        self.assertEqual(run("delete", "missed", "none")[::2], (1, "no entry none in missed\n"))
        self.assertEqual(run("list", "missed")[1], lines[:2])
        followed = iter(follower.stdout.readline, "")
        self.assertIn("missedCallsUpdate: deleted\n", followed)
        self.done("viewed", lines[0].split()[1])
        self.assertIn("missedCallsCountUpdate: 1\n", followed)
