#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "host/csta/CstaLink.h"
#include "host/csta/LineDeviceList.h"
#include "host/csta/LinkMessages.h"
#include "host/csta/RequestChannel.h"

namespace host {

class WireDocument;

/// Finds out which devices the phone serves:
///  1. GetSwitchingFunctionDevices is sent, with the own number.
///  2. A positive answer names a cross reference; the devices follow in SwitchingFunctionDevices messages that carry
///     it, up to the last segment. They are taken also when they come ahead of the answer.
///  3. A switch that refuses, names no device or names too many tells nothing of one phone: the configuration's
///     devices hold. A switch that falls silent leaves the list as it was found before, or, the first time, as configured.
///
/// Reader thread only.
class DeviceDiscovery {
public:
    using Found = std::function<void(const std::vector<LineDevice>&)>;

    /// More than these belong to no telephone: the switch has sent its directory.
    static constexpr std::size_t kMostDevices = 100;

    /// Everything is borrowed and outlives the object. `found` takes every list, changed or not.
    DeviceDiscovery(const CstaLinkConfig& config, asio::io_context& io, RequestChannel& channel,
                    const LinkMessages& messages, Found found);

    /// Asks the switch; an inquiry that is under way is forgotten.
    void ask();
    /// A SwitchingFunctionDevices message of the switch.
    void takeSegment(const WireDocument& document);
    void connectionLost() { end(); }

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

    void answered(const Answer& answer);
    void awaitSegment();
    void finishIfWhole();
    void takeList(const LineDeviceList& list, std::size_t named);
    void fallSilent();
    void useConfiguration(const char* why);
    void end();

    const CstaLinkConfig& m_config;
    RequestChannel& m_channel;
    const LinkMessages& m_messages;
    const Found m_found;

    asio::steady_timer m_timer;
    // Tells this inquiry from an earlier one.
    unsigned long m_serial = 0;
    bool m_waiting = false;
    /// Nothing until the answer is there.
    std::optional<std::string> m_crossRefId;
    std::vector<Segment> m_segments;
    bool m_everFound = false;
};

}  // namespace host
