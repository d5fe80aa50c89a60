#include "host/sip/CallCommands.h"

#include <optional>
#include <utility>

#include "host/csta-wire/DeviceText.h"
#include "host/log/PrivateText.h"
#include "host/sip/SipAddress.h"
#include "platform/logging/Logging.h"

namespace host {

namespace {

constexpr const char* kComponent = "SIP Gateway";
const PhoneControl::Command kState{.name = "callstat"};

PhoneControl::Command chosen(const SipCalls::Found& call) {
    return {.name = "callfind", .parameters = call.sipId};
}

std::string outOfService(const std::string& nameSpace) {
    return writeCstaRefusal("systemResourceAvailibility", "deviceOutOfService", nameSpace);
}

/// Requires: there is a response.
bool isNotFound(const std::vector<PhoneResponse>& responses) {
    return !responses.front().ok || responses.front().text.find("not found") != std::string::npos;
}

/// A telephone without the command refuses it. Of two `accept` one is enough.
bool isDone(const std::vector<PhoneControl::Command>& commands, const std::vector<PhoneResponse>& responses,
            const std::string& command) {
    for (std::size_t i = 0; i < responses.size(); ++i) {
        if (commands[i].name == command && responses[i].ok) {
            return true;
        }
    }
    return false;
}

}  // namespace

void CallCommands::perform(const CallControlRequest& request, const std::string& nameSpace,
                           const Reply& reply) {
    const bool canDial = m_status.state().kind == PhoneState::Kind::eReady;
    if (!m_phone.isConnected() || (request.service == CallControlService::eMakeCall && !canDial)) {
        reply(outOfService(nameSpace));
        return;
    }
    switch (request.service) {
        case CallControlService::eMakeCall: makeCall(request, nameSpace, reply); return;
        case CallControlService::eAnswerCall:
        case CallControlService::eClearConnection: act(request, nameSpace, reply); return;
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
    if (responses.empty()) {
        reply(outOfService(nameSpace));
        return;
    }
    const std::optional<SipCallState> call =
        responses.front().ok ? readCallState(responses.back().text) : std::nullopt;
    if (!call || !call->outgoing || call->state == SipCallState::State::eTalking) {
        reply(writeCstaRefusal("operation", "invalidDestination", nameSpace));
        return;
    }
    reply(writeCallControlResponse(CallControlService::eMakeCall,
                                   {.callId = cstaCallId(call->id, true), .deviceId = m_calls.own().number},
                                   nameSpace));
    m_publish(m_calls.dialled(call->id, call->peerUri));
}

/// The telephone first puts the call that was current before on hold, and does not accept if it cannot, as
/// with a call that rings. So it is chosen here. Held once, it is no obstacle for the second `accept`, which
/// has no effect after a success.
std::vector<PhoneControl::Command> CallCommands::acceptCommands(const SipCalls::Found& call) const {
    const PhoneControl::Command choose = chosen(call);
    const std::optional<SipCalls::Found> held = m_calls.heldFor(call);
    std::vector<PhoneControl::Command> commands{choose};
    if (held) {
        commands.push_back(chosen(*held));
        commands.push_back(choose);
    }
    commands.push_back({.name = "accept"});
    commands.push_back({.name = "accept"});
    if (held && held->isRinging) {
        // It would have no sound when it is accepted.
        commands.push_back(chosen(*held));
        commands.push_back({.name = "resume"});
        commands.push_back(choose);
    }
    return commands;
}

/// The call has ended between the check and the command.
void CallCommands::logIfMisdirected() const {
    if (!m_calls.live().empty()) {
        logAppUni(kComponent, __FILE_NAME__, 3, __LINE__, "%s",
                  "a call ended in the moment of its command; baresip may have applied it to another call");
    }
}

void CallCommands::act(const CallControlRequest& request, const std::string& nameSpace, const Reply& reply) {
    const std::optional<SipCalls::Found> call = m_calls.find(request.connection.callId);
    const bool accepts = request.service == CallControlService::eAnswerCall;
    if (!call) {
        reply(writeCstaRefusal("operation", "invalidCallID", nameSpace));
        return;
    }
    if (accepts && !call->isRinging) {
        reply(writeCstaRefusal("stateIncompatibility", "noCallToAnswer", nameSpace));
        return;
    }
    m_phone.send({chosen(*call)}, [this, call, accepts, service = request.service, nameSpace,
                                   reply](const std::vector<PhoneResponse>& found) {
        if (found.empty()) {
            reply(outOfService(nameSpace));
            return;
        }
        if (isNotFound(found)) {
            reply(writeCstaRefusal("operation", "invalidCallID", nameSpace));
            return;
        }
        const auto commands = accepts ? acceptCommands(*call)
                                      : std::vector<PhoneControl::Command>{chosen(*call), {.name = "hangup"}};
        m_phone.send(commands, [this, commands, service, nameSpace,
                                reply](const std::vector<PhoneResponse>& responses) {
            const std::string command = service == CallControlService::eAnswerCall ? "accept" : "hangup";
            if (responses.empty()) {
                reply(outOfService(nameSpace));
            } else if (isNotFound(responses)) {
                logIfMisdirected();
                reply(writeCstaRefusal("operation", "generic", nameSpace));
            } else if (!isDone(commands, responses, command)) {
                logAppUni(kComponent, __FILE_NAME__, 3, __LINE__, "baresip refuses %s: %s", command.c_str(),
                          loggedText(responses.back().text).c_str());
                reply(writeCstaRefusal("operation", "generic", nameSpace));
            } else {
                reply(writeCallControlResponse(service, {}, nameSpace));
            }
        });
    });
}

}  // namespace host
