#pragma once

#include <string>

/// A device as an event names it: its number and display name, both empty if the switch did not report them.
/// The phone's own device always has the number `CSTADevice::kLocalDevice`.
struct CSTADevice {
    /// The platform's symbolic number of the phone's own device.
    static constexpr const char* kLocalDevice = "localDeviceID";

    std::string number;
    std::string name;

    [[nodiscard]] bool isLocal() const { return number == kLocalDevice; }
    [[nodiscard]] bool operator==(const CSTADevice&) const = default;
};
