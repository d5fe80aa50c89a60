#pragma once

#include <string>

/// The team that shares lines with this phone. Registered as "TeamServiceIfc". The line's strand only.
class TeamServiceIfc {
public:
    TeamServiceIfc() = default;
    TeamServiceIfc(const TeamServiceIfc&) = delete;
    TeamServiceIfc& operator=(const TeamServiceIfc&) = delete;
    virtual ~TeamServiceIfc() = default;

    /// True if this phone logs a call that rings unanswered on the shared line `deviceId`.
    [[nodiscard]] virtual bool isLoggingMissedCalls(const std::string& deviceId) = 0;
};
