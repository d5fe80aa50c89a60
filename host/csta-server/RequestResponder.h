#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/csta-server/SwitchMonitors.h"
#include "host/csta-wire/WireDocument.h"
#include "host/switch/call-log/CallLogStore.h"
#include "host/switch/calls/LiveCall.h"

namespace host {

/// Handles the clients' requests at the switch. Every request has a response; an unknown request is
/// refused with `serviceNotSupported`. Not thread-safe.
class RequestResponder {
public:
    struct Settings {
        std::string_view edition;
        /// The device of a request that names none.
        std::string ownDevice;
        /// Refuses monitors and snapshots of other devices.
        bool hasOnlyOwnDevice = false;
    };

    /// `monitors` and `callLogs` must outlive the object. `liveCalls` returns at least the live calls of a
    /// device.
    RequestResponder(Settings settings, SwitchMonitors& monitors, CallLogStore& callLogs,
                     std::function<std::vector<LiveCall>(const std::string&)> liveCalls);

    struct Outcome {
        /// `std::nullopt` for messages that require no response.
        std::optional<std::string> response = std::nullopt;
        /// The request has started a monitor.
        bool monitorStarted = false;
        /// The client has registered for the system status.
        bool registered = false;
        /// A request that the switch sends after the response.
        std::optional<std::string> followUp = std::nullopt;
        /// The changes of the call logs, by device.
        std::vector<std::pair<std::string, CallLog::Events>> callLogChanges = {};
    };
    [[nodiscard]] Outcome respond(const WireDocument& request, int client);

    /// The responses of fault injection.
    [[nodiscard]] std::string refusal() const { return error("operation", "generic"); }
    [[nodiscard]] std::string notSupported() const { return error("operation", "serviceNotSupported"); }
    [[nodiscard]] std::string wrongResponse(std::string_view requestName) const;

    /// Requests of the switch.
    [[nodiscard]] std::string systemStatus(std::string_view word) const;
    [[nodiscard]] std::string monitorStop(std::string_view id) const;

    [[nodiscard]] const std::string& nameSpace() const noexcept { return m_nameSpace; }
    /// Sets the system status that RequestSystemStatus returns.
    void setStatus(std::string word) { m_status = std::move(word); }
    /// Adds `lines` to the telephone lines of the phone `device`. Without any, the switch refuses to list its
    /// devices.
    void addLines(const std::string& device, const std::vector<std::string>& lines);

private:
    using Responder = Outcome (RequestResponder::*)(const WireDocument&, int);
    struct Row;

    Outcome monitorStart(const WireDocument& request, int client);
    Outcome stopMonitor(const WireDocument& request, int client);
    Outcome changeFilter(const WireDocument& request, int client);
    Outcome systemRegister(const WireDocument& request, int client);
    Outcome requestSystemStatus(const WireDocument& request, int client);
    Outcome escape(const WireDocument& request, int client);
    Outcome snapshotDevice(const WireDocument& request, int client);
    Outcome snapshotCall(const WireDocument& request, int client);
    Outcome devices(const WireDocument& request, int client);
    Outcome startSession(const WireDocument& request, int client);
    Outcome resetSession(const WireDocument& request, int client);
    Outcome emptyResponse(const WireDocument& request, int client);
    Outcome stopSession(const WireDocument& request, int client);

    /// True unless the device, which may be empty, is one that the switch does not have.
    [[nodiscard]] bool hasDevice(std::string_view device) const;
    [[nodiscard]] std::string error(std::string_view category, std::string_view value) const;

    const std::string m_nameSpace;
    const std::string m_ownDevice;
    const bool m_hasOnlyOwnDevice;
    SwitchMonitors& m_monitors;
    CallLogStore& m_callLogs;
    const std::function<std::vector<LiveCall>(const std::string&)> m_liveCalls;
    std::string m_status = "normal";
    int m_registrations = 0;
    int m_sessions = 0;
    int m_deviceLists = 0;
    /// The telephone lines of each phone, its own number first, by that number.
    std::map<std::string, std::vector<std::string>> m_devices;
};

}  // namespace host
