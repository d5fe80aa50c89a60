#pragma once

#include <string>
#include <string_view>

namespace host {

/// A device id taken apart: the number as one dials or compares it, and the display name.
struct DeviceText {
    std::string number;
    std::string name;

    [[nodiscard]] bool operator==(const DeviceText&) const = default;
};

/// Reads every written form of a device id:
///   `4711`, `+15550100123`                 digits as dialled, a private number, a device number
///   `N<4711>Ann Example;uid=...`           number, name and additions; inside the brackets `!`, `&`, `/` and `%` end
///                                          the number; a name that only repeats the number is no name
///   `tel:4711;phone-context=...`           the number of a tel: URI
///   `sip:4711@host;user=phone`             the user of a sip: or sips: URI, percent signs decoded
///   `4750:switch1:192.0.2.2:0`             the extension of a compound
/// Anything else is taken as the number, as it stands.
[[nodiscard]] DeviceText parseDeviceText(std::string_view text);

/// The other way: the plain number, or the `N<number>name` form when there is a name. A name loses what the form
/// cannot carry (a semicolon becomes a comma).
[[nodiscard]] std::string deviceText(std::string_view number, std::string_view name);

/// The number part of `text` without the marks that people put between digits, in lower case: two texts that name the same
/// device are equal in this form. No dial plan: "4711" and "+49 30 4711" stay different.
[[nodiscard]] std::string comparableNumber(std::string_view text);

}  // namespace host
