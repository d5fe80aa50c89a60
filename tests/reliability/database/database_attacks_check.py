"""Attacks the file of the database from outside, while the program serves and before it starts.

The program must neither crash nor hang; only a cut journal.db-shm may end it. While it serves it reports the fault in its log or by /healthz, and when the fault has ended
every call that it announced is there. At a start it starts, or prints the reason why it does not.
"""

import contextlib
import http.client
import json
import os
import random
import shutil
import signal
import sqlite3
import subprocess
import threading
import time

import rounds
from harness import LIMIT
from journal import Api, Refused, Round

CALLS = 12
NOTICED = 4.0  # seconds within which a fault is reported, or was mended
OTHER = "CREATE TABLE t (x); INSERT INTO t VALUES (1); PRAGMA user_version = 1"
# Root may write every file; without these rights it may not.
AS_USER = ("setpriv", "--bounding-set=-dac_override,-dac_read_search") if os.geteuid() == 0 else ()


class Journal:
    """A running journal with calls, and the numbers that it has announced."""

    def __init__(self, around, dice):
        self.around, self.dice, self.announced, self.sent = around, dice, set(), 0
        self.file = os.path.join(around.data, "journal.db")
        self.server = around.start(wrapper=AS_USER)
        around.switch.accept_monitor()
        self.api = Api(self.server)
        subscribed = threading.Event()
        self.follower = threading.Thread(target=self.follow, args=(subscribed,), daemon=True)
        self.follower.start()
        subscribed.wait(LIMIT)

    def follow(self, subscribed):
        try:
            with Api(self.server).response("GET", "/api/v1/events") as stream:
                subscribed.set()
                for line in stream:
                    if line.startswith(b"data: {") and (item := json.loads(line[6:]).get("item")):
                        self.announced.add(item["number"])
        except (OSError, http.client.HTTPException):
            pass

    def send_calls(self, count=CALLS):
        """Calls of new numbers; waits until they are announced."""
        for _ in range(count):
            self.sent += 1
            self.around.call(self.dice.choice(("missed", "received", "dialled")), "c%d" % self.sent, str(1000 + self.sent))
        deadline = time.monotonic() + LIMIT
        while len(self.announced) < self.sent and time.monotonic() < deadline and self.server.process.poll() is None:
            time.sleep(0.02)

    def health(self):
        """The status of the health check; 0 if there is no server."""
        try:
            with Api(self.server).response("GET", "/healthz") as response:
                return response.status
        except (OSError, http.client.HTTPException):
            return 0

    def files(self):
        return [self.file + end for end in ("", "-wal", "-shm") if os.path.exists(self.file + end)]


# The attacks on a running program whose fault ends: each does its work and returns what ends the fault.

def lock(journal):
    connection = sqlite3.connect(journal.file, isolation_level=None, check_same_thread=False)
    connection.execute("BEGIN IMMEDIATE")
    return connection.close


def delete(journal):
    for file in journal.files():
        os.unlink(file)
    return None


def delete_one(journal):
    os.unlink(journal.file)
    return None


def delete_log(journal):
    os.unlink(journal.file + "-wal")
    return None


def replace_log(journal):
    with open(journal.file + ".copy", "wb") as other:
        other.write(journal.dice.randbytes(journal.dice.choice((0, 5000))))
    os.replace(journal.file + ".copy", journal.file + "-wal")
    return None


def delete_index(journal):
    os.unlink(journal.file + "-shm")
    return None


def rename(journal):
    for file in journal.files():
        os.rename(file, file + ".away")
    return None


def replace(journal):
    copy = journal.file + ".copy"
    with contextlib.closing(sqlite3.connect(copy)) as other:
        other.executescript(OTHER)
    os.replace(copy, journal.file)
    return None


def make_read_only(journal):
    files = journal.files()
    for file in files:
        os.chmod(file, 0o400)
    os.chmod(journal.around.data, 0o500)

    def end():
        os.chmod(journal.around.data, 0o700)
        for file in files:
            os.chmod(file, 0o600)
    return end


SURVIVED = (lock, delete, delete_one, delete_log, replace_log, delete_index, rename, replace, make_read_only)


# The attacks that destroy what is stored.

def overwrite(file, dice):
    size = os.path.getsize(file)
    with open(file, "r+b") as stream:
        for _ in range(dice.randint(1, 6)):
            stream.seek(dice.randrange(max(1, size // 512)) * 512)
            stream.write(dice.randbytes(dice.choice((16, 512, 4096))))


def overwrite_first(file, dice):
    with open(file, "r+b") as stream:
        stream.seek(dice.randrange(100))
        stream.write(dice.randbytes(dice.choice((1, 8, 200))))


def truncate(file, dice):
    os.truncate(file, dice.choice((0, 100, 512, 4096, max(0, os.path.getsize(file) - dice.randint(1, 9000)))))


DESTROYED = (overwrite, overwrite, overwrite, overwrite_first, truncate)


# The states in which a start finds the file: each returns what ends the fault, or None.

def at_start_directory(file, dice):
    os.unlink(file)
    os.mkdir(file)


def at_start_pipe(file, dice):
    os.unlink(file)
    os.mkfifo(file)


def at_start_link(file, dice):
    os.unlink(file)
    pipe, text = file + ".pipe", file + ".text"  # no device of the machine: a program at fault would change it
    os.mkfifo(pipe)
    with open(text, "w", encoding="ascii") as other:
        other.write("a text")
    os.symlink(dice.choice((file, pipe, text, "missing/journal.db")), file)


def at_start_other(file, dice):
    os.unlink(file)
    with contextlib.closing(sqlite3.connect(file)) as other:
        other.executescript(OTHER)


def at_start_read_only(file, dice):
    os.chmod(file, 0o400)


def at_start_locked(file, dice):
    connection = sqlite3.connect(file, isolation_level=None, check_same_thread=False)
    connection.execute("PRAGMA journal_mode = DELETE")
    connection.execute("BEGIN EXCLUSIVE")
    return connection.close


def at_start_random(file, dice):
    with open(file, "wb") as stream:
        stream.write(dice.randbytes(dice.choice((1, 99, 100, 5000))))


AT_START = (at_start_directory, at_start_pipe, at_start_link, at_start_other, at_start_read_only, at_start_locked,
            at_start_random, overwrite, overwrite_first, truncate)


def reported(journal, lines):
    """True when the health check or a line of the log after the first `lines` reports a fault of the database."""
    return journal.health() == 503 or any("atabase" in line and (" E " in line or "rror" in line or "failed" in line
                                                                 or "deleted" in line or "WARN" in line or "journal.db" in line)
                                          for line in journal.server.log[lines:])


def survive(journal, attack):
    """A fault that ends: the calls before, during and after it are there at the end."""
    journal.send_calls()
    lines = len(journal.server.log)
    end = attack(journal)
    journal.send_calls(4)
    deadline = time.monotonic() + NOTICED
    said = reported(journal, lines)
    while attack is not make_read_only and not said and time.monotonic() < deadline:
        time.sleep(0.1)
        said = reported(journal, lines)
    if attack is not make_read_only and not said:  # who has the file open may go on writing
        yield "neither the log nor the health check reports the fault"
    if end:
        end()
    journal.send_calls(4)
    deadline = time.monotonic() + LIMIT / 2
    while journal.health() != 200 and time.monotonic() < deadline:
        time.sleep(0.1)
    if journal.health() != 200:
        yield "the health check returns %d after the fault" % journal.health()
    if len(journal.announced) != journal.sent:
        yield "%d of %d calls were announced" % (len(journal.announced), journal.sent)
    status = journal.server.end(journal.dice.choice((signal.SIGTERM, signal.SIGKILL)))
    if status not in (0, -signal.SIGKILL):
        yield "the program ended with status %d" % status
    yield from missing_calls(journal)


def use(journal):
    """Requests of each kind while the file is damaged: each has a response."""
    for method, path, body in (("GET", "lists/missed?limit=1000", None), ("GET", "calls?limit=1000", None), ("GET", "statistics?by=day", None),
                               ("GET", "settings", None), ("GET", "contacts", None), ("PUT", "parties/4711", {"note": "n"}),
                               ("GET", "status", None), ("DELETE", "lists/received?all=true", None), ("GET", "calls?search=1001", None)):
        try:
            Api(journal.server)(method, path, body)
        except Refused as refusal:
            if refusal.status != 503:
                yield "%s %s: %s" % (method, path, refusal)


def endure(journal, attack):
    """A fault that destroys what is stored: the program goes on, and starts or does not."""
    journal.send_calls()
    file = journal.dice.choice(journal.files())
    attack(file, journal.dice)
    if attack is truncate and file.endswith("-shm"):
        yield from endure_cut_memory(journal)
        return
    journal.send_calls(4)
    yield from use(journal)
    if journal.health() == 0:
        yield "the program does not respond"
    status = journal.server.end(signal.SIGTERM)
    if status not in (0, 1):
        yield "the program ended with status %d" % status
    yield from start(journal.around)


def endure_cut_memory(journal):
    """The index of the log was cut, which only the owner can do: SQLite may end by SIGBUS, or not find what the log has."""
    with contextlib.suppress(OSError):
        journal.send_calls(4)
    with contextlib.suppress(OSError, http.client.HTTPException):
        yield from use(journal)
    status = journal.server.end(signal.SIGTERM)
    if status not in (0, 1, -signal.SIGBUS):
        yield "the program ended with status %d" % status
    yield from start(journal.around)


def missing_calls(journal):
    """The fault of a start after which announced calls are not there."""
    missing = journal.announced - {call["number"] for call in Api(journal.around.start(wrapper=AS_USER)).every("calls")}
    if missing:
        yield "%d of %d announced calls are lost" % (len(missing), len(journal.announced))


def start(around):
    """A start that succeeds, or fails with a reason."""
    server = around.try_start(wrapper=AS_USER)
    if server.http:
        if server.end(signal.SIGTERM) not in (0, 1):
            yield "the program crashed"
    else:
        status = server.end(signal.SIGTERM)
        if status not in (1, 2) or not server.said("journal.db"):
            yield "the program did not start with status %d and without a reason: %s" % (status, "".join(server.log[-2:]))


def attack_start(journal, attack):
    journal.send_calls()
    journal.server.end(journal.dice.choice((signal.SIGTERM, signal.SIGKILL)))
    end = attack(journal.file, journal.dice)
    began = time.monotonic()
    yield from start(journal.around)
    if time.monotonic() - began > 20:
        yield "the start took %.0f s" % (time.monotonic() - began)
    if end:
        end()
        yield from missing_calls(journal)


KINDS = [(survive, each) for each in SURVIVED] + [(endure, each) for each in DESTROYED] + [(attack_start, each) for each in AT_START]


def play_round(seed):
    play, attack = KINDS[seed % len(KINDS)]
    with Round() as around:
        journal = Journal(around, random.Random(seed))
        return ["%s %s: %s" % (play.__name__, attack.__name__, fault) for fault in play(journal, attack)]


rounds.play("database-attacks", play_round, len(KINDS), at_once=4)
