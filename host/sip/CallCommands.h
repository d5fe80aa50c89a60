#pragma once

#include <functional>
#include <string>

#include "host/csta-wire/CallControlWire.h"
#include "host/sip/PhoneSupervisor.h"
#include "host/sip/SipCalls.h"

namespace host {

/// The call control services of the gateway: each request becomes commands of the telephone.
///
/// The telephone's commands act on its current call. So the call is chosen first, and again in the same
/// segment as the command: no call that comes meanwhile gets it, and none that has just ended misdirects it.
///
/// Call from the gateway's thread only.
class CallCommands {
public:
    using Reply = std::function<void(const std::string& xml)>;

    /// `phone` and `calls` must outlive the object. `publish` sends events to the clients.
    CallCommands(PhoneSupervisor& phone, SipCalls& calls, std::function<void(const SwitchEvents&)> publish)
        : m_phone(phone), m_calls(calls), m_publish(std::move(publish)) {}

    /// Calls `reply` once, with the response or a refusal in the name space.
    void perform(const CallControlRequest& request, const std::string& nameSpace, const Reply& reply);

private:
    void makeCall(const CallControlRequest& request, const std::string& nameSpace, const Reply& reply);
    void dialled(const std::vector<PhoneResponse>& responses, const std::string& nameSpace,
                 const Reply& reply);
    /// Performs the request for its call.
    void act(const CallControlRequest& request, const std::string& nameSpace, const Reply& reply);
    [[nodiscard]] std::vector<PhoneControl::Command> acceptCommands(const SipCalls::Found& call) const;

    PhoneSupervisor& m_phone;
    SipCalls& m_calls;
    const std::function<void(const SwitchEvents&)> m_publish;
};

}  // namespace host
