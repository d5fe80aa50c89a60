#pragma once

#include <string>

#include "src/JournalServiceEvents/calls/Call.h"

namespace journal {

/// The parties of one event in the roles of the call rules. An unknown party is empty.
///
/// The meaning of "diverted" depends on the phone type:
///
///     Qorvex  the party that the call was diverted from. It stays the far end that an entry shows, and
///             `remoteParty` is the party that the call reached.
///     SIP     the party that the call was diverted to (outgoing), or that diverted the call to this phone
///             (incoming).
struct EventParties {
    std::string remoteParty;
    std::string remotePartyName;
    std::string divertedParty;
    std::string divertedPartyName;
};

/// The name that an application's call brings instead of a person's. It is no name on any phone; on a SIP
/// phone, as remote name, it marks a call that was placed for the user.
inline constexpr const char* kCtiAssisted = "CTI Assisted";

/// Merges the parties of an event that changes `call` to `state` into the record, on every phone that is not
/// a SIP phone. Known values have priority over later ones:
///
///     diverted party   rule
///     given            it becomes the remote party, with its name, unless it is that already;
///                      the event's remote party becomes the connected party
///     empty            the event's remote party fills an empty remote party, its name an empty name;
///                      a Bluetooth call without a number gets a later number;
///                      the first time the call is established it also becomes the connected party
///
/// Does not change state and direction of the record. Requires: the call-map lock is held.
void mergeQorvexParties(Call& call, Call::states_t state, const EventParties& event);

/// The same on a SIP phone. `direction` is that of the event, or of the record if the event has none.
///
///     diverted party  state            rule
///     given           other states     it becomes the connected party; on an incoming call also the called
///                                      and the redirecting party
///     given           eForwarded,      it becomes the connected party; the event's remote party becomes
///                     eFailed          the remote party
///     empty           eOriginated      the event's remote party becomes the dialled party if that is empty
///     empty           other states     the event's remote party replaces called and remote party step by
///                                      step, so that both are those of the current far end
///     empty           eEstablished     it also becomes the connected and the dialled party
///     empty           eForwarded, out  it also fills an empty called party
///
/// Does not change state and direction of the record. Requires: the call-map lock is held.
void mergeSipParties(Call& call, Call::states_t state, Call::directions_t direction,
                     const EventParties& parties);

}  // namespace journal
