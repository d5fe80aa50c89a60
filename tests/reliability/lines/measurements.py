"""The measurements of tools/many-lines. Each prints its figures and returns whether the history is that of the switch."""

import random
import socket
import sqlite3
import statistics
import threading
import time

from garbage import GarbageProxy
from lines_run import Run, quantile

SHORT_CALLS = ("--ring-time", "1", "--talk-time", "3", "--group-size", "5")


def options(rate, seconds, seed):
    return ["--rate", "%g" % rate, "--calls", str(int(rate * seconds)), "--seed", str(seed), *SHORT_CALLS]


def told(run, title, without=()):
    """Prints the faults of a run; true if there are none."""
    faults = list(run.faults(without))
    for fault in faults:
        print("%s: %s" % (title, fault), flush=True)
    return not faults


def latencies_told(title, run, values):
    if run.observer.missed:
        print("the observer was too slow, and missed events")
    print("%-44s %8d calls, p50 %7.2f ms, p99 %7.2f ms, p99.9 %7.2f ms, most %7.2f ms" % (
        title, len(values), quantile(values, 0.5), quantile(values, 0.99), quantile(values, 0.999), values[-1] if values else 0), flush=True)


def steady(lines, rate, seconds, seed):
    with Run(lines, *options(rate, seconds, seed)) as run:
        monitored, ready = run.serve()
        print("%d lines: ready after %.2f s, all monitored after %.2f s, %.0f MiB" % (lines, ready, monitored, run.memory()), flush=True)
        begin = time.monotonic()
        run.finish(seconds + 120)
        print("%d entries in %.1f s, %.0f MiB at the end" % (len(run.played()), time.monotonic() - begin, run.memory()))
        latencies_told("last event to observer", run, run.latencies())
        return told(run, "steady")


def together(lines, seed):
    with Run(lines, "--together", "--ring-time", "5", "--talk-time", "0", "--seed", str(seed)) as run:
        run.serve()
        run.finish(120)
        values = run.latencies()
        ends = [row["ended"] for row in run.played()]
        print("%d calls rang and ended together (the switch sent the ends from %s to %s), %.0f MiB" % (
            len(ends), min(ends), max(ends), run.memory()))
        latencies_told("end at the switch to observer", run, values)
        return told(run, "together")


def compared(title, one, other):
    """Prints the median of the ratios of two figures, round by round."""
    print("%s: p99 %s times that without (median of %s)" % (
        title, "%.2f" % statistics.median(a / b for a, b in zip(one, other)), ", ".join("%.2f" % (a / b) for a, b in zip(one, other))), flush=True)


def beside(lines, rate, seconds, rounds, seed):
    right, figures = True, {1: [], lines: []}
    for turn in range(rounds):
        for count in (1, lines):
            with Run(count, *options(rate, seconds, seed + turn)) as run:
                run.serve()
                run.finish(seconds + 120)
                values = run.latencies()
                latencies_told("%d %s, %g calls/s" % (count, "line" if count == 1 else "lines", rate), run, values)
                figures[count].append(quantile(values, 0.99))
                right = told(run, "%d lines" % count) and right
    compared("%d lines beside one" % lines, figures[lines], figures[1])
    return right


class Disturbance:
    """What is done to the first line of a run, from the time at which it is served."""

    def __init__(self, run):
        self.run, self.line = run, run.lines[0]
        self.over = threading.Event()
        self.sockets = []

    def stop(self):
        self.over.set()
        for each in self.sockets:
            each.close()


class Deaf(Disturbance):
    """Clients that open the line's event stream, and read nothing."""

    def begin(self):
        host, _, port = self.run.address.partition(":")
        for _ in range(20):
            client = socket.socket()
            client.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)
            client.connect((host, int(port)))
            client.sendall(("GET /api/v1/lines/%s/events HTTP/1.1\r\nHost: %s\r\nAuthorization: Bearer %s\r\n\r\n" % (
                self.line, self.run.address, self.run.token)).encode())
            self.sockets.append(client)


class Damaged(Disturbance):
    """Rows of the line that cannot be read as they were written, changed while the server runs."""

    def begin(self):
        with sqlite3.connect(self.run.data + "/journal.db", timeout=30) as database:
            database.execute("UPDATE call_item SET entry_id = 'x', sort_key = char(1), group_by = char(0) WHERE line = ?", (self.line,))
            database.execute("UPDATE call SET reason = 99, list = 77, time_and_date = 'never', text_c = char(0) WHERE line = ?", (self.line,))


class Garbage(Disturbance):
    """Messages without sense under the line's monitor, 200 a second."""

    def begin(self):
        threading.Thread(target=self.send, daemon=True).start()

    def send(self):
        dice = random.Random(1)
        while not self.over.wait(0.005):
            self.run.proxy.send_garbage(self.line, dice)


def isolation(lines, rate, seconds, rounds, seed):
    right = True
    for disturbance in (Deaf, Damaged, Garbage):
        figures = {False: [], True: []}
        for turn in range(rounds):
            for disturbed in (False, True):
                with Run(lines, *options(rate, seconds, seed + turn)) as run:
                    run.proxy = run.enter_context(GarbageProxy(run.switch_address))
                    run.serve(run.proxy.address)
                    what = disturbance(run)
                    if disturbed:
                        time.sleep(seconds / 4)
                        what.begin()
                    run.finish(seconds + 120)
                    what.stop()
                    values = run.latencies(without=(what.line,))
                    latencies_told("%s, %s" % (disturbance.__name__.lower(), "disturbed" if disturbed else "not disturbed"), run, values)
                    figures[disturbed].append(quantile(values, 0.99))
                    right = told(run, disturbance.__name__.lower(), (what.line,)) and right
        compared(disturbance.__name__.lower(), figures[True], figures[False])
    return right
