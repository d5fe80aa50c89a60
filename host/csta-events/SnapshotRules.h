#pragma once

#include <optional>
#include <string>

#include "host/calls/PhoneCall.h"
#include "host/csta-events/SnapshotReader.h"

namespace host {

/// The phone's call as a snapshot describes it; `std::nullopt` if the phone does not take part, or only
/// dials, queues or has failed: its next event has more. Times are not set, except that `established` has
/// a value if the call is established. `device` is the device as the calls name it.
[[nodiscard]] std::optional<PhoneCall> callFrom(const DeviceSnapshot::Connection& connection,
                                                const CallSnapshot& snapshot, const std::string& device);

/// True if the known call is a dialled code, which has picked up the call of the snapshot.
[[nodiscard]] bool isPickedUp(const PhoneCall& known, const PhoneCall& now);

/// True if the switch has used the id of the known call again for the call of the snapshot: an established
/// call rings again, a ringing one is being placed, the phone is the caller of a call that came in, the known
/// caller rings for another one, or the party at the far end of the known call is no party of the snapshot. A
/// transferred call, and one that is picked up, have other parties and are the same call.
[[nodiscard]] bool isOtherCall(const PhoneCall& known, const PhoneCall& now, const CallSnapshot& snapshot);

}  // namespace host
