#pragma once

#include <string>

/// A device as an event names it: the number part and the display name, both empty when the switch did not know
/// or withheld them. The phone's own device always has the number `CSTADevice::kLocalDevice`.
struct CSTADevice {
    /// The platform's symbolic number of the phone's own device.
    static constexpr const char* kLocalDevice = "localDeviceID";

    std::string number;
    std::string name;

    [[nodiscard]] bool isLocal() const { return number == kLocalDevice; }
    [[nodiscard]] bool operator==(const CSTADevice&) const = default;
};
