#pragma once

#include <string_view>

#include "platform/csta/CSTAMonitorFilter.h"

namespace host {

class MessageWriter;

/// How the platform's filter groups stand on the wire, in one table. A member that is true leaves its events out.
///
/// Two members stay on although their group is off: `callBack` and `callBackMessage` of the logical device
/// features, from which the phone keeps its list of callbacks. The call log of the switch travels in private
/// events, so `private` is left out only when neither vendor data nor log entries are wanted.

/// What `filter` says of one member: left out, let through, or (unset) nothing.
[[nodiscard]] CSTAMonitorFilter::Setting memberSetting(const CSTAMonitorFilter& filter,
                                                       std::string_view group,
                                                       std::string_view member) noexcept;

/// Whether the filter has anything to ask of a switch.
[[nodiscard]] bool leavesAnythingOut(const CSTAMonitorFilter& filter) noexcept;

/// Writes the groups into the open element, in the schema's order. `alsoFalse` writes what is let through, too: a filter
/// that replaces another must say so.
void writeFilterGroups(MessageWriter& writer, const CSTAMonitorFilter& filter, bool alsoFalse);

}  // namespace host
