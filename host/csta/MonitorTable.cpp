#include "host/csta/MonitorTable.h"

#include <algorithm>
#include <utility>

namespace host {

WantedMonitor& MonitorTable::add(std::string device, const CSTAMonitorFilter& filter,
                                 std::shared_ptr<EventSink> sink, ExponentialBackoff backoff) {
    std::string id = "M" + std::to_string(++m_last);
    WantedMonitor monitor{.crossRefId = id,
                          .device = std::move(device),
                          .filter = filter,
                          .sink = std::move(sink),
                          .switchId = {},
                          .backoff = backoff,
                          .retry = nullptr};
    return m_monitors.emplace(std::move(id), std::move(monitor)).first->second;
}

WantedMonitor* MonitorTable::find(std::string_view crossRefId) {
    const auto found = m_monitors.find(crossRefId);
    return found == m_monitors.end() ? nullptr : &found->second;
}

std::vector<WantedMonitor*> MonitorTable::withSwitchId(std::string_view switchId) {
    std::vector<WantedMonitor*> monitors;
    for (auto& [id, monitor] : m_monitors) {
        if (monitor.isOn() && monitor.switchId == switchId) {
            monitors.push_back(&monitor);
        }
    }
    return monitors;
}

std::vector<WantedMonitor*> MonitorTable::all() {
    std::vector<WantedMonitor*> monitors;
    for (auto& [id, monitor] : m_monitors) {
        monitors.push_back(&monitor);
    }
    return monitors;
}

}  // namespace host
