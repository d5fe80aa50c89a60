"""Random calls on 1,000 lines of one server, 500 a second for half a minute, of lines, groups and numbers outside: each call is in the
history of each of its lines, once, as what it was there.
"""

import rounds
from lines_run import Run

LINES, RATE, SECONDS = 1000, 500, 30


def play_round(seed):
    with Run(LINES, "--rate", str(RATE), "--calls", str(RATE * SECONDS), "--seed", str(seed), "--ring-time", "1", "--talk-time", "3",
             "--group-size", "5") as run:
        run.serve()
        run.finish(SECONDS + 120)
        yield from run.faults()


rounds.play("many-lines", play_round, 1)
