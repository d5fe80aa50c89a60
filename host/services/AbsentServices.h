#pragma once

#include "platform/framework/Executable.h"
#include "platform/services/MobilityServiceIfc.h"
#include "platform/services/PallaxServiceIfc.h"
#include "platform/services/UCServiceIfc.h"
#include "platform/services/WSIServiceIfc.h"

namespace host {

// The platform services that a phone under this host does not have. Each implements its interface so that the
// journal keeps the log itself. All are stateless; any thread may call.

/// A mobility service that stores no visitor call log, because there is no server for it. Registered as
/// "MobilityServiceIfc".
class Mobility final : public Executable, public MobilityServiceIfc {
public:
    /// Logs that it cannot save. Returns true, because a retry would not help.
    [[nodiscard]] bool saveVisitorCallLog() override;
};

/// A unified-communications client that never runs. Registered as "UCServiceIfc".
class UnifiedCommunications final : public Executable, public UCServiceIfc {
public:
    [[nodiscard]] bool isRunning() override { return false; }
    /// Writes a log text only.
    void refreshJournal() override;
};

/// A Pallax client that never runs. Registered as "PallaxServiceIfc".
class PallaxClient final : public Executable, public PallaxServiceIfc {
public:
    [[nodiscard]] bool isRunning() override { return false; }
};

/// A web-services interface whose current user never uses unified communications. Registered as
/// "WSIServiceIfc".
class WebServices final : public Executable, public WSIServiceIfc {
public:
    [[nodiscard]] bool isCurrentUserUC() override { return false; }
};

}  // namespace host
