#pragma once

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAConferenceEvents.h"

namespace host {

/// Adapts the events of one monitor that is not the own line's, so that the library, which has one table of
/// calls for all its monitors, files each call as what it is for this phone.
///
/// A shared line belongs to another person. The journal follows the calls that ring there, up to their end:
///
///     event at the shared line          delivered as
///     Delivered, Offered                itself, if the line rings and the call does not come from this phone
///     Transferred                       itself, if the call rings at the line
///     Diverted, CallInformation         itself
///     ConnectionCleared                 itself; Diverted if the call was completed elsewhere
///     Established                       Diverted: the call was answered, so it is not missed
///     Failed                            ConnectionCleared: a call that has rung is missed
///     other call-control events         -
///
/// The call ids get the line's number as a suffix ("77@2002"): the same call may ring at several lines, and
/// is a call of its own at each.
///
/// The Bluetooth telephone is the phone's own, and is named so as calling and answering device. The library
/// recognises its call by the platform's id for it, so that replaces the switch's id. It exists once: while a
/// call has it, further ones keep their own id, and on a switch that marks missed calls they are missed only
/// with a mark.
///
/// Reader thread only.
class OtherDeviceEvents {
public:
    /// `device` is the monitored device, not the own line's.
    explicit OtherDeviceEvents(std::string device) : m_device(std::move(device)) {}

    /// Returns null for a monitor of the own line, whose events need no change.
    [[nodiscard]] static std::unique_ptr<OtherDeviceEvents> of(const std::string& monitoredDevice,
                                                               std::string_view ownDevice);

    /// Returns the event to deliver instead of `event`, or null.
    [[nodiscard]] std::unique_ptr<CSTAEvent> adapt(std::unique_ptr<CSTAEvent> event);
    /// Call when the library has dropped all calls.
    void forgetCalls();

private:
    [[nodiscard]] std::unique_ptr<CSTAEvent> atSharedLine(std::unique_ptr<CSTAEvent> event);
    [[nodiscard]] bool ringsFromElsewhere(const CSTACallControlEvent& event) const;
    [[nodiscard]] std::unique_ptr<CSTAEvent> transferWhileRinging(std::unique_ptr<CSTAEvent> event);
    void atBluetooth(CSTAEvent& event);
    [[nodiscard]] std::string bluetoothId(const std::string& callId) const;

    const std::string m_device;
    /// The suffixed ids of the calls that ring at the shared line.
    std::set<std::string> m_ringing;
    /// The switch's id of the call that has the platform's id; empty if none has.
    std::string m_bluetoothCall;
};

}  // namespace host
