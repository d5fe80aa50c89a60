"""Real SIP telephones for the tests: baresip on loopback, without sound, driven over its control port."""

import contextlib
import json
import os
import queue
import random
import re
import shutil
import signal
import socket
import struct
import subprocess
import tempfile
import threading
import time

from harness import LIMIT

CONFIG = """sip_listen 127.0.0.1:%d
audio_player aubridge,x
audio_source aubridge,x
module_path /usr/lib/baresip/modules
module g711.so
module aubridge.so
module_app account.so
module_app menu.so
module_app ctrl_tcp.so
ctrl_tcp_listen 127.0.0.1:%d
%s
"""


def free_port():
    """A port that is free for TCP and UDP, as the one after it: baresip needs the four.

    Not one that the system gives to other programs, which could take it before baresip does.
    """
    while True:
        port = random.randrange(10000, 32000, 2)
        try:
            with contextlib.ExitStack() as opened:
                for kind in (socket.SOCK_STREAM, socket.SOCK_DGRAM):
                    for each in (port, port + 1):
                        opened.enter_context(socket.socket(socket.AF_INET, kind)).bind(("127.0.0.1", each))
            return port
        except OSError:
            pass


class SipPhone:
    """One telephone; ends with the test."""

    def __init__(self, test, name, settings=""):
        self.name, self.settings = name, settings
        self.directory = tempfile.mkdtemp(prefix="phone")
        test.addCleanup(shutil.rmtree, self.directory)
        self.control = self.process = None
        test.addCleanup(self.end)

    def _start(self):
        self.port, self.control_port = free_port(), free_port()
        for file, text in (("config", CONFIG % (self.port, self.control_port, self.settings)), ("contacts", ""),
                           ("accounts", "\"The %s\" <%s>;regint=0;answermode=manual\n" % (self.name, self.address))):
            with open(os.path.join(self.directory, file), "w", encoding="utf-8") as target:
                target.write(text)
        self.started = time.monotonic()
        self.process = subprocess.Popen(["baresip", "-f", self.directory], stdin=subprocess.DEVNULL,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    @property
    def address(self):
        return "sip:%s@127.0.0.1:%d" % (self.name, self.port)

    @property
    def number(self):
        """How the journal writes it."""
        return "%s@127.0.0.1:%d" % (self.name, self.port)

    def connect(self):
        deadline = time.monotonic() + LIMIT
        while self.control is None:
            assert time.monotonic() < deadline, "baresip does not open its control port"
            # Another program may take a port meanwhile; without the control port the telephone runs on.
            if self.process is None or self.process.poll() is not None or time.monotonic() - self.started > 4:
                self.end()
                self._start()
            try:
                self.control = socket.create_connection(("127.0.0.1", self.control_port), LIMIT)
            except OSError:
                threading.Event().wait(0.02)
        self.messages = queue.Queue()
        threading.Thread(target=self._read, daemon=True).start()
        return self

    def _read(self):
        data = b""
        try:
            while received := self.control.recv(65536):
                data += received
                while (found := re.match(rb"(\d+):", data)) and len(data) > found.end() + int(found.group(1)):
                    end = found.end() + int(found.group(1))
                    self.messages.put(json.loads(data[found.end():end]))
                    data = data[end + 1:]
        except OSError:
            pass

    def command(self, name, parameters=None):
        message = {"command": name} if parameters is None else {"command": name, "params": parameters}
        text = json.dumps(message).encode()
        self.control.sendall(b"%d:%s," % (len(text), text))

    def reports(self, kind):
        """Waits for the next such message of the telephone."""
        deadline = time.monotonic() + LIMIT
        while True:
            message = self.messages.get(timeout=max(0.0, deadline - time.monotonic()))
            if message.get("type") == kind:
                return message

    def disconnect(self):
        if self.control is not None:
            self.control.shutdown(socket.SHUT_RDWR)
            self.control.close()
            self.control = None

    def end(self):
        self.disconnect()
        if self.process is not None and self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
            try:
                self.process.wait(5)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()


class CallController:
    """A client of the CSTA link that places, answers and clears calls."""

    def __init__(self, test, address, device):
        host, port = address.rsplit(":", 1)
        self.device = device
        self.peer = socket.create_connection((host, int(port)), LIMIT)
        test.addCleanup(self.peer.close)
        self.id = 0

    def request(self, xml):
        """The response; events do not come, because nothing is monitored."""
        self.id += 1
        text = xml.encode()
        self.peer.sendall(struct.pack(">HH4s", 0, len(text) + 8, b"%04d" % self.id) + text)
        data = b""
        while len(data) < 8 or len(data) < struct.unpack(">H", data[2:4])[0]:
            received = self.peer.recv(65536)
            assert received, "the gateway has closed the link"
            data += received
        return data[8:].decode()

    def calls(self):
        text = self.request("<SnapshotDevice><snapshotObject>%s</snapshotObject></SnapshotDevice>" % self.device)
        return re.findall("<callID>(.*?)</callID>", text)

    def make(self, number):
        return self.request("<MakeCall><callingDevice>%s</callingDevice><calledDirectoryNumber>%s</calledDirectoryNumber>"
                            "</MakeCall>" % (self.device, number))

    def answer_call(self, call):
        return self.request("<AnswerCall><callToBeAnswered><callID>%s</callID></callToBeAnswered></AnswerCall>" % call)

    def clear(self, call):
        return self.request("<ClearConnection><connectionToBeCleared><callID>%s</callID></connectionToBeCleared>"
                            "</ClearConnection>" % call)
