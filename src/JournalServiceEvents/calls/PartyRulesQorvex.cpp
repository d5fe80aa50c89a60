#include "src/JournalServiceEvents/calls/PartyRules.h"

#include "platform/texts/communicationsServiceTexts.h"

namespace journal {

namespace {

void mergeDiverted(Call& call, const EventParties& parties) {
    if (call.m_sRemoteParty.empty() || call.m_sRemoteParty != parties.divertedParty) {
        call.m_sRemoteParty = parties.divertedParty;
        call.m_sRemotePartyName = parties.divertedPartyName;
    }
    call.m_sConnectedParty = parties.remoteParty;
    call.m_sConnectedPartyName = parties.remotePartyName;
}

void mergeRemote(Call& call, const EventParties& parties) {
    if (call.m_sRemoteParty.empty()) {
        call.m_sRemoteParty = parties.remoteParty;
    }
    if (call.m_sRemoteParty == parties.remoteParty && call.m_sRemotePartyName.empty()) {
        call.m_sRemotePartyName = parties.remotePartyName;
    }
    if (call.m_sCallId == communicationsServiceTexts::content_bluetoothDeviceId &&
        call.m_sRemoteParty == communicationsServiceTexts::noNumberProvided && !parties.remoteParty.empty()) {
        call.m_sRemoteParty = parties.remoteParty;
    }
}

void mergeConnected(Call& call, const EventParties& parties) {
    call.m_sConnectedParty = parties.remoteParty.empty() ? call.m_sRemoteParty : parties.remoteParty;
    if (!parties.remotePartyName.empty()) {
        call.m_sConnectedPartyName = parties.remotePartyName;
    }
}

}  // namespace

void mergeQorvexParties(Call& call, Call::states_t state, const EventParties& event) {
    EventParties parties = event;
    for (std::string* const name : {&parties.remotePartyName, &parties.divertedPartyName}) {
        if (*name == kCtiAssisted) {
            name->clear();
        }
    }
    if (!parties.divertedParty.empty()) {
        mergeDiverted(call, parties);
        return;
    }
    mergeRemote(call, parties);
    if (state == Call::eEstablished && call.m_State != Call::eEstablished) {
        mergeConnected(call, parties);
    }
}

}  // namespace journal
