"""The journal as a plain model: what lists, history and statistics hold after each step, by the rules of docs/call-filing.md."""

import collections

LISTS = ("missed", "dialled", "received", "forwarded")


class Call:
    def __init__(self, name, number, filed, order, call_id, elsewhere=False):
        self.list, self.number, self.filed, self.order, self.call_id = name, number, filed, order, call_id
        self.elsewhere, self.called_back, self.entry = elsewhere, False, None


class Entry:
    """One party in one list."""

    def __init__(self, name, number):
        self.list, self.number, self.viewed, self.calls = name, number, False, []
        self.shortened = False  # its newest call was deleted: among the entries of that second it has no certain place

    def newest(self):
        return max(self.calls, key=lambda call: call.order)

    def order(self):
        return self.newest().order


class PlainJournal:
    def __init__(self):
        self.calls, self.entries = [], {name: {} for name in LISTS}
        self.contacts, self.notes = {}, {}
        self.settings = {"missed-logging": "0", "delete-missed-when-called": "0"}

    def display_name(self, call):
        return self.contacts.get(call.number, call.filed)

    def file(self, name, number, switch_name, order, call_id, answered=True, elsewhere=False):
        """A finished call; False if it leaves no trace."""
        if elsewhere and self.settings["missed-logging"] == "1":
            return False
        if name == "dialled" and answered and self.settings["delete-missed-when-called"] == "1":
            if called_back := self.entries["missed"].pop(number, None):
                for call in called_back.calls:
                    call.called_back, call.entry = True, None
        entry = self.entries[name].get(number)
        if name == "dialled" and entry:
            switch_name = entry.newest().filed  # a dialled entry keeps its name
        self.add(Call(name, number, self.contacts.get(number, switch_name), order, call_id, elsewhere)).viewed = False
        return True

    def add(self, call):
        entry = self.entries[call.list].setdefault(call.number, Entry(call.list, call.number))
        entry.shortened = entry.shortened and call.order < entry.order()
        entry.calls.append(call)
        call.entry = entry
        self.calls.append(call)
        return entry

    def delete_calls(self, selected):
        """Deletes the calls that the function selects; returns their number."""
        gone = [call for call in self.calls if selected(call)]
        for call in gone:
            self.calls.remove(call)
            if call.entry:
                call.entry.shortened = call.entry.shortened or call.order == call.entry.order()
                call.entry.calls.remove(call)
                if not call.entry.calls:
                    del self.entries[call.list][call.number]
        return len(gone)

    def list(self, name):
        """The entries, newest first: number, name, viewed, calls."""
        return [(entry.number, self.display_name(entry.newest()), name != "missed" or entry.viewed, len(entry.calls))
                for entry in sorted(self.entries[name].values(), key=Entry.order, reverse=True)]

    def history(self):
        """The calls, newest first: list, number, name as filed, name, viewed, called back."""
        return [(call.list, call.number, call.filed, self.display_name(call), call.called_back, call.entry is not None,
                 "completed-elsewhere" if call.elsewhere else "")
                for call in sorted(self.calls, key=lambda call: call.order, reverse=True)]

    def totals(self):
        count = collections.Counter("elsewhere" if call.elsewhere else call.list for call in self.calls)
        return {"calls": len(self.calls), "answered": count["received"], "missed": count["missed"], "completedElsewhere": count["elsewhere"],
                "dialled": count["dialled"], "forwarded": count["forwarded"]}

    def parties(self):
        return dict(collections.Counter(call.number for call in self.calls))
