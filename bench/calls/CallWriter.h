#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "bench/calls/CallPlan.h"
#include "host/csta-server/SwitchMonitors.h"

namespace bench {

/// The device whose calls are played.
inline constexpr const char* kDevice = "2001";

/// Returns the CSTA messages of one call for a monitor of the device: five for a received call (it rings, is
/// established, held and retrieved, and ends) and for a dialled one, fewer for the others. Pure.
[[nodiscard]] std::vector<std::string> messagesOf(const CallPlan& plan, std::size_t call,
                                                  const host::SwitchMonitor& monitor);

}  // namespace bench
