#pragma once

#include <functional>
#include <string>

#include "host/csta-wire/CallControlWire.h"
#include "host/sip/PhoneStatus.h"
#include "host/sip/PhoneSupervisor.h"
#include "host/sip/SipCalls.h"

namespace host {

/// The call control services of the gateway: each request becomes commands of the telephone.
///
/// The telephone's `accept` and `hangup` have no parameter and act on its current call. So the call is chosen
/// first, and, if that succeeds, again in the same segment as the command. A call that comes meanwhile is not
/// hit. A call that ends between the two, which takes one round trip to the telephone, leaves another one
/// current, which is then hit; that is logged.
///
/// Call from the gateway's thread only.
class CallCommands {
public:
    using Reply = std::function<void(const std::string& xml)>;

    /// `phone`, `status` and `calls` must outlive the object. `publish` sends events to the clients.
    CallCommands(PhoneSupervisor& phone, const PhoneStatus& status, SipCalls& calls,
                 std::function<void(const SwitchEvents&)> publish)
        : m_phone(phone), m_status(status), m_calls(calls), m_publish(std::move(publish)) {}

    /// Calls `reply` once, with the response or a refusal in the name space.
    void perform(const CallControlRequest& request, const std::string& nameSpace, const Reply& reply);

private:
    void makeCall(const CallControlRequest& request, const std::string& nameSpace, const Reply& reply);
    void dialled(const std::vector<PhoneResponse>& responses, const std::string& nameSpace,
                 const Reply& reply);
    /// Performs the request for its call.
    void act(const CallControlRequest& request, const std::string& nameSpace, const Reply& reply);
    void logIfMisdirected() const;
    [[nodiscard]] std::vector<PhoneControl::Command> acceptCommands(const SipCalls::Found& call) const;

    PhoneSupervisor& m_phone;
    const PhoneStatus& m_status;
    SipCalls& m_calls;
    const std::function<void(const SwitchEvents&)> m_publish;
};

}  // namespace host
