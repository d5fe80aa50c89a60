#pragma once

#include <string>

#include "host/calls/PhoneCall.h"
#include "host/calls/PhoneCalls.h"

class CSTAEvent;

namespace host {

/// Updates the calls by an event that the journal receives. `device` is the device whose monitor reports it.
/// Events that belong to no call have no effect. At a shared line a call is followed as long as it rings.
void follow(PhoneCalls& calls, const CSTAEvent& event, const std::string& device, PhoneCall::Time now);

}  // namespace host
