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
    SwitchMonitor& added = m_monitors.emplace(id, std::move(monitor)).first->second;
    m_ofDevice[added.number].push_back(&added);
    return added;
}

SwitchMonitor* SwitchMonitors::find(const std::string& id, int client) {
    const auto found = m_monitors.find(id);
    return found == m_monitors.end() || found->second.client != client ? nullptr : &found->second;
}

void SwitchMonitors::remove(const std::string& id) {
    if (const auto found = m_monitors.find(id); found != m_monitors.end()) {
        erase(found);
    }
}

SwitchMonitors::MonitorMap::iterator SwitchMonitors::erase(MonitorMap::iterator monitor) {
    const auto ofDevice = m_ofDevice.find(monitor->second.number);
    std::erase(ofDevice->second, &monitor->second);
    if (ofDevice->second.empty()) {
        m_ofDevice.erase(ofDevice);
    }
    return m_monitors.erase(monitor);
}

void SwitchMonitors::removeClient(int client) {
    for (auto monitor = m_monitors.begin(); monitor != m_monitors.end();) {
        monitor = monitor->second.client == client ? erase(monitor) : std::next(monitor);
    }
}

std::vector<const SwitchMonitor*> SwitchMonitors::ofDevice(std::string_view device) const {
    const auto found = m_ofDevice.find(comparableNumber(device));
    return found == m_ofDevice.end() ? std::vector<const SwitchMonitor*>() : found->second;
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
