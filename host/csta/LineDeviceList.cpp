#include "host/csta/LineDeviceList.h"

#include <algorithm>
#include <utility>

#include "host/csta-wire/DeviceText.h"
#include "host/csta/CstaLinkConfig.h"
#include "platform/csta/CSTADevice.h"
#include "platform/texts/communicationsServiceTexts.h"

namespace host {

namespace {

constexpr const char* kBluetooth = communicationsServiceTexts::content_bluetoothDeviceId;

}  // namespace

LineDeviceList::LineDeviceList(std::string_view ownDevice) : m_own(comparableNumber(ownDevice)) {}

void LineDeviceList::add(std::string_view device, std::string_view category) {
    LineDevice added{.type = LineDevice::kNoLine, .id = parseDeviceText(device).number};
    if (comparableNumber(device) == m_own) {
        added = {.type = LineDevice::kOwnLine, .id = CSTADevice::kLocalDevice};
    } else if (category.empty() || category == "station" || added.id == kBluetooth) {
        added.type = LineDevice::kOtherLine;
    }
    const bool known = std::any_of(m_devices.begin(), m_devices.end(),
                                   [&added](const LineDevice& other) { return other.id == added.id; });
    if (!known && !added.id.empty()) {
        m_devices.push_back(std::move(added));
    }
}

std::vector<LineDevice> LineDeviceList::devices() const {
    std::vector<LineDevice> all = m_devices;
    const bool hasOwn = std::any_of(
        all.begin(), all.end(), [](const LineDevice& device) { return device.type == LineDevice::kOwnLine; });
    if (!hasOwn) {
        all.insert(all.begin(), {LineDevice::kOwnLine, CSTADevice::kLocalDevice});
    }
    return all;
}

std::vector<LineDevice> configuredDevices(const CstaLinkConfig& config) {
    LineDeviceList list(config.ownDevice);
    for (const std::string& shared : config.sharedDevices) {
        list.add(shared);
    }
    if (config.bluetooth) {
        list.add(kBluetooth);
    }
    return list.devices();
}

}  // namespace host
