"""The running program for the checks of the database: its process, its HTTP API and a switch that sends it calls."""

import contextlib
import http.client
import json
import os
import shutil
import signal
import subprocess
import tempfile
import threading

from harness import ENVIRONMENT, IMPATIENT, LIMIT
from third_party_switch import ThirdPartySwitch, cleared, delivered, dialled, established

LISTS = ("missed", "dialled", "received", "forwarded")


class Refused(Exception):
    """A response of the HTTP API that reports an error."""

    def __init__(self, status, text):
        super().__init__("HTTP %d: %s" % (status, text[:200]))
        self.status = status


class Api:
    """One connection to the HTTP API; each thread needs its own. Raises OSError or HTTPException when the server is gone."""

    def __init__(self, server):
        self.token = server.token
        self.connection = http.client.HTTPConnection(server.http, timeout=LIMIT)

    def __call__(self, method, path, body=None):
        """The JSON of the response; None if it has no body."""
        text = None if body is None else json.dumps(body)
        with self.response(method, path if path.startswith("/") else "/api/v1/" + path, text) as response:
            read = response.read()
            if response.status >= 400:
                raise Refused(response.status, read.decode("utf-8", "replace"))
        return json.loads(read) if read[:1] in (b"{", b"[") else None

    def response(self, method, path, text=None):
        self.connection.request(method, path, text, {"Authorization": "Bearer " + self.token, "Content-Type": "application/json"})
        return self.connection.getresponse()

    def every(self, path, member="items"):
        """Everything of a list or of the history, page after page."""
        found, page = [], 0
        while True:
            part = self("GET", "%s?limit=1000&offset=%d" % (path, page) if path.startswith("lists/") else
                        "%s?limit=1000%s" % (path, "&cursor=" + page if page else ""))
            found += part[member]
            page = part.get("next") or (len(found) if path.startswith("lists/") and len(found) < part["total"] else 0)
            if not page:
                return found


class Server:
    """One process of `calljournal serve`; `log` has the lines of its standard error output."""

    def __init__(self, data, switch, *arguments, wrapper=()):
        self.data = data
        config = os.path.join(data, "calljournal.toml")
        if not os.path.exists(config):
            with open(config, "w", encoding="ascii") as file:
                file.write(IMPATIENT)
        self.log = []
        self.process = subprocess.Popen(
            [*wrapper, os.environ["CALLJOURNAL"], "serve", "--data", data, "--switch", switch, "--listen", "127.0.0.1:0", "--config", config,
             *arguments], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, errors="replace",
            env=ENVIRONMENT)
        self.reader = threading.Thread(target=lambda: self.log.extend(self.process.stderr), daemon=True)
        self.reader.start()
        self.http = self.token = None

    def ready(self):
        """Waits until clients can connect; False if the program ends instead."""
        for line in self.process.stdout:
            if "page and API http://" in line:
                self.http = line.split("page and API http://")[1].split("/")[0]
                with open(os.path.join(self.data, "api-token"), encoding="ascii") as file:
                    self.token = file.read().strip()
                return True
        return False

    def end(self, number=signal.SIGKILL):
        """Ends the program and returns its status."""
        if self.process.poll() is None:
            self.process.send_signal(number)
        try:
            status = self.process.wait(LIMIT)
        except subprocess.TimeoutExpired:
            self.process.kill()
            status = self.process.wait()
        self.reader.join(LIMIT)
        self.process.stdout.close()
        self.process.stderr.close()
        return status

    def said(self, *words):
        """True if a line of the log has one of the words."""
        return any(word in line for line in list(self.log) for word in words)


class Round(contextlib.ExitStack):
    """A directory for the data, a switch and the servers of one round; all end with it."""

    def __init__(self):
        super().__init__()
        self.data = tempfile.mkdtemp(prefix="cj")
        self.callback(shutil.rmtree, self.data, ignore_errors=True)
        self.addCleanup = self.callback  # what ThirdPartySwitch expects of a test
        self.switch = ThirdPartySwitch(self)

    def start(self, *arguments, wrapper=()):
        """A server that follows the switch; raises AssertionError if it does not start."""
        server = self.try_start(*arguments, wrapper=wrapper)
        if not server.http:
            raise AssertionError("the program does not start: " + " / ".join(line.strip() for line in server.log[-5:]))
        return server

    def try_start(self, *arguments, wrapper=()):
        """The same; without an address if the program has ended."""
        server = Server(self.data, self.switch.address, *arguments, wrapper=wrapper)
        self.callback(server.end)
        server.ready()
        return server

    def call(self, kind, call, number):
        """Sends the events of one finished call that gives an entry in the list `kind`."""
        name = "N<%s>Name %s" % (number, number)
        self.switch.peer.sendall({
            "missed": lambda: delivered(call, name) + cleared(call),
            "received": lambda: delivered(call, name) + established(call, name) + cleared(call),
            "dialled": lambda: dialled(call, name) + cleared(call)}[kind]())
