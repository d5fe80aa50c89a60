#pragma once

#include <chrono>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "host/history/Call.h"

/// The calls of the history as JSON, the same in the HTTP API, the command line and files. Pure functions;
/// any thread may call.
namespace host {

/// A time as "2026-11-21T05:22:05Z".
[[nodiscard]] std::string utcText(std::chrono::sys_seconds time);

/// The members of a call, in a fixed order and all of them: "id", "uniqueId" (of its entry), "list",
/// "direction" ("incoming" or "outgoing"), "number", "name" (as filed), "displayName", "connectedNumber",
/// "connectedName", "redirectingNumber", "redirectingName", "reason" ("" or a word of `CallReason`), "start",
/// "answered", "ended", "duration" (seconds), "endApproximate", "lineKey", "callId", "viewed" and
/// "calledBackAt". Times are ISO 8601 in UTC; null stands for what is not known.
[[nodiscard]] nlohmann::ordered_json callJson(const Call& call);

}  // namespace host
