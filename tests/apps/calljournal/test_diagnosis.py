"""`status`, `doctor` and `version`, and the user's configuration file."""

import csv
import io
import json
import os
import re
import subprocess
import unittest

from harness import ENVIRONMENT, LIMIT, ProgramTest

CALL = 'call ann from 4711 "Ann" ; ring ann ; giveup ann'


class DiagnosisTest(ProgramTest):
    def doctor(self, *arguments, status):
        """The findings by subject: level and text."""
        ended, output, errors = self.run_program("doctor", "--data", self.data, *arguments)
        self.assertEqual((ended, errors), (status, ""), output)
        return {subject: (level, text) for level, subject, text in re.findall(r"^(ok|warning|FAILED) +(\S.*?)  +(.*)$", output, re.M)}

    def table(self, *command):
        """The rows of `-o csv` without the titles."""
        return list(csv.reader(io.StringIO(self.run_program(*command, "--data", self.data, "-o", "csv")[1])))[1:]

    def test_a_running_journal_is_healthy(self):
        simulator, server = self.simulate_and_serve(CALL, "missed call from")
        output = self.done("status")
        self.assertRegex(output, r"(?m)^switch +connected, and reports the line's calls$")
        self.assertRegex(output, r"(?m)^missed +1 entry, 1 new$")
        self.assertRegex(output, r"(?m)^stored calls +1$")
        self.assertIn("version       " + self.done("version").split()[1] + "\n", output)
        self.assertEqual(json.loads(self.done("status", "--json")), self.get(server, "status"))
        self.assertEqual([each.split(None, 1) for each in output.splitlines() if "calls" not in each.split("  ")[0]],
                         [each for each in self.table("status") if "calls" not in each[0]])
        found = self.doctor("--switch", simulator.address, status=0)
        self.assertEqual({level for level, _ in found.values()}, {"ok"})
        self.assertIn("undamaged", found["database"][1])

        os.chmod(self.data + "/api-token", 0o644)
        self.assertEqual(self.doctor(status=0)["token"][0], "warning")
        os.chmod(self.data + "/api-token", 0o600)
        self.assertEqual(simulator.stop(), 0)
        server.logs("lost")
        ended, output, _ = self.run_program("status", "--data", self.data)
        self.assertEqual((ended, "switch        not connected\n" in output), (1, True), output)
        self.assertEqual(self.doctor(status=1)["switch"][0], "FAILED")

    def test_the_file_of_the_running_server_is_examined(self):
        _, address = self.simulate(CALL)
        server = self.serve(address, config='[line]\ndevice = "2001"\n')
        config = os.path.join(self.data, "calljournal.toml")
        self.assertEqual(self.doctor(status=0)["configuration"], ("ok", config + ", which the running server uses"))
        other = self.file("other.toml", "[line]\n")
        self.assertEqual(self.doctor("--config", other, status=0)["configuration"], ("ok", other))
        self.file("calljournal.toml", "[line]\ndevise = 1\n")  # before the next start
        level, text = self.doctor(status=1)["configuration"]
        self.assertEqual((level, config + ":2: line.devise" in text), ("FAILED", True), text)
        self.assertEqual(server.stop(), 0)
        self.assertIn("no file; ", self.doctor(status=1)["configuration"][1])

    def test_each_fault_is_named(self):
        server = self.serve("127.0.0.1:1")
        self.assertEqual(server.stop(), 0)
        found = self.doctor("--switch", "127.0.0.1:1", status=1)
        self.assertEqual(found["switch"], ("FAILED", "127.0.0.1:1 is not reached: Connection refused; see switch.host and switch.port"))
        findings = json.loads(self.run_program("doctor", "--data", self.data, "--switch", "127.0.0.1:1", "--json")[1])["findings"]
        for rows in (self.table("doctor", "--switch", "127.0.0.1:1"), [list(each.values()) for each in findings]):
            self.assertEqual({subject: (level, text) for level, subject, text in rows if subject != "data directory"},
                             {subject: finding for subject, finding in found.items() if subject != "data directory"})
        self.assertEqual({found[each][0] for each in ("configuration", "data directory", "token", "database", "server")}, {"ok"})
        simulator, address = self.simulate(CALL)
        for config, subject, text in (("[switch]\nprot = 1\n", "configuration", "c.toml:2: switch.prot"),
                                      ('[api]\ntls-certificate = "no.pem"\ntls-key = "no.key"\n', "certificate", "no.pem does not exist"),
                                      ('[[webhook]]\nurl = "http://127.0.0.1:1/"\nevents = ["call.filed"]\nsecret-file = "no"\n', "webhook", "no")):
            level, found = self.doctor("--config", self.file("c.toml", config), "--switch", address, status=1)[subject]
            self.assertEqual((level, text in found), ("FAILED", True), found)
        self.assertEqual(self.doctor("--switch", address, status=0)["switch"], ("ok", address + " takes connections"))

        with open(self.data + "/journal.db", "r+b") as database:
            database.seek(4096)
            database.write(bytes(range(256)) * 64)
        self.assertEqual(self.doctor("--switch", address, status=1)["database"][0], "FAILED")
        self.assertEqual(simulator.stop(), 0)

    def test_the_users_file_is_read_unless_another_is_named(self):
        os.mkdir(self.data + "/calljournal")
        self.file("calljournal/calljournal.toml", '[line]\ndevice = "3007"\n[switch]\nport = 1\n')
        environment = {**ENVIRONMENT, "XDG_CONFIG_HOME": self.data}
        doctor = [os.environ["CALLJOURNAL"], "doctor", "--data", self.data + "/data"]
        run = lambda *more: subprocess.run([*doctor, *more], capture_output=True, text=True, env=environment, timeout=LIMIT).stdout
        self.assertIn("127.0.0.1:1 is not reached", run())
        self.assertIn("configuration     " + self.data + "/calljournal/calljournal.toml", run())
        self.assertIn("127.0.0.1:2 is not reached", run("--config", self.file("other.toml", "[switch]\nport = 2\n")))

    def test_the_version_names_the_libraries(self):
        self.assertRegex(self.run_program("version")[1], r"^calljournal \d+\.\d+\.\d+\n(.*\n)*SQLite \d.*, OpenSSL \d.*, ICU \d")
        versions = json.loads(self.run_program("version", "-o", "json")[1])
        self.assertEqual([[name, version] for name, version in versions.items()], self.table("version"))
        self.assertRegex(" ".join(versions), "^calljournal tables sqlite openssl icu$")


if __name__ == "__main__":
    unittest.main()
