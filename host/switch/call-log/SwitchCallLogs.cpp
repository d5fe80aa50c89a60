#include "host/switch/call-log/SwitchCallLogs.h"

#include "host/csta-wire/DeviceText.h"

namespace host {

SwitchCallLog::Events SwitchCallLogs::entries(const std::string& device) const {
    const std::lock_guard lock(m_mutex);
    const auto log = m_logs.find(keyOf(device));
    return log == m_logs.end() ? SwitchCallLog::Events() : log->second.entries();
}

std::string SwitchCallLogs::keyOf(const std::string& device) {
    return comparableNumber(device);
}

}  // namespace host
