"""The program as a service: what it reports to the service manager, the configuration that it reads again, its log."""

import json
import os
import re
import shutil
import signal
import socket
import subprocess
import sys
import time
import unittest
from unittest import mock

import harness
from harness import LIMIT, ProgramTest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__)))))
NO_SWITCH = "127.0.0.1:1"
NAMESPACE = ("unshare", "--user", "--map-root-user", "--mount")
CONFIG = '[line]\ndevice = "%s"\n[log]\nlevel = "%s"\nfile = "%s"\n%s'


class Service(ProgramTest):
    def manager(self, **environment):
        """The socket of a service manager, for the programs that the test starts from now on."""
        path = os.path.join(self.data, "notify")
        listener = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.addCleanup(listener.close)
        listener.bind(path)
        listener.settimeout(LIMIT)
        changed = mock.patch.dict(harness.ENVIRONMENT, NOTIFY_SOCKET=path, **environment)
        changed.start()
        self.addCleanup(changed.stop)
        return lambda: listener.recv(4096).decode().split("\n")[0]

    def test_the_service_manager_is_told_each_state(self):
        reported = self.manager(WATCHDOG_USEC="400000")
        server = self.serve(NO_SWITCH)
        self.assertEqual([reported() for _ in range(3)], ["READY=1", "WATCHDOG=1", "WATCHDOG=1"])
        server.process.send_signal(signal.SIGHUP)
        while (state := reported()) == "WATCHDOG=1":
            pass
        self.assertEqual([state, reported()], ["RELOADING=1", "READY=1"])
        server.process.terminate()
        while (state := reported()) == "WATCHDOG=1":
            pass
        self.assertEqual((state, server.ends()), ("STOPPING=1", 0))

    def test_sighup_reads_the_log_and_the_level_again_and_names_what_needs_a_restart(self):
        reported = self.manager()
        log = os.path.join(self.data, "journal.log")
        server = self.serve(NO_SWITCH, config=CONFIG % ("2001", "info", log, ""))
        reported()

        def reload(config, *expected):
            """The log has just the expected lines of the configuration, in a new file of its name."""
            self.file("calljournal.toml", config)
            server.process.send_signal(signal.SIGHUP)
            self.assertEqual([reported(), reported()], ["RELOADING=1", "READY=1"])
            deadline = time.monotonic() + LIMIT
            while True:
                with open(log, encoding="utf-8") as file:
                    lines = [line.split("] ", 1)[1] for line in file if "[Configuration]" in line]
                if len(lines) == len(expected) or time.monotonic() > deadline:
                    break
            for line, text in zip(lines, expected, strict=True):
                self.assertIn(text, line)
            os.replace(log, log + ".1")

        reload(CONFIG % ("2001", "info", log, ""), "the configuration is read again")
        reload(CONFIG % ("2002", "warning", log, ""), "the new value of line.device has its effect at the next start")
        reload(CONFIG % ("2001", "info", log, "private = true"), "the configuration is read again")
        server.process.send_signal(signal.SIGHUP)  # opens the file that was moved away
        self.assertEqual([reported(), reported()], ["RELOADING=1", "READY=1"])
        reload("[log", "the configuration is read again", "the configuration stays as it was")
        server.process.terminate()
        self.assertEqual(server.ends(), 0)

    def test_the_log_masks_names_and_numbers_unless_it_is_told_to_show_them(self):
        for library, private, shown in (("warning", "false", False), ("debug", "false", False), ("warning", "true", True)):
            with self.subTest(library=library, private=private):
                _, address = self.simulate('call a from 4930123467 "Ann Mustermann" ; ring a ; giveup a\n')
                server = self.serve(address, config='[log]\nlevel = "debug"\nlibrary-level = "%s"\nprivate = %s\n' % (library, private))
                server.logs(r"missed call from Ann Mustermann \(" if shown else r"missed call from \*\*\* \(\*\*67\)")
                self.assertEqual(server.stop(), 0)
                text = "\n".join(server.seen)
                self.assertEqual(bool(re.search("Mustermann|30123467", text)), shown)
                self.assertEqual("[Journal Service" in text, library == "debug")
                os.remove(os.path.join(self.data, "journal.db"))

    @unittest.skipUnless(subprocess.run([*NAMESPACE, "true"], check=False, capture_output=True).returncode == 0, "no namespaces")
    def test_the_systems_journal_gets_the_fields_of_each_line(self):
        _, address = self.simulate('call a from 4711 ; ring a ; giveup a\n')
        config = self.file("c.toml", '[management]\n"line\\nbreak (a:1)" = "1"\n[log]\nlevel = "debug"\n')
        service = subprocess.Popen(
            [*NAMESPACE, sys.executable, "-B", os.path.join(os.path.dirname(os.path.abspath(__file__)), "journald.py"),
             os.environ["CALLJOURNAL"], "serve", "--data", os.path.join(self.data, "data"), "--switch", address, "--listen", "127.0.0.1:0",
             "--config", config], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, env=harness.ENVIRONMENT)
        self.addCleanup(service.kill)
        entries = []
        for line in service.stdout:
            entries.append(json.loads(line))
            if "missed call from" in entries[-1]["MESSAGE"]:
                break
        entries += [json.loads(line) for line in service.communicate(timeout=LIMIT)[0].splitlines()]
        self.assertEqual(service.returncode, 0)
        for component, text, priority, file in (("Configuration", r"the setting line\nbreak (a:1) is not used; is it misspelt?", "4", "ServeOptions.cpp"),
                                                ("Journal", "2001: missed call from **11", "6", "JournalLogObserver.cpp"),
                                                ("CSTA Link", "", "7", "LinkMonitors.cpp")):
            with self.subTest(component):
                found = [each for each in entries if each["CALLJOURNAL_COMPONENT"] == component and each["PRIORITY"] == priority and
                         text in (each["MESSAGE"], "")]
                self.assertTrue(found, entries)
                self.assertEqual((found[0]["CODE_FILE"], found[0]["SYSLOG_IDENTIFIER"]), (file, "calljournal"))
                self.assertRegex(found[0]["CODE_LINE"], r"^[1-9]\d*$")

    @unittest.skipUnless(shutil.which("systemd-analyze"), "systemd-analyze is in the package systemd")
    def test_the_units_are_sandboxed(self):
        units = os.path.join(os.path.dirname(os.environ["CALLJOURNAL"]), "../systemd")
        for name in ("calljournal.service", "calljournal-backup.service"):
            done = subprocess.run(["systemd-analyze", "security", "--offline=true", "--threshold=20", os.path.join(units, name)],
                                  capture_output=True, text=True, timeout=LIMIT)
            self.assertEqual(done.returncode, 0, done.stdout[-300:] + done.stderr)


if __name__ == "__main__":
    unittest.main()
