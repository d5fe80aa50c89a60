"""A SIP user agent without media: every call has a user of its own, and does what its script says."""

import queue
import re
import socket
import threading

from harness import LIMIT

SDP = "v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=-\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\nm=audio %d RTP/AVP 0\r\na=rtpmap:0 PCMU/8000\r\n"


def header(text, name):
    found = re.search(r"^%s:[ \t]*(.*?)\r$" % name, text, re.MULTILINE | re.IGNORECASE)
    return found.group(1) if found else ""


class Agent:
    """One UDP port for all calls. `incoming` has the calls that others have begun."""

    def __init__(self):
        self.socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.socket.bind(("127.0.0.1", 0))
        self.media = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)  # takes the sound, unread
        self.media.bind(("127.0.0.1", 0))
        self.port = self.socket.getsockname()[1]
        self.calls = {}
        self.lock = threading.Lock()
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()

    def close(self):
        self.socket.sendto(b"", ("127.0.0.1", self.port))
        self.reader.join(LIMIT)
        self.socket.close()
        self.media.close()

    def call_of(self, identity, user=None):
        with self.lock:
            if identity not in self.calls:
                self.calls[identity] = Call(self, user, identity)
            return self.calls[identity]

    def awaited(self, user):
        """The call for this user, which has not come yet."""
        return self.call_of("to " + user, user)

    def _read(self):
        while True:
            data, source = self.socket.recvfrom(65536)
            if not data:
                return
            text = data.decode("utf-8", "replace")
            if not text.strip():
                continue
            identity = header(text, "Call-ID")
            if text.startswith("INVITE"):
                user = re.match(r"INVITE sip:([^@]*)@", text).group(1)
                with self.lock:
                    self.calls.setdefault(identity, self.calls.get("to " + user) or Call(self, user, identity))
            with self.lock:
                call = self.calls.get(identity)
            if call:
                call.received(text, source)


class Call:
    """One dialog. Each operation sends; `awaits` waits for what the other side does: 180, 200, 487, ACK, BYE, CANCEL, ..."""

    def __init__(self, agent, user, identity):
        self.agent, self.user, self.identity = agent, user, identity
        self.seen = queue.Queue()
        self.sequence = 1
        self.invite = self.remote_tag = ""
        self.outgoing = False
        self.ended = False

    def awaits(self, word):
        while True:
            found = self.seen.get(timeout=LIMIT)
            if found == word:
                return
            if found in ("BYE", "CANCEL") or (found.isdigit() and int(found) >= 300):
                raise AssertionError("%s: %s instead of %s" % (self.user, found, word))

    def received(self, text, source):
        first = text.split("\r\n", 1)[0]
        if first.startswith("SIP/2.0"):
            self._response(text, first.split()[1])
            return
        method = first.split()[0]
        if method == "INVITE":
            if "tag=" in header(text, "To"):  # on hold, or back
                self._reply(text, "200 OK", SDP % self.agent.media.getsockname()[1])
                return
            if self.invite:  # sent again
                return
            self.invite, self.peer = text, source
        elif method in ("BYE", "CANCEL"):
            self._reply(text, "200 OK")
            if method == "CANCEL" and not self.ended:
                self._reply(self.invite, "487 Request Terminated")
            self.ended = True
        self.seen.put(method)

    def _response(self, text, status):
        self.remote_tag = re.search(r";tag=([^;\s]+)", header(text, "To")).group(1) if "tag=" in header(text, "To") else ""
        if "INVITE" in header(text, "CSeq") and int(status) >= 200:
            contact = re.search(r"<(.*?)>", header(text, "Contact"))
            self.target = contact.group(1) if contact and status == "200" else self.target
            self._request("ACK", branch=None if status == "200" else self.branch)
        self.seen.put(status)

    # Calls of the agent.

    def dial(self, target):
        self.outgoing, self.target, self.to = True, target, target
        self.peer = ("127.0.0.1", int(target.rsplit(":", 1)[1]))
        self.branch = "z9hG4bK" + self.identity
        self._request("INVITE", branch=self.branch, body=SDP % self.agent.media.getsockname()[1])

    def cancel(self):
        self.remote_tag = ""
        self._request("CANCEL", branch=self.branch)

    def hang_up(self):
        self.ended = True
        self.sequence += 1
        self._request("BYE")

    # Calls of the other side.

    def ring(self):
        self._reply(self.invite, "180 Ringing")

    def accept(self):
        self._reply(self.invite, "200 OK", SDP % self.agent.media.getsockname()[1])
        self.target = re.search(r"<(.*?)>", header(self.invite, "Contact")).group(1)

    def refuse(self, status):
        self.ended = True
        self._reply(self.invite, status)

    def _request(self, method, branch=None, body=""):
        own = "<sip:%s@127.0.0.1:%d>" % (self.user, self.agent.port)
        if self.outgoing:
            sender, receiver = own + ";tag=a" + self.identity, "<%s>%s" % (self.to, ";tag=" + self.remote_tag if self.remote_tag else "")
        else:
            sender, receiver = header(self.invite, "To") + ";tag=b" + self.user, header(self.invite, "From")
        lines = ["%s %s SIP/2.0" % (method, self.target),
                 "Via: SIP/2.0/UDP 127.0.0.1:%d;branch=%s;rport" % (self.agent.port, branch or "z9hG4bK%s%s%d" % (method, self.user, self.sequence)),
                 "Max-Forwards: 70", "From: " + sender, "To: " + receiver, "Call-ID: " + self._call_id(),
                 "CSeq: %d %s" % (self.sequence, method), "Contact: " + own]
        self._send(lines, body)

    def _reply(self, request, status, body=""):
        lines = ["SIP/2.0 " + status]
        lines += [found.group(0).rstrip() for found in re.finditer(r"^(Via|Record-Route):.*$", request, re.MULTILINE)]
        tag = "" if "tag=" in header(request, "To") or status.startswith("100") else ";tag=b" + self.user
        lines += ["From: " + header(request, "From"), "To: " + header(request, "To") + tag, "Call-ID: " + header(request, "Call-ID"),
                  "CSeq: " + header(request, "CSeq"), "Contact: <sip:%s@127.0.0.1:%d>" % (self.user, self.agent.port)]
        self._send(lines, body)

    def _call_id(self):
        return header(self.invite, "Call-ID") or self.identity

    def _send(self, lines, body):
        if body:
            lines.append("Content-Type: application/sdp")
        text = "\r\n".join(lines + ["Content-Length: %d" % len(body), "", body])
        self.agent.socket.sendto(text.encode(), self.peer)
