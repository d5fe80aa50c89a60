#pragma once

#include <atomic>

#include "platform/framework/Executable.h"
#include "platform/services/WSIServiceIfc.h"

namespace host {

/// The web-services interface's idea of the user, registered as "WSIServiceIfc": no user of unified communications
/// unless its host says so (`calljournal` never does). Any thread may call.
class WebServices final : public Executable, public WSIServiceIfc {
public:
    void setCurrentUserUC(bool uses) noexcept { m_currentUserUC = uses; }

    [[nodiscard]] bool isCurrentUserUC() override { return m_currentUserUC; }

private:
    std::atomic<bool> m_currentUserUC{false};
};

}  // namespace host
