#pragma once

#include <atomic>

#include "platform/framework/Executable.h"
#include "platform/services/PallaxServiceIfc.h"

namespace journaltest {

/// A Pallax client that runs only when told to; register it as "PallaxServiceIfc".
class FakePallax final : public Executable, public PallaxServiceIfc {
public:
    void setRunning(bool running) noexcept { m_running = running; }

    [[nodiscard]] bool isRunning() override { return m_running; }

private:
    std::atomic<bool> m_running{false};
};

}  // namespace journaltest
