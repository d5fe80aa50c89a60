"""A SIP registrar for the tests, with one account and digest authentication, on loopback over UDP."""

import hashlib
import re
import socket
import threading


def _digest(text):
    return hashlib.md5(text.encode()).hexdigest()


class SipRegistrar:
    """Accepts REGISTER requests of `user` with `password`, and refuses all others. Ends with the test."""

    REALM, NONCE = "test", "n0nce"

    def __init__(self, test, user, password):
        self.user, self.password = user, password
        self.socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.socket.bind(("127.0.0.1", 0))
        self.port = self.socket.getsockname()[1]
        self.silent = False
        test.addCleanup(self._end)
        threading.Thread(target=self._run, daemon=True).start()

    def _end(self):
        self.silent = True
        self.socket.close()

    def _run(self):
        try:
            while True:
                data, source = self.socket.recvfrom(65536)
                request = data.decode()
                if not self.silent:
                    self.socket.sendto(self._response(request).encode(), source)
        except OSError:
            pass

    def _response(self, request):
        headers = [line for line in request.split("\r\n") if re.match("(Via|From|To|Call-ID|CSeq):", line)]
        headers = [line + ";tag=registrar" if line.startswith("To:") else line for line in headers]
        contact = re.search("^Contact: .*$", request, re.MULTILINE)
        if not request.startswith("REGISTER "):
            status = "404 Not Found"
        elif "Authorization:" not in request:
            status = "401 Unauthorized"
            headers.append("WWW-Authenticate: Digest realm=\"%s\", nonce=\"%s\"" % (self.REALM, self.NONCE))
        elif self._is_right(dict(re.findall(r'(\w+)="?([^",]*)"?', request[request.index("Authorization:"):]))):
            status = "200 OK"
            headers += [contact.group(0).rstrip(), "Expires: 600"]
        else:
            status = "403 Forbidden"
        return "\r\n".join(["SIP/2.0 " + status, *headers, "Content-Length: 0", "", ""])

    def _is_right(self, given):
        secret = _digest("%s:%s:%s" % (self.user, self.REALM, self.password))
        expected = _digest("%s:%s:%s" % (secret, self.NONCE, _digest("REGISTER:" + given["uri"])))
        return given["username"] == self.user and given["response"] == expected
