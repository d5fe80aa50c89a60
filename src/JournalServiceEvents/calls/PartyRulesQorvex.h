#pragma once

#include "src/JournalServiceEvents/calls/Call.h"

namespace journal {

struct EventParties;

/// Merges the parties of an event that moves `call` to `state` into the record, on every phone that is not a SIP
/// phone; `mergeSipParties` stands beside it. What is known already wins over what comes later:
///
///     diverted party   rule
///     given            it becomes the remote party, with its name, unless it is that already; the event's remote
///                      party becomes the connected party
///     none             the event's remote party fills an empty remote party, its name an empty name;
///                      a Bluetooth call without a number takes a number that comes later;
///                      the first time the call is established it also becomes the connected party
///
/// The caller holds the call-map lock. The record's state and direction are left as they are.
void mergeQorvexParties(Call& call, Call::states_t state, const EventParties& parties);

}  // namespace journal
