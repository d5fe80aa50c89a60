#include "src/JournalServiceEvents/handlers/TransferredEvents.h"

#include <algorithm>
#include <cstddef>
#include <memory>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/texts/SoftwareTypes.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalServiceEvents/handlers/BlindTransfer.h"

namespace journal {

namespace {

constexpr const char* kLogName = "handleCSTATransferredEvent";

/// The phone itself has handed the call on.
bool leavesThePhone(const CSTATransferredEvent& event) {
    return event.getTransferringDevice().isLocal() && event.getLocalConnectionInfo() == CSTA_LCS_Null;
}

void take(std::string& number, std::string& name, const CSTADevice& device) {
    if (isKnown(device)) {
        number = device.number;
        name = device.name;
    }
}

// Who is connected now: the party that the call was transferred to; the one that transferred it has left.
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
    take(call.m_sConnectedParty, call.m_sConnectedPartyName, partner);
    if (!sip) {
        take(call.m_sRemoteParty, call.m_sRemotePartyName, partner);
        if (call.isOutgoing()) {
            take(call.m_sDialledParty, call.m_sDialledPartyName, partner);
        }
    } else if ((call.isOutgoing() && !call.m_treatAsIncoming) || call.m_ctiAssisted) {
        take(call.m_sCalledParty, call.m_sCalledPartyName, partner);
    }
    take(call.m_sRedirectingParty, call.m_sRedirectingPartyName, event.getTransferringDevice());
}

void logTakenOver(const Call& before, const Call& call, const Call& old) {
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

int hexValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    if (digit >= 'a' && digit <= 'f') {
        return digit - 'a' + 10;
    }
    return digit >= 'A' && digit <= 'F' ? digit - 'A' + 10 : -1;
}

/// A '%' that two hexadecimal digits do not follow stands for itself.
std::string percentDecoded(const std::string& text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? hexValue(text[i + 1]) : -1;
        const int low = high >= 0 ? hexValue(text[i + 2]) : -1;
        if (low < 0) {
            decoded.push_back(text[i]);
        } else {
            decoded.push_back(static_cast<char>(high * 16 + low));
            i += 2;
        }
    }
    return decoded;
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
                field.value = percentDecoded(text.substr(equals + 1, end - equals - 1));
            }
        }
        begin = end + 1;
    }
    return data;
}

void TransferredEvents::handleCSTATransferredEvent(CSTATransferredEvent* event) {
    LOG_EVENTS(6, "handleCSTATransferredEvent [%s]", event->toString().c_str());
    if (!m_parts.acceptsEvents()) {
        return;
    }
    const auto settings = m_parts.settings.values();
    if (!settings->isSip() && settings->m_softwareType != softwareTypes::qorvex) {
        LOG_EVENTS(5, "Unhandled software type.");
        return;
    }
    const CallMap::Section section(m_parts.calls.m_callMapLock);
    if (settings->isSip() || settings->m_useCSTACallControlEvents) {
        transfer(*event);
    }
    endWait();
}

void TransferredEvents::transfer(const CSTATransferredEvent& event) {
    const auto settings = m_parts.settings.values();
    const bool leaves = leavesThePhone(event);
    if (leaves) {
        endSecondaryCall(event);
    }
    // A switch that does not say whose old call is whose may name the phone's own as the secondary one.
    const bool primaryIsOther = m_parts.calls.findCallFromId(event.getPrimaryoldcallCallID()) == nullptr &&
                                m_parts.calls.findCallFromId(event.getSecondaryoldcallCallID()) != nullptr;
    const std::string& oldId =
        primaryIsOther ? event.getSecondaryoldcallCallID() : event.getPrimaryoldcallCallID();
    const std::string newId = event.getConnectionCallID().empty() ? oldId : event.getConnectionCallID();
    if (newId.empty()) {
        return;
    }
    const Call* const known = m_parts.calls.findCallFromId(oldId);
    const Call old = known != nullptr ? *known : Call(Call::eDirectionUnknown, oldId, -1);
    Call* const call = m_parts.tracker.updateCallMap(oldId, newId);
    const bool arrives = event.getTransferredToDevice().isLocal();
    if (arrives) {
        LOG_EVENTS(5, "%s():Transferred to number is localDeviceID, removing call", kLogName);
    }
    if (arrives || leaves) {
        m_parts.calls.removeCall(newId);
        return;
    }
    const Call before = *call;
    takeOverParties(*call, old, event, settings->isSip());
    if (settings->isSip()) {
        applyPrivateData(*call, event.getPrivateData());
        if (settings->m_useCSTACallControlEvents) {
            logTakenOver(before, *call, old);
        }
    }
    if (call->m_State == Call::eEstablished) {
        call->m_establishedTimeSec = call->m_startTimeSec;
    }
    call->m_transferred = true;
}

// The second call of the transferring phone leaves it with the first one.
void TransferredEvents::endSecondaryCall(const CSTATransferredEvent& event) {
    const std::string& callId = event.getSecondaryoldcallCallID();
    m_parts.pass(m_parts.calls.findCallFromId(callId), Call::eCleared, Call::eDirectionUnknown, callId, {});
}

void TransferredEvents::endWait() {
    if (!m_blindTransfer.stopBlindTransferTimer()) {
        return;
    }
    if (const auto pending = m_blindTransfer.takePending()) {
        m_sink.immediatelyhandleCSTAConnectionClearedEvent(pending.get());
    }
}

}  // namespace journal
