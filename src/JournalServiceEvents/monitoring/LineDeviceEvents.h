#pragma once

#include <string>

#include "src/JournalServiceEvents/calls/LineDevices.h"

class CSTASwitchingFunctionDevices;

namespace journal {

class PlatformServices;
class CstaMonitors;
class PhoneSettings;

/// Stores the devices that a SIP phone serves, and monitors each of them. Each report of the switch replaces
/// the previous one: the old monitors are stopped first.
///
/// Call from the strand only. A monitor request blocks the handler until the switch responds; no lock is
/// held.
class LineDeviceEvents {
public:
    /// Everything is borrowed and outlives this object.
    LineDeviceEvents(const PlatformServices& platform, const PhoneSettings& settings, CstaMonitors& monitors,
                     LineDevices& devices)
        : m_platform(platform), m_settings(settings), m_monitors(monitors), m_devices(devices) {}

    void handleCSTASwitchingFunctionDevices(CSTASwitchingFunctionDevices* event);

private:
    void stopMonitors();
    void addDevice(int deviceType, const std::string& deviceId);
    [[nodiscard]] bool decideMissedLogging(int deviceType, const std::string& deviceId) const;

    const PlatformServices& m_platform;
    const PhoneSettings& m_settings;
    CstaMonitors& m_monitors;
    LineDevices& m_devices;
};

}  // namespace journal
