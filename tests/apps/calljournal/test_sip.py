"""The journal with real SIP telephones: its own behind the gateway, and others that call it and are called."""

import json
import os
import signal
import socket
import stat
import subprocess
import threading
import urllib.error
import urllib.request

from harness import IMPATIENT, LIMIT, ENVIRONMENT, ProgramTest
from sip_phone import CallController, SipPhone, free_port
from sip_registrar import SipRegistrar

LISTS = ("missed", "received", "dialled")


class SipTest(ProgramTest):
    def account(self, *lines):
        self.port = free_port()
        self.address = "sip:alice@127.0.0.1:%d" % self.port
        return self.file("account.toml", "[sip]\naccount = \"%s\"\nregister = false\nlisten = \"127.0.0.1:%d\"\n%s\n" %
                         (self.address, self.port, "\n".join(lines)))

    def serve_sip(self, *options):
        """Gateway and journal in one process."""
        server = self.start("serve", "--data", self.data, "--listen", "127.0.0.1:0", "--sip", self.account(), *options)
        return self.ready(server)

    def ready(self, server):
        found = server.prints("serves line alice of the switch at ([^;]+);.* page and API http://([^/]+)/")
        server.switch, server.http = found.groups()
        with open(os.path.join(self.data, "api-token"), encoding="ascii") as file:
            server.token = file.read().strip()
        self.await_value(True, lambda: self.get(server, "status")["switch"]["monitoring"])
        return server

    def gateway(self, account, *options):
        program = self.start("sip", account, "--data", os.path.join(self.data, "gateway"), *options)
        program.address = program.prints("SIP gateway for line alice listens on (.*)$").group(1)
        return program

    def serve_at(self, gateway):
        server = self.start("serve", "--data", self.data, "--switch", gateway.address, "--listen", "127.0.0.1:0", "--config",
                            self.file("line.toml", "[line]\ndevice = \"alice\"\n" + IMPATIENT))
        return self.ready(server)

    def phone(self, name, settings=""):
        return SipPhone(self, name, settings).connect()

    def rings_from(self, phone):
        """The phone calls alice; returns the id of the call."""
        before = set(self.control.calls())
        phone.command("dial", self.address)
        phone.reports("CALL_RINGING")
        self.await_value(1, lambda: len(set(self.control.calls()) - before))
        return (set(self.control.calls()) - before).pop()

    def call_to(self, phone):
        """Alice calls the phone, which rings."""
        self.assertIn("MakeCallResponse", self.control.make(phone.address))
        phone.reports("CALL_INCOMING")
        return self.control.calls()[-1]

    def is_filed(self, server, expected):
        """The history and the lists have these calls, and none is up."""
        self.await_value(expected, lambda: self.filed(server))
        self.await_value(0, lambda: self.get(server, "status")["calls"])
        self.assertEqual(self.control.calls(), [])
        for name in LISTS:
            listed = sorted(item["number"].split("@")[0] for item in self.get(server, "lists/" + name)["items"])
            self.assertEqual(listed, [text.split()[1] for text in expected if text.startswith(name)])

    def filed(self, server):
        """"missed bob": the list and the party of each call; "talked" with a duration, "~" with an approximate end."""
        return sorted("%s %s%s%s" % (call["list"], call["number"].split("@")[0], " talked" if call["duration"] else "",
                                     "~" if call["endApproximate"] else "")
                      for call in self.get(server, "calls?limit=100")["items"])

    def test_each_way_a_call_ends(self):
        server = self.serve_sip()
        self.control = CallController(self, server.switch, "alice")
        other = CallController(self, server.switch, "bob")
        for request in ("SnapshotDevice><snapshotObject>bob</snapshotObject></SnapshotDevice",
                        "MonitorStart><monitorObject><deviceObject>bob</deviceObject></monitorObject></MonitorStart"):
            self.assertIn("invalidDeviceID", other.request("<%s>" % request))
        expected = []

        phone = self.phone("cancels")
        self.rings_from(phone)
        phone.command("hangup")
        expected.append("missed cancels")

        phone = self.phone("isrejected")
        self.control.clear(self.rings_from(phone))
        self.assertIn("486", phone.reports("CALL_CLOSED")["param"])
        expected.append("missed isrejected")

        talks, ends = self.phone("talks"), self.phone("ends")
        for each in (talks, ends):  # two calls at once
            call = self.rings_from(each)
            self.assertIn("AnswerCallResponse", self.control.answer_call(call))
            each.reports("CALL_ESTABLISHED")
        self.await_value(["held", "connected"], lambda: [call[1] for call in self.live(server)])
        threading.Event().wait(1.1)  # the duration is in whole seconds
        self.assertIn("ClearConnectionResponse", self.control.clear(call))
        ends.reports("CALL_CLOSED")
        self.await_value(["connected"], lambda: [call[1] for call in self.live(server)])
        talks.command("hangup")
        expected += ["received ends talked", "received talks talked"]

        phone = self.phone("answers")
        self.call_to(phone)
        phone.command("accept")
        phone.reports("CALL_ESTABLISHED")
        threading.Event().wait(1.1)
        phone.command("hangup")
        expected.append("dialled answers talked")

        phone = self.phone("rejects")
        self.call_to(phone)
        phone.command("hangup")
        expected.append("dialled rejects")

        watcher = self.start("watch", "--data", self.data)
        watcher.prints("missed entr.* not viewed")
        phone = self.phone("isbusy", "call_max_calls 1")
        phone.command("dial", talks.address)
        phone.reports("CALL_RINGING")
        self.assertIn("MakeCallResponse", self.control.make(phone.address))
        expected.append("dialled isbusy")
        watcher.prints(r"dialled .*isbusy@.*, busy$")

        phone = self.phone("waits")
        self.control.clear(self.call_to(phone))
        phone.reports("CALL_CLOSED")
        expected.append("dialled waits")

        self.assertIn("MakeCallResponse", self.control.make("sip:absent@127.0.0.1:%d" % phone.port))
        expected.append("dialled absent")
        self.is_filed(server, sorted(expected))
        reasons = {call["number"].split("@")[0]: call["reason"] for call in self.get(server, "calls?list=dialled")["items"]}
        self.assertEqual(reasons, {"answers": "", "rejects": "rejected", "isbusy": "busy", "waits": "", "absent": "no-such-number"})
        self.assertIn("invalidCalledDeviceID", self.control.make("not a number"))

    def test_a_missed_call_is_called_back_and_others_controlled_over_http(self):
        server = self.serve_sip()
        self.control = CallController(self, server.switch, "alice")
        phone = self.phone("bob")
        self.rings_from(phone)
        self.await_value([("incoming", "ringing", phone.number)], lambda: self.live(server))
        phone.command("hangup")
        self.is_filed(server, ["missed bob"])

        with self.open(server, "calls", "POST", {"number": self.get(server, "lists/missed")["items"][0]["number"]}) as response:
            call = json.load(response)["callId"]
        phone.reports("CALL_INCOMING")
        phone.command("accept")
        self.await_value([("outgoing", "connected", phone.number)], lambda: self.live(server))
        threading.Event().wait(1.1)
        self.open(server, "live-calls/" + call, "DELETE").close()
        self.await_value(["dialled bob talked", "missed bob"], lambda: self.filed(server))
        self.assertEqual([call["name"] for call in self.get(server, "calls")["items"]], ["The bob", "The bob"])

        other = self.phone("ann")
        self.rings_from(other)
        self.await_value(1, lambda: len(self.live(server)))
        call = self.get(server, "live-calls")["calls"][0]["callId"]
        self.open(server, "live-calls/%s/answer" % call, "POST").close()
        other.reports("CALL_ESTABLISHED")
        self.open(server, "live-calls/" + call, "DELETE").close()
        self.await_value(3, lambda: len(self.filed(server)))

    def live(self, server):
        return [(call["direction"], call["state"], call["number"]) for call in self.get(server, "live-calls")["calls"]]

    def open(self, server, path, method="GET", body=None):
        request = urllib.request.Request("http://%s/api/v1/%s" % (server.http, path), method=method,
                                         data=None if body is None else json.dumps(body).encode(),
                                         headers={"Authorization": "Bearer " + server.token, "Content-Type": "application/json"})
        return urllib.request.urlopen(request, timeout=LIMIT)

    def test_a_killed_telephone_is_replaced_and_its_call_filed_once(self):
        server = self.serve_sip()
        self.control = CallController(self, server.switch, "alice")
        phone = self.phone("bob")
        self.control.answer_call(self.rings_from(phone))
        phone.reports("CALL_ESTABLISHED")
        threading.Event().wait(1.1)
        telephone = self.child_of(server)
        os.kill(telephone, signal.SIGKILL)
        self.is_filed(server, ["received bob talked"])
        server.logs("baresip is connected")
        again = self.phone("again")
        self.rings_from(again)
        again.command("hangup")
        self.is_filed(server, ["missed again", "received bob talked"])
        self.assertNotEqual(self.child_of(server), telephone)

    def test_a_telephone_that_hangs_is_ended_and_its_call_filed_approximately(self):
        server = self.serve_sip()
        self.control = CallController(self, server.switch, "alice")
        for hangs in (False, True):
            phone = self.phone("hangs" if hangs else "dies")
            call = self.rings_from(phone)
            self.control.answer_call(call)
            phone.reports("CALL_ESTABLISHED")
            threading.Event().wait(1.1)
            os.kill(self.child_of(server), signal.SIGSTOP)
            if not hangs:  # it dies while a command waits
                threading.Timer(0.3, os.kill, (self.child_of(server), signal.SIGKILL)).start()
            self.assertIn("deviceOutOfService", self.control.clear(call))
            server.logs("does not respond" if hangs else "baresip is connected")
            if hangs:
                self.control = CallController(self, server.switch, "alice")
            self.is_filed(server, ["received dies talked"] + ["received hangs talked~"] * hangs)

    def test_a_command_that_the_telephone_refuses_is_refused(self):
        listener = socket.create_server(("127.0.0.1", 0))
        self.addCleanup(listener.close)
        threading.Thread(target=self.refuse_commands, args=(listener,), daemon=True).start()
        gateway = self.gateway("sip:alice@h", "--baresip", "127.0.0.1:%d" % listener.getsockname()[1], "--listen", "127.0.0.1:0")
        self.control = CallController(self, gateway.address, "alice")
        self.await_value(["c1_i"], self.control.calls)
        for refused in (self.control.answer_call("c1_i"), self.control.clear("c1_i")):
            self.assertIn("<operation>generic</operation>", refused)
        for pattern in (r"is not understood: .*\*\*67@", r"refuses accept: \*\*\* .*\*\*67"):
            gateway.logs(pattern)
        self.assertEqual(gateway.stop(), 0)
        self.assertEqual(gateway.count("30123467|Mustermann"), 0, gateway.seen)

    @staticmethod
    def refuse_commands(listener):
        """A telephone with a call that rings. It has the commands that choose a call only."""
        peer, _ = listener.accept()

        def send(message):
            text = json.dumps(message).encode()
            peer.sendall(b"%d:%s," % (len(text), text))

        with peer, peer.makefile("rb") as commands:
            send({"peer": "Mustermann <sip:4930123467@h>"})
            send({"event": True, "type": "CALL_INCOMING", "accountaor": "sip:alice@h", "peeruri": "sip:bob@h", "id": "c1"})
            while (digits := commands.read(1)):
                while not digits.endswith(b":"):
                    digits += commands.read(1)
                command = json.loads(commands.read(int(digits[:-1]) + 1)[:-1])
                send({"response": True, "ok": command["command"] == "callfind", "token": command["token"],
                      "data": "call with Mustermann <sip:4930123467@h>"})

    def test_a_call_survives_a_killed_journal(self):
        gateway = self.gateway(self.account(), "--listen", "127.0.0.1:0")
        self.control = CallController(self, gateway.address, "alice")
        server = self.serve_at(gateway)
        phone, late = self.phone("bob"), self.phone("late")
        call = self.rings_from(phone)
        threading.Event().wait(0.3)  # a change after a quiet time is noted at once
        self.control.answer_call(call)
        self.await_value([("incoming", "connected", phone.number)], lambda: self.live(server))
        threading.Event().wait(0.03)
        server.stop(signal.SIGKILL)
        self.rings_from(late)
        server = self.serve_at(gateway)
        self.await_value(2, lambda: self.get(server, "status")["calls"])
        late.command("hangup")
        threading.Event().wait(1.1)
        phone.command("hangup")
        self.is_filed(server, ["missed late", "received bob talked"])

    def test_a_call_of_a_killed_gateway_ends_approximately(self):
        account = self.account()
        gateway = self.gateway(account, "--listen", "127.0.0.1:0")
        self.control = CallController(self, gateway.address, "alice")
        server = self.serve_at(gateway)
        phone = self.phone("bob")
        self.control.answer_call(self.rings_from(phone))
        phone.reports("CALL_ESTABLISHED")
        threading.Event().wait(1.1)
        telephone = self.child_of(gateway)
        gateway.stop(signal.SIGKILL)
        phone.reports("CALL_CLOSED")  # the telephone hangs up before it ends
        self.await_value(False, lambda: os.path.exists("/proc/%d" % telephone))
        gateway = self.gateway(account, "--listen", gateway.address)
        self.control = CallController(self, gateway.address, "alice")
        self.is_filed(server, ["received bob talked~"])

    def test_a_running_telephone_keeps_its_call_while_the_gateway_is_replaced(self):
        own = self.phone("alice")
        own.disconnect()  # it takes one client
        self.address = own.address
        options = ("--baresip", "127.0.0.1:%d" % own.control_port, "--listen")
        gateway = self.gateway(own.address, *options, "127.0.0.1:0")
        self.control = CallController(self, gateway.address, "alice")
        server = self.serve_at(gateway)
        phone = self.phone("bob")
        self.control.answer_call(self.rings_from(phone))
        phone.reports("CALL_ESTABLISHED")
        call = self.control.calls()
        for end in (signal.SIGKILL, signal.SIGTERM):
            gateway.stop(end)
            gateway = self.gateway(own.address, *options, gateway.address)
            self.control = CallController(self, gateway.address, "alice")
            self.assertEqual(self.control.calls(), call)
        self.await_value(True, lambda: self.get(server, "status")["switch"]["monitoring"])
        threading.Event().wait(1.1)
        phone.command("hangup")
        self.is_filed(server, ["received bob talked"])

    def test_calls_wait_for_the_registration_and_a_refusal_is_shown(self):
        registrar = SipRegistrar(self, "a%6Cice", "right")
        secret = self.file("secret", "wrong\n")
        os.chmod(secret, 0o600)
        account = self.file("account.toml", "[sip]\naccount = \"sip:a%%6Cice@127.0.0.1:%d\"\npassword-file = \"secret\"\n" % registrar.port)
        arguments = ("serve", "--data", self.data, "--listen", "127.0.0.1:0", "--sip", account)

        server = self.ready(self.start(*arguments))
        self.await_value({"state": "not-registered", "reason": "403 Forbidden"}, lambda: self.get(server, "status")["telephone"])
        self.assertFalse(self.get(server, "status")["callControl"])
        with self.assertRaises(urllib.error.HTTPError) as refused:
            self.open(server, "calls", "POST", {"number": "4711"})
        self.assertEqual(refused.exception.code, 503)
        self.assertIn("403 Forbidden", json.load(refused.exception)["error"]["message"])
        self.assertIn("deviceOutOfService", CallController(self, server.switch, "alice").make("4711"))
        server.stop()

        self.file("secret", "right\n")
        server = self.ready(self.start(*arguments))
        self.await_value("ready", lambda: self.get(server, "status")["telephone"]["state"])
        self.assertTrue(self.get(server, "status")["callControl"])
        server.stop()

        registrar.silent = True
        server = self.ready(self.start(*arguments))
        self.await_value("the registrar does not respond yet", lambda: self.get(server, "status")["telephone"]["reason"])
        server.logs("is not registered: the registrar does not respond yet")

    def test_the_password_is_in_no_output_argument_or_open_file(self):
        secret = "S3cret;with=signs"
        os.chmod(self.file("secret", secret + "\n"), 0o600)
        account = self.account("password-file = \"secret\"")
        gateway = self.gateway(account, "--listen", "127.0.0.1:0", "--log-level", "trace")
        with open("/proc/%d/cmdline" % self.child_of(gateway), "rb") as file:
            self.assertNotIn(secret.encode(), file.read())
        directory = os.path.join(self.data, "gateway", "sip")
        with open(os.path.join(directory, "accounts"), encoding="utf-8") as file:
            self.assertIn(secret, file.read())
        for path in (directory, *(os.path.join(directory, name) for name in os.listdir(directory))):
            self.assertEqual(stat.S_IMODE(os.stat(path).st_mode) & 0o077, 0, path)
        self.assertEqual(gateway.stop(), 0)
        self.assertEqual(gateway.count(secret), 0)
        self.assertFalse(os.path.exists(os.path.join(directory, "accounts")))

    def test_a_missing_telephone_is_named(self):
        done = subprocess.run([os.environ["CALLJOURNAL"], "sip", self.account(), "--data", self.data], capture_output=True,
                              text=True, timeout=LIMIT, env={**ENVIRONMENT, "PATH": "/nonexistent"})
        self.assertEqual(done.returncode, 1)
        self.assertIn("apt-get install --no-install-recommends baresip-core", done.stderr)

    def child_of(self, program):
        """The telephone; one that ends at its start, since a port is taken, is started again."""
        children = []

        def read():
            for task in os.listdir("/proc/%d/task" % program.process.pid):
                with open("/proc/%d/task/%s/children" % (program.process.pid, task), encoding="ascii") as file:
                    children.extend(file.read().split())
            return children != []

        self.await_value(True, read)
        return int(children[0])
