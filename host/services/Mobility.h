#pragma once

#include "platform/framework/Executable.h"
#include "platform/services/MobilityServiceIfc.h"

namespace host {

/// A phone without visitors, registered as "MobilityServiceIfc": there is no management server at which a visitor's log
/// could be kept. The line's strand only.
class Mobility final : public Executable, public MobilityServiceIfc {
public:
    /// Saves nothing and says so in the log; true, because trying again later would not help.
    [[nodiscard]] bool saveVisitorCallLog() override;
};

}  // namespace host
