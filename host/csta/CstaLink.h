#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/csta/CSTAServiceIfc.h"
#include "platform/framework/Executable.h"

class CSTAEvent;
class Service;

namespace host {

struct CstaLinkConfig {
    std::string host = "127.0.0.1";
    std::uint16_t port = 4242;
    /// The phone's own number at the switch; the library knows it as `CSTADevice::kLocalDevice`.
    std::string ownDevice = "2001";
    /// What the phone serves besides, where the switch does not tell: the lines that it shares with others, and
    /// whether a Bluetooth telephone is paired with it.
    std::vector<std::string> sharedDevices;
    bool bluetooth = false;
    /// Name space edition of what the link writes ("ed3" ... "ed6"); it reads every edition.
    std::string edition = "ed4";
    /// "auto", or "application-session".
    std::string session = "auto";
    /// Sends the wanted filters with the monitors. Off for switches that read a filter as a list of wishes; the link
    /// then drops by itself what the filter leaves out (it does that in either case).
    bool sendFilters = true;
    std::chrono::milliseconds requestTimeout{5000};
    /// The pause before the first attempt to connect again; each further one doubles, up to the maximum.
    std::chrono::milliseconds reconnectFirst{1000};
    std::chrono::milliseconds reconnectMax{30000};
    /// Told of every event that is on its way to a service, with its name on the wire; on the reader thread, so it must not
    /// block. May be empty.
    std::function<void(std::string_view, const CSTAEvent&)> eventListener;
};

/// The line's way to a CSTA switch, registered as "CSTAServiceIfc": CSTA XML over TCP (docs/csta-link.md).
///
/// The road of a monitor:
///  1. The service asks for one with `request`. The link gives it a cross reference of its own ("M1"), which
///     stays the same however often the connection is lost.
///  2. With the switch connected, the link starts the monitor there and waits for the answer; a refusal goes back
///     to the service and the monitor is forgotten. Without a connection the monitor is accepted at once and
///     started when the switch is there.
///  3. Every event that names the switch's id for the monitor is delivered to the receiver on the line's strand.
///  4. After each loss the link connects again with growing pauses and starts every wanted monitor anew.
///
/// A service that asks for the system status is also told which devices the phone serves, in one
/// `CSTASwitchingFunctionDevices` event: once they are known, and again when they change.
///
/// Threads: a reader thread of the link's own does all input and output and completes waiting requests, so
/// `request` may be called from any thread except from the status callback, a handler on the strand included.
/// Events reach their receiver through `Post` only. `start` and `stop` belong to the thread that owns the link.
///
/// Lifetime: receivers and services are borrowed. Once a MonitorStop or `releaseService` has returned on the
/// strand, nothing is delivered to the receiver any more. After `stop` the link posts nothing; what it posted before
/// still runs, so receivers outlive the strand or are released.
class CstaLink final : public Executable, public CSTAServiceIfc {
public:
    /// Runs a function on the line's strand, later and in order; never inside the call. Called by the reader thread.
    using Post = std::function<void(std::function<void()>)>;

    struct Status {
        bool connected = false;
        /// Connected, and the monitors of the own device are on.
        bool monitoring = false;

        [[nodiscard]] bool operator==(const Status&) const = default;
    };
    /// Called by the reader thread after each change; must not block and must not make requests of the link.
    using StatusListener = std::function<void(Status)>;

    CstaLink(CstaLinkConfig config, const Post& post);
    /// Stops the link if it still runs.
    ~CstaLink() override;

    /// Before `start`.
    void setStatusListener(StatusListener listener);

    /// Begins to connect and returns at once. A switch that is absent is no error: the link keeps trying. Once only.
    void start();
    /// Closes the connection, fails every waiting request and ends the reader thread. Idempotent.
    void stop();

    /// Any thread.
    [[nodiscard]] Status status() const noexcept;

    /// Forgets the monitors and the registrations of a service that is about to be destroyed; on the strand, or
    /// when the strand no longer runs.
    void releaseService(const Service& source);

    // CSTAServiceIfc
    void request(CSTARequest& request) override;

private:
    class Engine;
    std::unique_ptr<Engine> m_impl;
};

}  // namespace host
