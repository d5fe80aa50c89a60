#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/csta-server/WireFilter.h"

namespace host {

/// A monitor at the switch.
struct SwitchMonitor {
    std::string id;
    /// The device as sent by the client, and its comparable number.
    std::string device;
    std::string number;
    int client = 0;
    WireFilter filter;
};

/// The monitors of all clients. Not thread-safe.
class SwitchMonitors {
public:
    /// The ids are unique during the lifetime of the object. References stay valid until the monitor is
    /// removed.
    SwitchMonitor& add(const std::string& device, int client, WireFilter filter);
    /// Returns `nullptr` if that client has no such monitor.
    [[nodiscard]] SwitchMonitor* find(const std::string& id, int client);
    void remove(const std::string& id);
    void removeClient(int client);
    /// In the order of their start.
    [[nodiscard]] std::vector<const SwitchMonitor*> ofDevice(std::string_view device) const;
    /// The numbers of the devices that the client monitors.
    [[nodiscard]] std::set<std::string> devicesOf(int client) const;

private:
    using MonitorMap = std::map<std::string, SwitchMonitor>;

    MonitorMap::iterator erase(MonitorMap::iterator monitor);

    MonitorMap m_monitors;
    /// The same by number.
    std::unordered_map<std::string, std::vector<const SwitchMonitor*>> m_ofDevice;
    unsigned long m_last = 1000;
};

}  // namespace host
