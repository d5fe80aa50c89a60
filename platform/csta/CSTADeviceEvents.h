#pragma once

#include <string>
#include <utility>

#include "platform/csta/CSTAEvent.h"

/// An event about a device rather than about a call; the journal handles none of them.
class CSTADeviceEvent : public CSTAEvent {
public:
    [[nodiscard]] const std::string& getDeviceID() const noexcept { return m_deviceId; }
    void setDeviceID(std::string deviceId) { m_deviceId = std::move(deviceId); }
    [[nodiscard]] std::string toString() const override { return "device: " + m_deviceId; }

private:
    std::string m_deviceId;
};

class CSTAHookswitchEvent final
    : public CSTAEventOf<CSTAHookswitchEvent, CSTADeviceEvent, CSTAEventCode::eHookswitch,
                         &CSTAEventObserverBase::handleCSTAHookswitchEvent> {};
class CSTAServiceInitiatedEvent final
    : public CSTAEventOf<CSTAServiceInitiatedEvent, CSTADeviceEvent, CSTAEventCode::eServiceInitiated,
                         &CSTAEventObserverBase::handleCSTAServiceInitiatedEvent> {};
class CSTABridgedEvent final : public CSTAEventOf<CSTABridgedEvent, CSTADeviceEvent, CSTAEventCode::eBridged,
                                                  &CSTAEventObserverBase::handleCSTABridgedEvent> {};
class CSTAButtonPressEvent final
    : public CSTAEventOf<CSTAButtonPressEvent, CSTADeviceEvent, CSTAEventCode::eButtonPress,
                         &CSTAEventObserverBase::handleCSTAButtonPressEvent> {};
class CSTAServiceCompletionFailureEvent final
    : public CSTAEventOf<CSTAServiceCompletionFailureEvent, CSTADeviceEvent,
                         CSTAEventCode::eServiceCompletionFailure,
                         &CSTAEventObserverBase::handleCSTAServiceCompletionFailureEvent> {};
class CSTABackInServiceEvent final
    : public CSTAEventOf<CSTABackInServiceEvent, CSTADeviceEvent, CSTAEventCode::eBackInService,
                         &CSTAEventObserverBase::handleCSTABackInServiceEvent> {};
class CSTAOutOfServiceEvent final
    : public CSTAEventOf<CSTAOutOfServiceEvent, CSTADeviceEvent, CSTAEventCode::eOutOfService,
                         &CSTAEventObserverBase::handleCSTAOutOfServiceEvent> {};
class CSTAMonitorStopEvent final
    : public CSTAEventOf<CSTAMonitorStopEvent, CSTADeviceEvent, CSTAEventCode::eMonitorStop,
                         &CSTAEventObserverBase::handleCSTAMonitorStopEvent> {};
class CSTAMessageWaitingEvent final
    : public CSTAEventOf<CSTAMessageWaitingEvent, CSTADeviceEvent, CSTAEventCode::eMessageWaiting,
                         &CSTAEventObserverBase::handleCSTAMessageWaitingEvent> {};
class CSTAForwardingEvent final
    : public CSTAEventOf<CSTAForwardingEvent, CSTADeviceEvent, CSTAEventCode::eForwarding,
                         &CSTAEventObserverBase::handleCSTAForwardingEvent> {};
class CSTADoNotDisturbEvent final
    : public CSTAEventOf<CSTADoNotDisturbEvent, CSTADeviceEvent, CSTAEventCode::eDoNotDisturb,
                         &CSTAEventObserverBase::handleCSTADoNotDisturbEvent> {};
class CSTAAgentBusyEvent final
    : public CSTAEventOf<CSTAAgentBusyEvent, CSTADeviceEvent, CSTAEventCode::eAgentBusy,
                         &CSTAEventObserverBase::handleCSTAAgentBusyEvent> {};
class CSTAAgentLoggedOnEvent final
    : public CSTAEventOf<CSTAAgentLoggedOnEvent, CSTADeviceEvent, CSTAEventCode::eAgentLoggedOn,
                         &CSTAEventObserverBase::handleCSTAAgentLoggedOnEvent> {};
class CSTAAgentLoggedOffEvent final
    : public CSTAEventOf<CSTAAgentLoggedOffEvent, CSTADeviceEvent, CSTAEventCode::eAgentLoggedOff,
                         &CSTAEventObserverBase::handleCSTAAgentLoggedOffEvent> {};
class CSTAAgentNotReadyEvent final
    : public CSTAEventOf<CSTAAgentNotReadyEvent, CSTADeviceEvent, CSTAEventCode::eAgentNotReady,
                         &CSTAEventObserverBase::handleCSTAAgentNotReadyEvent> {};
class CSTAAgentReadyEvent final
    : public CSTAEventOf<CSTAAgentReadyEvent, CSTADeviceEvent, CSTAEventCode::eAgentReady,
                         &CSTAEventObserverBase::handleCSTAAgentReadyEvent> {};
class CSTANetworkReachedEvent final
    : public CSTAEventOf<CSTANetworkReachedEvent, CSTADeviceEvent, CSTAEventCode::eNetworkReached,
                         &CSTAEventObserverBase::handleCSTANetworkReachedEvent> {};
class CSTADisplayUpdatedEvent final
    : public CSTAEventOf<CSTADisplayUpdatedEvent, CSTADeviceEvent, CSTAEventCode::eDisplayUpdated,
                         &CSTAEventObserverBase::handleCSTADisplayUpdatedEvent> {};
class CSTABusyLampFieldEvent final
    : public CSTAEventOf<CSTABusyLampFieldEvent, CSTADeviceEvent, CSTAEventCode::eBusyLampField,
                         &CSTAEventObserverBase::handleCSTABusyLampFieldEvent> {};
class CSTAButtonInformationEvent final
    : public CSTAEventOf<CSTAButtonInformationEvent, CSTADeviceEvent, CSTAEventCode::eButtonInformation,
                         &CSTAEventObserverBase::handleCSTAButtonInformationEvent> {};
