#pragma once

#include <mutex>
#include <set>
#include <string>

#include "platform/framework/Executable.h"
#include "platform/services/TeamServiceIfc.h"

namespace host {

/// The devices whose unanswered calls are logged here, registered as "TeamServiceIfc". Any thread may call.
class Team final : public Executable, public TeamServiceIfc {
public:
    /// The devices that log from the start; no other does.
    explicit Team(std::set<std::string> loggedDevices = {});

    void setLoggingMissedCalls(const std::string& deviceId, bool logging);
    [[nodiscard]] bool isLoggingMissedCalls(const std::string& deviceId) override;

private:
    std::mutex m_mutex;
    // Guarded by m_mutex.
    std::set<std::string> m_loggedDevices;
};

}  // namespace host
