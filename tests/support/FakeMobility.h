#pragma once

#include <atomic>

#include "platform/framework/Executable.h"
#include "platform/services/MobilityServiceIfc.h"

namespace journaltest {

/// Counts how often the visitor's log was to be saved and answers as it was told; register it as
/// "MobilityServiceIfc".
class FakeMobility final : public Executable, public MobilityServiceIfc {
public:
    void succeed(bool saved) noexcept { m_succeeds = saved; }
    [[nodiscard]] int saves() const noexcept { return m_saves; }

    [[nodiscard]] bool saveVisitorCallLog() override {
        ++m_saves;
        return m_succeeds;
    }

private:
    std::atomic<bool> m_succeeds{true};
    std::atomic<int> m_saves{0};
};

}  // namespace journaltest
