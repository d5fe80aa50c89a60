"""A third-party CSTA peer: frames of CSTA XML over TCP. Of all requests it responds to MonitorStart only."""

import re
import socket
from xml.sax.saxutils import escape

from harness import LIMIT

NAME_SPACE = "http://www.ecma-international.org/standards/ecma-323/csta/ed4"


def frame(invoke_id, xml):
    body = xml.encode("utf-8")
    return b"\0\0" + (len(body) + 8).to_bytes(2, "big") + b"%04d" % invoke_id + body


def event(name, connection, call, parties, state, cause):
    """An event about the connection of device 2001 in a call; `parties` are (member, device) in their order."""
    members = "".join("<%s><deviceIdentifier>%s</deviceIdentifier></%s>" % (member, escape(device), member)
                      for member, device in parties)
    return frame(9999, '<?xml version="1.0" encoding="UTF-8"?><%s xmlns="%s"><monitorCrossRefID>x7</monitorCrossRefID>'
                 "<%s><callID>%s</callID><deviceID>2001</deviceID></%s>%s<localConnectionInfo>%s</localConnectionInfo>"
                 "<cause>%s</cause></%s>" % (name, NAME_SPACE, connection, call, connection, members, state, cause, name))


def delivered(call, caller):
    return event("DeliveredEvent", "connection", call, [("alertingDevice", "2001"), ("callingDevice", caller),
                                                        ("calledDevice", "2001")], "alerting", "newCall")


def established(call, caller):
    return event("EstablishedEvent", "establishedConnection", call,
                 [("answeringDevice", "2001"), ("callingDevice", caller), ("calledDevice", "2001")], "connected", "newCall")


def cleared(call):
    return event("ConnectionClearedEvent", "droppedConnection", call, [("releasingDevice", "2001")], "null",
                 "normalClearing")


def dialled(call, called):
    """A call of device 2001 that the called device has answered."""
    parties = [("callingDevice", "2001"), ("calledDevice", called)]
    return (event("OriginatedEvent", "originatedConnection", call, parties, "connected", "newCall")
            + event("EstablishedEvent", "establishedConnection", call, [("answeringDevice", called)] + parties, "connected", "newCall"))


def marked_missed(call):
    return frame(9999, '<CallInformationEvent xmlns="%s"><monitorCrossRefID>x7</monitorCrossRefID><connection><callID>%s</callID><deviceID>2001'
                 "</deviceID></connection><device>2001</device><extensions><privateData><private><callStatus>MissedCall</callStatus>"
                 "</private></privateData></extensions></CallInformationEvent>" % (NAME_SPACE, call))


def joined(name, connections, call, old, parties=()):
    """The calls `old` of device 2001, (call id, far end), continue as `call`: a transfer by another device, or a conference."""
    connection = "<%s><callID>%s</callID><deviceID>%s</deviceID></%s>"
    return frame(9999, '<%s xmlns="%s"><monitorCrossRefID>x7</monitorCrossRefID>%s%s<%s><connectionListItem>%s</connectionListItem></%s>'
                 "<localConnectionInfo>connected</localConnectionInfo><cause>normal</cause></%s>" % (
                     name, NAME_SPACE,
                     "".join(connection % (member, *each, member) for member, each in zip(("primaryOldCall", "secondaryOldCall"), old)),
                     "".join("<%s><deviceIdentifier>%s</deviceIdentifier></%s>" % (member, escape(device), member)
                             for member, device in parties),
                     connections, connection % ("newConnection", call, "2001", "newConnection"), connections, name))


def transferred(call, by, new_call, to):
    return joined("TransferedEvent", "transferredConnections", new_call, [(call, "2001")],
                  [("transferringDevice", by), ("transferredToDevice", to)])


def conferenced(call, *old):
    return joined("ConferencedEvent", "conferenceConnections", call, old)


def log_entry(log, number, action="add", at="2026-11-21T05:22:05Z"):
    """An entry that the switch has added to its call log, or deleted in it."""
    return frame(9999, '<PrivateEvent xmlns="%s"><monitorCrossRefID>x7</monitorCrossRefID><privateData><private><callLogEntry>'
                 "<action>%s</action><logTarget>%d</logTarget><subscriberNumber>%d</subscriberNumber>"
                 "<entryTime>%s</entryTime></callLogEntry></private></privateData></PrivateEvent>"
                 % (NAME_SPACE, action, log, number, at))


class ThirdPartySwitch:
    def __init__(self, test):
        """The switch of this test, which closes it."""
        self.listener = socket.create_server(("127.0.0.1", 0))
        test.addCleanup(self.close)
        self.listener.settimeout(LIMIT)
        self.address = "127.0.0.1:%d" % self.listener.getsockname()[1]
        self.peer = None

    def accept_monitor(self):
        """Accepts the next client and responds to its first MonitorStart for device 2001."""
        if self.peer:
            self.peer.close()
        self.peer, _ = self.listener.accept()
        self.peer.settimeout(self.listener.gettimeout())
        stream, xml = self.peer.makefile("rb"), b""
        while not re.search(rb"<MonitorStart[ >].*>2001<", xml, re.DOTALL):
            head = stream.read(8)
            invoke_id = int(head[4:])  # fails when the client has disconnected
            xml = stream.read(int.from_bytes(head[2:4], "big") - 8)
        self.peer.sendall(frame(invoke_id, '<MonitorStartResponse xmlns="%s"><monitorCrossRefID>x7</monitorCrossRefID>'
                                "</MonitorStartResponse>" % NAME_SPACE))

    def synchronise(self, calls, accept=True):
        """Accepts the next client, or goes on with this one; refuses all its requests but those that start and synchronise the monitor.
        `calls`, the live calls of device 2001: {call id: (state, other state, caller)}; None: without the services."""
        if accept:
            if self.peer:
                self.stream.close()  # refers to the connection, too
                self.peer.close()
            self.peer, _ = self.listener.accept()
            self.peer.settimeout(self.listener.gettimeout())
            self.stream = self.peer.makefile("rb")
        waiting = None
        while waiting is None or waiting:
            head = self.stream.read(8)
            xml = self.stream.read(int.from_bytes(head[2:4], "big") - 8).decode("utf-8")
            name, call = re.search(r"<([A-Z]\w+)", xml).group(1), re.search(r"<callID>(\w+)<", xml)
            if name.endswith("Response"):
                continue
            if waiting is None and name == "SnapshotDevice":
                waiting = set(calls or ())
            elif name == "SnapshotCall":
                waiting.discard(call.group(1))
            self.peer.sendall(frame(int(head[4:]), self.response(name, call and call.group(1), calls)))

    @staticmethod
    def response(name, call, calls):
        """The response to a request of that name."""
        if name == "MonitorStart":
            body = "<monitorCrossRefID>x7</monitorCrossRefID>"
        elif name == "SnapshotDevice" and calls is not None:
            body = "<crossRefIDorSnapshotData><snapshotData>%s</snapshotData></crossRefIDorSnapshotData>" % "".join(
                "<snapshotDeviceResponseInfo><connectionIdentifier><callID>%s</callID><deviceID>2001</deviceID></connectionIdentifier>"
                "<localCallState><compoundCallState><localConnectionState>%s</localConnectionState><localConnectionState>%s"
                "</localConnectionState></compoundCallState></localCallState></snapshotDeviceResponseInfo>" % (each, own, other)
                for each, (own, other, _) in calls.items())
        elif name == "SnapshotCall" and calls is not None:
            own, other, caller = calls[call]
            body = "<crossRefIDorSnapshotData><snapshotData>%s</snapshotData></crossRefIDorSnapshotData>" % "".join(
                "<snapshotCallResponseInfo><deviceOnCall><deviceIdentifier>%s</deviceIdentifier></deviceOnCall><localConnectionInfo>%s"
                "</localConnectionInfo></snapshotCallResponseInfo>" % (escape(device), state)
                for device, state in (("2001", own), (caller, other)))
            body += ("<callingDevice><deviceIdentifier>%s</deviceIdentifier></callingDevice>"
                     "<calledDevice><deviceIdentifier>2001</deviceIdentifier></calledDevice>" % escape(caller))
        else:
            return '<CSTAErrorCode xmlns="%s"><operation>serviceNotSupported</operation></CSTAErrorCode>' % NAME_SPACE
        return '<%sResponse xmlns="%s">%s</%sResponse>' % (name, NAME_SPACE, body, name)

    def report_status(self, word):
        self.peer.sendall(frame(1, '<SystemStatus xmlns="%s"><systemStatus>%s</systemStatus></SystemStatus>' % (NAME_SPACE, word)))

    def misses(self, call, caller):
        """A call that is not answered."""
        self.peer.sendall(delivered(call, caller) + cleared(call))

    def close(self):
        if self.peer:
            self.peer.close()
        self.listener.close()
