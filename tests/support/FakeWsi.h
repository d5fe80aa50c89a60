#pragma once

#include <atomic>

#include "platform/framework/Executable.h"
#include "platform/services/WSIServiceIfc.h"

namespace journaltest {

/// A web-services interface whose user uses unified communications only when told so; register it as
/// "WSIServiceIfc".
class FakeWsi final : public Executable, public WSIServiceIfc {
public:
    void setCurrentUserUC(bool uses) noexcept { m_uses = uses; }

    [[nodiscard]] bool isCurrentUserUC() override { return m_uses; }

private:
    std::atomic<bool> m_uses{false};
};

}  // namespace journaltest
