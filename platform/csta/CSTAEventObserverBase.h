#pragma once

class CSTAAgentBusyEvent;
class CSTAAgentLoggedOffEvent;
class CSTAAgentLoggedOnEvent;
class CSTAAgentNotReadyEvent;
class CSTAAgentReadyEvent;
class CSTABackInServiceEvent;
class CSTABridgedEvent;
class CSTABusyLampFieldEvent;
class CSTAButtonInformationEvent;
class CSTAButtonPressEvent;
class CSTACallBackEvent;
class CSTACallInformationEvent;
class CSTAConferencedEvent;
class CSTAConferenceMembershipEvent;
class CSTAConnectionClearedEvent;
class CSTADeliveredEvent;
class CSTADisplayUpdatedEvent;
class CSTADivertedEvent;
class CSTADoNotDisturbEvent;
class CSTAEstablishedEvent;
class CSTAFailedEvent;
class CSTAForwardingEvent;
class CSTAHeldEvent;
class CSTAHookswitchEvent;
class CSTAMessageWaitingEvent;
class CSTAMonitorStopEvent;
class CSTANetworkReachedEvent;
class CSTAOfferedEvent;
class CSTAOriginatedEvent;
class CSTAOutOfServiceEvent;
class CSTAPrivateEvent;
class CSTAQueuedEvent;
class CSTARetrievedEvent;
class CSTAServiceCompletionFailureEvent;
class CSTAServiceInitiatedEvent;
class CSTASwitchingFunctionDevices;
class CSTASystemStatusEvent;
class CSTATransferredEvent;

/// One handler for each kind of CSTA event; each has no effect unless it is overridden. `CSTAEvent::dispatch`
/// calls the right one. Events are borrowed for the call. Threads: the line's strand, one event at a time.
/// New handlers are added at the end.
class CSTAEventObserverBase {
public:
    CSTAEventObserverBase() = default;
    CSTAEventObserverBase(const CSTAEventObserverBase&) = delete;
    CSTAEventObserverBase& operator=(const CSTAEventObserverBase&) = delete;
    virtual ~CSTAEventObserverBase() = default;

    virtual void handleCSTAOriginatedEvent(CSTAOriginatedEvent* /*event*/) {}
    virtual void handleCSTAOfferedEvent(CSTAOfferedEvent* /*event*/) {}
    virtual void handleCSTAQueuedEvent(CSTAQueuedEvent* /*event*/) {}
    virtual void handleCSTADeliveredEvent(CSTADeliveredEvent* /*event*/) {}
    virtual void handleCSTADivertedEvent(CSTADivertedEvent* /*event*/) {}
    virtual void handleCSTAEstablishedEvent(CSTAEstablishedEvent* /*event*/) {}
    virtual void handleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* /*event*/) {}
    virtual void handleCSTAFailedEvent(CSTAFailedEvent* /*event*/) {}
    virtual void handleCSTAHookswitchEvent(CSTAHookswitchEvent* /*event*/) {}
    virtual void handleCSTAConferencedEvent(CSTAConferencedEvent* /*event*/) {}
    virtual void handleCSTACallInformationEvent(CSTACallInformationEvent* /*event*/) {}
    virtual void handleCSTASystemStatusEvent(CSTASystemStatusEvent* /*event*/) {}
    virtual void handleCSTAPrivateEvent(CSTAPrivateEvent* /*event*/) {}
    virtual void handleCSTATransferredEvent(CSTATransferredEvent* /*event*/) {}
    virtual void handleCSTACallBackEvent(CSTACallBackEvent* /*event*/) {}
    virtual void handleCSTASwitchingFunctionDevices(CSTASwitchingFunctionDevices* /*event*/) {}
    virtual void handleCSTAConferenceMembershipEvent(CSTAConferenceMembershipEvent* /*event*/) {}
    virtual void handleCSTAHeldEvent(CSTAHeldEvent* /*event*/) {}
    virtual void handleCSTARetrievedEvent(CSTARetrievedEvent* /*event*/) {}

    virtual void handleCSTAServiceInitiatedEvent(CSTAServiceInitiatedEvent* /*event*/) {}
    virtual void handleCSTABridgedEvent(CSTABridgedEvent* /*event*/) {}
    virtual void handleCSTAButtonPressEvent(CSTAButtonPressEvent* /*event*/) {}
    virtual void handleCSTAServiceCompletionFailureEvent(CSTAServiceCompletionFailureEvent* /*event*/) {}
    virtual void handleCSTABackInServiceEvent(CSTABackInServiceEvent* /*event*/) {}
    virtual void handleCSTAOutOfServiceEvent(CSTAOutOfServiceEvent* /*event*/) {}
    virtual void handleCSTAMonitorStopEvent(CSTAMonitorStopEvent* /*event*/) {}
    virtual void handleCSTAMessageWaitingEvent(CSTAMessageWaitingEvent* /*event*/) {}
    virtual void handleCSTAForwardingEvent(CSTAForwardingEvent* /*event*/) {}
    virtual void handleCSTADoNotDisturbEvent(CSTADoNotDisturbEvent* /*event*/) {}
    virtual void handleCSTAAgentBusyEvent(CSTAAgentBusyEvent* /*event*/) {}
    virtual void handleCSTAAgentLoggedOnEvent(CSTAAgentLoggedOnEvent* /*event*/) {}
    virtual void handleCSTAAgentLoggedOffEvent(CSTAAgentLoggedOffEvent* /*event*/) {}
    virtual void handleCSTAAgentNotReadyEvent(CSTAAgentNotReadyEvent* /*event*/) {}
    virtual void handleCSTAAgentReadyEvent(CSTAAgentReadyEvent* /*event*/) {}
    virtual void handleCSTANetworkReachedEvent(CSTANetworkReachedEvent* /*event*/) {}
    virtual void handleCSTADisplayUpdatedEvent(CSTADisplayUpdatedEvent* /*event*/) {}
    virtual void handleCSTABusyLampFieldEvent(CSTABusyLampFieldEvent* /*event*/) {}
    virtual void handleCSTAButtonInformationEvent(CSTAButtonInformationEvent* /*event*/) {}
};
