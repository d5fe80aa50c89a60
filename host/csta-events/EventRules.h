#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "host/calls/PhoneCall.h"
#include "host/csta-events/CauseTable.h"
#include "host/csta-events/DeviceReader.h"
#include "host/csta-wire/EventSchemas.h"

namespace host {

/// An event of a call, for the rules below.
struct EventContext {
    WireEvent event = WireEvent::eOriginated;
    /// The party whose connection the event is about: the alerting, dropped, holding, diverting, failing or
    /// transferring one.
    EventDevice subject;
    EventDevice calling;
    /// The number of digits of the monitored device: the internal numbers have as many.
    std::size_t ownDigits = 0;
    CSTADevice called;
    /// A `CSTALocalConnectionState`; `std::nullopt` if the switch sent none.
    std::optional<int> localConnection;
    /// The cause is callPickup.
    bool pickup = false;
    /// The cause is that of a reminder: the switch rings for a call that the phone holds.
    bool reminds = false;
    /// The phone's part in the call so far; null if the call is not known.
    const PhoneCall* call = nullptr;
};

/// The treatment of an event by the link.
struct EventDecision {
    enum class Action {
        eDeliver,
        eDrop,
        /// Deliver a ConnectionCleared event instead.
        eEnd,
        /// Deliver a ConnectionCleared event instead, with the cause "completed elsewhere".
        eEndElsewhere,
    };
    Action action = Action::eDeliver;
    /// The switch uses the id of a call again that has not ended: the known call ends first.
    bool endsKnownCall = false;
};

/// The `CSTALocalConnectionState` for an ECMA-323 value; `std::nullopt` for an unknown one.
[[nodiscard]] std::optional<int> localConnectionNumber(std::string_view word) noexcept;

/// The monitored phone's own state: as sent by the switch, otherwise inferred from the event and the phone's
/// part in the call.
[[nodiscard]] int localConnectionOf(const EventContext& context) noexcept;

/// Decides by the devices and the connection of the event, and by the phone's part in the call. The journal
/// follows this phone only, so an event of another party is dropped where it would end, reverse or rename the
/// phone's own call. docs/call-filing.md has the rules as a table.
[[nodiscard]] EventDecision decide(const EventContext& context);

/// True if the event ends the phone's own connection without a ConnectionCleared event: the call was diverted
/// away.
[[nodiscard]] bool endsWithoutClearedEvent(const EventContext& context) noexcept;

[[nodiscard]] CauseContext causeContextOf(const EventContext& context) noexcept;

}  // namespace host
