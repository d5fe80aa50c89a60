#include "src/JournalServiceEvents/calls/PartyRules.h"

#include "platform/texts/communicationsServiceTexts.h"
#include "src/JournalService/base/Log.h"

namespace journal {

namespace {

constexpr const char* kLogName = "onCallEvent";

bool isBluetooth(const std::string& party) {
    return party == communicationsServiceTexts::content_bluetoothDeviceId;
}

void replaceIfGiven(std::string& value, const std::string& given) {
    if (!given.empty()) {
        value = given;
    }
}

// The call was diverted during its set-up, or another party has diverted it to this phone.
void mergeDiverted(Call& call, Call::directions_t direction, const EventParties& parties) {
    if (call.m_sRemoteParty.empty()) {
        call.m_sRemoteParty = parties.remoteParty;
        replaceIfGiven(call.m_sRemotePartyName, parties.remotePartyName);
    }
    call.m_sConnectedParty = parties.divertedParty;
    replaceIfGiven(call.m_sConnectedPartyName, parties.divertedPartyName);
    if (direction != Call::eIncoming) {
        return;
    }
    call.m_sCalledParty = parties.divertedParty;
    LOG_EVENTS(5, "%s():m_sRedirectingParty[%s]->[%s], m_sRedirectingPartyName[%s]->[%s]", kLogName,
               call.m_sRedirectingParty.c_str(), parties.divertedParty.c_str(),
               call.m_sRedirectingPartyName.c_str(), parties.divertedPartyName.c_str());
    call.m_sRedirectingParty = parties.divertedParty;
    call.m_sRedirectingPartyName = parties.divertedPartyName;
    replaceIfGiven(call.m_sCalledPartyName, parties.divertedPartyName);
}

// The call was forwarded away or failed.
void mergeLeaving(Call& call, const EventParties& parties) {
    if (call.m_sRemoteParty.empty() || call.m_sRemoteParty != parties.divertedParty) {
        LOG_EVENTS(5, "%s():m_sRemoteParty[%s]->[%s]", kLogName, call.m_sRemoteParty.c_str(),
                   parties.remoteParty.c_str());
        call.m_sRemoteParty = parties.remoteParty;
        if (!parties.remotePartyName.empty()) {
            LOG_EVENTS(5, "%s():m_sRemotePartyName[%s]->[%s]", kLogName, call.m_sRemotePartyName.c_str(),
                       parties.remotePartyName.c_str());
            call.m_sRemotePartyName = parties.remotePartyName;
        }
    }
    LOG_EVENTS(5, "%s():m_sConnectedParty[%s]->[%s]", kLogName, call.m_sConnectedParty.c_str(),
               parties.divertedParty.c_str());
    call.m_sConnectedParty = parties.divertedParty;
    if (!parties.divertedPartyName.empty()) {
        LOG_EVENTS(5, "%s():m_sConnectedPartyName[%s]->[%s]", kLogName, call.m_sConnectedPartyName.c_str(),
                   parties.divertedPartyName.c_str());
        call.m_sConnectedPartyName = parties.divertedPartyName;
    }
}

void mergeCalled(Call& call, const EventParties& parties) {
    const bool outdated = call.m_sCalledParty != call.m_sRemoteParty && !parties.remoteParty.empty();
    if ((call.m_sCalledParty.empty() || outdated) && !isBluetooth(call.m_sCalledParty)) {
        LOG_EVENTS(5, "%s():callParty[%s]->[%s]", kLogName, call.m_sCalledParty.c_str(),
                   parties.remoteParty.c_str());
        call.m_sCalledParty = parties.remoteParty;
    }
    if (call.m_sCalledParty != parties.remoteParty) {
        return;
    }
    const std::string& name = call.m_sCalledPartyName;
    const bool keepsName =
        !name.empty() && (name == parties.remotePartyName || parties.remotePartyName.empty());
    if (!keepsName) {
        LOG_EVENTS(5, "%s():callPartyName[%s]->[%s]", kLogName, name.c_str(),
                   parties.remotePartyName.c_str());
        call.m_sCalledPartyName = parties.remotePartyName;
    }
}

void mergeRemote(Call& call, const EventParties& parties) {
    const std::string& party = call.m_sRemoteParty;
    const bool keepsParty = !party.empty() && (party == call.m_sCalledParty || parties.remoteParty.empty());
    if (!keepsParty) {
        LOG_EVENTS(5, "%s():remoteParty[%s]->[%s]", kLogName, party.c_str(), parties.remoteParty.c_str());
        call.m_sRemoteParty = parties.remoteParty;
    }
    if (party != parties.remoteParty) {
        return;
    }
    const std::string& name = call.m_sRemotePartyName;
    const bool keepsName = !name.empty() && (name == call.m_sCalledPartyName || parties.remoteParty.empty());
    if (!keepsName) {
        LOG_EVENTS(5, "%s():remotePartyName[%s]->[%s]", kLogName, name.c_str(),
                   parties.remotePartyName.c_str());
        call.m_sRemotePartyName = parties.remotePartyName;
    }
}

void mergeUndiverted(Call& call, Call::states_t state, const EventParties& parties) {
    if (state == Call::eOriginated && call.m_sDialledParty.empty()) {
        LOG_EVENTS(5, "%s():m_sDialledParty[%s]->[%s]", kLogName, call.m_sDialledParty.c_str(),
                   parties.remoteParty.c_str());
        call.m_sDialledParty = parties.remoteParty;
        return;
    }
    mergeCalled(call, parties);
    mergeRemote(call, parties);
    if (call.m_sCalledParty == parties.remoteParty && call.m_sRemoteParty == call.m_sConnectedParty) {
        call.m_sCalledPartyName = parties.remotePartyName;
    }
}

void mergeEstablished(Call& call, const EventParties& parties) {
    LOG_EVENTS(5, "%s():pCall->m_State[%d] pCall->m_sConnectedParty[%s]", kLogName,
               static_cast<int>(call.m_State), call.m_sConnectedParty.c_str());
    if (!call.m_sConnectedParty.empty()) {
        call.m_sConnectedParty = parties.remoteParty;
        call.m_sConnectedPartyName = parties.remotePartyName;
    } else {
        call.m_sConnectedParty = parties.remoteParty.empty() ? call.m_sRemoteParty : parties.remoteParty;
        replaceIfGiven(call.m_sConnectedPartyName, parties.remotePartyName);
    }
    if (!isBluetooth(call.m_sDialledParty)) {
        call.m_sDialledParty = parties.remoteParty;
    }
}

void mergeForwardedAway(Call& call, const EventParties& parties) {
    if (call.m_sCalledParty.empty()) {
        LOG_EVENTS(5, "%s():m_sCalledParty[%s]->[%s]", kLogName, call.m_sCalledParty.c_str(),
                   parties.remoteParty.c_str());
        call.m_sCalledParty = parties.remoteParty;
    }
    if (call.m_sCalledParty == parties.remoteParty) {
        LOG_EVENTS(5, "%s():m_sCalledPartyName[%s]->[%s]", kLogName, call.m_sCalledPartyName.c_str(),
                   parties.remotePartyName.c_str());
        call.m_sCalledPartyName = parties.remotePartyName;
    }
    LOG_EVENTS(5, "%s():m_sCalledParty[%s]", kLogName, call.m_sCalledParty.c_str());
    LOG_EVENTS(5, "%s():m_sCalledPartyName[%s]", kLogName, call.m_sCalledPartyName.c_str());
}

void logParties(const Call& call) {
    LOG_EVENTS(5, "%s():callParty[%s]", kLogName, call.m_sCalledParty.c_str());
    LOG_EVENTS(5, "%s():callPartyName[%s]", kLogName, call.m_sCalledPartyName.c_str());
    LOG_EVENTS(5, "%s():remoteParty[%s]", kLogName, call.m_sRemoteParty.c_str());
    LOG_EVENTS(5, "%s():remotePartyName[%s]", kLogName, call.m_sRemotePartyName.c_str());
}

}  // namespace

void mergeSipParties(Call& call, Call::states_t state, Call::directions_t direction,
                     const EventParties& parties) {
    LOG_EVENTS(5, "%s():sDivertedParty[%s]", kLogName, parties.divertedParty.c_str());
    const bool diverted = !parties.divertedParty.empty();
    if (!diverted) {
        mergeUndiverted(call, state, parties);
    } else if (state == Call::eForwarded || state == Call::eFailed) {
        mergeLeaving(call, parties);
    } else {
        mergeDiverted(call, direction, parties);
    }
    logParties(call);
    if (!diverted) {
        if (state == Call::eEstablished) {
            mergeEstablished(call, parties);
        }
        LOG_EVENTS(5, "%s():m_sConnectedParty[%s]", kLogName, call.m_sConnectedParty.c_str());
        LOG_EVENTS(5, "%s():m_sConnectedPartyName[%s]", kLogName, call.m_sConnectedPartyName.c_str());
        if (state == Call::eForwarded && call.isOutgoing()) {
            mergeForwardedAway(call, parties);
        }
    }
    if (call.m_sRemotePartyName == kCtiAssisted) {
        call.m_ctiAssisted = true;
    }
    for (std::string* const name :
         {&call.m_sRemotePartyName, &call.m_sCalledPartyName, &call.m_sConnectedPartyName}) {
        if (*name == kCtiAssisted) {
            name->clear();
        }
    }
}

}  // namespace journal
