#pragma once

#include <optional>
#include <string>

#include "host/calls/PhoneCall.h"
#include "host/calls/PhoneCalls.h"

class CSTAEvent;

namespace host {

/// Updates the calls by an event that the journal receives. `device` is the device whose monitor reports it.
/// Events that belong to no call have no effect. At a shared line a call is followed as long as it rings.
/// `cause` is the `CSTAEventCause` of the switch if the event has another one, which the journal needs: the
/// reason of the call follows from it.
void follow(PhoneCalls& calls, const CSTAEvent& event, const std::string& device, PhoneCall::Time now,
            std::optional<int> cause = std::nullopt);

}  // namespace host
