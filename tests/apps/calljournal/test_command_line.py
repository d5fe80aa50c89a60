"""Usage, exit status and error messages."""

import os
import select
import signal
import socket
import stat
import subprocess

from harness import LIMIT, ProgramTest

NO_SWITCH = "127.0.0.1:1"


class CommandLineTest(ProgramTest):
    def test_wrong_usage_is_status_2_with_advice(self):
        for command, fault in (
                ("--data D", "a command is missing: serve, switch,"), ("sing", "there is no command sing"),
                ("lst missed --data D", "there is no command lst; did you mean list?"), ("cal", "did you mean call?"),
                ("list missed --lmit 3", "there is no option --lmit; did you mean --limit?"),
                ("contacts imprt x", "there is no command imprt; did you mean import?"), ("contacts", "import, add, list or export"),
                ("list", "LIST is missing"), ("list lost", "the lists are missed, dialled,"),
                ("list missed --limit 0", "--limit: 0 is not a number from 1 on"), ("list missed --limit many", "not a number from 1 on"),
                ("list missed --limit", "--limit takes one value"), ("list missed --json --csv", "--csv"),
                ("show", "ENTRY is missing"), ("viewed", "ENTRY is missing"), ("delete missed", "--all for all of them"),
                ("delete missed --all x", "not both"), ("delete --all", "a filter such as --number"),
                ("delete missed x --since 7d", "not both"), ("export missed", "--format is missing"), ("export callbacks --format ical", "callbacks are no calls"),
                ("export missed --format xml", "it is csv, json, jsonl or ical"), ("watch --yaml", "there is no option --yaml"),
                ("serve --switch nowhere", "HOST:PORT"), ("serve --switch host:port", "HOST:PORT"), ("serve --switch host:0", "HOST:PORT"),
                ("serve --set novalue", "KEY=VALUE"), ("serve --set =value", "KEY=VALUE"), ("switch --rate -1", "not a number above 0"), ("switch --lines 2000", "is no range"), ("switch --calls 3", "requires --lines"),
                ("switch --listen 127.0.0.1", "ADDR:PORT"), ("demo extra", "extra"), ("settings a b c", "c ("),
                ("switch --answer MonitorStart=maybe", "REQUEST=HOW"), ("switch --answer MonitorStart", "REQUEST=HOW"),
                ("switch --answer monitorStart=never", "REQUEST=HOW")):
            status, output, errors = self.run_program(*command.split())
            self.assertEqual((status, output), (2, ""), command)
            self.assertIn(fault, errors)
            self.assertRegex(errors, r"^calljournal[^\n]* \(`calljournal[a-z ]* --help` shows more\)\n$")

    def test_a_client_without_a_server_fails_with_advice(self):
        for command in ("list missed", "watch", "settings", "show x", "delete missed x"):
            self.assertEqual(self.refused(*command.split()),
                             "calljournal: cannot reach calljournal at %s: start it with `calljournal serve`, or name the data "
                             "directory of one that runs with --data\n" % (self.data + "/calljournal.sock" * (command == "watch")))

    def test_a_directory_is_for_its_owner_and_one_server_and_an_address_for_one_server(self):
        simulator, address = self.simulate("wait 1ms\n")
        self.data = os.path.join(self.data, "deeper", "still")
        taken = self.serve(address).http
        for name, mode in ((".", 0o700), ("calljournal.sock", 0o600), ("api-address", 0o600), ("journal.db", 0o600)):
            self.assertEqual(stat.S_IMODE(os.stat(os.path.join(self.data, name)).st_mode), mode, name)
        for command in (["serve", "--switch", address], ["demo"]):
            self.assertIn("a calljournal is already running at " + self.data, self.refused(*command))
        simulator.prints("scenario is over")
        self.data = os.path.join(self.data, "other")
        self.assertIn("cannot listen on %s: " % taken, self.refused("serve", "--switch", address, "--listen", taken))
        simulator.stop()
        self.assertEqual(simulator.count("client 2"), 0)

    def test_an_interrupt_ends_every_command_cleanly(self):
        simulator, address = self.simulate("wait 1s\n")
        server = self.serve(address)
        for program in (self.watch(), server, simulator):
            self.assertEqual(program.stop(signal.SIGINT), 0, program.arguments)
        self.assertNotIn("api-address", os.listdir(self.data))
        with socket.socket(socket.AF_UNIX) as silent:
            silent.bind(os.path.join(self.data, "calljournal.sock"))
            silent.listen()
            watcher = self.start("watch", "--data", self.data)
            client, _ = silent.accept()
            self.assertEqual((client.recv(1), watcher.stop()), (b"\0", 0))
            client.close()

    def test_the_demo_shows_calls_and_ends_with_its_switch(self):
        demo = self.start("demo", "--data", self.data, "--listen", "127.0.0.1:0")
        switch = int(demo.prints(r"of a simulated switch at \S+ \(process (\d+)\)").group(1))
        demo.prints("list missed --data " + self.data)
        demo.prints(r"missed call from Ann Müller \(4711\)")
        watcher = self.start("watch", "--data", self.data)
        watcher.prints("missed entr.* not viewed")
        watcher.prints(r"^\d\d:\d\d:\d\d  received call from .* \(\S+\), 00:\d\d$")
        self.assertEqual((watcher.stop(), demo.stop()), (0, 0))
        with self.assertRaises(ProcessLookupError):
            os.kill(switch, 0)

    def test_a_watcher_ends_when_its_output_is_closed(self):
        _, address = self.simulate('call c from 4711 ; ring c ; giveup c\n', "--loop", "--rate", "20")
        self.serve(address)
        watcher = subprocess.Popen([os.environ["CALLJOURNAL"], "watch", "--data", self.data], stdout=subprocess.PIPE)
        self.addCleanup(watcher.kill)
        self.assertTrue(select.select([watcher.stdout], [], [], LIMIT)[0])
        watcher.stdout.close()
        self.assertEqual(watcher.wait(LIMIT), 0)

    def test_output_that_cannot_be_written_is_an_error(self):
        self.serve(NO_SWITCH)
        for command in ("list missed", "list missed --json", "settings", "contacts export --format csv", "export missed --format csv",
                        "stats", "watch"):
            with open("/dev/full", "w", encoding="utf-8") as full:
                done = subprocess.run([os.environ["CALLJOURNAL"], *command.split(), "--data", self.data], stdin=subprocess.DEVNULL,
                                      stdout=full, stderr=subprocess.PIPE, text=True, timeout=LIMIT)
            self.assertEqual(done.returncode, 1, command)
            self.assertRegex(done.stderr, "^calljournal: the output cannot be written", command)
        for output, status in (("", 1), ("| (exec <&-; sleep 1)", 141)):
            script = "(sleep 0.3; \"$0\" settings --data \"$1\" %s; echo $? >&2) %s" % ("" if output else ">&-", output)
            done = subprocess.run(["sh", "-c", script, os.environ["CALLJOURNAL"], self.data], stdin=subprocess.DEVNULL,
                                  stderr=subprocess.PIPE, text=True, timeout=LIMIT)
            self.assertTrue(done.stderr.endswith("%d\n" % status), done.stderr)

    def test_errors_escape_what_controls_a_terminal(self):
        self.serve(NO_SWITCH)
        os.mkfifo(self.data + "/\x1b[31m.vcf")
        os.symlink(self.data, self.data + "/\x1b[31m")
        config = self.file("faulty.toml", '["\\u001b[31m"]\n')
        for arguments in (["list", "missed", "--data", "\x1b[31m"], ["\x1b[31m"], ["serve", "--config", "\x1b[31m"],
                          ["serve", "--config", config], ["serve", "--set", "\x1b[31m"],
                          ["delete", "missed", "unknown", "--data", self.data + "/\x1b[31m"],
                          ["contacts", "import", self.data + "/\x1b[31m.vcf", "--data", self.data]):
            _, _, errors = self.run_program(*arguments)
            self.assertIn("\\x1b[31m", errors)
            self.assertNotIn("\x1b", errors)

    def test_faults_in_files_and_settings_are_named_with_their_place(self):
        config = self.file("faulty.toml", "[switch]\nhost = 7\n")
        scenario = self.file("faulty.txt", "wait 1s\nring unknown\n")
        for arguments, fault in ((["serve", "--config", config], config + ":2"),
                                 (["switch", "--listen", "127.0.0.1:0", "--scenario", scenario], scenario + ":2"),
                                 (["serve", "--switch", NO_SWITCH, "--set", "server-based-features=yes"],
                                  "--set server-based-features=yes: must be true or false")):
            self.assertIn(fault, self.refused(*arguments))
        pipe = os.path.join(self.data, "api-token")  # without a writer and a reader
        os.mkfifo(pipe)
        for arguments, fault in ((["serve", "--listen", "127.0.0.1:0"], "not a regular file"),
                                 (["serve", "--config", self.file("log.toml", "[log]\nfile = '%s'\n" % pipe)], "without a reader")):
            self.assertIn(fault, self.refused(*arguments))
        os.remove(pipe)
        self.serve(NO_SWITCH, "--set", "server-based-featres=true").logs("the setting server-based-featres is not used")

    def test_a_table_is_for_people(self):
        self.simulate_and_serve('call a from 4711 "Ann Müller" ; ring a ; giveup a\n'
                                'call b from 4712 "Bob" ; ring b ; giveup b\n'
                                'call c from 4713 ; ring c ; answer c ; hangup c by caller\n'
                                'call d from anonymous ; ring d ; answer d ; hangup d by caller\n', "received call from Withheld")
        title, *lines = self.done("list", "missed").splitlines()
        self.assertEqual(title.split(), ["TIME", "NAME", "NUMBER", "CALLS"])
        self.assertRegex(lines[0], r"^\* \d{4}-\d\d-\d\d \d\d:\d\d:\d\d  Bob +4712 +1$")
        self.assertEqual(self.done("list", "missed", "--limit", "1").splitlines()[2:], ["(1 of 2)"])
        found = self.list("missed", "--search", "471", "--limit", "1")
        self.assertEqual((found["total"], found["unviewed"], [item["number"] for item in found["items"]]), (2, 2, ["4712"]))
        self.assertRegex(self.done("list", "received"), r"CALLS +DURATION\n  .*  Withheld  +1 +00:0\d\n  .*  4713 +1 +00:0\d\n$")
        self.assertEqual(self.done("list", "forwarded"), "no entries in the list\n")
        self.done("settings", "call-log-enabled", "false")
        status, output, errors = self.run_program("list", "missed", "--data", self.data)
        self.assertEqual((status, output), (0, "no entries in the list\n"))
        self.assertIn("calljournal settings call-log-enabled true --data %s` switches it on" % self.data, errors)
