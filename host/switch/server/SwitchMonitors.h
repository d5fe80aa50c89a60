#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/switch/server/WireFilter.h"

namespace host {

/// A monitor at the simulated switch.
struct SwitchMonitor {
    std::string id;
    /// As the client named it, and in the form to compare.
    std::string device;
    std::string number;
    int client = 0;
    WireFilter filter;
};

/// The monitors of all clients. Not thread-safe.
class SwitchMonitors {
public:
    /// The id is unique as long as the switch lives. References stay valid until the monitor is removed.
    SwitchMonitor& add(const std::string& device, int client, WireFilter filter);
    /// Null when that client has no such monitor.
    [[nodiscard]] SwitchMonitor* find(const std::string& id, int client);
    void remove(const std::string& id) { m_monitors.erase(id); }
    void removeClient(int client);
    [[nodiscard]] std::vector<const SwitchMonitor*> ofDevice(std::string_view device) const;
    /// What the client monitors, by number.
    [[nodiscard]] std::set<std::string> devicesOf(int client) const;

private:
    std::map<std::string, SwitchMonitor> m_monitors;
    unsigned long m_last = 1000;
};

}  // namespace host
