"""The benchmarks that tools/bench runs: the command of each, and the figures in what it prints."""

from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
BASELINE, PRODUCT = "baseline", "program"
SHORT_CALLS = 200
LISTS = "missed,dialled,forwarded,received"


class Load:
    """Calls over TCP from a switch to the notification of an observer."""

    def __init__(self, name, options, has_baseline=True, figures=("rate", "p50", "p99", "p99.9", "processor"), calls=1000, in_short=False,
                 without=None):
        """`without`: the benchmark of the same calls without further clients, which runs before this one."""
        self.name, self.options, self.has_baseline, self.in_short = name, options, has_baseline, in_short
        self.chosen, self.calls, self.without = figures, calls, without
        self.side, self.rates = None, {}

    def command(self, build, side, run):
        self.side = side
        server = ["journal_baseline"] if side == BASELINE else ["calljournal", "serve", "--listen", "127.0.0.1:0"]
        calls = ["--calls", SHORT_CALLS, "--fill", SHORT_CALLS] if run.short else ["--calls", self.calls]
        return [run.tools / "bin/load_generator", "--data", run.data / "load", *calls, *self.options, "--", build / "bin" / server[0], *server[1:]]

    def figures(self, printed):
        values = {
            "rate": ("calls/s", lambda: printed["calls-per-second"]),
            "p50": ("us", lambda: printed["latency-us"]["p50"]),
            "p99": ("us", lambda: printed["latency-us"]["p99"]),
            "p99.9": ("us", lambda: printed["latency-us"]["p99.9"]),
            "processor": ("us/call", lambda: printed["server-processor-us-per-call"]),
        }
        for name in self.chosen:
            unit, value = values[name]
            yield "%s: %s" % (self.name, name), unit, value() if printed else None
        rate = self.rates[self.side] = values["rate"][1]() if printed else None
        if self.without:
            other = self.without.rates.get(self.side)
            yield self.name + ": share of the rate without them", "", rate / other if rate and other else None


class Functions:
    """The benchmarks of single functions; one row each."""

    name, has_baseline, in_short = "functions", False, True

    def command(self, build, side, run):
        seconds = 0.01 if run.short else 0.5
        return [build / "bin/function_benchmark", "--benchmark_format=json", "--benchmark_min_time=%s" % seconds]

    def figures(self, printed):
        for each in printed["benchmarks"] if printed else ():
            if "items_per_second" in each:
                yield "function " + each["name"], "events/s", each["items_per_second"]
            else:
                scale = {"ns": 1e-3, "us": 1.0, "ms": 1e3}[each["time_unit"]]
                yield "function " + each["name"], "us", each["cpu_time"] * scale


class Memory:
    """The memory of a line."""

    has_baseline, in_short = False, True

    def __init__(self, name, options, short):
        self.name, self.options, self.short = name, options, short

    def command(self, build, side, run):
        return [build / "bin/memory_benchmark", "--data", run.data / "memory", *(self.short if run.short else self.options)]

    def figures(self, printed):
        yield self.name, "KiB", printed["kib-of-a-line"] if printed else None


class Server:
    """The start of a server that has four full lists, and the reads of one client."""

    name, has_baseline, in_short = "start and reads", False, True

    def command(self, build, side, run):
        server, data = build / "bin/calljournal", run.data / ("start-" + side)
        if not (data / "api-token").exists():
            fill = ["--fill", 100] if run.short else []
            return ["/bin/sh", "-c", '"$0" --data "$2" --calls 1 %s --kind %s -- "$3" serve --listen 127.0.0.1:0 '
                    '--set server-based-features=true > /dev/null && exec "$1" --data "$2" -- "$3" serve'
                    % (" ".join(map(str, fill)), LISTS), run.tools / "bin/load_generator", run.tools / "bin/server_benchmark", data, server]
        return [run.tools / "bin/server_benchmark", "--data", data, "--", server, "serve"]

    def figures(self, printed):
        yield "start: listening", "ms", printed["listening-ms"] if printed else None
        yield "start: first list", "ms", printed["first-list-ms"] if printed else None
        yield "HTTP: list of 1,000 entries with one call each", "ms", printed["list-ms"] if printed else None
        yield "HTTP: the same after a change", "ms", printed["changed-list-ms"] if printed else None
        yield "HTTP: page of 50 calls of the history", "ms", printed["page-ms"] if printed else None


class History:
    """Pages, searches and statistics of a long history, and the filing into it."""

    name, has_baseline, in_short = "history", False, True
    CALLS, SHORT = ["--calls", 200000], ["--calls", 1000, "--parties", 12]
    ROWS = {"page ": "newest page", "page list=missed": "page of a list", "page search=muller": "search for a name",
            "page search=4930": "search for a part of numbers", "page search=no such name": "search that finds nothing",
            "statistics of a year": "statistics of a year", "fileCall": "filing a call"}

    def command(self, build, side, run):
        data = run.data / ("history-" + side)
        chosen = "^(%s)$" % "|".join([*self.ROWS, "fileCall.*"])
        return ["/bin/sh", "-c", 'test -f "$1/journal.db" || "$0" "$1" %s > /dev/null && exec "$2" "$1" "$3" --benchmark_format=json '
                "--benchmark_min_time=%s" % (" ".join(map(str, self.SHORT if run.short else self.CALLS)), 0.01 if run.short else 0.3),
                ROOT / "tools/make-history", data, build / "bin/history_benchmark", "--benchmark_filter=" + chosen]

    def figures(self, printed):
        for each in printed["benchmarks"] if printed else ():
            yield "long history: " + self.ROWS[each["name"].split("/")[0]], "ms", each["real_time"]


NEW, REPEATED, TEXT_IDS, MANY = [], ["--repeat"], ["--text-ids"], ["--in-flight", 64]
OPEN = ["--rate", 500, "--in-flight", 2000]
CLIENTS, CROWD = ["--observers", 100, "--streams", 100], ", 100 remote observers and 100 event streams"
STOPPED, STOPPED_NAME = ["--stopped-observers", 1, "--stopped-streams", 1], ", a stopped remote observer and a stopped event stream"
MISSED = [*MANY, "--kind", "missed"]


def with_clients(without, options, **more):
    """The calls of a benchmark, alone, then with a crowd of clients and with clients that never read."""
    given = dict(has_baseline=False, figures=without.chosen, calls=without.calls, without=without)
    return [without, Load(without.name + CROWD, [*options, *CLIENTS], **given, **more),
            Load(without.name + STOPPED_NAME, [*options, *STOPPED], **given)]


ALL = [
    Load("new callers, one at a time", NEW, calls=3000, in_short=True),
    Load("repeated callers, one at a time", REPEATED, in_short=True),
    Load("new callers, text ids, one at a time", TEXT_IDS),
    Load("repeated callers, text ids, one at a time", [*REPEATED, *TEXT_IDS]),
    *with_clients(Load("new callers, 64 in flight", MANY, figures=("rate", "processor")), MANY),
    Load("repeated callers, 64 in flight", [*REPEATED, *MANY], figures=("rate", "processor")),
    Load("new callers, text ids, 64 in flight", [*TEXT_IDS, *MANY], figures=("rate", "processor"), in_short=True),
    Load("repeated callers, text ids, 64 in flight", [*REPEATED, *TEXT_IDS, *MANY], figures=("rate", "processor")),
    *with_clients(Load("missed calls, 64 in flight", MISSED, has_baseline=False, figures=("rate", "processor")), MISSED),
    *with_clients(Load("500 calls/s", OPEN, has_baseline=False, figures=("rate", "p50", "p99"), calls=2000, in_short=True), OPEN, in_short=True),
    Load("500 calls/s, to an event stream", [*OPEN, "--stream"], has_baseline=False, figures=("rate", "p50", "p99"), calls=2000),
    Memory("an idle line", ["--lines", 1000], ["--lines", 20]),
    Memory("a line with four full lists", ["--entries", 1000], ["--entries", 50]),
    Server(),
    History(),
    Functions(),
]
