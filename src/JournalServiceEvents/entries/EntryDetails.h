#pragma once

#include <string>

#include "platform/csta/CallLogEntryEvent.h"
#include "platform/csta/TransferNumber.h"

namespace journal {

/// What is to be filed of one call, whatever the list. Plain values; times are seconds since 1970, -1 when the
/// moment never came. Entries that come from the switch's own call log give `timeText` instead of `timeSec`.
struct EntryDetails {
    /// The tracked call's id; the entry id is made from it.
    std::string callId;
    /// The far end; an empty number is an anonymous call.
    std::string remoteParty;
    std::string remotePartyName;
    /// When the call was. -1: `timeText` says it, or else it is now.
    long timeSec = -1;
    /// Start and end of what the duration counts.
    long startSec = -1;
    long endSec = -1;
    std::string timeText;
    CallLogEntryEvent::_TFormat timeFormat = CallLogEntryEvent::eTimeIso8601;
    CallLogEntryEvent::_LogTarget logTarget = CallLogEntryEvent::eReceived;
    CallLogEntryEvent::_PresentationValue presentationA = CallLogEntryEvent::eNotPresented;
    CallLogEntryEvent::_PresentationValue presentationB = CallLogEntryEvent::eNotPresented;
    CallLogEntryEvent::_PresentationValue presentationC = CallLogEntryEvent::eNotPresented;
    CallLogEntryEvent::_PresentationValue presentationD = CallLogEntryEvent::eNotPresented;
    std::string textC;
    std::string textD;
    std::string redirectingParty;
    std::string redirectingPartyName;
};

struct MissedEntryDetails : EntryDetails {
    /// Somebody else answered the call.
    bool completedElsewhere = false;
    /// The line on which the call was missed, empty for none, and the text of a group's call.
    std::string lineKey;
    std::string groupText;
};

struct ReceivedEntryDetails : EntryDetails {
    std::string connectedParty;
    std::string connectedPartyName;
    TransferNumber::TransferNumberType transferType = TransferNumber::eNotTransferred;
};

struct DialledEntryDetails : EntryDetails {
    std::string dialledParty;
    std::string connectedParty;
    std::string connectedPartyName;
    TransferNumber::TransferNumberType transferType = TransferNumber::eNotTransferred;
    /// Dialled on a telephone paired over Bluetooth.
    bool bluetoothCall = false;
};

struct ForwardedEntryDetails : EntryDetails {
    /// Where the call went.
    std::string connectedParty;
    std::string connectedPartyName;
};

}  // namespace journal
