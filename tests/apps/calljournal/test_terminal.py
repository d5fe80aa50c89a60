"""The command line on a terminal: colours and questions, and what it prints elsewhere."""

import contextlib
import json
import os
import pty
import select
import sqlite3
import subprocess
import unittest

from harness import ENVIRONMENT, LIMIT, ProgramTest

CALLS = 'call a from 4711 "Ann" to 2001 ; ring a ; giveup a\n'


class TerminalTest(ProgramTest):
    def on_terminal(self, *arguments, answer=None, environment=None):
        """Runs the program with a terminal, and types the answer when it asks; returns the status and what is shown."""
        main, terminal = pty.openpty()
        self.addCleanup(os.close, main)
        program = subprocess.Popen([os.environ["CALLJOURNAL"], *arguments, "--data", self.data], stdin=terminal, stdout=terminal,
                                   stderr=terminal, env={**ENVIRONMENT, "TERM": "xterm", **(environment or {})})
        os.close(terminal)
        shown = ""
        while select.select([main], [], [], LIMIT)[0]:
            try:
                shown += os.read(main, 65536).decode()
            except OSError:  # the program has ended
                break
            if answer is not None and shown.endswith("[y/N] "):
                os.write(main, answer.encode() + b"\n")
                answer = None
        return program.wait(LIMIT), shown

    def test_a_deletion_asks_on_a_terminal_only(self):
        self.simulate_and_serve(CALLS, "missed call from Ann")
        for answer in ("n", "", "yes please"):
            with self.subTest(answer):
                status, shown = self.on_terminal("delete", "missed", "--all", answer=answer)
                self.assertEqual((status, "Delete 1 missed" in shown), (1, True), shown)
        self.assertEqual(self.list("missed")["total"], 1)
        status, shown = self.on_terminal("delete", "missed", "--all", answer="y")
        self.assertEqual((status, self.list("missed")["total"]), (0, 0), shown)
        for arguments in (("delete", "--number", "4711"), ("settings", "clear-calllog", "true")):
            with self.subTest(arguments):
                self.assertEqual(self.on_terminal(*arguments, answer="n")[0], 1)
                self.assertEqual(self.on_terminal(*arguments, "--yes")[0], 0)
                self.done(*arguments)
        self.done("tokens", "create", "a")
        self.assertRegex(self.done("tokens", "create", "b", "-o", "csv"), r"^name,scope,line,expires,token\s+b,read,all,never,\w{64}\s+$")
        self.assertEqual(json.loads(self.done("tokens", "create", "c", "-o", "json"))["scope"], "read")
        self.assertEqual(self.on_terminal("tokens", "revoke", "a", answer="n")[0], 1)
        self.assertEqual(self.on_terminal("tokens", "revoke", "a", answer="y")[0], 0)
        self.done("tokens", "revoke", "b")
        self.assertEqual(self.done("tokens", "list", "-o", "csv").splitlines()[1].split(",")[:2], ["c", "read"])

    def test_a_restore_asks_before_it_replaces_a_journal(self):
        _, server = self.simulate_and_serve(CALLS, "missed call from Ann")
        backup = self.data + "/backup.db"
        self.done("backup", backup)
        self.done("delete", "missed", "--all")
        self.assertEqual(server.stop(), 0)

        def calls():
            with contextlib.closing(sqlite3.connect(self.data + "/journal.db")) as database:
                return database.execute("select count(*) from call").fetchone()[0]

        for answer in ("n", ""):
            status, shown = self.on_terminal("restore", backup, answer=answer)
            self.assertEqual((status, calls(), "Replace the journal " + self.data + "/journal.db" in shown), (1, 0, True), shown)
        self.assertEqual((self.on_terminal("restore", backup, answer="y")[0], calls()), (0, 1))
        self.assertEqual(self.on_terminal("restore", backup, "--yes")[0], 0)
        os.remove(self.data + "/journal.db")
        self.assertEqual((self.on_terminal("restore", backup)[0], calls()), (0, 1), "there is none to replace")

    def test_a_missed_call_is_red_on_a_terminal_that_has_colours(self):
        self.simulate_and_serve(CALLS, "missed call from Ann")
        for form, environment, isRed in (([], {}, True), ([], {"NO_COLOR": "1"}, False), ([], {"TERM": "dumb"}, False), (["-o", "json"], {}, False),
                                         (["-o", "csv"], {}, False), (["--color=never"], {}, False), (["--color", "auto"], {}, True),
                                         (["--color=always"], {"NO_COLOR": "1"}, True), (["--color=always", "-o", "csv"], {}, False)):
            with self.subTest(form=form, environment=environment):
                for command in (["list", "missed"], ["calls"]):
                    shown = self.on_terminal(*command, *form, environment=environment)[1]
                    self.assertEqual(("\x1b[1;31m" in shown, "4711" in shown), (isRed, True), shown)
        self.assertNotIn("\x1b", self.done("list", "missed"))
        self.assertIn("\x1b[1;31m", self.done("--color", "always", "list", "missed"))
        self.assertIn("there is no use blue", self.refused("list", "missed", "--color=blue", status=2))

    def test_the_forms_and_the_limit_of_lists(self):
        self.simulate_and_serve(CALLS + 'call b from 4712 "=Bob" to 2001 ; ring b ; giveup b\n', "missed call from =Bob")
        for command in (["list", "missed"], ["calls"], ["show", str(self.list("missed")["items"][0]["uniqueId"])], ["stats"], ["settings"], ["tokens", "list"],
                        ["contacts", "list"], ["status"]):
            with self.subTest(command):
                self.assertEqual(self.done(*command, "-o", "json"), self.done(*command, "--json"))
        for command, title in ((["list", "missed"], "number"), (["calls"], "start"), (["stats"], "name"), (["settings"], "setting"), (["contacts", "list"], "name")):
            with self.subTest(command):
                first = self.done(*command, "-o", "csv").split("\n")[0]
                self.assertTrue(title in first.strip().split(","), first)
        self.assertEqual([len(self.done("calls", "-o", "csv", "-n", number).splitlines()) for number in ("1", "2")], [2, 3])
        self.assertIn("'=Bob", self.done("stats", "-o", "csv"))
        self.assertIn("there is no form xml", self.refused("calls", "-o", "xml", status=2))

    def test_help_and_settings_explain_themselves(self):
        _, server = self.simulate_and_serve(CALLS, "missed call from Ann")
        self.assertEqual(self.run_program("--data", self.data, "list", "missed")[1], self.done("list", "missed"))
        keys = [each["key"] for each in self.get(server, "management")["settings"]]
        self.assertEqual([line.split(":")[0] for line in self.done("settings", "--explain").splitlines()], keys)
        for key in keys:
            with self.subTest(key):
                self.assertRegex(self.done("settings", key, "--explain"), key + r": .{10,}\.\n")
        for width, meanings in (("80", 0), ("100", 0), ("250", 1)):
            lines = self.on_terminal("settings", environment={"COLUMNS": width, "NO_COLOR": "1"})[1].splitlines()
            self.assertEqual((lines[0].split()[3:], lines[-1].count("settings --explain")), (["MEANING"] * meanings, 1 - meanings), lines)
            self.assertNotIn("…", "".join(lines))
            self.assertEqual(max(len(line) for line in lines[:-1]) < int(width), True, lines)
        for arguments in ((), ("help",)):
            ended, shown, errors = self.run_program(*arguments)
            self.assertEqual((ended, errors, "\n  status " in shown), (0, "", True))
        for command in ("list", "tokens create"):
            self.assertEqual(self.run_program("help", *command.split())[1], self.run_program(*command.split(), "--help")[1])
        ended, _, errors = self.run_program("help", "lst")
        self.assertEqual((ended, "did you mean list?" in errors), (2, True), errors)


if __name__ == "__main__":
    unittest.main()
