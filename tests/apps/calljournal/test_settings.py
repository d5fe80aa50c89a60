"""Settings from the command line: their effects on the journal and on the requests to the switch."""

import json
import os

from harness import IMPATIENT, ProgramTest

CALLS = """
call ann from 4711 "Ann" ; ring ann ; giveup ann
call bob from 4712 "Bob" ; ring bob ; answer bob ; hangup bob by caller
"""
QUIET = "wait 1ms\n"


class SettingsTest(ProgramTest):
    def settings(self, *arguments):
        return self.done("settings", *arguments)

    def set(self, key, value):
        self.assertEqual(self.settings(key, value), "%s is set to %s\n" % (key, value))

    def refuses(self, *arguments):
        return self.refused("settings", *arguments)

    def totals(self):
        return [self.list(name)["total"] for name in ("missed", "received")]

    def asks(self, simulator, request, *parts):
        """The next request of that name that the switch receives; it has these parts."""
        message = simulator.logs(r"from client \d+, \d+ %s: " % request).string
        self.assertEqual([part for part in parts if part not in message], [])
        return message

    def test_keys_are_listed_read_and_written_and_refusals_have_reasons(self):
        self.serve("127.0.0.1:1", "--set", "sntp-tz-offset=3600")
        rows = [line.split() for line in self.settings().splitlines()]
        self.assertEqual((rows[0], rows[-1][-1]), (["SETTING", "OF", "VALUE"], "setting"))
        for row in (["call-log-enabled", "journal", "true"], ["software-type", "phone", "Norlith", "Qorvex"], ["bt-hw-state", "phone"]):
            self.assertIn(row, [each[:len(row)] for each in rows])
        keys = [row[0] for row in rows[1:-1]]
        self.assertEqual(keys, sorted(keys[:4]) + sorted(keys[4:]))
        self.set("missed-logging", "1")
        self.assertEqual(self.settings("missed-logging"), "1\n")
        self.set("bt-hw-state", "")
        self.set("sntp-tz-offset", "-3600")
        everything = json.loads(self.settings("--json"))
        self.assertEqual([everything[key] for key in ("missed-logging", "bt-hw-state", "sntp-tz-offset")], ["1", "", "-3600"])
        self.assertNotIn("voice-mail-e164", everything)

        self.set("missed-logging", "1")  # which it is
        reason = "Data invalid for missed-logging: it takes 0 or 1"
        status, output, _ = self.run_program("settings", "--data", self.data, "--json", "missed-logging", "2")
        self.assertEqual((status, json.loads(output)), (1, {"rejected": {"missed-logging": {"code": 4, "text": reason}}}))
        for given, reason in (
                ("missed-logging perhaps", "Data invalid for missed-logging: it takes 0 or 1"),
                ("server-based-features yes", "The value for server-based-features is not accepted: it takes true or false"),
                ("bt-hw-state true", "it takes on or off"), ("sntp-tz-offset 1h", "it takes a number"),
                ("clear-calllog no", "it takes true or false"), ("call-log-enabled perhaps", "call-log-enabled"),
                ("software-type sip", "it takes Norlith Qorvex or Norlith SIP"), ("disable-access-calllog 3", "it takes 0, 1 or 2"),
                ("system-identifer 2", "there is no setting system-identifer"), ("voice-mail-e164", "voice-mail-e164 has no value"),
                ("system-identifer", "`%s settings --data" % os.environ["CALLJOURNAL"]), ("reg-number " + "1" * 5000, "longer than 4096 bytes")):
            self.assertIn(reason, self.refuses(*given.split()))

    def test_switching_the_journal_off_empties_it_for_good(self):
        simulator, server = self.simulate_and_serve(CALLS, "received call from Bob")
        self.assertEqual(self.totals(), [1, 1])
        self.set("call-log-enabled", "false")
        self.assertEqual(self.totals(), [0, 0])
        server.stop()
        self.serve(simulator.address)
        self.set("call-log-enabled", "false")
        self.assertEqual(self.totals(), [0, 0])
        self.set("call-log-enabled", "true")
        self.assertEqual(self.totals(), [0, 0])

    def test_settings_change_the_requests_to_the_switch(self):
        simulator, address = self.simulate(QUIET, "--log-messages")
        server = self.serve(address)
        self.asks(simulator, "MonitorStart", "<deviceObject>2001<", "<held>true</held>")
        self.set("disable-access-calllog", "1")
        self.asks(simulator, "MonitorStop")
        self.set("bt-hw-state", "on")
        self.assertNotRegex(self.asks(simulator, "MonitorStart"), "2001|requestedMonitorFilter")
        self.set("bt-hw-state", "off")
        self.asks(simulator, "MonitorStop")
        self.set("disable-access-calllog", "0")
        self.asks(simulator, "MonitorStart", "<deviceObject>2001<")

        # Members that the filter does not set follow their group: held calls are reported, call information is not.
        for identifier, calls, information, logged in (("2", "false", "true", "readLocalMgmtData: registered change of cross filter"),
                                                       ("3", "true", "false", "m_useCSTACallControlEvents == true")):
            self.set("system-identifier", identifier)
            self.asks(simulator, "ChangeMonitorFilter", "<held>%s<" % calls, "<retrieved>%s<" % calls,
                      "<serviceInitiated>%s<" % calls, "<callInformation>%s<" % information)
            server.logs(r"readLocalMgmtData\(\):" + logged)

        # A value of an earlier run has its effect at start, and again when it is set again.
        self.set("disable-access-calllog", "2")
        self.asks(simulator, "MonitorStop")
        server.stop()
        server = self.serve(address)
        server.logs(r"stopQorvexEvents\(\):OK")
        self.asks(simulator, "SystemRegister")
        self.set("disable-access-calllog", "2")
        server.logs("Events already stopped")
        self.assertEqual(simulator.count("MonitorStart.*>2001<"), 2)

    def misbehave(self, how, logged, logged_for_change=None):
        """A switch that responds wrongly: the journal logs it, continues, and succeeds when the switch is well again."""
        requests = ["MonitorStop", "ChangeMonitorFilter"]
        if how != "hang-up":  # every connection would end at once
            requests += ["SystemRegister", "RequestSystemStatus", "GetSwitchingFunctionDevices"]
        simulator, address = self.simulate(QUIET, *["--answer=%s=%s" % (request, how) for request in requests])
        server = self.serve(address, config=IMPATIENT)
        server.logs("monitor M1 of localDeviceID is on")
        self.set("system-identifier", "2")
        server.logs(r"readLocalMgmtData\(\):" + (logged_for_change or logged))
        if how == "hang-up":
            server.logs("monitor M1 of localDeviceID is on")
        self.set("disable-access-calllog", "1")
        server.logs(r"stopQorvexEvents\(\):" + logged)
        if how == "hang-up":
            server.logs("connected to the switch at %s again" % address)
        simulator.stop()
        server.logs("the switch at %s is lost" % address)
        self.set("disable-access-calllog", "2")
        server.logs(r"stopQorvexEvents\(\):OK")

        simulator, _ = self.simulate(QUIET, "--log-messages", "--answer", "MonitorStart=" + how, listen=address)
        self.asks(simulator, "SystemRegister")
        self.set("disable-access-calllog", "0")
        server.logs(r"startQorvexEvents\(\):" + logged)
        simulator.stop()
        simulator, _ = self.simulate(CALLS, listen=address)
        server.logs("connected to the switch at %s again" % address)
        self.set("system-identifier", "0")
        self.set("disable-access-calllog", "1")
        self.set("disable-access-calllog", "0")
        server.logs("received call from Bob")
        self.assertEqual(self.list("missed")["total"], 1)

    def test_a_switch_that_refuses_is_survived(self):
        self.misbehave("refuse", "Returned an error response")

    def test_a_switch_that_responds_with_something_else_is_survived(self):
        self.misbehave("wrong", "Returned NULL response")

    def test_a_switch_that_does_not_respond_is_survived(self):
        self.misbehave("never", "Returned ERROR", "changeMonitorFilterReq returned ERROR")

    def test_a_switch_that_hangs_up_is_survived(self):
        self.misbehave("hang-up", "Returned ERROR", "changeMonitorFilterReq returned ERROR")
