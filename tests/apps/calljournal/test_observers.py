"""Many subscribed clients, some of which do not read."""

import os
import re
import selectors
import signal
import socket
import subprocess
import sys
import time

from harness import ProgramTest
from third_party_switch import cleared, delivered

GROUPS, OBSERVERS_OF_GROUP, CALLS = 10, 10, 150
SUBSCRIPTION = b"Q\0\0\0\1<r><Method>25</Method></r>"


def observe(path, count):
    """Subscribes `count` times, prints "ready", and reads until it is killed."""
    selector = selectors.DefaultSelector()
    for _ in range(count):
        client = socket.socket(socket.AF_UNIX)
        client.connect(path)
        client.sendall(len(SUBSCRIPTION).to_bytes(4, "big") + SUBSCRIPTION)
        received = b""
        while b"<Result>true</Result>" not in received:
            received += client.recv(65536)
        selector.register(client, selectors.EVENT_READ)
    print("ready", flush=True)
    while True:
        for key, _ in selector.select():
            if not key.fileobj.recv(65536):
                return


class ObserversTest(ProgramTest):
    def observers(self):
        """Starts the processes with their observers; all have subscribed."""
        command = [sys.executable, "-B", os.path.abspath(__file__), os.path.join(self.data, "calljournal.sock"), str(OBSERVERS_OF_GROUP)]
        groups = []
        for _ in range(GROUPS):
            group = subprocess.Popen(command, stdout=subprocess.PIPE, text=True)
            for end in (group.stdout.close, group.wait, group.kill):  # in the other order
                self.addCleanup(end)
            groups.append(group)
        for group in groups:
            self.assertEqual(group.stdout.readline(), "ready\n")
        return groups

    def seconds_for_calls(self):
        """The seconds until CALLS calls from new parties are filed."""
        self.done("delete", "missed", "--all")
        numbers = ["5%07d" % (self.filed + each) for each in range(CALLS)]
        self.filed += CALLS
        events = b"".join(delivered(number, number) + cleared(number) for number in numbers)
        begin = time.monotonic()
        self.switch.send(events)
        self.server.logs("missed call from " + re.escape(numbers[-1]))
        return time.monotonic() - begin

    def test_calls_are_filed_as_fast_when_observers_have_stopped_reading(self):
        self.filed = 0
        self.switch = self.third_party_switch()
        self.server = self.serve(self.switch.address)
        self.switch.accept_monitor()
        stopped = self.observers()[0]
        self.seconds_for_calls()  # the first ones are slower
        ratios = []
        while len(ratios) < 3 and min(ratios, default=2) > 1.2:
            all_read = self.seconds_for_calls()
            stopped.send_signal(signal.SIGSTOP)
            some_read = self.seconds_for_calls()
            stopped.send_signal(signal.SIGCONT)
            ratios.append(some_read / all_read)
        self.assertLessEqual(min(ratios), 1.2, ratios)
        self.assertEqual(self.server.count("is cut off"), 0)


if __name__ == "__main__":
    observe(sys.argv[1], int(sys.argv[2]))
