#pragma once

#include <atomic>

#include "platform/framework/Executable.h"
#include "platform/services/UCServiceIfc.h"

namespace host {

/// The unified-communications client of a phone that has none, registered as "UCServiceIfc": it does not run until it
/// is told to, which makes the journal leave the calls to it. Any thread may call.
class UnifiedCommunications final : public Executable, public UCServiceIfc {
public:
    void setRunning(bool running) noexcept { m_running = running; }

    [[nodiscard]] bool isRunning() override { return m_running; }
    /// Shows nothing, so there is nothing to refresh; leaves a line in the log.
    void refreshJournal() override;

private:
    std::atomic<bool> m_running{false};
};

}  // namespace host
