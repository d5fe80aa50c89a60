#pragma once

#include <atomic>

#include "platform/framework/Executable.h"
#include "platform/services/UCServiceIfc.h"

namespace journaltest {

/// A unified-communications client that runs only when told to, and counts how often it was told to refresh;
/// register it as "UCServiceIfc".
class FakeUc final : public Executable, public UCServiceIfc {
public:
    void setRunning(bool running) noexcept { m_running = running; }
    [[nodiscard]] int refreshes() const noexcept { return m_refreshes; }

    [[nodiscard]] bool isRunning() override { return m_running; }
    void refreshJournal() override { ++m_refreshes; }

private:
    std::atomic<bool> m_running{false};
    std::atomic<int> m_refreshes{0};
};

}  // namespace journaltest
