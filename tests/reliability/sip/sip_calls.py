"""Plays SIP calls of every outcome to a journal behind the gateway, at a rate, and compares the history with them."""

import calendar
import contextlib
import os
import random
import re
import shutil
import signal
import subprocess
import tempfile
import threading
import time

from harness import ENVIRONMENT, LIMIT
from journal import Api
from sip_agent import Agent
from sip_phone import CallController, free_port

TALK = 0.8, 3.0  # seconds
RING = 0.2, 1.5
RING_OUT = 4.0, 6.0


class Journal(contextlib.ExitStack):
    """Gateway and journal in one process, with a client that controls the calls."""

    def __init__(self):
        super().__init__()
        self.data = tempfile.mkdtemp(prefix="cj")
        self.callback(shutil.rmtree, self.data, ignore_errors=True)
        self.addCleanup = self.callback
        port = free_port()
        self.address = "sip:alice@127.0.0.1:%d" % port
        with open(os.path.join(self.data, "account.toml"), "w", encoding="ascii") as file:
            file.write("[sip]\naccount = \"%s\"\nregister = false\nlisten = \"127.0.0.1:%d\"\n" % (self.address, port))
        with open(os.path.join(self.data, "line.toml"), "w", encoding="ascii") as file:
            file.write("[log]\nlevel = \"warning\"\nfile = \"%s\"\n" % os.path.join(self.data, "log"))
        self.process = subprocess.Popen(
            [os.environ["CALLJOURNAL"], "serve", "--sip", os.path.join(self.data, "account.toml"), "--data", self.data, "--config",
             os.path.join(self.data, "line.toml"), "--listen", "127.0.0.1:0"], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True,
            env=ENVIRONMENT)
        self.callback(self.end)
        ready = self.process.stdout.readline()
        switch, self.http = re.search(r"switch at ([^;]+);.*http://([^/]+)/", ready).groups()
        with open(os.path.join(self.data, "api-token"), encoding="ascii") as file:
            self.token = file.read().strip()
        self.controller, self.lock = CallController(self, switch, "alice"), threading.Lock()
        api = Api(self)
        deadline = time.monotonic() + LIMIT
        while not api("GET", "status")["switch"]["monitoring"] and time.monotonic() < deadline:
            time.sleep(0.05)

    def end(self):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
        status = self.process.wait(LIMIT)
        self.process.stdout.close()
        return status

    def control(self, operation, call):
        with self.lock:
            return getattr(self.controller, operation)(call)


class Course:
    """One call: its outcome, and what the history must say."""

    def __init__(self, journal, agent, number, dice):
        self.journal, self.agent, self.dice = journal, agent, dice
        self.kind = dice.choice([name[5:] for name in dir(self) if name.startswith("play_")])
        self.user = "u%05d" % number
        self.list, self.reason, self.talked, self.fault = "missed", "", 0.0, ""
        self.begin = time.time()

    def __call__(self):
        try:
            getattr(self, "play_" + self.kind)()
        except Exception as error:  # every other call goes on
            self.fault = "%s: %s" % (type(error).__name__, error)

    def clear(self, identity):
        assert "ClearConnectionResponse" in self.journal.control("clear", identity)

    def pause(self, span):
        seconds = self.dice.uniform(*span)
        threading.Event().wait(seconds)

    def talk(self):
        start = time.monotonic()
        self.pause(TALK)
        self.talked = time.monotonic() - start

    def calls_alice(self):
        call = self.agent.call_of("c%s%d" % (self.user, self.dice.randrange(10**9)), self.user)
        call.dial(self.journal.address)
        call.awaits("180")
        self.pause(RING)
        return call, call.identity + "_i"

    def called_by_alice(self):
        self.list = "dialled"
        call = self.agent.awaited(self.user)
        response = self.journal.control("make", "sip:%s@127.0.0.1:%d" % (self.user, self.agent.port))
        identity = re.search("<callID>(.*?)</callID>", response).group(1)
        call.awaits("INVITE")
        return call, identity

    def answered_by_alice(self):
        self.list = "received"
        call, identity = self.calls_alice()
        assert "AnswerCallResponse" in self.journal.control("answer_call", identity)
        call.awaits("200")
        self.talk()
        return call, identity

    def answered_for_alice(self):
        call, identity = self.called_by_alice()
        call.ring()
        self.pause(RING)
        call.accept()
        call.awaits("ACK")
        self.talk()
        return call, identity

    def refused_with(self, status, reason, rings=True):
        self.reason = reason
        call, _ = self.called_by_alice()
        if rings:
            call.ring()
            self.pause(RING)
        call.refuse(status)
        call.awaits("ACK")

    def play_missed(self):
        call, _ = self.calls_alice()
        call.cancel()
        call.awaits("200")

    def play_rejected_here(self):
        call, identity = self.calls_alice()
        self.clear(identity)
        call.awaits("486")

    def play_received_ended_there(self):
        call, _ = self.answered_by_alice()
        call.hang_up()
        call.awaits("200")

    def play_received_ended_here(self):
        call, identity = self.answered_by_alice()
        self.clear(identity)
        call.awaits("BYE")

    def play_dialled_ended_there(self):
        call, _ = self.answered_for_alice()
        call.hang_up()
        call.awaits("200")

    def play_dialled_ended_here(self):
        call, identity = self.answered_for_alice()
        self.clear(identity)
        call.awaits("BYE")

    def play_busy(self):
        self.refused_with("486 Busy Here", "busy", rings=False)

    def play_rejected_there(self):
        self.refused_with("603 Decline", "rejected")

    def play_no_such_user(self):
        self.refused_with("404 Not Found", "no-such-number", rings=False)

    def play_not_available(self):
        self.refused_with("480 Temporarily Unavailable", "unanswered")

    def play_unreachable(self):
        self.refused_with("503 Service Unavailable", "congestion", rings=False)

    def play_rung_out(self):
        call, _ = self.called_by_alice()
        call.ring()
        self.pause(RING_OUT)
        self.reason = "unanswered"
        call.refuse("408 Request Timeout")
        call.awaits("ACK")

    def play_cancelled(self):
        call, identity = self.called_by_alice()
        call.ring()
        self.pause(RING)
        self.clear(identity)
        call.awaits("CANCEL")

    def faults(self, filed):
        """What is wrong with the calls of the history that have this user."""
        if self.fault:
            return ["%s %s: %s" % (self.user, self.kind, self.fault)]
        if len(filed) != 1:
            return ["%s %s: %d calls in the history" % (self.user, self.kind, len(filed))]
        call = filed[0]
        begin = calendar.timegm(time.strptime(call["start"], "%Y-%m-%dT%H:%M:%SZ"))
        right = (call["list"] == self.list and call["reason"] == self.reason and not call["endApproximate"] and abs(begin - self.begin) <= 3 and
                 abs(call["duration"] - self.talked) <= 1.5 and bool(call["answered"]) == bool(self.talked))
        return [] if right else ["%s %s of %.1f s at %.1f: %s" % (self.user, self.kind, self.talked, self.begin, call)]


def play(calls, rate, seed):
    """The faults, as texts."""
    dice = random.Random(seed)
    with Journal() as journal:
        agent = Agent()
        journal.callback(agent.close)
        courses, threads, first = [], [], time.monotonic()
        for number in range(calls):
            time.sleep(max(0.0, first + number / rate - time.monotonic()))
            courses.append(Course(journal, agent, number, random.Random(dice.random())))
            threads.append(threading.Thread(target=courses[-1]))
            threads[-1].start()
        for thread in threads:
            thread.join()
        return compare(journal, courses)


def compare(journal, courses):
    api = Api(journal)
    deadline = time.monotonic() + 10
    while api("GET", "status")["calls"] and time.monotonic() < deadline:
        time.sleep(0.05)
    faults = ["%d calls are up at the %s" % (number, where) for where, number in (
        ("journal", api("GET", "status")["calls"]), ("gateway", len(journal.controller.calls()))) if number]
    while len(api.every("calls")) < len(courses) and time.monotonic() < deadline:
        time.sleep(0.05)
    filed = {}
    for call in api.every("calls"):
        filed.setdefault(call["number"].split("@")[0], []).append(call)
    for course in courses:
        faults += course.faults(filed.pop(course.user, []))
    return faults + ["a call of %s that was not played" % user for user in filed]
