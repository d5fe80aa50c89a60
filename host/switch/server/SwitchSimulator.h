#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/switch/server/SwitchOptions.h"
#include "host/switch/traffic/TrafficOptions.h"
#include "platform/csta/CallLogEntryEvent.h"

namespace host {

class SwitchSimulatorImpl;

/// Simulator of a CSTA switch: a TCP server that exchanges CSTA XML with any number of clients, accepts
/// monitors, applies their filters, responds to every request and plays scenarios
/// and random traffic.
///
/// Thread-safe, except for `start` and `stop`: call these from the owner's thread. All work is done on one
/// thread of the simulator.
class SwitchSimulator {
public:
    explicit SwitchSimulator(SwitchOptions options = {});
    SwitchSimulator(const SwitchSimulator&) = delete;
    SwitchSimulator& operator=(const SwitchSimulator&) = delete;
    ~SwitchSimulator();

    /// Starts listening. Throws `std::system_error` if the address is not available. A stopped simulator can
    /// be restarted and then listens on the same port.
    void start();
    /// Disconnects all clients, removes all monitors and joins the thread. Idempotent.
    void stop();
    /// The listening port; 0 before the first `start`.
    [[nodiscard]] std::uint16_t port() const noexcept;

    /// Plays `scenario` on the simulator's thread, to the end or until `stop`. Returns at once. Several
    /// scenarios may be played at the same time, each with its own calls.
    void run(Scenario scenario, PlayOptions options = {});

    /// Plays random calls of many devices on the simulator's thread, until `stop` or the last call is over.
    /// They begin once all devices are monitored.
    void run(TrafficOptions traffic, TrafficListeners listeners = {});

    /// Sets the response to the requests named `request` ("MonitorStart").
    void setResponseMode(const std::string& request, ResponseMode mode);
    /// Sends the system status `word` ("normal", "initializing", ...) to every client that registered for it.
    void sendSystemStatus(const std::string& word);
    /// Stops every monitor of `device` and notifies the clients.
    void stopMonitors(const std::string& device);
    /// Closes every connection; clients may connect again.
    void dropClients();

    /// The switch's call log of `device` (default: the device of `SwitchOptions`), with the entries as they
    /// were sent.
    [[nodiscard]] std::vector<CallLogEntryEvent> callLog(const std::string& device = {}) const;

private:
    std::unique_ptr<SwitchSimulatorImpl> m_impl;
};

}  // namespace host
