"""Compares the journal with a plain model of it, after random steps over HTTP and by the switch.

A round is 500 steps against a new server: calls of all lists, of new and known parties; deletions of entries, lists, single calls, and by
filter; marks, imports, contacts, notes and settings; subscriptions, which make the journal load its lists; restarts by SIGTERM and
SIGKILL. After every 50 steps lists, counts, history, statistics and a search are those of the model. The database is on a file system in
memory where there is one, because the check is about contents, not about durability.
"""

import os
import random
import signal
import subprocess
import tempfile
import time

import rounds
import traffic
from harness import ENVIRONMENT
from journal import Api, Round
from plain_journal import LISTS, Call, PlainJournal
from third_party_switch import delivered, event

STEPS = 500
AT_ONCE = 5  # rounds: most of their time is waiting
IMPORTED = -1_000_000  # the order of imported calls, which are older than all others


def elsewhere(call, caller):
    return delivered(call, caller) + event("ConnectionClearedEvent", "droppedConnection", call, [("releasingDevice", "2001")], "null",
                                           "multipleAlerting")


class Game(Round):
    """A server, its model, and the steps that change both."""

    def __init__(self, dice):
        super().__init__()
        self.dice, self.model = dice, PlainJournal()
        self.steps = self.calls = self.imports = 0
        self.begun = {}     # number: its latest call and when it was sent
        self.waiting = None  # the latest call that is filed and not seen yet
        self.traceless = False  # the latest call leaves no trace
        self.contact_ids = {}
        self.faults = []
        self.play()

    def play(self):
        self.server = self.start("--set", "server-based-features=true")
        self.switch.accept_monitor()
        self.api = Api(self.server)

    def expect(self, what, found, expected):
        if found != expected:
            both = (found, expected)
            if isinstance(found, list) and set(found) != set(expected):
                both = [each for each in found if each not in expected], [each for each in expected if each not in found]
            elif isinstance(found, list):
                at = next(each for each, pair in enumerate(zip(found, expected)) if pair[0] != pair[1])
                both = ("from %d on" % at, found[at:at + 3]), expected[at:at + 3]
            self.faults.append("step %d: %s: %.1500s instead of %.1500s" % (self.steps, what, *both))

    def ask(self, *request):
        self.sync()
        return self.api(*request)

    def sync(self):
        """Waits until the latest call is filed."""
        end = time.monotonic() + 10
        while self.waiting:
            found = self.api("GET", "calls?limit=1")["items"]
            if found and found[0]["callId"] == self.waiting:
                self.waiting = None
            elif time.monotonic() > end:
                raise AssertionError("step %d: the call %s is not filed" % (self.steps, self.waiting))

    def settle(self):
        """Waits until all calls are handled, also those that leave no trace: they go before one that does."""
        if self.traceless:
            self.call("missed")
        self.sync()

    def party(self, kind):
        """A number: each kind of list has its own, but missed and dialled calls share theirs, so that parties are called back."""
        pool = {"received": "6", "forwarded": "8"}.get(kind, "5")
        return "%s%03d" % (pool, self.dice.choice((self.dice.randrange(30), self.dice.randrange(1000))))

    def call(self, kind=None):
        kind = kind or self.dice.choice(("missed", "missed", "received", "dialled", "not answered", "forwarded", "elsewhere"))
        number = self.party(kind)
        last, begun = self.begun.get(number, (-100, 0.0))
        if self.calls - last < 60:
            number = "9%05d" % self.calls  # two calls of one party in one second are one call: this one is of a new party
        else:
            time.sleep(max(0.0, begun + 1.1 - time.time()))
        self.begun[number] = self.calls, time.time()
        self.calls += 1
        call, name = "%d" % self.calls, ("Ann", "Bob", "Zoe")[int(number) % 3]
        make = elsewhere if kind == "elsewhere" else traffic.KINDS[kind]
        self.switch.peer.sendall(make(call, "N<%s>%s" % (number, name)))
        listed = {"not answered": "dialled", "elsewhere": "missed"}.get(kind, kind)
        if self.model.file(listed, number, name, self.calls, call, kind != "not answered", kind == "elsewhere"):
            self.waiting, self.traceless = call, False
        else:
            self.traceless = True

    def entry(self):
        """A list, one of its entries and its item on the server."""
        name = self.dice.choice(LISTS)
        items = self.ask("GET", "lists/%s?limit=1000" % name)["items"]
        if not items:
            return name, None, None
        item = self.dice.choice(items)
        return name, self.model.entries[name].get(item["number"]), item

    def delete_entry(self):
        name, entry, item = self.entry()
        if entry:
            self.api("DELETE", "lists/%s/%s" % (name, item[self.dice.choice(("entryId", "uniqueId"))]))
            self.model.delete_calls(lambda call: call.entry is entry)

    def delete_entries(self):
        name = self.dice.choice(LISTS)
        items = self.ask("GET", "lists/%s?limit=1000" % name)["items"]
        chosen = self.dice.sample(items, min(len(items), 3))
        if chosen:
            self.api("DELETE", "lists/%s?entryIds=%s" % (name, ",".join(each["entryId"] for each in chosen)))
            numbers = {each["number"] for each in chosen}
            self.model.delete_calls(lambda call: call.entry and call.list == name and call.number in numbers)

    def delete_list(self):
        name = self.dice.choice(LISTS)
        self.ask("DELETE", "lists/%s?all=true" % name)
        self.model.delete_calls(lambda call: call.list == name)

    def delete_by_filter(self):
        number, name = self.party(self.dice.choice(("missed", "received", "forwarded"))), self.dice.choice(LISTS)
        query, selected = self.dice.choice((
            ("number=" + number, lambda call: call.number == number),
            ("list=%s&number=%s" % (name, number), lambda call: call.list == name and call.number == number),
            ("search=%s" % number[:3], lambda call: number[:3] in call.number),
            ("viewed=false&list=missed", lambda call: call.list == "missed" and call.entry and not call.entry.viewed)))
        found = self.ask("DELETE", "calls?" + query)["deleted"]
        self.expect("calls deleted by " + query, found, self.model.delete_calls(selected))
        if query == "number=" + number and number in self.model.notes:  # erases the number, with its note
            self.model.notes[number] = ""

    def delete_call(self):
        shown = self.ask("GET", "calls?limit=1000")["items"]
        if shown:
            chosen = self.dice.choice(shown)
            self.api("DELETE", "calls/%s" % chosen["id"])
            self.expect("deleted call", self.model.delete_calls(lambda call: call.call_id == chosen["callId"]), 1)

    def mark(self):
        items = self.ask("GET", "lists/missed?limit=1000")["items"]
        chosen = self.dice.sample(items, min(len(items), 4))
        viewed = self.dice.random() < 0.7
        self.api("POST", "lists/missed/" + ("viewed" if viewed else "unviewed"), {"entryIds": [
            each[self.dice.choice(("entryId", "uniqueId"))] for each in chosen]})
        for each in chosen:
            if each["number"] in self.model.entries["missed"]:
                self.model.entries["missed"][each["number"]].viewed = viewed

    def import_calls(self):
        made, unviewed = [], self.dice.random() < 0.5
        for _ in range(self.dice.randint(1, 12)):
            self.imports += 1
            name, number = self.dice.choice(LISTS), "4%05d" % self.imports
            made.append({"start": "2026-01-%02dT%02d:%02d:00Z" % (1 + self.imports // 1440, self.imports // 60 % 24, self.imports % 60), "list": name,
                         "number": number, "name": "Imported", "callId": "i%d" % self.imports})
            entry = self.model.add(Call(name, number, "Imported", IMPORTED + self.imports, "i%d" % self.imports))
            entry.viewed = not unviewed
        found = self.ask("POST", "calls/import", {"calls": made, "unviewed": unviewed})
        self.expect("imported", found["imported"], len(made))

    def contact(self):
        number = self.party(self.dice.choice(("missed", "received", "forwarded")))
        name = "Contact %d" % self.dice.randrange(100)
        if number not in self.contact_ids:
            self.contact_ids[number] = self.ask("POST", "contacts", {"surname": name, "office": number})["id"]
        elif self.dice.random() < 0.5:
            self.ask("PUT", "contacts/%s" % self.contact_ids[number], {"surname": name})
        else:
            self.ask("DELETE", "contacts/%s" % self.contact_ids.pop(number))
            del self.model.contacts[number]
            return
        self.model.contacts[number] = name

    def note(self):
        number, note = self.party("received"), self.dice.choice(("", "call again"))
        self.ask("PUT", "parties/" + number, {"note": note})
        self.model.notes[number] = note

    def setting(self):
        key, value = self.dice.choice(("missed-logging", "delete-missed-when-called")), self.dice.choice("01")
        self.settle()
        self.ask("PUT", "settings", {key: value})
        self.model.settings[key] = value

    def subscribe(self):
        self.sync()
        with subprocess.Popen([os.environ["CALLJOURNAL"], "watch", "--json", "--data", self.data], stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, env=ENVIRONMENT) as process:
            process.stdout.readline()
            process.kill()

    def restart(self):
        self.settle()
        self.api.connection.close()
        time.sleep(0.4)  # a live call that has ended is noted after 200 ms at most
        self.server.end(self.dice.choice((signal.SIGTERM, signal.SIGKILL)))
        time.sleep(1.0 - time.time() % 1.0)
        self.play()

    def compare(self):
        status = self.ask("GET", "status")["lists"]
        for name in LISTS:
            expected = self.model.list(name)
            page = self.api("GET", "lists/%s?limit=1000" % name)
            found = [(each["number"], each["displayName"], name != "missed" or each["viewed"], each["calls"]) for each in page["items"]]
            self.expect("list " + name, sorted(found), sorted(expected))
            shortened = {entry.number for entry in self.model.entries[name].values() if entry.shortened}
            self.expect("order of " + name, *([each for each in rows if each[0] not in shortened] for rows in (found, expected)))
            times = [each["time"] for each in page["items"]]
            self.expect("times of " + name, times, sorted(times, reverse=True))
            self.expect("entries of " + name, (page["total"], status[name]["total"]), (len(expected), len(expected)))
        unviewed = sum(not entry.viewed for entry in self.model.entries["missed"].values())
        self.expect("new missed entries", status["missed"]["unviewed"], unviewed)
        history = [(each["list"], each["number"], each["name"], each["displayName"], each["calledBackAt"] is not None, each["uniqueId"] is not None,
                    each["reason"] if each["list"] == "missed" else "") for each in self.api.every("calls")]
        self.expect("history", history, self.model.history())
        statistics = self.api("GET", "statistics?by=party&limit=1000")
        self.expect("totals", {key: statistics["totals"][key] for key in self.model.totals()}, self.model.totals())
        self.expect("parties", {each["key"]: each["calls"] for each in statistics["groups"]}, self.model.parties())
        digits = "%d" % self.dice.randrange(10, 100)
        self.expect("search " + digits, self.api("GET", "calls?limit=1000&search=" + digits)["items"].__len__(), sum(
            digits in call.number or digits in call.filed or digits in self.model.display_name(call) for call in self.model.calls))
        if self.model.notes:
            number, note = self.dice.choice(sorted(self.model.notes.items()))
            self.expect("note of " + number, self.api("GET", "parties/" + number)["note"], note)


CHANGES = [Game.delete_entry, Game.delete_entries, Game.delete_by_filter, Game.delete_call, Game.mark, Game.mark, Game.import_calls,
           Game.contact, Game.contact, Game.note, Game.setting]
RARE = [Game.delete_list, Game.subscribe, Game.restart]


def play_round(seed):
    dice = random.Random(seed)
    with Game(dice) as game:
        while game.steps < STEPS and not game.faults:
            for _ in range(25):
                game.call()
            steps = [dice.choice(RARE if dice.random() < 0.04 else CHANGES if dice.random() < 0.5 else [Game.call]) for _ in range(25)]
            for step in steps:
                step(game)
                game.steps += 1
                if game.faults:
                    break
            game.steps += 25
            if not game.faults:
                game.compare()
            if game.faults:
                game.faults = ["%s, after %s" % (game.faults[0], ", ".join(step.__name__ for step in steps))]
        game.api.connection.close()
        return game.faults


if os.access("/dev/shm", os.W_OK):
    tempfile.tempdir = "/dev/shm"
rounds.play("model", play_round, 40, at_once=AT_ONCE)
