#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <pugixml.hpp>

#include "host/csta-events/DeviceReader.h"
#include "host/csta-events/EventRules.h"
#include "platform/csta/CSTACallControlEvents.h"

namespace host {

class WireDocument;

/// Reads one event document and builds the platform's event from it. Short-lived: the document must outlive
/// it.
class EventBuilder {
public:
    EventBuilder(const EventSchema& schema, const WireDocument& document, DeviceReader devices,
                 std::string crossRefId);

    [[nodiscard]] const EventContext& context() const noexcept { return m_context; }
    /// Sets the phone's part in the call so far, which the built events depend on; null if it is not known.
    /// Borrowed.
    void setCall(const PhoneCall* call) noexcept { m_context.call = call; }

    /// The id of the calls of a monitor whose switch sends no call ids.
    [[nodiscard]] static std::string unnumberedCallId(const std::string& crossRefId) {
        return "call-" + crossRefId;
    }
    /// The call id of the event's connection. If the switch sends no call ids, one made from the monitor's
    /// id.
    [[nodiscard]] const std::string& callId() const noexcept { return m_callId; }
    /// The id of the call that a transfer or a conference creates.
    [[nodiscard]] std::string newCallId() const;
    /// The monitored device as the platform receives it.
    [[nodiscard]] std::string monitoredDevice() const { return m_devices.monitoredDevice(); }
    [[nodiscard]] CSTADevice redirecting() const;
    /// The `CSTAEventCause` as the switch has sent it. The built event may have a less exact one.
    [[nodiscard]] int causeAtSwitch() const;
    /// The far end of a call that has been transferred to this phone: neither this phone nor the transferring
    /// one. Empty if the event does not name it.
    [[nodiscard]] CSTADevice transferredParty() const;

    [[nodiscard]] std::unique_ptr<CSTAEvent> build() const;
    /// The ConnectionCleared event for the second call of a phone that transfers; the switch sends none.
    /// `nullptr` for any other event.
    [[nodiscard]] std::unique_ptr<CSTAEvent> buildSecondaryClearing() const;
    /// The ConnectionCleared event for the phone's own connection, with the devices and the cause word of
    /// this event.
    [[nodiscard]] std::unique_ptr<CSTAEvent> buildClearing() const;

private:
    [[nodiscard]] std::string callIdOf(pugi::xml_node connection) const;
    [[nodiscard]] pugi::xml_node member(std::string_view name) const;
    [[nodiscard]] EventDevice calling() const;
    [[nodiscard]] CSTADevice called() const;
    [[nodiscard]] CSTADevice ownDevice() const;
    [[nodiscard]] bool ringsAtMemberOfGroup(const CSTADeliveredEvent& event) const;

    template <typename Event>
    [[nodiscard]] std::unique_ptr<Event> callControl() const;
    template <typename Event>
    [[nodiscard]] std::unique_ptr<CSTAEvent> deviceEvent() const;
    [[nodiscard]] std::unique_ptr<CSTAEvent> callInformation() const;
    [[nodiscard]] std::unique_ptr<CSTAEvent> transferred() const;
    [[nodiscard]] CSTADevice transferredTo(std::string_view knownCallId) const;
    [[nodiscard]] std::unique_ptr<CSTAEvent> conferenced() const;
    [[nodiscard]] std::unique_ptr<CSTAEvent> callBack() const;
    [[nodiscard]] std::unique_ptr<CSTAEvent> privateEvent() const;
    [[nodiscard]] std::string farEndOf(std::string_view oldCallId, pugi::xml_node oldCall) const;
    void fillCommon(CSTAEvent& event, CauseContext context) const;

    const EventSchema& m_schema;
    const pugi::xml_node m_root;
    const DeviceReader m_devices;
    const std::string m_crossRefId;
    EventDevice m_connectionDevice;
    EventDevice m_device;
    std::string m_callId;
    EventContext m_context;
};

/// The text of an event's private data: that of its `callStatus` element, otherwise plain text, otherwise
/// text in hexadecimal digits. Empty for private data of other vendors.
[[nodiscard]] std::string privateText(pugi::xml_node root);

}  // namespace host
