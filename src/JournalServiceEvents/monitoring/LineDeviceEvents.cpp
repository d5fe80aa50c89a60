#include "src/JournalServiceEvents/monitoring/LineDeviceEvents.h"

#include "platform/csta/CSTASystemEvents.h"
#include "platform/services/TeamServiceIfc.h"
#include "platform/texts/communicationsServiceTexts.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/base/PlatformServices.h"
#include "src/JournalServiceEvents/monitoring/CstaMonitors.h"

namespace journal {

namespace {

constexpr int kOwnLine = 0;
constexpr int kOtherLine = 2;

}  // namespace

void LineDeviceEvents::handleCSTASwitchingFunctionDevices(CSTASwitchingFunctionDevices* event) {
    const std::size_t count = event->getNumberOfDevices();
    LOG_EVENTS(5, "handleCSTASwitchingFunctionDevices Number of Devices = %d [%s]", static_cast<int>(count),
               event->toString().c_str());
    if (!m_settings.values()->isSip()) {
        return;
    }
    stopMonitors();
    for (std::size_t index = 1; index <= count; ++index) {
        const int deviceType = event->getDeviceType(index);
        if (deviceType == kOwnLine || deviceType == kOtherLine) {
            addDevice(deviceType, event->getDeviceID(index));
        }
    }
}

void LineDeviceEvents::stopMonitors() {
    for (const auto& [deviceId, device] : m_devices.devices()) {
        if (device.monitorCrossRefId != CstaMonitors::kNoMonitor) {
            m_monitors.stopCSTAMonitor(device.monitorCrossRefId);
        }
    }
    m_devices.clear();
}

void LineDeviceEvents::addDevice(int deviceType, const std::string& deviceId) {
    if (m_devices.find(deviceId) != nullptr) {
        return;
    }
    const LineDevices::Device device{.monitorCrossRefId = m_monitors.startCSTAMonitor(deviceId),
                                     .logMissedCalls = decideMissedLogging(deviceType, deviceId),
                                     .deviceType = deviceType};
    m_devices.insert(deviceId, device);
    LOG_EVENTS(5, "Device '%s' is stored: deviceType(%d), logMissedCalls(%d)", deviceId.c_str(), deviceType,
               device.logMissedCalls ? 1 : 0);
}

// The team service decides for each shared line if this phone also logs its missed calls.
bool LineDeviceEvents::decideMissedLogging(int deviceType, const std::string& deviceId) const {
    if (deviceType == kOwnLine || deviceId == communicationsServiceTexts::content_bluetoothDeviceId) {
        return true;
    }
    auto* const team = m_platform.m_teamService;
    return team != nullptr && team->isLoggingMissedCalls(deviceId);
}

}  // namespace journal
