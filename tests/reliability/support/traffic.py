"""Calls of all kinds that a switch sends, in few bytes and without waits."""

from third_party_switch import cleared, conferenced, delivered, dialled, established, event, transferred


def forwarded(call, caller):
    """A call that is forwarded at once; needs "server-based-features"."""
    return event("DivertedEvent", "connection", call, [("divertingDevice", "2001"), ("newDestination", "N<205>Desk"), ("callingDevice", caller),
                                                       ("calledDevice", "2001")], "null", "callForwardImmediate")


def answered(call, caller):
    return delivered(call, caller) + established(call, caller)


def held(call, caller):
    return answered(call, caller) + b"".join(
        event(name, member, call, [(device, "2001")], state, "normal") for name, member, device, state in (
            ("HeldEvent", "heldConnection", "holdingDevice", "hold"), ("RetrievedEvent", "retrievedConnection", "retrievingDevice", "connected")))


KINDS = {
    "missed": lambda call, caller: delivered(call, caller) + cleared(call),
    "received": lambda call, caller: answered(call, caller) + cleared(call),
    "dialled": lambda call, called: dialled(call, called) + cleared(call),
    "not answered": lambda call, called: event("OriginatedEvent", "originatedConnection", call, [
        ("callingDevice", "2001"), ("calledDevice", called)], "connected", "newCall") + cleared(call),
    "forwarded": forwarded,
    "held": lambda call, caller: held(call, caller) + cleared(call),
    "transferred": lambda call, caller: answered(call, caller) + transferred(call, "2001", call + "n", "N<206>Desk") + cleared(call + "n"),
    "conference": lambda call, caller: answered(call, caller) + dialled(call + "b", "7" + call[-3:]) + conferenced(
        call, (call, caller), (call + "b", "7" + call[-3:])) + cleared(call) + cleared(call + "b"),
}
