"""Names that attack what shows them come from the switch, and are looked at in every output.

A switch sends a missed call with each name: control characters, escape sequences, directions of writing, formulas, HTML, quotes, line
breaks of calendars and cards, bytes that are no UTF-8. A round holds every output to its form: JSON and CSV have one entry for each
call, tables have one line, no cell is a formula, no calendar and no card has a line too many, and the terminal and the log get no
control character. Odd seeds send each name alone, even ones each joined with another.
"""

import csv
import io
import json
import os
import random
import re
import signal
import subprocess
import threading
import unicodedata

import rounds
from harness import ENVIRONMENT, LIMIT
from journal import Api, Refused, Round
from third_party_switch import cleared, delivered

PLAIN = [  # every output that keeps all characters has them as they are
    "=1+1", "=cmd|'/C calc'!A0", "+SUM(A1:A9)", "-2+3", "@SUM(1)", "=HYPERLINK(\"http://evil.example\",\"x\")", "\uff1d1+1", "\uff0b1", "\uff0d1",
    "\uff20A1", "'=1", "\"=1\"", ";=1+1", ",=1+1", "<script>alert(1)</script>", "<img src=x onerror=alert(1)>", "\"><svg onload=alert(1)>",
    "javascript:alert(1)", "{{7*7}}", "${7*7}", "`id`", "$(id)", "|id", ";id", "&amp;lt;", "<![CDATA[x]]>", "<!--", "]]>", "<!DOCTYPE x>", "&x;",
    "O'Brien", "a\"b\"c", "a,b;c", "\\", "\\n", "\\\\server", "../../etc/passwd", "/dev/null", "C:\\CON", "' OR '1'='1", "'; DROP TABLE call;--",
    "%s%n%x", "%00", "null", "undefined", "NaN", "true", "0", "-0", "[]", "{}", "BEGIN:VEVENT", "END:VCALENDAR", "N:x;y", "UID:1", "M\u00fcller",
    "\u5c71\u7530 \u592a\u90ce", "\U0001f468\u200d\U0001f469\u200d\U0001f467", "\U0001f1e9\U0001f1ea", "\ufb03", "\u0130",
]
HIDDEN = [  # characters that some outputs escape or replace
    "a\x1b[31mred", "a\x1b]0;title\x07", "a\x1b[2J", "a\u009b31m", "a\x08\x08b", "a\rb", "a\nEND:VEVENT", "a\r\nBEGIN:VEVENT", "a\r\n b", "a\tb",
    "a\x7fb", "a\u202eb", "a\u2066b", "a\u200eb", "a\u200fb", "a\u061cb", "a\u2028b", "a\u2029b", "a\U000e0041b", "e" + "\u0301" * 180, "a\ufeffb",
    "a\u0085b", "x" * 5000, "\u00fc" * 3000, "&#0;", "&#x1b;[31m", "\ufffe", "\U0010ffff",
]
BROKEN = [b"a\xffb", b"a\xc0\xafb", b"a\xed\xa0\x80b", b"a\xf4\x90\x80\x80b", b"M\xfcller", b"a\xc3", b"a\x00b", b"\x80"]
NAMES = [each.encode("utf-8") for each in PLAIN + HIDDEN] + BROKEN
UNSAFE = re.compile("[\x00-\x09\x0b-\x1f\x7f-\x9f\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069\U000e0000-\U000e007f]")
FORMULA = tuple("=+-@\t\r\n\uff1d\uff0b\uff0d\uff20")
LOG_LINE = re.compile(r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z \w+ \[")
WIDEST = 400            # columns of a line of a table; a name is cut at 1 KiB
HOLE = "NAME-HERE"
LAST = "4699999"


def frames_with(name, frames):
    """The frames with `name`, escaped for XML, in place of HOLE."""
    name = name.replace(b"&", b"&amp;").replace(b"<", b"&lt;").replace(b">", b"&gt;") if not name.startswith(b"&#") else name
    done, at = b"", 0
    while at < len(frames):
        size = int.from_bytes(frames[at + 2:at + 4], "big")
        body = frames[at + 8:at + size].replace(HOLE.encode("ascii"), name)
        done += b"\0\0" + (len(body) + 8).to_bytes(2, "big") + frames[at + 4:at + 8] + body
        at += size
    return done


def run(server, *arguments):
    """The bytes that a command prints."""
    done = subprocess.run([os.environ["CALLJOURNAL"], *arguments, "--data", server.data], stdin=subprocess.DEVNULL, capture_output=True,
                          timeout=LIMIT, check=False, env={**ENVIRONMENT, "COLUMNS": "200"})
    if done.returncode or done.stderr:
        raise AssertionError("%s: status %d, %r" % (" ".join(arguments), done.returncode, done.stderr[:200]))
    return done.stdout


def faults_of_text(what, text, lines):
    """The faults of an output for a terminal that has so many lines."""
    if UNSAFE.search(text):
        yield "%s has %r" % (what, UNSAFE.search(text).group())
    if text.count("\n") != lines:
        yield "%s has %d lines instead of %d" % (what, text.count("\n"), lines)
    for line in text.split("\n"):
        if sum(unicodedata.category(each) in ("Mn", "Me") for each in line) > 40 or len(line) > WIDEST * 4:
            yield "%s has a line of %d characters" % (what, len(line))


def faults_of_csv(what, data, rows):
    text = data.decode("utf-8")
    table = list(csv.reader(io.StringIO(text, newline="")))
    if len(table) != rows + 1 or {len(row) for row in table} != {len(table[0])}:
        yield "%s has %d rows of %s cells" % (what, len(table), {len(row) for row in table})
    for cell in (cell for row in table[1:] for cell in row if cell.startswith(FORMULA)):
        yield "%s has the formula %r" % (what, cell[:40])


def faults_of_lines(what, data, begin, known, count):
    """The faults of a calendar or of cards: folded lines of properties."""
    text = data.decode("utf-8").replace("\r\n ", "")
    lines = text.split("\r\n")[:-1]
    if lines.count(begin) != count:
        yield "%s has %d times %s" % (what, lines.count(begin), begin)
    for line in lines:
        if not re.match(known, line) or re.search("[\x00-\x08\x0a-\x1f\x7f]", line):
            yield "%s has the line %r" % (what, line[:60])


def faults_of_json(items, names):
    """The faults of the list. A name ends at a semicolon, where the parameters of a device identifier begin."""
    found = {item["number"]: item["displayName"] for item in items}
    plain = {each.encode("utf-8"): each for each in PLAIN if ";" not in each}
    for at, name in enumerate(names):
        number = "47%05d" % at
        if number not in found:
            yield "the call of %r is not there" % name[:40]
        if name in plain and found.get(number) != plain[name]:
            yield "the name %r is %r" % (plain[name], found.get(number))
    for name in found.values():
        if len(name.encode("utf-8")) > 1100:
            yield "a name has %d bytes" % len(name.encode("utf-8"))


def add_contacts(api, names):
    """Adds the names to the phonebook as far as they are allowed; returns how many."""
    added = 0
    for at, name in enumerate(names):
        try:
            text = name.decode("utf-8")
            api("POST", "contacts", {"surname": text, "company": text, "email": text, "office": "46%05d" % at})
            added += 1
        except (UnicodeDecodeError, Refused):
            pass
    return added


def discard(peer):
    try:
        while peer.recv(65536):
            pass
    except OSError:
        pass


def play_round(seed):
    dice, names = random.Random(seed), list(NAMES)
    dice.shuffle(names)
    if seed % 2 == 0:
        names = [each + b" " + dice.choice(names) for each in names if not each.startswith(b"&#")]
    faults = []
    with Round() as play:
        log = os.path.join(play.data, "log")
        server = play.start(wrapper=["sh", "-c", 'log=$1 && shift && exec "$@" 2> "$log"', "sh", log])
        play.switch.synchronise({})
        threading.Thread(target=discard, args=(play.switch.peer,), daemon=True).start()
        api = Api(server)
        with Api(server).response("GET", "/api/v1/events") as stream:
            for at, name in enumerate(names):
                call = "c%d" % at
                play.switch.peer.sendall(frames_with(name, delivered(call, "N<47%05d>%s" % (at, HOLE)) + cleared(call)))
            play.call("missed", "last", LAST)
            any(LAST.encode("ascii") in line for line in stream)
        items = api.every("lists/missed")
        count = len(items)
        faults += faults_of_json(items, names)
        shown = {item["number"]: item["displayName"] for item in items}
        listed = json.loads(run(server, "list", "missed", "--json"))["items"]
        if {item["number"]: item["displayName"] for item in listed} != shown:
            faults.append("list --json differs from the HTTP API")
        for command in ("list missed", "calls --limit 1000"):
            faults += faults_of_text(command, run(server, *command.split()).decode("utf-8"), count + 1)
        for command in ("list missed --csv", "export missed --format csv"):
            faults += faults_of_csv(command, run(server, *command.split()), count)
        faults += faults_of_lines("the calendar", run(server, "export", "missed", "--format", "ical"), "BEGIN:VEVENT",
                                  "(BEGIN|END|VERSION|PRODID|UID|DTSTAMP|DTSTART|DTEND|DURATION|SUMMARY|DESCRIPTION|TRANSP|CATEGORIES|CALSCALE|METHOD|"
                                  "CLASS|STATUS|CONTACT|X-[A-Z-]+)[;:]", count)
        contacts = add_contacts(api, names)
        faults += faults_of_csv("the contacts", run(server, "contacts", "export", "--format", "csv"), contacts)
        faults += faults_of_lines("the cards", run(server, "contacts", "export", "--format", "vcf"), "BEGIN:VCARD",
                                  "(BEGIN|END|VERSION|N|FN|TEL|EMAIL|ORG|TITLE|CATEGORIES|ADR|PHOTO|UID|X-[A-Z-]+)[;:]", contacts)
        faults += faults_of_text("contacts list", run(server, "contacts", "list", "--limit", "1000").decode("utf-8"), contacts + 1)
        server.end(signal.SIGTERM)
        with open(log, "rb") as file:
            lines = file.read().decode("utf-8").split("\n")[:-1]
        faults += ["the log has the line %r" % line[:80] for line in lines if not LOG_LINE.match(line) or UNSAFE.search(line)]
        if len(lines) < count:
            faults.append("the log has %d lines" % len(lines))
    return faults


if __name__ == "__main__":
    rounds.play("hostile-names", play_round, 1)
