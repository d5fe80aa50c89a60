#pragma once

#include <string>

#include "src/JournalServiceEvents/calls/LineDevices.h"

class CSTASwitchingFunctionDevices;

namespace journal {

class PlatformServices;
class CstaMonitors;
class PhoneSettings;

/// Takes in which devices a SIP phone serves, and monitors each of them. Each report replaces the one before: the old
/// monitors are stopped first.
///
/// Threads: the line's strand. A monitor request waits for the switch's answer inside the handler; no lock is held
/// meanwhile.
class LineDeviceEvents {
public:
    /// Everything is borrowed and outlives this object.
    LineDeviceEvents(const PlatformServices& platform, const PhoneSettings& settings, CstaMonitors& monitors,
                     LineDevices& devices)
        : m_platform(platform), m_settings(settings), m_monitors(monitors), m_devices(devices) {}

    void handleCSTASwitchingFunctionDevices(CSTASwitchingFunctionDevices* event);

private:
    void stopMonitors();
    void serve(int deviceType, const std::string& deviceId);
    [[nodiscard]] bool logsMissedCalls(int deviceType, const std::string& deviceId) const;

    const PlatformServices& m_platform;
    const PhoneSettings& m_settings;
    CstaMonitors& m_monitors;
    LineDevices& m_devices;
};

}  // namespace journal
