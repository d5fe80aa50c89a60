"""What `tools/package --try` does: the packages in a bare Debian 12."""

import fcntl
import gzip
import json
import os
import re
import shutil
import signal
import socket
import sqlite3
import struct
import subprocess
import sys
import threading
import time
import urllib.request
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
LIMIT = 30.0
DATA = "var/lib/calljournal"
PORT = 4250
CALLS = 'call a from 4711 "Ann Example" ; ring a ; giveup a\n'


class Failure(Exception):
    pass


def run(*command, **options):
    done = subprocess.run([str(each) for each in command], check=False, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          **options)
    if done.returncode != 0:
        raise Failure("%s: status %d:\n%s" % (" ".join(str(each) for each in command), done.returncode, done.stdout[-3000:]))
    return done.stdout


def environment():
    kept = {name: os.environ[name] for name in os.environ if "proxy" in name.lower()}
    return {"PATH": "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin", "HOME": "/root", "LANG": "C.UTF-8",
            "DEBIAN_FRONTEND": "noninteractive", **kept}


def inside(base, command):
    """Runs a command of the shell in the base, with mounts and processes of its own and the network of the machine."""
    begin = "mount -t proc proc %s/proc && mount --rbind /dev %s/dev && exec chroot %s /bin/sh -ec '%s'" % (base, base, base, command)
    return run("unshare", "--mount", "--pid", "--fork", "--kill-child", "sh", "-c", begin, env=environment())


def make_base(base):
    found = [*Path("/etc/apt/sources.list.d").glob("*.sources"), *Path("/etc/apt/sources.list.d").glob("*.list")]
    run("mmdebstrap", "--quiet", "--variant=minbase", "bookworm", base, *(found or ["/etc/apt/sources.list"]))
    shutil.copy("/etc/resolv.conf", base / "etc/resolv.conf")


def start_network():
    """The loopback interface of a network of our own."""
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as control:
        siocgifflags, siocsifflags, up = 0x8913, 0x8914, 1
        flags = struct.unpack("16sh14x", fcntl.ioctl(control, siocgifflags, struct.pack("16sh14x", b"lo", 0)))[1]
        fcntl.ioctl(control, siocsifflags, struct.pack("16sh14x", b"lo", flags | up))


class Service:
    """The service as its unit starts it: its command, its user, a service manager's socket."""

    def __init__(self, base):
        self.base = base
        unit = (base / "lib/systemd/system/calljournal.service").read_text(encoding="utf-8")
        settings = dict(line.split("=", 1) for line in unit.splitlines() if "=" in line and not line.startswith("#"))
        notify = base / "run/notify"
        notify.unlink(missing_ok=True)
        self.manager = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.manager.bind(str(notify))
        self.manager.settimeout(LIMIT)
        notify.chmod(0o666)
        self.log = open(base / "root/serve.log", "a", encoding="utf-8")
        self.process = subprocess.Popen(
            ["chroot", "--userspec=%s:%s" % (settings["User"], settings["Group"]), base, *settings["ExecStart"].split()],
            stdout=self.log, stderr=self.log,
            env={**environment(), "HOME": "/", "NOTIFY_SOCKET": "/run/notify", "WATCHDOG_USEC": "1000000"})
        self.expect("READY=1", "WATCHDOG=1")

    def expect(self, *states):
        """Reports come in this order; those of the watchdog may be between them."""
        for state in states:
            while True:
                try:
                    found = self.manager.recv(4096).decode().split("\n")[0]
                except TimeoutError as error:
                    raise Failure("no report %s; the service's log:\n%s" %
                                  (state, (self.base / "root/serve.log").read_text(encoding="utf-8")[-2000:])) from error
                if found == state:
                    break
                if found != "WATCHDOG=1":
                    raise Failure("the service reports %s, not %s" % (found, state))

    def calls(self):
        """The numbers of the calls, over HTTP."""
        token = (self.base / DATA / "api-token").read_text(encoding="ascii").strip()
        request = urllib.request.Request("http://127.0.0.1:8080/api/v1/calls", headers={"Authorization": "Bearer " + token})
        opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        with opener.open(request, timeout=LIMIT) as response:
            return [each["number"] for each in json.load(response)["items"]]

    def await_calls(self, numbers):
        end = time.monotonic() + LIMIT
        while (found := self.calls()) != numbers:
            if time.monotonic() > end:
                raise Failure("the calls are %s, not %s; the service's log:\n%s" %
                              (found, numbers, (self.base / "root/serve.log").read_text(encoding="utf-8")[-2000:]))
            threading.Event().wait(0.1)

    def reload(self):
        self.process.send_signal(signal.SIGHUP)
        self.expect("RELOADING=1", "READY=1")

    def end(self):
        self.process.terminate()
        self.expect("STOPPING=1")
        if self.process.wait(LIMIT) != 0:
            raise Failure("the service ends with status %d" % self.process.returncode)
        self.manager.close()


def file_a_call(base):
    (base / "tmp/calls.txt").write_text(CALLS, encoding="utf-8")
    configuration = base / "etc/calljournal/calljournal.toml"
    text = configuration.read_text(encoding="utf-8")
    configuration.write_text(text.replace("# port = 4242", "port = %d" % PORT), encoding="utf-8")
    switch = subprocess.Popen(["chroot", "--userspec=calljournal:calljournal", base, "calljournal", "switch", "--data", "/tmp", "--listen",
                               "127.0.0.1:%d" % PORT, "--scenario", "/tmp/calls.txt"], env=environment(), stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL)
    try:
        service = Service(base)
        service.await_calls(["4711"])
        check_page()
        call_out(base)
        listed = run("chroot", base, "calljournal", "list", "missed", "--data", "/" + DATA, env=environment())
        if "Ann Example" not in listed:
            raise Failure("list prints:\n" + listed)
        service.reload()
        service.end()
    finally:
        switch.terminate()
        switch.wait()
    print("with one line of configuration, a call is filed and shown; READY, WATCHDOG, RELOADING and STOPPING are reported", flush=True)


def answer_of(path):
    """The content type and the body."""
    opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
    with opener.open("http://127.0.0.1:8080" + path, timeout=LIMIT) as response:
        return response.headers.get_content_type(), response.read().decode()


def check_page():
    kind, page = answer_of("/")
    script = re.search(r'<script[^>]* src="\.(/assets/[^"]+\.js)"', page)
    if kind != "text/html" or not script:
        raise Failure("the page is %s:\n%s" % (kind, page[:1000]))
    kind, program = answer_of(script.group(1))
    if kind != "text/javascript" or len(program) < 10000:
        raise Failure("the script of the page is %s with %d characters" % (kind, len(program)))
    print("the page and its script are served", flush=True)


def call_out(base):
    """The switch places a call; an emergency number is not called without a question."""
    for number, status, text in (("4713", 0, "calling 4713"), ("112", 1, "112 reaches an emergency service and is not called")):
        done = subprocess.run(["chroot", str(base), "calljournal", "call", number, "--data", "/" + DATA], check=False, text=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=environment())
        if done.returncode != status or text not in done.stdout:
            raise Failure("call %s ends with %d and prints %s" % (number, done.returncode, done.stdout))
    print("a call is placed, and one to an emergency service refused", flush=True)


def check_manual(base):
    for name in ("calljournal", "calljournal-serve"):
        with gzip.open(base / ("usr/share/man/man1/%s.1.gz" % name), "rt", encoding="utf-8") as page:
            if ".Dt %s 1\n" % name.upper() not in page.read():
                raise Failure("the manual page of %s is none" % name)
    print("the manual pages are installed", flush=True)


def served_calls(base, numbers):
    service = Service(base)
    service.await_calls(numbers)
    service.end()


def older_data(base):
    """A data directory of a program without packages: the first form of the database."""
    shutil.rmtree(base / DATA)
    (base / DATA).mkdir(mode=0o700)
    with sqlite3.connect(base / DATA / "journal.db") as database:
        database.executescript((ROOT / "tests/host/database/versions/1.sql").read_text(encoding="utf-8"))
        database.execute("PRAGMA user_version = 1")
    run("chroot", base, "chown", "-R", "calljournal:calljournal", "/" + DATA)


def without_network(base):
    """The steps that need no network; in namespaces of their own."""
    start_network()
    run("mount", "-t", "proc", "proc", base / "proc")
    run("mount", "--rbind", "/dev", base / "dev")
    check_manual(base)
    file_a_call(base)
    dpkg = ["chroot", base, "dpkg"]
    before = run(*dpkg, "-s", "calljournal", env=environment()).split("\nVersion: ")[1].split()[0]
    run("chroot", base, "sh", "-c", "dpkg -i /root/new/calljournal_*.deb /root/new/libjournalservice0_*.deb", env=environment())
    after = run(*dpkg, "-s", "calljournal", env=environment()).split("\nVersion: ")[1].split()[0]
    served_calls(base, ["4711"])
    print("the upgrade from %s to %s keeps the call and the configuration" % (before, after), flush=True)
    older_data(base)
    served_calls(base, ["+49 30 4711", "+49 30 4711", "4712", "4712", "4712"])
    print("the data of an older program is taken over", flush=True)
    run(*dpkg, "--remove", "calljournal", env=environment())
    if not (base / DATA / "journal.db").exists() or not (base / "etc/calljournal/calljournal.toml").exists():
        raise Failure("a removal has deleted data or configuration")
    run(*dpkg, "--purge", "calljournal", env=environment())
    left = [each for each in ("etc/calljournal", DATA, "var/log/calljournal", "usr/share/calljournal") if (base / each).exists()]
    if left:
        raise Failure("after the purge there is %s" % left)
    print("a removal keeps the data and the configuration, a purge leaves nothing", flush=True)


def build_example(base):
    inside(base, "apt-get -qq install --no-install-recommends g++ cmake make pkgconf /root/new/libjournalservice*.deb")
    example = "/usr/share/doc/libjournalservice-dev/examples/framework"
    built = {"CMake": "cmake -S %s -B /tmp/build && cmake --build /tmp/build && /tmp/build/framework" % example,
             "pkg-config": "g++ %s/*.cpp $(pkg-config --cflags --libs journalservice) -rdynamic -o /tmp/linked && /tmp/linked" % example}
    for name, command in built.items():
        if "missed: +4930123456 Ann Miller" not in (printed := inside(base, command)):
            raise Failure("the example built by %s prints:\n%s" % (name, printed))
        print("the example is built by %s and runs" % name, flush=True)


def try_packages(base, lower, packages, write_index):
    """Returns the exit status. `lower` and `packages` are the files of two versions; `write_index` makes their directory a package
    source."""
    try:
        make_base(base)
        for name, files in (("lower", lower), ("new", packages)):
            (base / "root" / name).mkdir()
            write_index([Path(shutil.copy(each, base / "root" / name)) for each in files])
        # Readable for the user of apt that fetches.
        (base / "root").chmod(0o755)
        source = base / "etc/apt/sources.list.d/calljournal.list"
        source.write_text("deb [trusted=yes] file:/root/lower ./\n", encoding="utf-8")
        inside(base, "apt-get -qq update && cd /root/lower && apt-get -qq install --no-install-recommends ./calljournal_*.deb")
        print("apt installs calljournal in a bare Debian 12, and the library from the same directory", flush=True)
        source.write_text("deb [trusted=yes] file:/root/new ./\n", encoding="utf-8")
        planned = inside(base, "apt-get -qq update && apt-get -s upgrade")
        if "Inst calljournal [" not in planned or "Inst libjournalservice0 [" not in planned:
            raise Failure("apt upgrade would not upgrade to the packages of the source:\n" + planned)
        done = subprocess.run(["unshare", "--mount", "--pid", "--net", "--fork", "--kill-child", sys.executable, "-B", __file__, base],
                              check=False)
        if done.returncode != 0:
            return 1
        build_example(base)
        return 0
    except (Failure, OSError) as failure:
        print("package: %s" % failure, file=sys.stderr)
        return 1


if __name__ == "__main__":
    try:
        without_network(Path(sys.argv[1]))
    except (Failure, OSError) as failure:
        print("package: %s" % failure, file=sys.stderr)
        sys.exit(1)
