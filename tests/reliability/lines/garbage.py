"""A proxy between the server and the switch that adds messages without sense to what the switch sends."""

import contextlib
import re
import socket
import threading

from harness import LIMIT
from third_party_switch import NAME_SPACE, frame

MONITOR = re.compile(rb"<deviceObject[^>]*>(?:N&lt;)?(\d+)")
CROSS_REFERENCE = re.compile(rb"<monitorCrossRefID>([^<]+)<")

EVENT = 9999
FAULTS = (
    '<DeliveredEvent xmlns="{ns}"><monitorCrossRefID>{monitor}</monitorCrossRefID>{junk}</DeliveredEvent>',
    '<ConnectionClearedEvent xmlns="{ns}"><monitorCrossRefID>{monitor}</monitorCrossRefID><droppedConnection/></ConnectionClearedEvent>',
    '<{junk}Event xmlns="{ns}"><monitorCrossRefID>{monitor}</monitorCrossRefID></{junk}Event>',
    '<TransferedEvent xmlns="{ns}"><monitorCrossRefID>{monitor}</monitorCrossRefID><primaryOldCall><callID>{junk}</callID></primaryOldCall>'
    "<transferredConnections/></TransferedEvent>",
    '<DeliveredEvent xmlns="{ns}"><monitorCrossRefID>{monitor}</monitorCrossRefID><connection>',
)


class GarbageProxy:
    """One connection at a time, as the server has. `address` is the server's switch."""

    def __init__(self, switch):
        host, _, port = switch.rpartition(":")
        self.switch = (host, int(port))
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.address = "127.0.0.1:%d" % self.listener.getsockname()[1]
        self.monitors, self.requests = {}, {}
        self.sending = threading.Lock()
        self.server = self.peer = None
        threading.Thread(target=self.serve, daemon=True).start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for each in (self.listener, self.server, self.peer):
            if each:
                with contextlib.suppress(OSError):
                    each.shutdown(socket.SHUT_RDWR)
                each.close()

    def serve(self):
        with contextlib.suppress(OSError):  # closed
            self.server, _ = self.listener.accept()
            self.peer = socket.create_connection(self.switch, timeout=LIMIT)
            self.peer.settimeout(None)
            for each in (self.server, self.peer):
                each.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            threading.Thread(target=self.copy, args=(self.server, self.peer, self.remember_request, threading.Lock()), daemon=True).start()
            self.copy(self.peer, self.server, self.remember_monitor, self.sending)

    def copy(self, source, target, look, sending):
        """Copies whole messages, so that others fit between them."""
        rest = b""
        with contextlib.suppress(OSError):
            while read := source.recv(1 << 18):
                rest += read
                end = 0
                while len(rest) - end >= 8 and len(rest) - end >= (size := int.from_bytes(rest[end + 2:end + 4], "big")):
                    look(rest[end + 4:end + 8], rest[end + 8:end + size])
                    end += size
                with sending:
                    target.sendall(rest[:end])
                rest = rest[end:]

    def remember_request(self, invoke, xml):
        if b"<MonitorStart" in xml and (device := MONITOR.search(xml)):
            self.requests[invoke] = device.group(1).decode()

    def remember_monitor(self, invoke, xml):
        if b"<MonitorStartResponse" in xml and invoke in self.requests:
            self.monitors[self.requests.pop(invoke)] = CROSS_REFERENCE.search(xml).group(1).decode()

    def send_garbage(self, line, dice):
        """One message with the monitor of the line."""
        junk = "".join(dice.choice("abcXYZ0123456789") for _ in range(dice.choice((1, 8, 200))))
        text = dice.choice(FAULTS).format(ns=NAME_SPACE, monitor=self.monitors[line], junk="J" + junk)
        with contextlib.suppress(OSError), self.sending:
            self.server.sendall(frame(EVENT, text))
