#pragma once

#include <string>

#include "platform/csta/CallLogEntryEvent.h"
#include "platform/csta/TransferNumber.h"

namespace journal {

/// The data of one call that is filed, common to all lists. Plain values; times are seconds since 1970, -1 if
/// unset. Entries of the switch's own call log have `timeText` instead of `timeSec`.
struct EntryDetails {
    /// The id of the tracked call, from which the entry id is made.
    std::string callId;
    /// The far end; an empty number is an anonymous call.
    std::string remoteParty;
    std::string remotePartyName;
    /// The time of the call. With -1 it is `timeText`, or now when that is empty.
    long timeSec = -1;
    /// Start and end of the call's duration.
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
    /// The call was answered at another telephone.
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
    /// The party that the call was forwarded to.
    std::string connectedParty;
    std::string connectedPartyName;
};

}  // namespace journal
