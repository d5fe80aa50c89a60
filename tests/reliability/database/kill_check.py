"""Ends the server by kill -9 while its journal changes, and compares it with all that its clients were notified of before.

A switch sends calls of numbers that occur once; clients follow the events, delete entries and calls, mark entries as viewed, import
calls and write notes. A round is one kill. After the next start of the program every call and change that a client was told of is
there, once; what was told as deleted is gone; what was under way is there or not.
"""

import collections
import http.client
import json
import os
import random
import sqlite3
import subprocess
import threading

import rounds
from harness import ENVIRONMENT
from journal import LISTS, Api, Refused, Round

GONE = (OSError, http.client.HTTPException)
KINDS = ("missed", "received", "dialled")


class Told:
    """The notifications that the clients of one server received. Each member is written by one thread."""

    def __init__(self):
        self.calls = {}         # (list, number): unique id, of the entries that were announced
        self.watched = set()    # (list, number), announced to `calljournal watch`
        self.gone = set()       # unique ids that an event reported as deleted
        self.deleted = set()    # numbers whose deletion was confirmed
        self.viewed = {}        # unique id: the state that was confirmed
        self.imported = set()   # numbers whose import was confirmed
        self.notes = {}         # number: note
        self.pending = set()    # unique ids and numbers of the request that had no response
        self.faults = []


def follow(server, told, subscribed):
    """Takes down what the event stream reports, until the server is gone."""
    try:
        with Api(server).response("GET", "/api/v1/events") as stream:
            subscribed.set()
            for line in stream:
                if line.startswith(b"data: {") and line.endswith(b"}\n"):
                    data = json.loads(line[6:])
                    if data.get("item") and data["action"] != 2:
                        told.calls[data["item"]["list"], data["item"]["number"]] = data["item"]["uniqueId"]
                    elif data.get("action") == 2:
                        told.gone.add(data["entryId"])
    except GONE:
        pass


def watch(server, told):
    """The same of a client of the socket."""
    command = [os.environ["CALLJOURNAL"], "watch", "--json", "--data", server.data]
    with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, env=ENVIRONMENT) as process:
        for line in process.stdout:
            if line.endswith(b"}\n"):
                data = json.loads(line).get("data", {})
                if data.get("action") in (0, 1) and data.get("item"):
                    told.watched.add((data["item"]["list"], data["item"]["number"]))


class Client:
    """Changes the journal by requests that the dice select, until the server is gone."""

    def __init__(self, server, told, dice):
        self.api, self.told, self.dice, self.count = Api(server), told, dice, 0

    def run(self):
        actions = (self.delete_entry, self.delete_call, self.mark, self.mark, self.import_calls, self.write_note)
        try:
            while True:
                self.told.pending = set()
                self.dice.choice(actions)()
        except Refused as refusal:
            self.told.faults.append("refused: %s" % refusal)
        except GONE:
            pass

    def entry(self, kinds=KINDS):
        """The list, the number and the unique id of an entry that was announced and not deleted."""
        known = [(*key, unique) for key, unique in list(self.told.calls.items())
                 if key[0] in kinds and key[1] not in self.told.deleted]
        return self.dice.choice(known) if known else None

    def delete_entry(self):
        if found := self.entry():
            self.told.pending = {found[1]}
            self.api("DELETE", "lists/%s/%s" % (found[0], found[2]))
            self.told.deleted.add(found[1])

    def delete_call(self):
        if found := self.entry():
            self.told.pending = {found[1]}
            if self.api("DELETE", "calls?number=" + found[1])["deleted"] != 1:
                self.told.faults.append("the call of %s was announced, but there was none to delete" % found[1])
            self.told.deleted.add(found[1])

    def mark(self):
        if found := self.entry(("missed",)):
            state = self.dice.random() < 0.7
            self.told.pending = {found[2]}
            self.api("POST", "lists/missed/" + ("viewed" if state else "unviewed"), {"entryIds": [found[2]]})
            self.told.viewed[found[2]] = state

    def import_calls(self):
        self.count += 1
        numbers = ["7%03d%d" % (self.count, part) for part in range(self.dice.randint(1, 8))]
        self.told.pending = set(numbers)
        calls = [{"start": "2026-01-05T10:%02d:00Z" % part, "list": self.dice.choice(LISTS), "number": number, "callId": "i" + number}
                 for part, number in enumerate(numbers)]
        response = self.api("POST", "calls/import", {"calls": calls, "unviewed": False, "more": False, "import": None})
        if response["imported"] != len(calls):
            self.told.faults.append("imported %s of %d calls" % (response, len(calls)))
        self.told.imported.update(numbers)

    def write_note(self):
        number = "8%02d" % self.dice.randrange(5)
        note = "note %d" % self.dice.randrange(1000)
        self.told.pending = {number}
        self.api("PUT", "parties/" + number, {"note": note})
        self.told.notes[number] = note


def feed(server_round, dice, ended):
    """Sends calls until the server is gone."""
    try:
        for number in range(1000, 7000):
            server_round.call(dice.choice(KINDS), "c%d" % number, str(number))
            if ended.wait(dice.expovariate(150)):
                return
    except OSError:
        pass


def compare(told, api):
    """The faults of the journal after the next start."""
    entries = {name: api.every("lists/" + name) for name in LISTS}
    history = api.every("calls")
    calls = collections.Counter((call["list"], call["number"]) for call in history)
    numbers = collections.Counter(call["number"] for call in history)
    listed = collections.Counter((name, entry["number"]) for name in LISTS for entry in entries[name])
    deleted = told.deleted | {number for (_, number), unique in told.calls.items() if unique in told.gone}
    for key in set(told.calls) | told.watched:
        if key[1] not in deleted | told.pending and (calls[key], listed[key]) != (1, 1):
            yield "announced %s %s: %d in the history, %d in the list" % (*key, calls[key], listed[key])
    for number in deleted:
        if numbers[number]:
            yield "deleted %s is still there" % number
    for number in told.imported:
        if numbers[number] != 1:
            yield "imported %s is there %d times" % (number, numbers[number])
    for number, count in numbers.items():
        if count > 1:
            yield "%s is there %d times" % (number, count)
    shown = {entry["uniqueId"]: entry for name in LISTS for entry in entries[name]}
    if len(shown) != sum(map(len, entries.values())):
        yield "a unique id is used twice"
    for unique, state in told.viewed.items():
        if unique in shown and unique not in told.pending and shown[unique]["viewed"] != state:
            yield "entry %s was marked as viewed: %s, and is not" % (unique, state)
    for number, note in told.notes.items():
        if number not in told.pending and api("GET", "parties/" + number)["note"] != note:
            yield "the note of %s is not %s" % (number, note)
    for call in history:
        entry = shown.get(call["uniqueId"])
        if call["uniqueId"] and (entry is None or call["number"] not in [each["number"] for each in entry["occurrences"]]):
            yield "entry %s does not show its call %s" % (call["uniqueId"], call["number"])
    for entry in shown.values():
        if entry["calls"] != sum(call["uniqueId"] == entry["uniqueId"] for call in history):
            yield "entry %s counts %d calls" % (entry["uniqueId"], entry["calls"])


def play_round(seed):
    dice = random.Random(seed)
    told, ended, subscribed = Told(), threading.Event(), threading.Event()
    with Round() as server_round:
        server = server_round.start()
        client = Client(server, told, random.Random(dice.random()))
        targets = [(follow, server, told, subscribed), (client.run,), (feed, server_round, random.Random(dice.random()), ended)]
        if dice.random() < 0.2:
            targets.append((watch, server, told))
        server_round.switch.accept_monitor()
        threads = [threading.Thread(target=target, args=arguments) for target, *arguments in targets]
        for thread in threads:
            thread.start()
        subscribed.wait(10)
        ended.wait(dice.uniform(0.0, 0.5))
        server.end()
        ended.set()
        for thread in threads:
            thread.join()
        yield from told.faults

        server = server_round.start()
        yield from compare(told, Api(server))
        server.end()
        with sqlite3.connect(os.path.join(server_round.data, "journal.db")) as database:
            if (finding := database.execute("PRAGMA integrity_check").fetchone()[0]) != "ok":
                yield "the database is damaged: " + finding
            if broken := database.execute("PRAGMA foreign_key_check").fetchone():
                yield f"a reference is broken: {broken}"
        database.close()


rounds.play("kill", play_round, 100, at_once=4)
