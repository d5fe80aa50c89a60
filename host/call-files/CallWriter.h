#pragma once

#include <array>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

/// Calls as the lines of files for other programs. The source is a call's JSON object, as the HTTP API sends
/// it. Pure functions; any thread may call.
namespace host {

/// The members of a call in their order, which are the columns of the CSV file.
inline constexpr std::array<std::string_view, 21> kCallMembers{
    "id",          "uniqueId",        "list",          "direction",         "number",          "name",
    "displayName", "connectedNumber", "connectedName", "redirectingNumber", "redirectingName", "reason",
    "start",       "answered",        "ended",         "duration",          "endApproximate",  "lineKey",
    "callId",      "viewed",          "calledBackAt"};

/// The row of titles: the members' names.
[[nodiscard]] std::string callCsvHead();
/// The row of a call (RFC 4180), of cells that no spreadsheet takes for a formula (`csvCell`). A member that
/// is null, or missing, is an empty cell.
[[nodiscard]] std::string callCsvRow(const nlohmann::ordered_json& call);

/// The call as one line of a file with one JSON object a line.
[[nodiscard]] std::string callJsonLine(const nlohmann::ordered_json& call);

}  // namespace host
