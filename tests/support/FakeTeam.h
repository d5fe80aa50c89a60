#pragma once

#include <mutex>
#include <set>
#include <string>

#include "platform/framework/Executable.h"
#include "platform/services/TeamServiceIfc.h"

namespace journaltest {

/// A team whose shared lines log missed calls here only where a test says so; register it as "TeamServiceIfc".
class FakeTeam final : public Executable, public TeamServiceIfc {
public:
    void logMissedCallsOf(const std::string& deviceId) {
        const std::lock_guard lock(m_mutex);
        m_logged.insert(deviceId);
    }

    [[nodiscard]] bool isLoggingMissedCalls(const std::string& deviceId) override {
        const std::lock_guard lock(m_mutex);
        return m_logged.contains(deviceId);
    }

private:
    // Guarded by m_mutex.
    std::mutex m_mutex;
    std::set<std::string> m_logged;
};

}  // namespace journaltest
