#include "host/calls/PhoneCallEvents.h"

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAEventCause.h"

namespace host {

namespace {

/// The phone's own end: the monitored device.
CSTADevice ownEnd(const PhoneCall& call) {
    return {call.device, {}};
}

template <typename Event>
std::unique_ptr<Event> eventOf(const PhoneCall& call, const std::string& crossRefId, int localConnection) {
    auto event = std::make_unique<Event>();
    event->setMonitorCrossRefID(crossRefId);
    event->setCause(CSTA_EC_NewCall);
    event->setConnection(call.callId, call.device);
    event->setCallingDevice(call.outgoing ? ownEnd(call) : call.calling);
    event->setCalledDevice(call.called);
    event->setLastRedirectionDevice(call.redirecting);
    event->setLocalConnectionInfo(localConnection);
    return event;
}

}  // namespace

std::unique_ptr<CSTAEvent> ringingEvent(const PhoneCall& call, const std::string& crossRefId) {
    auto event = eventOf<CSTADeliveredEvent>(call, crossRefId, CSTA_LCS_Alerting);
    event->setAlertingDevice(ownEnd(call));
    return event;
}

std::unique_ptr<CSTAEvent> originatedEvent(const PhoneCall& call, const std::string& crossRefId) {
    return eventOf<CSTAOriginatedEvent>(call, crossRefId, CSTA_LCS_Connected);
}

std::unique_ptr<CSTAEvent> establishedEvent(const PhoneCall& call, const std::string& crossRefId) {
    auto event = eventOf<CSTAEstablishedEvent>(call, crossRefId, CSTA_LCS_Connected);
    event->setAnsweringDevice(call.outgoing ? call.partner : ownEnd(call));
    return event;
}

std::unique_ptr<CSTAEvent> clearedEvent(const PhoneCall& call, const std::string& crossRefId, int cause) {
    auto event = eventOf<CSTAConnectionClearedEvent>(call, crossRefId, CSTA_LCS_Null);
    event->setCause(cause);
    return event;
}

}  // namespace host
