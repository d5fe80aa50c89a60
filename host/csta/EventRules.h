#pragma once

#include <optional>
#include <string_view>

#include "host/csta-wire/EventSchemas.h"
#include "host/csta/CauseTable.h"
#include "host/csta/DeviceReader.h"

namespace host {

/// The context of an event, for the rules below. `subject` is the party whose connection the event is about:
/// the alerting, dropped, holding, diverting, failing or transferring one.
struct EventContext {
    WireEvent event = WireEvent::eOriginated;
    EventParty subject = EventParty::eUnknown;
    /// A `CSTALocalConnectionState`; `std::nullopt` if the switch sent none.
    std::optional<int> localConnection;
    /// The monitored phone is the calling device.
    bool outgoing = false;
    /// The call is a conference.
    bool conference = false;
};

/// The `CSTALocalConnectionState` for an ECMA-323 value; `std::nullopt` for an unknown one.
[[nodiscard]] std::optional<int> localConnectionNumber(std::string_view word) noexcept;

/// The monitored phone's own state: as sent by the switch, otherwise inferred from the event.
[[nodiscard]] int localConnectionOf(const EventContext& context) noexcept;

/// True if the event is about the monitored phone's own connection. A phone ends a call on any
/// ConnectionCleared, so events of another party are dropped while the phone stays in the call:
///   ConnectionCleared of another party   delivered if the phone's own state is null or not sent (a call of
///                                        two parties ends with either), or if the call is a conference
///   Held, Retrieved by another party     never delivered: the phone itself is still connected
///   Diverted by another party            delivered unless the phone is still in the call, by its own state,
///                                        or because it is the caller if that is not sent
[[nodiscard]] bool isForOwnConnection(const EventContext& context) noexcept;

/// True if the event ends the phone's own connection without a ConnectionCleared event: the call was diverted
/// away.
[[nodiscard]] bool endsWithoutClearedEvent(const EventContext& context) noexcept;

[[nodiscard]] CauseContext causeContextOf(const EventContext& context) noexcept;

}  // namespace host
