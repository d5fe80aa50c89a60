"""A receiver of webhooks, which can be down."""

import http.server
import json
import os
import re
import socket
import ssl
import threading

GUIDE = os.path.join(os.path.dirname(__file__), "../../../docs/webhooks.md")


def example():
    """The function of the guide that checks a signature."""
    with open(GUIDE, encoding="utf-8") as file:
        found = re.search(r"```python\n(.*?)```", file.read(), re.DOTALL)
    names = {}
    exec(found.group(1), names)
    return names["is_genuine"]


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, *ignored):
        """A journal that is killed resets its connections."""


class Receiver:
    """Listens on one port while it is up; `accepted` has the events that it has accepted. `respond` returns the status of a response,
    or LOST for an event that is accepted on a connection that is closed before the response."""

    LOST = 0

    def __init__(self, test, secret):
        self.test, self.secret, self.is_genuine = test, secret, example()
        self.accepted, self.forged, self.attempts = [], [], 0
        self.respond = lambda number: 204
        self.headers = {}
        self.server = None
        with socket.create_server(("127.0.0.1", 0)) as free:
            self.port = free.getsockname()[1]
        test.addCleanup(self.goes_down)

    @property
    def events(self):
        return [each["event"] for each in self.accepted]

    def comes_up(self, certificate=None):
        """With a certificate, for https. Has no effect while it is up."""
        if self.server:
            return
        receiver = self

        class Handler(http.server.BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def do_POST(self):
                body = self.rfile.read(int(self.headers["Content-Length"]))
                receiver.attempts += 1
                status = receiver.respond(receiver.attempts)
                if not receiver.is_genuine(receiver.secret, self.headers, body):
                    receiver.forged.append(body)
                elif status == receiver.LOST or 200 <= status <= 299:
                    receiver.accepted.append(json.loads(body))
                if status == receiver.LOST:
                    self.close_connection = True
                    return
                self.send_response(status)
                for name, value in receiver.headers.items():
                    self.send_header(name, value)
                self.send_header("Content-Length", "0")
                self.end_headers()

            def log_message(self, *ignored):
                pass

        self.server = Server(("127.0.0.1", self.port), Handler)
        if certificate:
            context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            context.load_cert_chain(*certificate)
            self.server.socket = context.wrap_socket(self.server.socket, server_side=True)
        threading.Thread(target=self.server.serve_forever, args=(0.02,), daemon=True).start()

    def goes_down(self):
        if self.server:
            self.server.shutdown()
            self.server.server_close()
            self.server = None
