"""Attacks the HTTP API of a running server, and holds it to what docs/http-api.md promises.

A round is one attack. The first seeds are the cases made from the OpenAPI document and those made by hand, the same each time; the seeds
after them combine and damage these cases by chance. After each attack the server runs, an honest client is served within a second, the
journal is as it was, the log has no token, and each response that reports an error has its documented form.
"""

import atexit
import random
import threading

import behaviour_attacks
import described_attacks
import handmade_attacks
import rounds
from attacker import CLOSED, ERRORS, Target

ANY = (200, 201, 204, 303, *ERRORS)


class Attacks:
    """The server under attack, started anew when it has ended, and the cases: name, function that yields faults."""

    def __init__(self):
        self.target = Target()
        atexit.register(lambda: self.target.close())
        self.read_cases()

    def read_cases(self):
        target = self.target
        self.requests = [*described_attacks.attacks(target), *handmade_attacks.attacks(target)]
        self.cases = [(name, lambda data=data, statuses=statuses: target.answers(data, statuses)) for name, data, statuses in self.requests]
        self.cases += [(name, lambda attack=attack: attack(target)) for name, attack in behaviour_attacks.QUICK.items()]

    def play_round(self, seed):
        if self.target.server.process.poll() is not None:
            self.target.close()
            self.target = Target()
            self.read_cases()
        name, attack = self.cases[seed - 1] if 1 <= seed <= len(self.cases) else self.combination(random.Random(seed))
        for fault in (*attack(), *self.target.faults()):
            yield "%s: %s" % (name, fault)

    def combination(self, dice):
        """An attack by chance."""
        kind = dice.random()
        if kind < 0.01:
            name, attack = dice.choice(list(behaviour_attacks.SLOW.items()))
            return name, lambda: attack(self.target)
        if kind < 0.1:
            return "at once", lambda: self.at_once([dice.choice(self.cases[:len(self.requests)]) for _ in range(dice.randint(2, 12))])
        return "damaged", lambda: self.damaged(dice)

    def at_once(self, cases):
        """Several attacks at the same time."""
        found = []
        threads = [threading.Thread(target=lambda attack=attack, name=name: found.extend("%s: %s" % (name, each) for each in attack()))
                   for name, attack in cases]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        return found

    def damaged(self, dice):
        """Bytes of several attacks in a row, damaged, without the token: no reading of them changes anything."""
        token = self.target.server.token.encode()
        data = bytearray(b"".join(dice.choice(self.requests)[1][:20_000].replace(token, b"0" * len(token)) for _ in range(dice.randint(1, 3))))
        for _ in range(dice.choice((0, 1, 1, 2, 5, 20))):
            at = dice.randrange(len(data))
            action = dice.randrange(5)
            if action == 0:
                data[at] = dice.randrange(256)
            elif action == 1:
                del data[at:at + dice.choice((1, 1, 2, 50))]
                data = data or bytearray(b"\r\n")
            elif action == 2:
                data[at:at] = dice.choice((b"\r\n", b"\n", b"\0", b" ", b"\r\n\r\n", b":", b"Content-Length: 5\r\n", b"%00", b"\xff" * 300))
            elif action == 3:
                data[at:at] = data[at:at + dice.randrange(1, 200)]
            else:
                del data[at:]
                data = data or bytearray(b"\r\n")
        return self.target.answers(bytes(data) + b"\r\n\r\n", (*ANY, CLOSED, "no response"), patience=0.3, most=100)


attacks = Attacks()
rounds.play("http-attacks", attacks.play_round, len(attacks.cases))
