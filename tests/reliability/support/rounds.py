"""The rounds of one reliability check, played by its script:

    NAME_check.py [--rounds N] [--seconds N] [--seed S]

Round i uses the seed S + i and no other source of chance, so that one round can be played alone by its seed. The script ends at the
round or the second that comes first. Each fault is printed as one line with its seed; the last line is

    NAME: R rounds, F faults, next seed T
"""

import argparse
import collections
import itertools
import sys
import time
from concurrent.futures import ThreadPoolExecutor


def faults_of(play_round, seed):
    try:
        return list(play_round(seed))
    except Exception as error:  # the check goes on: one broken round must not hide the next
        return ["%s: %s" % (type(error).__name__, error)]


def play(name, play_round, rounds, at_once=1):
    """Plays rounds until the options say stop, and ends the process: status 1 after a fault, or if no round was played.

    `play_round(seed)` returns the faults as texts of one line each; an exception is a fault too. `rounds` is the number without
    --rounds and --seconds. So many rounds run `at_once`, each on a thread of its own.
    """
    options = argparse.ArgumentParser(prog=name)
    options.add_argument("--rounds", type=int, default=0)
    options.add_argument("--seconds", type=float, default=0)
    options.add_argument("--seed", type=int, default=1)
    given = options.parse_args()
    last = given.rounds or (0 if given.seconds else rounds)
    end = time.monotonic() + given.seconds
    played = faults = 0
    seeds = itertools.count(given.seed)
    with ThreadPoolExecutor(at_once) as pool:
        running = collections.deque()
        while True:
            while len(running) < at_once and not (last and played + len(running) >= last) and not (
                    given.seconds and time.monotonic() >= end):
                seed = next(seeds)
                running.append((seed, pool.submit(faults_of, play_round, seed)))
            if not running:
                break
            seed, result = running.popleft()
            for fault in result.result():
                faults += 1
                print("%s: fault with seed %d: %s" % (name, seed, str(fault).replace("\n", "\\n")), flush=True)
            played += 1
    print("%s: %d rounds, %d faults, next seed %d" % (name, played, faults, given.seed + played))
    sys.exit(0 if played and not faults else 1)
