#pragma once

#include <atomic>

#include "platform/framework/Executable.h"
#include "platform/services/PallaxServiceIfc.h"

namespace host {

/// A Pallax client that does not run unless its host says so (`calljournal` never does), registered as
/// "PallaxServiceIfc". While it runs, the journal leaves the calls to it. Any thread may call.
class PallaxClient final : public Executable, public PallaxServiceIfc {
public:
    void setRunning(bool running) noexcept { m_running = running; }

    [[nodiscard]] bool isRunning() override { return m_running; }

private:
    std::atomic<bool> m_running{false};
};

}  // namespace host
