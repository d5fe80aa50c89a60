"""The page and the API behind the examples of packaging/proxy, with the web servers themselves."""

import http.client
import itertools
import json
import os
import queue
import re
import shutil
import socket
import ssl
import subprocess
import threading
import unittest

from harness import ENVIRONMENT, LIMIT, ProgramTest, make_certificate

PATH = os.defpath + ":/usr/sbin"
EXAMPLES = os.path.join(os.path.dirname(__file__), "../../../packaging/proxy")
NGINX = """daemon off; pid %(data)s/nginx.pid; error_log stderr notice; worker_processes 1; events {} http { access_log off;
client_body_temp_path %(data)s/a; proxy_temp_path %(data)s/b; fastcgi_temp_path %(data)s/c; uwsgi_temp_path %(data)s/d;
scgi_temp_path %(data)s/e; %(site)s }"""
CADDY = """{
    admin off
    auto_https off
    grace_period 100ms
    storage file_system %(data)s/caddy
}
%(site)s"""


class Proxy:
    """A web server with its example: the changes to the example, the file around it, the command, and the line that tells it runs."""

    def __init__(self, program, example, changes, frame, command, started):
        self.program, self.example, self.changes, self.frame = shutil.which(program, path=PATH), example, changes, frame
        self.command, self.started = command, started


PROXIES = {
    "nginx": Proxy("nginx", "nginx.conf", ((r"listen 443 ssl", "listen 127.0.0.1:%(port)d ssl"), (r"127\.0\.0\.1:8080", "%(upstream)s"),
                                           (r"/etc/ssl/certs/\S+pem", "%(certificate)s"), (r"/etc/ssl/private/\S+key", "%(key)s")),
                   NGINX, ("-p", "%(data)s", "-c", "%(file)s"), "start worker process"),
    "caddy": Proxy("caddy", "Caddyfile", ((r"(?m)^phone\.example \{", "https://phone.example:%(port)d {\n\tbind 127.0.0.1\n\ttls %(certificate)s %(key)s"),
                                          (r"127\.0\.0\.1:8080", "%(upstream)s")),
                   CADDY, ("run", "--adapter", "caddyfile", "--config", "%(file)s"), "serving initial configuration"),
}


class ProxyTest(ProgramTest):
    def ask(self, method, path, **headers):
        """The response through the proxy, whose certificate is checked for its name."""
        context = ssl.create_default_context(cafile=self.certificate)
        connection = http.client.HTTPConnection("phone.example", self.port, timeout=LIMIT)
        connection.sock = context.wrap_socket(socket.create_connection(("127.0.0.1", self.port), LIMIT), server_hostname="phone.example")
        self.addCleanup(connection.close)
        connection.request(method, path, headers={name.replace("_", "-"): value for name, value in headers.items()})
        return connection.getresponse()

    def start_proxy(self, proxy, upstream):
        """Starts the web server with its example, on a free port and with a certificate of its own."""
        self.certificate, key = make_certificate(self.data, "web", "DNS:phone.example")
        values = {"data": self.data, "port": self.port, "upstream": upstream, "certificate": self.certificate, "key": key}
        with open(os.path.join(EXAMPLES, proxy.example), encoding="utf-8") as file:
            site = file.read()
        for pattern, text in proxy.changes:
            site, count = re.subn(pattern, text % values, site)
            self.assertEqual(count, 1, pattern)
        values["file"] = self.file("proxy.conf", proxy.frame % {"data": self.data, "site": site})
        server = subprocess.Popen([proxy.program, *(each % values for each in proxy.command)], stderr=subprocess.PIPE, text=True,
                                  env={**ENVIRONMENT, "HOME": self.data})
        lines = queue.Queue()
        reader = threading.Thread(target=lambda: [lines.put(each) for each in itertools.chain(server.stderr, [None])], daemon=True)
        reader.start()
        for cleanup in (server.stderr.close, reader.join, server.wait, server.terminate):
            self.addCleanup(cleanup)
        while proxy.started not in (line := lines.get(timeout=LIMIT) or "it has ended"):
            self.assertNotIn("it has ended", line)

    def works_behind(self, proxy):
        if not proxy.program:
            self.skipTest("it is missing (tools/setup proxy)")
        with socket.create_server(("127.0.0.1", 0)) as free:
            self.port = free.getsockname()[1]
        url = "https://phone.example:%d/journal/" % self.port
        server = self.serve("127.0.0.1:1", config='[api]\npublic-url = "%s"\n' % url)
        self.start_proxy(proxy, server.http)
        self.assertEqual(self.ask("GET", "/journal/api/v1/status").status, 401)
        response = self.ask("GET", "/journal/?token=" + server.token)
        self.assertEqual((response.status, response.getheader("Location")), (303, "./"))
        cookie = response.getheader("Set-Cookie")
        self.assertIn("; Secure", cookie)
        page = {"Cookie": cookie.split(";")[0], "Origin": url.removesuffix("/journal/"), "Sec_Fetch_Site": "same-origin"}
        self.assertEqual(json.load(self.ask("GET", "/journal/api/v1/status", **page))["scope"], "admin")
        self.assertEqual(self.ask("GET", "/journal/api/v1/status", **{**page, "Origin": "https://evil.example"}).status, 403)
        stream = self.ask("GET", "/journal/api/v1/events", **page)
        self.assertEqual(stream.readline(), b"retry: 2000\n")  # not collected by the proxy

    def test_the_page_works_under_a_path_of_nginx(self):
        self.works_behind(PROXIES["nginx"])

    def test_the_page_works_under_a_path_of_caddy(self):
        self.works_behind(PROXIES["caddy"])

    def test_clients_on_another_machine_name_the_server(self):
        server = self.serve("127.0.0.1:1")
        run = lambda *words: subprocess.run([os.environ["CALLJOURNAL"], *words, "--url", "http://%s/" % server.http, "--token-file", self.data +
                                             "/api-token"], capture_output=True, text=True, env={**ENVIRONMENT, "no_proxy": "127.0.0.1"}, timeout=LIMIT)
        self.assertEqual(run("tokens", "list").stdout, "no named tokens\n")
        link, *code = run("open").stdout.splitlines()
        self.assertEqual(link, "http://%s/?token=%s" % (server.http, server.token))
        self.assertEqual({len(each) for each in code}, {2 * len(code) - 1})
        # A list without entries is no failure for a token that may not read the settings.
        secret = run("tokens", "create", "board").stdout
        with open(os.path.join(self.data, "api-token"), "w", encoding="ascii") as file:
            file.write(secret)
        listed = run("list", "missed")
        self.assertEqual((listed.returncode, listed.stdout, listed.stderr), (0, "no entries in the list\n", ""))
