#include "src/JournalServiceEvents/calls/LineDevices.h"

#include "platform/texts/communicationsServiceTexts.h"

namespace journal {

const LineDevices::Device* LineDevices::find(const std::string& deviceId) const {
    const auto found = m_devices.find(deviceId);
    return found == m_devices.end() ? nullptr : &found->second;
}

bool LineDevices::insert(const std::string& deviceId, const Device& device) {
    return m_devices.try_emplace(deviceId, device).second;
}

bool LineDevices::logsMissedCalls(const std::string& deviceId) const {
    const Device* const device = find(deviceId);
    return device == nullptr || device->logMissedCalls;
}

bool LineDevices::isSharedLine(const std::string& deviceId) const {
    constexpr std::int32_t kOtherLine = 2;
    const Device* const device = find(deviceId);
    return device != nullptr && device->deviceType == kOtherLine &&
           deviceId != communicationsServiceTexts::content_bluetoothDeviceId;
}

}  // namespace journal
