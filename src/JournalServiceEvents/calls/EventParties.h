#pragma once

#include <string>

namespace journal {

/// The parties of one event in the roles that the call rules give them. A party that is not known is empty.
///
/// What "diverted" means differs between the flavours, and so does what an event handler puts there:
///   Qorvex  the party that the call was diverted from: it stays the far end that an entry shows,
///           and `remoteParty` is who the call reached in the end.
///   SIP     the party that the call was diverted to (outgoing), or that sent it here (incoming).
struct EventParties {
    std::string remoteParty;
    std::string remotePartyName;
    std::string divertedParty;
    std::string divertedPartyName;
};

}  // namespace journal
