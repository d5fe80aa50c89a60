"""TLS between the program and its clients, and on the link to the switch."""

import http.client
import json
import os
import shutil
import signal
import socket
import ssl
import subprocess
import unittest
import warnings

from harness import IMPATIENT, LIMIT, ProgramTest, make_certificate

CALL = 'call ann from 4711 "Ann" ; ring ann ; giveup ann'


@unittest.skipUnless(shutil.which("openssl"), "openssl is missing (tools/setup proxy)")
class TlsTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.files = os.path.join(self.data, "tls")
        os.mkdir(self.files)
        self.authority = make_certificate(self.files, "authority", "DNS:authority")
        self.web = make_certificate(self.files, "web", authority=self.authority)

    def trusting(self, server, ciphers="DEFAULT", **limits):
        """A connection that checks the certificate of the server."""
        context = ssl.create_default_context(cafile=self.authority[0])
        context.set_ciphers(ciphers)
        for name, value in limits.items():
            setattr(context, name, value)
        host, port = server.http.split(":")
        connection = http.client.HTTPSConnection(host, int(port), timeout=LIMIT, context=context)
        self.addCleanup(connection.close)
        return connection

    def ask(self, server, path, connection=None):
        connection = connection or self.trusting(server)
        connection.request("GET", path, headers={"Authorization": "Bearer " + server.token})
        return connection.getresponse()

    def serve_with_tls(self, switch="127.0.0.1:1", more=""):
        return self.serve(switch, config='[api]\ntls-certificate = "%s"\ntls-key = "%s"\n%s' % (*self.web, more))

    def test_the_server_speaks_tls_and_renews_its_certificate(self):
        server = self.serve_with_tls()
        host, port = server.http.split(":")
        self.assertEqual(json.load(self.ask(server, "/api/v1/status"))["line"], "2001")
        stream = self.ask(server, "/api/v1/events")
        self.assertEqual(stream.readline(), b"retry: 2000\n")
        signed_in = self.ask(server, "/?token=" + server.token)
        self.assertIn("; Secure", signed_in.getheader("Set-Cookie"))

        # A client without TLS is told so; those that say nothing delay no other.
        plain = http.client.HTTPConnection(host, int(port), timeout=LIMIT)
        plain.request("GET", "/")
        refused = plain.getresponse()
        self.assertEqual((refused.status, b"https://" in refused.read()), (400, True))
        silent = [socket.create_connection((host, int(port)), LIMIT) for _ in range(100)]
        self.assertEqual(self.ask(server, "/healthz").status, 200)
        for each in silent:
            each.close()

        # The commands know the server by its key; on another machine they check its certificate.
        url = ["--url", "https://" + server.http, "--token-file", self.data + "/api-token"]
        self.assertIn('"total":0', self.done("list", "missed", "--json"))
        self.assertIn("--ca-file", self.refused("list", "missed", *url))
        self.assertIn('"total":0', self.done("list", "missed", "--json", *url, "--ca-file", self.authority[0]))
        self.assertIn("PEM", self.refused("list", "missed", *url, "--ca-file", self.file("none.pem", "")))

        # What was begun with the former certificate goes on. A broken one is not used.
        former = ssl.get_server_certificate((host, int(port)))
        make_certificate(self.files, "web", authority=self.authority)
        server.process.send_signal(signal.SIGHUP)
        server.logs("the configuration is read again")
        self.await_value(True, lambda: ssl.get_server_certificate((host, int(port))) != former)
        self.assertIn('"total":0', self.done("list", "missed", "--json"))
        with open(self.web[1], "w", encoding="ascii") as key:
            key.write("broken")
        server.process.send_signal(signal.SIGHUP)
        server.logs("the former certificate stays: .*web.key has no key")
        self.assertEqual(self.ask(server, "/healthz").status, 200)
        self.assertIn(b'calljournal_observers{face="http"} 1\n', self.ask(server, "/metrics").read())

    def test_versions_and_origins_that_are_not_those_of_the_page_are_refused(self):
        self.web = make_certificate(self.files, "web", "DNS:*.example,DNS:phone.example,IP:127.0.0.1", self.authority)
        server = self.serve_with_tls()
        port = server.http.split(":")[1]
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", DeprecationWarning)
            old, new = ssl.TLSVersion.TLSv1_1, ssl.TLSVersion.TLSv1_2
            self.assertEqual(self.ask(server, "/healthz", self.trusting(server, maximum_version=new)).status, 200)
            # This client would accept the old version, so it is the server that does not.
            with self.assertRaises(ssl.SSLError) as refused:
                self.ask(server, "/healthz", self.trusting(server, "DEFAULT@SECLEVEL=0", minimum_version=old, maximum_version=old))
        self.assertEqual(refused.exception.reason, "TLSV1_ALERT_PROTOCOL_VERSION")
        # The host of the certificate is that of the page.
        for host, origin, status in (("phone.example", "https://phone.example:", 200), ("phone.example", "http://phone.example:", 403),
                                     ("other.example", "https://other.example:", 403)):
            connection = self.trusting(server)
            connection.request("GET", "/api/v1/status", headers={"Host": "%s:%s" % (host, port), "Origin": origin + port,
                                                                 "Authorization": "Bearer " + server.token})
            self.assertEqual(connection.getresponse().status, status, (host, origin))

    def test_handshakes_that_do_not_end_count_as_connections_and_hold_up_no_client(self):
        server = self.serve_with_tls()
        used = self.trusting(server)
        self.assertEqual(self.ask(server, "/api/v1/status", used).read()[:1], b"{")
        # More than the 32 connections that clients of one address may have before they have sent a token.
        slow = [socket.create_connection(server.http.split(":"), LIMIT) for _ in range(40)]
        for number, each in enumerate(slow):
            self.addCleanup(each.close)
            each.sendall(b"\x16\x03\x01\x02\x00\x01"[:number % 7])
        self.assertEqual(self.ask(server, "/api/v1/status").status, 200)
        self.assertEqual(self.ask(server, "/api/v1/status", used).status, 200)
        self.assertEqual(slow[0].recv(1), b"")  # it has lost its place

    def test_a_server_with_another_key_is_not_that_of_the_data_directory(self):
        server = self.serve_with_tls()
        self.file("api-address", "https://%s\nsha256//%s=\n" % (server.http, "A" * 43))
        self.assertIn("is not", self.refused("list", "missed"))

    def test_a_certificate_that_has_expired_and_a_key_that_all_can_read_are_warnings(self):
        subprocess.run(["openssl", "x509", "-in", self.web[0], "-signkey", self.web[1], "-days", "-1", "-out", self.web[0]], check=True,
                       capture_output=True, timeout=LIMIT)
        os.chmod(self.web[1], 0o644)
        server = self.serve_with_tls()
        self.assertEqual((server.count("web.pem has expired"), server.count("every user of this machine can read the key .*web.key")), (1, 1))

    def test_a_certificate_that_cannot_be_used_ends_the_start(self):
        other = make_certificate(self.files, "other")
        for certificate, key, reason in ((self.web[0], other[1], "has no key in PEM form that belongs to"), (self.web[0], "none.key", "does not exist"),
                                         (self.web[1], self.web[1], "has no certificate in PEM form")):
            config = self.file("c.toml", '[api]\ntls-certificate = "%s"\ntls-key = "%s"\n' % (certificate, key))
            self.assertIn(reason, self.refused("serve", "--config", config, "--listen", "127.0.0.1:0", silent=False))
        config = self.file("c.toml", '[api]\ntls-certificate = "%s"\n' % self.web[0])
        self.assertIn("tls-key", self.refused("serve", "--config", config, silent=False))

    def test_the_link_checks_the_switch(self):
        simulator, address = self.simulate(CALL, "--tls-certificate", self.web[0], "--tls-key", self.web[1])
        link = '[switch]\ntls = true\ntls-ca = "%s"\n'
        for config, reason in (('[switch]\ntls = true\n', "its certificate is refused: unable to get local issuer certificate"),
                               (link % self.authority[0] + 'tls-name = "other.example"\n', "its certificate is refused: hostname mismatch")):
            server = self.serve(address, config=config)
            server.logs("the switch at .* is not there: " + reason)
            self.assertEqual(server.stop(), 0)
        server = self.serve(address, config=link % self.authority[0])
        server.logs("missed call from")
        self.assertEqual(server.stop(), 0)
        self.assertEqual(simulator.stop(), 0)

    def test_the_link_shows_its_certificate_and_uses_renewed_files_without_a_restart(self):
        own, other = make_certificate(self.files, "own"), make_certificate(self.files, "other")
        simulator, address = self.simulate(CALL, "--tls-certificate", self.web[0], "--tls-key", self.web[1], "--client-ca", own[0])
        trusted = os.path.join(self.files, "trusted.pem")
        shutil.copy(other[0], trusted)
        link = IMPATIENT + 'tls = true\ntls-ca = "%s"\n' % trusted
        server = self.serve(address, config=link)
        server.logs("its certificate is refused: unable to get local issuer certificate; trying again")
        shutil.copy(self.authority[0], trusted)  # now the switch misses a certificate of the link
        server.logs("connected to the switch")
        server.logs("is lost: .*certificate required.*; trying again")
        self.assertEqual((self.list("missed")["total"], server.stop()), (0, 0))
        server = self.serve(address, config=link + 'tls-certificate = "%s"\ntls-key = "%s"\n' % own)
        server.logs("missed call from")
        self.assertEqual((server.stop(), simulator.stop(), server.count("own.pem expires in less than two weeks")), (0, 0, 1))
        subprocess.run(["openssl", "x509", "-in", own[0], "-signkey", own[1], "-days", "-1", "-out", own[0]], check=True,
                       capture_output=True, timeout=LIMIT)
        server = self.serve(address, config=link + 'tls-certificate = "%s"\ntls-key = "%s"\n' % own)
        server.logs("own.pem has expired; the switch refuses it")
        self.assertRegex(self.run_program("doctor", "--data", self.data)[1], "FAILED +link certificate +.*own.pem is valid from .* to")

    def test_a_switch_without_tls_is_not_spoken_to_in_clear(self):
        link = '[switch]\ntls = true\ntls-ca = "%s"\n'
        with socket.create_server(("127.0.0.1", 0)) as switch:
            server = self.serve("127.0.0.1:%d" % switch.getsockname()[1], config=link % self.authority[0])
            with switch.accept()[0] as client:
                client.sendall(b"this is no TLS record")
                server.logs("is not there: the TLS handshake fails")
                self.assertNotIn(b"<?xml", client.recv(4096))


if __name__ == "__main__":
    unittest.main()
