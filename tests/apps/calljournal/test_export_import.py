"""What leaves the journal as a file comes back as it was."""

import os
import sqlite3

from harness import ProgramTest


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
        self.done("restore", copy + "2")
        self.assertEqual(self.value(database + ".before-restore.2", setting), former)
        self.serve("127.0.0.1:9")
        self.assertEqual(self.done("settings", "missed-logging").strip(), "0")
