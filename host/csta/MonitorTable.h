#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <asio/steady_timer.hpp>

#include "host/csta/EventDelivery.h"
#include "host/csta/ExponentialBackoff.h"
#include "platform/csta/CSTAMonitorFilter.h"

namespace host {

/// A monitor that a service wants, whether or not the switch has it.
struct WantedMonitor {
    /// The link's own id, which the service knows.
    std::string crossRefId;
    /// As the service named it.
    std::string device;
    CSTAMonitorFilter filter;
    std::shared_ptr<EventSink> sink;
    /// The switch's id for it; empty while it is off.
    std::string switchId;
    /// A MonitorStart waits for its answer.
    bool starting = false;
    /// The switch refused it and the log says so already.
    bool refused = false;
    ExponentialBackoff pause;
    std::unique_ptr<asio::steady_timer> retry;

    [[nodiscard]] bool isOn() const noexcept { return !switchId.empty(); }
};

/// The monitors of one link. References stay valid until the monitor is removed. Not thread-safe.
class MonitorTable {
public:
    WantedMonitor& add(std::string device, const CSTAMonitorFilter& filter, std::shared_ptr<EventSink> sink,
                       ExponentialBackoff pause);
    /// Null when there is none.
    [[nodiscard]] WantedMonitor* find(std::string_view crossRefId);
    [[nodiscard]] std::vector<WantedMonitor*> withSwitchId(std::string_view switchId);
    [[nodiscard]] std::vector<WantedMonitor*> all();
    void remove(const std::string& crossRefId) { m_monitors.erase(crossRefId); }

    [[nodiscard]] bool anyStarting() const;

private:
    std::map<std::string, WantedMonitor, std::less<>> m_monitors;
    unsigned long m_last = 0;
};

}  // namespace host
