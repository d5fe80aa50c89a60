"""What the database refuses while it is locked, full or deleted is there later, as it was announced."""

import json
import os
import resource
import socket
import sqlite3
import urllib.error
import urllib.request

from harness import ProgramTest
from third_party_switch import ThirdPartySwitch


class RefusedChangesTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.switch = ThirdPartySwitch(self)
        self.server = self.serve(self.switch.address)
        self.watcher = self.watch()
        self.switch.accept_monitor()
        self.announced = []

    def miss(self, number, action=0):
        self.switch.misses("c%d" % len(self.announced), "N<%s>Bob" % number)
        self.announced.append(self.change(self.watcher, "missedCallsUpdate", action))

    def connection(self):
        database = sqlite3.connect(os.path.join(self.data, "journal.db"), isolation_level=None)
        self.addCleanup(database.close)
        return database

    def health(self):
        try:
            with urllib.request.urlopen("http://%s/healthz" % self.server.http, timeout=30) as response:
                return response.status, ""
        except urllib.error.HTTPError as error:
            return error.code, json.load(error)["error"]["message"]

    def assert_stored(self):
        """Everything announced is in the lists and in the history after a clean end and a start."""
        self.assertEqual(self.server.stop(), 0)
        self.watcher.ends()
        self.server = self.serve(self.switch.address)
        expected = {each["number"]: each for each in self.announced}
        self.assertEqual({each["number"]: each for each in self.list("missed")["items"]}, expected)
        self.assertEqual(self.connection().execute("SELECT count(*), count(DISTINCT call_id) FROM call WHERE ended").fetchone(),
                         (len(self.announced), len(self.announced)))

    def test_a_lock_delays_the_changes_in_their_order_and_a_user_is_told(self):
        self.miss("4711")
        lock = self.connection()
        lock.execute("BEGIN IMMEDIATE")
        for number in ("4712", "4713", "4714"):
            self.miss(number)
        self.await_second_after(self.announced[-1])
        self.miss("4712", action=1)
        self.assertEqual(self.announced[-1]["uniqueId"], self.announced[1]["uniqueId"])
        status, text = self.health()
        self.assertEqual((status, "4 are kept" in text), (503, True), text)
        self.assertEqual(self.get(self.server, "status")["database"], {"kept": 4, "lost": 0})
        self.assertIn("is kept and stored later", self.refused("viewed", self.announced[0]["entryId"]))
        lock.execute("COMMIT")
        self.await_value((200, ""), self.health)
        self.announced[0]["viewed"] = True  # what the user asked for was kept, too
        self.assert_stored()

    def test_the_end_waits_for_a_lock_and_then_tells_what_is_not_stored(self):
        lock = self.connection()
        lock.execute("BEGIN IMMEDIATE")
        self.miss("4711")
        self.miss("4712")
        self.server.process.terminate()
        self.server.logs(r"the database refuses 2 changes \(2 new calls, 0 other\); they are not stored")
        self.assertEqual(self.server.ends(), 1)
        self.watcher.ends()
        lock.execute("COMMIT")

    def test_a_clearing_that_is_not_stored_is_no_success(self):
        self.miss("4711")
        lock = self.connection()
        lock.execute("BEGIN IMMEDIATE")
        self.assertIn("not stored yet", self.refused("settings", "clear-calllog", "true"))
        lock.execute("COMMIT")
        self.await_value((200, ""), self.health)
        self.assertEqual(self.list("missed")["items"], [])

    def test_the_end_tells_what_was_lost(self):
        self.connection().execute("CREATE TRIGGER refuse BEFORE INSERT ON call BEGIN SELECT RAISE(ABORT, 'no'); END")
        self.switch.misses("c0", "N<4711>Bob")
        self.await_value({"kept": 0, "lost": 1}, lambda: self.get(self.server, "status")["database"])
        self.server.process.terminate()
        self.server.logs(r"lost since the start: 1 change \(")
        self.assertEqual(self.server.ends(), 1)
        self.watcher.ends()

    def test_a_shortage_of_descriptors_is_logged_once_and_ends(self):
        server, logged = self.server, ("no file descriptor is free", "cannot accept a client", "descriptors are free again")
        limits = resource.prlimit(server.process.pid, resource.RLIMIT_NOFILE)
        resource.prlimit(server.process.pid, resource.RLIMIT_NOFILE, (0, limits[1]))
        server.logs(logged[0])
        with socket.socket(socket.AF_UNIX) as local, socket.create_connection(server.http.split(":")) as waiting:
            local.connect(os.path.join(self.data, "calljournal.sock"))
            waiting.sendall(b"GET /healthz HTTP/1.1\r\nHost: localhost\r\n\r\n")
            server.logs(logged[1])
            self.miss("4711")
            resource.prlimit(server.process.pid, resource.RLIMIT_NOFILE, limits)
            waiting.settimeout(15)
            self.assertEqual(waiting.recv(12), b"HTTP/1.1 200")
        server.logs(logged[2])
        self.assertEqual([server.count(each) for each in logged], [1, 1, 1])
        self.assert_stored()

    def test_a_full_disk_and_a_deleted_database_lose_nothing(self):
        # The limit of the file size stands for a full disk.
        full = os.path.getsize(os.path.join(self.data, "journal.db-wal"))
        _, hard = resource.prlimit(self.server.process.pid, resource.RLIMIT_FSIZE, (full, resource.RLIM_INFINITY))
        for number in range(20):
            self.miss(str(5000 + number))
        self.assertEqual(self.health()[0], 503)
        resource.prlimit(self.server.process.pid, resource.RLIMIT_FSIZE, (hard, hard))
        self.await_value((200, ""), self.health)
        for name in ("journal.db", "journal.db-wal", "journal.db-shm"):
            os.remove(os.path.join(self.data, name))
        for number in range(20):
            self.miss(str(6000 + number))
        self.server.logs("was deleted, renamed or replaced")
        self.assert_stored()
