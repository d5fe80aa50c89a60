#include "host/csta-events/OtherDeviceEvents.h"

#include <utility>

#include "host/csta-wire/DeviceText.h"
#include "platform/csta/CSTAEventCause.h"
#include "platform/texts/communicationsServiceTexts.h"

namespace host {

namespace {

constexpr const char* kBluetooth = communicationsServiceTexts::content_bluetoothDeviceId;

/// False for the ids that mean "no call" and "a call that the phone never saw".
bool isCallId(const std::string& id) {
    return !id.empty() && id != "0" && id != "-1";
}

/// True for an event that ends the call for the library.
bool endsCall(const CSTAEvent& event) {
    return event.getType() == CSTAEventCode::eConnectionCleared || event.getType() == CSTAEventCode::eFailed;
}

template <typename IdOf>
void renameCalls(CSTAEvent& event, IdOf idOf) {
    if (auto* call = dynamic_cast<CSTACallControlEvent*>(&event)) {
        call->setConnection(idOf(call->getConnectionCallID()), call->getConnectionDeviceID());
    }
    if (auto* transferred = dynamic_cast<CSTATransferredEvent*>(&event)) {
        transferred->setOldCalls(idOf(transferred->getPrimaryoldcallCallID()),
                                 idOf(transferred->getSecondaryoldcallCallID()));
    }
    if (auto* joined = dynamic_cast<CSTAConferencedEvent*>(&event)) {
        std::string device;
        joined->getPrimaryoldcallDeviceID(device);
        joined->setPrimaryOldCall(idOf(joined->getPrimaryoldcallCallID()), device);
        joined->getSecondaryoldcallDeviceID(device);
        joined->setSecondaryOldCall(idOf(joined->getSecondaryoldcallCallID()), device);
        joined->setConferenceCallID(idOf(joined->getConferenceCallID()));
    }
}

/// The event as one of another class, about the same connection.
template <typename Event>
std::unique_ptr<CSTAEvent> as(const CSTACallControlEvent& event) {
    auto other = std::make_unique<Event>();
    static_cast<CSTACallControlEvent&>(*other) = event;
    other->setLocalConnectionInfo(CSTA_LCS_Null);
    return other;
}

CSTADevice ownIfBluetooth(const CSTADevice& device) {
    return device.number == kBluetooth ? CSTADevice{CSTADevice::kLocalDevice, {}} : device;
}

/// The Bluetooth telephone is the phone's own: the calls of the one are those of the other.
void nameOwnDevice(CSTAEvent& event) {
    if (auto* call = dynamic_cast<CSTACallControlEvent*>(&event)) {
        call->setCallingDevice(ownIfBluetooth(call->getCallingDevice()));
    }
    if (auto* established = dynamic_cast<CSTAEstablishedEvent*>(&event)) {
        established->setAnsweringDevice(ownIfBluetooth(established->getAnsweringDevice()));
    }
}

}  // namespace

std::unique_ptr<OtherDeviceEvents> OtherDeviceEvents::of(const std::string& monitoredDevice,
                                                         std::string_view ownDevice) {
    const bool own = monitoredDevice == CSTADevice::kLocalDevice ||
                     comparableNumber(monitoredDevice) == comparableNumber(ownDevice);
    return own ? nullptr : std::make_unique<OtherDeviceEvents>(monitoredDevice);
}

std::unique_ptr<CSTAEvent> OtherDeviceEvents::adapt(std::unique_ptr<CSTAEvent> event) {
    if (m_device != kBluetooth) {
        return atSharedLine(std::move(event));
    }
    atBluetooth(*event);
    return event;
}

void OtherDeviceEvents::forgetCalls() {
    m_ringing.clear();
    m_bluetoothCall.clear();
}

std::unique_ptr<CSTAEvent> OtherDeviceEvents::atSharedLine(std::unique_ptr<CSTAEvent> event) {
    auto* const call = dynamic_cast<CSTACallControlEvent*>(event.get());
    if (call == nullptr) {
        const bool ofConference = event->getType() == CSTAEventCode::eConferenced ||
                                  event->getType() == CSTAEventCode::eConferenceMembership;
        return ofConference ? nullptr : std::move(event);
    }
    renameCalls(*event, [this](const std::string& id) { return isCallId(id) ? id + '@' + m_device : id; });
    const std::string id = call->getConnectionCallID();
    switch (event->getType()) {
        case CSTAEventCode::eOffered:
        case CSTAEventCode::eDelivered:
            if (!ringsFromElsewhere(*call)) {
                return nullptr;
            }
            call->setConnection(id, m_device);
            m_ringing.insert(id);
            return event;
        case CSTAEventCode::eTransferred: return transferWhileRinging(std::move(event));
        case CSTAEventCode::eEstablished: m_ringing.erase(id); return as<CSTADivertedEvent>(*call);
        case CSTAEventCode::eConnectionCleared:
            m_ringing.erase(id);
            return call->getCause() == CSTA_EC_CompletedElsewhere ? as<CSTADivertedEvent>(*call)
                                                                  : std::move(event);
        case CSTAEventCode::eFailed: m_ringing.erase(id); return as<CSTAConnectionClearedEvent>(*call);
        case CSTAEventCode::eDiverted:
        case CSTAEventCode::eCallInformation: return event;
        default: return nullptr;
    }
}

bool OtherDeviceEvents::ringsFromElsewhere(const CSTACallControlEvent& event) const {
    const int own = event.getLocalConnectionInfo();
    const CSTADevice& calling = event.getCallingDevice();
    return (own == CSTA_LCS_Alerting || own == CSTA_LCS_Null) && !calling.isLocal() &&
           calling.number != m_device;
}

/// The library drops a call that is transferred to the phone; the new call then rings at the line.
std::unique_ptr<CSTAEvent> OtherDeviceEvents::transferWhileRinging(std::unique_ptr<CSTAEvent> event) {
    auto& transferred = dynamic_cast<CSTATransferredEvent&>(*event);
    if (m_ringing.erase(transferred.getPrimaryoldcallCallID()) +
            m_ringing.erase(transferred.getSecondaryoldcallCallID()) ==
        0) {
        return nullptr;
    }
    if (transferred.getTransferredToDevice().number == m_device) {
        transferred.setTransferredToDevice({CSTADevice::kLocalDevice, {}});
    }
    m_ringing.insert(transferred.getConnectionCallID());
    return event;
}

void OtherDeviceEvents::atBluetooth(CSTAEvent& event) {
    nameOwnDevice(event);
    const auto* const call = dynamic_cast<const CSTACallControlEvent*>(&event);
    if (call == nullptr) {
        renameCalls(event, [this](const std::string& id) { return bluetoothId(id); });
        return;
    }
    const std::string id = call->getConnectionCallID();
    const auto* const transferred = dynamic_cast<const CSTATransferredEvent*>(&event);
    const bool movesCall =
        transferred != nullptr && transferred->getPrimaryoldcallCallID() == m_bluetoothCall;
    if (isCallId(id) && m_bluetoothCall.empty() && !endsCall(event)) {
        m_bluetoothCall = id;
    }
    renameCalls(event, [&](const std::string& each) {
        return movesCall && each == id ? kBluetooth : bluetoothId(each);
    });
    if (movesCall) {
        m_bluetoothCall = id;
    } else if (id == m_bluetoothCall && endsCall(event)) {
        m_bluetoothCall.clear();
    }
}

std::string OtherDeviceEvents::bluetoothId(const std::string& callId) const {
    return isCallId(callId) && callId == m_bluetoothCall ? kBluetooth : callId;
}

}  // namespace host
