#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "host/csta/CstaLinkConfig.h"
#include "host/csta/LineDeviceList.h"
#include "host/csta/requests/LinkMessages.h"
#include "host/csta/requests/RequestChannel.h"

namespace host {

class WireDocument;

/// Discovers the devices of the phone:
///  1. Sends GetSwitchingFunctionDevices with the own number.
///  2. A positive response contains a cross reference. SwitchingFunctionDevices messages with this reference,
///     or without any, list the devices, up to the last segment. They are also accepted before the response.
///  3. If the switch refuses, lists no device or lists too many, the configured devices apply. On a timeout
///     the previous list stays, or at the first discovery the configured devices apply.
///
/// Reader thread only.
class DeviceDiscovery {
public:
    using Found = std::function<void(const std::vector<LineDevice>&)>;

    /// A longer list is not that of one telephone: the switch has sent its directory.
    static constexpr std::size_t kMaxDevices = 100;

    /// The references must outlive the object. `found` receives every list, even an unchanged one.
    DeviceDiscovery(const CstaLinkConfig& config, asio::io_context& io, RequestChannel& channel,
                    const LinkMessages& messages, Found found);

    /// Starts a discovery. A running one is cancelled.
    void start();
    /// A SwitchingFunctionDevices message of the switch.
    void addSegment(const WireDocument& document);
    void connectionLost() { reset(); }
    [[nodiscard]] bool isWaiting() const noexcept { return m_waiting; }

private:
    struct Segment {
        std::string crossRefId;
        struct Entry {
            std::string device;
            std::string category;
        };
        std::vector<Entry> entries;
        bool last = true;
    };

    void onResponse(const SwitchResponse& response);
    void awaitNextSegment();
    void finishIfComplete();
    void finish(const LineDeviceList& list, std::size_t named);
    void onTimeout();
    void useConfiguration(const char* reason);
    void reset();

    const CstaLinkConfig& m_config;
    RequestChannel& m_channel;
    const LinkMessages& m_messages;
    const Found m_found;

    asio::steady_timer m_timer;
    // Distinguishes this discovery from earlier ones.
    unsigned long m_serial = 0;
    bool m_waiting = false;
    /// `std::nullopt` until the response arrives.
    std::optional<std::string> m_crossRefId;
    std::vector<Segment> m_segments;
    bool m_everFound = false;
};

}  // namespace host
