#include "host/csta-server/SwitchMonitors.h"

#include <utility>

#include "host/csta-wire/DeviceText.h"

namespace host {

SwitchMonitor& SwitchMonitors::add(const std::string& device, int client, WireFilter filter) {
    const std::string id = std::to_string(++m_last);
    SwitchMonitor monitor{.id = id,
                          .device = device,
                          .number = comparableNumber(device),
                          .client = client,
                          .filter = std::move(filter)};
    return m_monitors.emplace(id, std::move(monitor)).first->second;
}

SwitchMonitor* SwitchMonitors::find(const std::string& id, int client) {
    const auto found = m_monitors.find(id);
    return found == m_monitors.end() || found->second.client != client ? nullptr : &found->second;
}

void SwitchMonitors::removeClient(int client) {
    for (auto monitor = m_monitors.begin(); monitor != m_monitors.end();) {
        monitor = monitor->second.client == client ? m_monitors.erase(monitor) : std::next(monitor);
    }
}

std::vector<const SwitchMonitor*> SwitchMonitors::ofDevice(std::string_view device) const {
    std::vector<const SwitchMonitor*> monitors;
    const std::string number = comparableNumber(device);
    for (const auto& [id, monitor] : m_monitors) {
        if (monitor.number == number) {
            monitors.push_back(&monitor);
        }
    }
    return monitors;
}

std::set<std::string> SwitchMonitors::devicesOf(int client) const {
    std::set<std::string> devices;
    for (const auto& [id, monitor] : m_monitors) {
        if (monitor.client == client) {
            devices.insert(monitor.number);
        }
    }
    return devices;
}

}  // namespace host
