#include "host/calls/PhoneCalls.h"

#include <algorithm>

#include "host/calls/CallClock.h"
#include "platform/csta/CSTACallControlEvents.h"

namespace host {

const PhoneCall* PhoneCalls::find(std::string_view device, std::string_view callId) const {
    const auto found = m_calls.find({std::string(device), std::string(callId)});
    return found == m_calls.end() ? nullptr : &found->second;
}

void PhoneCalls::store(PhoneCall call) {
    Key key(call.device, call.callId);
    if (!call.clockOffset) {
        const auto known = m_calls.find(key);
        call.clockOffset = known == m_calls.end() ? Moment::now().offset() : known->second.clockOffset;
    }
    const PhoneCall& stored = m_calls.insert_or_assign(std::move(key), std::move(call)).first->second;
    updateCount();
    for (const Listener& listener : m_listeners) {
        if (listener.changed) {
            listener.changed(stored);
        }
    }
}

void PhoneCalls::remove(std::string_view device, std::string_view callId) {
    const auto found = m_calls.find({std::string(device), std::string(callId)});
    if (found == m_calls.end()) {
        return;
    }
    const PhoneCall ended = std::move(found->second);
    m_calls.erase(found);
    updateCount();
    for (const Listener& listener : m_listeners) {
        if (listener.ended) {
            listener.ended(ended);
        }
    }
}

void PhoneCalls::clear() {
    m_calls.clear();
    m_count = 0;
}

std::vector<PhoneCall> PhoneCalls::all() const {
    std::vector<PhoneCall> calls;
    calls.reserve(m_calls.size());
    for (const auto& [key, call] : m_calls) {
        calls.push_back(call);
    }
    return calls;
}

std::vector<PhoneCall> PhoneCalls::membersOf(std::string_view device, std::string_view conferenceId) const {
    std::vector<PhoneCall> members;
    for (const auto& [key, call] : m_calls) {
        if (call.device == device && !conferenceId.empty() && call.conferenceId == conferenceId) {
            members.push_back(call);
        }
    }
    return members;
}

PhoneCall::Time PhoneCalls::timeOf(const CSTAEvent& event, std::string_view device) const {
    const PhoneCall* call = nullptr;
    if (const auto* transferred = dynamic_cast<const CSTATransferredEvent*>(&event)) {
        call = find(device, transferred->getPrimaryoldcallCallID());
    } else if (const auto* control = dynamic_cast<const CSTACallControlEvent*>(&event)) {
        call = find(device, control->getConnectionCallID());
    }
    return call == nullptr ? std::chrono::system_clock::now() : timeIn(*call, Moment::now());
}

void PhoneCalls::updateCount() {
    m_count = static_cast<std::size_t>(std::count_if(
        m_calls.begin(), m_calls.end(), [](const auto& each) { return each.second.conferenceId.empty(); }));
}

}  // namespace host
