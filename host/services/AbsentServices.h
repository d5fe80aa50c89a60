#pragma once

#include "platform/framework/Executable.h"
#include "platform/services/MobilityServiceIfc.h"
#include "platform/services/PallaxServiceIfc.h"
#include "platform/services/UCServiceIfc.h"
#include "platform/services/WSIServiceIfc.h"

namespace host {

// The platform services that a phone under this host does not have. Each implements its interface so that the
// journal keeps the log itself. All are stateless; any thread may call.

/// Visitors of the phone, registered as "MobilityServiceIfc". There is no server that could keep a visitor's
/// call log.
class Mobility final : public Executable, public MobilityServiceIfc {
public:
    /// Logs that it cannot save. Returns true, because a retry would not help.
    [[nodiscard]] bool saveVisitorCallLog() override;
};

/// The unified-communications client, registered as "UCServiceIfc". It never runs.
class UnifiedCommunications final : public Executable, public UCServiceIfc {
public:
    [[nodiscard]] bool isRunning() override { return false; }
    /// Has no effect but a log entry.
    void refreshJournal() override;
};

/// The Pallax client, registered as "PallaxServiceIfc". It never runs.
class PallaxClient final : public Executable, public PallaxServiceIfc {
public:
    [[nodiscard]] bool isRunning() override { return false; }
};

/// The web-services interface, registered as "WSIServiceIfc". The current user never uses unified
/// communications.
class WebServices final : public Executable, public WSIServiceIfc {
public:
    [[nodiscard]] bool isCurrentUserUC() override { return false; }
};

}  // namespace host
