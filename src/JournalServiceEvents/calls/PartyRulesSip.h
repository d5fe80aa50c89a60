#pragma once

#include "src/JournalServiceEvents/calls/Call.h"

namespace journal {

struct EventParties;

/// Merges the parties of an event that moves `call` to `state` into the record, on a SIP phone;
/// `mergeQorvexParties` stands beside it. `direction` is the event's, or the record's when the event has none.
///
///     diverted party     state            rule
///     given              all but 4 and 6  it becomes the connected party; on an incoming call it is also the party
///                                         that the call was made to and that redirected it
///     given              4, 6             it becomes the connected party; the event's remote party the remote party
///     none, no digits    0                the event's remote party is what was dialled
///     none               any other        the event's remote party replaces called and remote party step by step, so
///                                         that the two follow a call whose far end changes
///     none               3                it also becomes the connected and the dialled party
///     none, outgoing     4                it also fills an empty called party
///
/// A remote name "CTI Assisted" is no name: it marks a call that was placed for the user.
/// The caller holds the call-map lock. The record's state and direction are left as they are.
void mergeSipParties(Call& call, Call::states_t state, Call::directions_t direction,
                     const EventParties& parties);

}  // namespace journal
