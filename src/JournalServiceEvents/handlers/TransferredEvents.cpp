#include "src/JournalServiceEvents/handlers/TransferredEvents.h"

#include <algorithm>
#include <cstddef>

#include "platform/client-utils/PercentEncoding.h"
#include "platform/csta/CSTACallControlEvents.h"
#include "platform/texts/SoftwareTypes.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalServiceEvents/handlers/BlindTransfer.h"
#include "src/JournalServiceEvents/handlers/ConnectionClearedEvents.h"

namespace journal {

namespace {

constexpr const char* kLogName = "handleCSTATransferredEvent";

/// True if the phone itself has transferred the call away.
bool isTransferredAway(const CSTATransferredEvent& event) {
    return event.getTransferringDevice().isLocal() && event.getLocalConnectionInfo() == CSTA_LCS_Null;
}

bool ringsHere(const Call& call) {
    return !call.isOutgoing() && (call.m_State == Call::eOffered || call.m_State == Call::eDelivered);
}

void setIfKnown(std::string& number, std::string& name, const CSTADevice& device) {
    if (isKnown(device)) {
        number = device.number;
        name = device.name;
    }
}

// The party that the call was transferred to becomes the connected one; the transferring party has left.
void takeOverParties(Call& call, const Call& old, const CSTATransferredEvent& event, bool sip) {
    call.m_sRemoteParty = old.m_sRemoteParty;
    call.m_sRemotePartyName = old.m_sRemotePartyName;
    call.m_sConnectedParty = old.m_sConnectedParty;
    call.m_sConnectedPartyName = old.m_sConnectedPartyName;
    call.m_sCalledParty = old.m_sCalledParty;
    call.m_sCalledPartyName = old.m_sCalledPartyName;
    call.m_sDialledParty = old.m_sDialledParty;
    call.m_sDialledPartyName = old.m_sDialledPartyName;
    call.m_treatAsIncoming = old.m_treatAsIncoming;
    call.m_ctiAssisted = old.m_ctiAssisted;
    call.m_connectedToMediaServer = old.m_connectedToMediaServer;

    const CSTADevice& partner = event.getTransferredToDevice();
    setIfKnown(call.m_sConnectedParty, call.m_sConnectedPartyName, partner);
    if (!sip) {
        setIfKnown(call.m_sRemoteParty, call.m_sRemotePartyName, partner);
        if (call.isOutgoing()) {
            setIfKnown(call.m_sDialledParty, call.m_sDialledPartyName, partner);
        }
    } else if ((call.isOutgoing() && !call.m_treatAsIncoming) || call.m_ctiAssisted) {
        setIfKnown(call.m_sCalledParty, call.m_sCalledPartyName, partner);
    }
    setIfKnown(call.m_sRedirectingParty, call.m_sRedirectingPartyName, event.getTransferringDevice());
}

void logTakeOver(const Call& before, const Call& call, const Call& old) {
    LOG_EVENTS(
        5,
        "handleCSTATransferredEvent: useCSTACallControlEvents[true], pPrimaryOldCall->m_sRemoteParty[%s], "
        "pPrimaryOldCall->m_sRemotePartyName[%s]",
        old.m_sRemoteParty.c_str(), old.m_sRemotePartyName.c_str());
    LOG_EVENTS(
        5,
        "%s():updating call[%s] remoteParty[%s]->[%s] remotePartyName[%s]->[%s] connectedParty[%s]->[%s] "
        "connectedPartyName[%s]->[%s]",
        kLogName, call.m_sCallId.c_str(), before.m_sRemoteParty.c_str(), call.m_sRemoteParty.c_str(),
        before.m_sRemotePartyName.c_str(), call.m_sRemotePartyName.c_str(), before.m_sConnectedParty.c_str(),
        call.m_sConnectedParty.c_str(), before.m_sConnectedPartyName.c_str(),
        call.m_sConnectedPartyName.c_str());
}

void applyPrivateData(Call& call, const std::string& text) {
    LOG_EVENTS(5, "handleCSTATransferredEvent: private data [%s]", text.c_str());
    const auto data = TransferPrivateData::parse(text);
    if (!data.dialledName.empty()) {
        LOG_EVENTS(5, "%s():m_sDialledPartyName[%s]->[%s]", kLogName, call.m_sDialledPartyName.c_str(),
                   data.dialledName.c_str());
        call.m_sDialledPartyName = data.dialledName;
    }
    if (!data.firstForwarded.number.empty()) {
        LOG_EVENTS(5, "%s():m_sFirstForwardedParty[%s]->[%s], m_sFirstForwardedPartyName[%s]->[%s]", kLogName,
                   call.m_sFirstForwardedParty.c_str(), data.firstForwarded.number.c_str(),
                   call.m_sFirstForwardedPartyName.c_str(), data.firstForwarded.name.c_str());
        call.m_sFirstForwardedParty = data.firstForwarded.number;
        call.m_sFirstForwardedPartyName = data.firstForwarded.name;
    }
    if (!data.redirecting.number.empty()) {
        LOG_EVENTS(5, "%s():m_sRedirectingParty[%s]->[%s], m_sRedirectingPartyName[%s]->[%s]", kLogName,
                   call.m_sRedirectingParty.c_str(), data.redirecting.number.c_str(),
                   call.m_sRedirectingPartyName.c_str(), data.redirecting.name.c_str());
        call.m_sRedirectingParty = data.redirecting.number;
        call.m_sRedirectingPartyName = data.redirecting.name;
    }
}

}  // namespace

TransferPrivateData TransferPrivateData::parse(const std::string& text) {
    TransferPrivateData data;
    const struct {
        const char* key;
        std::string& value;
    } fields[] = {{"dialledName", data.dialledName},
                  {"firstForwardedNumber", data.firstForwarded.number},
                  {"firstForwardedName", data.firstForwarded.name},
                  {"redirectingNumber", data.redirecting.number},
                  {"redirectingName", data.redirecting.name}};
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(';', begin), text.size());
        const std::size_t equals = text.find('=', begin);
        for (const auto& field : fields) {
            if (equals < end && text.compare(begin, equals - begin, field.key) == 0) {
                field.value = percentencoding::decode(text.substr(equals + 1, end - equals - 1));
            }
        }
        begin = end + 1;
    }
    return data;
}

void TransferredEvents::handleCSTATransferredEvent(CSTATransferredEvent* event) {
    LOG_EVENTS(6, "handleCSTATransferredEvent [%s]", event->toString().c_str());
    if (!m_callControl.acceptsEvents()) {
        return;
    }
    const auto settings = m_callControl.settings.values();
    if (!settings->isSip() && settings->m_softwareType != softwaretypes::qorvex) {
        LOG_EVENTS(5, "Unhandled software type.");
        return;
    }
    const CallMap::Section section(m_callControl.calls.m_callMapLock);
    if (settings->isSip() || settings->m_useCSTACallControlEvents) {
        transfer(*event);
    }
    endWait();
}

void TransferredEvents::transfer(const CSTATransferredEvent& event) {
    const auto settings = m_callControl.settings.values();
    const bool transferredAway = isTransferredAway(event);
    if (transferredAway) {
        endSecondaryCall(event);
    }
    // A switch that does not assign the old calls to the devices may name the phone's own call as the
    // secondary one.
    const bool primaryIsOther =
        m_callControl.calls.findCallFromId(event.getPrimaryoldcallCallID()) == nullptr &&
        m_callControl.calls.findCallFromId(event.getSecondaryoldcallCallID()) != nullptr;
    const std::string& oldId =
        primaryIsOther ? event.getSecondaryoldcallCallID() : event.getPrimaryoldcallCallID();
    const std::string newId = event.getConnectionCallID().empty() ? oldId : event.getConnectionCallID();
    if (newId.empty()) {
        return;
    }
    const Call* const known = m_callControl.calls.findCallFromId(oldId);
    const bool transferredHere = event.getTransferredToDevice().isLocal();
    if (transferredHere && known != nullptr && ringsHere(*known)) {
        // The transferring party has left. The new call has events of its own; this one was not missed.
        LOG_EVENTS(5, "%s():Transferred to number is localDeviceID, removing call", kLogName);
        m_callControl.calls.removeCall(oldId);
        return;
    }
    const Call old = known != nullptr ? *known : Call(Call::eDirectionUnknown, oldId, -1);
    Call* const call = m_callControl.tracker.updateCallMap(oldId, newId);
    if (transferredHere) {
        LOG_EVENTS(5, "%s():Transferred to number is localDeviceID, removing call", kLogName);
    }
    if (transferredHere || transferredAway) {
        m_callControl.calls.removeCall(newId);
        return;
    }
    const Call before = *call;
    takeOverParties(*call, old, event, settings->isSip());
    if (settings->isSip()) {
        applyPrivateData(*call, event.getPrivateData());
        if (settings->m_useCSTACallControlEvents) {
            logTakeOver(before, *call, old);
        }
    }
    if (call->m_State == Call::eEstablished) {
        call->m_establishedTimeSec = call->m_startTimeSec;
    }
    call->m_transferred = true;
}

// The second call of the transferring phone ends together with the first one.
void TransferredEvents::endSecondaryCall(const CSTATransferredEvent& event) {
    const std::string& callId = event.getSecondaryoldcallCallID();
    m_callControl.track(m_callControl.calls.findCallFromId(callId),
                        {.state = Call::eCleared, .callId = callId});
}

void TransferredEvents::endWait() {
    if (m_blindTransfer.stopBlindTransferTimer()) {
        m_connectionCleared.handleHeldBackEvent();
    }
}

}  // namespace journal
