#pragma once

#include <set>
#include <string>
#include <utility>

#include "platform/framework/Executable.h"
#include "platform/services/TeamServiceIfc.h"

namespace host {

/// The shared devices whose unanswered calls are logged on this phone, registered as "TeamServiceIfc".
///
/// Constant after construction; any thread may call.
class Team final : public Executable, public TeamServiceIfc {
public:
    explicit Team(std::set<std::string> loggedDevices) : m_loggedDevices(std::move(loggedDevices)) {}

    [[nodiscard]] bool isLoggingMissedCalls(const std::string& deviceId) override {
        return m_loggedDevices.contains(deviceId);
    }

private:
    const std::set<std::string> m_loggedDevices;
};

}  // namespace host
