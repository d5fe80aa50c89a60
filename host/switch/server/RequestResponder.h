#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/csta-wire/WireDocument.h"
#include "host/switch/call-log/CallLogStore.h"
#include "host/switch/server/SwitchMonitors.h"

namespace host {

/// How the simulated switch answers what clients ask. Every request gets an answer; what the switch does not know is
/// refused with `serviceNotSupported`. Not thread-safe.
class RequestResponder {
public:
    /// `monitors` and `callLogs` outlive the object; `ownDevice` is what an empty device in a MonitorStart means.
    RequestResponder(std::string_view edition, std::string ownDevice, SwitchMonitors& monitors,
                     CallLogStore& callLogs);

    struct Outcome {
        /// Nothing for messages that want no answer.
        std::optional<std::string> answer;
        /// The request has started a monitor.
        bool monitorStarted = false;
        /// The client wants to be told of the system status.
        bool registered = false;
        /// What the switch sends of its own accord behind the answer.
        std::optional<std::string> sequel = std::nullopt;
        /// What has changed in the call log of which device.
        std::vector<std::pair<std::string, CallLog::Events>> callLogChanges = {};
    };
    [[nodiscard]] Outcome answer(const WireDocument& request, int client);

    /// The answers of a switch that misbehaves.
    [[nodiscard]] std::string refusal() const { return error("operation", "generic"); }
    [[nodiscard]] std::string wrongResponse(std::string_view requestName) const;

    /// Requests of the switch's own.
    [[nodiscard]] std::string systemStatus(std::string_view word) const;
    [[nodiscard]] std::string monitorStop(std::string_view id) const;

    [[nodiscard]] const std::string& nameSpace() const noexcept { return m_nameSpace; }
    /// What a RequestSystemStatus is answered with.
    void setStatus(std::string word) { m_status = std::move(word); }
    /// The phone `device` serves `lines` beside its own number. Of a phone that serves none the switch does not
    /// tell any devices.
    void addLines(const std::string& device, const std::vector<std::string>& lines);

private:
    using Responder = Outcome (RequestResponder::*)(const WireDocument&, int);
    struct Row;

    Outcome monitorStart(const WireDocument& request, int client);
    Outcome monitorStopped(const WireDocument& request, int client);
    Outcome changeFilter(const WireDocument& request, int client);
    Outcome registration(const WireDocument& request, int client);
    Outcome requestedStatus(const WireDocument& request, int client);
    Outcome escape(const WireDocument& request, int client);
    Outcome snapshot(const WireDocument& request, int client);
    Outcome devices(const WireDocument& request, int client);
    Outcome startSession(const WireDocument& request, int client);
    Outcome resetSession(const WireDocument& request, int client);
    Outcome emptyResponse(const WireDocument& request, int client);
    Outcome sessionEnd(const WireDocument& request, int client);

    [[nodiscard]] std::string error(std::string_view category, std::string_view value) const;

    const std::string m_nameSpace;
    const std::string m_ownDevice;
    SwitchMonitors& m_monitors;
    CallLogStore& m_callLogs;
    std::string m_status = "normal";
    int m_registrations = 0;
    int m_sessions = 0;
    int m_deviceLists = 0;
    /// All that a phone serves, its own number first, by that number.
    std::map<std::string, std::vector<std::string>> m_devices;
};

}  // namespace host
