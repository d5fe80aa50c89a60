"""Runs the program for the tests: starts it, waits for its output, and ends it.

Every wait is for an action of the program (or for the clock, where a call has to last), and ends after LIMIT seconds.
Each test has its own data directory, and the system selects every port.
"""

import calendar
import json
import os
import queue
import re
import shutil
import signal
import subprocess
import tempfile
import threading
import time
import unittest
import urllib.request

LIMIT = 40.0  # generous: a sanitizer and a busy machine make everything slow
IMPATIENT = "[switch]\nreconnect-max-s = 1\n"  # a configuration with short intervals between attempts to connect


# The commands reach a server on this machine without the proxy of the environment.
# The user's own configuration file is not read.
ENVIRONMENT = {**os.environ, "TZ": "UTC", "http_proxy": "http://127.0.0.1:1", "XDG_CONFIG_HOME": "/nonexistent"}


class Program:
    """One process of the program whose two outputs are read all the time."""

    def __init__(self, *arguments):
        self.process = subprocess.Popen([os.environ["CALLJOURNAL"], *arguments], stdin=subprocess.DEVNULL,
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                        encoding="utf-8", env=ENVIRONMENT)
        self.arguments = arguments
        self.output, self.errors = queue.Queue(), queue.Queue()
        self.seen = []
        self.readers = [threading.Thread(target=self._read, args=pair, daemon=True)
                        for pair in ((self.process.stdout, self.output), (self.process.stderr, self.errors))]
        for reader in self.readers:
            reader.start()

    def _read(self, stream, lines):
        for line in stream:
            self.seen.append(line.rstrip("\n"))
            lines.put(line.rstrip("\n"))
        lines.put(None)

    def _expect(self, lines, pattern):
        deadline = time.monotonic() + LIMIT
        while True:
            try:
                line = lines.get(timeout=max(0.0, deadline - time.monotonic()))
            except queue.Empty:
                line = None
            if line is None:
                raise AssertionError("calljournal %s did not print /%s/, but:\n%s" %
                                     (" ".join(self.arguments), pattern, "\n".join(self.seen[-60:])))
            found = re.search(pattern, line)
            if found:
                return found

    def prints(self, pattern):
        """The next line of the standard output that the pattern is found in."""
        return self._expect(self.output, pattern)

    def logs(self, pattern):
        """The same for the standard error output."""
        return self._expect(self.errors, pattern)

    def count(self, pattern):
        """How many lines so far hold the pattern."""
        return sum(1 for line in self.seen if re.search(pattern, line))

    def stop(self, number=signal.SIGTERM):
        """Asks the program to end; returns its exit status."""
        if self.process.poll() is None:
            self.process.send_signal(number)
        return self.ends()

    def ends(self):
        """Waits until the program has ended by itself; returns its exit status."""
        status = self.process.wait(LIMIT)
        for reader in self.readers:
            reader.join(LIMIT)
        self.process.stdout.close()
        self.process.stderr.close()
        return status


def make_certificate(directory, name, subject="DNS:localhost,IP:127.0.0.1", authority=None):
    """Makes NAME.pem and NAME.key, signed by the certificate `authority` or by itself; returns their paths."""
    certificate, key = (os.path.join(directory, name + end) for end in (".pem", ".key"))
    make = ["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-days", "2", "-subj",
            "/CN=" + name, "-addext", "subjectAltName=" + subject, "-keyout", key, "-out", certificate]
    if authority:
        make += ["-CA", authority[0], "-CAkey", authority[1]]
    subprocess.run(make, check=True, capture_output=True, timeout=LIMIT)
    return certificate, key


class ProgramTest(unittest.TestCase):
    def setUp(self):
        self.data = tempfile.mkdtemp(prefix="cj")
        self.addCleanup(shutil.rmtree, self.data)

    def start(self, *arguments):
        program = Program(*arguments)
        self.addCleanup(self._end, program)
        return program

    def _end(self, program):
        """A program that still runs at the end of a test must end cleanly; the newest first."""
        if program.process.returncode is None:
            self.assertEqual(program.stop(), 0, "\n".join(program.seen[-60:]))

    def file(self, name, text):
        """Writes a file into the directory of the test; returns its path."""
        path = os.path.join(self.data, name)
        with open(path, "w", encoding="utf-8", newline="") as file:
            file.write(text)
        return path

    def serve(self, switch, *arguments, config=None):
        """A server that is ready for clients; `switch` is HOST:PORT. `server.http` is the HOST:PORT of its HTTP API, with `server.token`."""
        # Tests wait for what the library logs, and for names and numbers.
        shown = '\n[log]\nlibrary-level = "info"\nprivate = true\n'
        if config:
            given = ["--config", self.file("calljournal.toml", config + ("" if "[log]" in config else shown))]
        else:
            with tempfile.NamedTemporaryFile("w", suffix=".toml", delete=False) as file:  # DATA may not exist yet
                file.write(shown)
            self.addCleanup(os.remove, file.name)
            given = [] if "--config" in arguments else ["--config", file.name]
        server = self.start("serve", "--data", self.data, "--switch", switch, "--listen", "127.0.0.1:0", *given, *arguments)
        server.http = server.prints("calljournal serves line 2001 of the switch at " + re.escape(switch) +
                                    ".* page and API https?://([^/]+)/").group(1)
        with open(os.path.join(self.data, "api-token"), encoding="ascii") as file:
            server.token = file.read().strip()
        return server

    def simulate(self, scenario, *arguments, listen="127.0.0.1:0"):
        """A simulated switch that plays the scenario; returns it and its address."""
        simulator = self.start("switch", "--listen", listen, "--scenario", self.file("calls.txt", scenario), *arguments)
        simulator.address = simulator.prints(r"^switch listens on (\S+)$").group(1)
        return simulator, simulator.address

    def simulate_and_serve(self, scenario, filed):
        """Both; returns when the server has logged that the last call of the scenario is filed."""
        simulator, address = self.simulate(scenario)
        server = self.serve(address)
        server.logs(filed)
        return simulator, server

    def watch(self):
        """A subscribed client that prints changes as JSON; the initial notifications are already read."""
        watcher = self.start("watch", "--json", "--data", self.data)
        watcher.prints('"event":"dialledCallsUpdate"')
        return watcher

    def run_program(self, *arguments):
        """Runs the program to its end; returns exit status, output and errors."""
        done = subprocess.run([os.environ["CALLJOURNAL"], *arguments], stdin=subprocess.DEVNULL, capture_output=True,
                              text=True, encoding="utf-8", timeout=LIMIT, env=ENVIRONMENT)
        return done.returncode, done.stdout, done.stderr

    def done(self, *arguments):
        """The output of a command for the running server, which prints no errors."""
        status, output, errors = self.run_program(*arguments, "--data", self.data)
        self.assertEqual((status, errors), (0, ""), arguments)
        return output

    def refused(self, *arguments, status=1, silent=True):
        """The errors of a command that ends with this status, and has no output if it is silent."""
        ended, output, errors = self.run_program(*arguments, "--data", self.data)
        self.assertEqual((ended, output if silent else ""), (status, ""), arguments)
        return errors

    def list(self, name, *arguments):
        """A list of the running server."""
        return json.loads(self.done("list", name, "--json", *arguments))

    def open(self, server, path, method="GET"):
        """The response of the running server's HTTP API."""
        request = urllib.request.Request("http://%s/api/v1/%s" % (server.http, path), method=method,
                                         headers={"Authorization": "Bearer " + server.token})
        return urllib.request.urlopen(request, timeout=LIMIT)

    def get(self, server, path):
        with self.open(server, path) as response:
            return json.load(response)

    def await_value(self, expected, read):
        deadline = time.monotonic() + LIMIT
        while (found := read()) != expected:
            self.assertLess(time.monotonic(), deadline, "%s instead of %s" % (found, expected))
            threading.Event().wait(0.05)

    def change(self, watcher, event, action):
        """The item of the next such change that the watcher prints."""
        line = watcher.prints('"event":"%s","data":{"action":%d' % (event, action)).string
        return json.loads(line)["data"]["item"]

    def await_second_after(self, entry):
        """Waits for the clock: two calls of one party in one second are one and the same to the journal."""
        begin = calendar.timegm(time.strptime(entry["time"], "%Y-%m-%dT%H:%M:%SZ"))
        threading.Event().wait(max(0.0, begin + 1.01 - time.time()))
