#pragma once

#include <optional>
#include <string_view>

#include "host/csta-wire/EventSchemas.h"
#include "host/csta/CauseTable.h"
#include "host/csta/DeviceReader.h"

namespace host {

/// What the rules below look at. `subject` is the party whose connection the event is about: the alerting, dropped,
/// holding, diverting, failing, transferring one.
struct EventFacts {
    WireEvent event = WireEvent::eOriginated;
    EventParty subject = EventParty::eUnknown;
    /// A `CSTALocalConnectionState`; nothing when the switch did not say.
    std::optional<int> localConnection;
    /// The monitored phone is the calling device.
    bool outgoing = false;
    /// The call is known to be a conference.
    bool conference = false;
};

/// The `CSTALocalConnectionState` for the standard's word; nothing for another word.
[[nodiscard]] std::optional<int> localConnectionNumber(std::string_view word) noexcept;

/// The monitored phone's own state: as the switch said, else as the event makes likely.
[[nodiscard]] int localConnectionOf(const EventFacts& facts) noexcept;

/// Whether the event tells something of the monitored phone's own connection. A phone ends a call on any
/// ConnectionCleared, so what another party does while the phone stays in the call is kept from it:
///   ConnectionCleared of another party   delivered when the phone's own state is null or not told (a call of two is over
///                                        with either party), or when the call is a conference (a member leaves)
///   Held, Retrieved by another party     never delivered: the phone itself still talks
///   Diverted by another party            delivered unless the phone is still in the call: by its own state or, when that
///                                        is not told, because it is the caller
[[nodiscard]] bool concernsThePhone(const EventFacts& facts) noexcept;

/// Whether the phone's own connection is gone with the event although the switch need not say so by a
/// ConnectionCleared: a call that was diverted away.
[[nodiscard]] bool endsSilently(const EventFacts& facts) noexcept;

[[nodiscard]] CauseContext causeContextOf(const EventFacts& facts) noexcept;

}  // namespace host
