"""What leaves the journal as a file comes back as it was."""

import csv
import io
import json
import os
import sqlite3

from harness import ProgramTest

CALLS = """
call a from 4711 "Ann, 'Müller'" to 2001 ; ring a ; giveup a
call b from 4712 "@Bob" to 2001 via 2050 "Office" because busy ; ring b ; giveup b ; wait 2s
call c from 4711 "Ann" to 2001 ; ring c ; giveup c
dial d to 4713 "Carl" ; ring d ; connect d ; wait 1s ; hangup d
call e from +4714 "=1+1" to 2001 ; ring e ; answer e ; wait 1s ; hangup e
"""
LISTS = ("missed", "dialled", "received", "forwarded")
MORE = "".join('{"start":"2026-11-21T05:22:%02dZ","number":"4799","list":"received","duration":7}\n' % n for n in range(12)) + \
    '{"start":"2026-11-21T05:22:05Z","number":"4716","list":"forwarded","connectedNumber":"205","connectedName":"Desk"}\n'


class ExportImportTest(ProgramTest):
    def value(self, file, sql):
        with sqlite3.connect(file) as database:
            return database.execute(sql).fetchone()[0]

    def test_a_backup_of_a_running_journal_is_restored_and_the_former_files_are_kept(self):
        database, copy = os.path.join(self.data, "journal.db"), os.path.join(self.data, "copy")
        server = self.serve("127.0.0.1:9")
        self.done("settings", "missed-logging", "1")
        self.done("backup", copy)
        self.assertEqual(os.stat(copy).st_mode & 0o777, 0o600)
        self.assertIn("--force", self.refused("backup", copy))
        for name in ("api-token", "api-address", "journal.db-wal", "calljournal.sock"):
            self.assertIn("of the journal itself", self.refused("backup", "--force", os.path.join(self.data, name)))
        self.assertIn("standard output", self.refused("backup", "-"))
        self.assertIn("is already running", self.refused("restore", copy))
        self.done("settings", "missed-logging", "0")
        self.done("backup", copy + "2")
        server.stop()

        for name, damage, why in (("empty", "", "no database of this program"), ("newer", "user_version = 999", "newer version"),
                                  ("foreign", "application_id = 1", "no database of this program")):
            bad = self.file(name, "")
            if damage:
                with open(copy, "rb") as source, open(bad, "wb") as target:
                    target.write(source.read())
                with sqlite3.connect(bad) as changed:
                    changed.execute("PRAGMA " + damage)
            self.assertIn(why, self.refused("restore", bad))
        self.assertIn("not a database", self.refused("restore", self.file("text", "not SQLite" * 1000)))
        self.assertFalse([name for name in os.listdir(self.data) if "before-restore" in name])

        setting = "SELECT value FROM setting WHERE key = 'missed-logging'"
        former, latter = (self.value(each, setting) for each in (copy, copy + "2"))
        self.assertNotEqual(former, latter)
        self.assertEqual(self.value(database, setting), latter)
        self.done("restore", copy)
        self.assertEqual(self.value(database, setting), former)
        self.assertEqual(self.value(database + ".before-restore", setting), latter)
        if os.geteuid() == 0:  # restores for the user of the service
            os.chown(database, 4711, 4712)
        self.done("restore", copy + "2")
        if os.geteuid() == 0:
            self.assertEqual((os.stat(database).st_uid, os.stat(database).st_gid), (4711, 4712))
            os.chown(database, 0, 0)
        self.assertEqual(self.value(database + ".before-restore.2", setting), former)
        self.serve("127.0.0.1:9")
        self.assertEqual(self.done("settings", "missed-logging").strip(), "0")

    def exported(self):
        """The whole history in both formats, without the ids of entries."""
        lines = [json.loads(line) for line in self.done("export", "--format", "jsonl", "--sort", "start").splitlines()]
        rows = list(csv.reader(io.StringIO(self.done("export", "--format", "csv", "--sort", "start"), newline="")))
        for line in lines:
            self.assertIn("uniqueId", line)
            line["uniqueId"] = None
        column = rows[0].index("uniqueId")
        return lines, [row[:column] + row[column + 1:] for row in rows]

    def test_the_history_is_the_same_after_export_deletion_and_import(self):
        self.simulate_and_serve(CALLS, "received call from =1\\+1")
        self.done("import", self.file("more.jsonl", MORE))
        self.done("viewed", self.list("missed")["items"][0]["entryId"])
        before, lists = self.exported(), self.counts()
        self.assertEqual(len(before[0]), 18)
        self.assertIn("'205'", str(lists))
        self.assertEqual({line["viewed"] for line in before[0] if line["list"] == "missed"}, {True, False})
        for form in ("csv", "jsonl"):
            file = self.file("calls." + form, self.done("export", "--format", form, *(["--sort", "start"] if form == "csv" else [])))
            for name in LISTS:
                self.done("delete", name, "--all")
            self.assertEqual(self.exported()[0], [])
            self.assertIn("18 imported, 0 known", self.done("import", file))
            self.assertEqual(self.exported(), before)
            self.assertIn("0 imported, 18 known", self.done("import", file))
            self.assertEqual(self.counts(), lists)

    def counts(self):
        return [(page["total"], page["unviewed"], [(each["number"], each["calls"], each["time"], len(each["occurrences"]), each["occurrences"][0].get("forwardedToNumber"))
                                                     for each in page["items"]])
                for page in map(self.list, LISTS)]

    def test_call_detail_records_are_imported_once_and_wrong_rows_are_named(self):
        server = self.serve("127.0.0.1:9")
        watcher = self.watch()
        records = self.file("records.csv", "calldate,src,dst,disposition,billsec\n2026-11-21 06:22:05,4711,2001,NO ANSWER,0\n"
                            "2026-13-21 06:22:05,4711,2001,ANSWERED,5\n2026-11-21 07:00:00,2001,4712,ANSWERED,75\n")
        arguments = ("import", records, "--timezone", "Europe/Berlin", "--columns",
                     "start=calldate,calling=src,called=dst,list=disposition,duration=billsec")
        for imported in ("2 imported, 0 known", "0 imported, 2 known"):
            status, output, errors = self.run_program(*arguments, "--data", self.data)
            self.assertEqual((status, errors), (1, records + ":3: start is no time: 2026-13-21 06:22:05\n"))
            self.assertIn(imported, output)
        missed, dialled = self.list("missed"), self.list("dialled")
        self.assertEqual((missed["unviewed"], missed["items"][0]["time"]), (0, "2026-11-21T05:22:05Z"))
        self.assertEqual(dialled["items"][0]["number"], "4712")
        more = self.file("more.jsonl", '{"start":"2026-11-22T00:00:00Z","number":"4711","list":"missed"}\n')
        self.assertIn("1 imported", self.done("import", more, "--unviewed"))
        item = self.change(watcher, "missedCallsUpdate", 1)
        self.assertEqual((item["viewed"], len(item["occurrences"])), (False, 2))
        self.assertEqual(server.stop(), 0)
        self.assertEqual(watcher.ends(), 1)
