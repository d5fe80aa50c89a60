#pragma once

#include <string>
#include <utility>

#include "platform/csta/CSTADevice.h"
#include "platform/csta/CSTAEvent.h"
#include "platform/csta/CSTALocalConnectionState.h"

/// The common base of the call-control events of ECMA-269: the connection of the event (the originated,
/// offered, queued, alerting, established, held, ... one, by the event's class), the parties, and the state
/// of the monitored device's own connection. A member that the switch omitted is empty.
class CSTACallControlEvent : public CSTAEvent {
public:
    [[nodiscard]] const std::string& getConnectionCallID() const noexcept { return m_callId; }
    [[nodiscard]] const std::string& getConnectionDeviceID() const noexcept { return m_deviceId; }
    void setConnection(std::string callId, std::string deviceId) {
        m_callId = std::move(callId);
        m_deviceId = std::move(deviceId);
    }

    [[nodiscard]] const CSTADevice& getCallingDevice() const noexcept { return m_calling; }
    void setCallingDevice(CSTADevice device) { m_calling = std::move(device); }
    [[nodiscard]] const CSTADevice& getCalledDevice() const noexcept { return m_called; }
    void setCalledDevice(CSTADevice device) { m_called = std::move(device); }
    [[nodiscard]] const CSTADevice& getLastRedirectionDevice() const noexcept { return m_lastRedirection; }
    void setLastRedirectionDevice(CSTADevice device) { m_lastRedirection = std::move(device); }

    /// A `CSTALocalConnectionState`, or another number that the switch reported.
    [[nodiscard]] int getLocalConnectionInfo() const noexcept { return m_localConnection; }
    void setLocalConnectionInfo(int state) noexcept { m_localConnection = state; }

    [[nodiscard]] std::string toString() const override;

protected:
    /// The device members of one event class for the text form: ", alerting: 200 Ann".
    [[nodiscard]] virtual std::string ownDevicesToString() const { return {}; }
    [[nodiscard]] static std::string deviceToString(const char* role, const CSTADevice& device);

private:
    std::string m_callId;
    std::string m_deviceId;
    CSTADevice m_calling;
    CSTADevice m_called;
    CSTADevice m_lastRedirection;
    int m_localConnection = CSTA_LCS_Null;
};
