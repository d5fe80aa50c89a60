"""Usage, exit status, and what is said when something is wrong."""

import os
import re
import select
import signal
import stat
import subprocess

from harness import LIMIT, ProgramTest

NOBODY = "127.0.0.1:1"


class CommandLineTest(ProgramTest):
    def refused(self, *arguments):
        status, output, errors = self.run_program(*arguments)
        self.assertEqual((status, output), (2, ""), arguments)
        return errors

    def test_wrong_usage_is_status_2_and_says_what_is_right(self):
        for command, fault in (
                ("", "a command is missing: serve, switch,"), ("sing", "there is no command sing"),
                ("lst missed", "there is no command lst; did you mean list?"),
                ("list missed --lmit 3", "there is no option --lmit; did you mean --limit?"),
                ("contacts imprt x", "there is no command imprt; did you mean import?"), ("contacts", "import, list or export"),
                ("list", "LIST is missing"), ("list lost", "the lists are missed, dialled,"),
                ("list missed --limit 0", "--limit: 0 is not a number from 1 on"), ("list missed --limit many", "not a number from 1 on"),
                ("list missed --limit", "--limit takes one value"), ("list missed --json --csv", "--csv"),
                ("show", "ENTRY_ID is missing"), ("viewed", "ENTRY_ID is missing"), ("delete missed", "all of them with --all"),
                ("delete missed --all x", "not both"), ("export missed", "--format is missing"),
                ("export missed --format xml", "it is csv or json"), ("watch --yaml", "there is no option --yaml"),
                ("serve --switch nowhere", "ADDR:PORT"), ("serve --switch host:port", "ADDR:PORT"),
                ("serve --set novalue", "KEY=VALUE"), ("serve --set =value", "KEY=VALUE"), ("switch --rate -1", "not a number above 0"),
                ("switch --listen 127.0.0.1", "ADDR:PORT"), ("demo extra", "extra"), ("settings a b c", "c ("),
                ("switch --answer MonitorStart=maybe", "REQUEST=HOW"), ("switch --answer MonitorStart", "REQUEST=HOW"),
                ("switch --answer monitorStart=never", "REQUEST=HOW")):
            errors = self.refused(*command.split())
            self.assertIn(fault, errors)
            self.assertRegex(errors, r"^calljournal[^\n]* \(`calljournal[a-z ]* --help` says more\)\n$")

    def test_a_client_without_a_server_says_what_to_do(self):
        for arguments in (["list", "missed"], ["watch"], ["settings"], ["show", "x"], ["viewed", "x"], ["delete", "missed", "x"],
                          ["export", "missed", "--format", "csv"]):
            status, output, errors = self.run_program(*arguments, "--data", self.data)
            self.assertEqual((status, output), (1, ""))
            self.assertEqual(errors, "calljournal: cannot reach calljournal at %s/calljournal.sock: start it with "
                                     "`calljournal serve`, or name the data directory of one that runs with --data\n" % self.data)

    def test_a_second_server_in_the_directory_is_refused(self):
        self.serve(NOBODY)
        for command in (["serve", "--switch", NOBODY], ["demo"]):
            status, _, errors = self.run_program(*command, "--data", self.data)
            self.assertEqual(status, 1)
            self.assertIn("a calljournal is already running at " + self.data, errors)
        self.assertEqual(self.list("missed")["total"], 0)

    def test_files_of_the_journal_are_for_their_owner_only(self):
        self.data = os.path.join(self.data, "deeper", "still")
        self.serve(NOBODY)
        self.assertEqual(stat.S_IMODE(os.stat(self.data).st_mode), 0o700)
        for name in ("calljournal.sock", "journal.db"):
            self.assertEqual(stat.S_IMODE(os.stat(os.path.join(self.data, name)).st_mode), 0o600, name)

    def test_both_signals_end_every_command_cleanly(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            simulator, address = self.simulate("wait 1s\n")
            server = self.serve(address)
            watcher = self.watch()
            for program in (watcher, server, simulator):
                self.assertEqual(program.stop(number), 0, program.arguments)

    def test_a_watcher_ends_when_nobody_reads_it(self):
        _, address = self.simulate('call c from 4711 ; ring c ; giveup c\n', "--loop", "--rate", "20")
        self.serve(address)
        watcher = subprocess.Popen([os.environ["CALLJOURNAL"], "watch", "--data", self.data], stdout=subprocess.PIPE)
        self.addCleanup(watcher.kill)
        self.assertTrue(select.select([watcher.stdout], [], [], LIMIT)[0])
        watcher.stdout.close()
        self.assertEqual(watcher.wait(LIMIT), 0)

    def test_faults_in_files_are_named_with_their_place(self):
        config = os.path.join(self.data, "faulty.toml")
        with open(config, "w", encoding="utf-8") as file:
            file.write("[switch]\nhost = 7\n")
        scenario = os.path.join(self.data, "faulty.txt")
        with open(scenario, "w", encoding="utf-8") as file:
            file.write("wait 1s\nring nobody\n")
        for arguments, place in ((["serve", "--data", self.data, "--config", config], config + ":2"),
                                 (["switch", "--listen", "127.0.0.1:0", "--scenario", scenario], scenario + ":2")):
            status, _, errors = self.run_program(*arguments)
            self.assertEqual(status, 1)
            self.assertIn(place, errors)

    def test_settings_of_the_command_line_reach_the_journal(self):
        server = self.serve(NOBODY)
        server.logs("software-type = Norlith Qorvex")
        server.stop()
        server = self.serve(NOBODY, "--set", "software-type=Norlith SIP", "--set", "system-identifier=0")
        server.logs("software-type = Norlith SIP")

    def test_a_table_is_for_people(self):
        _, address = self.simulate('call a from 4711 "Ann Müller" ; ring a ; giveup a\n'
                                           'call b from 4712 "Bob" ; ring b ; giveup b\n')
        self.serve(address).logs("missed call from Bob")
        status, output, _ = self.run_program("list", "missed", "--data", self.data)
        self.assertEqual(status, 0)
        title, *lines = output.splitlines()
        self.assertEqual(title.split(), ["TIME", "NAME", "NUMBER", "CALLS"])
        self.assertTrue(re.match(r"^\* \d{4}-\d\d-\d\d \d\d:\d\d:\d\d  Bob +4712 +1$", lines[0]), lines)
        self.assertTrue(re.match(r"^\* .*  Ann Müller  4711    1$", lines[1]), lines)
        _, output, _ = self.run_program("list", "missed", "--data", self.data, "--limit", "1")
        self.assertEqual(output.splitlines()[2:], ["(1 of 2)"])
        _, output, _ = self.run_program("list", "missed", "--data", self.data, "--search", "MÜLL")
        self.assertEqual(len(output.splitlines()), 2)
        _, output, _ = self.run_program("list", "forwarded", "--data", self.data)
        self.assertEqual(output, "nothing in the list\n")
