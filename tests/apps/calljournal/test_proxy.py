"""The page and the API behind packaging/proxy/nginx.conf, with the web server itself."""

import http.client
import json
import os
import re
import shutil
import socket
import ssl
import subprocess
import unittest

from harness import ENVIRONMENT, LIMIT, ProgramTest, make_certificate

NGINX = shutil.which("nginx", path=os.defpath + ":/usr/sbin")
EXAMPLE = os.path.join(os.path.dirname(__file__), "../../../packaging/proxy/nginx.conf")
FRAME = """daemon off; pid %(data)s/nginx.pid; error_log stderr notice; worker_processes 1; events {} http { access_log off;
client_body_temp_path %(data)s/a; proxy_temp_path %(data)s/b; fastcgi_temp_path %(data)s/c; uwsgi_temp_path %(data)s/d;
scgi_temp_path %(data)s/e; %(site)s }"""


@unittest.skipUnless(NGINX, "nginx is missing (tools/setup proxy)")
class ProxyTest(ProgramTest):
    def ask(self, method, path, **headers):
        """The response through the proxy, whose certificate is checked for its name."""
        context = ssl.create_default_context(cafile=self.certificate)
        connection = http.client.HTTPConnection("phone.example", self.port, timeout=LIMIT)
        connection.sock = context.wrap_socket(socket.create_connection(("127.0.0.1", self.port), LIMIT), server_hostname="phone.example")
        self.addCleanup(connection.close)
        connection.request(method, path, headers={name.replace("_", "-"): value for name, value in headers.items()})
        return connection.getresponse()

    def proxy(self, upstream):
        """Starts the web server with the example, on a free port and with a certificate of its own."""
        self.certificate, key = make_certificate(self.data, "web", "DNS:phone.example")
        with open(EXAMPLE, encoding="utf-8") as file:
            site = file.read()
        for pattern, text in ((r"listen 443 ssl", "listen 127.0.0.1:%d ssl" % self.port), (r"127\.0\.0\.1:8080", upstream),
                              (r"/etc/ssl/certs/\S+pem", self.certificate), (r"/etc/ssl/private/\S+key", key)):
            site, count = re.subn(pattern, text, site)
            self.assertEqual(count, 1, pattern)
        path = self.file("nginx.conf", FRAME % {"data": self.data, "site": site})
        server = subprocess.Popen([NGINX, "-p", self.data, "-c", path], stderr=subprocess.PIPE, text=True)
        self.addCleanup(server.stderr.close)
        self.addCleanup(server.wait, LIMIT)
        self.addCleanup(server.terminate)
        for line in server.stderr:
            if "start worker process" in line or "emerg" in line:
                self.assertNotIn("emerg", line)
                break

    def test_the_page_works_under_a_path_of_nginx(self):
        with socket.create_server(("127.0.0.1", 0)) as free:
            self.port = free.getsockname()[1]
        url = "https://phone.example:%d/journal/" % self.port
        server = self.serve("127.0.0.1:1", config='[api]\npublic-url = "%s"\n' % url)
        self.proxy(server.http)
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
        # The same server, as clients on another machine name it.
        run = lambda *words: subprocess.run([os.environ["CALLJOURNAL"], *words, "--url", "http://%s/" % server.http, "--token-file", self.data +
                                             "/api-token"], capture_output=True, text=True, env={**ENVIRONMENT, "no_proxy": "127.0.0.1"}, timeout=LIMIT)
        self.assertEqual(run("tokens", "list").stdout, "no named tokens\n")
        link, *code = run("open").stdout.splitlines()
        self.assertEqual(link, "http://%s/?token=%s" % (server.http, server.token))
        self.assertEqual({len(each) for each in code}, {2 * len(code) - 1})
