#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/tls/TlsFiles.h"

namespace host {

class LiveCallStoreIfc;

/// Settings of the link to a switch. A plain value.
struct CstaLinkConfig {
    std::string host = "127.0.0.1";
    std::uint16_t port = 4242;
    /// The check of the switch by TLS; std::nullopt without TLS.
    std::optional<ServerTrust> tls{};
    /// The phone's own number at the switch. The library receives it as `CSTADevice::kLocalDevice`.
    std::string ownDevice = "2001";
    /// The phone's other devices, used if the switch does not list them: shared lines, and a paired Bluetooth
    /// telephone.
    std::vector<std::string> sharedDevices;
    bool bluetooth = false;
    /// Name space edition of sent messages ("ed3" ... "ed6"). The link reads every edition.
    std::string edition = "ed4";
    /// "auto", or "application-session".
    std::string session = "auto";
    /// Sends the requested filters with the monitors. Set to false for switches that read a filter as the
    /// list of wanted events. The link itself drops filtered events in either case.
    bool sendFilters = true;
    std::chrono::milliseconds requestTimeout{5000};
    /// Delay before the first reconnection attempt. It doubles for each further attempt, up to the maximum.
    std::chrono::milliseconds reconnectFirst{1000};
    std::chrono::milliseconds reconnectMax{30000};
    /// Calls without an event for this time are assumed to be over.
    std::chrono::hours callMaxAge{12};
    /// Notes the live calls. Borrowed; may be null. Outlives the strand.
    LiveCallStoreIfc* liveCallStore = nullptr;
    /// True for a number whose calls the journal does not get, and which are not noted. Empty for none. Runs
    /// on the reader thread: must not block.
    std::function<bool(const std::string&)> isUnlogged{};
    /// Called with the name on the wire for each event before it is posted to a service. May be empty. Runs
    /// on the reader thread: must not block.
    std::function<void(std::string_view)> eventListener;
};

/// State of the link, reported after each change.
struct CstaLinkStatus {
    bool connected = false;
    /// Connected, and the monitors of the own device are started.
    bool monitoring = false;
    /// The switch is ready, and is not known to lack the service MakeCall.
    bool callControl = false;

    [[nodiscard]] bool operator==(const CstaLinkStatus&) const = default;
};

/// Runs on the reader thread. Must not block and must not send requests through the link.
using CstaLinkStatusListener = std::function<void(CstaLinkStatus)>;

}  // namespace host
