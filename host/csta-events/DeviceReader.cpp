#include "host/csta-events/DeviceReader.h"

#include <utility>

#include "host/csta-wire/DeviceText.h"
#include "host/csta-wire/WireDocument.h"

namespace host {

namespace {

/// The element that holds the device's text and attributes: the first alternative of the schema that is
/// present, otherwise the member itself.
pugi::xml_node identifierOf(pugi::xml_node member) {
    for (const char* name : {"deviceIdentifier", "numberDialed", "deviceID"}) {
        if (const pugi::xml_node found = childNamed(member, name)) {
            return found;
        }
    }
    return member;
}

/// The display name in an element beside the device id, which some dialects write instead of the `N<...>`
/// form.
std::string nameBeside(pugi::xml_node member) {
    for (const char* name : {"displayName", "deviceName", "partyName", "name"}) {
        if (std::string text = childText(member, name); !text.empty()) {
            return text;
        }
    }
    return {};
}

bool isWithheld(pugi::xml_node identifier, const char* attribute) {
    return isTrue(identifier.attribute(attribute).value());
}

/// True if the party withholds its number.
bool isRestricted(pugi::xml_node member) {
    return childNamed(member, "restricted") || isWithheld(identifierOf(member), "privateNumber");
}

}  // namespace

DeviceReader::DeviceReader(std::string_view ownDevice, std::string_view monitoredDevice)
    : m_own(comparableNumber(ownDevice)),
      m_monitored(monitoredDevice == CSTADevice::kLocalDevice ? m_own : comparableNumber(monitoredDevice)),
      m_monitoredDevice(parseDeviceText(monitoredDevice).number) {}

EventDevice DeviceReader::device(pugi::xml_node member) const {
    if (childNamed(member, "restricted")) {
        return {};
    }
    if (childNamed(member, "notKnown")) {
        return {{{}, nameBeside(member)}, EventParty::eUnknown};
    }
    const pugi::xml_node identifier = identifierOf(member);
    EventDevice read = fromText(firstText(identifier));
    if (isWithheld(identifier, "privateNumber") && !read.device.isLocal()) {
        read.device.number.clear();
    }
    if (isWithheld(identifier, "privateName")) {
        read.device.name.clear();
    } else if (read.device.name.empty() && identifier != member) {
        read.device.name = nameBeside(member);
    }
    return read;
}

EventDevice DeviceReader::device(pugi::xml_node member, pugi::xml_node fallback) const {
    EventDevice read = device(member);
    if (read.party != EventParty::eUnknown || isRestricted(member)) {
        return read;
    }
    EventDevice other = device(fallback);
    if (other.device.name.empty()) {
        other.device.name = std::move(read.device.name);
    }
    return other;
}

EventDevice DeviceReader::caller(pugi::xml_node member, pugi::xml_node fallback) const {
    EventDevice read = device(member, fallback);
    if (isRestricted(member) && read.device.number.empty() && read.device.name.empty()) {
        read.device.name = kWithheldName;
    }
    return read;
}

EventDevice DeviceReader::connectionDevice(pugi::xml_node connection) const {
    EventDevice read = fromText(firstText(childNamed(connection, "deviceID")));
    read.device.name.clear();
    return read;
}

EventDevice DeviceReader::fromText(std::string_view text) const {
    DeviceText parsed = parseDeviceText(text);
    EventDevice read{{std::move(parsed.number), std::move(parsed.name)}, EventParty::eUnknown};
    const std::string comparable = comparableNumber(text);
    if (comparable.empty()) {
        return read;
    }
    read.party = comparable == m_monitored ? EventParty::eMonitored : EventParty::eOther;
    if (comparable == m_own) {
        read.device.number = CSTADevice::kLocalDevice;
    }
    return read;
}

}  // namespace host
