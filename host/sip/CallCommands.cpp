#include "host/sip/CallCommands.h"

#include <optional>
#include <utility>

#include "host/csta-wire/DeviceText.h"
#include "host/sip/SipAddress.h"

namespace host {

namespace {

const PhoneControl::Command kState{.name = "callstat"};

bool isNotFound(const std::vector<PhoneResponse>& responses) {
    return responses.empty() || responses.front().text.find("not found") != std::string::npos;
}

}  // namespace

void CallCommands::perform(const CallControlRequest& request, const std::string& nameSpace,
                           const Reply& reply) {
    if (!m_phone.isConnected()) {
        reply(writeCstaRefusal("systemResourceAvailibility", "deviceOutOfService", nameSpace));
        return;
    }
    switch (request.service) {
        case CallControlService::eMakeCall: makeCall(request, nameSpace, reply); return;
        case CallControlService::eAnswerCall: act(request, "accept", nameSpace, reply); return;
        case CallControlService::eClearConnection: act(request, "hangup", nameSpace, reply); return;
    }
}

void CallCommands::makeCall(const CallControlRequest& request, const std::string& nameSpace,
                            const Reply& reply) {
    const std::string own = comparableNumber(m_calls.own().number);
    if (!request.callingDevice.empty() && comparableNumber(request.callingDevice) != own) {
        reply(writeCstaRefusal("operation", "invalidCallingDeviceID", nameSpace));
        return;
    }
    const std::optional<std::string> number = dialText(request.calledNumber);
    if (!number) {
        reply(writeCstaRefusal("operation", "invalidCalledDeviceID", nameSpace));
        return;
    }
    // The response to `dial` has no id; the new call is the current one.
    m_phone.send({{.name = "dial", .parameters = *number}, kState},
                 [this, nameSpace, reply](const std::vector<PhoneResponse>& responses) {
                     dialled(responses, nameSpace, reply);
                 });
}

void CallCommands::dialled(const std::vector<PhoneResponse>& responses, const std::string& nameSpace,
                           const Reply& reply) {
    const std::optional<SipCallState> call =
        responses.empty() || !responses.front().ok ? std::nullopt : readCallState(responses.back().text);
    if (!call || !call->outgoing || call->state == SipCallState::State::eTalking) {
        reply(writeCstaRefusal("operation", responses.empty() ? "generic" : "invalidDestination", nameSpace));
        return;
    }
    reply(writeCallControlResponse(CallControlService::eMakeCall,
                                   {.callId = cstaCallId(call->id, true), .deviceId = m_calls.own().number},
                                   nameSpace));
    m_publish(m_calls.dialled(call->id, call->peerUri));
}

void CallCommands::act(const CallControlRequest& request, const std::string& command,
                       const std::string& nameSpace, const Reply& reply) {
    const std::optional<SipCalls::Found> call = m_calls.find(request.connection.callId);
    if (!call) {
        reply(writeCstaRefusal("operation", "invalidCallID", nameSpace));
        return;
    }
    if (request.service == CallControlService::eAnswerCall && !call->isRinging) {
        reply(writeCstaRefusal("stateIncompatibility", "noCallToAnswer", nameSpace));
        return;
    }
    const PhoneControl::Command choose{.name = "callfind", .parameters = call->sipId};
    m_phone.send({choose}, [this, choose, command, service = request.service, nameSpace,
                            reply](const std::vector<PhoneResponse>& found) {
        if (isNotFound(found)) {
            reply(writeCstaRefusal("operation", "invalidCallID", nameSpace));
            return;
        }
        m_phone.send({choose, {.name = command}},
                     [service, nameSpace, reply](const std::vector<PhoneResponse>& responses) {
                         const bool done = !isNotFound(responses) && responses.back().ok;
                         reply(done ? writeCallControlResponse(service, {}, nameSpace)
                                    : writeCstaRefusal("operation", "generic", nameSpace));
                     });
    });
}

}  // namespace host
