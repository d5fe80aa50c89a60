#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "host/csta-server/CstaServer.h"
#include "host/csta-wire/CallControlWire.h"
#include "host/switch/calls/SwitchCall.h"
#include "host/switch/server/SwitchOptions.h"

namespace host {

/// The services MakeCall, AnswerCall and ClearConnection of the simulated switch, and the calls that clients
/// place. The other services also work for the calls of scenarios.
///
/// Simulator thread only. Must outlive the operations of the io_context.
class OrderedCalls {
public:
    struct Handlers {
        std::function<void(const SwitchEvent&)> event;
        /// Returns a call id that is unique at the switch.
        std::function<std::string()> newCallId;
        std::function<bool(const std::string& device)> isMonitored;
        /// A scenario's call, or null; see `ScenarioCalls::find`.
        std::function<SwitchCall*(std::string_view callId, std::string_view device)> findCall;
    };

    OrderedCalls(asio::io_context& io, const SwitchOptions& options, Handlers handlers);

    /// Returns false if the message is none of these requests.
    [[nodiscard]] bool handle(const WireDocument& message, const CstaServer::Reply& reply);
    void addLiveCalls(std::vector<LiveCall>& calls) const;
    /// Cancels all timers.
    void close() { m_calls.clear(); }

private:
    struct Ordered {
        SwitchCall call;
        asio::steady_timer timer;
    };

    /// Each returns the response, and stores the events that follow it.
    [[nodiscard]] std::string makeCall(const CallControlRequest& request, SwitchEvents& events);
    [[nodiscard]] std::string answerCall(const CallControlRequest& request, SwitchEvents& events);
    [[nodiscard]] std::string clearConnection(const CallControlRequest& request, SwitchEvents& events);

    [[nodiscard]] SwitchCall* find(const WireConnection& connection);
    [[nodiscard]] std::string deviceOf(const std::string& text) const;
    [[nodiscard]] std::string refusal(std::string_view category, std::string_view value) const;
    void publish(const SwitchEvents& events);
    /// Lets the called party act after a pause, once or twice.
    void continueLater(const std::string& callId);
    void proceed(const std::string& callId);
    void removeOver();

    asio::io_context& m_io;
    const SwitchOptions& m_options;
    const std::string m_nameSpace;
    const Handlers m_handlers;
    std::map<std::string, std::unique_ptr<Ordered>> m_calls;
};

}  // namespace host
