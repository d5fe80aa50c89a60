#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <asio/steady_timer.hpp>

#include "host/csta/EventDelivery.h"
#include "host/csta/association/ExponentialBackoff.h"
#include "platform/csta/CSTAMonitorFilter.h"

namespace host {

/// A monitor that a service has requested, started at the switch or not.
struct WantedMonitor {
    /// The link's own id, as returned to the service.
    std::string crossRefId;
    /// As requested by the service.
    std::string device;
    CSTAMonitorFilter filter;
    std::shared_ptr<EventSink> sink;
    /// The switch's id; empty while the monitor is off.
    std::string switchId;
    /// A MonitorStart is waiting for its response.
    bool starting = false;
    /// The switch refused it, and the refusal is logged.
    bool refused = false;
    ExponentialBackoff backoff;
    std::unique_ptr<asio::steady_timer> retry;

    [[nodiscard]] bool isOn() const noexcept { return !switchId.empty(); }
};

/// The monitors of one link. References stay valid until the monitor is removed. Not thread-safe.
class MonitorTable {
public:
    WantedMonitor& add(std::string device, const CSTAMonitorFilter& filter, std::shared_ptr<EventSink> sink,
                       ExponentialBackoff backoff);
    /// Returns `nullptr` for an unknown id.
    [[nodiscard]] WantedMonitor* find(std::string_view crossRefId);
    [[nodiscard]] std::vector<WantedMonitor*> withSwitchId(std::string_view switchId);
    [[nodiscard]] std::vector<WantedMonitor*> all();
    void remove(const std::string& crossRefId) { m_monitors.erase(crossRefId); }

private:
    std::map<std::string, WantedMonitor, std::less<>> m_monitors;
    unsigned long m_last = 0;
};

}  // namespace host
