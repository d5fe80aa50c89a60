#pragma once

/// Visitors who log on to this phone. Registered as "MobilityServiceIfc". The line's strand only.
class MobilityServiceIfc {
public:
    MobilityServiceIfc() = default;
    MobilityServiceIfc(const MobilityServiceIfc&) = delete;
    MobilityServiceIfc& operator=(const MobilityServiceIfc&) = delete;
    virtual ~MobilityServiceIfc() = default;

    /// Saves the visitor's call log at the management server. Returns false if the caller should try again
    /// later.
    [[nodiscard]] virtual bool saveVisitorCallLog() = 0;
};
