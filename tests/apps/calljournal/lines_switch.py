"""A CSTA switch that serves any number of lines on one connection."""

import contextlib
import re
import socket
import threading

from harness import LIMIT
from third_party_switch import NAME_SPACE, ThirdPartySwitch, cleared, delivered, frame


class LinesSwitch:
    def __init__(self, test):
        """The switch of this test, which closes it."""
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.listener.settimeout(LIMIT)
        self.address = "127.0.0.1:%d" % self.listener.getsockname()[1]
        self.monitors, self.connections = {}, 0
        self.changed = threading.Condition()
        self.thread = threading.Thread(target=self.serve, daemon=True)
        self.thread.start()
        test.addCleanup(self.close)

    def serve(self):
        while True:
            try:
                self.peer, _ = self.listener.accept()
            except OSError:
                return  # closed
            self.connections += 1
            self.monitors.clear()
            with self.peer.makefile("rb") as stream, contextlib.suppress(OSError):  # the client may disconnect
                self.respond(stream)
            self.peer.close()

    def respond(self, stream):
        while len(head := stream.read(8)) == 8:
            xml = stream.read(int.from_bytes(head[2:4], "big") - 8).decode("utf-8")
            name = re.search(r"<([A-Z]\w+)", xml).group(1)
            if name.endswith("Response"):
                continue
            if name == "MonitorStart":
                device = re.search(r"<deviceObject[^>]*>([^<]+)<", xml).group(1)
                body = "<MonitorStartResponse xmlns=\"%s\"><monitorCrossRefID>x%s</monitorCrossRefID></MonitorStartResponse>" % (NAME_SPACE, device)
            elif name == "MonitorStop":
                device = re.search(r"<monitorCrossRefID>x([^<]+)<", xml).group(1)
                body = "<MonitorStopResponse xmlns=\"%s\"/>" % NAME_SPACE
            else:
                device, body = None, ThirdPartySwitch.response(name, None, None)
            self.peer.sendall(frame(int(head[4:]), body))
            with self.changed:
                if name == "MonitorStart":
                    self.monitors[device] = self.connections
                elif device:
                    del self.monitors[device]
                self.changed.notify_all()

    def monitored(self, *devices):
        """Waits until exactly these devices are monitored."""
        with self.changed:
            return self.changed.wait_for(lambda: self.monitors.keys() == set(devices), LIMIT)

    def misses(self, device, call, caller):
        """A call for a line that is not answered."""
        for event in (delivered(call, caller), cleared(call)):
            xml = event[8:].replace(b">2001<", b">%s<" % device.encode()).replace(b">x7<", b">x%s<" % device.encode())
            self.peer.sendall(frame(9999, xml.decode()))

    def close(self):
        self.listener.close()
        if self.connections:
            self.peer.close()
