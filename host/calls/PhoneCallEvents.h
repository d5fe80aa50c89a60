#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/calls/PhoneCall.h"
#include "platform/csta/CSTAEvent.h"

namespace host {

/// An event for the journal.
struct PhoneEvent {
    std::unique_ptr<CSTAEvent> event;
    /// The time of the event; without it, the event happens now.
    std::optional<PhoneCall::Time> time{};
    /// The event ends a call at an assumed time.
    bool endApproximate = false;
};

// Events that the switch did not send, made from what is known of a call. `crossRefId` is the monitor's id.

/// The phone rings: Delivered.
[[nodiscard]] std::unique_ptr<CSTAEvent> ringingEvent(const PhoneCall& call, const std::string& crossRefId);
/// The phone places the call: Originated.
[[nodiscard]] std::unique_ptr<CSTAEvent> originatedEvent(const PhoneCall& call,
                                                         const std::string& crossRefId);
/// The switch marks the call as missed: CallInformation.
[[nodiscard]] std::unique_ptr<CSTAEvent> missedMarkEvent(const PhoneCall& call,
                                                         const std::string& crossRefId);
/// The call is established.
[[nodiscard]] std::unique_ptr<CSTAEvent> establishedEvent(const PhoneCall& call,
                                                          const std::string& crossRefId);
/// The phone's own connection ends: ConnectionCleared with a `CSTAEventCause`.
[[nodiscard]] std::unique_ptr<CSTAEvent> clearedEvent(const PhoneCall& call, const std::string& crossRefId,
                                                      int cause);
/// The phone's own connection has ended without an event: ConnectionCleared, "completed elsewhere" if another
/// phone has established the call, else normal clearing.
[[nodiscard]] std::unique_ptr<CSTAEvent> unreportedEndEvent(const PhoneCall& call,
                                                            const std::string& crossRefId);

/// The events of a call up to now, at their times. A conference has those by which `members` have joined it.
[[nodiscard]] std::vector<PhoneEvent> eventsOf(const PhoneCall& known, const std::vector<PhoneCall>& members,
                                               const std::string& crossRefId);

}  // namespace host
