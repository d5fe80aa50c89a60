#include "host/services/Team.h"

#include <utility>

namespace host {

Team::Team(std::set<std::string> loggedDevices) : m_loggedDevices(std::move(loggedDevices)) {}

void Team::setLoggingMissedCalls(const std::string& deviceId, bool logging) {
    const std::lock_guard lock(m_mutex);
    if (logging) {
        m_loggedDevices.insert(deviceId);
    } else {
        m_loggedDevices.erase(deviceId);
    }
}

bool Team::isLoggingMissedCalls(const std::string& deviceId) {
    const std::lock_guard lock(m_mutex);
    return m_loggedDevices.contains(deviceId);
}

}  // namespace host
