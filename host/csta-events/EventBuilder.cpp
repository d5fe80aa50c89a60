#include "host/csta-events/EventBuilder.h"

#include <optional>
#include <utility>

#include "host/csta-wire/CallLogWire.h"
#include "host/csta-wire/DeviceText.h"
#include "host/csta-wire/WireDocument.h"
#include "platform/csta/CSTAConferenceEvents.h"
#include "platform/csta/CSTADeviceEvents.h"
#include "platform/csta/CSTAEventCause.h"
#include "platform/csta/CSTAPrivateEvents.h"

namespace host {

namespace {

/// The connection list, under either of its names.
pugi::xml_node connectionList(pugi::xml_node root) {
    const pugi::xml_node transferred = childNamed(root, "transferredConnections");
    return transferred ? transferred : childNamed(root, "conferenceConnections");
}

std::string oldCallIdOf(pugi::xml_node item) {
    return childText(childNamed(item, "oldConnection"), "callID");
}

}  // namespace

EventBuilder::EventBuilder(const EventSchema& schema, const WireDocument& document, DeviceReader devices,
                           std::string crossRefId)
    : m_schema(schema),
      m_root(document.root()),
      m_devices(std::move(devices)),
      m_crossRefId(std::move(crossRefId)) {
    const pugi::xml_node connection = member(m_schema.connection);
    m_connectionDevice = m_devices.connectionDevice(connection);
    m_device = m_devices.device(member(m_schema.device));
    m_callId = callIdOf(connection);

    m_context.event = schema.event;
    m_context.localConnection = localConnectionNumber(childText(m_root, "localConnectionInfo"));
    const std::string cause = childText(m_root, "cause");
    m_context.pickup = cause == "callPickup";
    m_context.reminds = cause.starts_with("recall");
    m_context.ownDigits = m_devices.monitoredDigits();
    m_context.calling = calling();
    m_context.called = called();
    // ConnectionCleared is about the dropped party, independent of the releasing one. In other events the
    // device member is more reliable, because some switches put the monitored device into every connection.
    const bool byConnection =
        schema.event == WireEvent::eConnectionCleared || m_device.party == EventParty::eUnknown;
    m_context.subject = byConnection ? m_connectionDevice : m_device;
}

std::string EventBuilder::newCallId() const {
    for (const pugi::xml_node item : connectionList(m_root).children()) {
        if (std::string callId = childText(childNamed(item, "newConnection"), "callID"); !callId.empty()) {
            return callId;
        }
    }
    return m_callId;
}

std::unique_ptr<CSTAEvent> EventBuilder::build() const {
    switch (m_schema.event) {
        case WireEvent::eServiceInitiated: return deviceEvent<CSTAServiceInitiatedEvent>();
        case WireEvent::eOriginated: return callControl<CSTAOriginatedEvent>();
        case WireEvent::eOffered: return callControl<CSTAOfferedEvent>();
        case WireEvent::eQueued: return callControl<CSTAQueuedEvent>();
        case WireEvent::eDelivered: {
            auto event = callControl<CSTADeliveredEvent>();
            event->setAlertingDevice(ringsAtMemberOfGroup(*event) ? event->getCalledDevice() : ownDevice());
            return event;
        }
        case WireEvent::eDiverted: {
            auto event = callControl<CSTADivertedEvent>();
            event->setDivertingDevice(ownDevice());
            event->setNewDestination(m_devices.device(member("newDestination")).device);
            return event;
        }
        case WireEvent::eEstablished: {
            auto event = callControl<CSTAEstablishedEvent>();
            event->setAnsweringDevice(ownDevice());
            return event;
        }
        case WireEvent::eHeld: return callControl<CSTAHeldEvent>();
        case WireEvent::eRetrieved: return callControl<CSTARetrievedEvent>();
        case WireEvent::eFailed: {
            auto event = callControl<CSTAFailedEvent>();
            event->setFailingDevice(ownDevice());
            return event;
        }
        case WireEvent::eConnectionCleared: {
            auto event = callControl<CSTAConnectionClearedEvent>();
            event->setReleasingDevice(m_device.device);
            return event;
        }
        case WireEvent::eTransferred: return transferred();
        case WireEvent::eConferenced: return conferenced();
        case WireEvent::eCallInformation: return callInformation();
        case WireEvent::eNetworkReached: return deviceEvent<CSTANetworkReachedEvent>();
        case WireEvent::ePrivate: return privateEvent();
        case WireEvent::eCallBack: return callBack();
    }
    return nullptr;
}

std::unique_ptr<CSTAEvent> EventBuilder::buildClearing() const {
    auto event = callControl<CSTAConnectionClearedEvent>();
    event->setReleasingDevice(m_device.device);
    event->setCause(causeNumber(childText(m_root, "cause"), CauseContext::eConnectionCleared));
    return event;
}

std::unique_ptr<CSTAEvent> EventBuilder::buildSecondaryClearing() const {
    const pugi::xml_node secondary = member("secondaryOldCall");
    const std::string callId = childText(secondary, "callID");
    if (m_schema.event != WireEvent::eTransferred || m_context.subject.party != EventParty::eMonitored ||
        callId.empty()) {
        return nullptr;
    }
    auto event = std::make_unique<CSTAConnectionClearedEvent>();
    event->setMonitorCrossRefID(m_crossRefId);
    event->setConnection(callId, m_devices.connectionDevice(secondary).device.number);
    event->setReleasingDevice(m_device.device);
    event->setLocalConnectionInfo(CSTA_LCS_Null);
    event->setCause(CSTA_EC_Transfer);
    return event;
}

std::string EventBuilder::callIdOf(pugi::xml_node connection) const {
    std::string callId = childText(connection, "callID");
    return callId.empty() ? unnumberedCallId(m_crossRefId) : callId;
}

pugi::xml_node EventBuilder::member(std::string_view name) const {
    return childNamed(m_root, name);
}

/// True if the phone's own call rings at a device that is not the called one, without having been redirected.
bool EventBuilder::ringsAtMemberOfGroup(const CSTADeliveredEvent& event) const {
    switch (event.getCause()) {
        case CSTA_EC_CallForwardImmediate:
        case CSTA_EC_CallForwardBusy:
        case CSTA_EC_CallForwardNoAnswer:
        case CSTA_EC_CallForward:
        case CSTA_EC_Forwarded:
        case CSTA_EC_Redirected:
        case CSTA_EC_RedirectedByDistribution: return false;
        default: break;
    }
    const bool transferred = m_context.call != nullptr && m_context.call->transferred;
    const std::string alerting = comparableNumber(ownDevice().number);
    const std::string called = comparableNumber(event.getCalledDevice().number);
    return m_context.calling.party == EventParty::eMonitored && !transferred && !called.empty() &&
           !alerting.ends_with(called) && !called.ends_with(alerting);
}

EventDevice EventBuilder::calling() const {
    return m_devices.caller(member("callingDevice"), member("networkCallingDevice"));
}

CSTADevice EventBuilder::called() const {
    return m_devices.device(member("calledDevice"), member("networkCalledDevice")).device;
}

CSTADevice EventBuilder::redirecting() const {
    return m_devices.device(member("lastRedirectionDevice")).device;
}

int EventBuilder::causeAtSwitch() const {
    return causeNumber(childText(m_root, "cause"), CauseContext::eOther);
}

/// The device member that is specific to this event, otherwise the device of the connection.
CSTADevice EventBuilder::ownDevice() const {
    return m_device.party == EventParty::eUnknown ? m_connectionDevice.device : m_device.device;
}

template <typename Event>
std::unique_ptr<Event> EventBuilder::callControl() const {
    auto event = std::make_unique<Event>();
    fillCommon(*event, causeContextOf(m_context));
    event->setConnection(m_callId, m_connectionDevice.device.number);
    event->setCallingDevice(calling().device);
    event->setCalledDevice(called());
    event->setLastRedirectionDevice(redirecting());
    event->setLocalConnectionInfo(localConnectionOf(m_context));
    return event;
}

template <typename Event>
std::unique_ptr<CSTAEvent> EventBuilder::deviceEvent() const {
    auto event = std::make_unique<Event>();
    fillCommon(*event, CauseContext::eOther);
    event->setDeviceID(m_connectionDevice.device.number);
    return event;
}

/// On the wire `device` is the phone's own end and the caller is a separate member; the platform expects the
/// far end.
std::unique_ptr<CSTAEvent> EventBuilder::callInformation() const {
    auto event = callControl<CSTACallInformationEvent>();
    const EventDevice caller = calling();
    event->setDevice(caller.party == EventParty::eOther ? caller.device : ownDevice());
    return event;
}

/// The primary old call is the one in which the monitored phone was. If another party transfers, that may be
/// the secondary one on the wire.
std::unique_ptr<CSTAEvent> EventBuilder::transferred() const {
    auto event = callControl<CSTATransferredEvent>();
    std::string primary = m_callId;
    std::string secondary = childText(member("secondaryOldCall"), "callID");
    for (const pugi::xml_node item : connectionList(m_root).children()) {
        const pugi::xml_node newConnection = childNamed(item, "newConnection");
        const bool own = m_devices.connectionDevice(newConnection).party == EventParty::eMonitored ||
                         m_devices.device(childNamed(item, "endpoint")).party == EventParty::eMonitored;
        if (own && !secondary.empty() && oldCallIdOf(item) == secondary) {
            std::swap(primary, secondary);
            break;
        }
    }
    event->setConnection(newCallId(), m_connectionDevice.device.number);
    event->setTransferringDevice(m_device.device);
    event->setTransferredToDevice(transferredTo(primary));
    event->setOldCalls(std::move(primary), std::move(secondary));
    return event;
}

/// Some switches send the new partner, or its name, only in the connection list. There the partner is the
/// endpoint that was not in the call with the phone.
CSTADevice EventBuilder::transferredTo(std::string_view knownCallId) const {
    const pugi::xml_node named = member("transferredToDevice");
    CSTADevice to = m_devices.device(named).device;
    for (const pugi::xml_node item : connectionList(m_root).children()) {
        const pugi::xml_node end = childNamed(item, "endpoint");
        const EventDevice endpoint = m_devices.device(end);
        if (endpoint.party != EventParty::eOther || endpoint.device.number == m_device.device.number) {
            continue;
        }
        if (to.number.empty() && oldCallIdOf(item) != knownCallId) {
            to = m_devices.device(named, end).device;
        }
        if (to.name.empty() && to.number == endpoint.device.number) {
            to.name = endpoint.device.name;
        }
    }
    return to;
}

CSTADevice EventBuilder::transferredParty() const {
    for (const pugi::xml_node item : connectionList(m_root).children()) {
        EventDevice endpoint =
            m_devices.device(childNamed(item, "endpoint"), childNamed(item, "newConnection"));
        if (endpoint.party == EventParty::eOther && endpoint.device.number != m_device.device.number) {
            return endpoint.device;
        }
    }
    return {};
}

std::unique_ptr<CSTAEvent> EventBuilder::callBack() const {
    auto event = std::make_unique<CSTACallBackEvent>();
    fillCommon(*event, CauseContext::eOther);
    event->setOriginatingDevice(m_device.device);
    event->setTargetDevice(m_devices.device(member("targetDevice")).device);
    const std::string set = childText(m_root, "callBackSetCanceled");
    event->setSet(set.empty() || isTrue(set));
    return event;
}

std::unique_ptr<CSTAEvent> EventBuilder::privateEvent() const {
    const pugi::xml_node membership =
        childNamed(childNamed(privateDataOf(m_root), "private"), "conferenceMembership");
    if (!membership) {
        auto event = std::make_unique<CSTAPrivateEvent>();
        fillCommon(*event, CauseContext::eOther);
        if (std::optional<CallLogEntryEvent> entry = readCallLogEntry(m_root)) {
            event->setCallLogEntry(std::move(*entry));
        }
        return event;
    }
    auto event = std::make_unique<CSTAConferenceMembershipEvent>();
    fillCommon(*event, CauseContext::eOther);
    event->setCallID(childText(membership, "callID"));
    event->setDeviceID(m_devices.connectionDevice(membership).device.number);
    for (const pugi::xml_node one : membership.children()) {
        if (localName(one) == "member") {
            event->addUserInformation(m_devices.device(one).device);
        }
    }
    return event;
}

std::unique_ptr<CSTAEvent> EventBuilder::conferenced() const {
    auto event = std::make_unique<CSTAConferencedEvent>();
    fillCommon(*event, CauseContext::eOther);
    event->setConferenceCallID(newCallId());
    const pugi::xml_node primary = member("primaryOldCall");
    const pugi::xml_node secondary = member("secondaryOldCall");
    const std::string primaryCall = childText(primary, "callID");
    const std::string secondaryCall = childText(secondary, "callID");
    event->setPrimaryOldCall(primaryCall, farEndOf(primaryCall, primary));
    event->setSecondaryOldCall(secondaryCall, farEndOf(secondaryCall, secondary));
    for (const pugi::xml_node item : connectionList(m_root).children()) {
        event->addNewConnectionCallID(childText(childNamed(item, "newConnection"), "callID"));
    }
    return event;
}

/// The other party of an old call from the connection list, otherwise the device of the old connection.
std::string EventBuilder::farEndOf(std::string_view oldCallId, pugi::xml_node oldCall) const {
    for (const pugi::xml_node item : connectionList(m_root).children()) {
        const EventDevice endpoint = m_devices.device(childNamed(item, "endpoint"));
        if (!oldCallId.empty() && oldCallIdOf(item) == oldCallId && endpoint.party == EventParty::eOther) {
            return endpoint.device.number;
        }
    }
    return m_devices.connectionDevice(oldCall).device.number;
}

void EventBuilder::fillCommon(CSTAEvent& event, CauseContext context) const {
    event.setMonitorCrossRefID(m_crossRefId);
    event.setCause(causeNumber(childText(m_root, "cause"), context));
    event.setPrivateData(privateText(m_root));
}

}  // namespace host
