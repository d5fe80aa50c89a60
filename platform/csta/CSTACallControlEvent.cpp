#include "platform/csta/CSTACallControlEvent.h"

std::string CSTACallControlEvent::deviceToString(const char* role, const CSTADevice& device) {
    if (device.number.empty() && device.name.empty()) {
        return {};
    }
    std::string text = std::string(", ") + role + ": " + device.number;
    if (!device.name.empty()) {
        text += " " + device.name;
    }
    return text;
}

std::string CSTACallControlEvent::toString() const {
    return "call: " + m_callId + ", device: " + m_deviceId + deviceToString("calling", m_calling) +
           deviceToString("called", m_called) + ownDevicesToString() +
           deviceToString("lastRedirection", m_lastRedirection) +
           ", localConnection: " + std::to_string(m_localConnection) +
           ", cause: " + std::to_string(getCause());
}
