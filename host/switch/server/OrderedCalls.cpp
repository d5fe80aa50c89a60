#include "host/switch/server/OrderedCalls.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "host/csta-wire/DeviceText.h"
#include "host/csta-wire/NameSpaces.h"

namespace host {

namespace {

using Side = SwitchCall::Side;

}  // namespace

OrderedCalls::OrderedCalls(asio::io_context& io, const SwitchOptions& options, Handlers handlers)
    : m_io(io),
      m_options(options),
      m_nameSpace(cstaNameSpace(options.edition)),
      m_handlers(std::move(handlers)) {}

bool OrderedCalls::handle(const WireDocument& message, const CstaServer::Reply& reply) {
    const std::optional<CallControlRequest> request = readCallControlRequest(message);
    if (!request) {
        return false;
    }
    SwitchEvents events;
    switch (request->service) {
        case CallControlService::eMakeCall: reply(makeCall(*request, events)); break;
        case CallControlService::eAnswerCall: reply(answerCall(*request, events)); break;
        case CallControlService::eClearConnection: reply(clearConnection(*request, events)); break;
    }
    publish(events);
    return true;
}

void OrderedCalls::addLiveCalls(std::vector<LiveCall>& calls) const {
    for (const auto& [id, ordered] : m_calls) {
        calls.push_back(ordered->call.live());
    }
}

std::string OrderedCalls::makeCall(const CallControlRequest& request, SwitchEvents& events) {
    const std::string device = deviceOf(request.callingDevice);
    if (!m_handlers.isMonitored(device)) {
        return refusal("operation", "invalidCallingDeviceID");
    }
    const std::string number = parseDeviceText(request.calledNumber).number;
    if (number.empty()) {
        return refusal("operation", "invalidCalledDeviceID");
    }
    if (comparableNumber(number) == comparableNumber(device)) {
        return refusal("operation", "invalidDestination");
    }
    const std::string callId = m_handlers.newCallId();
    SwitchCall call(callId, {device, {}, false}, {number, {}, false}, {}, {});
    events = call.originate("makeCall");
    m_calls.emplace(callId, std::unique_ptr<Ordered>(new Ordered{std::move(call), asio::steady_timer(m_io)}));
    continueLater(callId);
    return writeCallControlResponse(request.service, {.callId = callId, .deviceId = device}, m_nameSpace);
}

std::string OrderedCalls::answerCall(const CallControlRequest& request, SwitchEvents& events) {
    SwitchCall* const call = find(request.connection);
    if (call == nullptr) {
        return refusal("operation", "invalidCallID");
    }
    if (call->sideOf(deviceOf(request.connection.deviceId)) != Side::eCalled || !call->isRinging()) {
        return refusal("stateIncompatibility", "noCallToAnswer");
    }
    events = {call->answerCall()};
    return writeCallControlResponse(request.service, {}, m_nameSpace);
}

std::string OrderedCalls::clearConnection(const CallControlRequest& request, SwitchEvents& events) {
    SwitchCall* const call = find(request.connection);
    if (call == nullptr) {
        return refusal("operation", "invalidCallID");
    }
    events = call->hangUp(*call->sideOf(deviceOf(request.connection.deviceId)), "normalClearing");
    return writeCallControlResponse(request.service, {}, m_nameSpace);
}

/// The live call of the connection in which its device takes part, or null.
SwitchCall* OrderedCalls::find(const WireConnection& connection) {
    const std::string device = deviceOf(connection.deviceId);
    const auto found = std::find_if(m_calls.begin(), m_calls.end(), [&](const auto& each) {
        return (connection.callId.empty() || each.first == connection.callId) &&
               each.second->call.sideOf(device);
    });
    return found == m_calls.end() ? m_handlers.findCall(connection.callId, device) : &found->second->call;
}

std::string OrderedCalls::deviceOf(const std::string& text) const {
    const std::string number = parseDeviceText(text).number;
    return number.empty() ? m_options.device : number;
}

std::string OrderedCalls::refusal(std::string_view category, std::string_view value) const {
    return writeCstaRefusal(category, value, m_nameSpace);
}

void OrderedCalls::publish(const SwitchEvents& events) {
    for (const SwitchEvent& event : events) {
        m_handlers.event(event);
    }
    removeOver();
}

void OrderedCalls::continueLater(const std::string& callId) {
    asio::steady_timer& timer = m_calls.at(callId)->timer;
    timer.expires_after(m_options.calleePause);
    timer.async_wait([this, callId](std::error_code error) {
        if (!error && m_calls.contains(callId)) {
            proceed(callId);
        }
    });
}

void OrderedCalls::proceed(const std::string& callId) {
    SwitchCall& call = m_calls.at(callId)->call;
    const std::string state = std::as_const(call).end(Side::eCalled).state;
    if (m_options.callee == Callee::eBusy) {
        publish(call.fail("busy"));
    } else if (state == "null") {
        if (m_options.callee == Callee::eTakesCall) {
            continueLater(callId);
        }
        publish({call.ring()});
    } else if (state == "alerting") {
        publish({call.answerCall()});
    }
}

void OrderedCalls::removeOver() {
    for (auto each = m_calls.begin(); each != m_calls.end();) {
        each = each->second->call.isOver() ? m_calls.erase(each) : std::next(each);
    }
}

}  // namespace host
