#pragma once

#include <string>
#include <string_view>

#include <pugixml.hpp>

#include "platform/csta/CSTADevice.h"

namespace host {

/// How a device stands to the monitor that reported it.
enum class EventParty { eUnknown, eMonitored, eOther };

/// A device or connection member of an event: what the platform is told of it, and whose it is.
struct EventDevice {
    CSTADevice device;
    EventParty party = EventParty::eUnknown;
};

/// Reads device and connection members, in every form that switches use. The phone's own number becomes
/// `CSTADevice::kLocalDevice`; a party that is withheld or not known is empty. A plain value.
class DeviceReader {
public:
    /// `monitoredDevice` may be `CSTADevice::kLocalDevice`.
    DeviceReader(std::string_view ownDevice, std::string_view monitoredDevice);

    /// `<callingDevice>` and its like: a device identifier, a number dialled, a text, or a word for "nobody to tell".
    [[nodiscard]] EventDevice device(pugi::xml_node member) const;
    /// As `device`; a party that the member does not know (but does not withhold either) is taken from `fallback`.
    [[nodiscard]] EventDevice device(pugi::xml_node member, pugi::xml_node fallback) const;
    /// The device of a connection id; its name is never kept.
    [[nodiscard]] EventDevice connectionDevice(pugi::xml_node connection) const;

private:
    [[nodiscard]] EventDevice fromText(std::string_view text) const;

    std::string m_own;
    std::string m_monitored;
};

}  // namespace host
