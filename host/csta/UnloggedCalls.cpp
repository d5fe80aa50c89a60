#include "host/csta/UnloggedCalls.h"

#include <algorithm>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAConferenceEvents.h"
#include "platform/csta/CSTAEventCause.h"
#include "platform/csta/CSTAPrivateEvents.h"

namespace host {

namespace {

/// The ids of all calls that the event is about.
std::vector<std::string> callIdsOf(const CSTAEvent& event) {
    if (const auto* transferred = dynamic_cast<const CSTATransferredEvent*>(&event)) {
        return {transferred->getConnectionCallID(), transferred->getPrimaryoldcallCallID(),
                transferred->getSecondaryoldcallCallID()};
    }
    if (const auto* control = dynamic_cast<const CSTACallControlEvent*>(&event)) {
        return {control->getConnectionCallID()};
    }
    if (const auto* conference = dynamic_cast<const CSTAConferencedEvent*>(&event)) {
        return {conference->getConferenceCallID(), conference->getPrimaryoldcallCallID(),
                conference->getSecondaryoldcallCallID()};
    }
    if (const auto* members = dynamic_cast<const CSTAConferenceMembershipEvent*>(&event)) {
        return {members->getCallID()};
    }
    return {};
}

void addParties(std::vector<std::string>& numbers, const CSTACallControlEvent& event) {
    numbers.insert(numbers.end(), {event.getCallingDevice().number, event.getCalledDevice().number,
                                   event.getLastRedirectionDevice().number});
    if (const auto* established = dynamic_cast<const CSTAEstablishedEvent*>(&event)) {
        numbers.push_back(established->getAnsweringDevice().number);
    } else if (const auto* diverted = dynamic_cast<const CSTADivertedEvent*>(&event)) {
        numbers.push_back(diverted->getNewDestination().number);
    } else if (const auto* transferred = dynamic_cast<const CSTATransferredEvent*>(&event)) {
        numbers.push_back(transferred->getTransferringDevice().number);
        numbers.push_back(transferred->getTransferredToDevice().number);
    }
}

/// The numbers of the parties that the event names.
std::vector<std::string> numbersOf(const CSTAEvent& event) {
    std::vector<std::string> numbers;
    if (const auto* control = dynamic_cast<const CSTACallControlEvent*>(&event)) {
        addParties(numbers, *control);
    } else if (const auto* members = dynamic_cast<const CSTAConferenceMembershipEvent*>(&event)) {
        std::string name;
        std::string number;
        for (std::size_t at = 1; members->getUserInformation(at, name, number); ++at) {
            numbers.push_back(number);
        }
    } else if (const auto* conference = dynamic_cast<const CSTAConferencedEvent*>(&event)) {
        numbers.resize(2);
        conference->getPrimaryoldcallDeviceID(numbers[0]);
        conference->getSecondaryoldcallDeviceID(numbers[1]);
    } else if (const auto* callBack = dynamic_cast<const CSTACallBackEvent*>(&event)) {
        numbers = {callBack->getOriginatingDevice().number, callBack->getTargetDevice().number};
    } else if (const auto* report = dynamic_cast<const CSTAPrivateEvent*>(&event)) {
        // The deletion of an entry that is kept from before is carried out.
        const CallLogEntryEvent* const entry = report->getCallLogEntry();
        if (entry != nullptr && entry->action == CallLogEntryEvent::eAdd) {
            numbers = {entry->subscriberNumber, entry->textC};
        }
    }
    return numbers;
}

}  // namespace

bool UnloggedCalls::hasUnloggedParty(const PhoneCall& call) const {
    const auto isUnlogged = [this](const std::string& number) {
        return !number.empty() && m_isUnlogged(number);
    };
    return isUnlogged(call.calling.number) || isUnlogged(call.called.number) ||
           isUnlogged(call.redirecting.number) || isUnlogged(call.partner.number) ||
           std::any_of(call.others.begin(), call.others.end(), isUnlogged);
}

bool UnloggedCalls::namesUnlogged(const CSTAEvent& event) const {
    const std::vector<std::string> numbers = numbersOf(event);
    return std::any_of(numbers.begin(), numbers.end(),
                       [this](const std::string& number) { return !number.empty() && m_isUnlogged(number); });
}

UnloggedCalls::Kept UnloggedCalls::changed(const PhoneCall& call) {
    if (!m_isUnlogged) {
        return Kept::eYes;
    }
    State& state = m_states[{call.device, call.callId}];
    if (std::exchange(state.over, false)) {
        state.unlogged = false;  // another call with the id of one that has just ended
    }
    state.unlogged = state.unlogged || hasUnloggedParty(call);
    if (!state.unlogged) {
        state.known = call;
    }
    return state.unlogged ? Kept::eNo : Kept::eYes;
}

UnloggedCalls::Kept UnloggedCalls::ended(const PhoneCall& call) {
    const auto found = m_states.find({call.device, call.callId});
    if (found == m_states.end()) {
        return Kept::eYes;
    }
    found->second.over = true;
    return found->second.known ? Kept::eYes : Kept::eNo;
}

bool UnloggedCalls::isKnown(const PhoneCall& call) const {
    const auto found = m_states.find({call.device, call.callId});
    return found != m_states.end() && found->second.known;
}

bool UnloggedCalls::isDropped(const std::string& device, const CSTAEvent& event) const {
    if (!m_isUnlogged) {
        return false;
    }
    const std::vector<std::string> ids = callIdsOf(event);
    return namesUnlogged(event) || std::any_of(ids.begin(), ids.end(), [&](const std::string& id) {
               const auto found = m_states.find({device, id});
               return found != m_states.end() && found->second.unlogged;
           });
}

std::vector<PhoneEvent> UnloggedCalls::filtered(const std::string& device, std::vector<PhoneEvent> events,
                                                std::vector<PhoneCallKey>& ended) {
    if (!m_isUnlogged) {
        return events;
    }
    std::vector<PhoneEvent> left;
    for (PhoneEvent& event : events) {
        if (!isDropped(device, *event.event)) {
            left.push_back(std::move(event));
            continue;
        }
        for (const std::string& id : callIdsOf(*event.event)) {
            const auto found = m_states.find({device, id});
            if (found == m_states.end()) {
                continue;
            }
            found->second.unlogged = true;
            if (const auto known = std::exchange(found->second.known, std::nullopt)) {
                left.push_back({.event = clearedEvent(*known, event.event->getMonitorCrossRefID(),
                                                      CSTA_EC_NormalClearing),
                                .time = event.time,
                                .endApproximate = event.endApproximate});
                if (std::find(ended.begin(), ended.end(), keyOf(*known)) == ended.end()) {
                    ended.push_back(keyOf(*known));
                }
            }
        }
    }
    std::erase_if(m_states, [](const auto& each) { return each.second.over; });
    return left;
}

}  // namespace host
