"""Kills the server again and again while calls come and the receiver of its webhook fails, and compares what that receiver has got
with the history.

The receiver refuses some events, is down for some time, and closes some connections after it has taken the event, so that it gets that
event again. Each call of the history was told of, once without the repetitions, in the order in which the calls were filed; its
ringing and its answer, as far as they were told of, before that. Nothing was told of a call that is not in the history.
"""

import random
import threading
import time

import rounds
from harness import IMPATIENT
from journal import Api, Round
from webhook_receiver import Receiver

KINDS = ("missed", "received", "dialled")
SECRET = "of the check"
ORDER = ("call.ringing", "call.answered", "call.filed")
PATIENCE = 60


def response_by(dice):
    """A receiver that does not fail so often that the time between two attempts becomes long."""
    def respond(_number):
        chance = dice.random()
        return 500 if chance < 0.01 else Receiver.LOST if chance < 0.03 else 204
    return respond


def feed(journal, dice, first, ended):
    """Sends calls until the server is gone; returns the number after the last."""
    try:
        for number in range(first, first + 400):
            journal.call(dice.choice(KINDS), "c%d" % number, str(number))
            if ended.wait(dice.expovariate(100)):
                break
    except OSError:
        pass
    return number + 1


def without_repetitions(events):
    return list({event["id"]: event for event in events}.values())


def compare(history, accepted):
    events = without_repetitions(accepted)
    filed = [event["call"]["id"] for event in events if event["event"] == "call.filed"]
    if filed != sorted(filed):
        yield "the calls %s were told of out of order" % filed
    if missing := {call["id"] for call in history} - set(filed):
        yield "the receiver was not told of the calls %s" % sorted(missing)
    if unknown := set(filed) - {call["id"] for call in history}:
        yield "the calls %s are not in the history" % sorted(unknown)
    steps = {}
    for event in events:
        steps.setdefault(event["call"]["number"], []).append(ORDER.index(event["event"]))
    wrong = {number: [ORDER[each] for each in found] for number, found in steps.items() if found != sorted(set(found))}
    if wrong:
        yield "the events of %d calls are out of order, of %s: %s" % (len(wrong), *next(iter(wrong.items())))


def play_round(seed):
    dice = random.Random(seed)
    with Round() as journal:
        receiver = Receiver(journal, SECRET.encode())
        secret = journal.data + "/hook.secret"
        for path, text in ((secret, SECRET), (journal.data + "/calljournal.toml", IMPATIENT + """
            [[webhook]]
            url = "http://127.0.0.1:%d/"
            events = ["call.filed", "call.ringing", "call.answered"]
            secret-file = "%s"
            """ % (receiver.port, secret))):
            with open(path, "w", encoding="ascii") as file:
                file.write(text)
        receiver.respond = response_by(random.Random(dice.random()))
        number = 1000
        for _ in range(dice.randint(1, 4)):
            server = journal.start()
            journal.switch.accept_monitor()
            receiver.goes_down() if dice.random() < 0.4 else receiver.comes_up()
            ended = threading.Event()
            killer = threading.Timer(dice.uniform(0.05, 1.0), lambda each=server, end=ended: (each.end(), end.set()))
            killer.start()
            number = feed(journal, random.Random(dice.random()), number, ended)
            killer.join()
        receiver.respond = lambda _number: 204
        receiver.comes_up()
        server = journal.start()
        journal.switch.accept_monitor()
        journal.call("missed", "last", "4711")
        end = time.monotonic() + PATIENCE
        while not any(event["call"]["number"] == "4711" and event["event"] == "call.filed" for event in list(receiver.accepted)):
            if time.monotonic() > end:
                yield "the last call was not told of in %d s" % PATIENCE
                break
            threading.Event().wait(0.05)
        yield from compare(Api(server).every("calls"), receiver.accepted)
        if receiver.forged:
            yield "%d signatures are wrong" % len(receiver.forged)


rounds.play("webhooks", play_round, 6, at_once=3)
