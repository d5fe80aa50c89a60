#include "src/JournalServiceEvents/calls/CallCompletion.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "platform/texts/communicationsServiceTexts.h"
#include "src/JournalService/base/CrestUserInterface.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalServiceEvents/calls/CallMap.h"
#include "src/JournalServiceEvents/entries/EntryCreation.h"

namespace journal {

namespace {

constexpr const char* kLogName = "createCallEntryAndRemoveCall";
/// The value of the first forwarded party if the forwardings of the call already have their entry.
constexpr const char* kForwardingsDone = "firstForwardedParty_seq_done";

using LogEntry = CallLogEntryEvent;

const char* textOf(bool value) {
    return value ? "true" : "false";
}

bool isBluetooth(const std::string& text) {
    return text == communicationsServiceTexts::content_bluetoothDeviceId;
}

template <typename Details>
Details detailsOf(const Call& call) {
    Details details;
    details.callId = call.m_sCallId;
    details.remoteParty = call.m_sRemoteParty;
    details.remotePartyName = call.m_sRemotePartyName;
    details.timeSec = call.m_startTimeSec;
    details.startSec = call.m_establishedTimeSec;
    details.endSec = call.m_endTimeSec;
    details.redirectingParty = call.m_sRedirectingParty;
    details.redirectingPartyName = call.m_sRedirectingPartyName;
    return details;
}

TransferNumber::TransferNumberType transferTypeOf(const Call& call) {
    return call.m_transferred ? TransferNumber::eTransferred : TransferNumber::eNotTransferred;
}

}  // namespace

const CallCompletion::Rule CallCompletion::kQorvexRules[] = {
    {Call::eOutgoing, Call::eForwarded, &CallCompletion::fileQorvexDialledForwarded},
    {Call::eOutgoing, std::nullopt, &CallCompletion::fileDialled},
    {Call::eIncoming, Call::eDelivered, &CallCompletion::fileQorvexDelivered},
    {Call::eIncoming, Call::eEstablished, &CallCompletion::fileQorvexReceived},
    {Call::eIncoming, Call::eForwarded, &CallCompletion::fileForwarded},
    {Call::eIncoming, Call::eFailed, &CallCompletion::fileQorvexMissed},
    {Call::eIncoming, Call::eCallInformation, &CallCompletion::fileQorvexMissed},
};

const CallCompletion::Rule CallCompletion::kSipRules[] = {
    {Call::eOutgoing, Call::eForwarded, &CallCompletion::fileSipDialledForwarded},
    {Call::eOutgoing, std::nullopt, &CallCompletion::fileDialled},
    {Call::eIncoming, Call::eDelivered, &CallCompletion::fileSipMissed},
    {Call::eIncoming, Call::eFailed, &CallCompletion::fileSipMissed},
    {Call::eIncoming, Call::eEstablished, &CallCompletion::fileSipReceived},
    {Call::eIncoming, Call::eForwarded, &CallCompletion::fileForwarded},
};

const CallCompletion::Rule* CallCompletion::ruleFor(const Call& call, Call::states_t state) const {
    const bool sip = m_settings.values()->isSip();
    const Rule* const begin = sip ? std::begin(kSipRules) : std::begin(kQorvexRules);
    const Rule* const end = sip ? std::end(kSipRules) : std::end(kQorvexRules);
    const auto direction = sip && call.m_treatAsIncoming ? Call::eIncoming : call.m_Direction;
    const Rule* const rule = std::find_if(begin, end, [direction, state](const Rule& row) {
        return row.direction == direction && (row.state ? *row.state == state : state != Call::eUnknown);
    });
    return rule == end ? nullptr : rule;
}

bool CallCompletion::createCallEntryAndRemoveCall(const Call* call, Call::states_t state) {
    if (m_settings.values()->isSip()) {
        LOG_EVENTS(5, "%s():{%s} State: %d, Direction: %d TreatAsIncoming %c", kLogName,
                   call->m_sCallId.c_str(), static_cast<int>(state), static_cast<int>(call->m_Direction),
                   call->m_treatAsIncoming ? 'Y' : 'N');
    } else {
        LOG_EVENTS(5, "%s():direction[%s] state[%d]", kLogName, call->isOutgoing() ? "outgoing" : "incoming",
                   static_cast<int>(state));
    }
    const Rule* const rule = ruleFor(*call, state);
    if (rule == nullptr) {
        LOG_EVENTS(5, "%s():{%s} Unknown Call State: %d, Remote Party: %s", kLogName, call->m_sCallId.c_str(),
                   static_cast<int>(state), call->m_sRemoteParty.c_str());
    } else if ((this->*rule->file)(*call) == CallDisposition::eKept) {
        return true;
    }
    LOG_EVENTS(5, "%s():removeCall[%s]", kLogName, call->m_sCallId.c_str());
    m_calls.removeCall(call->m_sCallId);
    return rule != nullptr;
}

// ---- both phone types ----

CallCompletion::CallDisposition CallCompletion::fileDialled(const Call& call) {
    newDialledEntry(call, LogEntry::eDialled);
    return CallDisposition::eRemoved;
}

CallCompletion::CallDisposition CallCompletion::fileForwarded(const Call& call) {
    auto details = detailsOf<ForwardedEntryDetails>(call);
    details.connectedParty = call.m_sConnectedParty;
    details.connectedPartyName = call.m_sConnectedPartyName;
    m_entries.newForwardedCallEntry(details);
    return CallDisposition::eRemoved;
}

// ---- every phone that is not a SIP phone ----

CallCompletion::CallDisposition CallCompletion::fileQorvexDialledForwarded(const Call& call) {
    newDialledEntry(call, LogEntry::eDialledForwarded);
    return CallDisposition::eKept;
}

CallCompletion::CallDisposition CallCompletion::fileQorvexDelivered(const Call& call) {
    if (!shouldSaveDeliveredCallAsMissed(&call)) {
        return CallDisposition::eRemoved;
    }
    LOG_EVENTS(5, "%s():{%s} eDelivered event creating newMissedCallEntry", kLogName, call.m_sCallId.c_str());
    auto details = missedDetails(call);
    details.presentationC = LogEntry::ePresented;
    details.presentationD = LogEntry::ePresented;
    m_entries.newMissedCallEntry(details);
    return CallDisposition::eRemoved;
}

CallCompletion::CallDisposition CallCompletion::fileQorvexMissed(const Call& call) {
    m_entries.newMissedCallEntry(missedDetails(call));
    return CallDisposition::eRemoved;
}

CallCompletion::CallDisposition CallCompletion::fileQorvexReceived(const Call& call) {
    if (call.m_sRemoteParty == communicationsServiceTexts::noNumberProvided && !isUsingCrestUX()) {
        LOG_EVENTS(5, "%s():{%s} No Number Provided - no entry in received call list", kLogName,
                   call.m_sCallId.c_str());
        return CallDisposition::eRemoved;
    }
    newReceivedEntry(call);
    return CallDisposition::eRemoved;
}

// ---- SIP phones ----

CallCompletion::CallDisposition CallCompletion::fileSipDialledForwarded(const Call& call) {
    const auto settings = m_settings.values();
    LOG_EVENTS(5,
               "%s():{%s} for state == Call::eForwarded, m_sConnectedParty[%s] m_sDialledParty[%s] "
               "m_sCalledParty[%s] "
               "m_sRemoteParty[%s], m_sFirstForwardedParty[%s], m_sFirstForwardedPartyName[%s], "
               "m_ForwardingPartyDisplayLast[%s], mAutoAnswerForwardedCall[%s]",
               kLogName, call.m_sCallId.c_str(), call.m_sConnectedParty.c_str(), call.m_sDialledParty.c_str(),
               call.m_sCalledParty.c_str(), call.m_sRemoteParty.c_str(), call.m_sFirstForwardedParty.c_str(),
               call.m_sFirstForwardedPartyName.c_str(), textOf(settings->m_ForwardingPartyDisplayLast),
               textOf(call.mAutoAnswerForwardedCall));
    const std::string& connected = call.m_sConnectedParty;
    if (connected.empty() || connected == call.m_sDialledParty || connected == call.m_sCalledParty) {
        return CallDisposition::eKept;
    }
    if (call.m_sFirstForwardedParty == kForwardingsDone) {
        return CallDisposition::eRemoved;
    }
    LOG_EVENTS(5, "%s():{%s} for state == Call::eForwarded, newDialledCallEntry!?", kLogName,
               call.m_sCallId.c_str());
    auto details = dialledDetails(call, LogEntry::eDialledForwarded);
    details.startSec = -1;
    details.endSec = -1;
    if (showsFirstForwardedParty(call)) {
        details.connectedParty = call.m_sFirstForwardedParty;
        details.connectedPartyName = call.m_sFirstForwardedPartyName;
    }
    m_entries.fileDialledCall(details);
    return CallDisposition::eRemoved;
}

// The setting selects the first or the last of several parties that a call was forwarded to. If the forwarded
// call was answered automatically, the user has talked to the last one.
bool CallCompletion::showsFirstForwardedParty(const Call& call) const {
    return !m_settings.values()->m_ForwardingPartyDisplayLast && !call.mAutoAnswerForwardedCall &&
           !call.m_sFirstForwardedParty.empty();
}

CallCompletion::CallDisposition CallCompletion::fileSipMissed(const Call& call) {
    if (!call.m_ctiAssisted && !m_settings.values()->m_xsiConfigured && call.m_missedEligible) {
        m_entries.newMissedCallEntry(missedDetails(call));
    }
    return CallDisposition::eRemoved;
}

// A call that was placed for the user first alerts at the user's own phone, so it looks like an incoming
// call.
CallCompletion::CallDisposition CallCompletion::fileSipReceived(const Call& call) {
    if (call.m_ctiAssisted) {
        newDialledEntry(call, LogEntry::eDialled);
    } else {
        newReceivedEntry(call);
    }
    return CallDisposition::eRemoved;
}

// ---- the entries ----

MissedEntryDetails CallCompletion::missedDetails(const Call& call) {
    auto details = detailsOf<MissedEntryDetails>(call);
    details.logTarget = LogEntry::eMissed;
    details.completedElsewhere = call.m_completedElsewhere;
    details.lineKey = call.m_sLineKey;
    return details;
}

void CallCompletion::newReceivedEntry(const Call& call) {
    auto details = detailsOf<ReceivedEntryDetails>(call);
    details.logTarget = LogEntry::eReceived;
    details.presentationA = LogEntry::ePresented;
    details.presentationB = LogEntry::ePresented;
    details.presentationC = LogEntry::ePresented;
    details.presentationD = LogEntry::ePresented;
    details.connectedParty = call.m_sConnectedParty;
    details.connectedPartyName = call.m_sConnectedPartyName;
    details.transferType = transferTypeOf(call);
    m_entries.newReceivedCallEntry(details);
}

void CallCompletion::newDialledEntry(const Call& call, CallLogEntryEvent::_LogTarget target) {
    m_entries.fileDialledCall(dialledDetails(call, target));
}

DialledEntryDetails CallCompletion::dialledDetails(const Call& call,
                                                   CallLogEntryEvent::_LogTarget target) const {
    auto details = detailsOf<DialledEntryDetails>(call);
    details.logTarget = target;
    details.presentationA = LogEntry::ePresented;
    details.presentationB = LogEntry::ePresented;
    details.dialledParty = call.m_sDialledParty;
    details.connectedParty = call.m_sConnectedParty;
    details.connectedPartyName = call.m_sConnectedPartyName;
    details.transferType = transferTypeOf(call);
    details.bluetoothCall = isBluetooth(call.m_sCallId) || isBluetooth(call.m_sDialledParty);
    if (m_settings.values()->isSip()) {
        details.bluetoothCall = details.bluetoothCall || call.m_connectedToMediaServer;
        // A call that never reached a called party is shown with the dialled number.
        const bool useDialled = call.m_sCalledParty.empty() && !isBluetooth(call.m_sDialledParty);
        details.remoteParty = useDialled ? call.m_sDialledParty : call.m_sCalledParty;
        details.remotePartyName = call.m_sCalledPartyName;
    } else if (details.dialledParty.empty()) {
        details.dialledParty = call.m_sRemoteParty;
    }
    return details;
}

bool CallCompletion::shouldSaveDeliveredCallAsMissed(const Call* call) const {
    const bool waitsForMark = m_settings.values()->m_enterMarkedMissedCall;
    LOG_EVENTS(
        5, "%s():shouldSaveDeliveredCallAsMissed: callId[%s], m_enterMarkedMissedCall[%s], remoteParty[%s]",
        "shouldSaveDeliveredCallAsMissed", call->m_sCallId.c_str(), textOf(waitsForMark),
        call->m_sRemoteParty.c_str());
    return !waitsForMark || isBluetooth(call->m_sCallId);
}

void CallCompletion::findAndDeleteMissedEntryWhenCalled(Call* call) {
    LOG_EVENTS(5,
               "%s():Dialled party: '%s', Called party: '%s;, Called party name: '%s', Remote party: '%s' "
               "Remote party name: '%s'",
               "findAndDeleteMissedEntryWhenCalled", call->m_sDialledParty.c_str(),
               call->m_sCalledParty.c_str(), call->m_sCalledPartyName.c_str(), call->m_sRemoteParty.c_str(),
               call->m_sRemotePartyName.c_str());
    if (!call->m_sCalledParty.empty() || !call->m_sCalledPartyName.empty()) {
        m_entries.deleteMissedEntryOf(call->m_sCalledParty, call->m_sCalledPartyName);
    }
}

}  // namespace journal
