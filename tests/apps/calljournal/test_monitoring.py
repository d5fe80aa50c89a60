"""packaging/monitoring: alerts, dashboard, and the metrics of the real program that they name."""

import glob
import json
import os
import re
import shutil
import subprocess
import time
import unittest
import urllib.request

from harness import LIMIT, ProgramTest
from third_party_switch import ThirdPartySwitch

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../..")
MONITORING = os.path.join(ROOT, "packaging/monitoring")
PROMTOOL = shutil.which("promtool")
GIVEN_BY_PROMETHEUS = {"job", "instance"}


def text(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def expressions():
    """Every expression of the dashboard and of the alerts."""
    panels = json.loads(text(MONITORING + "/calljournal-dashboard.json"))["panels"]
    found = [target["expr"] for panel in panels for target in panel.get("targets", [])]
    for rule in re.split(r"\n +- alert: ", text(MONITORING + "/calljournal.rules.yml"))[1:]:
        found.append(re.search(r"expr: (.*?)\n +(?:for|labels):", rule, re.DOTALL).group(1))
    return found


class MonitoringTest(ProgramTest):
    def metrics(self, server):
        """The labels of each metric by its name."""
        request = urllib.request.Request("http://%s/metrics" % server.http, headers={"Authorization": "Bearer " + server.token})
        with urllib.request.urlopen(request, timeout=LIMIT) as response:
            self.page = response.read().decode()
        found = {}
        for name, labels in re.findall(r"^([a-z_]+)(?:{(.*)})? ", self.page, re.MULTILINE):
            found.setdefault(name, set()).update(re.findall(r'(\w+)="', labels))
        return found

    def serve_a_call(self):
        switch = ThirdPartySwitch(self)
        secret = self.file("secret", "x")
        server = self.serve(switch.address, config='[[webhook]]\nurl = "http://127.0.0.1:1/"\nevents = ["call.filed"]\nsecret-file = "%s"\n' % secret)
        switch.accept_monitor()
        switch.misses("1", "N<4711>Ann")
        server.logs("missed call from Ann")
        self.get(server, "calls")
        return server

    def test_every_metric_of_alerts_and_dashboard_exists_with_its_labels(self):
        metrics = self.metrics(self.serve_a_call())
        named = set()
        for expression in expressions():
            for name, selector in re.findall(r"\b((?:calljournal|process)_[a-z_]+)(?:{(.*?)})?", expression):
                named.add(name)
                self.assertIn(name, metrics, expression)
                self.assertLessEqual(set(re.findall(r"(\w+)=~?\"", selector)), metrics[name] | GIVEN_BY_PROMETHEUS, expression)
        self.assertGreater(len(named), 20)

    def test_every_metric_is_described_and_no_other(self):
        server = self.serve_a_call()
        with self.assertRaises(urllib.error.HTTPError):
            self.get(server, "calls/4711/%2e?x=y")
        self.metrics(server)
        families = set(re.findall(r"^# TYPE (\S+)", self.page, re.MULTILINE))
        section = text(ROOT + "/docs/http-api.md").split("\n## Metrics\n")[1]
        self.assertEqual(set(re.findall(r"`((?:calljournal|process)_[a-z_]+)", section)), families)
        # The labels have routes, never paths.
        self.assertIn('calljournal_http_requests_total{method="GET",route="/api/v1/calls",status="2xx"} 1', self.page)
        self.assertNotIn("4711", self.page)
        for name in ("calljournal_call_filing_seconds_count", "process_cpu_seconds_total", "process_resident_memory_bytes", "process_open_fds"):
            self.assertGreater(float(re.search(r"^%s(?:{.*})? (\S+)" % name, self.page, re.MULTILINE).group(1)), 0, name)
        start = float(re.search(r"^process_start_time_seconds (\S+)", self.page, re.MULTILINE).group(1))
        self.assertLess(abs(time.time() - start), 2 * LIMIT)

    @unittest.skipUnless(PROMTOOL, "promtool is missing (tools/setup monitoring)")
    def test_promtool_accepts_the_alerts_and_their_tests(self):
        for command in (["check", "config", "--syntax-only", "prometheus.yml"], ["check", "rules", "calljournal.rules.yml"],
                        ["test", "rules", *glob.glob("*.test.yml", root_dir=MONITORING)]):
            done = subprocess.run([PROMTOOL, *command], cwd=MONITORING, capture_output=True, text=True, timeout=LIMIT)
            self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
