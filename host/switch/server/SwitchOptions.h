#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "host/csta-server/SwitchMessage.h"
#include "host/switch/scenario/Scenario.h"
#include "host/switch/traffic/TrafficCall.h"
#include "host/tls/ServerCertificate.h"

namespace host {

/// The party that a client's MakeCall reaches.
enum class Callee {
    eTakesCall,
    eRings,  ///< without an end
    eBusy,
};

/// Settings of a simulated switch. A plain value.
struct SwitchOptions {
    std::string address = "127.0.0.1";
    /// 0 selects a free port, see `SwitchSimulator::port`.
    std::uint16_t port = 4242;
    /// The phone of scenarios without a `device` statement.
    std::string device = Scenario::kDefaultDevice;
    std::string edition = "ed4";
    /// Sends SystemStatus to a client as soon as it has connected.
    bool speaksFirst = false;
    /// Keeps a call log for every device: adds the finished calls of scenarios and notifies the device's
    /// monitors. The `log` statements of a scenario and the requests of clients change the logs in any case.
    bool callLog = false;
    /// Notifies a client of the deletion of single entries that it requested itself, as some switches do.
    bool echoDeletions = false;
    /// The party of each call that a client places.
    Callee callee = Callee::eTakesCall;
    /// If set, clients must speak TLS.
    std::shared_ptr<const ServerCertificate> certificate{};
    /// The time after which the called phone rings, and again that after which it takes the call.
    std::chrono::milliseconds calleePause{500};
    /// Called for each message, on the simulator's thread. May be empty.
    std::function<void(const SwitchMessage&)> messageListener{};
};

/// Options for playing a scenario. A plain value.
struct PlayOptions {
    /// Repeats the scenario without end.
    bool loop = false;
    /// Calls per second, if above 0. The waits of the scenario are scaled to reach this average.
    double rate = 0;
    /// Waits until a client monitors the scenario's phone.
    bool awaitMonitor = true;
    /// Receives the text of `log print`, on the simulator's thread.
    std::function<void(const std::string&)> print{};
    /// Called once at the end of the scenario, on the simulator's thread; not called if `stop` interrupts the
    /// scenario. Must not call `stop`.
    std::function<void()> finished;
};

/// Listeners while traffic is played, called on the simulator's thread. Each may be empty; none may call
/// `stop`.
struct TrafficListeners {
    /// A call begins to ring.
    std::function<void()> begun{};
    /// A device's part in a call has ended, and its last event was given to the connection.
    std::function<void(const std::string& callId, const TrafficPart&)> ended{};
    /// The last call is over.
    std::function<void()> finished{};
};

}  // namespace host
