#!/usr/bin/env python3
"""A client of a running call journal, with Python's standard library only.

    journal_client.py [--data DIR] list LIST
    journal_client.py [--data DIR] delete LIST ENTRY_ID...
    journal_client.py [--data DIR] contacts
    journal_client.py [--data DIR] follow

LIST is missed, dialled, received, forwarded or callbacks. `contacts` prints the contacts that were loaded with the lists.
`docs/messages.md` describes the frames and messages; the HTTP API (docs/http-api.md) has the whole phonebook.
"""

import argparse
import collections
import os
import re
import socket
import struct
import sys
import urllib.parse
import xml.etree.ElementTree as ET
from xml.sax.saxutils import escape

# LIST: the methods that read the list and that delete one of its entries.
METHODS = {"missed": (2, 7), "dialled": (10, 11), "received": (14, 15), "forwarded": (18, 19), "callbacks": (21, 22)}
SUBSCRIBE = 25
ACTIONS = {"0": "added", "1": "one more call", "2": "deleted", "3": "changed", "4": "cleared"}


class JournalError(Exception):
    """The journal refused a request, or closed the connection."""


class Journal:
    """A connection to the journal. Sends one request at a time and keeps the notifications that come meanwhile."""

    def __init__(self, path):
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        try:
            self._socket.connect(path)
        except OSError as error:
            self._socket.close()
            raise JournalError("no journal is reachable at %s (%s): start `calljournal serve`, or name its directory with --data"
                               % (path, error.strerror)) from error
        self._stream = self._socket.makefile("rb")
        self._last_id = 0
        self._notifications = collections.deque()

    def close(self):
        self._stream.close()
        self._socket.close()

    def list(self, name):
        """Returns the entries of a list, newest first, as XML elements."""
        return self._request(METHODS[name][0]).findall("ENTRY")

    def delete(self, name, entry_id):
        """Deletes an entry; returns False if the list has none with that id."""
        try:
            return self._request(METHODS[name][1], entry_id).findtext("Result") == "true"
        except JournalError:
            return False

    def subscribe(self):
        """Starts the notifications; the first ones describe the current state."""
        if self._request(SUBSCRIBE).findtext("Result") != "true":
            raise JournalError("the journal refused the subscription")

    def notifications(self):
        """Yields each change as an XML element, until the journal closes the connection."""
        while True:
            while self._notifications:
                yield self._notifications.popleft()
            self._keep(*self._receive())

    def contacts(self):
        """Returns the contacts that were loaded with the lists, as XML elements. This interface uses text lines, not XML."""
        lines = self._exchange("M", "request getContactList journal_client.py").split("\n")
        if lines[0].split(" ")[:2] != ["response", "getContactList"]:
            raise JournalError("the journal refused the contacts: " + lines[0])
        values = dict(line.split(" ")[1:3] for line in lines[1:])
        return ET.fromstring("<Contacts>%s</Contacts>" % urllib.parse.unquote(values.get("contactList", "")))

    def _request(self, method, *entry_ids):
        ids = "".join("<EntryId>%s</EntryId>" % escape(each) for each in entry_ids)
        request = "<JournalRequest><Method>%d</Method>%s</JournalRequest>" % (method, ids)
        response = self._exchange("Q", request)
        if response == "failure":
            raise JournalError("the journal refused method %d" % method)
        return ET.fromstring(response.encode("utf-8"))

    def _exchange(self, kind, text):
        """Sends a frame (length, kind, id, text) and waits for the response with the same id."""
        self._last_id += 1
        body = kind.encode("ascii") + struct.pack(">I", self._last_id) + text.encode("utf-8")
        self._socket.sendall(struct.pack(">I", len(body)) + body)
        while True:
            kind, frame_id, text = self._receive()
            if kind == "A" and frame_id == self._last_id:
                return text
            self._keep(kind, frame_id, text)

    def _keep(self, kind, _frame_id, text):
        if kind == "N":
            self._notifications.append(ET.fromstring(text.encode("utf-8")))

    def _receive(self):
        length, = struct.unpack(">I", self._read(4))
        body = self._read(length)
        return chr(body[0]), struct.unpack(">I", body[1:5])[0], body[5:].decode("utf-8")

    def _read(self, count):
        data = self._stream.read(count)
        if len(data) < count:
            raise JournalError("the journal closed the connection")
        return data


def text_of(element, name):
    """Returns a field as one line of text. A byte that is not text is encoded as the character U+EE00 + byte."""
    raw = re.sub("[\uee00-\ueeff]+", lambda run: bytes(ord(each) - 0xEE00 for each in run.group()).decode("utf-8", "backslashreplace"),
                 element.findtext(name, ""))
    return "".join(each if each.isprintable() else each.encode("unicode_escape").decode("ascii") for each in raw)


def line_of(entry):
    """Returns an entry as one line of text."""
    calls = entry.findall("Occurrence") or [entry]
    name = " ".join(filter(None, (text_of(entry, "Firstname"), text_of(entry, "Surname"))))
    time = text_of(calls[0], "TimeAndDate") or text_of(calls[0], "TimeDate")
    new = "*" if entry.findtext("Type") == "missed" and entry.findtext("Viewed") != "true" else " "
    return "%s %s  %s  %s  %s" % (new, text_of(entry, "EntryId"), time, name or "unknown", text_of(calls[0], "Number"))


def describe(change):
    """Returns a notification as one line of text."""
    event, entry = text_of(change, "Event"), change.find("ENTRY")
    if change.find("Count") is not None:
        return "%s: %s" % (event, text_of(change, "Count"))
    what = ACTIONS.get(text_of(change, "Action"), "changed")
    is_empty = entry is None or not entry.findtext("EntryId")
    return "%s: %s" % (event, what) if is_empty else "%s: %s: %s" % (event, what, line_of(entry))


def run(journal, arguments):
    if arguments.command == "list":
        for entry in journal.list(arguments.list):
            print(line_of(entry))
    elif arguments.command == "delete":
        unknown = [each for each in arguments.entry_ids if not journal.delete(arguments.list, each)]
        for each in unknown:
            print("no entry %s in %s" % (each, arguments.list), file=sys.stderr)
        return 1 if unknown else 0
    elif arguments.command == "contacts":
        for entry in journal.contacts():
            texts = [text_of(entry, name) for name in ("Firstname", "Surname", "Company", "Office", "Mobile", "Private", "Office2")]
            print("  ".join(filter(None, [" ".join(filter(None, texts[:2])), *texts[2:]])))
    else:
        journal.subscribe()
        for change in journal.notifications():
            print(describe(change), flush=True)
    return 0


def main():
    state = os.environ.get("XDG_STATE_HOME") or os.path.expanduser("~/.local/state")
    parser = argparse.ArgumentParser(description="A client of a running call journal.")
    parser.add_argument("--data", default=os.path.join(state, "calljournal"), help="the journal's directory")
    commands = parser.add_subparsers(dest="command", required=True)
    for name in ("list", "delete"):
        commands.add_parser(name).add_argument("list", choices=METHODS)
    commands.choices["delete"].add_argument("entry_ids", nargs="+", metavar="ENTRY_ID")
    commands.add_parser("contacts")
    commands.add_parser("follow")
    arguments = parser.parse_args()
    try:
        journal = Journal(os.path.join(arguments.data, "calljournal.sock"))
        try:
            return run(journal, arguments)
        finally:
            journal.close()
    except (JournalError, OSError) as error:
        print("journal_client.py: %s" % error, file=sys.stderr)
        return 1
    except KeyboardInterrupt:
        return 0


if __name__ == "__main__":
    sys.exit(main())
