#pragma once

#include <string>
#include <string_view>

namespace host {

/// The parts of a device id: the number as dialled or compared, and the display name.
struct DeviceText {
    std::string number;
    std::string name;

    [[nodiscard]] bool operator==(const DeviceText&) const = default;
};

/// Reads every written form of a device id:
///   `4711`, `+15550100123`                 digits as dialled, a private number, a device number
///   `N<4711>Ann Example;uid=...`           number, name, additions; inside the brackets one of `!&/%` ends
///                                          the number; a name that repeats the number is ignored
///   `tel:4711;phone-context=...`           the number of a tel: URI
///   `sip:4711@host;user=phone`             the user of a sip: or sips: URI, percent signs decoded
///   `4750:switch1:192.0.2.2:0`             the extension of a compound
/// Any other text is returned as the number, unchanged. Number and name are cut at the limits of the host.
[[nodiscard]] DeviceText parseDeviceText(std::string_view text);

/// The inverse: the plain number, or the `N<number>name` form if there is a name. A semicolon in the name
/// becomes a comma, because the form cannot represent it.
[[nodiscard]] std::string deviceText(std::string_view number, std::string_view name);

/// The number part of `text` without separators, in lower case, so that two texts for the same device compare
/// equal. Applies no dial plan: "4711" and "+49 30 4711" differ.
[[nodiscard]] std::string comparableNumber(std::string_view text);

/// False if the host of a "sip:" or "sips:" address has a port that is not a number from 1 to 65535.
[[nodiscard]] bool hasValidPort(std::string_view address);

}  // namespace host
