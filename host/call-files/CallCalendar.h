#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

/// Calls as the events of a calendar (iCalendar, RFC 5545). Lines have at most 75 bytes; longer ones continue
/// in the next line after a blank. The source is a call's JSON object, as the HTTP API sends it. Pure
/// functions; any thread may call.
namespace host {

[[nodiscard]] std::string calendarBegin();
/// The event of a call of that telephone line. The line and the call's id make its UID, so that a calendar
/// that reads the file again replaces the event. The event shows its time as free. Empty for a call without
/// start.
[[nodiscard]] std::string calendarEvent(const nlohmann::ordered_json& call, std::string_view line);
[[nodiscard]] std::string calendarEnd();

}  // namespace host
