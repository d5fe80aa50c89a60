"""What receivers of webhooks get from the program. CALLJOURNAL_OUTAGE_S is for how long a receiver is down, default 4."""

import os
import shutil
import signal
import socket
import threading
import time
import unittest
import urllib.request

from harness import ProgramTest, make_certificate
from third_party_switch import ThirdPartySwitch, cleared, delivered, established
from webhook_receiver import Receiver

OUTAGE = float(os.environ.get("CALLJOURNAL_OUTAGE_S", "4"))
EVERY = '["call.filed", "call.ringing", "call.answered", "missed.viewed", "list.deleted"]'


class WebhookTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.switch = ThirdPartySwitch(self)
        self.secret = self.file("hook.secret", "a secret\n")

    def receiver(self):
        return Receiver(self, b"a secret")

    def hook(self, port, events=EVERY, user=""):
        return '[[webhook]]\nurl = "http://%s127.0.0.1:%d/calls?key=k1"\nevents = %s\nsecret-file = "%s"\n' % (
            user, port, events, self.secret)

    def serve_hooks(self, *hooks):
        server = self.serve(self.switch.address, config="".join(hooks))
        self.switch.accept_monitor()
        return server

    def answers(self, call, caller):
        for each in (delivered(call, caller), established(call, caller), cleared(call)):
            self.switch.peer.sendall(each)

    def value(self, server, metric, **labels):
        """The sum of the values of the metric with these labels."""
        request = urllib.request.Request("http://%s/metrics" % server.http, headers={"Authorization": "Bearer " + server.token})
        with urllib.request.urlopen(request, timeout=40) as response:
            lines = response.read().decode().splitlines()
        wanted = ['%s="%s"' % label for label in labels.items()]
        return sum(float(line.rsplit(" ", 1)[1]) for line in lines
                   if line.startswith(metric + "{") and all(each in line for each in wanted))

    def test_a_receiver_that_was_down_gets_every_event_in_order_after_a_kill_of_the_journal(self):
        receiver = self.receiver()
        server = self.serve_hooks(self.hook(receiver.port))
        self.answers("1", "N<4711>Ann")
        server.logs("received call from Ann")
        self.switch.misses("2", "N<4712>Bob")
        server.logs("missed call from Bob")
        server.stop(signal.SIGKILL)
        down = time.monotonic()
        server = self.serve_hooks(self.hook(receiver.port))
        self.switch.misses("3", "N<4713>Eve")
        server.logs("missed call from Eve")
        self.done("viewed", *(each["entryId"] for each in self.list("missed")["items"] if each["number"] == "4712"))
        self.done("delete", "dialled", "--all")
        threading.Event().wait(max(0.0, down + OUTAGE - time.monotonic()))
        receiver.comes_up()
        expected = ["call.ringing 4711", "call.answered 4711", "call.filed 4711", "call.ringing 4712", "call.filed 4712",
                    "call.ringing 4713", "call.filed 4713", "missed.viewed 4712", "list.deleted dialled"]
        self.await_value(expected, lambda: ["%s %s" % (each["event"], each["call"]["number"] if each["call"] else each["list"])
                                            for each in receiver.accepted])
        self.assertEqual(receiver.forged, [])
        self.assertEqual(len({each["id"] for each in receiver.accepted}), len(expected))
        ringing, answered, filed = receiver.accepted[:3]
        self.assertEqual((ringing["call"]["answered"], ringing["call"]["displayName"], ringing["line"]), (None, "Ann", "2001"))
        self.assertEqual(answered["call"]["callId"], filed["call"]["callId"])
        self.assertEqual(filed["call"], {name: value for name, value in self.get(server, "calls/%d" % filed["call"]["id"]).items()
                                         if name in filed["call"]})
        self.await_value(0, lambda: self.value(server, "calljournal_webhook_events_waiting"))
        self.assertEqual(self.value(server, "calljournal_webhook_deliveries_total", result="sent"), len(expected))

    def test_a_receiver_that_fails_or_hangs_delays_no_other_and_not_the_end(self):
        refusing, well, hanging = self.receiver(), self.receiver(), socket.create_server(("127.0.0.1", 0))
        self.addCleanup(hanging.close)
        refusing.respond = lambda number: (500, 302, 204)[min(number - 1, 2)]
        refusing.headers = {"Location": "http://127.0.0.1:%d/elsewhere" % well.port}
        refusing.comes_up()
        well.comes_up()
        server = self.serve_hooks(self.hook(refusing.port, '["call.filed"]', user="ann:pass-word@"), self.hook(hanging.getsockname()[1]),
                                  self.hook(well.port, '["call.filed"]'))
        for call in "123":
            self.switch.misses(call, "N<471%s>Ann" % call)
        numbers = lambda receiver: [each["call"]["number"] for each in receiver.accepted]
        self.await_value(["4711", "4712", "4713"], lambda: numbers(well))
        self.await_value(["4711", "4712", "4713"], lambda: numbers(refusing))
        self.assertEqual((refusing.attempts, well.attempts), (5, 3))
        self.await_value(6, lambda: self.value(server, "calljournal_webhook_events_waiting", hook="2"))
        self.assertEqual(self.value(server, "calljournal_webhook_deliveries_total", hook="1", result="failed"), 2)
        begin = time.monotonic()
        self.assertEqual(server.stop(), 0)
        self.assertLess(time.monotonic() - begin, 8)
        self.assertEqual(server.count("HTTP status 302; redirects are not followed"), 1)
        self.assertEqual(server.count("pass-word|k1|127.0.0.1:%d/" % refusing.port), 0, "the log has a password or a path")

    def test_a_deleted_call_and_an_erased_party_are_not_sent(self):
        receiver = self.receiver()
        server = self.serve_hooks(self.hook(receiver.port))
        for call, caller in (("1", "N<4711>Ann"), ("2", "N<4712>Bob"), ("3", "N<4713>Eve")):
            self.switch.misses(call, caller)
        server.logs("missed call from Eve")
        imported = '{"start":"2026-11-21T05:22:05Z","number":"4714","list":"missed"}\n'
        self.done("import", self.file("more.jsonl", imported), "--unviewed")  # is no event
        calls = {each["number"]: each["id"] for each in self.get(server, "calls")["items"]}
        self.open(server, "calls/%d" % calls["4711"], "DELETE").close()
        self.open(server, "calls?number=4712", "DELETE").close()
        receiver.comes_up()
        self.await_value([("call.ringing", "4713"), ("call.filed", "4713")],
                         lambda: [(each["event"], each["call"]["number"]) for each in receiver.accepted])
        server.stop()
        # Without a webhook nothing of it is left.
        server = self.serve(self.switch.address, config="[log]\n")
        self.assertEqual(server.stop(), 0)
        with open(os.path.join(self.data, "journal.db"), "rb") as file:
            self.assertNotIn(b"4712", file.read())

    @unittest.skipUnless(shutil.which("openssl"), "openssl is missing (tools/setup proxy)")
    def test_a_receiver_without_a_valid_certificate_gets_nothing(self):
        """Of three receivers one has a certificate of the authority that its webhook names."""
        authority, other = (make_certificate(self.data, name, subject="DNS:" + name) for name in ("authority", "other"))
        certificate = make_certificate(self.data, "hook", authority=authority)
        refused, wrong, trusted = receivers = [self.receiver() for _ in range(3)]
        for each in receivers:
            each.comes_up(certificate)
        hooks = [self.hook(each.port, '["call.filed"]').replace("http://127.0.0.1", "https://localhost") for each in receivers]
        server = self.serve_hooks(hooks[0], hooks[1] + 'ca-file = "%s"\n' % other[0], hooks[2] + 'ca-file = "%s"\n' % authority[0])
        self.switch.misses("1", "N<4711>Ann")
        for _ in range(2):
            server.logs(r"an event cannot be delivered to https://localhost:\d+: .*[Cc]ertificate")
        self.await_value(["call.filed"], lambda: trusted.events)
        self.assertEqual([refused.attempts, wrong.attempts], [0, 0])

    def test_a_wrong_configuration_is_refused_with_its_reason(self):
        receiver = self.receiver()
        for wrong, reason in (('"call.filed"', "webhook.events"), ('["call.filled"]', '"call.filled" is no event; there are call.filed, call'),
                              ("[]", "must name one event or more")):
            path = self.file("wrong.toml", self.hook(receiver.port, wrong))
            self.assertIn(reason, self.refused("serve", "--config", path, status=1))
        for url in ("ftp://crm.example/", "crm.example", "http://", "http://crm.example:70000/", "http://a b/"):
            path = self.file("wrong.toml", '[[webhook]]\nurl = "%s"\nevents = ["call.filed"]\nsecret-file = "x"\n' % url)
            self.assertIn("must be the URL of a receiver", self.refused("serve", "--config", path, status=1))
        for url, authorities, reason in (("http", self.secret, "webhook.ca-file: is for a receiver with https"),
                                         ("https", self.secret, "has no certificate in PEM form"), ("https", "missing.pem", "missing.pem does not exist")):
            path = self.file("wrong.toml", self.hook(receiver.port).replace("http", url, 1) + 'ca-file = "%s"\n' % authorities)
            self.assertIn(reason, self.refused("serve", "--config", path, status=1))
        path = self.file("wrong.toml", self.hook(receiver.port).replace(self.secret, self.data + "/missing"))
        self.assertIn("missing cannot be read: ", self.refused("serve", "--config", path, status=1))
