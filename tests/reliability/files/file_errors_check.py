"""Lets the files of the program fail, one fault at a time: a full disk after so many bytes, a directory or a file without
permission, a directory where a file is to be.

A command that fails ends with status 1 and a reason, leaves every good file as it was and no file half written, and the same
command succeeds when the fault has ended.
"""

import contextlib
import os
import random
import re
import shutil
import sqlite3
import subprocess
import threading

import rounds
from harness import ENVIRONMENT, LIMIT
from journal import Api, Refused, Round

HERE = os.path.dirname(os.path.abspath(__file__))
OLD_TABLES = os.path.join(HERE, "../../host/database/versions/3.sql")
SIZES = (0, 1, 30, 512, 4096, 8192, 20000, 40960, 65536, 100000, 150000)  # the bytes that fit into a file of a full disk
CALLS = 60
# Root may write every file; without these rights it may not.
AS_USER = ("setpriv", "--bounding-set=-dac_override,-dac_read_search") if os.geteuid() == 0 else ()
RECORDS = "start,number,name,list,duration\n" + "".join(
    "2026-11-21T06:%02d:05Z,%d,Name %d,%s,%d\n" % (each % 60, 4000 + each, each, "received" if each % 2 else "dialled", each + 1)
    for each in range(CALLS))
CONTACTS = "".join("BEGIN:VCARD\r\nVERSION:3.0\r\nN:Name %d;Ann;;;\r\nTEL;TYPE=WORK:%d\r\nEND:VCARD\r\n" % (each, 4000 + each)
                   for each in range(CALLS))
# What a running or killed server keeps beside its data.
OF_THE_SERVER = re.compile(r"journal\.db-(wal|shm)|calljournal\.sock|api-address")


class Place(Round):
    """The directories of one round: `data` has a journal of CALLS calls, `files` what the commands read and write."""

    template, making = None, threading.Lock()

    def __init__(self, dice):
        super().__init__()
        self.dice = dice
        self.files = self.data + ".files"
        os.mkdir(self.files)
        self.callback(shutil.rmtree, self.files, ignore_errors=True)
        for name, text in (("calls.csv", RECORDS), ("contacts.vcf", CONTACTS)):
            with open(self.file(name), "w", encoding="ascii", newline="") as file:
                file.write(text)

    def file(self, name):
        return os.path.join(self.files, name)

    def inside(self, name):
        return os.path.join(self.data, name)

    def fill(self):
        """A copy of one journal that is made first, with the database in one file."""
        with Place.making:
            if not Place.template:
                with Round() as first:
                    first.start()
                    for command in (("import", self.file("calls.csv")), ("contacts", "import", self.file("contacts.vcf"))):
                        done = run(first.data, *command)
                        assert done.returncode == 0, done.stderr
                    run(first.data, "backup", self.file("template"))
                    with open(self.file("template"), "rb") as file:
                        Place.template = file.read()
        with open(self.inside("journal.db"), "wb") as file:
            file.write(Place.template)
        return self

    def state(self):
        """The content of every file; that of a database as its calls."""
        found = {}
        for directory in (self.data, self.files):
            for name in sorted(os.listdir(directory)):
                path = os.path.join(directory, name)
                if not OF_THE_SERVER.fullmatch(name) and not os.path.isdir(path):
                    with open(path, "rb") as file:
                        found[path] = stored_calls(path) if name == "journal.db" else file.read()
        return found


def stored_calls(path):
    """The calls of a database and its version; a text if it is none."""
    with contextlib.closing(sqlite3.connect("file:%s?mode=ro" % path, uri=True)) as database:
        try:
            assert database.execute("PRAGMA quick_check").fetchone() == ("ok",)
            version = database.execute("PRAGMA user_version").fetchone()[0]
            return version, database.execute("SELECT * FROM %s ORDER BY 1" % ("call" if version > 3 else "call_item")).fetchall()
        except sqlite3.Error as error:
            return str(error)


def limited(size):
    return () if size is None else ("prlimit", "--fsize=%d:%d" % (size, size))


def run(data, *arguments, size=None, stdout=subprocess.PIPE):
    """Runs a command; no file can get longer than `size`."""
    return subprocess.run([*AS_USER, *limited(size), os.environ["CALLJOURNAL"], *arguments, "--data", data], stdin=subprocess.DEVNULL,
                          stdout=stdout, stderr=subprocess.PIPE, text=True, errors="replace", timeout=LIMIT, env=ENVIRONMENT, check=False)


# The faults: each makes one in the directory or file `path`, and returns what ends it.

def not_writable(path):
    os.chmod(os.path.dirname(path), 0o500)
    return lambda: os.chmod(os.path.dirname(path), 0o700)


def not_readable(path):
    if not os.path.exists(path):
        with open(path, "w", encoding="ascii") as file:
            file.write("a" * 64)
    os.chmod(path, 0)

    def end():
        with contextlib.suppress(FileNotFoundError):  # the server removes some of its files
            os.chmod(path, 0o600)
    return end


def directory(path):
    """A directory with a file in it instead of the file, which `rename` cannot replace."""
    kept = path + ".kept"
    if os.path.exists(path):
        os.rename(path, kept)
    os.makedirs(os.path.join(path, "inside"))

    def end():
        shutil.rmtree(path)
        if os.path.exists(kept):
            os.rename(kept, path)
    return end


def full(_):
    """A disk that is full at a size that the round selects."""
    return lambda: None


# The commands: each is given the place, its fault and what ends the fault, and returns the faults of the program.

def judged(place, command, fault, path):
    """The faults of a command that may fail, and must succeed when its fault has ended."""
    before = place.state()
    end = fault(path)
    done = run(place.data, *command, size=place.dice.choice(SIZES) if fault is full else None)
    end()
    if done.returncode == 0:
        if fault is not full:
            yield "status 0 in spite of the fault"
        return
    if done.returncode not in (1, 2) or not re.search(r"calljournal.*: \S", done.stderr):
        yield "status %d and on standard error: %s" % (done.returncode, done.stderr)
    yield from changed(before, place.state())
    done = run(place.data, *command)
    if done.returncode != 0:
        yield "status %d after the fault: %s" % (done.returncode, done.stderr)


def changed(before, after):
    for path in sorted(set(before) | set(after)):
        if before.get(path) != after.get(path):
            yield "%s is %s" % (os.path.basename(path), "gone" if path not in after else "left over" if path not in before else "changed")


def backup(place, fault):
    place.fill()
    target = place.file("copy.db")
    forced = place.dice.random() < 0.5
    if forced:
        with open(target, "wb") as file:
            file.write(Place.template)
    yield from judged(place, ("backup", target, "--force"), fault, place.inside("journal.db") if fault is not_readable else target)
    if stored_calls(target) != stored_calls(place.inside("journal.db")):
        yield "the backup does not have the calls of the journal"


def restore(place, fault):
    place.fill()
    source = place.file("copy.db")
    shutil.copy(place.inside("journal.db"), source)
    with contextlib.closing(sqlite3.connect(place.inside("journal.db"))) as database, database:
        database.execute("UPDATE call SET duration = duration + 1")
    yield from judged(place, ("restore", source), fault, source if fault is not_readable else place.inside("journal.db"))
    if stored_calls(source) != stored_calls(place.inside("journal.db")):
        yield "the journal does not have the calls of the backup"


def output(place, fault):
    """An output that does not fit is an error, and one that ends with status 0 is complete."""
    place.fill().start(wrapper=AS_USER)
    command = place.dice.choice((("export", "--format", "csv"), ("export", "--format", "jsonl"), ("export", "--format", "json"),
                                 ("export", "--format", "ical"), ("export", "received", "--format", "csv"), ("export", "dialled", "--format", "json"),
                                 ("contacts", "export", "--format", "vcf"), ("contacts", "export", "--format", "csv"),
                                 ("list", "received"), ("list", "received", "--json"), ("calls",), ("stats",), ("settings",),
                                 ("contacts", "list")))
    whole = run(place.data, *command).stdout
    with open(place.file("output"), "w+", encoding="utf-8", newline="") as file:
        done = run(place.data, *command, size=place.dice.randrange(len(whole.encode()) + 1), stdout=file)
        file.seek(0)
        same = re.sub(r"DTSTAMP.*", "", file.read()) == re.sub(r"DTSTAMP.*", "", whole)
    if done.returncode != (0 if same else 1) or (not same and "cannot be written" not in done.stderr):
        yield "%s: status %d, the output is %s: %s" % (" ".join(command), done.returncode, "complete" if same else "cut", done.stderr)


def read_file(place, fault):
    """A file of calls or contacts that cannot be read changes nothing."""
    place.start(wrapper=AS_USER)
    command = place.dice.choice((("import", place.file("calls.csv")), ("contacts", "import", place.file("contacts.vcf"))))
    yield from judged(place, command, fault, command[-1])


def stored_file(place, fault):
    """An import into a database whose disk is full is an error, and its repetition stores the rest, once."""
    server = place.start(wrapper=AS_USER)
    api = Api(server)
    command, path, member = place.dice.choice(((("import", place.file("calls.csv")), "calls", "items"),
                                               (("contacts", "import", place.file("contacts.vcf")), "contacts", "contacts")))

    def limit(size):
        subprocess.run(["prlimit", "--pid", str(server.process.pid), "--fsize=%s:unlimited" % size], check=True)
    limit(place.dice.choice(SIZES))
    done = run(place.data, *command)
    limit("unlimited")
    if done.returncode not in (0, 1) or (done.returncode == 1 and not re.search(r"calljournal: \S|:\d+: \S", done.stderr)):
        yield "status %d and on standard error: %s" % (done.returncode, done.stderr)
    if done.returncode != 0:
        done = run(place.data, *command)
    stored = len(api("GET", "%s?limit=1000" % path)[member])
    if done.returncode != 0 or stored != CALLS:
        yield "status %d after the fault, %d of %d are stored: %s" % (done.returncode, stored, CALLS, done.stderr)


def served(place, fault, name, *, old=False):
    """A start with a fault of the file `name` serves or ends with a reason; the next one has all calls."""
    if old:
        with contextlib.closing(sqlite3.connect(place.inside("journal.db"))) as database, open(OLD_TABLES, encoding="utf-8") as file:
            database.executescript(file.read())
    elif place.dice.random() < 0.7 or (name, fault) == ("journal.db", not_readable):
        place.fill()
    expected = stored_calls(place.inside("journal.db")) if os.path.exists(place.inside("journal.db")) else (0, [])
    config = place.inside("calljournal.toml")  # what Server passes
    with open(config, "w", encoding="ascii") as file:
        file.write('[log]\nfile = "%s"\n' % place.inside("log.txt") if name == "log.txt" else "[switch]\nreconnect-max-s = 1\n")
    named = re.escape(name.removesuffix("-wal")) if fault is directory else r"\S"
    end = fault(place.inside(name))
    server = place.try_start(wrapper=(*AS_USER, *limited(place.dice.choice(SIZES) if fault is full else None)))
    status = server.end(15)
    end()
    if server.http:
        if status not in (0, 1):
            yield "the server ended with status %d" % status
    elif status != 1 or not any(re.match("calljournal: .*" + named, line) for line in server.log):
        yield "the start ended with status %d and without a reason: %s" % (status, "".join(server.log[-2:]))
    if old and stored_calls(place.inside("journal.db"))[0] == 3 and stored_calls(place.inside("journal.db")) != expected:
        yield "the old database has changed"
    left = [each for each in os.listdir(place.data) if each.endswith((".new", ".unfinished"))]
    if left:
        yield "left over: %s" % ", ".join(left)
    again = place.start(wrapper=AS_USER)
    calls = len(Api(again)("GET", "calls?limit=1000")["items"])
    if calls < len(expected[1]):
        yield "%d of %d calls are there after the fault" % (calls, len(expected[1]))
    try:
        Api(again)("PUT", "parties/4711", {"note": "n"})
    except Refused as refusal:
        yield "a change after the fault: %s" % refusal
    if again.end(15) != 0:
        yield "the start after the fault does not end with status 0"


def start_of(name, **options):
    return lambda place, fault: served(place, fault, name, **options)


CASES = [(each, backup) for each in (full, full, not_writable, not_readable, directory)]
CASES += [(each, restore) for each in (full, full, not_writable, not_readable)]
CASES += [(full, output)] * 4 + [(not_readable, read_file), (directory, read_file), (full, stored_file), (full, stored_file)]
CASES += [(full, start_of("journal.db"))] * 4 + [(full, start_of("journal.db", old=True))] * 3
CASES += [(each, start_of("journal.db", old=True)) for each in (not_writable, not_readable)]
CASES += [(directory, start_of(each)) for each in ("api-token", "api-token.new", "api-address", "api-address.new", "calljournal.sock",
                                                   "journal.db-wal", "log.txt", "calljournal.toml")]
CASES += [(directory, start_of(each, old=True)) for each in ("journal.db.version-3", "journal.db.version-3.unfinished")]
CASES += [(not_readable, start_of(each)) for each in ("api-token", "api-address", "journal.db", "log.txt", "calljournal.toml")]
CASES += [(not_writable, start_of("api-token")), (full, start_of("log.txt")), (full, start_of("api-token"))]


def play_round(seed):
    fault, case = CASES[seed % len(CASES)]
    dice = random.Random(seed)
    with Place(dice) as place:
        return ["%s, %s" % (fault.__name__, each) for each in case(place, fault)]


rounds.play("file-errors", play_round, len(CASES), at_once=4)
