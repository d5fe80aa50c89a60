#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <pugixml.hpp>

#include "platform/csta/CSTADevice.h"

namespace host {

/// The relation of a device to the monitor that reported it.
enum class EventParty { eUnknown, eMonitored, eOther };

/// A device or connection member of an event: the device as the platform receives it, and its relation to the
/// monitor.
struct EventDevice {
    CSTADevice device;
    EventParty party = EventParty::eUnknown;
};

/// Reads device and connection members in every form that switches use. The phone's own number becomes
/// `CSTADevice::kLocalDevice`. A party that is restricted or unknown is empty. A plain value.
class DeviceReader {
public:
    static constexpr const char* kWithheldName = "Withheld";

    /// `monitoredDevice` may be `CSTADevice::kLocalDevice`.
    DeviceReader(std::string_view ownDevice, std::string_view monitoredDevice);

    /// The monitored device as the platform receives it.
    [[nodiscard]] std::string monitoredDevice() const {
        return m_monitored == m_own ? CSTADevice::kLocalDevice : m_monitoredDevice;
    }

    /// The length of its number.
    [[nodiscard]] std::size_t monitoredDigits() const noexcept { return m_monitored.size(); }

    /// Reads a device member such as `<callingDevice>`: a device identifier, a dialled number, a text, or an
    /// element for a restricted or unknown party.
    [[nodiscard]] EventDevice device(pugi::xml_node member) const;
    /// As above. If the number is unknown but not restricted, that of `fallback` is read instead, and its
    /// name; a name without a number is kept if `fallback` has no name.
    [[nodiscard]] EventDevice device(pugi::xml_node member, pugi::xml_node fallback) const;
    /// As above. A caller that withholds number and name gets `kWithheldName`, so that the journal does not
    /// take it for an unknown caller.
    [[nodiscard]] EventDevice caller(pugi::xml_node member, pugi::xml_node fallback) const;
    /// The device of a connection id, without its name.
    [[nodiscard]] EventDevice connectionDevice(pugi::xml_node connection) const;

private:
    [[nodiscard]] EventDevice fromText(std::string_view text) const;

    std::string m_own;
    std::string m_monitored;
    std::string m_monitoredDevice;
};

}  // namespace host
