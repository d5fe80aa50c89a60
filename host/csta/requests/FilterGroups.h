#pragma once

#include <string_view>

#include "platform/csta/CSTAMonitorFilter.h"

namespace host {

class MessageWriter;

/// The platform's filter groups as written on the wire, in one table. A member that is true suppresses its
/// events.
///
/// Two members are never suppressed by their group: `callBack` and `callBackMessage` of the logical device
/// features, which the phone's callback list needs. The switch's call log uses private events, so `private`
/// is suppressed only if neither vendor data nor log entries are wanted.

/// The setting of one member: true (suppressed), false (delivered) or unset.
[[nodiscard]] CSTAMonitorFilter::Setting memberSetting(const CSTAMonitorFilter& filter,
                                                       std::string_view group,
                                                       std::string_view member) noexcept;

/// True if the filter suppresses at least one event.
[[nodiscard]] bool suppressesAnything(const CSTAMonitorFilter& filter) noexcept;

/// Writes the groups into the open element, in the schema's order. `alsoFalse` also writes the members that
/// are false, which a change of a filter requires.
void writeFilterGroups(MessageWriter& writer, const CSTAMonitorFilter& filter, bool alsoFalse);

}  // namespace host
