#include "src/JournalServiceEvents/calls/CallTracker.h"

#include <memory>
#include <utility>

#include "src/JournalService/base/CrestUserInterface.h"
#include "src/JournalService/base/JournalClock.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalServiceEvents/calls/CallMap.h"
#include "src/JournalServiceEvents/calls/FinishedCallsIfc.h"
#include "src/JournalServiceEvents/calls/PartyRules.h"

namespace journal {

namespace {

void logEvent(const std::string& callId, Call::states_t state, const EventParties& parties) {
    LOG_EVENTS(5,
               "%s():callid: '%s', state: %d, remoteparty: '%s', remotepartyname: '%s', divertedparty: '%s', "
               "divertedpartyname: '%s'",
               "onCallEvent", callId.c_str(), static_cast<int>(state), parties.remoteParty.c_str(),
               parties.remotePartyName.c_str(), parties.divertedParty.c_str(),
               parties.divertedPartyName.c_str());
}

void logRecord(const Call& call) {
    LOG_EVENTS(5,
               "%s():current pCall %p contents: dialled:'%s', remoteparty: '%s', remotepartyname: '%s', "
               "divertedparty: '%s', divertedpartyname: '%s'",
               "onCallEvent", static_cast<const void*>(&call), call.m_sDialledParty.c_str(),
               call.m_sRemoteParty.c_str(), call.m_sRemotePartyName.c_str(), call.m_sConnectedParty.c_str(),
               call.m_sConnectedPartyName.c_str());
}

}  // namespace

// The strings are values, because an argument may belong to the record, which may be removed here.
// NOLINTNEXTLINE(readability-function-size): the signature is fixed.
bool CallTracker::onCallEvent(Call* call, Call::states_t state, Call::directions_t direction,
                              std::string callId,  // NOLINT(performance-unnecessary-value-param)
                              std::string remoteParty, std::string remotePartyName, std::string divertedParty,
                              std::string divertedPartyName, bool treatAsIncoming) {
    const EventParties parties{.remoteParty = std::move(remoteParty),
                               .remotePartyName = std::move(remotePartyName),
                               .divertedParty = std::move(divertedParty),
                               .divertedPartyName = std::move(divertedPartyName)};
    logEvent(callId, state, parties);
    const bool sip = m_settings.values()->isSip();
    if (call != nullptr) {
        logRecord(*call);
    } else {
        call = createCall(state, direction, callId, parties, sip);
        if (call == nullptr) {
            return false;
        }
    }
    if (sip && treatAsIncoming) {
        call->m_treatAsIncoming = true;
    }
    if (direction == Call::eDirectionUnknown) {
        direction = call->m_Direction;
    } else if (call->m_Direction == Call::eDirectionUnknown) {
        call->m_Direction = direction;
    }
    if (sip) {
        mergeSipParties(*call, state, direction, parties);
    } else {
        mergeQorvexParties(*call, state, parties);
    }
    return setCallState(call, state, direction);
}

Call* CallTracker::createCall(Call::states_t state, Call::directions_t direction, const std::string& callId,
                              const EventParties& parties, bool sip) {
    if (state == Call::eCleared) {
        return nullptr;
    }
    if (callId.empty()) {
        if (sip) {
            LOG_EVENTS(
                5,
                "%s():state: %i, direction: %i, call id: %s, remote party: %s, remote name: %s, diverted "
                "party: %s, diverted name: %s",
                "onCallEvent", static_cast<int>(state), static_cast<int>(direction), callId.c_str(),
                parties.remoteParty.c_str(), parties.remotePartyName.c_str(), parties.divertedParty.c_str(),
                parties.divertedPartyName.c_str());
        } else {
            LOG_EVENTS(5, "%s():Call identifier is empty", "onCallEvent");
        }
        return nullptr;
    }
    return enterCall(direction, callId);
}

Call* CallTracker::enterCall(Call::directions_t direction, const std::string& callId) {
    return m_calls.insertEntryToCallMap(
        callId, std::make_unique<Call>(direction, callId, m_clock.getCurrentTimeSec()));
}

bool CallTracker::setCallState(Call* call, Call::states_t newState, Call::directions_t direction) {
    if (call == nullptr) {
        LOG_EVENTS(5, "%s():pCall is NULL", "setCallState");
        return false;
    }
    if (call->m_Direction != direction) {
        LOG_EVENTS(3, "{%s} Ambiguous direction", call->m_sCallId.c_str());
        m_calls.removeCall(call->m_sCallId);
        return false;
    }
    LOG_EVENTS(5, "%s():{%s} State: %d, Old State: %d, Direction: %d, TreatAsIncoming: %c", "setCallState",
               call->m_sCallId.c_str(), static_cast<int>(newState), static_cast<int>(call->m_State),
               static_cast<int>(direction), call->m_treatAsIncoming ? 'Y' : 'N');
    switch (newState) {
        case Call::eOriginated:
        case Call::eOffered:
        case Call::eDelivered:
        case Call::eCallInformation: return raiseState(*call, newState);
        case Call::eEstablished: return establish(*call);
        case Call::eForwarded: return forward(*call);
        case Call::eCleared: return clear(*call);
        case Call::eFailed:
            LOG_EVENTS(5, "%s():Failed - will create call entry now", "setCallState");
            return m_finished.createCallEntryAndRemoveCall(call, Call::eFailed);
        case Call::eUnknown: break;
    }
    LOG_EVENTS(5, "%s():Unknown Call State", "setCallState");
    return false;
}

bool CallTracker::raiseState(Call& call, Call::states_t newState) {
    if (call.m_State >= newState) {
        LOG_EVENTS(5, "%s():Wrong call transition", "setCallState");
        return false;
    }
    if (call.m_State != Call::eForwarded) {
        call.m_State = newState;
    }
    return true;
}

bool CallTracker::establish(Call& call) {
    LOG_EVENTS(5, "%s():{%s} eEstablished", "setCallState", call.m_sCallId.c_str());
    const auto oldState = call.m_State;
    if (call.isOutgoing() && m_settings.values()->m_deleteMissedWhenCalled &&
        (oldState == Call::eOriginated || oldState == Call::eDelivered)) {
        m_finished.findAndDeleteMissedEntryWhenCalled(&call);
    }
    if (oldState <= Call::eDelivered || call.m_treatAsIncoming) {
        call.m_establishedTimeSec = m_clock.getCurrentTimeSec();
        if (oldState != Call::eForwarded) {
            call.m_State = Call::eEstablished;
        }
        return true;
    }
    if (oldState == Call::eEstablished) {
        return true;
    }
    LOG_EVENTS(5, "%s():Unexpected JS Call State(%d)", "setCallState", static_cast<int>(oldState));
    LOG_EVENTS(5, "%s():Unknown Call State", "setCallState");
    return false;
}

bool CallTracker::forward(const Call& call) {
    if (call.m_Direction != Call::eIncoming && !call.m_treatAsIncoming) {
        if (!isUsingCrestUX()) {
            return true;
        }
    } else {
        LOG_EVENTS(5, "%s():Forwarded - will create call entry now", "setCallState");
    }
    return m_finished.createCallEntryAndRemoveCall(&call, Call::eForwarded);
}

bool CallTracker::clear(Call& call) {
    LOG_EVENTS(5, "%s():Cleared - will create call entry now", "setCallState");
    if (call.m_establishedTimeSec != -1) {
        call.m_endTimeSec = m_clock.getCurrentTimeSec();
    }
    return m_finished.createCallEntryAndRemoveCall(&call, call.m_State);
}

Call* CallTracker::updateCallMap(const std::string& oldId, const std::string& newId) {
    LOG_EVENTS(5, "%s():[%s][%s]", "updateCallMap", oldId.c_str(), newId.c_str());
    auto state = Call::eUnknown;
    auto direction = Call::eDirectionUnknown;
    std::string lineKey;
    if (Call* old = m_calls.findCallFromId(oldId)) {
        old->m_endTimeSec = m_clock.getCurrentTimeSec();
        state = old->m_State;
        direction = old->m_Direction;
        lineKey = old->m_sLineKey;
        m_finished.createCallEntryAndRemoveCall(old, state);
        // No event will name the old id again, so a leg that the completion keeps is removed as well.
        if (m_calls.findCallFromId(oldId) != nullptr) {
            m_calls.removeCall(oldId);
        }
    }
    auto call = std::make_unique<Call>(direction, newId, m_clock.getCurrentTimeSec());
    call->m_State = state;
    call->m_sLineKey = lineKey;
    return m_calls.insertEntryToCallMap(newId, std::move(call));
}

}  // namespace journal
