#include "host/switch/call-log/CallLogStore.h"

#include "host/csta-wire/DeviceText.h"

namespace host {

CallLog::Events CallLogStore::entries(const std::string& device) const {
    const std::lock_guard lock(m_mutex);
    const auto log = m_logs.find(keyOf(device));
    return log == m_logs.end() ? CallLog::Events() : log->second.entries();
}

std::string CallLogStore::keyOf(const std::string& device) {
    return comparableNumber(device);
}

}  // namespace host
